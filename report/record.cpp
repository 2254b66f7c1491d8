#include "report/record.h"

#include <max.h>

#include <actiontable.h>

#include "host/host.h"
#include "host/watching.h"
#include "report/host_state.h"
#include "report/paths.h"
#include "report/recording.h"
#include "report/sent_input.h"
#include "resources/command_ids.h"
#include "settings/plugin_settings.h"
#include "settings/settings_store.h"

namespace report {
namespace {

using recording::End;
using recording::Input;
using recording::Seen;
using recording::State;

constexpr char kFileName[] = "KarvelRecording";
constexpr char kExtension[] = ".scn";
constexpr int kMostFiles = 999;

recording::Recorder g_recorder;
bool g_records = false;

// --- the file ---

HANDLE g_file = INVALID_HANDLE_VALUE;
char g_path[kPathSize];

// What has been written lies with the system, which keeps it when the host crashes; only a machine
// that loses its power takes it along, and to wait for the disk at every move would be felt. Half a
// line would make the file unreadable, so where there is no room it ends with the line before.
bool Write(const char* text, size_t length) {
    LARGE_INTEGER end = {};
    LARGE_INTEGER here = {};
    SetFilePointerEx(g_file, here, &end, FILE_CURRENT);
    DWORD written = 0;
    if (WriteFile(g_file, text, static_cast<DWORD>(length), &written, nullptr) &&
        written == length) {
        return true;
    }
    SetFilePointerEx(g_file, end, nullptr, FILE_BEGIN);
    SetEndOfFile(g_file);
    return false;
}

// Never one that is there already.
bool OpenFile() {
    for (int number = 1; number <= kMostFiles; ++number) {
        if (!PathBesideSettings(g_path, kFileName, number, kExtension)) return false;
        g_file = CreateFileA(g_path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
        if (g_file != INVALID_HANDLE_VALUE) return true;
        if (GetLastError() != ERROR_FILE_EXISTS) break;
    }
    return false;
}

// --- the end ---

enum { kMouseHook, kKeyHook };
HHOOK g_hooks[2];
UINT_PTR g_timer = 0;
ActionCallback* g_forward = nullptr;   // who carries out the plug-in's commands
ActionCallback* g_listener = nullptr;  // ours, kept for good

const char* Why(End end) {
    switch (end) {
        case End::kTime: return ", ended after ten minutes";
        case End::kSize: return ", ended after ten megabytes";
        case End::kDisk: return ", ended because it could not be written any further";
        case End::kRefused: return ", ended because the system refused to have it look on";
        default: return ", ended";
    }
}

void Finish() {
    g_records = false;
    for (HHOOK& hook : g_hooks) {
        if (hook) UnhookWindowsHookEx(hook);
        hook = nullptr;
    }
    if (g_timer) KillTimer(nullptr, g_timer);
    g_timer = 0;
    ForgetSentInput();
    // Somebody else may have taken the place in between, and forwards to ours.
    if (g_forward && host::CallbackOfTable(kKarvelTableId) == g_listener) {
        host::SetCallbackOfTable(kKarvelTableId, g_forward);
        g_forward = nullptr;
    }
    CloseHandle(g_file);
    g_file = INVALID_HANDLE_VALUE;
    TellPath("Karvel recording: ", g_path, Why(g_recorder.Ended()));
}

void FinishIfEnded() {
    if (g_records && g_recorder.Ended() != End::kNone) Finish();
}

void CALLBACK EndAfterTenMinutes(HWND, UINT, UINT_PTR, DWORD) {
    g_recorder.Stop(End::kTime);
    FinishIfEnded();
}

// --- input ---

State StateNow(bool searches) {
    State state;
    ReadState(state, g_recorder, searches);
    return state;
}

// What is asked before and after the plug-in is the same, so the windows are looked for before.
LRESULT CallNext(int which, int code, WPARAM wparam, LPARAM lparam, const Input& input,
                 bool searches) {
    const State before = StateNow(searches);
    const bool peeks = code == HC_NOREMOVE;
    Seen seen;
    if (peeks)
        g_recorder.BeforePeek(before, GetTickCount());
    else
        seen = g_recorder.Before(input, before, GetTickCount());
    const LRESULT answer = CallNextHookEx(g_hooks[which], code, wparam, lparam);
    if (!g_records) return answer;
    const State after = StateNow(false);
    if (peeks)
        g_recorder.AfterPeek(input, answer != 0, after, GetTickCount());
    else
        g_recorder.After(seen, input, answer != 0, after, GetTickCount());
    FinishIfEnded();
    return answer;
}

bool IsRecorded(int code) {
    return g_records && (code == HC_ACTION || code == HC_NOREMOVE);
}

// Caption, border and menu bar have messages of their own for the same hands.
UINT ClientMessage(WPARAM message) {
    const UINT id = static_cast<UINT>(message);
    const bool outside = id >= WM_NCMOUSEMOVE && id <= WM_NCMBUTTONDBLCLK;
    return outside ? id - WM_NCMOUSEMOVE + WM_MOUSEMOVE : id;
}

struct MouseMessageRow {
    UINT message;
    Input::Kind kind;
    recording::Button button;
};
constexpr MouseMessageRow kMouseMessages[] = {
    {WM_MOUSEMOVE, Input::kMove, recording::Button::kLeft},
    {WM_LBUTTONDOWN, Input::kDown, recording::Button::kLeft},
    {WM_LBUTTONDBLCLK, Input::kDownAgain, recording::Button::kLeft},
    {WM_LBUTTONUP, Input::kUp, recording::Button::kLeft},
    {WM_RBUTTONDOWN, Input::kDown, recording::Button::kRight},
    {WM_RBUTTONDBLCLK, Input::kDownAgain, recording::Button::kRight},
    {WM_RBUTTONUP, Input::kUp, recording::Button::kRight},
    {WM_MBUTTONDOWN, Input::kDown, recording::Button::kMiddle},
    {WM_MBUTTONDBLCLK, Input::kDownAgain, recording::Button::kMiddle},
    {WM_MBUTTONUP, Input::kUp, recording::Button::kMiddle},
};

HWND g_last_window = nullptr;

// The wheel and other buttons mean nothing to the plug-in, and scenarios have no word for them.
LRESULT CALLBACK RecordMouse(int code, WPARAM message, LPARAM details) {
    if (IsRecorded(code)) {
        const auto& hook = *reinterpret_cast<const MOUSEHOOKSTRUCT*>(details);
        for (const MouseMessageRow& row : kMouseMessages) {
            if (row.message != ClientMessage(message)) continue;
            const Input input = {row.kind, static_cast<int>(row.button), false,
                                 static_cast<int>(hook.pt.x), static_cast<int>(hook.pt.y)};
            const bool searches = row.kind != Input::kMove || hook.hwnd != g_last_window;
            g_last_window = hook.hwnd;
            return CallNext(kMouseHook, code, message, details, input, searches);
        }
    }
    return CallNextHookEx(g_hooks[kMouseHook], code, message, details);
}

bool IsRightKey(WPARAM key, LPARAM flags) {
    constexpr LPARAM kScanOfRightShift = 0x36;
    if (key == VK_SHIFT) return ((flags >> 16) & 0xFF) == kScanOfRightShift;
    return (flags & (static_cast<LPARAM>(KF_EXTENDED) << 16)) != 0;
}

LRESULT CALLBACK RecordKey(int code, WPARAM key, LPARAM flags) {
    if (!IsRecorded(code)) return CallNextHookEx(g_hooks[kKeyHook], code, key, flags);
    const bool up = (flags & (static_cast<LPARAM>(KF_UP) << 16)) != 0;
    const Input input = {up ? Input::kKeyUp : Input::kKeyDown, static_cast<int>(key & 255),
                         IsRightKey(key, flags)};
    return CallNext(kKeyHook, code, key, flags, input, true);
}

// --- commands ---

BOOL RunCommand(int id) {
    ActionCallback* const forward = g_forward;
    if (!forward) return FALSE;
    if (!g_records) return forward->ExecuteAction(id);
    const Seen seen = g_recorder.BeforeCommand(id, StateNow(true), GetTickCount());
    const BOOL answer = forward->ExecuteAction(id);
    if (!g_records) return answer;
    g_recorder.AfterCommand(seen, answer, StateNow(false), GetTickCount());
    FinishIfEnded();
    return answer;
}

}  // namespace

// Not in the unnamed namespace: the name in its type information would depend on the folder of the
// build.
class CommandListener : public ActionCallback {
public:
    BOOL ExecuteAction(int id) override { return RunCommand(id); }
};

namespace {

void ListenToCommands() {
    if (!g_listener) g_listener = new CommandListener;
    ActionCallback* const now = host::CallbackOfTable(kKarvelTableId);
    if (!g_listener || !now || now == g_listener) return;
    g_forward = now;
    host::SetCallbackOfTable(kKarvelTableId, g_listener);
}

// --- the beginning ---

// Only whether a setting is on: what else stands in the file is the user's.
void TellSettings() {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    for (const SettingDescription& setting : kSettings) {
        constexpr char kAbsent[] = "?";
        char text[16];
        GetPrivateProfileStringA("main", setting.key, kAbsent, text, sizeof text, path);
        if (lstrcmpA(text, kAbsent) == 0) continue;
        g_recorder.KeptSetting({setting.key, FlagFromText(text) != 0});
    }
    // The welcome window of a replay would lie over the views.
    g_recorder.KeptSetting({"flinderPopup", false});
}

struct SideKey {
    int side;
    int key;
    bool right;
};
constexpr SideKey kSideKeys[] = {
    {VK_LMENU, VK_MENU, false},      {VK_RMENU, VK_MENU, true},    {VK_LCONTROL, VK_CONTROL, false},
    {VK_RCONTROL, VK_CONTROL, true}, {VK_LSHIFT, VK_SHIFT, false}, {VK_RSHIFT, VK_SHIFT, true},
};

// Not GetAsyncKeyState: to ask it takes away what the plug-in would be told.
void TellHeldKeys() {
    for (const SideKey& key : kSideKeys) {
        if (GetKeyState(key.side) < 0) g_recorder.HeldKey(key.key, key.right);
    }
}

void TellSetUp() {
    g_recorder.Release(host::Release());
    g_recorder.Screen(GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_YVIRTUALSCREEN),
                      GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN));
    TellSettings();
    if (GetSystemMetrics(SM_SWAPBUTTON)) g_recorder.SwappedButtons();
    TellHeldKeys();
    POINT cursor = {};
    GetCursorPos(&cursor);
    ForgetWindows();
    g_recorder.Start(static_cast<int>(cursor.x), static_cast<int>(cursor.y), StateNow(true));
}

}  // namespace

