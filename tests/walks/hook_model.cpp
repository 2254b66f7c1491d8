#include "tests/walks/hook_model.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace hook_model {
namespace {

using enum Place;

constexpr int kEdge = 9;

// What a message says about keys, beside the buttons.
constexpr int kShiftKey = 4, kCtrlKey = 8;

constexpr int kBitsOfButtons[] = {kLeftBit, kRightBit, kMiddleBit};

// How many after the message of a move; each button has three.
int AfterMove(Message message) {
    return static_cast<int>(message) - static_cast<int>(Message::kMove);
}

int ButtonOf(Message message, int which) {
    const int after = AfterMove(message);
    return after >= 1 && after <= 9 && (after - 1) % 3 == which ? kBitsOfButtons[(after - 1) / 3]
                                                                : 0;
}

bool IsAgain(Message message) {
    return ButtonOf(message, 2) != 0;
}

bool IsView(int kind) {
    return kind == kViewport || kind == kLockedViewport;
}

bool IsEditor(int kind) {
    return kind >= 3;
}

bool IsInside(Point point, Point screen) {
    return point.x > kEdge && point.y > kEdge && point.x < screen.x - kEdge &&
           point.y < screen.y - kEdge;
}

bool IsTransform(int mode) {
    return mode >= 1 && mode <= 11 && mode != 6;
}

template <typename... Modes>
bool IsOneOf(int mode, Modes... modes) {
    return ((mode == modes) || ...);
}

Place Plus(Place first, int index) {
    return static_cast<Place>(static_cast<int>(first) + index);
}

constexpr std::string_view kPlaceNames[] = {
#define PLACE(name, text) text,
#include "tests/walks/places.inc"
#undef PLACE
};

constexpr Field kNumbers[] = {
    {"g_orbitActive", &State::orbit, true},
    {"g_zoomActive", &State::zoom, true},
    {"g_panActive", &State::pan, true},
    {"g_navLocked", &State::locked, true},
    {"g_navKind", &State::kind, false},
    {"g_heldButtons", &State::held, true},
    {"g_quickXform", &State::quick, true},
    {"g_shiftClone", &State::clone, true},
    {"g_selCtrl", &State::sel_ctrl, true},
    {"g_selShift", &State::sel_shift, true},
    {"g_selCtrlShift", &State::sel_ctrl_shift, true},
    {"g_selectNotPushed", &State::not_pushed, true},
    {"g_replayWaits", &State::waits, true},
    {"g_sculptRedirect", &State::redirect, true},
    {"g_scrubState", &State::scrub, true},
    {"g_scrubWrapped", &State::scrub_wrapped, true},
    {"g_altUpPending", &State::alt_owed, true},
    {"g_selectionLockRequests", &State::requests, true},
    {"g_heldSnapSticky", &State::snap, true},
    {"g_nudgeActive", &State::nudge, false},
    {"g_zoomWarp", &State::zoom_warp, false},
};
constexpr PointField kPoints[] = {
    {"g_zoomLast", &State::zoom_last},
    {"g_zoomVirtual", &State::zoom_virtual},
};
constexpr OptionField kOptions[] = {
    {"useMayaStyle", &Options::navigation}, {"altLeftArcRotate", &Options::left_orbit},
    {"altRightZoom", &Options::right_zoom}, {"mClickXForms", &Options::quick},
    {"useShiftClone", &Options::clone},     {"customSelectionCursors", &Options::cursors},
    {"slowZooming", &Options::slow_zoom},
};

}  // namespace

const std::span<const Field> kFields = kNumbers;
const std::span<const PointField> kPointFields = kPoints;
const std::span<const OptionField> kOptionFields = kOptions;

std::string_view NameOf(Place place) {
    return kPlaceNames[static_cast<size_t>(place)];
}

