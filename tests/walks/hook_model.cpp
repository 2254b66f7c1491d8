#include "tests/walks/hook_model.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace hook_model {
namespace {

constexpr int kEdge = 9;

// --- the two tables ---

enum Flags { kOrbit = 1, kZoom = 2, kPan = 4, kLocked = 8, kCtrlClick = 16, kMiddleClickMode = 32 };
enum Needs { kNothing, kRightZoomOn, kLeftOrbitOn };

struct Row {
    int some_of;  // one of these flags is set; 0: whatever is set
    int none_of;
    int bits;  // all of these are held
    Needs option;
    int buttons;
    Handler handler;  // none: what the row itself says
};

// What a message says about keys, beside the buttons.
constexpr int kShiftKey = 4, kCtrlKey = 8;

constexpr int L = kLeftBit, M = kMiddleBit, R = kRightBit;

// clang-format off
constexpr Row kPressRows[] = {
    {kMiddleClickMode, 0,          0, kNothing,     L | M | R, Handler::kNone},
    {kPan,             0,          0, kNothing,     L,         Handler::kPanToZoom},
    {kPan,             0,          0, kRightZoomOn, R,         Handler::kPanToZoom},
    {kOrbit | kLocked, 0,          L, kNothing,     M,         Handler::kOrbitToZoom},
    {kOrbit | kLocked, 0,          0, kRightZoomOn, R,         Handler::kOrbitToZoom},
    {kZoom,            0,          R, kRightZoomOn, M,         Handler::kZoomToPan},
    {kZoom,            0,          R, kRightZoomOn, L,         Handler::kZoomToOrbit},
    {0,                kZoom,      0, kRightZoomOn, R,         Handler::kStartZoom},
    {0,                kCtrlClick, 0, kLeftOrbitOn, L,         Handler::kStartOrbit},
    {0,                0,          0, kNothing,     M,         Handler::kStartPan},
};

constexpr int kUnlock = 13;

constexpr Row kReleaseRows[] = {
    {kOrbit,                  0,     R,     kRightZoomOn, L,     Handler::kOrbitToZoom},
    {kPan,                    0,     R,     kRightZoomOn, M,     Handler::kPanToZoom},
    {kZoom,                   0,     L | M, kNothing,     M,     Handler::kZoomToOrbit},
    {kZoom,                   0,     L | R, kRightZoomOn, R,     Handler::kZoomToOrbit},
    {kZoom,                   0,     M | L, kNothing,     L,     Handler::kZoomToPan},
    {kZoom,                   0,     M | R, kRightZoomOn, R,     Handler::kZoomToPan},
    {kZoom,                   0,     R,     kRightZoomOn, R,     Handler::kEndZoom},
    {kLocked,                 kZoom, R,     kRightZoomOn, R,     Handler::kEndZoom},
    {kPan | kLocked,          0,     0,     kNothing,     M,     Handler::kEndPan},
    {kOrbit | kLocked,        0,     0,     kNothing,     L,     Handler::kEndOrbit},
    {kZoom,                   0,     R,     kRightZoomOn, L | M, Handler::kNone},
    {kLocked | kPan | kOrbit, 0,     0,     kRightZoomOn, R,     Handler::kNone},
    {kLocked,                 0,     0,     kNothing,     L,     Handler::kNone},
};
// clang-format on
constexpr int PlacesFrom(Place first, Place behind) {
    return static_cast<int>(behind) - static_cast<int>(first);
}
static_assert(std::size(kPressRows) == PlacesFrom(Place::kPress1, Place::kPressLeftOff),
              "each press row has its Place in hook_model.h and its name in kRows");
static_assert(std::size(kReleaseRows) == PlacesFrom(Place::kRelease1, Place::kReleaseNone),
              "each release row has its Place in hook_model.h and its name in kRows");

int Pressed(Message message) {
    switch (message) {
        case Message::kLeftDown:
        case Message::kLeftAgain: return kLeftBit;
        case Message::kRightDown:
        case Message::kRightAgain: return kRightBit;
        case Message::kMiddleDown:
        case Message::kMiddleAgain: return kMiddleBit;
        default: return 0;
    }
}

int Released(Message message) {
    switch (message) {
        case Message::kLeftUp: return kLeftBit;
        case Message::kRightUp: return kRightBit;
        case Message::kMiddleUp: return kMiddleBit;
        default: return 0;
    }
}

bool IsAgain(Message message) {
    return message == Message::kLeftAgain || message == Message::kRightAgain ||
           message == Message::kMiddleAgain;
}

bool Applies(const Row& row, int flags, int held, int button, const Options& options) {
    if (!(row.buttons & button)) return false;
    if (row.some_of && !(row.some_of & flags)) return false;
    if (row.none_of & flags) return false;
    if ((held & row.bits) != row.bits) return false;
    if (row.option == kRightZoomOn) return options.right_zoom;
    if (row.option == kLeftOrbitOn) return options.left_orbit;
    return true;
}

int FlagsOf(const State& state) {
    return (state.orbit ? kOrbit : 0) | (state.zoom ? kZoom : 0) | (state.pan ? kPan : 0) |
           (state.locked ? kLocked : 0) | (state.sel_ctrl ? kCtrlClick : 0);
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

// --- the places ---

struct PlaceRow {
    Place place;
    std::string_view name;
    std::string_view why_never;
};

constexpr PlaceRow kRows[] = {
    {Place::kMouseOff, "mouse 1: navigation is off", ""},
    {Place::kRedirectStart, "mouse 3: middle press becomes Alt and left for a brush", ""},
    {Place::kRedirectEnd, "mouse 3: middle release ends that", ""},
    {Place::kRedirectPass, "mouse 4: everything passes meanwhile", ""},
    {Place::kScrubWrapLeft, "mouse 5.1: scrub at the left edge", ""},
    {Place::kScrubWrapRight, "mouse 5.1: scrub at the right edge", ""},
    {Place::kScrubAnchor, "mouse 5.2: first move after an edge", ""},
    {Place::kScrubMove, "mouse 5.4: scrub moves the thumb", ""},
    {Place::kScrubEndLeft, "mouse 5.4: left release ends the scrub", ""},
    {Place::kScrubEndRight, "mouse 5.4: right release ends the scrub", ""},
    {Place::kScrubEndMiddle, "mouse 5.4: middle release ends the scrub", ""},
    {Place::kScrubEndKeyGone, "mouse 5.4: the scrub's key was up before", ""},
    {Place::kScrubStartLeft, "mouse 6: left press starts the scrub", ""},
    {Place::kScrubStartRight, "mouse 6: right press starts the scrub", ""},
    {Place::kScrubStartMiddle, "mouse 6: middle press starts the scrub", ""},
    {Place::kScrubNoThumb, "mouse 5, 6: no thumb to be found", ""},
    {Place::kScrubHover, "mouse 8: move while the scrub is armed", ""},
    {Place::kPress1, "press row 1: mode answered by a middle click", ""},
    {Place::kPress2, "press row 2: pan, left", ""},
    {Place::kPress3, "press row 3: pan, right", ""},
    {Place::kPress4, "press row 4: orbit or refused, left held, middle", ""},
    {Place::kPress5, "press row 5: orbit or refused, right", ""},
    {Place::kPress6, "press row 6: zoom, right held, middle", ""},
    {Place::kPress7, "press row 7: zoom, right held, left", ""},
    {Place::kPress8, "press row 8: right", ""},
    {Place::kPress9, "press row 9: left", ""},
    {Place::kPress10, "press row 10: middle", ""},
    {Place::kPressLeftOff, "press row 9: left, orbiting is off", ""},
    {Place::kPressNone, "press: no row applies", ""},
    {Place::kQuickRunning, "quick transform 1: one runs", ""},
    {Place::kQuickStartViewport, "quick transform 2: starts in a view", ""},
    {Place::kQuickStartClone, "quick transform 2: starts as a clone", ""},
    {Place::kQuickStartTrackView, "quick transform 3: starts in the Track View", ""},
    {Place::kQuickStartUnwrap, "quick transform 4: starts in Unwrap UVW", ""},
    {Place::kQuickRefused, "quick transform 2 to 4: mode or selection do not fit", ""},
    {Place::kQuickEndViewport, "quick transform 6: ends in a view", ""},
    {Place::kQuickCancel, "quick transform 6: Shift and right cancel", ""},
    {Place::kQuickEndTrackView, "quick transform 7: ends in the Track View", ""},
    {Place::kQuickEndUnwrap, "quick transform 7: ends in Unwrap UVW", ""},
    {Place::kQuickEndOtherEditor, "quick transform 7: released over another editor", ""},
    {Place::kQuickEndOther, "quick transform 7: released over another window", ""},
    {Place::kQuickMoveTrackView, "mouse 12: Shift moves a quick transform in the Track View", ""},
    {Place::kRelease1, "release row 1: orbit, right held, left", ""},
    {Place::kRelease2, "release row 2: pan, right held, middle", ""},
    {Place::kRelease3, "release row 3: zoom, left and middle held, middle", ""},
    {Place::kRelease4, "release row 4: zoom, left and right held, right", ""},
    {Place::kRelease5, "release row 5: zoom, middle and left held, left", ""},
    {Place::kRelease6, "release row 6: zoom, middle and right held, right", ""},
    {Place::kRelease7, "release row 7: zoom, right held, right", ""},
    {Place::kRelease8, "release row 8: refused, right held, right", ""},
    {Place::kRelease9, "release row 9: pan or refused, middle", ""},
    {Place::kRelease10, "release row 10: orbit or refused, left", ""},
    {Place::kRelease11, "release row 11: zoom, right held, left or middle", ""},
    {Place::kRelease12, "release row 12: refused, pan or orbit, right", ""},
    {Place::kRelease13, "release row 13: refused, left", ""},
    {Place::kReleaseNone, "release: no row applies", ""},
    {Place::kStartOrbitViewport, "StartOrbit in a view", ""},
    {Place::kStartOrbitRefused, "StartOrbit in a view that must not be orbited", ""},
    {Place::kStartOrbitLocked, "StartOrbit in a locked view", ""},
    {Place::kStartOrbitEditor, "StartOrbit in an editor", ""},
    {Place::kStartPanViewport, "StartPan in a view", ""},
    {Place::kStartPanLocked, "StartPan in a locked view", ""},
    {Place::kStartPanEditor, "StartPan in an editor", ""},
    {Place::kStartZoomViewport, "StartZoom in a view", ""},
    {Place::kStartZoomLocked, "StartZoom in a locked view", ""},
    {Place::kStartZoomEditor, "StartZoom in an editor", ""},
    {Place::kOrbitToZoomViewport, "OrbitToZoom in a view", ""},
    {Place::kOrbitToZoomLocked, "OrbitToZoom in a locked view", ""},
    {Place::kOrbitToZoomEditor, "OrbitToZoom in an editor", ""},
    {Place::kPanToZoomViewport, "PanToZoom in a view", ""},
    {Place::kPanToZoomLocked, "PanToZoom in a locked view", ""},
    {Place::kPanToZoomEditor, "PanToZoom in an editor", ""},
    {Place::kZoomToPanViewport, "ZoomToPan in a view", ""},
    {Place::kZoomToPanLocked, "ZoomToPan in a locked view", ""},
    {Place::kZoomToPanEditor, "ZoomToPan in an editor", ""},
    {Place::kZoomToOrbitViewport, "ZoomToOrbit in a view", ""},
    {Place::kZoomToOrbitRefused, "ZoomToOrbit in a view that must not be orbited", ""},
    {Place::kZoomToOrbitLocked, "ZoomToOrbit in a locked view", ""},
    {Place::kZoomToOrbitEditor, "ZoomToOrbit in an editor", ""},
    {Place::kEndZoomViewport, "EndZoom in a view", ""},
    {Place::kEndZoomLocked, "EndZoom in a locked view", ""},
    {Place::kEndZoomEditor, "EndZoom in an editor", ""},
    {Place::kEndPanViewport, "EndPan in a view", ""},
    {Place::kEndPanLocked, "EndPan in a locked view", ""},
    {Place::kEndPanEditor, "EndPan in an editor", ""},
    {Place::kEndOrbitViewport, "EndOrbit in a view", ""},
    {Place::kEndOrbitRefused, "EndOrbit in a view that must not be orbited", ""},
    {Place::kEndOrbitLocked, "EndOrbit in a locked view", ""},
    {Place::kEndOrbitEditor, "EndOrbit in an editor", ""},
    {Place::kUnlockByLeft, "release row 13: the refusal ends", ""},
    {Place::kUnlockIntoZoom, "release row 13: right held, goes on as zoom", ""},
    {Place::kMoveOrbit, "mouse 14.1: move during an orbit", ""},
    {Place::kMovePanViewport, "mouse 14.2: move during a pan in a view", ""},
    {Place::kMovePanEditor, "mouse 14.2: move during a pan in an editor", ""},
    {Place::kMovePanNowhere, "mouse 14.2: move during a pan that began in no view or editor", ""},
    {Place::kMoveLocked, "mouse 14.2: move during a refused gesture", ""},
    {Place::kMoveLockedPan, "mouse 14.2: the same, a pan from elsewhere being on", ""},
    {Place::kMoveLockedPanZoom, "mouse 14.2, 14.3: the same, a zoom being on as well", ""},
    {Place::kZoomFirst, "zoom drag 1: the first move", ""},
    {Place::kZoomFirstAtEdge, "zoom drag 1: the first move, at an edge", ""},
    {Place::kZoomWarpBack, "zoom drag 2: the cursor goes back", ""},
    {Place::kZoomWarpSideways, "zoom drag 2: the cursor goes back along the edge", ""},
    {Place::kZoomWrapTop, "zoom drag 3: the top edge", ""},
    {Place::kZoomWrapBottom, "zoom drag 3: the bottom edge", ""},
    {Place::kZoomMarkWarp, "zoom drag 5: near an edge", ""},
    {Place::kZoomEditorRestart, "zoom drag 5: an editor's drag starts again", ""},
    {Place::kZoomMoveViewport, "zoom drag 6: a view", ""},
    {Place::kZoomMoveEditor, "zoom drag 6: an editor", ""},
    {Place::kZoomMoveLocked, "zoom drag 6: a locked view", ""},
    {Place::kSelectNotNow, "mouse 15: mode or brush do not allow clicks of ours", ""},
    {Place::kSelectAlt, "selection 1: Alt", ""},
    {Place::kSelectCtrl, "selection 2: Ctrl becomes Alt", ""},
    {Place::kSelectCtrlRight, "selection 2: the right Ctrl", ""},
    {Place::kSelectCtrlBoth, "selection 2: both Ctrl keys", ""},
    {Place::kSelectCtrlSwapped, "selection 2: with swapped buttons", ""},
    {Place::kSelectReplayArrives, "selection 2: the replayed press arrives", ""},
    {Place::kSelectReplayAgain, "selection 2: the replayed press arrives as a second one", ""},
    {Place::kSelectPressBehind, "selection 2: a press is put behind the replayed one", ""},
    {Place::kSelectReleaseBehind, "selection 7: a release is put behind the replayed press", ""},
    {Place::kSelectPlain, "selection 2: no Shift", ""},
    {Place::kSelectShiftEditor, "selection 3: Shift in an editor", ""},
    {Place::kSelectCtrlShiftEditor, "selection 5: Ctrl and Shift in an editor", ""},
    {Place::kSelectPushed, "selection 4: the select button is active", ""},
    {Place::kSelectNotPushed, "selection 4: the select button is not active", ""},
    {Place::kSelectNoButton, "selection 4: there is no select button", ""},
    {Place::kSelectUndoRecord, "selection 4, 6: an undo record of objects", ""},
    {Place::kSelectEndCtrl, "selection 7: release after Ctrl", ""},
    {Place::kSelectEndPop, "selection 7: release leaves the select mode", ""},
    {Place::kSelectEndNoPop, "selection 7: release with no mode to leave", ""},
    {Place::kSelectMoveOff, "selection 8: menu, right button or no cursors wanted", ""},
    {Place::kSelectMovePlain, "selection 8: no cursor and no Alt", ""},
    {Place::kSelectMoveEditor, "selection 8: Shift alone in an editor", ""},
    {Place::kSelectMoveButton, "selection 8: Shift alone, the select button is not active", ""},
    {Place::kSelectMove, "selection 8: the move is sent on", ""},
    {Place::kSecondPressTaken, "the second press of a double click is taken for a press", ""},
    {Place::kSecondPressPasses, "the second press of a double click passes", ""},
    {Place::kBetween, "an event comes in between while a window handles a message", ""},
    {Place::kMousePass, "mouse 16: passed on", ""},
    {Place::kKeyOff, "key 1: navigation is off", ""},
    {Place::kKeyLock, "key 2: a release ends the held lock", ""},
    {Place::kKeyNudge, "key 3: a release ends a nudge series", ""},
    {Place::kKeyRepeat, "key 4: a press while something is held", ""},
    {Place::kKeyAltHeld, "key 5: Alt comes up during a gesture", ""},
    {Place::kKeyScrubOff, "key 6: the armed scrub ends", ""},
    {Place::kKeyScrubLater, "key 6: the scrub's key comes up during the drag", ""},
    {Place::kKeySnap, "key 7: the held snap ends", ""},
    {Place::kKeyCursorButton, "key 8: not while a button is down", ""},
    {Place::kKeyCursorSchematic, "key 8.2: the arrow over a schematic view", ""},
    {Place::kKeyCursorEditor, "key 8.3: the arrow over another editor, Shift alone", ""},
    {Place::kKeyCursorNoSelect, "key 8.4: the arrow, Shift alone, the select button is off", ""},
    {Place::kKeyCursorElsewhere, "key 8.5: window or mode have no cursors of ours", ""},
    {Place::kKeyCursorOwn, "key 8.5: a cursor of ours", ""},
    {Place::kKeyCursorArrow, "key 8.5: the arrow, no modifier is left", ""},
    {Place::kKeyPass, "key 9: passed on", ""},
    {Place::kZoomButtonWindows, "handlers in a window with Zoom and Pan buttons of its own",
     "no window is recognised as one"},
};
static_assert(std::size(kRows) == kPlaces, "each Place of hook_model.h has its name in kRows");

constexpr bool InOrder() {
    for (int i = 0; i < kPlaces; ++i)
        if (static_cast<int>(kRows[i].place) != i) return false;
    return true;
}
static_assert(InOrder(), "the names in kRows stand in the order of Place in hook_model.h");

}  // namespace

std::string_view NameOf(Place place) {
    return kRows[static_cast<size_t>(place)].name;
}

std::string_view WhyNever(Place place) {
    return kRows[static_cast<size_t>(place)].why_never;
}

std::string_view FirstDifference(const State& expected, const State& got, int* wanted, int* is) {
    struct Field {
        std::string_view name;
        int State::* value;
    };
    static constexpr Field kFields[] = {
        {"g_orbitActive", &State::orbit},
        {"g_zoomActive", &State::zoom},
        {"g_panActive", &State::pan},
        {"g_navLocked", &State::locked},
        {"g_navKind", &State::kind},
        {"g_heldButtons", &State::held},
        {"g_quickXform", &State::quick},
        {"g_shiftClone", &State::clone},
        {"g_selCtrl", &State::sel_ctrl},
        {"g_selShift", &State::sel_shift},
        {"g_selCtrlShift", &State::sel_ctrl_shift},
        {"g_selectNotPushed", &State::not_pushed},
        {"g_replayWaits", &State::waits},
        {"g_sculptRedirect", &State::redirect},
        {"g_scrubState", &State::scrub},
        {"g_scrubWrapped", &State::scrub_wrapped},
        {"g_altUpPending", &State::alt_owed},
        {"g_selectionLockRequests", &State::requests},
        {"g_heldSnapSticky", &State::snap},
        {"g_nudgeActive", &State::nudge},
        {"g_zoomWarp", &State::zoom_warp},
    };
    for (const Field& field : kFields) {
        if (expected.*field.value == got.*field.value) continue;
        *wanted = expected.*field.value;
        *is = got.*field.value;
        return field.name;
    }
    struct PointField {
        std::string_view x, y;
        Point State::* value;
    };
    static constexpr PointField kPoints[] = {
        {"g_zoomLast.x", "g_zoomLast.y", &State::zoom_last},
        {"g_zoomVirtual.x", "g_zoomVirtual.y", &State::zoom_virtual},
    };
    for (const PointField& field : kPoints) {
        const Point a = expected.*field.value;
        const Point b = got.*field.value;
        if (a == b) continue;
        *wanted = a.x != b.x ? a.x : a.y;
        *is = a.x != b.x ? b.x : b.y;
        return a.x != b.x ? field.x : field.y;
    }
    return {};
}

std::string_view NameOf(Message message) {
    switch (message) {
        case Message::kOther: return "another message";
        case Message::kMove: return "WM_MOUSEMOVE";
        case Message::kLeftDown: return "WM_LBUTTONDOWN";
        case Message::kLeftUp: return "WM_LBUTTONUP";
        case Message::kRightDown: return "WM_RBUTTONDOWN";
        case Message::kRightUp: return "WM_RBUTTONUP";
        case Message::kMiddleDown: return "WM_MBUTTONDOWN";
        case Message::kMiddleUp: return "WM_MBUTTONUP";
        case Message::kLeftAgain: return "WM_LBUTTONDBLCLK";
        case Message::kRightAgain: return "WM_RBUTTONDBLCLK";
        case Message::kMiddleAgain: return "WM_MBUTTONDBLCLK";
    }
    return {};
}

// --- the mouse hook ---

// Events come in between, and then this one goes on with what they have left.
Outcome Model::Mouse(const MouseFacts& facts, const WhileSending& while_sending) {
    Outcome outer = std::exchange(outcome_, {});
    const WhileSending* const outer_sending = std::exchange(while_sending_, &while_sending);
    const int outer_sent = std::exchange(buttons_sent_, 0);
    outcome_.swallowed = Steps(facts);
    if (IsAgain(facts.message))
        Visit(outcome_.swallowed ? Place::kSecondPressTaken : Place::kSecondPressPasses);
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
        Visit(Place::kMouseOff);
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
    if (Pressed(facts.message) && !state_.quick && facts.kind != kOtherWindow && facts.alt &&
        !facts.ctrl)
        press = Press(facts);
    if (press == Answer::kConsumed) return true;
    if (!press)
        if (const std::optional<bool> verdict = Quick(facts)) return *verdict;
    if (!state_.quick && Released(facts.message)) {
        outcome_.came_to_release_rules = true;
        if (Release(facts)) return true;
    }
    if (facts.message == Message::kMove && state_.Gesture()) return Move(facts);
    if (!state_.quick && !state_.Drags() && facts.kind != kOtherWindow &&
        facts.kind != kSchematic && Select(facts))
        return true;
    Visit(Place::kMousePass);
    return false;
}

std::optional<bool> Model::Redirect(const MouseFacts& facts) {
    if (IsView(facts.kind)) {
        if (Pressed(facts.message) == kMiddleBit && !facts.alt &&
            (facts.mode == 9247 || facts.brush)) {
            Visit(Place::kRedirectStart);
            state_.redirect = 1;
            Inject(facts.swapped ? "alt-down right-down" : "alt-down left-down");
            return true;
        }
        if (facts.message == Message::kMiddleUp && state_.redirect) {
            Visit(Place::kRedirectEnd);
            Inject(facts.swapped ? "right-up alt-up" : "left-up alt-up");
            state_.redirect = 0;
            return true;
        }
    }
    if (!state_.redirect) return {};
    Visit(Place::kRedirectPass);
    return false;
}

bool Model::Scrub(const MouseFacts& facts) {
    const bool up = Released(facts.message) != 0;
    const bool move = facts.message == Message::kMove;
    const int pressed = Pressed(facts.message);
    if (!state_.scrub) return false;
    if (!facts.thumb && (pressed || (state_.scrub >= 2 && (up || move))))
        Visit(Place::kScrubNoThumb);
    if (state_.scrub >= 2 && (up || move) && facts.thumb) {
        if (facts.at.x <= kEdge || facts.at.x >= facts.screen.x - kEdge) {
            Visit(facts.at.x <= kEdge ? Place::kScrubWrapLeft : Place::kScrubWrapRight);
            state_.scrub_wrapped = 1;
            return true;
        }
        if (state_.scrub_wrapped) {
            Visit(Place::kScrubAnchor);
            state_.scrub_wrapped = 0;
            return true;
        }
        if (move) {
            Visit(Place::kScrubMove);
            Send(Message::kMove, kLeftBit);
            return true;
        }
        Visit(facts.message == Message::kLeftUp    ? Place::kScrubEndLeft
              : facts.message == Message::kRightUp ? Place::kScrubEndRight
                                                   : Place::kScrubEndMiddle);
        if (state_.scrub == 3) Visit(Place::kScrubEndKeyGone);
        state_.scrub = state_.scrub == 3 ? 0 : 1;
        Send(facts.message == Message::kRightUp ? Message::kRightUp : Message::kLeftUp, 0);
        return true;
    }
    if (pressed && facts.thumb) {
        Visit(pressed == kLeftBit    ? Place::kScrubStartLeft
              : pressed == kRightBit ? Place::kScrubStartRight
                                     : Place::kScrubStartMiddle);
        state_.scrub = 2;
        if (pressed == kRightBit)
            Send(Message::kRightDown, kRightBit);
        else
            Send(Message::kLeftDown, kLeftBit);
        return true;
    }
    if (state_.scrub == 1 && move) {
        Visit(Place::kScrubHover);
        Send(Message::kMove, 0);
        return true;
    }
    return false;
}

std::optional<Model::Answer> Model::Press(const MouseFacts& facts) {
    const int button = Pressed(facts.message);
    const int flags = FlagsOf(state_) | (facts.mode == 65743 ? kMiddleClickMode : 0);
    for (int i = 0; i < static_cast<int>(std::size(kPressRows)); ++i) {
        const Row& row = kPressRows[i];
        if (!Applies(row, flags, state_.held, button, facts.options)) continue;
        Visit(Plus(Place::kPress1, i));
        outcome_.press_row = i + 1;
        outcome_.used_bits |= row.bits;
        outcome_.own_bit = button;
        state_.held |= button;
        if (row.handler == Handler::kNone) {
            Send(Message::kMiddleDown, 0);
            Send(Message::kMiddleUp, 0);
            return Answer::kConsumed;
        }
        return Call(row.handler, facts);
    }
    Visit(button == kLeftBit && !state_.sel_ctrl && !facts.options.left_orbit ? Place::kPressLeftOff
                                                                              : Place::kPressNone);
    return {};
}

std::optional<bool> Model::Quick(const MouseFacts& facts) {
    const bool wanted = facts.options.quick || (facts.options.clone && facts.shift);
    if (Pressed(facts.message) == kMiddleBit && wanted) {
        if (state_.quick) {
            Visit(Place::kQuickRunning);
            return {};
        }
        const bool editor = facts.kind == kTrackView || facts.kind == kUnwrap;
        if (IsView(facts.kind)) {
            if (facts.selected == 0 || !facts.mode || !IsTransform(*facts.mode)) {
                Visit(Place::kQuickRefused);
                return {};
            }
            outcome_.quick_begins = true;
            state_.quick = 1;
            state_.requests |= 1;
            if (facts.shift && facts.options.clone) {
                Visit(Place::kQuickStartClone);
                state_.clone = 1;
                Send(Message::kLeftDown, kShiftKey);
            } else {
                Visit(Place::kQuickStartViewport);
                Send(Message::kLeftDown, 0);
            }
            return true;
        }
        if (editor && !facts.edit_mode) Visit(Place::kQuickRefused);
        if (!editor || !facts.edit_mode) return {};
        Visit(facts.kind == kTrackView ? Place::kQuickStartTrackView : Place::kQuickStartUnwrap);
        state_.quick = 1;
        Send(Message::kLeftDown, 0);
        return true;
    }
    if (!state_.quick) return {};
    const bool cancel = facts.message == Message::kRightDown && facts.shift;
    if (facts.message == Message::kMiddleUp || cancel) {
        if (IsView(facts.kind)) {
            Visit(cancel ? Place::kQuickCancel : Place::kQuickEndViewport);
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
                Visit(facts.kind == kTrackView ? Place::kQuickEndTrackView
                                               : Place::kQuickEndUnwrap);
                state_.quick = 0;
                Send(Message::kLeftUp, 0);
                return true;
            case kOtherWindow: Visit(Place::kQuickEndOther); return {};
            default: Visit(Place::kQuickEndOtherEditor); return true;
        }
    }
    if (facts.message == Message::kMove && facts.shift && facts.kind == kTrackView) {
        Visit(Place::kQuickMoveTrackView);
        Send(Message::kMove, kLeftBit | kCtrlKey);
        return true;
    }
    return {};
}

bool Model::Release(const MouseFacts& facts) {
    const int button = Released(facts.message);
    bool any = false;
    for (int i = 0; i < static_cast<int>(std::size(kReleaseRows)); ++i) {
        const Row& row = kReleaseRows[i];
        if (!Applies(row, FlagsOf(state_), state_.held, button, facts.options)) continue;
        any = true;
        Visit(Plus(Place::kRelease1, i));
        outcome_.release_row = i + 1;
        outcome_.used_bits |= row.bits;
        outcome_.own_bit = button;
        state_.held &= ~button;
        const int number = i + 1;
        Answer answer = Answer::kConsumed;
        if (number == kUnlock)
            answer = Unlock(facts);
        else if (row.handler != Handler::kNone)
            answer = Call(row.handler, facts);
        if (answer == Answer::kConsumed) return true;
    }
    if (!any) Visit(Place::kReleaseNone);
    return false;
}

Model::Answer Model::Unlock(const MouseFacts& facts) {
    if (facts.options.right_zoom && (state_.held & kRightBit)) {
        Visit(Place::kUnlockIntoZoom);
        outcome_.used_bits |= kRightBit;
        return Call(Handler::kOrbitToZoom, facts);
    }
    Visit(Place::kUnlockByLeft);
    state_.locked = 0;
    return Answer::kConsumed;
}

void Model::BeginZoom() {
    state_.zoom = 1;
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
Model::Answer Model::Call(Handler handler, const MouseFacts& facts) {
    outcome_.handler = handler;
    const bool starts = handler == Handler::kStartOrbit || handler == Handler::kStartPan ||
                        handler == Handler::kStartZoom;
    const int kind = starts ? facts.kind : state_.kind;
    const int column = kind == kViewport ? 0 : kind == kLockedViewport ? 1 : 2;
    // No gesture has begun yet, or the window is none of those.
    if (kind == kOtherWindow) return Answer::kOn;
    const auto visit = [this, column](Place in_view, Place in_locked, Place in_editor) {
        Visit(column == 0 ? in_view : column == 1 ? in_locked : in_editor);
    };
    const auto lock = [this, kind] {
        state_.kind = kind;
        state_.locked = 1;
        return Answer::kConsumed;
    };
    switch (handler) {
        case Handler::kNone: break;
        case Handler::kStartOrbit:
            if (column == 0 && !facts.orbit_allowed)
                Visit(Place::kStartOrbitRefused);
            else
                visit(Place::kStartOrbitViewport, Place::kStartOrbitLocked,
                      Place::kStartOrbitEditor);
            if (column == 2) return Answer::kOn;
            if (column == 1 || !facts.orbit_allowed) {
                outcome_.orbit_refused = true;
                return lock();
            }
            state_.kind = kind;
            state_.orbit = 1;
            Send(Message::kMiddleDown, 0);
            return Answer::kConsumed;
        case Handler::kStartPan:
            visit(Place::kStartPanViewport, Place::kStartPanLocked, Place::kStartPanEditor);
            if (column == 1) return lock();
            state_.kind = kind;
            state_.pan = 1;
            if (column == 0) Send(Message::kLeftDown, kCtrlKey);
            return column == 0 ? Answer::kConsumed : Answer::kOn;
        case Handler::kStartZoom:
            visit(Place::kStartZoomViewport, Place::kStartZoomLocked, Place::kStartZoomEditor);
            if (column == 1) return lock();
            state_.kind = kind;
            BeginZoom();
            Send(column == 0 ? Message::kLeftDown : Message::kMiddleDown, kCtrlKey);
            return Answer::kConsumed;
        case Handler::kOrbitToZoom:
            visit(Place::kOrbitToZoomViewport, Place::kOrbitToZoomLocked,
                  Place::kOrbitToZoomEditor);
            if (column == 1) return Answer::kConsumed;
            state_.locked = 0;
            state_.orbit = 0;
            BeginZoom();
            Send(Message::kMiddleUp, 0);
            Send(column == 0 ? Message::kLeftDown : Message::kMiddleDown, kCtrlKey);
            return Answer::kConsumed;
        case Handler::kPanToZoom:
            visit(Place::kPanToZoomViewport, Place::kPanToZoomLocked, Place::kPanToZoomEditor);
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
        case Handler::kZoomToPan:
            visit(Place::kZoomToPanViewport, Place::kZoomToPanLocked, Place::kZoomToPanEditor);
            if (column == 1) return Answer::kOn;
            state_.zoom = 0;
            state_.pan = 1;
            Send(column == 0 ? Message::kLeftUp : Message::kMiddleUp, 0);
            Send(column == 0 ? Message::kLeftDown : Message::kMiddleDown, 0);
            return Answer::kConsumed;
        case Handler::kZoomToOrbit:
            if (column == 0 && !facts.orbit_allowed)
                Visit(Place::kZoomToOrbitRefused);
            else
                visit(Place::kZoomToOrbitViewport, Place::kZoomToOrbitLocked,
                      Place::kZoomToOrbitEditor);
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
        case Handler::kEndZoom:
            visit(Place::kEndZoomViewport, Place::kEndZoomLocked, Place::kEndZoomEditor);
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
        case Handler::kEndPan:
            visit(Place::kEndPanViewport, Place::kEndPanLocked, Place::kEndPanEditor);
            if (column == 1) {
                state_.locked = 0;
                return Answer::kConsumed;
            }
            state_.pan = 0;
            if (column == 0) EndView();
            PayAlt();
            return column == 0 ? Answer::kConsumed : Answer::kOn;
        case Handler::kEndOrbit:
            if (column == 0 && !facts.orbit_allowed)
                Visit(Place::kEndOrbitRefused);
            else
                visit(Place::kEndOrbitViewport, Place::kEndOrbitLocked, Place::kEndOrbitEditor);
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
    }
    return Answer::kOn;
}

bool Model::Move(const MouseFacts& facts) {
    if (state_.orbit) {
        Visit(Place::kMoveOrbit);
        return false;
    }
    if (state_.pan && state_.kind == kViewport) {
        Visit(Place::kMovePanViewport);
        Send(Message::kMove, kLeftBit | kCtrlKey);
        return true;
    }
    if (state_.pan && IsEditor(state_.kind)) {
        Visit(Place::kMovePanEditor);
        return false;
    }
    if (state_.locked) {
        if (state_.pan && state_.zoom) {
            Visit(Place::kMoveLockedPanZoom);
            ZoomMove(facts);
        } else {
            Visit(state_.pan ? Place::kMoveLockedPan : Place::kMoveLocked);
        }
        return true;
    }
    if (!state_.zoom) {
        Visit(Place::kMovePanNowhere);
        return false;
    }
    return ZoomMove(facts);
}

bool Model::ZoomMove(const MouseFacts& facts) {
    const Point cursor = facts.cursor;
    const Point screen = facts.screen;
    if (state_.zoom_virtual == Point{-1, -1}) {
        const bool inside = IsInside(cursor, screen);
        Visit(inside ? Place::kZoomFirst : Place::kZoomFirstAtEdge);
        if (inside) state_.zoom_last = state_.zoom_virtual = cursor;
        return false;
    }
    if (state_.zoom_warp) {
        state_.zoom_warp = 0;
        state_.zoom_virtual = cursor;
        const bool inside = IsInside(state_.zoom_last, screen);
        Visit(inside ? Place::kZoomWarpBack : Place::kZoomWarpSideways);
        if (!inside) state_.zoom_last.x = cursor.x;
        return true;
    }
    const bool view = state_.kind == kViewport;
    if (view && cursor.y < 3) {
        Visit(Place::kZoomWrapTop);
        state_.zoom_last = {cursor.x, screen.y - 20};
        return true;
    }
    if (view && cursor.y >= screen.y - 2) {
        Visit(Place::kZoomWrapBottom);
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
            Visit(Place::kZoomMarkWarp);
            state_.zoom_warp = 1;
        }
        Visit(Place::kZoomMoveViewport);
        Send(Message::kMove, facts.options.slow_zoom ? kLeftBit : kLeftBit | kCtrlKey);
        return true;
    }
    if (!IsEditor(state_.kind)) {
        Visit(Place::kZoomMoveLocked);
        return true;
    }
    if (y < 1 || y >= screen.y) {
        Visit(Place::kZoomEditorRestart);
        state_.zoom_virtual = {cursor.x, screen.y / 2};
        Send(Message::kMiddleUp, 0);
        Send(Message::kMiddleDown, kMiddleBit | kCtrlKey);
        return true;
    }
    Visit(Place::kZoomMoveEditor);
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
        Visit(Place::kSelectNotNow);
        return false;
    }
    if (press) return SelectPress(facts);
    if (release) return SelectRelease(facts);
    if (facts.on_menu || facts.right_down || !facts.options.cursors) {
        Visit(Place::kSelectMoveOff);
        return false;
    }
    const bool by_key = (facts.shift || facts.ctrl) && !facts.alt;
    const bool cursor = facts.cursors_load && (state_.Selecting() || by_key || state_.locked);
    if (!cursor && !facts.alt) {
        Visit(Place::kSelectMovePlain);
        return false;
    }
    if (!facts.ctrl && facts.shift) {
        if (IsEditor(facts.kind)) {
            Visit(Place::kSelectMoveEditor);
            return false;
        }
        if (facts.select_button == false) {
            Visit(Place::kSelectMoveButton);
            return false;
        }
    }
    Visit(Place::kSelectMove);
    Send(Message::kMove, kAnyKeys);
    return true;
}

