// The state of gestures, shared by the hooks and the commands, all on the user-interface thread.
#pragma once

#include <windows.h>

// A gesture lives in one of these from its button-down to its last button-up.
extern int g_orbitActive;
extern int g_zoomActive;
extern int g_panActive;
extern int g_navLocked;  // refused: only the cursor shows it

// The WindowKind of the window that the gesture started in.
extern int g_navKind;

// Buttons that went down in gestures (kHeldLeft, kHeldRight, kHeldMiddle of nav_rules.h).
extern unsigned g_heldButtons;

// A middle-button drag drives the current transform tool; with Shift it clones.
extern int g_quickXform;
extern int g_shiftClone;

// A click that is being replayed for the host with other modifiers.
extern int g_selCtrl;
extern int g_selShift;
extern int g_selCtrlShift;
extern int g_selectNotPushed;  // no select mode to pop at the end of the click
// Above 0 while the press that a Ctrl click was replaced by waits in the queue: how many events may
// still be put behind it.
extern int g_replayWaits;

// The middle button is being replayed as Alt and left button for a brush.
extern int g_sculptRedirect;

enum ScrubState : int {
    kScrubOff = 0,
    kScrubArmed = 1,             // its key is held
    kScrubDragging = 2,          // a button drags the time slider
    kScrubDraggingReleased = 3,  // the same, the key is up already
};
extern int g_scrubState;
extern int g_scrubWrapped;  // the cursor was just put to the other edge of the screen
extern POINT g_scrubLast;   // last cursor position, screen coordinates
extern POINT g_thumbPos;    // where the thumb is dragged to, screen coordinates

// The zoom drag, in screen coordinates. A virtual position of (-1, -1) is not set yet.
extern POINT g_zoomLast;
extern POINT g_zoomVirtual;
extern int g_zoomWarp;  // the next move puts the cursor back

// A synthetic Alt key-down stands, its key-up is owed at the end of the gesture.
extern int g_altUpPending;
