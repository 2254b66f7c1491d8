#include "standin/player/transcript.h"

#include <algorithm>

#include "standin/engine/input/control.h"
#include "standin/engine/trace/control.h"
#include "standin/scenario/expectation.h"

namespace transcript {
namespace {

using scenario::Command;
using scenario::Verb;

constexpr size_t kMostLines = 12;

struct Phrase {
    const char* pattern;
    const char* words;  // `*` is replaced by what the pattern's star stands for
};

constexpr Phrase kPhrases[] = {
    {"out swallow", "keeps the event to itself"},
    {"out pass", ""},
    {"out *", ""},
    {"sdk PushStdCommandMode 200", "enters the host's zoom mode"},
    {"sdk PushStdCommandMode 202", "enters the host's pan mode"},
    {"sdk PushStdCommandMode 6", "enters the host's select mode"},
    {"sdk PopCommandMode", "leaves the command mode"},
    {"sdk theHold.Begin", "begins an undo record"},
    {"sdk theHold.Accept *", "keeps the undo record *"},
    {"sdk theHold.Cancel", "drops the undo record"},
    {"sdk SetMacroButtonStates 0", "refreshes the toolbar buttons"},
    {"sdk ExecuteAction 0 40105", "switches the transform gizmo"},
    {"sdk ExecuteAction 0 59231", "switches the selection lock"},
    {"sdk ExecuteAction 2077580866 40020", "switches the lock of the selected vertices"},
    {"sdk ExecuteAction *", "runs the host's action *"},
    {"sdk *", "calls *"},
    {"script *", "runs the script *"},
    {"ini *", "writes * to the settings file"},
    {"listener *", "prints * on the listener"},
    {"win SendMessageA * WM_LBUTTONDOWN *", "starts a left drag in *"},
    {"win SendMessageA * WM_LBUTTONUP *", "ends the left drag in *"},
    {"win SendMessageA * WM_MBUTTONDOWN *", "starts a middle drag in *"},
    {"win SendMessageA * WM_MBUTTONUP *", "ends the middle drag in *"},
    {"win SendMessageA * WM_MOUSEMOVE *", "drags on in *"},
    {"win SendInput *", "injects *"},
    {"win SetCursor 110", "shows the cursor for taking away from a selection"},
    {"win SetCursor 111", "shows the cursor for adding to a selection"},
    {"win SetCursor 112", "shows the cursor for changing a selection"},
    {"win SetCursor 115", "shows the orbit cursor"},
    {"win SetCursor 117", "shows the pan cursor"},
    {"win SetCursor 118", "shows the zoom cursor"},
    {"win SetCursor 120", "shows the cursor of a refused gesture"},
    {"win SetCursor 135", "shows the time cursor"},
    {"win SetCursor *", "shows the cursor *"},
    {"win SetCursorPos *", "sets the mouse to *"},
    {"win SetFocus *", "makes * active"},
    {"win *", "calls *"},
};

// What the first star of the pattern stands for in a text that fits it.
std::string FirstStar(std::string_view pattern, std::string_view text) {
    const size_t star = pattern.find('*');
    if (star == std::string_view::npos) return {};
    const std::string_view after = pattern.substr(star + 1);
    if (after.empty()) return std::string(text.substr(star));
    const std::string_view until = after.substr(0, after.find('*'));
    return std::string(text.substr(star, text.find(until, star) - star));
}

std::string Shortened(std::string text) {
    constexpr size_t kLongest = 64;
    if (text.size() > kLongest) text.replace(kLongest - 3, std::string::npos, "...");
    return text;
}

}  // namespace

std::string UserWords(const Command& command) {
    const auto word = [&command](size_t i) { return command.words[i]; };
    const auto number = [&command](size_t i) { return std::to_string(command.numbers[i]); };
    switch (command.verb) {
        case Verb::kStart: return "starts the host with the plug-in";
        case Verb::kKey: return (command.on ? "presses " : "releases ") + word(0);
        case Verb::kMoveWindow:
            return "moves the mouse to " + number(0) + "," + number(1) + " in " + word(0);
        case Verb::kMoveScreen: return "moves the mouse to " + number(0) + "," + number(1);
        case Verb::kMoveBy: return "moves the mouse by " + number(0) + "," + number(1);
        case Verb::kMouseDown: return "presses the " + word(0) + " mouse button";
        case Verb::kMouseUp: return "releases the " + word(0) + " mouse button";
        case Verb::kCommand: return "presses the hotkey of action " + number(0);
        case Verb::kClick: return "clicks " + word(0);
        case Verb::kSelect: return command.words.empty() ? "selects nothing" : "selects " + word(0);
        case Verb::kModeReplace: return "chooses the command mode " + number(0);
        case Verb::kOpen: return "opens " + word(0);
        case Verb::kClose: return "closes " + word(0);
        case Verb::kBrush: return (command.on ? "takes" : "lays down") + (" brush " + number(0));
        case Verb::kScript: return "evaluates " + command.text;
        default: return {};
    }
}

std::string PluginWords(const std::string& effect) {
    for (const Phrase& phrase : kPhrases) {
        if (!scenario::Matches(phrase.pattern, effect)) continue;
        std::string words = phrase.words;
        if (const size_t star = words.find('*'); star != std::string::npos)
            words.replace(star, 1, FirstStar(phrase.pattern, effect));
        return Shortened(words);
    }
    return Shortened(effect);
}

bool Writer::Open(const std::string& file) {
    file_ = std::fopen(file.c_str(), "wb");
    return file_ != nullptr;
}

void Writer::Line(char kind, const std::string& text) {
    std::fprintf(file_, "%c\t%s\n", kind, text.c_str());
}

void Writer::Add(const Command& command) {
    if (!file_) return;
    const std::string user = UserWords(command);
    if (user.empty()) return;
    std::vector<std::string> told;
    if (command.verb == Verb::kStart) {
        // Every scenario starts alike; the trace has the steps.
        told.push_back("installs its hooks, actions and menu (" +
                       std::to_string(trace::EffectsOfCommand().size()) + " steps)");
    } else if (scenario::IsEvent(command.verb))
        for (const std::string& effect : trace::EffectsOfCommand())
            if (std::string words = PluginWords(effect); !words.empty())
                told.push_back(std::move(words));
    // A drag of many steps is told once.
    if (user == last_user_ && told == last_told_) {
        ++repeats_;
        return;
    }
    EndRepeats();
    last_user_ = user;
    last_told_ = told;
    Line('u', user);
    for (size_t i = 0; i < told.size() && i < kMostLines; ++i)
        Line('p', told[i]);
    if (told.size() > kMostLines)
        Line('p', "... and " + std::to_string(told.size() - kMostLines) + " more steps");
}

void Writer::EndRepeats() {
    if (repeats_ > 0)
        Line('u', repeats_ == 1 ? "does so once more"
                                : "does so " + std::to_string(repeats_) + " more times");
    repeats_ = 0;
}

void Writer::AddPicture(const std::string& name) {
    if (!file_) return;
    EndRepeats();
    last_user_.clear();
    Line('s', name);
}

void Writer::Close() {
    if (!file_) return;
    EndRepeats();
    const input::Counts counts = input::CountsSoFar();
    std::fprintf(file_, "n\t%llu %llu %llu %llu\n", counts.injected, counts.own, counts.swallowed,
                 counts.passed);
    std::fclose(file_);
    file_ = nullptr;
}

bool Read(const std::string& file, Page* page) {
    std::FILE* const opened = std::fopen(file.c_str(), "rb");
    if (!opened) return false;
    char line[1024];
    while (std::fgets(line, sizeof line, opened)) {
        std::string text = line;
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
            text.pop_back();
        if (text.size() < 2) continue;
        if (text[0] == 'n')
            std::sscanf(text.c_str() + 2, "%llu %llu %llu %llu", &page->injected, &page->own,
                        &page->swallowed, &page->passed);
        else
            page->lines.emplace_back(text[0], text.substr(2));
    }
    std::fclose(opened);
    return true;
}

std::string Print(const Page& page) {
    constexpr size_t kLeft = 46;
    std::string text;
    std::string left;
    bool open = false;
    const auto row = [&text](const std::string& a, const std::string& b) {
        text += "  " + a + std::string(a.size() < kLeft ? kLeft - a.size() : 1, ' ') + "| " + b;
        while (text.back() == ' ')
            text.pop_back();
        text += '\n';
    };
    for (const auto& [kind, words] : page.lines) {
        if (kind == 'u') {
            if (open) row(left, "");
            left = words;
            open = true;
        } else if (kind == 'p') {
            row(open ? left : "", words);
            open = false;
        } else if (kind == 's') {
            if (open) row(left, "");
            open = false;
            row("  picture: " + words, "");
        }
    }
    if (open) row(left, "");
    return text;
}

}  // namespace transcript
