#include "navigation/mouse_hook.h"

#include "navigation/gestures.h"
#include "navigation/keys.h"
#include "navigation/navigation_state.h"
#include "navigation/quick_transform.h"
#include "navigation/sculpt_redirect.h"
#include "navigation/selection_clicks.h"
#include "navigation/time_scrub.h"
#include "navigation/window_kind.h"
#include "settings/plugin_settings.h"

namespace {

bool MayStartGesture(const MouseEvent& event, int kind) {
    return IsButtonPress(event.message) && !g_quickXform && kind != kWindowOther && IsAltDown() &&
           !IsCtrlDown();
}

bool MayEmulateSelection(int kind) {
    return !g_quickXform && !g_orbitActive && !g_zoomActive && !g_panActive &&
           kind != kWindowOther && kind != kWindowSchematicGraph;
}

// The uses of the mouse, in the order in which they are offered the message: the first that takes
// it swallows it.
bool HandleMouse(MouseEvent& event) {
    int kind = ClassifyWindow(event.window);
    switch (RedirectToSculpt(event, kind)) {
        case SculptRedirect::kSwallow: return true;
        case SculptRedirect::kPass: return false;
        case SculptRedirect::kAsked:
            // The host has run a script since, and scripts can change views.
            kind = ClassifyWindow(event.window);
            break;
        case SculptRedirect::kUntouched: break;
    }
    if (DragTimeScrub(event)) return true;
    if (StartTimeScrub(event)) return true;
    event.client = ToClient(event.window, event.screen);
    if (HoverTimeScrub(event)) return true;

    PressResult press = PressResult::kNoRule;
    if (MayStartGesture(event, kind)) press = ApplyPressRules(event);
    if (press == PressResult::kConsumed) return true;
    if (press == PressResult::kNoRule) {
        if (StartQuickTransform(event, kind)) return true;
        if (EndQuickTransform(event, kind)) return true;
        if (MoveQuickTransform(event, kind)) return true;
    }
    if (!g_quickXform && ApplyReleaseRules(event)) return true;
    if (event.message == WM_MOUSEMOVE && IsGestureActive()) return MoveGesture(event);
    return MayEmulateSelection(kind) && EmulateSelection(event, kind);
}

}  // namespace

// The hook code is not looked at, not even a negative one: every message is handled alike.
LRESULT CALLBACK MouseHookProc(int code, WPARAM message, LPARAM details) {
    if (!g_settings.useMayaStyle) return CallNextHookEx(nullptr, code, message, details);
    const MOUSEHOOKSTRUCT hook = *reinterpret_cast<const MOUSEHOOKSTRUCT*>(details);
    MouseEvent event = {static_cast<UINT>(message), hook.hwnd, hook.pt, hook.wHitTestCode, {}};
    if (HandleMouse(event)) return 1;
    return CallNextHookEx(nullptr, code, message, details);
}
