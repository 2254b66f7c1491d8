#include "standin/player/player.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "standin/engine/input/input.h"
#include "standin/engine/intercept/faults.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"
#include "standin/player/commands.h"
#include "standin/player/pictures.h"
#include "standin/player/settings_folder.h"
#include "standin/player/transcript.h"
#include "standin/player/watchdog.h"

namespace player {
namespace {

using scenario::Command;
using scenario::Verb;

// For the watchdog and the crash report.
std::string g_file;
std::atomic<int> g_line{0};
// What is being done before the first command, null once that is reached.
std::atomic<const char*> g_preparing{"beginning"};

// Where a message is about; line 0: before the first command, or the whole file.
std::string PlaceOf(int line) {
    return g_file + (line > 0 ? ":" + std::to_string(line) : "") + ": ";
}

void Complain(int line, const std::string& message) {
    std::fprintf(stderr, "%s%s\n", PlaceOf(line).c_str(), message.c_str());
    std::fflush(stderr);
}

// --- a play that dies ---

std::string Place() {
    return PlaceOf(g_line);
}

// Set when the play is over.
HANDLE g_over = nullptr;

DWORD WINAPI Watch(void*) {
    constexpr DWORD kLook = 250;
    unsigned long long seen = trace::Progress();
    const char* seen_preparing = g_preparing;
    DWORD still = 0;
    while (WaitForSingleObject(g_over, kLook) == WAIT_TIMEOUT) {
        const unsigned long long now = trace::Progress();
        const char* const preparing = g_preparing;
        still = now == seen && preparing == seen_preparing ? still + kLook : 0;
        seen = now;
        seen_preparing = preparing;
        if (const auto end = watchdog::Judge(still, preparing))
            trace::Die(end->again ? kDisturbed : kDied, Place() + end->message);
    }
    return 0;
}

std::string ModuleText(const void* address) {
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        static_cast<const char*>(address), &module);
    char text[MAX_PATH + 32];
    if (!module) {
        std::snprintf(text, sizeof text, "%p", address);
        return text;
    }
    char path[MAX_PATH] = "";
    GetModuleFileNameA(module, path, sizeof path);
    const std::string full = path;
    std::snprintf(text, sizeof text, "+0x%llx",
                  static_cast<unsigned long long>(static_cast<const char*>(address) -
                                                  reinterpret_cast<const char*>(module)));
    return full.substr(full.find_last_of("\\/") + 1) + text;
}

LONG ReportCrash(const EXCEPTION_RECORD& record) {
    char code[16];
    std::snprintf(code, sizeof code, "%08lX", record.ExceptionCode);
    // Before the first command the plug-in is not loaded yet and has no part in it.
    trace::Die(g_preparing ? kDisturbed : kDied, Place() + "crashed with exception " + code +
                                                     " at " + ModuleText(record.ExceptionAddress));
}

// Exceptions inside a window procedure or hook are lost on their way through the system, so those
// of our own modules are seen at once.
LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    switch (record.ExceptionCode) {
        case EXCEPTION_ACCESS_VIOLATION:
        case EXCEPTION_STACK_OVERFLOW:
        case EXCEPTION_ILLEGAL_INSTRUCTION:
        case EXCEPTION_PRIV_INSTRUCTION:
        case EXCEPTION_INT_DIVIDE_BY_ZERO:
        case EXCEPTION_BREAKPOINT: break;
        default: return EXCEPTION_CONTINUE_SEARCH;
    }
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        static_cast<const char*>(record.ExceptionAddress), &module);
    char path[MAX_PATH] = "";
    if (module) GetModuleFileNameA(module, path, sizeof path);
    const std::string lower = [&path] {
        std::string text = path;
        for (char& c : text)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return text;
    }();
    // The system's own modules catch what they cause.
    if (lower.find("\\system32\\") != std::string::npos &&
        record.ExceptionCode != EXCEPTION_STACK_OVERFLOW)
        return EXCEPTION_CONTINUE_SEARCH;
    return ReportCrash(record);
}

LONG WINAPI OnUnhandled(EXCEPTION_POINTERS* pointers) {
    return ReportCrash(*pointers->ExceptionRecord);
}

// Sees to a play's death for as long as it stands.
class Guards {
public:
    Guards() {
        g_over = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        watch_ = CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr);
        handler_ = AddVectoredExceptionHandler(1, OnException);
        SetUnhandledExceptionFilter(OnUnhandled);
    }
    ~Guards() {
        SetUnhandledExceptionFilter(nullptr);
        RemoveVectoredExceptionHandler(handler_);
        SetEvent(g_over);
        WaitForSingleObject(watch_, INFINITE);
        CloseHandle(watch_);
        CloseHandle(g_over);
    }
    Guards(const Guards&) = delete;
    Guards& operator=(const Guards&) = delete;

