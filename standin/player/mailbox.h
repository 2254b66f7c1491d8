// How a player hands plays to a worker, a process that plays one after the other: a piece of memory
// that both see, and three events.
#pragma once

#include <windows.h>

namespace worker {

struct Outcome {
    int status;  // as the exit status of a program says it
    bool tidy;   // the desktop is as it was found
};

struct Mailbox {
    // Of the next play, each with its NUL; an empty one ends them.
    char arguments[16 * 1024];
    // Of the last play, once `done` is set.
    Outcome outcome;
};

// The command and the handles that a worker is started with, as numbers, in this order.
inline constexpr char kCommand[] = "worker";
enum Handle { kMemory, kGo, kReady, kDone, kPlayer, kHandles };

// What a worker finds in the engine. Plays in a thread of its own, on whose desktop `ready` is set.
using Play = Outcome (*)(int count, char** arguments, HANDLE ready);
// Takes down what the play has left in the process: the plug-in, the host, classes of windows,
// handlers. False: something is left that the next play could come across.
using Clear = bool (*)();
inline constexpr char kClear[] = "standin_clear";

}  // namespace worker
