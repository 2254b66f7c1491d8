// What the hooks see of ten seconds of input, for the report.
#pragma once

namespace report {

class File;
class WindowTree;

// Looks on for ten seconds, then calls `done` and forgets what it saw. False: it does so already,
// or the system refused.
bool StartInputLog(void (*done)());

// The lines of what was seen, between `done` being called and its end; none at other times.
void WriteInputLog(File& file, const WindowTree& tree);

}  // namespace report
