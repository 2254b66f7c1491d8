// Plays one scenario in this process: makes the world, carries the commands out, reads what is
// expected.
#pragma once

#include <string>
#include <vector>

#include "standin/engine/input/control.h"
#include "standin/engine/plugin/loader.h"
#include "standin/engine/world/report.h"
#include "standin/scenario/parser.h"

namespace player {

// How a play ends, as the command's exit status says it.
enum Status { kGood = 0, kDifferent = 1, kUnreadable = 2, kDied = 3 };
// Between the processes alone: the system disturbed the play, it is to be played again.
constexpr int kDisturbed = 4;

// Somebody who looks on at a play and judges it. What is expected is theirs to say, so no trace is
// written, and a command that can not be carried out is left out.
class Observer {
public:
    Observer() = default;
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    virtual ~Observer() = default;
    // Around every command. After answers what is wrong, which ends the play, else an empty text.
    virtual void Before(const scenario::Command& command) = 0;
    virtual std::string After(const scenario::Command& command) = 0;
    // What the play puts out at its end, in place of a trace.
    virtual std::string Report() const = 0;
};

struct Options {
    input::Kind input = input::Kind::kVirtual;
    int release = 13900;
    int screen_width = 1280;
    int screen_height = 1024;
    bool queries = false;
    bool facts = false;
    std::string shots;             // folder for pictures, empty: none
    bool film = false;             // and one there after each step of a drag
    std::string transcript;        // file for the two columns of the tour, empty: none
    std::string config_dir;        // the host's configuration folder, empty: one of its own
    HANDLE trace = nullptr;        // interactive: where the trace goes, null: standard output
    bool watch = false;            // interactive: the trace tells what there is to be seen
    bool forgiving = false;        // a command that can not be carried out is left out
    Observer* observer = nullptr;  // null: nobody looks on
    std::string world;             // file of the report whose windows the host has, empty: its own
    const report::Report* report = nullptr;  // what stands there
    std::string desktop;     // the system's desktop to play on, which is made where it is missing
    HANDLE ready = nullptr;  // an event to set when the desktop stands, null: nobody waits
    plugin::Files files;
};

// What the world (that of the report, where there is one), the fault lists and the link map know,
// for the parser.
scenario::Vocabulary KnownWords(const report::Report* report);

// The trace goes to standard output, messages to standard error, with `file` before them.
int Play(const Options& options, const std::string& file, const scenario::Scenario& scenario);
// After the thread of a play has ended: takes down what belongs to the whole process. False:
// something is left.
bool Clear();

// Opens the stand-in with the plug-in on the user's display, until its window is closed.
int RunInteractive(const Options& options);

}  // namespace player
