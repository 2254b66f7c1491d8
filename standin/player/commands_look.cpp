// `show` and `expect`.
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "standin/engine/input/input.h"
#include "standin/engine/intercept/faults.h"
#include "standin/engine/intercept/intercept.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/world.h"
#include "standin/player/commands.h"
#include "standin/scenario/expectation.h"

namespace player {
namespace {

using scenario::Command;
using enum scenario::Verb;

void ShowWorld(std::string_view what, std::string_view argument = {}) {
    for (const std::string& line : world::Show(what, argument))
        trace::State(line);
}

// The word stands for both kinds of keys, those on the keyboard and those in time.
void ShowHeldKeys(Game&) {
    trace::State("keys " + input::AsyncText());
    trace::State("threadkeys " + input::ThreadText());
}

void ShowKeys(Game& game) {
    ShowHeldKeys(game);
    ShowWorld("tracks");
}

void ShowGlobals(Game&) {
    for (const std::string& line : plugin::Show())
        trace::State("plugin " + line);
}

void ShowAll(Game& game) {
    for (const char* part : {"modes", "selection", "objects", "time", "range", "actions"})
        ShowWorld(part);
    ShowWorld("camera");
    ShowHeldKeys(game);
    ShowGlobals(game);
}

void ShowClock(Game&) {
    trace::State("clock " + std::to_string(input::Ticks()));
}

// Since they were last asked for.
void ShowAllocations(Game& game) {
    const unsigned long long now = intercept::Allocations();
    trace::State("allocations " + std::to_string(now - game.allocations));
    game.allocations = now;
}

void ShowCalls(Game&) {
    trace::State("calls " + faults::CallsSoFar());
}

// The settings file as it lies on the disk.
void ShowSettings(Game& game) {
    std::FILE* const file = std::fopen(game.settings_file.c_str(), "r");
    if (!file) return trace::State("settings none");
    char line[512];
    while (std::fgets(line, sizeof line, file)) {
        line[std::strcspn(line, "\r\n")] = 0;
        trace::State(std::string("settings ") + line);
    }
    std::fclose(file);
}

void ShowWindows(Game&) {
    for (const std::string& name : world::WindowNames()) {
        const HWND window = world::Find(name);
        if (!window) continue;
        RECT place{};
        GetWindowRect(window, &place);
        trace::State("window " + name + ' ' + std::to_string(place.left) + "," +
                     std::to_string(place.top) + ' ' + std::to_string(place.right - place.left) +
                     "x" + std::to_string(place.bottom - place.top));
    }
}

// What the player knows itself; the world shows the rest.
struct Shown {
    std::string_view subject;
    void (*show)(Game& game);
};
constexpr Shown kShown[] = {
    {"all", ShowAll},         {"allocations", ShowAllocations},
    {"calls", ShowCalls},     {"clock", ShowClock},
    {"keys", ShowKeys},       {"settings", ShowSettings},
    {"windows", ShowWindows},
};

std::string Show(Game& game, const Command& command) {
    for (const Shown& row : kShown)
        if (row.subject == command.words[0]) {
            row.show(game);
            return {};
        }
    ShowWorld(command.words[0]);
    return {};
}

std::string ShowCamera(Game&, const Command& command) {
    ShowWorld("camera", command.words[0]);
    return {};
}

std::string ShowPlugin(Game& game, const Command&) {
    if (game.options.files.map.empty())
        return "there is no link map beside the plug-in, name it with --map";
    ShowGlobals(game);
    return {};
}

// The first difference tells what is wrong; the later ones mostly follow from it.
void Differ(Game& game, const std::string& wanted, const std::string& got) {
    if (game.difference.empty()) game.difference = "expected " + wanted + ", got " + got;
}

std::string ExpectNothing(Game& game, const Command&) {
    using trace::Reading;
    if (!game.skips_lines)
        if (const auto line = trace::NextLine(Reading::kEffects)) Differ(game, "nothing", *line);
    while (game.skips_lines && trace::NextLine(Reading::kEffects)) {
    }
    game.skips_lines = false;
    return {};
}

std::string ExpectAnswer(Game& game, const Command& command) {
    const std::string wanted = "out " + command.words[0];
    const auto answer = trace::AnswerOfEvent();
    if (!answer || !scenario::MatchesLine(wanted, *answer))
        Differ(game, wanted, answer.value_or("nothing"));
    return {};
}

trace::Reading ReadingOf(const std::string& line) {
    using trace::Reading;
    return line.starts_with("state ")  ? Reading::kStates
           : line.starts_with("value") ? Reading::kValues
           : line.starts_with("got ")  ? Reading::kArrivals
                                       : Reading::kEffects;
}

std::string Expect(Game& game, const Command& command) {
    const std::string& wanted = command.text;
    if (scenario::IsAnyLines(wanted)) {
        game.skips_lines = true;
        return {};
    }
    const trace::Reading reading = ReadingOf(wanted);
    auto line = trace::NextLine(reading);
    while (game.skips_lines && line && !scenario::MatchesLine(wanted, *line))
        line = trace::NextLine(reading);
    if (!line || !scenario::MatchesLine(wanted, *line))
        Differ(game, wanted, line ? *line : "nothing");
    game.skips_lines = false;
    return {};
}

constexpr Deed kDeeds[] = {
    {kShow, Show},     {kShowCamera, ShowCamera},       {kShowPlugin, ShowPlugin},
    {kExpect, Expect}, {kExpectNothing, ExpectNothing}, {kExpectAnswer, ExpectAnswer},
};

}  // namespace

std::span<const Deed> LookDeeds() {
    return kDeeds;
}

}  // namespace player
