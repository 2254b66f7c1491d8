// The rules of the gestures and the zoom drag, stepped by events. The first byte of the input holds
// the settings, the next four the screen; each event is a byte that tells its kind and a few more.
//
// The rules are held against what the buttons mean (tests/walks/chords). The zoom drag is held
// against what must be true of every drag.

#include <algorithm>
#include <cstdlib>

#include "navigation/nav_rules.h"
#include "navigation/zoom_drag.h"
#include "tests/fuzzers/fuzzer.h"
#include "tests/walks/chords.h"

namespace {

using fuzzer::Check;

// --- presses and releases ---

using chords::Situation;

bool& Held(Situation& hand, unsigned button) {
    return button == kHeldLeft ? hand.left : button == kHeldRight ? hand.right : hand.middle;
}

const NavRule* Find(std::span<const NavRule> rules, const NavRule* first, const Situation& hand,
                    unsigned button) {
    const unsigned state = (hand.orbit ? kNavOrbit : 0u) | (hand.zoom ? kNavZoom : 0u) |
                           (hand.pan ? kNavPan : 0u) | (hand.refused ? kNavLocked : 0u) |
                           (hand.ctrl_click ? kNavCtrlSelection : 0u) |
                           (hand.click_mode ? kNavMiddleClickMode : 0u);
    const unsigned held = (hand.left ? kHeldLeft : 0u) | (hand.right ? kHeldRight : 0u) |
                          (hand.middle ? kHeldMiddle : 0u);
    PluginSettings settings;
    settings.altRightZoom = hand.right_zoom;
    settings.altLeftArcRotate = hand.left_orbit;
    return FindRule(rules, first, state, held, button, settings);
}

void CheckRule(std::span<const NavRule> rules, const NavRule* rule,
               const chords::Meaning& meaning) {
    Check(rule ? rule == rules.data() + meaning.row - 1 && rule->action == meaning.action
               : meaning.row == 0,
          "navigation/nav_rules.cpp and tests/walks/chords.cpp differ");
}

void Begin(Situation& hand, NavAction action, bool refused) {
    hand.orbit = hand.zoom = hand.pan = hand.refused = false;
    switch (action) {
        case NavAction::kStartOrbit:
        case NavAction::kZoomToOrbit: (refused ? hand.refused : hand.orbit) = true; break;
        case NavAction::kStartPan:
        case NavAction::kZoomToPan: hand.pan = true; break;
        case NavAction::kStartZoom:
        case NavAction::kOrbitToZoom:
        case NavAction::kPanToZoom: hand.zoom = true; break;
        default: break;
    }
}

void Press(Situation& hand, unsigned button, bool refused) {
    const NavRule* const rule = Find(kPressRules, kPressRules.data(), hand, button);
    CheckRule(kPressRules, rule, chords::Press(hand, button));
    if (!rule) return;
    Held(hand, button) = true;
    if (rule->action != NavAction::kMiddleClick) Begin(hand, rule->action, refused);
}

void Release(Situation& hand, unsigned button, unsigned refusals) {
    for (int behind = 0;;) {
        const NavRule* const rule =
            Find(kReleaseRules, kReleaseRules.data() + behind, hand, button);
        CheckRule(kReleaseRules, rule, chords::Release(hand, button, behind));
        if (!rule) return;
        Held(hand, button) = false;
        if (refusals-- == 0) {
            if (rule->action == NavAction::kSwallow) return;
            if (rule->action == NavAction::kEndZoom && hand.refused) hand.zoom = true;
            Begin(hand, rule->action, false);
            return;
        }
        behind = static_cast<int>(rule - kReleaseRules.data()) + 1;
    }
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
    Situation hand;
    const unsigned bits = input.Byte();
    hand.right_zoom = bits & 1;
    hand.left_orbit = bits >> 1 & 1;
    Zoom zoom;
    zoom.window = static_cast<ZoomWindow>((bits >> 3) % 3);
    // Screens as they are sold, and a few that nobody has.
    zoom.screen = {std::max(64, input.Short() & 0x3FFF), std::max(64, input.Short() & 0x3FFF)};

    constexpr unsigned kButtons[] = {kHeldLeft, kHeldRight, kHeldMiddle};
    while (!input.IsEmpty()) {
        const unsigned event = input.Byte();
        const unsigned button = kButtons[(event >> 2) % 3];
        switch (event & 3) {
            case 0: Press(hand, button, (event & 0x80) != 0); break;
            case 1: Release(hand, button, event >> 6); break;
            case 2: MoveZoom(zoom, {input.Short() & 0x3FFF, input.Short() & 0x3FFF}); break;
            default:
                switch (event >> 2 & 7) {
                    case 0: hand.ctrl_click = !hand.ctrl_click; break;
                    case 1: hand.click_mode = !hand.click_mode; break;
                    case 2: hand.right_zoom = !hand.right_zoom; break;
                    case 3: hand.left_orbit = !hand.left_orbit; break;
                    case 4: zoom.drag = {{0, 0}, kZoomNotSet, false}; break;
                    case 5: Held(hand, button) = true; break;
                    // Two gestures at once, as stray bits of buttons can bring about.
                    case 6: hand.zoom = !hand.zoom; break;
                    default: hand.refused = !hand.refused; break;
                }
        }
    }
    return 0;
}
