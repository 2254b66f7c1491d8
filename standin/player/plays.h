// Plays scenarios in workers: each in a world of its own, several at a time.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "standin/player/child_process.h"
#include "standin/player/desktops.h"
#include "standin/player/player.h"

namespace plays {

struct Play {
    std::string file;
    // Of the screen that the scenario asks for; 0: what the options say.
    int screen_width = 0;
    int screen_height = 0;
};

class Team {
public:
    // `workers` plays run at a time.
    explicit Team(size_t workers);

    using Next = std::function<Play(size_t)>;
    using Done = std::function<bool(size_t, const child::Result&)>;
    // Plays number 0 to count - 1. `next` is asked for each when it is about to begin, some ahead
    // of the one that `done` is told of; that one is told in order, and ends all with false. False:
    // a play could not be begun, and *message tells why.
    bool Run(const player::Options& options, size_t count, const Next& next, const Done& done,
             std::string* message);
    child::Result RunOne(const player::Options& options, const Play& play);

private:
    // No desktop is shared with a play that is still running: each of those that run beside each
    // other has its slot.
    struct Slot {
        child::Worker worker;
        int width = 0;  // of the screen that the worker has seen
        int height = 0;
        Play play;
    };
    bool Start(const player::Options& options, size_t slot, bool again, std::string* message);
    child::Result Finish(const player::Options& options, size_t slot);

    desktops::Pool pool_;
    std::vector<std::unique_ptr<Slot>> slots_;
};

}  // namespace plays
