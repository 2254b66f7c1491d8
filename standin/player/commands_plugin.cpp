// The start, and what reaches the plug-in other than through the hooks.
#include <windows.h>

#include "standin/engine/input/input.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/world.h"
#include "standin/player/commands.h"

namespace player {
namespace {

using scenario::Command;
using enum scenario::Verb;

std::string Start(Game& game, const Command&) {
    std::string message;
    return plugin::Start(game.options.files, &message) ? "" : message;
}

std::string StartAgain(Game&, const Command&) {
    plugin::RunStartOperation();
    return {};
}

std::string RunCommand(Game&, const Command& command) {
    if (!world::ActionCallback()) return "the plug-in activated no action callback";
    plugin::Execute(NumberAt(command, 0));
    return {};
}

std::string Accelerate(Game&, const Command& command) {
    constexpr int kFromAccelerator = 1;
    SendMessageA(world::Find("main"), WM_COMMAND,
                 MAKEWPARAM(NumberAt(command, 0), kFromAccelerator), 0);
    return {};
}

std::string Click(Game&, const Command& command) {
    const HWND control = world::Find(command.words[0]);
    if (!control) return "the control " + command.words[0] + " is not there";
    // The system lets nobody click what is disabled.
    if (!IsWindowEnabled(control) || !IsWindowEnabled(GetAncestor(control, GA_ROOT))) return {};
    trace::In("click " + command.words[0]);
    SendMessageA(control, BM_CLICK, 0, 0);
    // The system's controls take the capture from whoever has it, and give it up.
    input::FollowCapture();
    trace::Out("0");
    return {};
}

std::string PickMenu(Game&, const Command& command) {
    const HWND sheet = world::Find("options");
    if (!sheet) return "the options window is not open";
    trace::In("menu " + std::to_string(command.numbers[0]));
    SendMessageA(sheet, WM_COMMAND, MAKEWPARAM(NumberAt(command, 0), 0), 0);
    trace::Out("0");
    return {};
}

std::string CloseByBox(Game&, const Command& command) {
    const HWND window = world::Find(command.words[0]);
    if (!window) return NotOpen(command.words[0]);
    trace::In("closebox " + command.words[0]);
    SendMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    trace::Out("0");
    return {};
}

std::string PlaceWindow(Game&, const Command& command) {
    const HWND window = world::Find(command.words[0]);
    if (!window) return NotOpen(command.words[0]);
    SetWindowPos(window, nullptr, NumberAt(command, 0), NumberAt(command, 1), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    return {};
}

std::string Query(Game&, const Command& command) {
    const std::string& what = command.words[0];
    trace::In("query " + what + ' ' + std::to_string(command.numbers[0]));
    const int answer = plugin::Query(what, NumberAt(command, 0));
    trace::Out(what == "icon" && answer < 0 ? "none" : std::to_string(answer));
    return {};
}

std::string RunScript(Game&, const Command& command) {
    trace::Value(world::Evaluate(command.text));
    return {};
}

std::string Poke(Game&, const Command& command) {
    return plugin::Poke(command.words[0], command.numbers[0])
               ? ""
               : "the plug-in has no global " + command.words[0];
}

constexpr Deed kDeeds[] = {
    {kStart, Start},
    {kStartAgain, StartAgain},
    {kCommand, RunCommand},
    {kClick, Click},
    {kAccelerator, Accelerate},
    {kMenu, PickMenu},
    {kPlace, PlaceWindow},
    {kCloseBox, CloseByBox},
    {kQuery, Query},
    {kScript, RunScript},
    {kPoke, Poke},
};

}  // namespace

std::span<const Deed> PluginDeeds() {
    return kDeeds;
}

}  // namespace player
