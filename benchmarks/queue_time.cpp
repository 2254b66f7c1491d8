#include "benchmarks/queue_time.h"

#include <windows.h>

#include <vector>

#include "benchmarks/call_sites.h"
#include "benchmarks/clock.h"
#include "benchmarks/situations.h"
#include "benchmarks/stage.h"
#include "standin/engine/input/internal.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"

namespace queue_time {
namespace {

using nlohmann::json;
using situations::Message;
using situations::Situation;

// --- hooks of this thread ---

struct Procedures {
    HOOKPROC mouse = nullptr;
    HOOKPROC key = nullptr;
};

LRESULT CALLBACK EmptyHook(int code, WPARAM wparam, LPARAM lparam) {
    return CallNextHookEx(nullptr, code, wparam, lparam);
}

class Installed {
public:
    explicit Installed(const Procedures& procedures) {
        const DWORD thread = GetCurrentThreadId();
        if (procedures.mouse)
            mouse_ = SetWindowsHookExA(WH_MOUSE, procedures.mouse, nullptr, thread);
        if (procedures.key) key_ = SetWindowsHookExA(WH_KEYBOARD, procedures.key, nullptr, thread);
    }
    ~Installed() {
        if (mouse_) UnhookWindowsHookEx(mouse_);
        if (key_) UnhookWindowsHookEx(key_);
    }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

private:
    HHOOK mouse_ = nullptr;
    HHOOK key_ = nullptr;
};

Procedures g_plugin;

// --- the program with the low-level hooks ---

class LowLevelProgram {
public:
    bool Start(const std::string& program) {
        const std::string name = "karvel-bench-" + std::to_string(GetCurrentProcessId());
        quit_ = CreateEventA(nullptr, TRUE, FALSE, (name + "-quit").c_str());
        toggle_ = CreateEventA(nullptr, FALSE, FALSE, (name + "-toggle").c_str());
        done_ = CreateEventA(nullptr, FALSE, FALSE, (name + "-done").c_str());
        // Its hooks are those of the desktop that the windows are on.
        std::string desktop = input::DesktopName();
        std::string line = "\"" + program + "\" " + name;
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.lpDesktop = desktop.data();
        PROCESS_INFORMATION made{};
        if (!CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                            nullptr, &startup, &made))
            return false;
        CloseHandle(made.hThread);
        process_ = made.hProcess;
        return Wait();
    }
    // Installs the hooks, or takes them out.
    bool Toggle() {
        SetEvent(toggle_);
        return Wait();
    }
    ~LowLevelProgram() {
        if (process_) {
            constexpr DWORD kPatience = 10000;
            SetEvent(quit_);
            if (WaitForSingleObject(process_, kPatience) != WAIT_OBJECT_0)
                TerminateProcess(process_, 1);
            CloseHandle(process_);
        }
        for (HANDLE event : {quit_, toggle_, done_})
            if (event) CloseHandle(event);
    }

private:
    bool Wait() {
        constexpr DWORD kPatience = 30000;
        const HANDLE ends[] = {done_, process_};
        return WaitForMultipleObjects(2, ends, FALSE, kPatience) == WAIT_OBJECT_0;
    }
    HANDLE process_ = nullptr;
    HANDLE quit_ = nullptr;
    HANDLE toggle_ = nullptr;
    HANDLE done_ = nullptr;
};

// --- events ---

int g_arrived = 0;  // mouse moves and key messages that came out of the queue

void Pump() {
    constexpr UINT kWanted = PM_REMOVE | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE | PM_QS_INPUT;
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, kWanted)) {
        if (message.message == WM_MOUSEMOVE || message.message == WM_KEYDOWN ||
            message.message == WM_KEYUP)
            ++g_arrived;
        input::Dispatch(&message);
    }
}

void SendMove(POINT to) {
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    const SIZE screen = input::ScreenSize();
    record.mi.dx = (to.x * 65536 + screen.cx - 1) / screen.cx;
    record.mi.dy = (to.y * 65536 + screen.cy - 1) / screen.cy;
    SendInput(1, &record, sizeof record);
}

void SendKey(WORD key, bool down) {
    INPUT record{};
    record.type = INPUT_KEYBOARD;
    record.ki.wVk = key;
    record.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, 0));
    record.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &record, sizeof record);
}

// Nanoseconds an event, each one sent and handled before the next.
double TimeEvents(Message message, int count) {
    trace::BeginCommand(true);
    POINT at{};
    GetCursorPos(&at);
    const double begin = measure::NanosecondsNow();
    for (int i = 0; i < count; ++i) {
        switch (message) {
            case Message::kNone: break;
            case Message::kMove: SendMove({at.x + (i & 1 ? 0 : 1), at.y}); break;
            case Message::kKey: SendKey('J', (i & 1) == 0); break;
            case Message::kModifier: SendKey(VK_CONTROL, (i & 1) == 0); break;
        }
        Pump();
    }
    return (measure::NanosecondsNow() - begin) / count;
}

