// The zoom drag: a real cursor that both axes of move along one line of zoom, and that never runs
// out of screen. Free of Win32, so that it can be tested anywhere.
#pragma once

#include "input/screen_point.h"

struct ZoomDrag {
    ScreenPoint last;         // real cursor at the last move
    ScreenPoint virtual_pos;  // what the window is told; kZoomNotSet before the first move
    bool warp;                // the next move puts the cursor back

    friend bool operator==(const ZoomDrag&, const ZoomDrag&) = default;
};

inline constexpr ScreenPoint kZoomNotSet = {-1, -1};

// The drag that runs.
extern ScreenPoint g_zoomLast;
extern ScreenPoint g_zoomVirtual;
extern int g_zoomWarp;

void ResetZoomDrag();

enum class ZoomWindow {
    kViewport,
    kEditor,
    kNone,  // neither: the drag is followed, nothing is sent
};

enum class ZoomStep {
    kPass,           // the message goes on to the window
    kSwallow,        // nothing but the state changes
    kSetCursor,      // put the cursor to `last` and swallow
    kRestartEditor,  // end the editor's drag at the message's point, begin one at virtual_pos
    kSendMove,       // tell the window about virtual_pos
};

// Advances the drag that runs by one move of the real cursor to `cursor` on a screen of the given
// size.
ZoomStep MoveZoomDrag(ScreenPoint cursor, ScreenPoint screen, ZoomWindow window);

// Advances a drag by one move of the real cursor to `cursor` on a screen of the given size.
ZoomStep AdvanceZoomDrag(ZoomDrag& drag, ScreenPoint cursor, ScreenPoint screen, ZoomWindow window);