void StartRecording() {
    if (g_records) return host::PrintToListener("Karvel recording: it runs already\n");
    if (!OpenFile()) return TellPath("Karvel recording: ", g_path, " could not be written");
    g_recorder.Begin(Write, GetTickCount());
    TellSetUp();
    g_records = true;
    g_last_window = nullptr;
    // Those installed last are called first, so they see what the plug-in does with a message.
    const DWORD thread = GetCurrentThreadId();
    g_hooks[kMouseHook] = SetWindowsHookExA(WH_MOUSE, RecordMouse, nullptr, thread);
    g_hooks[kKeyHook] = SetWindowsHookExA(WH_KEYBOARD, RecordKey, nullptr, thread);
    g_timer = SetTimer(nullptr, 0, recording::kLongestMs + 1, EndAfterTenMinutes);
    NoteSentInput(g_recorder);
    ListenToCommands();
    if (!g_hooks[kMouseHook] || !g_hooks[kKeyHook]) g_recorder.Stop(End::kRefused);
    if (g_recorder.Ended() == End::kNone) TellPath("Karvel recording: ", g_path, "");
    FinishIfEnded();
}

void StopRecording() {
    if (!g_records) return;
    g_recorder.Finish(StateNow(true), GetTickCount());
    Finish();
}

}  // namespace report
