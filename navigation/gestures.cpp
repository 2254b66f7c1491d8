#include "navigation/gestures.h"

#include "assists/brushes.h"
#include "assists/input_records.h"
#include "host/host.h"
#include "navigation/navigation_state.h"
#include "navigation/window_kind.h"
#include "navigation/zoom_drag.h"
#include "settings/plugin_settings.h"

namespace {

// Orbiting an orthographic view makes it another view, so users may forbid it.
bool IsOrbitAllowed(HWND window) {
    const host::Viewport view = host::Viewport::OfWindow(window);
    return view.IsPerspective() || !g_settings.lockArcRotateOrtho ||
           (!g_settings.lockArcRotateUser && view.IsUserView());
}

void RefuseGesture(int kind) {
    g_navKind = kind;
    g_navLocked = 1;
}

// The host itself orbits a viewport on Alt and middle drag.
void BeginOrbit(POINT point, HWND window) {
    g_orbitActive = 1;
    SendMouse(window, WM_MBUTTONDOWN, 0, point);
}

// Editors zoom on Ctrl and middle drag, the Unwrap editor only if Alt is down as well when the
// button goes down. A middle drag that runs is ended first.
void RestartEditorDrag(POINT point, HWND window, WPARAM keys) {
    SendMouse(window, WM_MBUTTONUP, 0, point);
    SendMouse(window, WM_MBUTTONDOWN, keys, point);
}

}  // namespace

void BeginZoomState() {
    g_zoomActive = 1;
    g_zoomVirtual = {kZoomNotSet.x, kZoomNotSet.y};
    g_zoomLast = {0, 0};
    g_zoomWarp = 0;
}

void ReleasePendingAlt() {
    if (!g_altUpPending) return;
    SendRecords(kInAltUp);
    g_altUpPending = 0;
}

int StartOrbit(POINT point, HWND window) {
    switch (ClassifyWindow(window)) {
        case kWindowViewport:
            if (!IsOrbitAllowed(window)) {
                RefuseGesture(kWindowViewport);
                return 1;
            }
            g_navKind = kWindowViewport;
            BeginOrbit(point, window);
            return 1;
        case kWindowViewportLocked: RefuseGesture(kWindowViewportLocked); return 1;
        default: return 0;
    }
}

int StartPan(POINT point, HWND window) {
    const WindowKind kind = ClassifyWindow(window);
    switch (kind) {
        case kWindowOther: return 0;
        case kWindowViewport:
            g_navKind = kWindowViewport;
            g_panActive = 1;
            SuspendToolForView(host::kModePanView, point, window);
            return 1;
        case kWindowViewportLocked: RefuseGesture(kWindowViewportLocked); return 1;
        default:
            // The editor pans with its own middle drag.
            g_navKind = kind;
            g_panActive = 1;
            return 0;
    }
}

int StartZoom(POINT point, HWND window) {
    const WindowKind kind = ClassifyWindow(window);
    switch (kind) {
        case kWindowOther: return 0;
        case kWindowViewport:
            g_navKind = kWindowViewport;
            BeginZoomState();
            SuspendToolForView(host::kModeZoomView, point, window);
            return 1;
        case kWindowViewportLocked: RefuseGesture(kWindowViewportLocked); return 1;
        case kWindowNavPanel:
            g_navKind = kWindowNavPanel;
            PressViewButton(window, host::kModeZoomView, true);
            BeginZoomState();
            SendMouse(window, WM_LBUTTONDOWN, 0, point);
            return 1;
        default:
            g_navKind = kind;
            BeginZoomState();
            SendMouse(window, WM_MBUTTONDOWN, MK_CONTROL, point);
            return 1;
    }
}

int OrbitToZoom(POINT point, HWND window) {
    switch (g_navKind) {
        case kWindowOther: return 0;
        case kWindowViewport:
            g_navLocked = 0;
            g_orbitActive = 0;
            BeginZoomState();
            SendMouse(window, WM_MBUTTONUP, 0, point);
            SuspendToolForView(host::kModeZoomView, point, window);
            return 1;
        case kWindowViewportLocked: return 1;
        default:
            g_navLocked = 0;
            g_orbitActive = 0;
            BeginZoomState();
            RestartEditorDrag(point, window, MK_CONTROL);
            return 1;
    }
}