private:
    HANDLE watch_ = nullptr;
    void* handler_ = nullptr;
};

// --- what a scenario's commands do ---

bool AnyButtonDown() {
    return input::AsyncDown(VK_LBUTTON) || input::AsyncDown(VK_RBUTTON) ||
           input::AsyncDown(VK_MBUTTON);
}

std::string FactsText(HWND window) {
    const POINT cursor = input::CursorSoFar();
    const int mode = world::ModeId();
    return input::AsyncText() + " cursor=" + std::to_string(cursor.x) + "," +
           std::to_string(cursor.y) + " over=" + world::Of(input::WindowAt(cursor)) +
           " mode=" + (mode == world::kNoMode ? "none" : std::to_string(mode)) +
           " depth=" + std::to_string(world::ModeDepth()) +
           " selected=" + std::to_string(world::SelectedCount()) +
           " subobject=" + std::to_string(world::SubobjectLevel()) +
           " view=" + (window ? world::ViewText(window) : "-") +
           " locked=" + (window ? world::LockedText(window) : "-") +
           " tick=" + std::to_string(input::Ticks());
}

class Player {
public:
    Player(const Options& options, const scenario::Scenario& scenario,
           const std::string& settings_file)
        : options_(options), scenario_(scenario), game_(options, settings_file) {}

    int Run() {
        for (const Command& command : scenario_.commands) {
            g_line = command.line;
            trace::BeginCommand(scenario::IsEvent(command.verb));
            Picture(command, true);
            if (options_.observer) options_.observer->Before(command);
            const std::string problem = Do(command);
            if (options_.forgiving && !problem.empty()) {
                trace::State("left out, " + problem);
            } else if (!problem.empty() && !options_.observer) {
                trace::Flush();
                Complain(command.line, problem);
                return kUnreadable;
            }
            input::Drain();
            if (const std::string disturbance = input::Disturbance(); !disturbance.empty()) {
                trace::Flush();
                Complain(command.line, disturbance);
                return kDisturbed;
            }
            transcript_.Add(command);
            Picture(command, false);
            FilmStep(command);
            if (options_.observer)
                if (const std::string broken = options_.observer->After(command); !broken.empty()) {
                    trace::Flush();
                    Complain(command.line, broken);
                    return kDifferent;
                }
            if (!options_.observer) trace::Flush();
        }
        if (options_.observer) {
            std::fputs(options_.observer->Report().c_str(), stdout);
            std::fflush(stdout);
        }
        return status_;
    }

    bool OpenTranscript() {
        return options_.transcript.empty() || transcript_.Open(options_.transcript);
    }
    void CloseTranscript() { transcript_.Close(); }
    int Fail() { return status_ = kDifferent; }

private:
    // Empty when done, else why it can not be done.
    std::string Do(const Command& command) {
        if (command.verb != Verb::kExpect && command.verb != Verb::kExpectNothing)
            game_.skips_lines = false;
        const Act act = ActFor(command.verb);
        const std::string problem = act ? act(game_, command) : "";
        if (!game_.difference.empty() && status_ != kDifferent) {
            status_ = kDifferent;
            Complain(command.line, game_.difference);
        }
        return problem;
    }

    // --- pictures: before the first button goes down and after the last one came up, and around
    // commands ---

    void Picture(const Command& command, bool before) {
        if (options_.shots.empty()) return;
        const Verb gesture = before ? Verb::kMouseDown : Verb::kMouseUp;
        const bool wanted =
            (command.verb == gesture || command.verb == Verb::kCommand) && !AnyButtonDown();
        if (!wanted) return;
        if (before) ++gesture_;
        const std::string stem = g_file.substr(g_file.find_last_of("\\/") + 1);
        char number[16];
        std::snprintf(number, sizeof number, "-%02d-", gesture_);
        const std::string name =
            stem.substr(0, stem.find_last_of('.')) + number + (before ? "before.png" : "after.png");
        world::PaintNow();
        if (pictures::SaveScreen(options_.shots + "\\" + name)) transcript_.AddPicture(name);
    }

    // For a moving picture: a picture a step, named by what is held.
    void FilmStep(const Command& command) {
        if (!options_.film || command.verb != Verb::kMoveBy || !AnyButtonDown()) return;
        struct Held {
            int key;
            const char* name;
        };
        static constexpr Held kHeld[] = {{VK_MENU, "-alt"},
                                         {VK_LBUTTON, "-left"},
                                         {VK_MBUTTON, "-middle"},
                                         {VK_RBUTTON, "-right"}};
        char name[32];
        std::snprintf(name, sizeof name, "film-%03d", ++film_steps_);
        std::string file = options_.shots + "\\" + name;
        for (const Held& held : kHeld)
            if (input::AsyncDown(held.key)) file += held.name;
        world::PaintNow();
        pictures::SaveScreen(file + ".png");
    }