std::string Difference(const State& expected, const State& got) {
    const auto text = [](std::string_view name, int wanted, int is) {
        return std::string(name) + " is " + std::to_string(is) + ", by the rules " +
               std::to_string(wanted);
    };
    for (const auto& [name, value, at_rest] : kFields)
        if (expected.*value != got.*value) return text(name, expected.*value, got.*value);
    for (const auto& [name, value] : kPointFields) {
        const Point a = expected.*value;
        const Point b = got.*value;
        if (a.x != b.x) return text(std::string(name) + ".x", a.x, b.x);
        if (a.y != b.y) return text(std::string(name) + ".y", a.y, b.y);
    }
    return {};
}

int PressedBy(Message message) {
    return ButtonOf(message, 0) | ButtonOf(message, 2);
}

int ReleasedBy(Message message) {
    return ButtonOf(message, 1);
}

std::string NameOf(Message message) {
    if (message == Message::kOther) return "another message";
    if (message == Message::kMove) return "WM_MOUSEMOVE";
    const int which = AfterMove(message) - 1;
    static constexpr const char* kEnds[] = {"DOWN", "UP", "DBLCLK"};
    return std::string("WM_") + "LRM"[which / 3] + "BUTTON" + kEnds[which % 3];
}

// --- the mouse hook ---

// Events come in between, and then this one goes on with what they have left.
Outcome Model::Mouse(const MouseFacts& facts, const WhileSending& while_sending) {
    Outcome outer = std::exchange(outcome_, {});
    const WhileSending* const outer_sending = std::exchange(while_sending_, &while_sending);
    const int outer_sent = std::exchange(buttons_sent_, 0);
    outcome_.swallowed = Steps(facts);
    if (IsAgain(facts.message)) Visit(outcome_.swallowed ? kSecondPressTaken : kSecondPressPasses);
    buttons_sent_ = outer_sent;
    while_sending_ = outer_sending;
    return std::exchange(outcome_, std::move(outer));
}

void Model::Send(Message message, int keys) {
    outcome_.sent.push_back({message, keys});
    if (message == Message::kMove) return;
    const int number = buttons_sent_++;
    if (while_sending_ && *while_sending_) (*while_sending_)(number);
}

void Model::PayAlt() {
    if (!state_.alt_owed) return;
    Inject("alt-up");
    state_.alt_owed = 0;
}

bool Model::Steps(const MouseFacts& facts) {
    if (!facts.options.navigation) {
        Visit(kMouseOff);
        return false;
    }
    if (const std::optional<bool> verdict = Redirect(facts)) {
        outcome_.redirected = true;
        return *verdict;
    }
    if (Scrub(facts)) {
        outcome_.scrubbed = true;
        return true;
    }
    std::optional<Answer> press;
    if (PressedBy(facts.message) && !state_.quick && facts.kind != kOtherWindow && facts.alt &&
        !facts.ctrl)
        press = Press(facts);
    if (press == Answer::kConsumed) return true;
    if (!press)
        if (const std::optional<bool> verdict = Quick(facts)) return *verdict;
    if (!state_.quick && ReleasedBy(facts.message)) {
        outcome_.came_to_release_rules = true;
        if (Release(facts)) return true;
    }
    if (facts.message == Message::kMove && state_.Gesture()) return Move(facts);
    if (!state_.quick && !state_.Drags() && facts.kind != kOtherWindow &&
        facts.kind != kSchematic && Select(facts))
        return true;
    Visit(kMousePass);
    return false;
}

std::optional<bool> Model::Redirect(const MouseFacts& facts) {
    if (IsView(facts.kind)) {
        if (PressedBy(facts.message) == kMiddleBit && !facts.alt &&
            (facts.mode == 9247 || facts.brush)) {
            Visit(kRedirectStart);
            state_.redirect = 1;
            Inject(facts.swapped ? "alt-down right-down" : "alt-down left-down");
            return true;
        }
        if (facts.message == Message::kMiddleUp && state_.redirect) {
            Visit(kRedirectEnd);
            Inject(facts.swapped ? "right-up alt-up" : "left-up alt-up");
            state_.redirect = 0;
            return true;
        }
    }
    if (!state_.redirect) return {};
    Visit(kRedirectPass);
    return false;
}

