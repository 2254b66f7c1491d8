#include "benchmarks/hook_work.h"

#include <windows.h>

#include <psapi.h>

#include <cstring>
#include <string>
#include <vector>

#include "benchmarks/call_counts.h"
#include "benchmarks/call_sites.h"
#include "benchmarks/clock.h"
#include "benchmarks/entry_points.h"
#include "benchmarks/situations.h"
#include "benchmarks/stage.h"
#include "standin/engine/input/internal.h"
#include "standin/engine/world/world.h"

namespace hook_work {
namespace {

using call_sites::Mode;
using nlohmann::json;
using situations::Message;
using situations::Situation;

using call_counts::CallsOf;
using call_counts::Summary;

// --- the messages of a situation, watched on their way through the plug-in ---

// The last one, to be repeated.
MOUSEHOOKSTRUCTEX g_last_move{};
WPARAM g_last_key = 0;
LPARAM g_last_key_flags = 0;

LRESULT Watch(HOOKPROC entry, int code, WPARAM wparam, LPARAM lparam) {
    if (entry == entry_points::KeyHook()) {
        g_last_key = wparam;
        g_last_key_flags = lparam;
    } else if (wparam == WM_MOUSEMOVE) {
        g_last_move = *reinterpret_cast<const MOUSEHOOKSTRUCTEX*>(lparam);
    }
    return call_counts::Note(entry, code, wparam, lparam);
}

Summary WatchMessages(const Situation& situation, int count) {
    entry_points::Watch(Watch);
    for (int turn = 0; turn < count; ++turn)
        situations::Send(situation, turn);
    entry_points::Watch(nullptr);
    return call_counts::Summarize(call_counts::Noted());
}

// --- answers of Win32 calls that are more than one number ---

struct Fakes {
    POINT cursor{};
    SHORT keys[256] = {};
    HWND windows[2] = {};
    char classes[2][64] = {};
    POINT client_origin{};
    RECT frame{};
};
Fakes g_fakes;

LRESULT WINAPI FakeCallNextHookEx(HHOOK, int, WPARAM, LPARAM) {
    return 0;
}

BOOL WINAPI FakeGetCursorPos(POINT* point) {
    *point = g_fakes.cursor;
    return TRUE;
}

SHORT WINAPI FakeGetAsyncKeyState(int key) {
    return g_fakes.keys[key & 255];
}

int WINAPI FakeGetClassName(HWND window, char* text, int) {
    const char* const name = g_fakes.classes[window == g_fakes.windows[1] ? 1 : 0];
    int length = 0;
    while ((text[length] = name[length]) != '\0')
        ++length;
    return length;
}

BOOL WINAPI FakeScreenToClient(HWND, POINT* point) {
    point->x -= g_fakes.client_origin.x;
    point->y -= g_fakes.client_origin.y;
    return TRUE;
}

BOOL WINAPI FakeGetWindowRect(HWND, RECT* frame) {
    *frame = g_fakes.frame;
    return TRUE;
}

void PrepareFakes(const Situation& situation) {
    g_fakes.cursor = input::CursorSoFar();
    for (int key = 0; key < 256; ++key)
        g_fakes.keys[key] = input::AsyncDown(key) ? static_cast<SHORT>(0x8000) : SHORT{0};
    if (situation.message == Message::kModifier)
        g_fakes.keys[VK_CONTROL] = static_cast<SHORT>(0x8000);
    const HWND window = world::Find(situation.window);
    g_fakes.windows[0] = window;
    g_fakes.windows[1] = GetParent(window);
    for (int i = 0; i < 2; ++i)
        GetClassNameA(g_fakes.windows[i], g_fakes.classes[i], sizeof g_fakes.classes[i]);
    ClientToScreen(window, &g_fakes.client_origin);
    GetWindowRect(window, &g_fakes.frame);
}

void UseFakes() {
    call_sites::FakeBy("CallNextHookEx", reinterpret_cast<void*>(FakeCallNextHookEx));
    call_sites::FakeBy("GetCursorPos", reinterpret_cast<void*>(FakeGetCursorPos));
    call_sites::FakeBy("GetAsyncKeyState", reinterpret_cast<void*>(FakeGetAsyncKeyState));
    call_sites::FakeBy("GetClassNameA", reinterpret_cast<void*>(FakeGetClassName));
    call_sites::FakeBy("ScreenToClient", reinterpret_cast<void*>(FakeScreenToClient));
    call_sites::FakeBy("GetWindowRect", reinterpret_cast<void*>(FakeGetWindowRect));
}

// What the plug-in is compared with: passes the message on by a call that is answered as the
// plug-in's is.
using CallNext = LRESULT(WINAPI*)(HHOOK, int, WPARAM, LPARAM);
volatile CallNext g_call_next = FakeCallNextHookEx;

LRESULT CALLBACK EmptyHook(int code, WPARAM wparam, LPARAM lparam) {
    return g_call_next(nullptr, code, wparam, lparam);
}

// --- the loop ---

// Compiled for itself, so that no procedure is built into it.
[[gnu::noipa]] void Repeat(const Situation& situation, HOOKPROC procedure, int messages) {
    if (situation.message == Message::kMove) {
        MOUSEHOOKSTRUCTEX mouse = g_last_move;
        const POINT centre = g_fakes.cursor;
        for (int i = 0; i < messages; ++i) {
            // To and fro, so that no gesture runs away.
            mouse.pt.x = centre.x + (i & 1);
            mouse.pt.y = centre.y;
            g_fakes.cursor = mouse.pt;
            procedure(HC_ACTION, WM_MOUSEMOVE, reinterpret_cast<LPARAM>(&mouse));
        }
        g_fakes.cursor = centre;
        return;
    }
    constexpr LPARAM kReleased = 0xC0000000;
    const LPARAM pressed = g_last_key_flags & ~kReleased;
    for (int i = 0; i < messages; ++i)
        procedure(HC_ACTION, g_last_key, i & 1 ? pressed | kReleased : pressed);
}

HOOKPROC ProcedureFor(const Situation& situation) {
    return situation.message == Message::kMove ? entry_points::MouseHook()
                                               : entry_points::KeyHook();
}

LRESULT CALLBACK CountedMouse(int code, WPARAM message, LPARAM details) {
    return call_counts::Note(entry_points::MouseHook(), code, message, details);
}

LRESULT CALLBACK CountedKey(int code, WPARAM key, LPARAM flags) {
    return call_counts::Note(entry_points::KeyHook(), code, key, flags);
}

Summary CountFaked(const Situation& situation) {
    constexpr int kMessages = 64;
    call_sites::SetMode(Mode::kFakeAndCount);
    Repeat(situation, situation.message == Message::kMove ? CountedMouse : CountedKey, kMessages);
    return call_counts::Summarize(call_counts::Noted());
}

// --- memory ---

struct Memory {
    unsigned long long in_use = 0;  // blocks of all heaps of the process
    unsigned long long committed = 0;
};

Memory MemoryNow() {
    Memory memory;
    HANDLE heaps[64];
    const DWORD count = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
    for (DWORD i = 0; i < count; ++i) {
        HeapLock(heaps[i]);
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry))
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) memory.in_use += entry.cbData;
        HeapUnlock(heaps[i]);
    }
    PROCESS_MEMORY_COUNTERS_EX counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                         sizeof counters);
    memory.committed = counters.PrivateUsage;
    return memory;
}