    const Options& options_;
    const scenario::Scenario& scenario_;
    Game game_;
    transcript::Writer transcript_;
    int status_ = kGood;
    int gesture_ = 0;
    int film_steps_ = 0;
};

}  // namespace

scenario::Vocabulary KnownWords(const report::Report* report) {
    scenario::Vocabulary known;
    known.is_window = [report](std::string_view name) {
        const auto has_name = [name](const auto& view) { return view.name == name; };
        return world::IsName(name) || (report && std::any_of(report->viewports.begin(),
                                                             report->viewports.end(), has_name));
    };
    known.is_object = [](std::string_view name) { return world::IsObject(name); };
    known.is_action = [](unsigned long table, int id) { return world::IsAction(table, id); };
    known.is_fault = faults::IsName;
    known.is_global = [](std::string_view name) { return plugin::IsGlobal(name); };
    known.names = [](scenario::Check check) {
        return check == scenario::Check::kWindow  ? world::WindowNames()
               : check == scenario::Check::kFault ? faults::Names()
                                                  : std::vector<std::string>();
    };
    return known;
}

// Every hotkey of the plug-in is the user's own choice. These are Maya's where it has one, and none
// that the host has for itself.
struct Hotkey {
    int key;
    int action;
};
constexpr Hotkey kHotkeys[] = {
    {'K', 7},
    {'L', 1},
    {'V', 2},
    {'C', 3},
    {'X', 4},
    {'J', 6},
    {'F', 15},
    {'A', 16},
    {'P', 14},
    {VK_OEM_COMMA, 17},
    {VK_OEM_PERIOD, 18},
    {VK_UP, 10},
    {VK_DOWN, 11},
    {VK_LEFT, 12},
    {VK_RIGHT, 13},
    {VK_F2, 5},
    {VK_F1, 22},
    {VK_F12, 19},
};

// What is shown of them and of the host's own, in the window's narrow panel and on the terminal.
constexpr const char* kKeyLines[] = {
    "Q W E R: select, move, rotate, scale",
    "Z: frame in all views   G: grid",
    "Ctrl+Z: undo   wheel: zoom",
    "Held: K time, L lock selection",
    "Held: V point, C curve, X grid, J angle",
    "F, A: frame selection, all   P: pivot",
    ", and .: previous and next key",
    "F1 help  F2 options  F12 reset views",
};

bool RunHotkey(int key, bool repeated) {
    if (world::HostKey(key, repeated)) return true;
    for (const Hotkey& hotkey : kHotkeys) {
        if (hotkey.key != key) continue;
        plugin::Execute(hotkey.action);
        trace::Flush();
        return true;
    }
    return false;
}

int Interact(const Options& options) {
    g_file = "standin";
    AddVectoredExceptionHandler(1, OnException);
    SetUnhandledExceptionFilter(OnUnhandled);
    SettingsFolder config_dir;
    if (!config_dir.Make(options.config_dir, {})) {
        Complain(0, "the settings folder " + config_dir.Path() +
                        " can not be written, give another one with --config-dir");
        return kUnreadable;
    }
    trace::Options listed;
    listed.output = options.trace ? options.trace : GetStdHandle(STD_OUTPUT_HANDLE);
    listed.live = true;
    listed.queries = options.queries;
    listed.facts = options.facts;
    trace::Open(listed);
    trace::SetFactsSource(FactsText);
    input::OpenInteractive();
    const SIZE screen = input::ScreenSize();
    world::Options world_options;
    world_options.release = options.release;
    world_options.screen_width = screen.cx;
    world_options.screen_height = screen.cy;
    world_options.visible = true;
    world_options.config_dir = config_dir.Path();
    std::string message;
    if (!plugin::LoadHost(options.files, &message)) {
        Complain(0, message);
        return kUnreadable;
    }
    // While the window opens, so that nobody has to look for the keys.
    std::printf(
        "Keys (things to try are in the window, at the right, behind the welcome window):\n");
    for (const char* const line : kKeyLines)
        std::printf("  %s\n", line);
    std::fflush(stdout);
    world_options.practice = true;
    world_options.keys.assign(std::begin(kKeyLines), std::end(kKeyLines));
    world::Create(world_options);
    const HWND main_window = world::Find("main");
    input::TakeForeground(main_window);
    if (!plugin::Start(options.files, &message)) {
        Complain(0, message);
        return kUnreadable;
    }
    trace::Flush();
    input::RunInteractive(main_window, RunHotkey, options.watch);
    trace::Flush();
    return kGood;
}

