// The host drives a gesture's drag by Alt, so Alt stays down for the host when the user lets go of
// it before the end of the gesture: its release is owed until then.
#pragma once

// Presses Alt again after its release; the next ReleasePendingAlt owes the release.
void HoldAltDown();

// Sends the Alt key-up that is owed, if one is.
void ReleasePendingAlt();
