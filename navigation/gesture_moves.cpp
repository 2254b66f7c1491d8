#include "navigation/gesture_moves.h"

#include "input/screen.h"
#include "navigation/gesture_state.h"
#include "navigation/modifier_cursor.h"
#include "navigation/zoom_drag.h"
#include "settings/plugin_settings.h"

namespace {

constexpr WPARAM kFastDrag = MK_LBUTTON | MK_CONTROL;
constexpr WPARAM kEditorZoomDrag = MK_CONTROL | MK_MBUTTON;

ZoomWindow ZoomedWindow() {
    if (g_navKind == kWindowViewport) return ZoomWindow::kViewport;
    return IsEditorKind(g_navKind) ? ZoomWindow::kEditor : ZoomWindow::kNone;
}

ZoomStep AdvanceZoom(POINT cursor) {
    return MoveZoomDrag({static_cast<int>(cursor.x), static_cast<int>(cursor.y)}, ScreenSize(),
                        ZoomedWindow());
}

POINT VirtualPointIn(HWND window) {
    return ToClient(window, {g_zoomVirtual.x, g_zoomVirtual.y});
}

WPARAM ZoomDragKeys() {
    if (g_navKind != kWindowViewport) return kEditorZoomDrag;
    return g_settings.slowZooming ? MK_LBUTTON : kFastDrag;
}

Answer MoveZoom(const MouseMessage& move) {
    // The real cursor: a move that was queued before the cursor was put elsewhere still names the
    // old place.
    POINT cursor = move.screen;
    GetCursorPos(&cursor);
    switch (AdvanceZoom(cursor)) {
        case ZoomStep::kPass: return Answer::kPassed;
        case ZoomStep::kSwallow: break;
        case ZoomStep::kSetCursor: SetCursorPos(g_zoomLast.x, g_zoomLast.y); break;
        case ZoomStep::kRestartEditor:
            SendMouse(move, WM_MBUTTONUP, 0);
            SendMouse(move.window, WM_MBUTTONDOWN, kEditorZoomDrag, VirtualPointIn(move.window));
            break;
        case ZoomStep::kSendMove:
            SendMouse(move.window, WM_MOUSEMOVE, ZoomDragKeys(), VirtualPointIn(move.window));
            break;
    }
    return Answer::kConsumed;
}

void ShowGestureCursor() {
    if (HCURSOR cursor = ChooseGestureCursor()) SetCursor(cursor);
}

}  // namespace

Answer MoveGesture(const MouseMessage& move) {
    if (g_orbitActive) {
        ShowGestureCursor();
        return Answer::kPassed;
    }
    if (g_panActive && g_navKind == kWindowViewport) {
        SendMouse(move, WM_MOUSEMOVE, kFastDrag);
        return Answer::kConsumed;
    }
    if (g_panActive && IsEditorKind(g_navKind)) return Answer::kPassed;
    // A pan that began elsewhere drags nothing once a press in a locked view was refused; only a
    // zoom that runs beside it goes on.
    if (g_navLocked && !(g_panActive && g_zoomActive)) {
        ShowGestureCursor();
        return Answer::kConsumed;
    }
    const Answer zoomed = g_zoomActive ? MoveZoom(move) : Answer::kPassed;
    return g_navLocked ? Answer::kConsumed : zoomed;
}
