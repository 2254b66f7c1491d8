#include "tests/walks/exemptions.h"

#include <iterator>

namespace exemptions {
namespace {

using hook_model::Message;
using hook_model::MouseFacts;
using hook_model::Outcome;
using hook_model::State;

constexpr std::string_view kNames[] = {
#define EXEMPTION(name, text) text,
#include "tests/walks/exemptions.inc"
#undef EXEMPTION
};

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
        else if (outcome.handler == NavAction::kEndOrbit && outcome.orbit_refused && after.orbit)
            gesture(Exemption::kEndOrbitRefused);
        else if (down == 0)
            gesture(Exemption::kNoRow);
    }
    const bool starts = outcome.handler && hook_model::Starts(*outcome.handler);
    // What a peek has begun, the taking begins again.
    if (starts && before.Gesture() && !facts.peeked) gesture(Exemption::kSecondGesture);

    if (after.alt_owed && before.Drags() && !after.Drags()) {
        const bool editor = after.kind >= 3;
        ledger.Note(editor ? Exemption::kEditorChord : Exemption::kChordRefused,
                    {Check::kAltOwed, Check::kKeysDown});
    }
    if (outcome.handler == NavAction::kPanToZoom && before.kind == hook_model::kViewport)
        ledger.Note(Exemption::kPanBelow, {Check::kDepth});
    const bool resumes =
        outcome.handler == NavAction::kEndZoom || outcome.handler == NavAction::kEndPan;
    const bool of_its_own = outcome.handler == NavAction::kEndZoom ? before.zoom : before.pan;
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

std::string_view NameOf(Exemption exemption) {
    return kNames[static_cast<size_t>(exemption)];
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
    const bool release = hook_model::ReleasedBy(facts.message) || facts.border_release;
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
    if (outcome.handler)
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
    if (facts.options.navigation) {
        if (before.scrub && before.snap) ledger.Note(Exemption::kTwoHeld, {Check::kSticky});
        return;
    }
    if (before.requests & 4) ledger.Note(Exemption::kNavigationOff, {Check::kLock, Check::kGizmo});
    if (before.scrub) ledger.Note(Exemption::kNavigationOff, {Check::kScrub});
    if (before.snap || before.nudge) ledger.Note(Exemption::kNavigationOff, {Check::kSticky});
    if (before.nudge) ledger.Note(Exemption::kNavigationOff, {Check::kGizmo});
}

}  // namespace exemptions
