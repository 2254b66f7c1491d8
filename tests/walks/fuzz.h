// The random walks: makes them from a seed, has each played in a world of its own, and cuts a
// failing one down to the shortest that still fails.
#pragma once

#include <string>
#include <vector>

#include "standin/player/command_line.h"

namespace fuzz {

struct Options {
    unsigned long long seed = 1;
    unsigned long long events = 20000;
    int commands_of_a_walk = 5000;
    bool real = false;                // with the system's own input
    bool every_row = false;           // fail when a row or step that can be visited is not
    std::vector<std::string> faults;  // the calls that can be made to fail
};

// 0: every walk held. Prints the seed first, and the shortest failing walk.
int Run(const Options& options, const player::PlayTexts& play);

}  // namespace fuzz
