// The tour: captioned scenarios played with real input, told in two columns, with pictures.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tour {

// A scenario of the tour and its caption.
struct Stop {
    std::string file;
    std::string caption;
};

// Plays one stop: its trace to *output, its messages to *messages, its
// transcript to the file. Returns its status.
using PlayStop = std::function<int(const Stop& stop, const std::string& transcript,
                                   std::string* output, std::string* messages)>;

// The one whose drag is kept step by step, for the moving picture.
bool IsFilmed(const Stop& stop);

// Plays all stops, prints the transcript and writes the trace to the folder.
int Play(const std::vector<Stop>& stops, const std::string& folder, const PlayStop& play);

// The scenario files of a folder in order.
std::vector<std::string> Files(const std::string& folder);

}  // namespace tour
