// The transcript of a play in two columns: what the user did, what the plug-in made of it. A play
// writes it as lines of `kind<TAB>text`; the tour prints them.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "standin/scenario/parser.h"

namespace transcript {

class Writer {
public:
    ~Writer() { Close(); }
    bool Open(const std::string& file);
    // A command has been played; its effects are read from the journal.
    void Add(const scenario::Command& command);
    void AddPicture(const std::string& name);
    // Writes how many events there were.
    void Close();

private:
    void Line(char kind, const std::string& text);
    void EndRepeats();

    std::FILE* file_ = nullptr;
    std::string last_user_;
    std::vector<std::string> last_told_;
    int repeats_ = 0;
};

// What a command of a scenario is in a user's words; empty when it is nothing that a user does.
std::string UserWords(const scenario::Command& command);
// What an effect line is in words; empty when it says nothing to a reader.
std::string PluginWords(const std::string& effect);

struct Page {
    std::vector<std::pair<char, std::string>> lines;
    unsigned long long injected = 0;
    unsigned long long own = 0;
    unsigned long long swallowed = 0;
    unsigned long long passed = 0;
};
bool Read(const std::string& file, Page* page);
// The two columns.
std::string Print(const Page& page);

}  // namespace transcript
