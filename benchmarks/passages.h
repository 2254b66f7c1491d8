// The ways into the plug-in: its hooks, its commands, and the shortcuts that it looks at before the
// main window does. Whoever measures stands around each of them.
#pragma once

#include <windows.h>

#include "standin/engine/input_control.h"

namespace passages {

// Calls `way` with the arguments and gives back its answer.
using Around = LRESULT (*)(HOOKPROC way, int code, WPARAM wparam, LPARAM lparam);

// Stands between the input and the plug-in's hooks; with real input in place of the engine's own
// hooks, so that nothing but this lies between the system and the plug-in. False: there are no
// hooks.
bool Open(input::Kind input);
// Null: nobody looks.
void Watch(Around around);

HOOKPROC MouseHook();  // the plug-in's own
HOOKPROC KeyHook();

// An action of the plug-in's table.
void Command(int id);
// A command that an accelerator sends to the main window.
void Shortcut();
// A notch of the wheel where the cursor is, as the hook is told of it.
void Wheel();

}  // namespace passages
