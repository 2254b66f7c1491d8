// The welcome window: greets the user, offers the videos, and can be told not to come back.
#pragma once

#include <windows.h>

// The window opened last; null while none is open.
extern HWND g_welcomeWindow;

// Opens a welcome window, modeless, owned by the host's main window. One that is open already is
// not looked for.
void OpenWelcomeDialog();
