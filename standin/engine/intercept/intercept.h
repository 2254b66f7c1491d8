// The plug-in's Win32 calls: its import table is patched before its entry runs, so that each call
// comes to a wrapper, which writes the trace line and then has the engine answer, or the system.
#pragma once

#include <windows.h>

namespace intercept {

// Patches the imports of a freshly mapped module; entries of other modules stay untouched.
void PatchImports(HMODULE module);

// Calls of the C runtime's and the system's heap so far.
unsigned long long Allocations();
// All intercepted calls so far, the heap's apart.
unsigned long long Calls();

// Forgets faults, loaded resources and subclassed windows.
void Reset();

}  // namespace intercept
