#include "standin/engine/trace/trace.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "standin/engine/trace/control.h"

namespace trace {
namespace {

// An event that goes on for this many lines has run away; what it still says is dropped, so that a
// loop without end leaves a trace that can be read.
constexpr int kMostLinesOfAnEvent = 20000;

constexpr int kReadings = 4;

struct Unread {
    std::vector<std::string> lines;
    size_t next = 0;

    void Clear() {
        lines.clear();
        next = 0;
    }
};

struct Journal {
    Options options;
    std::string buffer;
    int depth = 0;
    int lines_of_event = 0;
    Unread unread[kReadings];
    bool clear_at_next_line[kReadings] = {};
    std::function<std::string(HWND)> facts;
    HWND event_window = nullptr;
    std::vector<std::string> all_effects;
};

// The watchdog's thread writes what there is, so every access is guarded.
class Guard {
public:
    Guard() { EnterCriticalSection(Section()); }
    ~Guard() { LeaveCriticalSection(Section()); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

private:
    static CRITICAL_SECTION* Section() {
        static CRITICAL_SECTION section = [] {
            CRITICAL_SECTION made;
            InitializeCriticalSection(&made);
            return made;
        }();
        return &section;
    }
};

Journal g_journal;
std::atomic<unsigned long long> g_progress{0};

void WriteAll(HANDLE file, std::string_view text) {
    while (!text.empty()) {
        DWORD written = 0;
        const DWORD part = static_cast<DWORD>(std::min<size_t>(text.size(), 1 << 20));
        if (!WriteFile(file, text.data(), part, &written, nullptr) || written == 0) return;
        text.remove_prefix(written);
    }
}

void FlushLocked() {
    if (g_journal.options.output) WriteAll(g_journal.options.output, g_journal.buffer);
    g_journal.buffer.clear();
}

void WriteLine(int indent, std::string_view kind, std::string_view text) {
    if (g_journal.depth > 0 && ++g_journal.lines_of_event > kMostLinesOfAnEvent) return;
    std::string& out = g_journal.buffer;
    out.append(2 * static_cast<size_t>(indent), ' ');
    out += kind;
    if (!text.empty()) {
        out += ' ';
        out += text;
    }
    out += '\n';
    if (out.size() > 1 << 16) FlushLocked();
}

void Keep(Reading reading, std::string_view kind, std::string_view text) {
    const int list = static_cast<int>(reading);
    if (std::exchange(g_journal.clear_at_next_line[list], false)) g_journal.unread[list].Clear();
    std::vector<std::string>& lines = g_journal.unread[list].lines;
    if (lines.size() >= kMostLinesOfAnEvent) return;
    std::string line(kind);
    if (!text.empty()) {
        line += ' ';
        line += text;
    }
    lines.push_back(std::move(line));
}

// Depth 0 happens when a posted message reaches one of the plug-in's windows after the event.
void Effect(std::string_view kind, std::string_view text) {
    const Guard guard;
    const int depth = g_journal.depth;
    WriteLine(depth > 0 ? depth - 1 : 0, kind, text);
    if (depth <= 1) Keep(Reading::kEffects, kind, text);
    if (g_journal.all_effects.size() < kMostLinesOfAnEvent)
        g_journal.all_effects.push_back(std::string(kind) + ' ' + std::string(text));
}

void Fact(Reading reading, std::string_view kind, std::string_view text) {
    const Guard guard;
    const int depth = g_journal.depth;
    WriteLine(depth > 0 ? depth - 1 : 0, kind, text);
    if (depth <= 1) Keep(reading, kind, text);
}

}  // namespace

void In(std::string_view text) {
    const Guard guard;
    const HWND window = std::exchange(g_journal.event_window, nullptr);
    if (g_journal.depth == 0) g_journal.lines_of_event = 0;
    WriteLine(g_journal.depth, "in", text);
    if (g_journal.options.facts && g_journal.facts)
        WriteLine(g_journal.depth, "at", g_journal.facts(window));
    ++g_journal.depth;
}

void Out(std::string_view verdict) {
    const Guard guard;
    if (g_journal.depth == 0) return;
    --g_journal.depth;
    WriteLine(g_journal.depth, "out", verdict);
    if (g_journal.depth == 0) {
        Keep(Reading::kEffects, "out", verdict);
        ++g_progress;
        if (g_journal.options.live) FlushLocked();
    }
}

static void DialogMessage(std::string_view kind, std::string_view text) {
    const Guard guard;
    WriteLine(std::max(g_journal.depth, 1), kind, text);
}

void InDialogMessage(std::string_view text) {
    DialogMessage("in", text);
}

void OutDialogMessage(std::string_view answer) {
    DialogMessage("out", answer);
}

void Win(std::string_view text) {
    Effect("win", text);
}

void Sdk(std::string_view text) {
    Effect("sdk", text);
}

void Script(std::string_view text) {
    Effect("script", Quoted(text));
}

void Ini(std::string_view text) {
    Effect("ini", text);
}

void Listener(std::string_view text) {
    Effect("listener", Quoted(text));
}

void Got(std::string_view text) {
    Fact(Reading::kArrivals, "got", text);
}

void State(std::string_view text) {
    Fact(Reading::kStates, "state", text);
}

void Value(std::string_view text) {
    Fact(Reading::kValues, "value", text);
}

bool AsksWanted() {
    return g_journal.options.queries;
}

void Ask(std::string_view call, std::string_view result) {
    if (!g_journal.options.queries) return;
    const Guard guard;
    const int depth = g_journal.depth;
    WriteLine(depth > 0 ? depth - 1 : 0, "ask", std::string(call) + " -> " + std::string(result));
}

int Depth() {
    return g_journal.depth;
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        switch (c) {
            case '"': quoted += "\\\""; break;
            case '\\': quoted += "\\\\"; break;
            case '\t': quoted += "\\t"; break;
            case '\n': quoted += "\\n"; break;
            case '\r': quoted += "\\r"; break;
            default: quoted += c;
        }
    }
    quoted += '"';
    return quoted;
}

void Open(const Options& options) {
    const Guard guard;
    g_journal = Journal();
    g_journal.options = options;
}

void Flush() {
    const Guard guard;
    FlushLocked();
}

void Heading(std::string_view text) {
    const Guard guard;
    WriteLine(0, "#", text);
}

void SetFactsSource(std::function<std::string(HWND)> source) {
    const Guard guard;
    g_journal.facts = std::move(source);
}

void SetEventWindow(HWND window) {
    g_journal.event_window = window;
}

void BeginCommand(bool is_event) {
    const Guard guard;
    for (int list = 0; list < kReadings; ++list) {
        g_journal.clear_at_next_line[list] = !is_event;
        if (is_event) g_journal.unread[list].Clear();
    }
    g_journal.all_effects.clear();
    ++g_progress;
}

std::optional<std::string> NextLine(Reading reading) {
    const Guard guard;
    Unread& unread = g_journal.unread[static_cast<int>(reading)];
    if (unread.next == unread.lines.size()) return {};
    return unread.lines[unread.next++];
}

std::optional<std::string> AnswerOfEvent() {
    for (const std::string& line : g_journal.unread[static_cast<int>(Reading::kEffects)].lines)
        if (line.starts_with("out ")) return line;
    return {};
}

const std::vector<std::string>& EffectsOfCommand() {
    // What is still to be read may be of an earlier command, when this one has set nothing off.
    static const std::vector<std::string> none;
    if (g_journal.clear_at_next_line[static_cast<int>(Reading::kEffects)]) return none;
    return g_journal.unread[static_cast<int>(Reading::kEffects)].lines;
}

const std::vector<std::string>& AllEffectsOfCommand() {
    return g_journal.all_effects;
}

unsigned long long Progress() {
    return g_progress;
}

void NoteProgress() {
    ++g_progress;
}

void Die(int status, std::string_view message) {
    const Guard guard;
    FlushLocked();
    std::string line(message);
    line += '\n';
    WriteAll(GetStdHandle(STD_ERROR_HANDLE), line);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    for (;;)
        Sleep(INFINITE);
}

}  // namespace trace
