// The gesture rules at work: what a pressed or released button does.
#pragma once

#include "input/mouse_event.h"

// A button press with Alt down. kPassed: a rule applied, but the window gets the message as well.
Answer ApplyPressRules(const MouseEvent& event);

// Any message; only releases of buttons have rules.
Answer ApplyReleaseRules(const MouseEvent& event);
