// The stand-in with the plug-in in it, as a measurement needs it: opened once in a process.
#pragma once

#include <windows.h>

#include <string>

#include "standin/engine/input/control.h"
#include "standin/engine/plugin/loader.h"

namespace stage {

// Makes the input, the host's DLLs and the world, without a plug-in. False: *message.
bool OpenWorld(input::Kind input, const plugin::Files& files, std::string* message);
// Finds the globals of the plug-in, which is loaded, and the places where it calls out.
bool FindPlaces(const plugin::Files& files, std::string* message);
// The world with the plug-in loaded and started in it, its settings those of a fresh installation,
// and its places found.
bool Open(input::Kind input, const plugin::Files& files, std::string* message);
void Close();

// A place inside a window of the world, in screen coordinates.
POINT PlaceIn(const char* window);

// What the user does, delivered with all that follows from them.
void MoveTo(POINT screen);
void MoveBy(int dx, int dy);
// `soon`: as the second press of a double click.
void Button(int virtual_key, bool down, bool soon = false);
void Key(int virtual_key, bool down);

}  // namespace stage
