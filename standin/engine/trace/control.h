// The player's side of the journal: where it goes, what is listed, and what `expect` reads.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trace {

struct Options {
    HANDLE output = nullptr;  // null: the lines are kept from no one, but written nowhere
    bool queries = false;
    bool facts = false;
    bool live = false;  // written at the end of each event, for those who read along
};

void Open(const Options& options);
// Writes what has been collected. Called after every command of a scenario, and when a play dies.
void Flush();

// A note that is no trace line of its own kind: headings of files.
void Heading(std::string_view text);

// The text of an `at` line for an event of this window (null: of none).
void SetFactsSource(std::function<std::string(HWND)> source);
// The window that the next In is about.
void SetEventWindow(HWND window);

// A command of the scenario begins. What was unread is forgotten when the command is an event, or
// at its first line when it turns out to set something off.
void BeginCommand(bool is_event);

// The lines of the last command that `expect` has not read yet: effects, and apart from them
// `state`, `value` and `got` lines.
enum class Reading { kEffects, kStates, kValues, kArrivals };
std::optional<std::string> NextLine(Reading reading);
// The first `out` line of what NextLine reads, read or not: the answer to the event itself.
std::optional<std::string> AnswerOfEvent();
// The effects of the last command, read or not.
const std::vector<std::string>& EffectsOfCommand();
// The same without `out` lines and with the effects of the events in between.
const std::vector<std::string>& AllEffectsOfCommand();

// Grows with every event that ends and every command; a watchdog looks at it.
unsigned long long Progress();
void NoteProgress();

// What stands so far is written, then the process ends with this status. May be called by any
// thread.
[[noreturn]] void Die(int status, std::string_view message);

}  // namespace trace
