#include "benchmarks/direct.h"

#include <vector>

#include "benchmarks/call_sites.h"
#include "benchmarks/clock.h"
#include "benchmarks/entry_points.h"
#include "benchmarks/stage.h"

namespace direct {
namespace {

using measure::NanosecondsNow;
using nlohmann::json;

struct Times {
    double plugin = 0;
    double empty = 0;
    double sent = 0;
};
Times g_turn;
int g_depth = 0;  // of entries, one inside of another
bool g_sending = false;
bool g_empty_first = false;

// --- what the plug-in brings about, timed where it does: the host is in the right state then ---

template <typename Call>
auto TimeSending(Call call) {
    if (g_depth == 0 || g_sending) return call();
    g_sending = true;
    const double begin = NanosecondsNow();
    const auto answer = call();
    g_turn.sent += NanosecondsNow() - begin;
    g_sending = false;
    return answer;
}

LRESULT WINAPI TimedSendMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return TimeSending([&] { return SendMessageA(window, message, wparam, lparam); });
}

UINT WINAPI TimedSendInput(UINT count, INPUT* records, int size) {
    return TimeSending([&] { return SendInput(count, records, size); });
}

HCURSOR WINAPI TimedSetCursor(HCURSOR cursor) {
    return TimeSending([&] { return SetCursor(cursor); });
}

BOOL WINAPI TimedSetCursorPos(int x, int y) {
    return TimeSending([&] { return SetCursorPos(x, y); });
}

HWND WINAPI TimedSetFocus(HWND window) {
    return TimeSending([&] { return SetFocus(window); });
}

BOOL WINAPI TimedSetKeyboardState(BYTE* state) {
    return TimeSending([&] { return SetKeyboardState(state); });
}

void WINAPI TimedSleep(DWORD milliseconds) {
    TimeSending([&] {
        Sleep(milliseconds);
        return true;
    });
}

void TimeWhatIsSent() {
    using call_sites::LeadThrough;
    LeadThrough("SendMessageA", reinterpret_cast<void*>(TimedSendMessage));
    LeadThrough("SendInput", reinterpret_cast<void*>(TimedSendInput));
    LeadThrough("SetCursor", reinterpret_cast<void*>(TimedSetCursor));
    LeadThrough("SetCursorPos", reinterpret_cast<void*>(TimedSetCursorPos));
    LeadThrough("SetFocus", reinterpret_cast<void*>(TimedSetFocus));
    LeadThrough("SetKeyboardState", reinterpret_cast<void*>(TimedSetKeyboardState));
    LeadThrough("Sleep", reinterpret_cast<void*>(TimedSleep));
}

// --- the entry points ---

LRESULT CALLBACK EmptyHook(int code, WPARAM wparam, LPARAM lparam) {
    return CallNextHookEx(nullptr, code, wparam, lparam);
}

double TimeEmpty(int code, WPARAM wparam, LPARAM lparam) {
    // Through a pointer, as the system calls a hook.
    static const volatile HOOKPROC hook = EmptyHook;
    const double begin = NanosecondsNow();
    hook(code, wparam, lparam);
    return NanosecondsNow() - begin;
}

// The empty hook has its turn before the plug-in and after it alternately, so that neither always
// finds the caches warm.
LRESULT Time(HOOKPROC entry, int code, WPARAM wparam, LPARAM lparam) {
    if (g_depth != 0) return entry(code, wparam, lparam);
    ++g_depth;
    if (g_empty_first) g_turn.empty += TimeEmpty(code, wparam, lparam);
    const double begin = NanosecondsNow();
    const LRESULT answer = entry(code, wparam, lparam);
    g_turn.plugin += NanosecondsNow() - begin;
    if (!g_empty_first) g_turn.empty += TimeEmpty(code, wparam, lparam);
    --g_depth;
    return answer;
}

}  // namespace

bool Open() {
    if (!entry_points::Open(input::Kind::kReal)) return false;
    TimeWhatIsSent();
    call_sites::SetMode(call_sites::Mode::kSystem);
    return true;
}

json MeasureOne(const situations::Situation& situation, const Sizes& sizes) {
    std::vector<double> plugin;
    std::vector<double> empty;
    std::vector<double> sent;
    situations::Enter(situation);
    // The first turns pay for what is made once.
    for (int turn = 0; turn < 4; ++turn)
        situations::Turn(situation, nullptr);
    const double begin = NanosecondsNow();
    bool confirmed = true;
    for (int turn = 0; turn < sizes.most_turns; ++turn) {
        if (turn >= sizes.least_turns && NanosecondsNow() - begin > sizes.longest_ns) break;
        g_empty_first = turn % 2 != 0;
        g_turn = {};
        confirmed = situations::Turn(situation, Time) && confirmed;
        if (g_turn.empty == 0) return {{"error", std::string(situation.id) + ": nothing came"}};
        plugin.push_back(g_turn.plugin);
        empty.push_back(g_turn.empty);
        sent.push_back(g_turn.sent);
    }
    situations::Leave(situation);
    if (!confirmed) return {{"error", std::string(situation.id) + " is not what it says"}};
    return {{"title", situation.title},
            {"ns", measure::Median(plugin)},
            {"empty_ns", measure::Median(empty)},
            {"must_send_ns", measure::Median(sent)},
            {"ratio", measure::MedianRatio(plugin, empty)},
            {"quartiles", measure::RatioQuartiles(plugin, empty)},
            {"must_send", measure::MedianRatio(sent, empty)},
            {"turns", plugin.size()}};
}

json Measure(const plugin::Files& files, const Sizes& sizes) {
    std::string message;
    if (!stage::Open(input::Kind::kReal, files, &message)) return {{"error", message}};
    if (!Open()) return {{"error", "the plug-in installed no hooks"}};
    json result = json::object();
    for (const situations::Situation& situation : situations::All()) {
        result[situation.id] = MeasureOne(situation, sizes);
        if (result[situation.id].contains("error")) return result[situation.id];
    }
    stage::Close();
    return result;
}

}  // namespace direct
