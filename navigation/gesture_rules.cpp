#include "navigation/gesture_rules.h"

#include "host/host.h"
#include "host/mode_groups.h"
#include "navigation/gesture_state.h"
#include "navigation/gestures.h"
#include "navigation/nav_rules.h"
#include "navigation/selection_clicks.h"
#include "resources/module.h"

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

Answer LeaveLocked(const MouseEvent& event) {
    if (g_settings.altRightZoom && (g_heldButtons & kHeldRight)) return OrbitToZoom(event);
    g_navLocked = 0;
    ShowArrowCursor();
    return Answer::kConsumed;
}

Answer SendMiddleClick(const MouseEvent& event) {
    SendMouse(event, WM_MBUTTONDOWN, 0);
    SendMouse(event, WM_MBUTTONUP, 0);
    return Answer::kConsumed;
}

Answer CarryOut(const MouseEvent& event, NavAction action) {
    switch (action) {
        case NavAction::kMiddleClick: return SendMiddleClick(event);
        case NavAction::kStartOrbit: return StartOrbit(event);
        case NavAction::kStartPan: return StartPan(event);
        case NavAction::kStartZoom: return StartZoom(event);
        case NavAction::kOrbitToZoom: return OrbitToZoom(event);
        case NavAction::kPanToZoom: return PanToZoom(event);
        case NavAction::kZoomToPan: return ZoomToPan(event);
        case NavAction::kZoomToOrbit: return ZoomToOrbit(event);
        case NavAction::kEndOrbit: return EndOrbit(event);
        case NavAction::kEndPan: return EndPan(event);
        case NavAction::kEndZoom: return EndZoom(event);
        case NavAction::kLeaveLocked: return LeaveLocked(event);
        case NavAction::kSwallow: break;
    }
    return Answer::kConsumed;
}

}  // namespace

Answer ApplyPressRules(const MouseEvent& event) {
    const unsigned button = PressedButton(PressOf(event.message));
    unsigned state = ActiveStates();
    if (host::CurrentModeId() == kPatchOrCrossInsertMode) state |= kNavMiddleClickMode;
    const NavRule* rule =
        FindRule(kPressRules, kPressRules.data(), state, g_heldButtons, button, g_settings);
    if (!rule) return Answer::kNotMine;
    g_heldButtons |= button;
    const Answer answer = CarryOut(event, rule->action);
    return answer == Answer::kConsumed ? answer : Answer::kPassed;
}

// A gesture that does not want the release leaves it to the rules below.
Answer ApplyReleaseRules(const MouseEvent& event) {
    const unsigned button = ReleasedButton(event.message);
    if (!button) return Answer::kNotMine;
    const NavRule* rule = kReleaseRules.data();
    while ((rule = FindRule(kReleaseRules, rule, ActiveStates(), g_heldButtons, button,
                            g_settings)) != nullptr) {
        g_heldButtons &= ~button;
        if (CarryOut(event, rule->action) == Answer::kConsumed) return Answer::kConsumed;
        ++rule;
    }
    return Answer::kNotMine;
}
