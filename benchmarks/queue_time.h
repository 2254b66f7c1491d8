// The time from SendInput to the end of the message's handling, through the system's queue and
// hooks, on a desktop of its own.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

#include "standin/engine/plugin/loader.h"

namespace queue_time {

struct Sizes {
    int rounds = 31;
    int messages = 50;  // in a round
};

// `low_level_hook` is the program with the low-level hooks.
nlohmann::json Measure(const plugin::Files& files, const std::string& low_level_hook,
                       const Sizes& sizes);

}  // namespace queue_time