long long Growth(unsigned long long after, unsigned long long before) {
    return static_cast<long long>(after) - static_cast<long long>(before);
}

json CallsText(const call_sites::Totals& totals) {
    return {{"win32", totals.win32}, {"host", totals.host}, {"total", CallsOf(totals)}};
}

// Where calls can be counted at all, for a check that nothing was overlooked wholesale.
json CountPlaces() {
    int imported = 0;
    int virtual_calls = 0;
    int heap = 0;
    for (const call_sites::Site* site : call_sites::All()) {
        ++(site->is_virtual ? virtual_calls : imported);
        if (site->group == call_sites::Group::kHeap) ++heap;
    }
    return {{"imported", imported}, {"virtual", virtual_calls}, {"heap", heap}};
}

json MeasureSituation(const Situation& situation, const Sizes& sizes) {
    situations::Enter(situation);

    constexpr int kWatched = 64;
    call_sites::SetMode(Mode::kCount);
    for (int turn = 0; turn < 4; ++turn)
        situations::Send(situation, turn);
    const Summary real = WatchMessages(situation, kWatched);

    json result = {{"id", situation.id},
                   {"title", situation.title},
                   {"messages", real.entries},
                   {"calls", CallsText(real.typical)},
                   {"most_calls", CallsText(real.most)},
                   {"allocations", real.heap}};

    PrepareFakes(situation);
    const Summary faked = CountFaked(situation);
    result["faked_calls"] = CallsText(faked.typical);
    const bool enough = situation.runs_script || CallsOf(faked.typical) >= real.least_calls;
    result["faked_as_real"] = enough && CallsOf(faked.most) <= CallsOf(real.most);

    call_sites::SetMode(Mode::kFake);
    const HOOKPROC procedure = ProcedureFor(situation);
    Repeat(situation, procedure, 1000);
    const Memory before = MemoryNow();
    Repeat(situation, procedure, sizes.memory_messages);
    const Memory after = MemoryNow();
    result["memory"] = {{"messages", sizes.memory_messages},
                        {"growth_in_use", Growth(after.in_use, before.in_use)},
                        {"growth_committed", Growth(after.committed, before.committed)}};

    if (sizes.timed) {
        std::vector<double> plugin_times;
        std::vector<double> empty_times;
        for (int round = 0; round < sizes.rounds; ++round) {
            const double begin = measure::NanosecondsNow();
            Repeat(situation, EmptyHook, sizes.messages);
            const double between = measure::NanosecondsNow();
            Repeat(situation, procedure, sizes.messages);
            const double end = measure::NanosecondsNow();
            empty_times.push_back((between - begin) / sizes.messages);
            plugin_times.push_back((end - between) / sizes.messages);
        }
        result["own_work_ns"] = measure::Median(plugin_times);
        result["empty_ns"] = measure::Median(empty_times);
        result["own_work_ratio"] = measure::MedianRatio(plugin_times, empty_times);
    }

    call_sites::SetMode(Mode::kCount);
    situations::Leave(situation);
    call_sites::SetMode(Mode::kUntouched);
    return result;
}

