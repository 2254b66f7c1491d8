// What every part of the plug-in may ask of its own module.
#pragma once

#include <windows.h>

// The DLL's own handle; null until the loader has called the entry.
extern HINSTANCE g_module;

// A text of the string table, or null when the id has none or the module is not known yet. The text
// stands in one shared buffer: the next call overwrites it.
char* LoadText(int id);

// A cursor of this module's resources, loaded when it is first wanted and kept; null when it cannot
// be loaded, which is tried again the next time.
HCURSOR LoadModuleCursor(int id);

// Shows the system's arrow.
void ShowArrowCursor();
