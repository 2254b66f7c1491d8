// Keys, mouse, clock, and how the system hands them on.
#include <windows.h>

#include "standin/engine/input/input.h"
#include "standin/engine/world/world.h"
#include "standin/player/commands.h"

namespace player {
namespace {

using scenario::Command;
using enum scenario::Verb;

int ButtonKey(const Command& command) {
    const std::string& name = command.words[0];
    return name == "left" ? VK_LBUTTON : name == "right" ? VK_RBUTTON : VK_MBUTTON;
}

POINT PointOf(const Command& command) {
    return {NumberAt(command, 0), NumberAt(command, 1)};
}

std::string MoveInWindow(Game&, const Command& command) {
    const HWND window = world::Find(command.words[0]);
    if (!window) return NotOpen(command.words[0]);
    input::InjectMove(input::ToScreen(window, PointOf(command)));
    return {};
}

std::string MoveOnScreen(Game&, const Command& command) {
    input::InjectMove(PointOf(command));
    return {};
}

std::string MoveBy(Game&, const Command& command) {
    const POINT cursor = input::CursorSoFar();
    const POINT by = PointOf(command);
    input::InjectMove({cursor.x + by.x, cursor.y + by.y});
    return {};
}

std::string PressButton(Game&, const Command& command) {
    input::InjectButton(ButtonKey(command), true, command.verb == kMouseAgain);
    return {};
}

std::string ReleaseButton(Game&, const Command& command) {
    input::InjectButton(ButtonKey(command), false);
    return {};
}

std::string DoubleClick(Game&, const Command& command) {
    input::InjectButton(ButtonKey(command), true, true);
    input::Drain();
    input::InjectButton(ButtonKey(command), false);
    return {};
}

std::string Key(Game&, const Command& command) {
    input::InjectKey(NumberAt(command, 0), command.on);
    return {};
}

std::string PassTime(Game&, const Command& command) {
    input::AdvanceClock(static_cast<unsigned long>(command.numbers[0]));
    input::FireTimers();
    return {};
}

std::string BeBusy(Game&, const Command& command) {
    input::SetBusy(command.verb == kBusy);
    return {};
}

// Wine gives a message that is only peeked at to whoever pumps in a hook.
std::string PeekAndReenter(const Game& game) {
    return game.peeks && game.reenters && game.options.input == input::Kind::kReal
               ? "peek and reenter together need virtual input"
               : "";
}

std::string Peek(Game& game, const Command& command) {
    game.peeks = command.on;
    if (const std::string problem = PeekAndReenter(game); !problem.empty()) return problem;
    input::SetPeeking(command.on);
    return {};
}

std::string Reenter(Game& game, const Command& command) {
    const HWND window = world::Find(command.words[0]);
    if (!window) return NotOpen(command.words[0]);
    game.reenters = game.reenters || command.on;
    if (const std::string problem = PeekAndReenter(game); !problem.empty()) return problem;
    input::SetReenters(window, command.on);
    return {};
}

std::string SetCode(Game&, const Command& command) {
    input::SetNextCode(NumberAt(command, 0));
    return {};
}

std::string SwapButtons(Game&, const Command& command) {
    input::SetSwapped(command.on);
    return {};
}

constexpr Deed kDeeds[] = {
    {kMoveScreen, MoveOnScreen},
    {kMoveBy, MoveBy},
    {kMoveWindow, MoveInWindow},
    {kMouseDown, PressButton},
    {kMouseAgain, PressButton},
    {kMouseUp, ReleaseButton},
    {kDoubleClick, DoubleClick},
    {kKey, Key},
    {kClock, PassTime},
    {kBusy, BeBusy},
    {kNoLongerBusy, BeBusy},
    {kPeek, Peek},
    {kCode, SetCode},
    {kReenter, Reenter},
    {kSwap, SwapButtons},
};

}  // namespace

std::span<const Deed> InputDeeds() {
    return kDeeds;
}

}  // namespace player
