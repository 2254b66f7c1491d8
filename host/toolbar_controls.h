// Controls of the host's toolbars, found once at start; null where the host has none.
#pragma once

#include <windows.h>

extern HWND g_lockButton;  // selection lock
extern HWND g_angleSnapButton;
extern HWND g_button50021;        // found at start, used by nothing today
extern HWND g_zoomExtentsButton;  // a flyout; also where later searches for it store what they find
extern HWND g_navigationPanel;    // holds the viewport navigation buttons

inline constexpr int kLockButtonId = 59231;
inline constexpr int kAngleSnapButtonId = 40074;
inline constexpr int kZoomExtentsButtonId = 50016;

void FindToolbarControls();

// The buttons as they are now: the host may make its toolbars anew, so each is looked up again when
// its window is gone. Null: the host had none at start, or has none any more.
HWND LockButton();
HWND AngleSnapButton();
