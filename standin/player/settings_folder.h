// The host's configuration folder, where the plug-in keeps its settings file.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace player {

// Making and removing folders takes longer than many a play, so a process has one for all that it
// plays. Who knows that a process is over, killed or not, removes its folder.
class SettingsFolder {
public:
    // The lines of the settings file; none: no file.
    using Lines = std::optional<std::vector<std::string>>;

    // `wanted` is used as it is and stays, with the file that is there unless there are lines;
    // empty: the process's own, without what an earlier play has left. False: nothing can be
    // written there.
    bool Make(const std::string& wanted, const Lines& lines);

    const std::string& Path() const { return path_; }
    std::string File() const { return path_ + "\\Karvel.ini"; }

    static void RemoveOwn(DWORD process);

private:
    std::string path_;
};

}  // namespace player
