// The situations whose cost is told: what a user has brought about, and what is measured then.
#pragma once

#include <windows.h>

#include <span>
#include <string_view>
#include <vector>

#include "benchmarks/entry_points.h"

namespace situations {

// What the loops of own work and of the queue send again and again; kNone: they leave it out.
enum class Message { kNone, kMove, kKey, kModifier };

using Action = void (*)();

// All actions but `act` may be null: nothing.
struct Situation {
    const char* id;
    const char* title;
    const char* window;  // where the cursor is; an editor is opened for it
    Action begin = nullptr;
    Action prepare = nullptr;  // before each turn
    Action act = nullptr;      // what is measured
    Action finish = nullptr;   // after each turn, brings back what was before it
    Action end = nullptr;
    // The plug-in's global that tells, before or after `act`, that it is what the title says; null:
    // none does.
    const char* confirmed_by = nullptr;
    Message message = Message::kNone;
    bool runs_script = false;  // which calls back; a faked answer does not
    bool clicks = false;       // no gesture runs, so the buttons are free
};

// By subject, a file each.
std::span<const Situation> Moves();
std::span<const Situation> Gestures();  // moves while one runs
std::span<const Situation> Buttons();
std::span<const Situation> Chords();  // presses and releases of gestures
std::span<const Situation> Commands();

std::vector<Situation> All();
// Those that can be repeated in a loop.
std::vector<Situation> Repeated();
// Null: there is none of this name.
const Situation* Find(std::string_view id);

// The way into a situation, a turn in it, and the way out. Only `act` is watched. A
// turn answers whether it was what the title says.
void Enter(const Situation& situation);
bool Turn(const Situation& situation, entry_points::Wrapper wrapper);
void Leave(const Situation& situation);

// One message of a repeated situation, or a key going down and up again. `turn` counts them, so
// that the mouse goes to and fro.
void Send(const Situation& situation, int turn);

}  // namespace situations
