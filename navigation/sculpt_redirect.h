// While a sculpt or paint brush is active the middle button over a viewport is replayed as Alt and
// left button, which is what brushes know.
#pragma once

#include "input/mouse_event.h"

// The middle button is being replayed.
extern int g_sculptRedirect;

// kPassed: input of the replay itself, nothing else looks at it. Where the message made it ask the
// host about its brushes, the event's kind is found anew: the host has run a script, and scripts
// can change views.
Answer RedirectToSculpt(MouseEvent& event);
