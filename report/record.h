// The recording of the session: the hooks that see input before and after the plug-in, what is
// asked of the host around them, and the file.
#pragma once

namespace report {

// Begins a new file beside the settings file and says in the listener where it is. Nothing happens
// while a recording runs.
void StartRecording();
void StopRecording();

}  // namespace report