bool Model::Scrub(const MouseFacts& facts) {
    const bool up = ReleasedBy(facts.message) != 0;
    const bool move = facts.message == Message::kMove;
    const int pressed = PressedBy(facts.message);
    if (!state_.scrub) return false;
    if (!facts.thumb && (pressed || (state_.scrub >= 2 && (up || move)))) Visit(kScrubNoThumb);
    if (state_.scrub >= 2 && (up || move) && facts.thumb) {
        if (facts.at.x <= kEdge || facts.at.x >= Screen(facts).x - kEdge) {
            Visit(facts.at.x <= kEdge ? kScrubWrapLeft : kScrubWrapRight);
            state_.scrub_wrapped = 1;
            return true;
        }
        if (state_.scrub_wrapped) {
            Visit(kScrubAnchor);
            state_.scrub_wrapped = 0;
            return true;
        }
        if (move) {
            Visit(kScrubMove);
            Send(Message::kMove, kLeftBit);
            return true;
        }
        Visit(facts.message == Message::kLeftUp    ? kScrubEndLeft
              : facts.message == Message::kRightUp ? kScrubEndRight
                                                   : kScrubEndMiddle);
        if (state_.scrub == 3) Visit(kScrubEndKeyGone);
        state_.scrub = state_.scrub == 3 ? 0 : 1;
        Send(facts.message == Message::kRightUp ? Message::kRightUp : Message::kLeftUp, 0);
        return true;
    }
    if (pressed && facts.thumb) {
        Visit(pressed == kLeftBit    ? kScrubStartLeft
              : pressed == kRightBit ? kScrubStartRight
                                     : kScrubStartMiddle);
        state_.scrub = 2;
        screen_ = {};
        if (pressed == kRightBit)
            Send(Message::kRightDown, kRightBit);
        else
            Send(Message::kLeftDown, kLeftBit);
        return true;
    }
    if (state_.scrub == 1 && move) {
        Visit(kScrubHover);
        Send(Message::kMove, 0);
        return true;
    }
    return false;
}

std::optional<Model::Answer> Model::Press(const MouseFacts& facts) {
    const int button = PressedBy(facts.message);
    const chords::Meaning meaning =
        chords::Press(SituationOf(facts), static_cast<unsigned>(button));
    if (meaning.row == 0) {
        const bool off = button == kLeftBit && !state_.sel_ctrl && !facts.options.left_orbit;
        Visit(off ? kPressLeftOff : kPressNone);
        return {};
    }
    Visit(Plus(kPress1, meaning.row - 1));
    outcome_.used_bits |= static_cast<int>(meaning.held);
    outcome_.own_bit = button;
    state_.held |= button;
    return Call(meaning.action, facts);
}

chords::Situation Model::SituationOf(const MouseFacts& facts) const {
    const auto held = [this](int button) { return (state_.held & button) != 0; };
    return {.orbit = state_.orbit != 0,
            .zoom = state_.zoom != 0,
            .pan = state_.pan != 0,
            .refused = state_.locked != 0,
            .ctrl_click = state_.sel_ctrl != 0,
            .click_mode = facts.mode == 65743,
            .left = held(kLeftBit),
            .right = held(kRightBit),
            .middle = held(kMiddleBit),
            .right_zoom = facts.options.right_zoom,
            .left_orbit = facts.options.left_orbit};
}

