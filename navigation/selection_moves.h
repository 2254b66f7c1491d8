// Moves with Ctrl or Shift: the window is told of the keys that the emulated click would have, and
// the cursor announces it.
#pragma once

#include "input/mouse_event.h"

Answer EmulateSelectingMove(const MouseEvent& event);
