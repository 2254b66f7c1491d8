// Random walks as scenarios: what a user, the host and its faults might do, from a seed. Needs no
// Windows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace walk {

// Numbers that are the same everywhere for the same seed.
class Dice {
public:
    explicit Dice(uint64_t seed) : state_(seed) {}
    uint64_t Next();
    int Below(int limit) { return static_cast<int>(Next() % static_cast<uint64_t>(limit)); }
    int Between(int low, int high) { return low + Below(high - low + 1); }
    bool Once(int in) { return Below(in) == 0; }

private:
    uint64_t state_;
};

struct Kind {
    std::vector<std::string> faults;  // calls that may fail; none: nothing fails
    bool destroys = false;            // windows of the host may vanish towards the end
    bool real = false;                // with the system's own input, which cannot do everything
    bool recorded = false;            // only what a recording of the session can tell
    int left = 0, top = 0;            // where the screen begins, left of the main monitor or above
    int release = 13900;
};

// The lines of a walk of about this many commands, with a start before. It has rests: everything
// is released and nothing fails any more, and what a walk may leave behind is put right after.
std::vector<std::string> Make(uint64_t seed, int commands, const Kind& kind);

// The last line of a rest: nobody holds anything. What must hold at rest is checked after it.
bool IsRest(const std::string& line);

// Leaves out releases of what is not down and releases at the end what still is, so that any part
// of a walk is a walk.
std::vector<std::string> Repair(const std::vector<std::string>& lines);

// How many lines come before the walk itself.
size_t HeadOf(const std::vector<std::string>& lines);

// How many of the lines are something that a user or the host does.
size_t EventsIn(const std::vector<std::string>& lines);

std::string Text(const std::vector<std::string>& lines);

}  // namespace walk