// The first press that has seen the injected Alt is the replayed one.
void Model::NoteReplay(const MouseFacts& facts) {
    if (!state_.waits || !facts.alt_before) return;
    Visit(facts.message == Message::kLeftAgain ? Place::kSelectReplayAgain
                                               : Place::kSelectReplayArrives);
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
    Visit(side == 0   ? Place::kSelectCtrl
          : side == 1 ? Place::kSelectCtrlRight
                      : Place::kSelectCtrlBoth);
    if (facts.swapped) Visit(Place::kSelectCtrlSwapped);
    state_.sel_ctrl = 1;
    Inject(kRecords[facts.swapped][side]);
    state_.waits = facts.input_is_taken ? kMostBehind : 0;
}

bool Model::SelectRelease(const MouseFacts& facts) {
    if (state_.sel_ctrl) {
        if (state_.waits && PutBehind(facts.swapped ? "right-up" : "left-up", facts)) {
            Visit(Place::kSelectReleaseBehind);
            return true;
        }
        Visit(Place::kSelectEndCtrl);
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
    Visit(state_.not_pushed ? Place::kSelectEndNoPop : Place::kSelectEndPop);
    state_.not_pushed = 0;
    return true;
}

bool Model::SelectPress(const MouseFacts& facts) {
    NoteReplay(facts);
    if (state_.waits && PutBehind(facts.swapped ? "right-down" : "left-down", facts)) {
        Visit(Place::kSelectPressBehind);
        return true;
    }
    if (facts.alt) {
        Visit(Place::kSelectAlt);
        return false;
    }
    if (!facts.shift) {
        if (!facts.ctrl || state_.sel_ctrl) {
            Visit(Place::kSelectPlain);
            return false;
        }
        ReplayWithAlt(facts);
        return true;
    }
    (facts.ctrl ? state_.sel_ctrl_shift : state_.sel_shift) = 1;
    outcome_.shift_click = true;
    if (IsEditor(facts.kind)) {
        if (state_.sel_shift) {
            Visit(Place::kSelectShiftEditor);
            state_.sel_shift = 0;
            return false;
        }
        Visit(Place::kSelectCtrlShiftEditor);
        Send(Message::kLeftDown, kCtrlKey);
        return true;
    }
    if (!facts.select_button) {
        Visit(Place::kSelectNoButton);
    } else if (*facts.select_button) {
        Visit(Place::kSelectPushed);
    } else {
        Visit(Place::kSelectNotPushed);
        state_.not_pushed = 1;
    }
    if (state_.sel_ctrl_shift && !facts.subobject) Visit(Place::kSelectUndoRecord);
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
        Visit(Place::kKeyCursorSchematic);
        return kArrow;
    }
    const bool shift_alone = facts.shift && !facts.ctrl;
    if (shift_alone && IsEditor(facts.kind)) {
        Visit(Place::kKeyCursorEditor);
        return kArrow;
    }
    if (shift_alone && facts.select_button == false) {
        Visit(Place::kKeyCursorNoSelect);
        return kArrow;
    }
    if (facts.kind == kOtherWindow || !facts.mode || IsOneOf(*facts.mode, 66510, 69632, 69633) ||
        ((*facts.mode < 1 || *facts.mode > 12) && !facts.subobject)) {
        Visit(Place::kKeyCursorElsewhere);
        return 0;
    }
    const int cursor = ChosenCursor(facts.alt, facts.ctrl, facts.shift);
    Visit(cursor ? Place::kKeyCursorOwn : Place::kKeyCursorArrow);
    return cursor ? cursor : kArrow;
}

