// Scenarios as text: one command a line, `#` starts a comment. A file is read and checked as a
// whole before anything of it is played, so that a misspelt line can not leave half a play behind.
// Needs no Windows; what only the world knows is asked through a Vocabulary.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "standin/scenario/language.h"

namespace scenario {

// One line. Which fields are used follows from the form of its row.
struct Command {
    Verb verb{};
    int line = 0;
    std::string source;              // as written, without comment and outer blanks
    std::vector<std::string> words;  // names
    std::vector<long long> numbers;
    std::string text;  // quoted text, the line to expect, KEY=TEXT
    bool on = false;   // the first of two words: on, down; not off
};

struct Scenario {
    std::vector<Command> commands;
    // The caption of a scenario of the tour: its first comment line, without the `#`.
    std::string caption;
    int release = 0;       // 0: as the command line says
    int screen_width = 0;  // of the main monitor, which begins at 0,0
    int screen_height = 0;
    int screen_left = 0;  // where the whole screen begins
    int screen_top = 0;
    int screen_line = 0;
    bool config_dir_slash = false;
    std::vector<std::string> ini;  // KEY=TEXT in order; only where there_is_ini
};

struct Vocabulary {
    std::function<bool(std::string_view)> is_window;
    std::function<bool(std::string_view)> is_object;
    std::function<bool(unsigned long, int)> is_action;
    std::function<bool(std::string_view)> is_fault;
    std::function<bool(std::string_view)> is_global;  // of the plug-in
    // Names to propose for one that is not known; may be missing.
    std::function<std::vector<std::string>(Check)> names = nullptr;
};

struct Mistake {
    int line = 0;
    std::string message;  // what is wrong and what to write instead
};

// True when the whole text is sound; else *mistake names the first bad line.
bool Parse(std::string_view text, const Vocabulary& vocabulary, Scenario* result, Mistake* mistake);

// What a sound scenario has to have so that its play can show a fault; empty: nothing is missing.
std::string MissingIn(const Scenario& scenario);

}  // namespace scenario