std::optional<bool> Model::Quick(const MouseFacts& facts) {
    const bool wanted = facts.options.quick || (facts.options.clone && facts.shift);
    if (PressedBy(facts.message) == kMiddleBit && wanted) {
        if (state_.quick) {
            Visit(kQuickRunning);
            return {};
        }
        const bool editor = facts.kind == kTrackView || facts.kind == kUnwrap;
        if (IsView(facts.kind)) {
            if (facts.selected == 0 || !facts.mode || !IsTransform(*facts.mode)) {
                Visit(kQuickRefused);
                return {};
            }
            outcome_.quick_begins = true;
            state_.quick = 1;
            state_.requests |= 1;
            if (facts.shift && facts.options.clone) {
                Visit(kQuickStartClone);
                state_.clone = 1;
                Send(Message::kLeftDown, kShiftKey);
            } else {
                Visit(kQuickStartViewport);
                Send(Message::kLeftDown, 0);
            }
            return true;
        }
        if (editor && !facts.edit_mode) Visit(kQuickRefused);
        if (!editor || !facts.edit_mode) return {};
        Visit(facts.kind == kTrackView ? kQuickStartTrackView : kQuickStartUnwrap);
        state_.quick = 1;
        Send(Message::kLeftDown, 0);
        return true;
    }
    if (!state_.quick) return {};
    const bool cancel = facts.message == Message::kRightDown && facts.shift;
    if (facts.message == Message::kMiddleUp || cancel) {
        if (IsView(facts.kind)) {
            Visit(cancel ? kQuickCancel : kQuickEndViewport);
            state_.quick = 0;
            state_.clone = 0;
            if (cancel) {
                Send(Message::kRightDown, 0);
                Send(Message::kRightUp, 0);
            }
            Send(Message::kLeftUp, 0);
            state_.requests &= ~1;
            return {};
        }
        switch (facts.kind) {
            case kTrackView:
            case kUnwrap:
                Visit(facts.kind == kTrackView ? kQuickEndTrackView : kQuickEndUnwrap);
                state_.quick = 0;
                Send(Message::kLeftUp, 0);
                return true;
            case kOtherWindow: Visit(kQuickEndOther); return {};
            default: Visit(kQuickEndOtherEditor); return true;
        }
    }
    if (facts.message == Message::kMove && facts.shift && facts.kind == kTrackView) {
        Visit(kQuickMoveTrackView);
        Send(Message::kMove, kLeftBit | kCtrlKey);
        return true;
    }
    return {};
}

bool Model::Release(const MouseFacts& facts) {
    const int button = ReleasedBy(facts.message);
    for (int behind = 0;;) {
        const chords::Meaning meaning =
            chords::Release(SituationOf(facts), static_cast<unsigned>(button), behind);
        if (meaning.row == 0) {
            if (behind == 0) Visit(kReleaseNone);
            return false;
        }
        behind = meaning.row;
        Visit(Plus(kRelease1, meaning.row - 1));
        outcome_.used_bits |= static_cast<int>(meaning.held);
        outcome_.own_bit = button;
        state_.held &= ~button;
        if (Call(meaning.action, facts) == Answer::kConsumed) return true;
    }
}

Model::Answer Model::Unlock(const MouseFacts& facts) {
    if (facts.options.right_zoom && (state_.held & kRightBit)) {
        Visit(kUnlockIntoZoom);
        outcome_.used_bits |= kRightBit;
        return Call(NavAction::kOrbitToZoom, facts);
    }
    Visit(kUnlockByLeft);
    state_.locked = 0;
    return Answer::kConsumed;
}

void Model::BeginZoom() {
    state_.zoom = 1;
    screen_ = {};
    state_.zoom_virtual = {-1, -1};
    state_.zoom_last = {0, 0};
    state_.zoom_warp = 0;
}

// A brush's suspension ends: whatever drags is over.
void Model::EndView() {
    state_.orbit = state_.zoom = state_.pan = 0;
    Send(Message::kLeftUp, 0);
}

