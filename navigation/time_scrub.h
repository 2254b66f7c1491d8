// The time scrub: while its key is held, any button drags the time slider, wherever the cursor is.
#pragma once

#include "input/mouse_event.h"

// The key is held, or the slider is still dragged.
bool IsTimeScrubOn();

// The key went down. Nothing happens when the scrub is on already, or with the left button down.
void ArmTimeScrub();
// The key came up: a drag goes on to its button's release.
void ReleaseTimeScrub();

// Starts the drag, moves and ends it, shows the cursor of the held key. A host that shows no time
// slider cannot be scrubbed.
Answer ScrubTime(const MouseMessage& message);
