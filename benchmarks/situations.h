// The situations whose cost is told: what a user has brought about when the message comes.
#pragma once

#include <windows.h>

#include <span>

namespace situations {

enum class Message { kMove, kKey, kModifier };

struct Situation {
    const char* id;
    const char* title;
    Message message;
    const char* window;  // where the cursor is
    int most_calls;      // Win32 and host calls of one message; 0: no aim
    bool runs_script;    // which calls back; a faked answer does not
    bool clicks;         // no gesture runs, so the buttons are free
    void (*begin)();     // before the messages, the cursor is there; null: nothing
    void (*end)();
};

std::span<const Situation> All();

// One message of the situation, or a key going down and up again. `turn` counts them, so that the
// mouse goes to and fro.
void Send(const Situation& situation, int turn);

}  // namespace situations
