// Any text as a scenario: it is either sound, and then says the same when it is read again, or has
// a mistake with a line of the text and a message of one line.

#include <algorithm>

#include "standin/scenario/expectation.h"
#include "standin/scenario/parser.h"
#include "tests/fuzzers/fuzzer.h"

namespace {

using fuzzer::Check;

scenario::Vocabulary SmallVocabulary() {
    scenario::Vocabulary known;
    known.is_window = [](std::string_view name) {
        return name == "viewport.persp" || name == "options.1" || name == "trackview";
    };
    known.is_object = [](std::string_view name) { return name == "Box001"; };
    known.is_action = [](unsigned long table, int id) { return table == 0 && id == 40105; };
    known.is_fault = [](std::string_view name) { return name == "SendInput"; };
    known.is_global = [](std::string_view name) { return name == "g_zoomActive"; };
    return known;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const scenario::Vocabulary kKnown = SmallVocabulary();
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
    scenario::Scenario read;
    scenario::Mistake mistake;
    if (!scenario::Parse(text, kKnown, &read, &mistake)) {
        Check(mistake.line >= 1 && mistake.line <= lines, "a mistake in a line that is not there");
        Check(!mistake.message.empty(), "a mistake without a message");
        Check(mistake.message.find('\n') == std::string::npos && mistake.message.size() < 600,
              "a message that is no line to read");
        return 0;
    }
    std::string again_text;
    int line = 0;
    for (const scenario::Command& command : read.commands) {
        Check(command.line > line && command.line <= lines, "lines out of order");
        line = command.line;
        again_text += command.source + "\n";
        // Any pattern may be asked about any line.
        scenario::Matches(command.text, command.source);
    }
    scenario::Scenario again;
    Check(scenario::Parse(again_text, kKnown, &again, &mistake), "a sound line is refused alone");
    Check(again.commands.size() == read.commands.size(), "commands are lost");
    for (std::size_t i = 0; i < read.commands.size(); ++i) {
        const scenario::Command& a = read.commands[i];
        const scenario::Command& b = again.commands[i];
        Check(a.verb == b.verb && a.words == b.words && a.numbers == b.numbers &&
                  a.text == b.text && a.on == b.on,
              "a line says something else the second time");
    }
    return 0;
}
