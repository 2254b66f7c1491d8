// What the commands of a scenario do, one function a verb.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "standin/player/player.h"
#include "standin/scenario/parser.h"

namespace player {

// What a play remembers from one command to the next.
struct Game {
    Game(const Options& given, const std::string& settings)
        : options(given), settings_file(settings) {}

    const Options& options;
    std::string settings_file;
    bool peeks = false;
    bool reenters = false;
    bool skips_lines = false;  // after `expect …`
    unsigned long long allocations = 0;
    std::string difference;  // from what was expected, the first one
};

// Empty when done, else why it can not be done.
using Act = std::string (*)(Game& game, const scenario::Command& command);
struct Deed {
    scenario::Verb verb;
    Act act;
};

// By subject: hands and system, the host, the plug-in's ways in, what is looked at.
std::span<const Deed> InputDeeds();
std::span<const Deed> HostDeeds();
std::span<const Deed> PluginDeeds();
std::span<const Deed> LookDeeds();

// The function for a verb, null where it is carried out before the first command.
Act ActFor(scenario::Verb verb);

int NumberAt(const scenario::Command& command, size_t index);
std::string NotOpen(const std::string& window);

}  // namespace player
