// The size of the screen, all monitors together.
#pragma once

#include "input/screen_point.h"

// In pixels. Asked once a drag, since a drag asks at each of its moves; an unknown size is 0 and is
// asked again.
ScreenPoint ScreenSize();

// A drag begins, or the screen has changed.
void ForgetScreenSize();
