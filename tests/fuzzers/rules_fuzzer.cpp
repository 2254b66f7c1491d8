// The rules of the gestures and the zoom drag, stepped by events. The first byte of the input holds
// the settings, the next four the screen; each event is a byte that tells its kind and a few more.
//
// The rules are held against a second telling of them: what a user would say that a press or a
// release does. The zoom drag is held against what must be true of every drag.

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "navigation/nav_rules.h"
#include "navigation/zoom_drag.h"
#include "tests/fuzzers/fuzzer.h"

namespace {

using fuzzer::Check;

// --- presses and releases ---

struct Hand {
    bool orbit = false, zoom = false, pan = false, locked = false;
    bool ctrl_selection = false, click_mode = false;
    bool left = false, right = false, middle = false;

    unsigned State() const {
        return (orbit ? kNavOrbit : 0u) | (zoom ? kNavZoom : 0u) | (pan ? kNavPan : 0u) |
               (locked ? kNavLocked : 0u) | (ctrl_selection ? kNavCtrlSelection : 0u) |
               (click_mode ? kNavMiddleClickMode : 0u);
    }
    unsigned Held() const {
        return (left ? kHeldLeft : 0u) | (right ? kHeldRight : 0u) | (middle ? kHeldMiddle : 0u);
    }
    void Hold(unsigned button, bool down) {
        (button == kHeldLeft ? left : button == kHeldRight ? right : middle) = down;
    }
};

// What a press does. With Alt + right zoom switched off the right button has no rule of its own,
// and a zoom is not turned into anything.
std::optional<NavAction> PressMeans(const Hand& hand, unsigned button, const PluginSettings& set) {
    if (hand.click_mode) return NavAction::kMiddleClick;
    switch (button) {
        case kHeldLeft:
            if (hand.pan) return NavAction::kPanToZoom;
            if (hand.zoom && hand.right && set.altRightZoom) return NavAction::kZoomToOrbit;
            if (!hand.ctrl_selection && set.altLeftArcRotate) return NavAction::kStartOrbit;
            return {};
        case kHeldRight:
            if (!set.altRightZoom) return {};
            if (hand.pan) return NavAction::kPanToZoom;
            if (hand.orbit || hand.locked) return NavAction::kOrbitToZoom;
            if (!hand.zoom) return NavAction::kStartZoom;
            return {};
        default:
            if ((hand.orbit || hand.locked) && hand.left) return NavAction::kOrbitToZoom;
            if (hand.zoom && hand.right && set.altRightZoom) return NavAction::kZoomToPan;
            return NavAction::kStartPan;
    }
}

// What a release does, when `refused` rules before it have handed the message on.
std::optional<NavAction> ReleaseMeans(const Hand& hand, unsigned button,
                                      const PluginSettings& set) {
    const bool right_zoom = set.altRightZoom != 0;
    switch (button) {
        case kHeldLeft:
            if (hand.orbit && hand.right && right_zoom) return NavAction::kOrbitToZoom;
            if (hand.zoom && hand.middle && hand.left) return NavAction::kZoomToPan;
            if (hand.orbit || hand.locked) return NavAction::kEndOrbit;
            if (hand.zoom && hand.right && right_zoom) return NavAction::kSwallow;
            return {};
        case kHeldRight:
            if (!right_zoom) return {};
            if (hand.zoom && hand.right) {
                if (hand.left) return NavAction::kZoomToOrbit;
                if (hand.middle) return NavAction::kZoomToPan;
                return NavAction::kEndZoom;
            }
            if (hand.locked && !hand.zoom && hand.right) return NavAction::kEndZoom;
            if (hand.pan || hand.orbit || hand.locked) return NavAction::kSwallow;
            return {};
        default:
            if (hand.pan && hand.right && right_zoom) return NavAction::kPanToZoom;
            if (hand.zoom && hand.left && hand.middle) return NavAction::kZoomToOrbit;
            if (hand.pan || hand.locked) return NavAction::kEndPan;
            if (hand.zoom && hand.right && right_zoom) return NavAction::kSwallow;
            return {};
    }
}

void Begin(Hand& hand, NavAction action, bool refused) {
    hand.orbit = hand.zoom = hand.pan = hand.locked = false;
    switch (action) {
        case NavAction::kStartOrbit:
        case NavAction::kZoomToOrbit: (refused ? hand.locked : hand.orbit) = true; break;
        case NavAction::kStartPan:
        case NavAction::kZoomToPan: hand.pan = true; break;
        case NavAction::kStartZoom:
        case NavAction::kOrbitToZoom:
        case NavAction::kPanToZoom: hand.zoom = true; break;
        default: break;
    }
}

void Press(Hand& hand, unsigned button, bool refused, const PluginSettings& set) {
    const NavRule* rule =
        FindRule(kPressRules, kPressRules.data(), hand.State(), hand.Held(), button, set);
    const std::optional<NavAction> meant = PressMeans(hand, button, set);
    Check((rule != nullptr) == meant.has_value(),
          "a press has a rule and means nothing, or the other way round: "
          "navigation/nav_rules.cpp and PressMeans() of tests/fuzzers/rules_fuzzer.cpp differ");
    if (!rule) return;
    Check(rule->action == *meant,
          "a press does what it does not mean: "
          "navigation/nav_rules.cpp and PressMeans() of tests/fuzzers/rules_fuzzer.cpp differ");
    hand.Hold(button, true);
    if (*meant != NavAction::kMiddleClick) Begin(hand, *meant, refused);
}

void Release(Hand& hand, unsigned button, unsigned refusals, const PluginSettings& set) {
    const NavRule* rule = kReleaseRules.data();
    bool is_first = true;
    const NavRule* last = nullptr;
    while ((rule = FindRule(kReleaseRules, rule, hand.State(), hand.Held(), button, set))) {
        Check(!last || rule > last, "the search goes back");
        last = rule;
        if (is_first)
            Check(rule->action == ReleaseMeans(hand, button, set),
                  "a release does what it does not mean: navigation/nav_rules.cpp and "
                  "ReleaseMeans() of tests/fuzzers/rules_fuzzer.cpp differ");
        is_first = false;
        Check((rule->button & button) != 0, "a rule for another button");
        hand.Hold(button, false);
        if (refusals-- == 0) {
            if (rule->action == NavAction::kSwallow) return;
            if (rule->action == NavAction::kEndZoom && hand.locked) hand.zoom = true;
            Begin(hand, rule->action, false);
            return;
        }
        ++rule;
    }
    if (is_first)
        Check(!ReleaseMeans(hand, button, set),
              "a release means something and has no rule: "
              "navigation/nav_rules.cpp and ReleaseMeans() of tests/fuzzers/rules_fuzzer.cpp "
              "differ");
}

// --- the zoom drag ---

struct Zoom {
    ZoomDrag drag{{0, 0}, kZoomNotSet, false};
    ZoomWindow window = ZoomWindow::kViewport;
    ScreenPoint screen{1280, 1024};
};

bool IsInside(ScreenPoint point, ScreenPoint screen) {
    return point.x > 9 && point.x < screen.x - 9 && point.y > 9 && point.y < screen.y - 9;
}

void MoveZoom(Zoom& zoom, ScreenPoint cursor) {
    const ZoomDrag before = zoom.drag;
    const ZoomStep step = AdvanceZoomDrag(zoom.drag, cursor, zoom.screen, zoom.window);
    const ZoomDrag& after = zoom.drag;
    const bool in_viewport = zoom.window == ZoomWindow::kViewport;
    if (before.virtual_pos == kZoomNotSet) {
        // Nothing is zoomed by the move that gives the drag its anchor.
        Check(step == ZoomStep::kPass, "the first move is sent");
        const bool anchored = after.virtual_pos == cursor && after.last == cursor;
        Check(IsInside(cursor, zoom.screen) ? anchored : after == before, "the anchor");
        return;
    }
    switch (step) {
        case ZoomStep::kPass: Check(false, "a move of a drag that runs passes"); break;
        case ZoomStep::kSetCursor:
            Check(in_viewport || before.warp, "only views put the cursor elsewhere");
            Check(!after.warp, "a jump asks for another one");
            if (!before.warp) {
                const int far = std::abs(after.last.y - cursor.y);
                Check(after.virtual_pos == before.virtual_pos, "a wrap zooms");
                Check(after.last.x == cursor.x && (far > 0 || zoom.screen.y < 64), "a wrap stays");
            }
            break;
        case ZoomStep::kSwallow:
            Check(zoom.window == ZoomWindow::kNone, "a move is kept from its window");
            break;
        case ZoomStep::kRestartEditor:
            Check(zoom.window == ZoomWindow::kEditor, "only editors begin anew");
            Check(after.virtual_pos == ScreenPoint{cursor.x, zoom.screen.y / 2}, "the new place");
            break;
        case ZoomStep::kSendMove: {
            // Both axes count, and nothing else does.
            const int moved = (before.last.x - cursor.x) + (before.last.y - cursor.y);
            Check(after.virtual_pos.x == cursor.x, "the virtual cursor's column");
            Check(after.virtual_pos.y == before.virtual_pos.y + moved, "the virtual cursor's way");
            Check(after.last == cursor, "the last place");
            if (in_viewport)
                Check(after.warp == !IsInside(after.virtual_pos, zoom.screen), "the warp");
            else
                Check(after.virtual_pos.y >= 1 && after.virtual_pos.y < zoom.screen.y,
                      "an editor's cursor leaves the screen");
            break;
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzer::Input input(data, size);
    PluginSettings set;
    const unsigned bits = input.Byte();
    set.altRightZoom = bits & 1;
    set.altLeftArcRotate = bits >> 1 & 1;
    set.slowZooming = bits >> 2 & 1;
    Zoom zoom;
    zoom.window = static_cast<ZoomWindow>((bits >> 3) % 3);
    // Screens as they are sold, and a few that nobody has.
    zoom.screen = {std::max(64, input.Short() & 0x3FFF), std::max(64, input.Short() & 0x3FFF)};

    Hand hand;
    constexpr unsigned kButtons[] = {kHeldLeft, kHeldRight, kHeldMiddle};
    while (!input.IsEmpty()) {
        const unsigned event = input.Byte();
        const unsigned button = kButtons[(event >> 2) % 3];
        switch (event & 3) {
            case 0: Press(hand, button, (event & 0x80) != 0, set); break;
            case 1: Release(hand, button, event >> 6, set); break;
            case 2: MoveZoom(zoom, {input.Short() & 0x3FFF, input.Short() & 0x3FFF}); break;
            default:
                switch (event >> 2 & 7) {
                    case 0: hand.ctrl_selection = !hand.ctrl_selection; break;
                    case 1: hand.click_mode = !hand.click_mode; break;
                    case 2: set.altRightZoom = !set.altRightZoom; break;
                    case 3: set.altLeftArcRotate = !set.altLeftArcRotate; break;
                    case 4: zoom.drag = {{0, 0}, kZoomNotSet, false}; break;
                    case 5: hand.Hold(button, true); break;
                    // Two gestures at once, as stray bits of buttons can bring about.
                    case 6: hand.zoom = !hand.zoom; break;
                    default: hand.locked = !hand.locked; break;
                }
        }
    }
    return 0;
}
