// The entry points of the plug-in, timed one by one with real calls: real input, the system's
// functions without the stand-in's wrappers, and the stand-in as host. What a user feels of a drag
// is here.
#pragma once

#include <nlohmann/json.hpp>

#include "benchmarks/situations.h"
#include "standin/engine/plugin/loader.h"

namespace direct {

struct Sizes {
    int least_turns = 31;
    int most_turns = 201;
    double longest_ns = 2e9;  // of a situation, once it has its least turns
};

// Takes the place of the stand-in's own hooks. False: the plug-in has none.
bool Open();

// `ratio` is the plug-in's time to that of an empty hook which is asked about the same messages in
// the same turn, `quartiles` those of that ratio. `must_send` is the part of the time that goes to
// what the plug-in has to bring about by the system (messages to windows, records of input, the
// cursor's shape and place, the focus, the moment that an editor is given), to the same empty hook.
nlohmann::json MeasureOne(const situations::Situation& situation, const Sizes& sizes);

// Every situation, by its name.
nlohmann::json Measure(const plugin::Files& files, const Sizes& sizes);

}  // namespace direct
