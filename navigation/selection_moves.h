// Moves with Ctrl or Shift: the window is told of the keys that the emulated click would have, and
// the cursor announces it.
#pragma once

#include "input/mouse_event.h"

// Whether a move with this hit-test code may be one, whatever it is over; asked first.
bool MayMoveSelect(UINT hit_test);

// A move that may be one.
Answer EmulateSelectingMove(const MouseEvent& event);
