// The modifier keys as they are now, not as the message that is being handled saw them: synthetic
// input changes the two at different times.
#pragma once

#include <windows.h>

// The whole answers of GetAsyncKeyState: negative while the key is down, and not 0 either when it
// was pressed since the last question. Each question is the last one for the next.
SHORT CtrlState();
SHORT ShiftState();

inline bool IsAltDown() {
    return GetAsyncKeyState(VK_MENU) < 0;
}

inline bool IsCtrlDown() {
    return CtrlState() < 0;
}

inline bool IsShiftDown() {
    return ShiftState() < 0;
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

// Whether a question above may be answered by anything but a plain no. These are no questions: the
// next one still hears of a press that was seen here.
bool MayShiftMatter();
bool MayShiftOrCtrlMatter();
bool MayModifiersMatter();
