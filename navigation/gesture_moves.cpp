// What a mouse move means while a gesture runs.

#include "assists/modifier_cursor.h"
#include "navigation/gestures.h"
#include "navigation/navigation_state.h"
#include "navigation/window_kind.h"
#include "navigation/zoom_drag.h"
#include "settings/plugin_settings.h"

bool IsGestureActive() {
    return g_orbitActive || g_zoomActive || g_panActive || g_navLocked;
}

namespace {

constexpr WPARAM kFastDrag = MK_LBUTTON | MK_CONTROL;
constexpr WPARAM kEditorZoomDrag = MK_CONTROL | MK_MBUTTON;

ZoomWindow ZoomedWindow() {
    if (g_navKind == kWindowViewport) return ZoomWindow::kViewport;
    return IsEditorKind(g_navKind) ? ZoomWindow::kEditor : ZoomWindow::kNone;
}

POINT ToPoint(ScreenPoint point) {
    return {point.x, point.y};
}

ScreenPoint ToScreenPoint(POINT point) {
    return {static_cast<int>(point.x), static_cast<int>(point.y)};
}

ZoomStep AdvanceZoom(POINT cursor) {
    ZoomDrag drag = {ToScreenPoint(g_zoomLast), ToScreenPoint(g_zoomVirtual), g_zoomWarp != 0};
    const ScreenPoint screen = {GetSystemMetrics(SM_CXVIRTUALSCREEN),
                                GetSystemMetrics(SM_CYVIRTUALSCREEN)};
    const ZoomStep step = AdvanceZoomDrag(drag, ToScreenPoint(cursor), screen, ZoomedWindow());
    g_zoomLast = ToPoint(drag.last);
    g_zoomVirtual = ToPoint(drag.virtual_pos);
    g_zoomWarp = drag.warp;
    return step;
}

WPARAM ZoomDragKeys() {
    if (g_navKind != kWindowViewport) return kEditorZoomDrag;
    return g_settings.slowZooming ? MK_LBUTTON : kFastDrag;
}

bool MoveZoom(const MouseEvent& event) {
    // The real cursor: a move that was queued before the cursor was put elsewhere still names the
    // old place.
    POINT cursor = event.screen;
    GetCursorPos(&cursor);
    switch (AdvanceZoom(cursor)) {
        case ZoomStep::kPass: return false;
        case ZoomStep::kSwallow: break;
        case ZoomStep::kSetCursor: SetCursorPos(g_zoomLast.x, g_zoomLast.y); break;
        case ZoomStep::kRestartEditor:
            SendMouse(event.window, WM_MBUTTONUP, 0, event.client);
            SendMouse(event.window, WM_MBUTTONDOWN, kEditorZoomDrag,
                      ToClient(event.window, g_zoomVirtual));
            break;
        case ZoomStep::kSendMove:
            SendMouse(event.window, WM_MOUSEMOVE, ZoomDragKeys(),
                      ToClient(event.window, g_zoomVirtual));
            break;
    }
    return true;
}

}  // namespace

bool MoveGesture(const MouseEvent& event) {
    HCURSOR cursor = ChooseModifierCursor();
    if (g_orbitActive) {
        if (cursor) SetCursor(cursor);
        return false;
    }
    if (g_panActive && g_navKind == kWindowViewport) {
        SendMouse(event.window, WM_MOUSEMOVE, kFastDrag, event.client);
        return true;
    }
    if (g_panActive && IsEditorKind(g_navKind)) return false;
    // A pan that began elsewhere drags nothing once a press in a locked view was refused; only a
    // zoom that runs beside it goes on.
    if (g_navLocked && !(g_panActive && g_zoomActive)) {
        if (cursor) SetCursor(cursor);
        return true;
    }
    const bool taken = g_zoomActive && MoveZoom(event);
    return taken || g_navLocked;
}
