// Which handler a pressed or released button calls: the rule tables at work.

#include "host/host.h"
#include "navigation/gestures.h"
#include "navigation/mode_groups.h"
#include "navigation/nav_rules.h"
#include "navigation/navigation_state.h"
#include "shell/module.h"

namespace {

unsigned ActiveStates() {
    return (g_orbitActive ? kNavOrbit : 0u) | (g_zoomActive ? kNavZoom : 0u) |
           (g_panActive ? kNavPan : 0u) | (g_navLocked ? kNavLocked : 0u) |
           (g_selCtrl ? kNavCtrlSelection : 0u);
}

unsigned PressedButton(UINT press) {
    if (press == WM_LBUTTONDOWN) return kHeldLeft;
    return press == WM_RBUTTONDOWN ? kHeldRight : kHeldMiddle;
}

unsigned ReleasedButton(UINT message) {
    switch (message) {
        case WM_LBUTTONUP: return kHeldLeft;
        case WM_RBUTTONUP: return kHeldRight;
        case WM_MBUTTONUP: return kHeldMiddle;
        default: return kHeldNone;
    }
}

int LeaveLocked(POINT point, HWND window) {
    if (g_settings.altRightZoom && (g_heldButtons & kHeldRight)) return OrbitToZoom(point, window);
    g_navLocked = 0;
    ShowArrowCursor();
    return 1;
}

int SendMiddleClick(POINT point, HWND window) {
    SendMouse(window, WM_MBUTTONDOWN, 0, point);
    SendMouse(window, WM_MBUTTONUP, 0, point);
    return 1;
}

int CarryOut(NavAction action, POINT point, HWND window) {
    switch (action) {
        case NavAction::kMiddleClick: return SendMiddleClick(point, window);
        case NavAction::kStartOrbit: return StartOrbit(point, window);
        case NavAction::kStartPan: return StartPan(point, window);
        case NavAction::kStartZoom: return StartZoom(point, window);
        case NavAction::kOrbitToZoom: return OrbitToZoom(point, window);
        case NavAction::kPanToZoom: return PanToZoom(point, window);
        case NavAction::kZoomToPan: return ZoomToPan(point, window);
        case NavAction::kZoomToOrbit: return ZoomToOrbit(point, window);
        case NavAction::kEndOrbit: return EndOrbit(point, window);
        case NavAction::kEndPan: return EndPan(point, window);
        case NavAction::kEndZoom: return EndZoom(point, window);
        case NavAction::kLeaveLocked: return LeaveLocked(point, window);
        case NavAction::kSwallow: break;
    }
    return 1;
}

}  // namespace

PressResult ApplyPressRules(const MouseEvent& event) {
    const unsigned button = PressedButton(PressOf(event.message));
    unsigned state = ActiveStates();
    if (host::CurrentModeId() == kPatchOrCrossInsertMode) state |= kNavMiddleClickMode;
    const NavRule* rule =
        FindRule(kPressRules, kPressRules.data(), state, g_heldButtons, button, g_settings);
    if (!rule) return PressResult::kNoRule;
    g_heldButtons |= button;
    return CarryOut(rule->action, event.client, event.window) ? PressResult::kConsumed
                                                              : PressResult::kStarted;
}

bool ApplyReleaseRules(const MouseEvent& event) {
    const unsigned button = ReleasedButton(event.message);
    if (!button) return false;
    const NavRule* rule = kReleaseRules.data();
    while ((rule = FindRule(kReleaseRules, rule, ActiveStates(), g_heldButtons, button,
                            g_settings)) != nullptr) {
        g_heldButtons &= ~button;
        if (CarryOut(rule->action, event.client, event.window)) return true;
        ++rule;
    }
    return false;
}
