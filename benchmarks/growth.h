// What grows with the number of windows, objects and modes of the host: the start of the plug-in
// and some situations, in a world that has many of one kind before the plug-in comes.
#pragma once

#include <nlohmann/json.hpp>

#include <span>
#include <string>
#include <string_view>

#include "standin/engine/plugin/loader.h"

namespace growth {

struct Kind {
    const char* id;
    const char* title;
    void (*make)(int count);
    std::span<const int> sizes;
    int counted_size;                      // the one whose calls are bounded
    std::span<const char* const> watched;  // the situations, by their names
};
std::span<const Kind> Kinds();

// A world can be made once in a process, and so are these.
//
// `start` (attach and operation in nanoseconds, its calls) and, unless only the start is wanted,
// the figures of direct.h for each watched situation.
nlohmann::json Measure(const plugin::Files& files, std::string_view kind, int size,
                       bool only_start);
// The calls of start and situations, by names as "start@nodes_1000".
nlohmann::json Count(const plugin::Files& files, std::string_view kind, int size);

}  // namespace growth
