// What must hold during and after a random walk. A model of the hooks goes along with every event;
// what the required behaviour itself leaves behind is exempted by the situation that led to it.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "standin/engine/input/control.h"
#include "tests/walks/exemptions.h"
#include "tests/walks/hook_model.h"
#include "standin/player/player.h"
#include "standin/scenario/parser.h"

namespace invariants {

class Checker : public player::Observer, public input::HookObserver {
public:
    Checker() = default;
    Checker(const Checker&) = delete;
    Checker& operator=(const Checker&) = delete;
    ~Checker() override;

    // Around every command. After answers what does not hold, else an empty text; when F8 has come
    // up and nobody holds anything more, that includes what must hold at rest.
    void Before(const scenario::Command& command) override;
    std::string After(const scenario::Command& command) override;
    // What has been visited and exempted, for walk_report to read.
    std::string Report() const override;

    void BeforeHook(const input::HookCall& call) override;
    void AfterHook(const input::HookCall& call, bool swallowed) override;

private:
    // One call of a hook, with the calls that came in between while a window handled what the
    // plug-in sent to it. The model is stepped along when the outermost call is through.
    struct Call {
        std::string event;
        bool mouse = false;
        bool peeks = false;  // the host leaves the event in the queue
        hook_model::MouseFacts mouse_facts;
        hook_model::KeyFacts key_facts;
        hook_model::State at_begin, at_end;  // the plug-in's own
        bool swallowed = false;
        int down = 0;     // the buttons that are down after it
        int at_send = 0;  // the message of the outer call that it came in between
        size_t effects_from = 0, effects_to = 0;
        std::vector<std::string> effects;  // its own ones
        std::string toolbar;               // what is wrong about the host's buttons after it
        std::vector<Call> inner;
    };

    void Begin();
    void Judge(const Call& call);
    std::string Compare(const Call& call, const hook_model::Outcome& outcome) const;
    std::string CompareEffects(const Call& call, const hook_model::Outcome& outcome) const;
    std::string Toolbar(const hook_model::State& before, const hook_model::State& after,
                        const std::vector<std::string>& effects) const;
    std::string AtRest();
    void NoteCommand(const scenario::Command& command);
    hook_model::State PluginState() const;
    // Of a number of the plug-in, or the number behind it.
    int Value(std::string_view global, int index = 0) const;
    bool Fails(std::string_view call) const;
    void SeeFacts(HWND window, hook_model::Facts* facts) const;
    hook_model::MouseFacts MouseFactsOf(const input::HookCall& call) const;
    hook_model::KeyFacts KeyFactsOf(const input::HookCall& call) const;
    bool ViewFails() const;
    int KindOf(HWND window) const;
    bool OrbitAllowed(HWND window) const;
    std::optional<int> Mode() const;
    bool Subobject() const;
    std::optional<bool> SelectButton() const;
    bool ThumbFound() const;
    bool BrushInUse() const;
    bool EditMode(int kind) const;
    bool NobodyHoldsWhatIsDown() const;
    bool IsGizmoAsBefore() const;
    bool IsLockOff() const;
    void NoteFaults();
    void NoteHost();
    void NotePasses(const Call& call);
    void ForgetWhatIsClean();

    mutable std::map<std::string_view, const int*> globals_;
    bool began_ = false;
    hook_model::Model model_;
    std::vector<Call> calls_;  // from the outermost one to the innermost one
    bool arms_ = false;        // the command is one that may arm what a key's release ends
    bool asked_ = false;       // a hook was asked during the command
    exemptions::Ledger ledger_;
    std::string broken_;
    std::set<std::string, std::less<>> faults_;
    std::set<std::string, std::less<>> held_;  // keys and buttons that the user holds
    hook_model::State before_command_;
    bool two_before_ = false;
    int passed_presses_ = 0;  // the buttons whose last press went on to a window
    // As it was when NoteHost last looked.
    size_t effects_seen_ = 0;
    int depth_seen_ = 0;
    bool lock_seen_ = false;
    bool gizmo_seen_ = true;
    bool gizmo_saved_seen_ = false;
    bool busy_ = false;
    std::string peeked_;  // the event that the host has peeked at last, when nobody kept it
    int down_ = 0;        // the buttons, as far as the hooks have been told
    // What it would be without the plug-in.
    int depth_ = 1;
    bool lock_ = false;
    bool gizmo_ = true;
};

}  // namespace invariants
