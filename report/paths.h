// Files of the report plug-in, all beside the settings file.
#pragma once

namespace report {

inline constexpr int kPathSize = 1100;

// FOLDER\NAME.EXT, and from the second one on FOLDER\NAME2.EXT. False: the host names no
// folder, and the path is NAME.
bool PathBesideSettings(char (&path)[kPathSize], const char* name, int number,
                        const char* extension);

// Prints before, path and after to the listener, as one line.
void TellPath(const char* before, const char* path, const char* after);

}  // namespace report
