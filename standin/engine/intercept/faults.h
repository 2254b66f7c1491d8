// Calls of the plug-in that a scenario makes fail, the host's and the system's alike.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace faults {

// The names that `fail` takes, in alphabetical order. The tables of calls add theirs while the
// engine is loaded.
bool AddNames(std::initializer_list<const char*> names);
std::vector<std::string> Names();
bool IsName(std::string_view name);

// Asked wherever a call can fail, by the call's name: true while `fail NAME` is in force.
bool IsOn(std::string_view call);
// False: nobody watches, so a caller need not make up the names that it would ask by.
bool IsAnybodyWatching();

void Set(std::string_view name, bool on);
void Reset();

// The calls that were asked about since the last time, in alphabetical order, one blank between
// them. They are noted from the first time on.
std::string CallsSoFar();

}  // namespace faults