// The starters look at the window under the mouse, all others at the window in which it started.
Model::Answer Model::Call(NavAction action, const MouseFacts& facts) {
    switch (action) {
        case NavAction::kMiddleClick:
            Send(Message::kMiddleDown, 0);
            Send(Message::kMiddleUp, 0);
            return Answer::kConsumed;
        case NavAction::kSwallow: return Answer::kConsumed;
        case NavAction::kLeaveLocked: return Unlock(facts);
        default: break;
    }
    outcome_.handler = action;
    const int kind = Starts(action) ? facts.kind : state_.kind;
    const int column = kind == kViewport ? 0 : kind == kLockedViewport ? 1 : 2;
    // No gesture has begun yet, or the window is none of those.
    if (kind == kOtherWindow) return Answer::kOn;
    const bool refused = column == 0 && !facts.orbit_allowed;
    const auto visit = [this, column](Place first, bool refuses = false) {
        Visit(Plus(first, refuses ? 3 : column));
    };
    const auto lock = [this, kind] {
        state_.kind = kind;
        state_.locked = 1;
        return Answer::kConsumed;
    };
    switch (action) {
        case NavAction::kStartOrbit:
            visit(kStartOrbitViewport, refused);
            if (column == 2) return Answer::kOn;
            if (column == 1 || !facts.orbit_allowed) {
                outcome_.orbit_refused = true;
                return lock();
            }
            state_.kind = kind;
            state_.orbit = 1;
            Send(Message::kMiddleDown, 0);
            return Answer::kConsumed;
        case NavAction::kStartPan:
            visit(kStartPanViewport);
            if (column == 1) return lock();
            state_.kind = kind;
            state_.pan = 1;
            if (column == 0) Send(Message::kLeftDown, kCtrlKey);
            return column == 0 ? Answer::kConsumed : Answer::kOn;
        case NavAction::kStartZoom:
            visit(kStartZoomViewport);
            if (column == 1) return lock();
            state_.kind = kind;
            BeginZoom();
            Send(column == 0 ? Message::kLeftDown : Message::kMiddleDown, kCtrlKey);
            return Answer::kConsumed;
        case NavAction::kOrbitToZoom:
            visit(kOrbitToZoomViewport);
            if (column == 1) return Answer::kConsumed;
            state_.locked = 0;
            state_.orbit = 0;
            BeginZoom();
            Send(Message::kMiddleUp, 0);
            Send(column == 0 ? Message::kLeftDown : Message::kMiddleDown, kCtrlKey);
            return Answer::kConsumed;
        case NavAction::kPanToZoom:
            visit(kPanToZoomViewport);
            if (column == 1) return Answer::kOn;
            if (column == 0) Send(Message::kLeftUp, 0);
            state_.pan = 0;
            BeginZoom();
            if (column == 0) {
                Send(Message::kLeftDown, 0);
            } else {
                Send(Message::kMiddleUp, 0);
                Send(Message::kMiddleDown, kCtrlKey);
            }
            return Answer::kConsumed;
        case NavAction::kZoomToPan:
            visit(kZoomToPanViewport);
            if (column == 1) return Answer::kOn;
            state_.zoom = 0;
            state_.pan = 1;
            Send(column == 0 ? Message::kLeftUp : Message::kMiddleUp, 0);
            Send(column == 0 ? Message::kLeftDown : Message::kMiddleDown, 0);
            return Answer::kConsumed;
        case NavAction::kZoomToOrbit:
            visit(kZoomToOrbitViewport, refused);
            if (column == 1) return Answer::kOn;
            state_.zoom = 0;
            if (column == 2) {
                Send(Message::kMiddleUp, kCtrlKey);
                return Answer::kConsumed;
            }
            if (!facts.orbit_allowed) Send(Message::kLeftUp, 0);
            EndView();
            if (facts.orbit_allowed) {
                state_.orbit = 1;
                Send(Message::kMiddleDown, 0);
            } else {
                outcome_.orbit_refused = true;
                state_.locked = 1;
            }
            return Answer::kConsumed;
        case NavAction::kEndZoom:
            visit(kEndZoomViewport);
            if (column == 1) {
                state_.locked = 0;
                return Answer::kConsumed;
            }
            state_.zoom = 0;
            if (column == 0)
                EndView();
            else
                Send(Message::kMiddleUp, kCtrlKey);
            PayAlt();
            return Answer::kConsumed;
        case NavAction::kEndPan:
            visit(kEndPanViewport);
            if (column == 1) {
                state_.locked = 0;
                return Answer::kConsumed;
            }
            state_.pan = 0;
            if (column == 0) EndView();
            PayAlt();
            return column == 0 ? Answer::kConsumed : Answer::kOn;
        case NavAction::kEndOrbit:
            visit(kEndOrbitViewport, refused);
            if (column == 2) return Answer::kOn;
            state_.locked = 0;
            if (column == 1) return Answer::kConsumed;
            if (!facts.orbit_allowed) {
                outcome_.orbit_refused = true;
                return Answer::kConsumed;
            }
            state_.orbit = 0;
            Send(Message::kMiddleUp, 0);
            PayAlt();
            return Answer::kConsumed;
        default: break;
    }
    return Answer::kOn;
}

