// Calls of the plug-in that a scenario makes fail, the host's and the system's alike.
#pragma once

#include <string>
#include <string_view>

namespace faults {

// Asked wherever a call can fail, by the call's name: true while `fail NAME` is in force.
bool IsOn(std::string_view call);
// The same for a name that is no call of its own kind, and so is not noted.
bool IsSet(std::string_view name);
// False: nobody watches, so a caller need not make up the names that it would ask by.
bool IsAnybodyWatching();

void Set(std::string_view name, bool on);
void Reset();

// The calls that were asked about since the last time, in alphabetical order, one blank between
// them. They are noted from the first time on.
std::string CallsSoFar();

}  // namespace faults
