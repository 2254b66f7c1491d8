#include "navigation/gestures.h"

#include "host/host.h"
#include "input/screen.h"
#include "navigation/gesture_state.h"
#include "navigation/held_alt.h"
#include "navigation/view_drag.h"
#include "navigation/zoom_drag.h"
#include "settings/plugin_settings.h"

namespace {

// Orbiting an orthographic view makes it another view, so users may forbid it.
bool IsOrbitAllowed(HWND window) {
    const host::Viewport view = host::Viewport::OfWindow(window);
    return view.IsPerspective() || !g_settings.lockArcRotateOrtho ||
           (!g_settings.lockArcRotateUser && view.IsUserView());
}

Answer RefuseGesture(const MouseEvent& event) {
    g_navKind = event.kind;
    g_navLocked = 1;
    return Answer::kConsumed;
}

// The host itself orbits a viewport on Alt and middle drag.
void BeginOrbit(const MouseEvent& event) {
    g_orbitActive = 1;
    SendMouse(event, WM_MBUTTONDOWN, 0);
}

// Editors zoom on Ctrl and middle drag, the Unwrap editor only if Alt is down as well when the
// button goes down. A middle drag that runs is ended first.
void RestartEditorDrag(const MouseEvent& event, WPARAM keys) {
    SendMouse(event, WM_MBUTTONUP, 0);
    SendMouse(event, WM_MBUTTONDOWN, keys);
}

void BeginZoomState() {
    g_zoomActive = 1;
    ForgetScreenSize();
    ResetZoomDrag();
}

}  // namespace

Answer StartOrbit(const MouseEvent& event) {
    switch (event.kind) {
        case kWindowViewport:
            if (!IsOrbitAllowed(event.window)) return RefuseGesture(event);
            g_navKind = kWindowViewport;
            BeginOrbit(event);
            return Answer::kConsumed;
        case kWindowViewportLocked: return RefuseGesture(event);
        default: return Answer::kNotMine;
    }
}

Answer StartPan(const MouseEvent& event) {
    switch (event.kind) {
        case kWindowOther: return Answer::kNotMine;
        case kWindowViewport:
            g_navKind = kWindowViewport;
            g_panActive = 1;
            SuspendToolForView(event, host::kModePanView);
            return Answer::kConsumed;
        case kWindowViewportLocked: return RefuseGesture(event);
        default:
            // The editor pans with its own middle drag.
            g_navKind = event.kind;
            g_panActive = 1;
            return Answer::kPassed;
    }
}

Answer StartZoom(const MouseEvent& event) {
    switch (event.kind) {
        case kWindowOther: return Answer::kNotMine;
        case kWindowViewport:
            g_navKind = kWindowViewport;
            BeginZoomState();
            SuspendToolForView(event, host::kModeZoomView);
            return Answer::kConsumed;
        case kWindowViewportLocked: return RefuseGesture(event);
        case kWindowNavPanel:
            g_navKind = kWindowNavPanel;
            PressViewButton(event.window, host::kModeZoomView, true);
            BeginZoomState();
            SendMouse(event, WM_LBUTTONDOWN, 0);
            return Answer::kConsumed;
        default:
            g_navKind = event.kind;
            BeginZoomState();
            SendMouse(event, WM_MBUTTONDOWN, MK_CONTROL);
            return Answer::kConsumed;
    }
}

Answer OrbitToZoom(const MouseEvent& event) {
    switch (g_navKind) {
        case kWindowOther: return Answer::kNotMine;
        case kWindowViewport:
            g_navLocked = 0;
            g_orbitActive = 0;
            BeginZoomState();
            SendMouse(event, WM_MBUTTONUP, 0);
            SuspendToolForView(event, host::kModeZoomView);
            return Answer::kConsumed;
        case kWindowViewportLocked: return Answer::kConsumed;
        default:
            g_navLocked = 0;
            g_orbitActive = 0;
            BeginZoomState();
            RestartEditorDrag(event, MK_CONTROL);
            return Answer::kConsumed;
    }
}

