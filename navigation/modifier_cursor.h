#pragma once

#include <windows.h>

// The cursor for the modifier keys that are down and the gesture that runs; null: none of our own
// (or it cannot be loaded).
HCURSOR ChooseModifierCursor();

// The same at a move of a gesture, with fewer questions.
HCURSOR ChooseGestureCursor();
