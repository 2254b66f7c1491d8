#pragma once

#include <windows.h>

// The mouse hook of the host's user-interface thread: turns gestures into the host's own
// navigation. `message` is the mouse message, `details` points to its MOUSEHOOKSTRUCT. Non-zero
// swallows.
LRESULT CALLBACK MouseHookProc(int code, WPARAM message, LPARAM details);
