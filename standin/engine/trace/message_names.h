// Window messages by their Win32 names.
#pragma once

#include <windows.h>

#include <string>

namespace names {

// WM_..., WM_USER+N, else the number.
std::string Message(UINT message);
// The same for a message to a property sheet or a control, where the window tells what the number
// means.
std::string MessageTo(HWND window, UINT message);

}  // namespace names
