// Quick transforms: the middle button drives the current transform tool as if it were the left one;
// with Shift it clones.
#pragma once

#include "navigation/messages.h"

// Each answers true when the message is to be swallowed. `kind` is the WindowKind of its window.
bool StartQuickTransform(const MouseEvent& event, int kind);
bool EndQuickTransform(const MouseEvent& event, int kind);
bool MoveQuickTransform(const MouseEvent& event, int kind);