bool Model::Move(const MouseFacts& facts) {
    if (state_.orbit) {
        Visit(kMoveOrbit);
        return false;
    }
    if (state_.pan && state_.kind == kViewport) {
        Visit(kMovePanViewport);
        Send(Message::kMove, kLeftBit | kCtrlKey);
        return true;
    }
    if (state_.pan && IsEditor(state_.kind)) {
        Visit(kMovePanEditor);
        return false;
    }
    if (state_.locked) {
        if (state_.pan && state_.zoom) {
            Visit(kMoveLockedPanZoom);
            ZoomMove(facts);
        } else {
            Visit(state_.pan ? kMoveLockedPan : kMoveLocked);
        }
        return true;
    }
    if (!state_.zoom) {
        Visit(kMovePanNowhere);
        return false;
    }
    return ZoomMove(facts);
}

// A drag that has learned the size goes by that where the system no longer tells it.
Point Model::Screen(const MouseFacts& facts) {
    if (facts.screen.x != 0) screen_.x = facts.screen.x;
    if (facts.screen.y != 0) screen_.y = facts.screen.y;
    return screen_;
}

bool Model::ZoomMove(const MouseFacts& facts) {
    const Point cursor = facts.cursor;
    const Point screen = Screen(facts);
    if (state_.zoom_virtual == Point{-1, -1}) {
        const bool inside = IsInside(cursor, screen);
        Visit(inside ? kZoomFirst : kZoomFirstAtEdge);
        if (inside) state_.zoom_last = state_.zoom_virtual = cursor;
        return false;
    }
    if (state_.zoom_warp) {
        state_.zoom_warp = 0;
        state_.zoom_virtual = cursor;
        const bool inside = IsInside(state_.zoom_last, screen);
        Visit(inside ? kZoomWarpBack : kZoomWarpSideways);
        if (!inside) state_.zoom_last.x = cursor.x;
        return true;
    }
    const bool view = state_.kind == kViewport;
    if (view && cursor.y < 3) {
        Visit(kZoomWrapTop);
        state_.zoom_last = {cursor.x, screen.y - 20};
        return true;
    }
    if (view && cursor.y >= screen.y - 2) {
        Visit(kZoomWrapBottom);
        state_.zoom_last = {cursor.x, 20};
        return true;
    }
    const int distance = state_.zoom_last.x - cursor.x + state_.zoom_last.y - cursor.y;
    state_.zoom_last = cursor;
    state_.zoom_virtual = {cursor.x, state_.zoom_virtual.y + distance};
    const int y = state_.zoom_virtual.y;
    if (view) {
        if (cursor.x <= kEdge || cursor.x >= screen.x - kEdge || y <= kEdge ||
            y >= screen.y - kEdge) {
            Visit(kZoomMarkWarp);
            state_.zoom_warp = 1;
        }
        Visit(kZoomMoveViewport);
        Send(Message::kMove, facts.options.slow_zoom ? kLeftBit : kLeftBit | kCtrlKey);
        return true;
    }
    if (!IsEditor(state_.kind)) {
        Visit(kZoomMoveLocked);
        return true;
    }
    if (y < 1 || y >= screen.y) {
        Visit(kZoomEditorRestart);
        state_.zoom_virtual = {cursor.x, screen.y / 2};
        Send(Message::kMiddleUp, 0);
        Send(Message::kMiddleDown, kMiddleBit | kCtrlKey);
        return true;
    }
    Visit(kZoomMoveEditor);
    Send(Message::kMove, kMiddleBit | kCtrlKey);
    return true;
}

