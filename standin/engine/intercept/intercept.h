// The plug-in's Win32 calls: its import table is patched before its entry runs, so that each call
// comes to a wrapper, which writes the trace line and then has the engine answer, or the system.
#pragma once

#include <windows.h>

namespace intercept {

enum class Imports {
    kAll,    // the plug-in's: what it does is traced
    kInput,  // of what is loaded beside it: hooks, and the state of keyboard, mouse, screen and
             // clock
};
// Patches these imports of a freshly mapped module; entries of other modules stay untouched.
void PatchImports(HMODULE module, Imports which);

// Calls of the C runtime's and the system's heap so far.
unsigned long long Allocations();
// All intercepted calls so far, the heap's apart.
unsigned long long Calls();

// Forgets faults, loaded resources and subclassed windows.
void Reset();

}  // namespace intercept
