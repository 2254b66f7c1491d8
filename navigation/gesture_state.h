// Which Alt gesture runs: it lives in one of four flags from its first button-down to its last
// button-up.
#pragma once

#include "host/window_kind.h"

extern int g_orbitActive;
extern int g_zoomActive;
extern int g_panActive;
extern int g_navLocked;  // refused: only the cursor shows it

// The window that the gesture started in.
extern WindowKind g_navKind;

// Buttons that went down in gestures (kHeldLeft, kHeldRight, kHeldMiddle of nav_rules.h).
extern unsigned g_heldButtons;

// A view or an editor is being orbited, zoomed or panned.
inline bool IsNavigating() {
    return g_orbitActive || g_zoomActive || g_panActive;
}

// The same, or it was refused.
inline bool IsGestureActive() {
    return IsNavigating() || g_navLocked;
}