Answer PanToZoom(const MouseEvent& event) {
    switch (g_navKind) {
        case kWindowOther:
        case kWindowViewportLocked: return Answer::kNotMine;
        case kWindowViewport:
            SendMouse(event, WM_LBUTTONUP, 0);
            g_panActive = 0;
            BeginZoomState();
            // The pan mode stays below on the stack.
            host::PushStandardMode(host::kModeZoomView);
            SendMouse(event, WM_LBUTTONDOWN, 0);
            return Answer::kConsumed;
        case kWindowNavPanel:
            SendMouse(event, WM_LBUTTONUP, 0);
            g_panActive = 0;
            PressViewButton(event.window, host::kModeZoomView, true);
            SendMouse(event, WM_LBUTTONDOWN, 0);
            return Answer::kConsumed;
        default:
            g_panActive = 0;
            BeginZoomState();
            RestartEditorDrag(event, MK_CONTROL);
            return Answer::kConsumed;
    }
}

Answer ZoomToPan(const MouseEvent& event) {
    switch (g_navKind) {
        case kWindowOther:
        case kWindowViewportLocked: return Answer::kNotMine;
        case kWindowViewport:
            g_panActive = 1;
            g_zoomActive = 0;
            SendMouse(event, WM_LBUTTONUP, 0);
            host::PopModeIfStacked();
            host::PushStandardMode(host::kModePanView);
            SendMouse(event, WM_LBUTTONDOWN, 0);
            return Answer::kConsumed;
        default:
            g_zoomActive = 0;
            g_panActive = 1;
            if (g_navKind == kWindowNavPanel) {
                SendMouse(event, WM_LBUTTONUP, 0);
                PressViewButton(event.window, host::kModePanView, true);
            }
            RestartEditorDrag(event, 0);
            return Answer::kConsumed;
    }
}

Answer ZoomToOrbit(const MouseEvent& event) {
    switch (g_navKind) {
        case kWindowOther:
        case kWindowViewportLocked: return Answer::kNotMine;
        case kWindowViewport:
            g_zoomActive = 0;
            if (IsOrbitAllowed(event.window)) {
                ResumeToolAfterView(event);
                BeginOrbit(event);
            } else {
                SendMouse(event, WM_LBUTTONUP, 0);
                ResumeToolAfterView(event);
                g_navLocked = 1;
            }
            return Answer::kConsumed;
        default:
            g_zoomActive = 0;
            SendMouse(event, WM_MBUTTONUP, MK_CONTROL);
            return Answer::kConsumed;
    }
}

Answer EndZoom(const MouseEvent& event) {
    switch (g_navKind) {
        case kWindowOther: return Answer::kNotMine;
        case kWindowViewport:
            g_zoomActive = 0;
            ResumeToolAfterView(event);
            ReleasePendingAlt();
            return Answer::kConsumed;
        case kWindowViewportLocked: g_navLocked = 0; return Answer::kConsumed;
        case kWindowNavPanel:
            ResumeToolAfterView(event);
            PressViewButton(event.window, host::kModeZoomView, false);
            return Answer::kNotMine;
        default:
            g_zoomActive = 0;
            SendMouse(event, WM_MBUTTONUP, MK_CONTROL);
            ReleasePendingAlt();
            return Answer::kConsumed;
    }
}

Answer EndPan(const MouseEvent& event) {
    switch (g_navKind) {
        case kWindowOther: return Answer::kNotMine;
        case kWindowViewport:
            g_panActive = 0;
            ResumeToolAfterView(event);
            ReleasePendingAlt();
            return Answer::kConsumed;
        case kWindowViewportLocked: g_navLocked = 0; return Answer::kConsumed;
        default:
            // The editor gets its own middle-button release.
            g_panActive = 0;
            ReleasePendingAlt();
            return Answer::kPassed;
    }
}

Answer EndOrbit(const MouseEvent& event) {
    switch (g_navKind) {
        case kWindowViewport:
            g_navLocked = 0;
            // It was a refused orbit then, and the viewport never heard of it.
            if (!IsOrbitAllowed(event.window)) return Answer::kConsumed;
            g_orbitActive = 0;
            SendMouse(event, WM_MBUTTONUP, 0);
            ReleasePendingAlt();
            return Answer::kConsumed;
        case kWindowViewportLocked: g_navLocked = 0; return Answer::kConsumed;
        default: return Answer::kNotMine;
    }
}
