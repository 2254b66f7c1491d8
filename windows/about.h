#pragma once

#include <windows.h>

// The about box, shown until the user answers it. A null owner is allowed.
void ShowAboutBox(HWND owner);
