// What must hold during and after a random walk. A model of the hooks goes along with every event;
// what the required behaviour itself leaves behind is excused by the situation that led to it.
#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <set>
#include <string>

#include "standin/engine/desk_control.h"
#include "standin/player/excuses.h"
#include "standin/player/hook_model.h"
#include "standin/player/scenario_parser.h"

namespace invariants {

class Checker : public desk::HookObserver {
public:
    Checker() = default;
    Checker(const Checker&) = delete;
    Checker& operator=(const Checker&) = delete;
    ~Checker() override;

    // Around every command. After answers what does not hold, else an empty text; when F8 has come
    // up and nobody holds anything more, that includes what must hold at rest.
    void Before();
    std::string After(const scenario::Command& command);
    // What has been visited and excused, for walk_report to read.
    std::string Report() const;

    void BeforeHook(const desk::HookCall& call) override;
    void AfterHook(const desk::HookCall& call, bool swallowed) override;

private:
    void Begin();
    std::string AtRest();
    void NoteCommand(const scenario::Command& command);
    hook_model::State PluginState() const;
    int Value(int index) const;
    bool Fails(std::string_view call) const;
    bool Option(int index) const;
    hook_model::MouseFacts MouseFactsOf(const desk::HookCall& call) const;
    hook_model::KeyFacts KeyFactsOf(const desk::HookCall& call) const;
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
    void NoteHostsDoings();
    void NotePasses(bool swallowed);
    void ForgetWhatIsClean();

    static constexpr int kGlobals = 36;
    std::array<const int*, kGlobals> globals_{};
    bool began_ = false;
    hook_model::Model model_;
    hook_model::State before_;
    hook_model::MouseFacts mouse_;
    hook_model::KeyFacts key_;
    hook_model::Outcome outcome_;
    excuses::Ledger ledger_;
    std::string broken_;
    std::set<std::string, std::less<>> faults_;
    std::set<std::string, std::less<>> held_;  // keys and buttons that the user holds
    hook_model::State before_command_;
    bool navigation_before_ = false;
    size_t effects_before_ = 0;
    bool two_before_ = false;
    int passed_presses_ = 0;  // the buttons whose last press went on to a window
    int depth_before_ = 0;
    bool lock_before_ = false;
    bool gizmo_before_ = true;
    bool gizmo_saved_before_ = false;
    // What it would be without the plug-in.
    int depth_ = 1;
    bool lock_ = false;
    bool gizmo_ = true;
};

}  // namespace invariants
