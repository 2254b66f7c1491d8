// Selection in the control scheme of the gestures: Ctrl removes, Shift toggles, both add. The
// clicks reach the host with the modifiers that it has for the same thing.
#pragma once

#include "input/mouse_event.h"

// The click that is being replayed for the host with other modifiers, by the keys it was made with.
extern int g_selCtrl;
extern int g_selShift;
extern int g_selCtrlShift;

// One of them.
inline bool IsClickEmulated() {
    return g_selCtrl || g_selShift || g_selCtrlShift;
}

// Whether Ctrl and Shift select in the host's current command mode.
bool DoesModeSelect();
// The same, and no brush is in use, which the host is asked by a script.
bool MayEmulateClick();

// A press or release; only those of the left button have a meaning.
Answer EmulateSelectingClick(const MouseEvent& event);
