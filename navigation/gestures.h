// The Alt gestures: orbit, pan and zoom of viewports and editors.
#pragma once

#include <windows.h>

#include "navigation/messages.h"

// The handlers take the message's point (client coordinates of the window) and its window, and
// answer non-zero when they consumed the message. The starters look at the window's kind, the
// others at the kind of the window in which the gesture started.
int StartOrbit(POINT point, HWND window);
int StartPan(POINT point, HWND window);
int StartZoom(POINT point, HWND window);
int OrbitToZoom(POINT point, HWND window);
int PanToZoom(POINT point, HWND window);
int ZoomToPan(POINT point, HWND window);
int ZoomToOrbit(POINT point, HWND window);
int EndOrbit(POINT point, HWND window);
int EndPan(POINT point, HWND window);
int EndZoom(POINT point, HWND window);

// Sets the zoom flag and forgets the last zoom drag.
void BeginZoomState();

// Sends the Alt key-up that is owed, if one is.
void ReleasePendingAlt();

// The rules for a button press with Alt down, and those for a button release: true when the message
// is to be swallowed.
enum class PressResult {
    kNoRule,    // the message has no meaning as a gesture
    kConsumed,  // swallow it
    kStarted,   // a rule applied, but the window gets the message too
};
PressResult ApplyPressRules(const MouseEvent& event);
bool ApplyReleaseRules(const MouseEvent& event);

bool IsGestureActive();
// A mouse move while a gesture is active: true when it is to be swallowed.
bool MoveGesture(const MouseEvent& event);
