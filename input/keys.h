// The modifier keys as they are now, not as the message that is being handled saw them: synthetic
// input changes the two at different times.
#pragma once

#include <windows.h>

inline bool IsAltDown() {
    return GetAsyncKeyState(VK_MENU) < 0;
}

inline bool IsCtrlDown() {
    return GetAsyncKeyState(VK_CONTROL) < 0;
}

inline bool IsShiftDown() {
    return GetAsyncKeyState(VK_SHIFT) < 0;
}

// Shift without Ctrl.
inline bool IsShiftAlone() {
    return !IsCtrlDown() && IsShiftDown();
}

// Whether Alt was down when the message that is being handled was made: unlike the questions above
// it does not see input that still waits behind the message.
inline bool WasAltDown() {
    return GetKeyState(VK_MENU) < 0;
}
