#include "benchmarks/situations.h"

#include "benchmarks/stage.h"
#include "shell/commands.h"

namespace situations {
namespace {

void SwitchOff() {
    plugin::Poke("useMayaStyle", 0);
}

void SwitchOn() {
    plugin::Poke("useMayaStyle", 1);
}

template <int button>
void PressWithAlt() {
    stage::Key(VK_MENU, true);
    stage::Button(button, true);
    // The first moves of a drag set it up.
    for (int i = 0; i < 8; ++i)
        stage::MoveBy(1, 0);
}

template <int button>
void ReleaseWithAlt() {
    stage::Button(button, false);
    stage::Key(VK_MENU, false);
}

void PressControl() {
    stage::Key(VK_CONTROL, true);
}

void ReleaseControl() {
    stage::Key(VK_CONTROL, false);
}

constexpr int kScrubKey = 'Q';

void BeginScrub() {
    stage::Key(kScrubKey, true);
    plugin::Execute(kCommandTimeScrubber);
    stage::Button(VK_LBUTTON, true);
    for (int i = 0; i < 8; ++i)
        stage::MoveBy(1, 0);
}

void EndScrub() {
    stage::Button(VK_LBUTTON, false);
    stage::Key(kScrubKey, false);
}

constexpr Situation kSituations[] = {
    {"off", "navigation off, move over a viewport", Message::kMove, "viewport.persp", 1, false,
     false, SwitchOff, SwitchOn},
    {"move_foreign", "move over a foreign window", Message::kMove, "other", 8, false, true, nullptr,
     nullptr},
    {"move_viewport", "move over a viewport", Message::kMove, "viewport.persp", 20, false, true,
     nullptr, nullptr},
    {"orbit", "move during orbit", Message::kMove, "viewport.persp", 0, false, false,
     PressWithAlt<VK_LBUTTON>, ReleaseWithAlt<VK_LBUTTON>},
    {"pan", "move during pan", Message::kMove, "viewport.persp", 0, false, false,
     PressWithAlt<VK_MBUTTON>, ReleaseWithAlt<VK_MBUTTON>},
    {"zoom", "move during zoom", Message::kMove, "viewport.persp", 0, false, false,
     PressWithAlt<VK_RBUTTON>, ReleaseWithAlt<VK_RBUTTON>},
    {"scrub", "move during a time scrub", Message::kMove, "viewport.persp", 0, false, false,
     BeginScrub, EndScrub},
    {"move_control", "move over a viewport, Ctrl held", Message::kMove, "viewport.persp", 0, true,
     true, PressControl, ReleaseControl},
    {"key", "plain key", Message::kKey, "viewport.persp", 0, false, false, nullptr, nullptr},
    {"modifier", "Ctrl key over a viewport", Message::kModifier, "viewport.persp", 0, false, false,
     nullptr, nullptr},
};

}  // namespace

std::span<const Situation> All() {
    return kSituations;
}

void Send(const Situation& situation, int turn) {
    constexpr int kPlainKey = 'J';
    switch (situation.message) {
        case Message::kMove: stage::MoveBy(turn % 2 ? -1 : 1, 0); return;
        case Message::kKey:
            stage::Key(kPlainKey, true);
            stage::Key(kPlainKey, false);
            return;
        case Message::kModifier:
            stage::Key(VK_CONTROL, true);
            stage::Key(VK_CONTROL, false);
            return;
    }
}

}  // namespace situations