// Gestures from press to release, clicks and keys included: every message that a hook sees is
// counted, not only the moves.
json MeasureGestures(int gestures) {
    call_sites::SetMode(Mode::kCount);
    call_sites::Forget();
    const input::Counts before = input::CountsSoFar();
    const std::vector<Situation> all = situations::Repeated();
    for (int i = 0; i < gestures; ++i) {
        const Situation& situation = all[static_cast<size_t>(i) % all.size()];
        situations::Enter(situation);
        situations::Send(situation, 0);
        situations::Send(situation, 1);
        if (situation.clicks) {
            for (const int button : {VK_LBUTTON, VK_MBUTTON}) {
                stage::Button(button, true);
                stage::MoveBy(1, 0);
                stage::Button(button, false);
            }
        }
        situations::Leave(situation);
    }
    const input::Counts after = input::CountsSoFar();
    const json result = {
        {"gestures", gestures},
        {"messages", after.passed + after.swallowed - before.passed - before.swallowed},
        {"allocations", call_sites::Count().heap},
        {"keys_left_down", input::AnythingDown()},
        {"modes_on_stack", world::ModeDepth()}};
    call_sites::SetMode(Mode::kUntouched);
    return result;
}

}  // namespace

json Measure(const plugin::Files& files, const Sizes& sizes) {
    std::string message;
    if (!stage::Open(input::Kind::kVirtual, files, &message)) return {{"error", message}};
    UseFakes();
    if (!entry_points::Open(input::Kind::kVirtual))
        return {{"error", "the plug-in installed no hooks"}};
    json result = {{"places", CountPlaces()}};
    for (const Situation& situation : situations::Repeated())
        result["situations"].push_back(MeasureSituation(situation, sizes));
    result["gestures"] = MeasureGestures(sizes.gestures);
    stage::Close();
    return result;
}

}  // namespace hook_work
