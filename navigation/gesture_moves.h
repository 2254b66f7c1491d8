// Mouse moves while a gesture runs.
#pragma once

#include "input/mouse_event.h"

// A move while IsGestureActive.
Answer MoveGesture(const MouseMessage& move);
