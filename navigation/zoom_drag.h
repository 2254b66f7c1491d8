// The zoom drag: a real cursor that both axes of move along one line of zoom, and that never runs
// out of screen. Free of Win32, so that it can be tested anywhere.
#pragma once

struct ScreenPoint {
    int x;
    int y;

    friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

struct ZoomDrag {
    ScreenPoint last;         // real cursor at the last move
    ScreenPoint virtual_pos;  // what the window is told; kZoomNotSet before the first move
    bool warp;                // the next move puts the cursor back

    friend bool operator==(const ZoomDrag&, const ZoomDrag&) = default;
};

inline constexpr ScreenPoint kZoomNotSet = {-1, -1};

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

// Advances the drag by one move of the real cursor to `cursor` on a screen of the given size.
ZoomStep AdvanceZoomDrag(ZoomDrag& drag, ScreenPoint cursor, ScreenPoint screen, ZoomWindow window);
