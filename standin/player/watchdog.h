// Decides when a play that stands still is ended.
#pragma once

#include <optional>
#include <string>

namespace watchdog {

// A play under way answers at once; before its first command the system makes a desktop, loads
// files and makes windows, which a busy machine may take its time for.
constexpr unsigned kLongestStandstill = 10000;   // milliseconds
constexpr unsigned kLongestPreparation = 30000;  // milliseconds

struct End {
    // The plug-in was not loaded yet, so it has no part in it and the play can be begun again.
    bool again;
    std::string message;
};

// What to do about a play without progress for `still` milliseconds; nothing: wait on. `preparing`
// says what is being done before the first command, null: the play is under way.
std::optional<End> Judge(unsigned still, const char* preparing);

}  // namespace watchdog
