#pragma once

#include <windows.h>

// The keyboard hook of the host's user-interface thread: ends what a held key switched on, swallows
// its auto-repeat, keeps Alt down during a gesture, shows the modifier cursors. Non-zero swallows.
LRESULT CALLBACK KeyboardProc(int code, WPARAM key, LPARAM flags);
