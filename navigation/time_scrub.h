// The time scrub: while its key is held, any button drags the time slider, wherever the cursor is.
#pragma once

#include "navigation/messages.h"

// A move or button release while the slider is dragged, and a button press that starts a drag: true
// when the message is to be swallowed. False also when the host shows no time slider.
bool DragTimeScrub(const MouseEvent& event);
bool StartTimeScrub(const MouseEvent& event);

// A move while the key is held and no button is: shows the cursor, swallows.
bool HoverTimeScrub(const MouseEvent& event);
