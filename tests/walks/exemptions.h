// Where the required behaviour itself breaks what a walk checks. Each exemption is one situation
// (docs/walks.md has its reason); it frees only the checks that the situation touches, and only
// until what they look at is clean again. Needs no Windows.
#pragma once

#include <array>
#include <bitset>
#include <initializer_list>
#include <span>
#include <string_view>

#include "tests/walks/hook_model.h"

namespace exemptions {

enum class Check {
    kGesture,      // no orbit, zoom, pan or refused gesture is left
    kTwoGestures,  // at most one of orbit, zoom and pan
    kQuick,        // no quick transform is left
    kSelect,       // no emulated click is left
    kScrub,        // no scrub is left
    kAltOwed,      // no Alt key-up is owed
    kKeysDown,     // no key or button is down that nobody holds
    kDepth,        // the command mode stack is as deep as before
    kLock,         // the selection lock is off and nobody asks for it
    kGizmo,        // the transform gizmo shows as before
    kCapture,      // no window has the capture
    kSticky,       // no snap is held, no nudge series goes on
    kOff,          // navigation off: nothing is done
    kCount,
};
constexpr int kChecks = static_cast<int>(Check::kCount);
std::string_view TextOf(Check check);  // what is said when it does not hold
std::string_view NameOf(Check check);

enum class Exemption {
#define EXEMPTION(name, text) name,
#include "tests/walks/exemptions.inc"
#undef EXEMPTION
    kCount,
};
constexpr int kExemptions = static_cast<int>(Exemption::kCount);
std::string_view NameOf(Exemption exemption);

class Ledger {
public:
    // The situation has come about: these checks are not held against the plug-in.
    void Note(Exemption exemption, std::span<const Check> checks);
    void Note(Exemption exemption, std::initializer_list<Check> checks);
    // What this check looks at is clean: its exemptions are forgotten.
    void Clean(Check check) { open_[Index(check)].reset(); }
    // The check does not hold. True: it is exempted, and that is counted.
    bool Exempts(Check check);
    bool IsOpen(Check check) const { return open_[Index(check)].any(); }

    using Counts = std::array<std::array<unsigned long long, kChecks>, kExemptions>;
    const Counts& Used() const { return used_; }
    const std::array<unsigned long long, kExemptions>& Arisen() const { return arisen_; }

private:
    static size_t Index(Check check) { return static_cast<size_t>(check); }

    std::array<std::bitset<kExemptions>, kChecks> open_;
    std::array<unsigned long long, kExemptions> arisen_{};
    Counts used_{};
};

// What a mouse event that went from `before` to `after` exempts. `down`: the buttons that are down
// after it.
void NoteMouse(Ledger& ledger, const hook_model::State& before, const hook_model::State& after,
               const hook_model::MouseFacts& facts, const hook_model::Outcome& outcome, int down);
// Other events have come in between, while a window handled what this one sent, and have changed
// something.
void NoteBetween(Ledger& ledger, const hook_model::Outcome& outcome);
// Buttons have come up of which no hook was told.
void NoteUnseen(Ledger& ledger, const hook_model::State& now);
// Likewise for a key event.
void NoteKey(Ledger& ledger, const hook_model::State& before, const hook_model::KeyFacts& facts);

}  // namespace exemptions