void Rest(const char* window) {
    SendMove(stage::PlaceIn(window));
    Pump();
}

// --- a passed event, side by side ---

struct Column {
    const char* id;
    Procedures procedures;
    bool navigation;
    bool low_level;
    std::vector<double> times;
};

json MeasurePassed(Message message, const char* window, LowLevelProgram& low_level,
                   const Sizes& sizes) {
    Column columns[] = {
        {"no_hook", {}, true, false, {}},
        {"empty_hook", {EmptyHook, EmptyHook}, true, false, {}},
        {"plugin_off", g_plugin, false, false, {}},
        {"plugin", g_plugin, true, false, {}},
        {"low_level_hook", {}, true, true, {}},
    };
    int arrived[std::size(columns)] = {};
    for (int round = 0; round < sizes.rounds; ++round) {
        for (size_t i = 0; i < std::size(columns); ++i) {
            Column& column = columns[i];
            Rest(window);
            plugin::Poke("useMayaStyle", column.navigation);
            const Installed hooks(column.procedures);
            if (column.low_level && !low_level.Toggle())
                return {{"error",
                         "the program with the low-level hooks does not answer or sees no event"}};
            g_arrived = 0;
            column.times.push_back(TimeEvents(message, sizes.messages));
            arrived[i] = g_arrived;
            if (column.low_level && !low_level.Toggle())
                return {{"error",
                         "the program with the low-level hooks does not answer or sees no event"}};
        }
    }
    plugin::Poke("useMayaStyle", 1);
    json result;
    for (size_t i = 0; i < std::size(columns); ++i) {
        const Column& column = columns[i];
        result[column.id] = {{"ns", measure::Median(column.times)},
                             {"ratio", measure::MedianRatio(column.times, columns[1].times)},
                             {"quartiles", measure::RatioQuartiles(column.times, columns[1].times)},
                             {"arrived_of_sent", static_cast<double>(arrived[i]) / sizes.messages}};
    }
    return result;
}

// --- the situations, to an empty hook over the same window ---

json MeasureSituation(const Situation& situation, const Sizes& sizes) {
    std::vector<double> empty;
    std::vector<double> plugin_times;
    for (int round = 0; round < sizes.rounds; ++round) {
        Rest(situation.window);
        {
            const Installed hooks({EmptyHook, EmptyHook});
            empty.push_back(TimeEvents(situation.message, sizes.messages));
        }
        const Installed hooks(g_plugin);
        stage::MoveTo(stage::PlaceIn(situation.window));
        if (situation.begin) situation.begin();
        plugin_times.push_back(TimeEvents(situation.message, sizes.messages));
        if (situation.end) situation.end();
    }
    return {{"ns", measure::Median(plugin_times)},
            {"empty_ns", measure::Median(empty)},
            {"ratio", measure::MedianRatio(plugin_times, empty)},
            {"quartiles", measure::RatioQuartiles(plugin_times, empty)}};
}

}  // namespace

json Measure(const plugin::Files& files, const std::string& low_level_hook, const Sizes& sizes) {
    std::string message;
    if (!stage::Open(input::Kind::kReal, files, &message)) return {{"error", message}};
    // The stand-in watches what the plug-in does; here nothing may stand between it and the system.
    UnhookWindowsHookEx(input::g_input.mouse_hooks.system);
    UnhookWindowsHookEx(input::g_input.key_hooks.system);
    input::g_input.mouse_hooks.system = nullptr;
    input::g_input.key_hooks.system = nullptr;
    g_plugin = {input::g_input.mouse_hooks.procedures.front(),
                input::g_input.key_hooks.procedures.front()};
    call_sites::SetMode(call_sites::Mode::kSystem);

    LowLevelProgram low_level;
    if (!low_level.Start(low_level_hook))
        return {{"error", "the program " + low_level_hook + " can not be started"}};
    // The first events pay for what is made once.
    for (const char* window : {"viewport.persp", "other"}) {
        Rest(window);
        TimeEvents(Message::kMove, 200);
    }

    json result;
    result["passed_move"] = MeasurePassed(Message::kMove, "other", low_level, sizes);
    result["passed_move_viewport"] =
        MeasurePassed(Message::kMove, "viewport.persp", low_level, sizes);
    result["passed_key"] = MeasurePassed(Message::kKey, "viewport.persp", low_level, sizes);
    for (const Situation& situation : situations::Repeated())
        result["situations"][situation.id] = MeasureSituation(situation, sizes);
    stage::Close();
    return result;
}

}  // namespace queue_time
