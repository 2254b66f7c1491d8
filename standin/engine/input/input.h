// Input: keyboard, mouse, clock and the queue between them and the windows, either played by the
// engine (virtual) or the system's own (real). The windows of the world use it instead of the
// system's calls, so that both kinds of input drive the same code.
#pragma once

#include <windows.h>

namespace input {

bool IsVirtual();

// State as the user-interface thread sees it while it handles a message.
bool KeyDown(int virtual_key);
POINT Cursor();  // screen coordinates
unsigned long Ticks();

// Mouse capture of the world's windows. A window that took it keeps it until every button that
// went down in it has come up; the windows call these, and input is routed by them.
HWND Capture();
void SetCapture(HWND window);
void ReleaseCapture();

// Keyboard focus.
HWND Focus();
void SetFocus(HWND window);

// Where a window that a message names takes its point from.
POINT ToScreen(HWND window, POINT client);
POINT ToClient(HWND window, POINT screen);

}  // namespace input