bool Model::Select(const MouseFacts& facts) {
    const bool press = facts.message == Message::kLeftDown;
    const bool release = facts.message == Message::kLeftUp;
    // Where the system counts the press that was swallowed, the replayed one is a second one.
    if (facts.message == Message::kLeftAgain) NoteReplay(facts);
    if (!press && !release && facts.message != Message::kMove) return false;
    const bool allowed = facts.mode && !IsOneOf(*facts.mode, 66510, 69632, 69633, 9247) &&
                         !facts.brush &&
                         ((*facts.mode >= 1 && *facts.mode <= 12) || facts.subobject);
    if (!allowed) {
        Visit(kSelectNotNow);
        return false;
    }
    if (press) return SelectPress(facts);
    if (release) return SelectRelease(facts);
    if (facts.on_menu || facts.right_down || !facts.options.cursors) {
        Visit(kSelectMoveOff);
        return false;
    }
    const bool by_key = (facts.shift || facts.ctrl) && !facts.alt;
    const bool cursor = facts.cursors_load && (state_.Selecting() || by_key || state_.locked);
    if (!cursor && !facts.alt) {
        Visit(kSelectMovePlain);
        return false;
    }
    if (!facts.ctrl && facts.shift) {
        if (IsEditor(facts.kind)) {
            Visit(kSelectMoveEditor);
            return false;
        }
        if (facts.select_button == false) {
            Visit(kSelectMoveButton);
            return false;
        }
    }
    Visit(kSelectMove);
    Send(Message::kMove, kAnyKeys);
    return true;
}

// The first press that has seen the injected Alt is the replayed one.
void Model::NoteReplay(const MouseFacts& facts) {
    if (!state_.waits || !facts.alt_before) return;
    Visit(facts.message == Message::kLeftAgain ? kSelectReplayAgain : kSelectReplayArrives);
    state_.waits = 0;
}

// The replayed press waits in the queue of a busy host; what was ahead of it comes after it.
bool Model::PutBehind(std::string_view record, const MouseFacts& facts) {
    --state_.waits;
    Inject(record);
    return facts.input_is_taken;
}

void Model::ReplayWithAlt(const MouseFacts& facts) {
    constexpr int kMostBehind = 4;
    // By the button, and by the Ctrl that is down.
    static constexpr std::string_view kRecords[2][3] = {
        {"alt-down ctrl-up left-down ctrl-down", "alt-down rctrl-up left-down rctrl-down",
         "alt-down ctrl-up rctrl-up left-down ctrl-down rctrl-down"},
        {"alt-down ctrl-up right-down ctrl-down", "alt-down rctrl-up right-down rctrl-down",
         "alt-down ctrl-up rctrl-up right-down ctrl-down rctrl-down"},
    };
    const int side = !facts.right_ctrl ? 0 : !facts.left_ctrl ? 1 : 2;
    Visit(side == 0 ? kSelectCtrl : side == 1 ? kSelectCtrlRight : kSelectCtrlBoth);
    if (facts.swapped) Visit(kSelectCtrlSwapped);
    state_.sel_ctrl = 1;
    Inject(kRecords[facts.swapped][side]);
    state_.waits = facts.input_is_taken ? kMostBehind : 0;
}

bool Model::SelectRelease(const MouseFacts& facts) {
    if (state_.sel_ctrl) {
        if (state_.waits && PutBehind(facts.swapped ? "right-up" : "left-up", facts)) {
            Visit(kSelectReleaseBehind);
            return true;
        }
        Visit(kSelectEndCtrl);
        state_.waits = 0;
        state_.sel_ctrl = 0;
        Send(Message::kLeftUp, 0);
        Inject("alt-up");
        return true;
    }
    if (!state_.Selecting()) return false;
    outcome_.shift_click = true;
    Send(Message::kLeftUp, state_.sel_ctrl_shift ? kCtrlKey : kShiftKey);
    state_.sel_shift = state_.sel_ctrl_shift = 0;
    Visit(state_.not_pushed ? kSelectEndNoPop : kSelectEndPop);
    state_.not_pushed = 0;
    return true;
}

