// The hook procedures of the plug-in called in a loop, every call that they make answered at once:
// what is left is the plug-in's own work. The answers are those that the stand-in gave for the same
// message just before, so the plug-in goes the same way; the counted calls show that it does.
#pragma once

#include <nlohmann/json.hpp>

#include "standin/engine/plugin/loader.h"

namespace hook_work {

struct Sizes {
    int rounds = 31;
    int messages = 20000;  // in a round
    int memory_messages = 1000000;
    int gestures = 5000;
    bool timed = true;
};

// Calls, work and memory of every situation.
nlohmann::json Measure(const plugin::Files& files, const Sizes& sizes);

}  // namespace hook_work