int RunInteractive(const Options& options) {
    const int status = Interact(options);
    SettingsFolder::RemoveOwn(GetCurrentProcessId());
    return status;
}

// The settings file: the scenario's lines, and those of the report for other keys.
SettingsFolder::Lines Settings(const Options& options, const scenario::Scenario& scenario) {
    std::vector<std::string> lines = scenario.ini;
    const auto add = [&](const report::Line& line) {
        if (line.noun != "setting") return;
        const std::string key = line.word + '=';
        if (std::none_of(scenario.ini.begin(), scenario.ini.end(),
                         [&key](const std::string& own) { return own.starts_with(key); }))
            lines.push_back(key + line.Text("value"));
    };
    if (options.report)
        std::for_each(options.report->lines.begin(), options.report->lines.end(), add);
    if (lines.empty()) return {};
    return lines;
}

// Where the whole screen begins: by the scenario, or by the report when its screen is the one that
// is played on.
POINT ScreenOrigin(const Options& options, const scenario::Scenario& scenario) {
    if (scenario.screen_width || !options.report)
        return {scenario.screen_left, scenario.screen_top};
    const report::Pair at = options.report->screen_at;
    const report::Pair size = options.report->screen_size;
    const bool same =
        at.x + size.x == options.screen_width && at.y + size.y == options.screen_height;
    return same ? POINT{at.x, at.y} : POINT{0, 0};
}

int Play(const Options& options, const std::string& file, const scenario::Scenario& scenario) {
    g_file = file;
    ULONG kept_for_report = 64 * 1024;
    SetThreadStackGuarantee(&kept_for_report);
    const Guards guards;

    g_preparing = "making the settings folder";
    SettingsFolder config_dir;
    if (!config_dir.Make(options.config_dir, Settings(options, scenario))) {
        Complain(0, "the settings folder " + config_dir.Path() +
                        " can not be written, give another one with --config-dir");
        return kUnreadable;
    }

    trace::Options listed;
    if (!options.observer) listed.output = GetStdHandle(STD_OUTPUT_HANDLE);
    listed.queries = options.queries;
    listed.facts = options.facts;
    trace::Open(listed);
    trace::SetFactsSource(FactsText);

    world::Options world_options;
    world_options.release = scenario.release ? scenario.release : options.release;
    world_options.screen_width =
        scenario.screen_width ? scenario.screen_width : options.screen_width;
    world_options.screen_height =
        scenario.screen_height ? scenario.screen_height : options.screen_height;
    world_options.visible = !options.shots.empty();
    world_options.config_dir = config_dir.Path() + (scenario.config_dir_slash ? "\\" : "");
    world_options.report = options.report;
    g_preparing = "opening the desktop";
    const std::string problem =
        input::Open(options.input, options.desktop, world_options.screen_width,
                    world_options.screen_height, ScreenOrigin(options, scenario));
    if (options.ready) SetEvent(options.ready);
    if (!problem.empty()) {
        Complain(scenario.screen_line, problem);
        return kUnreadable;
    }
    g_preparing = "loading the host";
    std::string message;
    if (!plugin::LoadHost(options.files, &message)) {
        Complain(0, message);
        return kUnreadable;
    }
    g_preparing = "making the host's windows";
    world::Create(world_options);
    // A Wine session that has served for some ten thousand plays begins to refuse windows.
    if (const std::string missing = world::MissingWindow(); !missing.empty()) {
        Complain(0, "the system did not make the window " + missing);
        return kDisturbed;
    }
    g_preparing = "taking the foreground";
    input::TakeForeground(world::Find("main"));

    Player player(options, scenario, config_dir.File());
    if (!player.OpenTranscript()) {
        Complain(0, "the file " + options.transcript + " can not be written");
        return kUnreadable;
    }
    g_preparing = nullptr;
    int status = player.Run();
    input::GiveBackSettings();
    player.CloseTranscript();
    if (status != kUnreadable && status != kDisturbed)
        for (const std::string& leak : world::Leaks()) {
            trace::State("leak " + leak);
            // A scenario may end in the middle of a drag or of a nudge series; what was taken from
            // the host has to be given back at once.
            const bool must_be_empty = leak.find("released") != std::string::npos ||
                                       leak.find("redraw") != std::string::npos;
            if (!must_be_empty) continue;
            Complain(0, "left behind: " + leak);
            status = player.Fail();
        }
    trace::Flush();
    return status;
}

bool Clear() {
    const bool unloaded = plugin::Unload();
    return input::LeaveDesktop() && world::ForgetClasses() && unloaded;
}

}  // namespace player