int PanToZoom(POINT point, HWND window) {
    switch (g_navKind) {
        case kWindowOther:
        case kWindowViewportLocked: return 0;
        case kWindowViewport:
            SendMouse(window, WM_LBUTTONUP, 0, point);
            g_panActive = 0;
            BeginZoomState();
            // The pan mode stays below on the stack.
            host::PushStandardMode(host::kModeZoomView);
            SendMouse(window, WM_LBUTTONDOWN, 0, point);
            return 1;
        case kWindowNavPanel:
            SendMouse(window, WM_LBUTTONUP, 0, point);
            g_panActive = 0;
            PressViewButton(window, host::kModeZoomView, true);
            SendMouse(window, WM_LBUTTONDOWN, 0, point);
            return 1;
        default:
            g_panActive = 0;
            BeginZoomState();
            RestartEditorDrag(point, window, MK_CONTROL);
            return 1;
    }
}

int ZoomToPan(POINT point, HWND window) {
    switch (g_navKind) {
        case kWindowOther:
        case kWindowViewportLocked: return 0;
        case kWindowViewport:
            g_panActive = 1;
            g_zoomActive = 0;
            SendMouse(window, WM_LBUTTONUP, 0, point);
            host::PopModeIfStacked();
            host::PushStandardMode(host::kModePanView);
            SendMouse(window, WM_LBUTTONDOWN, 0, point);
            return 1;
        default:
            g_zoomActive = 0;
            g_panActive = 1;
            if (g_navKind == kWindowNavPanel) {
                SendMouse(window, WM_LBUTTONUP, 0, point);
                PressViewButton(window, host::kModePanView, true);
            }
            RestartEditorDrag(point, window, 0);
            return 1;
    }
}

int ZoomToOrbit(POINT point, HWND window) {
    switch (g_navKind) {
        case kWindowOther:
        case kWindowViewportLocked: return 0;
        case kWindowViewport:
            g_zoomActive = 0;
            if (IsOrbitAllowed(window)) {
                ResumeToolAfterView(point, window);
                BeginOrbit(point, window);
            } else {
                SendMouse(window, WM_LBUTTONUP, 0, point);
                ResumeToolAfterView(point, window);
                g_navLocked = 1;
            }
            return 1;
        default:
            g_zoomActive = 0;
            SendMouse(window, WM_MBUTTONUP, MK_CONTROL, point);
            return 1;
    }
}

int EndZoom(POINT point, HWND window) {
    switch (g_navKind) {
        case kWindowOther: return 0;
        case kWindowViewport:
            g_zoomActive = 0;
            ResumeToolAfterView(point, window);
            ReleasePendingAlt();
            return 1;
        case kWindowViewportLocked: g_navLocked = 0; return 1;
        case kWindowNavPanel:
            ResumeToolAfterView(point, window);
            PressViewButton(window, host::kModeZoomView, false);
            return 0;
        default:
            g_zoomActive = 0;
            SendMouse(window, WM_MBUTTONUP, MK_CONTROL, point);
            ReleasePendingAlt();
            return 1;
    }
}

int EndPan(POINT point, HWND window) {
    switch (g_navKind) {
        case kWindowOther: return 0;
        case kWindowViewport:
            g_panActive = 0;
            ResumeToolAfterView(point, window);
            ReleasePendingAlt();
            return 1;
        case kWindowViewportLocked: g_navLocked = 0; return 1;
        default:
            // The editor gets its own middle-button release.
            g_panActive = 0;
            ReleasePendingAlt();
            return 0;
    }
}

int EndOrbit(POINT point, HWND window) {
    switch (g_navKind) {
        case kWindowViewport:
            g_navLocked = 0;
            // It was a refused orbit then, and the viewport never heard of it.
            if (!IsOrbitAllowed(window)) return 1;
            g_orbitActive = 0;
            SendMouse(window, WM_MBUTTONUP, 0, point);
            ReleasePendingAlt();
            return 1;
        case kWindowViewportLocked: g_navLocked = 0; return 1;
        default: return 0;
    }
}
