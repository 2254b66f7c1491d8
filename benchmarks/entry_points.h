// Where the plug-in is called: its hooks, its commands, and the shortcuts that it looks at before
// the main window does. What measures is wrapped around each of them.
#pragma once

#include <windows.h>

#include "standin/engine/input/control.h"

namespace entry_points {

// Calls `entry` with the arguments and gives back its answer.
using Wrapper = LRESULT (*)(HOOKPROC entry, int code, WPARAM wparam, LPARAM lparam);

// Stands between the input and the plug-in's hooks; with real input in place of the engine's own
// hooks, so that nothing but this lies between the system and the plug-in. False: there are no
// hooks.
bool Open(input::Kind input);
// Null: nobody looks.
void Watch(Wrapper wrapper);

HOOKPROC MouseHook();  // the plug-in's own
HOOKPROC KeyHook();

// An action of the plug-in's table.
void Command(int id);
// A command that an accelerator sends to the main window.
void Shortcut();
// A notch of the wheel where the cursor is, as the hook is told of it.
void Wheel();

}  // namespace entry_points