Outcome Model::Key(const KeyFacts& facts) {
    Outcome outcome;
    if (!facts.navigation) {
        Visit(Place::kKeyOff);
        return outcome;
    }
    if (facts.up) {
        if (state_.requests & 4) Visit(Place::kKeyLock);
        state_.requests &= ~4;
        if (state_.nudge) Visit(Place::kKeyNudge);
        state_.nudge = 0;
        if (facts.key == KeyFacts::Key::kAlt && state_.Drags()) {
            Visit(Place::kKeyAltHeld);
            state_.alt_owed = 1;
            outcome.injected.push_back("alt-down");
            outcome.swallowed = true;
            return outcome;
        }
        if (state_.scrub) {
            Visit(state_.scrub == 2 ? Place::kKeyScrubLater : Place::kKeyScrubOff);
            state_.scrub = state_.scrub == 2 ? 3 : 0;
            outcome.swallowed = true;
            return outcome;
        }
        if (state_.snap) {
            Visit(Place::kKeySnap);
            state_.snap = 0;
            outcome.swallowed = true;
            return outcome;
        }
    } else if (state_.scrub || state_.snap || (state_.requests & 4)) {
        Visit(Place::kKeyRepeat);
        outcome.swallowed = true;
        return outcome;
    }
    if (facts.key != KeyFacts::Key::kOther && !state_.quick && facts.cursors) {
        if (facts.any_button)
            Visit(Place::kKeyCursorButton);
        else
            outcome.cursor = ModifierCursor(facts);
    }
    Visit(Place::kKeyPass);
    return outcome;
}

}  // namespace hook_model
