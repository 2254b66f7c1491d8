#include "navigation/zoom_drag.h"

ScreenPoint g_zoomLast = {};
ScreenPoint g_zoomVirtual = {};
int g_zoomWarp = 0;

namespace {

constexpr int kWrapDistance = 20;  // where the cursor comes back in after leaving at the other edge

bool IsInsideMargins(ScreenPoint point, ScreenPoint screen) {
    return point.x > kScreenMargin && point.x < screen.x - kScreenMargin &&
           point.y > kScreenMargin && point.y < screen.y - kScreenMargin;
}

ZoomStep WrapTo(ZoomDrag& drag, ScreenPoint place) {
    drag.last = place;
    return ZoomStep::kSetCursor;
}

}  // namespace

void ResetZoomDrag() {
    g_zoomLast = {};
    g_zoomVirtual = kZoomNotSet;
    g_zoomWarp = 0;
}

ZoomStep MoveZoomDrag(ScreenPoint cursor, ScreenPoint screen, ZoomWindow window) {
    ZoomDrag drag = {g_zoomLast, g_zoomVirtual, g_zoomWarp != 0};
    const ZoomStep step = AdvanceZoomDrag(drag, cursor, screen, window);
    g_zoomLast = drag.last;
    g_zoomVirtual = drag.virtual_pos;
    g_zoomWarp = drag.warp;
    return step;
}

ZoomStep AdvanceZoomDrag(ZoomDrag& drag, ScreenPoint cursor, ScreenPoint screen,
                         ZoomWindow window) {
    if (drag.virtual_pos == kZoomNotSet) {
        if (IsInsideMargins(cursor, screen)) {
            drag.last = cursor;
            drag.virtual_pos = cursor;
        }
        return ZoomStep::kPass;
    }
    if (drag.warp) {
        drag.warp = false;
        drag.virtual_pos = cursor;
        if (!IsInsideMargins(drag.last, screen)) drag.last.x = cursor.x;
        return ZoomStep::kSetCursor;
    }
    if (window == ZoomWindow::kViewport) {
        if (cursor.y < 3) return WrapTo(drag, {cursor.x, screen.y - kWrapDistance});
        if (cursor.y >= screen.y - 2) return WrapTo(drag, {cursor.x, kWrapDistance});
    }

    // Deliberate: both axes count, so that up and left zoom one way, down and right the other.
    const int distance = (drag.last.x - cursor.x) + (drag.last.y - cursor.y);
    drag.last = cursor;
    drag.virtual_pos.x = cursor.x;
    drag.virtual_pos.y += distance;

    if (window == ZoomWindow::kViewport) {
        // The virtual x is the cursor's own.
        if (!IsInsideMargins(drag.virtual_pos, screen)) drag.warp = true;
        return ZoomStep::kSendMove;
    }
    if (window == ZoomWindow::kEditor) {
        if (drag.virtual_pos.y < 1 || drag.virtual_pos.y >= screen.y) {
            drag.virtual_pos = {cursor.x, screen.y / 2};
            return ZoomStep::kRestartEditor;
        }
        return ZoomStep::kSendMove;
    }
    return ZoomStep::kSwallow;
}
