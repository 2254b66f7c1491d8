// Selection in the control scheme of the gestures: Ctrl removes, Shift toggles, both add. The
// clicks reach the host with the modifiers that it has for the same thing.
#pragma once

#include "navigation/messages.h"

// A left click or a move: true when the message is to be swallowed. `kind` is the WindowKind of its
// window.
bool EmulateSelection(const MouseEvent& event, int kind);
