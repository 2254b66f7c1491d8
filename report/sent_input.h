// What the plug-in sends as input, noted on its way to the system: the hooks cannot tell it from
// the user's, since records carry no mark.
#pragma once

#include "report/recording.h"

namespace report {

// From now on each call of the plug-in for SendInput or SetCursorPos is also told to `recorder`.
// Where the plug-in is not loaded, nothing happens.
void NoteSentInput(recording::Recorder& recorder);
void ForgetSentInput();

}  // namespace report
