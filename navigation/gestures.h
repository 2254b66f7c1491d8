// What the gesture rules call: orbit, pan and zoom of viewports and editors begin, turn into each
// other and end.
#pragma once

#include "input/mouse_event.h"

// The starters look at the kind of the event's window, the others at the kind of the window in
// which the gesture began.
Answer StartOrbit(const MouseEvent& event);
Answer StartPan(const MouseEvent& event);
Answer StartZoom(const MouseEvent& event);
Answer OrbitToZoom(const MouseEvent& event);
Answer PanToZoom(const MouseEvent& event);
Answer ZoomToPan(const MouseEvent& event);
Answer ZoomToOrbit(const MouseEvent& event);
Answer EndOrbit(const MouseEvent& event);
Answer EndPan(const MouseEvent& event);
Answer EndZoom(const MouseEvent& event);