bool Model::SelectPress(const MouseFacts& facts) {
    NoteReplay(facts);
    if (state_.waits && PutBehind(facts.swapped ? "right-down" : "left-down", facts)) {
        Visit(kSelectPressBehind);
        return true;
    }
    if (facts.alt) {
        Visit(kSelectAlt);
        return false;
    }
    if (!facts.shift) {
        if (!facts.ctrl || state_.sel_ctrl) {
            Visit(kSelectPlain);
            return false;
        }
        ReplayWithAlt(facts);
        return true;
    }
    (facts.ctrl ? state_.sel_ctrl_shift : state_.sel_shift) = 1;
    outcome_.shift_click = true;
    if (IsEditor(facts.kind)) {
        if (state_.sel_shift) {
            Visit(kSelectShiftEditor);
            state_.sel_shift = 0;
            return false;
        }
        Visit(kSelectCtrlShiftEditor);
        Send(Message::kLeftDown, kCtrlKey);
        return true;
    }
    if (!facts.select_button) {
        Visit(kSelectNoButton);
    } else if (*facts.select_button) {
        Visit(kSelectPushed);
    } else {
        Visit(kSelectNotPushed);
        state_.not_pushed = 1;
    }
    if (state_.sel_ctrl_shift && !facts.subobject) Visit(kSelectUndoRecord);
    Send(Message::kLeftDown, state_.sel_shift ? kCtrlKey | kShiftKey : kCtrlKey);
    return true;
}

// --- the keyboard hook ---

int Model::ChosenCursor(bool alt, bool ctrl, bool shift) const {
    if (state_.sel_ctrl_shift || (shift && ctrl && !alt)) return 111;
    if (state_.sel_shift || (shift && !alt)) return 112;
    if (state_.sel_ctrl || (ctrl && !alt)) return 110;
    if (state_.orbit) return 115;
    if (state_.zoom) return 118;
    if (state_.pan) return 117;
    return state_.locked ? 120 : 0;
}

int Model::ModifierCursor(const KeyFacts& facts) {
    if (facts.kind == kSchematic) {
        Visit(kKeyCursorSchematic);
        return kArrow;
    }
    const bool shift_alone = facts.shift && !facts.ctrl;
    if (shift_alone && IsEditor(facts.kind)) {
        Visit(kKeyCursorEditor);
        return kArrow;
    }
    if (shift_alone && facts.select_button == false) {
        Visit(kKeyCursorNoSelect);
        return kArrow;
    }
    if (facts.kind == kOtherWindow || !facts.mode || IsOneOf(*facts.mode, 66510, 69632, 69633) ||
        ((*facts.mode < 1 || *facts.mode > 12) && !facts.subobject)) {
        Visit(kKeyCursorElsewhere);
        return 0;
    }
    const int cursor = ChosenCursor(facts.alt, facts.ctrl, facts.shift);
    Visit(cursor ? kKeyCursorOwn : kKeyCursorArrow);
    return cursor ? cursor : kArrow;
}

Outcome Model::Key(const KeyFacts& facts) {
    Outcome outcome;
    if (!facts.options.navigation) {
        Visit(kKeyOff);
        return outcome;
    }
    if (facts.up) {
        if (state_.requests & 4) Visit(kKeyLock);
        state_.requests &= ~4;
        if (state_.nudge) Visit(kKeyNudge);
        state_.nudge = 0;
        if (facts.key == KeyFacts::Key::kAlt && state_.Drags()) {
            Visit(kKeyAltHeld);
            state_.alt_owed = 1;
            outcome.injected.push_back("alt-down");
            outcome.swallowed = true;
            return outcome;
        }
        if (state_.scrub) {
            Visit(state_.scrub == 2 ? kKeyScrubLater : kKeyScrubOff);
            state_.scrub = state_.scrub == 2 ? 3 : 0;
            outcome.swallowed = true;
            return outcome;
        }
        if (state_.snap) {
            Visit(kKeySnap);
            state_.snap = 0;
            outcome.swallowed = true;
            return outcome;
        }
    } else if (state_.scrub || state_.snap || (state_.requests & 4)) {
        Visit(kKeyRepeat);
        outcome.swallowed = true;
        return outcome;
    }
    if (facts.key != KeyFacts::Key::kOther && !state_.quick && facts.options.cursors) {
        if (facts.any_button)
            Visit(kKeyCursorButton);
        else
            outcome.cursor = ModifierCursor(facts);
    }
    Visit(kKeyPass);
    return outcome;
}

}  // namespace hook_model
