#include "tests/walks/exemptions.h"

#include <iterator>

namespace exemptions {
namespace {

using hook_model::Handler;
using hook_model::Message;
using hook_model::MouseFacts;
using hook_model::Outcome;
using hook_model::State;

constexpr Text kTexts[] = {
    {"navigation off", "a button or key comes up while navigation is off",
     "with navigation off nothing is looked at, so what went on goes on"},
    {"border", "a button comes up over a caption, a border or the menu bar",
     "that is another message, which no rule knows"},
    {"unseen", "a button comes up over a window of another program",
     "the hooks are only asked about windows of the host"},
    {"brush takes", "a button comes up while the middle button stands for Alt and left",
     "everything passes meanwhile"},
    {"scrub takes", "a button comes up that the time slider takes",
     "the scrub comes before all gestures"},
    {"quick transform takes", "a button comes up while a quick transform runs",
     "the release rules rest meanwhile"},
    {"gesture takes", "the left button comes up while an orbit, zoom or pan runs",
     "emulated clicks rest meanwhile"},
    {"other window", "the button comes up over a window that does not end what runs",
     "a quick transform ends in a view or in its editor only, an emulated click in no schematic "
     "view and no plain window"},
    {"mode forbids", "the left button comes up in a mode, or with a brush, without emulated clicks",
     "the mode is asked at the release again"},
    {"stray bit", "a row applies for the bit of a button that is up",
     "a release that no row looks at leaves its bit behind: Alt clicks that began nothing, the "
     "first press row, a release in a pan of another button"},
    {"no row", "the last button comes up and no row ends the gesture",
     "the rows look at bits, not at buttons"},
    {"right zoom off", "a gesture of the right button ends with Alt + right zoom off",
     "all rows of the right button rest while it is off"},
    {"end of orbit refused", "an orbit's button comes up over a view that may not be orbited",
     "it is taken for a refused orbit, which needs no end"},
    {"second gesture", "a gesture starts while another one runs",
     "the starting rows look at what is left of a gesture only in part"},
    {"chord refused", "a zoom becomes an orbit where the view may not be orbited, Alt being owed",
     "a refused gesture pays no Alt back"},
    {"editor's chord", "a chord ends an editor's zoom, Alt being owed",
     "that end pays no Alt back"},
    {"pan below", "a pan in a view becomes a zoom", "the pan mode stays below the zoom mode"},
    {"second resume", "a refused gesture in a view ends like a zoom or pan",
     "its end resumes the tool once more and pops a mode"},
    {"click pops", "a Ctrl + Shift click in an editor", "it pushes no mode, but its end pops one"},
    {"brush begins", "a brush is brought back whose button shows it, but whose mode did not run",
     "the click on its button begins its mode"},
    {"empty stack", "a mode is entered while the host runs none",
     "a mode is left only where another one lies below"},
    {"host leaves", "a right click makes the host leave the mode of a gesture that still runs",
     "the gesture's end leaves one more, whichever that is"},
    {"scrub at the edge", "the scrub's button comes up at an edge or right after one",
     "the edge comes first and takes the event"},
    {"no thumb", "the time slider's thumb is gone while a scrub runs",
     "without it a scrub goes nowhere"},
    {"lock kept", "a quick transform that began in a view ends in an editor",
     "the end in an editor gives no lock back"},
    {"gizmo's option", "the gizmo's option or state changed while it was hidden",
     "it is brought back only when it was there"},
    {"nudge under lock", "the selection is nudged while the sticky lock is held",
     "the nudge gives the lock back, and not the gizmo that the lock has hidden"},
    {"hidden twice", "the gizmo is hidden for a second reason while it is hidden for a first",
     "there is one place to remember whether it showed, and the second one finds it hidden"},
    {"release kept", "a button's press passed and its release is swallowed",
     "a gesture that began in between takes the release for its own"},
    {"two held", "a key comes up while both a snap and a scrub are held",
     "one release ends one of them"},
    {"in between",
     "a window dispatches other events while it handles what a gesture, the start of a "
     "quick transform or a Shift click sends",
     "each goes by the state that it finds; then the gesture goes on as it had begun to, the quick "
     "transform hides the gizmo, and the click's end forgets the next click"},
    {"lock button gone", "the toolbar loses its lock button while the lock is asked for",
     "without the button nobody can tell whether the lock is on, and it is left alone"},
    {"stuck action", "the host's action does not do what it says",
     "after some tries it is left alone"},
    {"fault", "a call that sends input or changes the mode fails",
     "what did not arrive cannot be undone"},
};
static_assert(std::size(kTexts) == kExemptions);

constexpr std::string_view kCheckTexts[][2] = {
    {"gesture", "a gesture is still active"},
    {"two gestures", "more than one of orbit, zoom and pan is active"},
    {"quick transform", "a quick transform is still active"},
    {"emulated click", "an emulated click is still active"},
    {"scrub", "a scrub is still active"},
    {"Alt owed", "an Alt key-up is still owed"},
    {"keys down", "a key or button is down that nobody holds"},
    {"mode stack", "the command mode stack is not as deep as before"},
    {"lock", "the selection lock is still on or asked for"},
    {"gizmo", "the gizmo is not as before"},
    {"capture", "a window still has the capture"},
    {"sticky", "a snap is still held or a nudge series still goes on"},
    {"off", "something was done with navigation off"},
};
static_assert(std::size(kCheckTexts) == kChecks);

bool IsRelease(Message message) {
    return message == Message::kLeftUp || message == Message::kRightUp ||
           message == Message::kMiddleUp;
}

// Which of the reasons kept a release from where it would have ended something.
Exemption LostBy(const MouseFacts& facts, const State& before, const Outcome& outcome) {
    if (!facts.options.navigation) return Exemption::kNavigationOff;
    if (facts.message == Message::kOther) return Exemption::kBorder;
    if (outcome.redirected) return Exemption::kBrushTakes;
    if (outcome.scrubbed) return Exemption::kScrubTakes;
    if (before.quick && !outcome.came_to_release_rules) return Exemption::kQuickTakes;
    return Exemption::kNoRow;
}

void NoteGesture(Ledger& ledger, const State& before, const State& after, const MouseFacts& facts,
                 const Outcome& outcome, bool release, int down) {
    const auto gesture = [&ledger](Exemption exemption) {
        ledger.Note(exemption, {Check::kGesture, Check::kTwoGestures, Check::kAltOwed,
                                Check::kKeysDown, Check::kDepth, Check::kCapture});
    };
    if (release && before.Gesture() && !outcome.came_to_release_rules)
        gesture(LostBy(facts, before, outcome));
    if (outcome.used_bits & before.held & ~down & ~outcome.own_bit) gesture(Exemption::kStrayBit);
    if (outcome.came_to_release_rules && after.Gesture()) {
        if (!facts.options.right_zoom && (facts.message == Message::kRightUp ||
                                          ((before.held | after.held) & hook_model::kRightBit)))
            gesture(Exemption::kRightZoomOff);
        else if (outcome.handler == Handler::kEndOrbit && outcome.orbit_refused && after.orbit)
            gesture(Exemption::kEndOrbitRefused);
        else if (down == 0)
            gesture(Exemption::kNoRow);
    }
    const bool starts = outcome.handler == Handler::kStartOrbit ||
                        outcome.handler == Handler::kStartPan ||
                        outcome.handler == Handler::kStartZoom;
    // What a peek has begun, the taking begins again.
    if (starts && before.Gesture() && !facts.peeked) gesture(Exemption::kSecondGesture);

    if (after.alt_owed && before.Drags() && !after.Drags()) {
        const bool editor = after.kind >= 3;
        ledger.Note(editor ? Exemption::kEditorChord : Exemption::kChordRefused,
                    {Check::kAltOwed, Check::kKeysDown});
    }
    if (outcome.handler == Handler::kPanToZoom && before.kind == hook_model::kViewport)
        ledger.Note(Exemption::kPanBelow, {Check::kDepth});
    const bool resumes =
        outcome.handler == Handler::kEndZoom || outcome.handler == Handler::kEndPan;
    const bool of_its_own = outcome.handler == Handler::kEndZoom ? before.zoom : before.pan;
    if (resumes && before.kind == hook_model::kViewport && !of_its_own)
        ledger.Note(Exemption::kSecondResume, {Check::kDepth});
}

}  // namespace

std::string_view TextOf(Check check) {
    return kCheckTexts[static_cast<size_t>(check)][1];
}

std::string_view NameOf(Check check) {
    return kCheckTexts[static_cast<size_t>(check)][0];
}

const Text& Of(Exemption exemption) {
    return kTexts[static_cast<size_t>(exemption)];
}

void Ledger::Note(Exemption exemption, std::initializer_list<Check> checks) {
    Note(exemption, std::span(checks.begin(), checks.size()));
}

void Ledger::Note(Exemption exemption, std::span<const Check> checks) {
    ++arisen_[static_cast<size_t>(exemption)];
    for (const Check check : checks)
        open_[Index(check)].set(static_cast<size_t>(exemption));
}

bool Ledger::Exempts(Check check) {
    const std::bitset<kExemptions>& open = open_[Index(check)];
    for (size_t i = 0; i < kExemptions; ++i)
        if (open[i]) ++used_[i][Index(check)];
    return open.any();
}

void NoteMouse(Ledger& ledger, const State& before, const State& after, const MouseFacts& facts,
               const Outcome& outcome, int down) {
    const bool release = IsRelease(facts.message) || facts.border_release;
    NoteGesture(ledger, before, after, facts, outcome, release, down);
    if (facts.message == Message::kLeftDown && facts.kind >= 3 && after.sel_ctrl_shift &&
        !before.sel_ctrl_shift)
        ledger.Note(Exemption::kClickPops, {Check::kDepth});
    if (before.quick && !after.quick && (after.requests & 1))
        ledger.Note(Exemption::kLockKept, {Check::kLock, Check::kGizmo, Check::kCapture});
    if (!release) return;

    const Exemption lost = LostBy(facts, before, outcome);
    const bool left = facts.message == Message::kLeftUp || facts.border_release;
    const bool middle = facts.message == Message::kMiddleUp || facts.border_release;
    if (middle && before.quick && after.quick)
        ledger.Note(lost == Exemption::kNoRow || lost == Exemption::kQuickTakes
                        ? Exemption::kOtherWindow
                        : lost,
                    {Check::kQuick, Check::kLock, Check::kGizmo, Check::kCapture});
    if (left && before.Selecting() && after.Selecting()) {
        Exemption reason = lost;
        if (reason == Exemption::kNoRow) {
            const bool here =
                facts.kind == hook_model::kOtherWindow || facts.kind == hook_model::kSchematic;
            reason = before.Drags() || outcome.swallowed ? Exemption::kGestureTakes
                     : here                              ? Exemption::kOtherWindow
                                                         : Exemption::kModeForbids;
        }
        ledger.Note(reason, {Check::kSelect, Check::kDepth, Check::kKeysDown, Check::kCapture});
    }
    if (before.scrub >= 2 && after.scrub >= 2) {
        const Exemption reason = outcome.scrubbed ? Exemption::kScrubEdge
                                 : lost == Exemption::kNoRow || lost == Exemption::kQuickTakes
                                     ? Exemption::kNoThumb
                                     : lost;
        ledger.Note(reason, {Check::kScrub, Check::kCapture});
    }
    if (middle && before.redirect && after.redirect)
        ledger.Note(lost == Exemption::kBrushTakes ? Exemption::kOtherWindow : lost,
                    {Check::kKeysDown, Check::kCapture});
}

void NoteBetween(Ledger& ledger, const Outcome& outcome) {
    if (outcome.handler != Handler::kNone)
        ledger.Note(Exemption::kInBetween, {Check::kGesture, Check::kTwoGestures, Check::kAltOwed,
                                            Check::kKeysDown, Check::kDepth, Check::kCapture});
    if (outcome.shift_click) ledger.Note(Exemption::kInBetween, {Check::kDepth});
    if (outcome.quick_begins) ledger.Note(Exemption::kInBetween, {Check::kGizmo});
}

void NoteUnseen(Ledger& ledger, const State& now) {
    if (now.Gesture())
        ledger.Note(Exemption::kUnseen, {Check::kGesture, Check::kTwoGestures, Check::kAltOwed,
                                         Check::kKeysDown, Check::kDepth, Check::kCapture});
    if (now.quick)
        ledger.Note(Exemption::kUnseen,
                    {Check::kQuick, Check::kLock, Check::kGizmo, Check::kCapture});
    if (now.Selecting())
        ledger.Note(Exemption::kUnseen,
                    {Check::kSelect, Check::kDepth, Check::kKeysDown, Check::kCapture});
    if (now.scrub >= 2) ledger.Note(Exemption::kUnseen, {Check::kScrub, Check::kCapture});
    if (now.redirect) ledger.Note(Exemption::kUnseen, {Check::kKeysDown, Check::kCapture});
}

void NoteKey(Ledger& ledger, const State& before, const hook_model::KeyFacts& facts) {
    if (!facts.up) return;
    if (facts.navigation) {
        if (before.scrub && before.snap) ledger.Note(Exemption::kTwoHeld, {Check::kSticky});
        return;
    }
    if (before.requests & 4) ledger.Note(Exemption::kNavigationOff, {Check::kLock, Check::kGizmo});
    if (before.scrub) ledger.Note(Exemption::kNavigationOff, {Check::kScrub});
    if (before.snap || before.nudge) ledger.Note(Exemption::kNavigationOff, {Check::kSticky});
    if (before.nudge) ledger.Note(Exemption::kNavigationOff, {Check::kGizmo});
}

}  // namespace exemptions
