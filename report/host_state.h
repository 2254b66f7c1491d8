// The host's state as a recording tells it, asked before and after each event.
#pragma once

#include <windows.h>

#include "report/recording.h"

namespace report {

// Forgets the windows that were found before.
void ForgetWindows();

// `searches`: also looks for windows that were not there the last time. That takes longer, so a
// drag does without.
void ReadState(recording::State& state, recording::Recorder& recorder, bool searches);

}  // namespace report
