// The calls that leave the plug-in, counted at its entry points.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <vector>

#include "benchmarks/call_sites.h"
#include "benchmarks/situations.h"

namespace call_counts {

uint64_t CallsOf(const call_sites::Totals& totals);

// What most of them cost, and the dearest one.
struct Summary {
    call_sites::Totals typical;
    call_sites::Totals most;
    uint64_t least_calls = 0;
    uint64_t heap = 0;
    size_t entries = 0;
};
Summary Summarize(const std::vector<call_sites::Totals>& each);

// Calls `entry` and notes what it cost; one that is called inside of another is part of that one.
LRESULT Note(HOOKPROC entry, int code, WPARAM wparam, LPARAM lparam);
// What was noted since it was last asked.
std::vector<call_sites::Totals> Noted();

// The calls of one turn of a situation. Where an event brings others with it, as a click that is
// replayed does, all of them count. Needs the counting mode.
nlohmann::json Count(const situations::Situation& situation, int turns);
// Of every situation, by its name.
nlohmann::json CountAll(int turns);

}  // namespace call_counts
