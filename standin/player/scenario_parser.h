// Scenarios as text: one command a line, `#` starts a comment. A file is read and checked as a
// whole before anything of it is played, so that a misspelt line can not leave half a play behind.
// Needs no Windows; what only the world knows is asked through a Vocabulary.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace scenario {

enum class Verb {
    kIni,
    kStart,
    kStartAgain,
    kRelease,
    kScreen,
    kConfigDir,
    kModeReplace,
    kModeNone,
    kModePush,
    kModePop,
    kSelect,
    kSubobject,
    kView,
    kLock,
    kButton,
    kAction,
    kBrush,
    kPaint,
    kPolyTools,
    kPolyToolsThere,
    kScriptsTake,
    kRebuildToolbar,
    kBusy,
    kNoLongerBusy,
    kPeek,
    kCode,
    kReenter,
    kSwap,
    kOpen,
    kClose,
    kDestroy,
    kNamedSet,
    kHide,
    kUnhide,
    kTracks,
    kKeys,
    kSelectKeys,
    kForeground,
    kClock,
    kKey,
    kMoveWindow,
    kMoveScreen,
    kMoveBy,
    kMouseDown,
    kMouseUp,
    kDoubleClick,
    kCommand,
    kAccelerator,
    kClick,
    kMenu,
    kCloseBox,
    kPlace,
    kQuery,
    kScript,
    kPlay,
    kFail,
    kExpect,
    kExpectNothing,
    kShow,
    kPoke,
};

// One line. Which fields are used follows from the verb.
struct Command {
    Verb verb{};
    int line = 0;
    std::string source;              // as written, without comment and outer blanks
    std::vector<std::string> words;  // names
    std::vector<long long> numbers;
    std::string text;  // quoted text, the line to expect, KEY=TEXT
    bool on = false;   // on, down, push; not off
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
    bool has_ini = false;
};

struct Vocabulary {
    std::function<bool(std::string_view)> is_window;
    std::function<bool(std::string_view)> is_object;
    std::function<bool(unsigned long, int)> is_action;
    std::function<bool(std::string_view)> is_fault;
    std::function<bool(std::string_view)> is_global;  // of the plug-in
};

struct Mistake {
    int line = 0;
    std::string message;  // what is wrong and what to write instead
};

// True when the whole text is sound; else *mistake names the first bad line.
bool Parse(std::string_view text, const Vocabulary& vocabulary, Scenario* result, Mistake* mistake);

// Whether the line `got` is what an `expect` asks for: `*` stands for any text.
bool Matches(std::string_view expected, std::string_view got);

// The same for a whole trace line. Words of the form NAME=VALUE at the end of some lines tell what
// most expectations do not care about: those that the expectation leaves out are not compared.
bool MatchesLine(std::string_view expected, std::string_view got);

// `…` (or `...`) alone: any number of lines.
bool IsAnyLines(std::string_view expected);

// The virtual key of a key's name, 0 for an unknown one.
int KeyByName(std::string_view name);

// Whether a command's effects are what the next `expect` reads.
bool IsEvent(Verb verb);

}  // namespace scenario
