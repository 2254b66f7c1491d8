// Globals that only their own source in the plug-in reads: tests set them and look at them.
#pragma once

#include <windows.h>

#include "input/screen_point.h"

// assists/brushes
extern HWND g_activeToolButton;
extern int g_pendingSculptButton;

// navigation/held_alt
extern int g_altUpPending;

// navigation/quick_transform
extern int g_shiftClone;

// navigation/sculpt_redirect
extern int g_sculptRedirect;

// navigation/selection_clicks
extern int g_selectNotPushed;
extern int g_replayWaits;

// navigation/time_scrub; the numbers are those that bug reports and traces of the state show.
inline constexpr int kScrubOff = 0;
inline constexpr int kScrubArmed = 1;
inline constexpr int kScrubDragging = 2;
inline constexpr int kScrubDraggingReleased = 3;
extern int g_scrubState;
extern int g_scrubWrapped;
extern POINT g_scrubLast;
extern POINT g_thumbPos;
