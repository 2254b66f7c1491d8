// Quick transforms: the middle button drives the current transform tool as if it were the left one;
// with Shift it clones.
#pragma once

#include "input/mouse_event.h"

// Non-zero while one runs.
extern int g_quickXform;

// Starts one, ends it, and moves it where the window needs that.
Answer QuickTransform(const MouseEvent& event);
