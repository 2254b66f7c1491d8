// Keyboard, mouse, clock and hooks as the plug-in calls them.
#include <utility>

#include "standin/engine/input/input.h"
#include "standin/engine/input/control.h"
#include "standin/engine/intercept/internal.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/world.h"

namespace intercept {
namespace {

std::string KeyName(int key) {
    switch (key) {
        case VK_MENU: return "alt";
        case VK_CONTROL: return "ctrl";
        case VK_SHIFT: return "shift";
        case VK_LSHIFT: return "lshift";
        case VK_RSHIFT: return "rshift";
        case VK_LCONTROL: return "lctrl";
        case VK_RCONTROL: return "rctrl";
        case VK_LMENU: return "lalt";
        case VK_RMENU: return "ralt";
        default: return Text(key);
    }
}

std::string RecordText(const INPUT& record) {
    if (record.type == INPUT_KEYBOARD) {
        int key = record.ki.wVk;
        // The extended one of the two that share a general key is the right one.
        if (record.ki.dwFlags & KEYEVENTF_EXTENDEDKEY)
            key = key == VK_CONTROL ? VK_RCONTROL : key == VK_MENU ? VK_RMENU : key;
        return KeyName(key) + (record.ki.dwFlags & KEYEVENTF_KEYUP ? "-up" : "-down");
    }
    struct Name {
        DWORD flag;
        const char* text;
    };
    static constexpr Name kNames[] = {
        {MOUSEEVENTF_LEFTDOWN, "left-down"},
        {MOUSEEVENTF_LEFTUP, "left-up"},
        {MOUSEEVENTF_RIGHTDOWN, "right-down"},
        {MOUSEEVENTF_RIGHTUP, "right-up"},
        {MOUSEEVENTF_MIDDLEDOWN, "middle-down"},
        {MOUSEEVENTF_MIDDLEUP, "middle-up"},
        {MOUSEEVENTF_MOVE, "move"},
    };
    std::string text;
    for (const Name& name : kNames) {
        if ((record.mi.dwFlags & name.flag) == 0) continue;
        if (!text.empty()) text += '+';
        text += name.text;
    }
    return text;
}

std::string RecordTexts(const INPUT* records, UINT count) {
    std::string texts;
    for (UINT i = 0; i < count; ++i)
        texts += (i > 0 ? " " : "") + RecordText(records[i]);
    return texts;
}

// KEY=STATE of the entries that are listed.
template <typename Choice>
std::string KeyStates(const BYTE state[256], Choice is_listed) {
    std::string text;
    for (int key = 0; key < 256; ++key) {
        if (!is_listed(key)) continue;
        text += (text.empty() ? "" : " ") + Text(key) + "=" + Text(state[key]);
    }
    return text;
}

std::string KeysDown(const BYTE state[256]) {
    const std::string text = KeyStates(state, [=](int key) { return (state[key] & 0x80) != 0; });
    return text.empty() ? "none" : text;
}

std::string KeyChanges(const BYTE state[256]) {
    BYTE before[256];
    input::ReadKeyboard(before);
    return KeyStates(state, [&](int key) { return before[key] != state[key]; });
}

int SystemMetric(int index) {
    const SIZE screen = input::ScreenSize();
    const RECT all = input::WholeScreen();
    switch (index) {
        case SM_CXSCREEN: return screen.cx;
        case SM_CYSCREEN: return screen.cy;
        case SM_XVIRTUALSCREEN: return all.left;
        case SM_YVIRTUALSCREEN: return all.top;
        case SM_CXVIRTUALSCREEN: return all.right - all.left;
        case SM_CYVIRTUALSCREEN: return all.bottom - all.top;
        case SM_SWAPBUTTON: return input::ButtonsAreSwapped();
        default: return ::GetSystemMetrics(index);
    }
}

// Time only passes where a scenario says so, here and with `clock`.
void PassTime(DWORD milliseconds) {
    input::AdvanceClock(milliseconds);
    if (!input::IsVirtual()) ::Sleep(milliseconds ? 1 : 0);  // what waits gets its turn
}

std::string ThreadText(DWORD thread) {
    return thread == 0 ? "all" : thread == GetCurrentThreadId() ? "ui" : "other";
}

HCURSOR g_shape = nullptr;

// clang-format off
EFFECT(UINT, SendInput, (UINT count, INPUT* records, int), (RecordTexts(records, count)),
    input::SendInputRecords(records, count))
EFFECT(HCURSOR, SetCursor, (HCURSOR cursor), (ResourceText(cursor)),
    input::IsVirtual() ? std::exchange(g_shape, cursor) : ::SetCursor(cursor))
EFFECT(BOOL, SetCursorPos, (int x, int y), (POINT{x, y}), input::MoveCursor({x, y}))
READER_AS(BOOL, GetCursorPos, (POINT* point), (), answer ? Text(*point) : "0",
    (*point = input::Cursor(), TRUE))
READER(SHORT, GetAsyncKeyState, (int key), (key), input::AsyncKeyState(key))
READER(SHORT, GetKeyState, (int key), (key), input::ThreadKeyState(key))
READER_AS(BOOL, GetKeyboardState, (BYTE* state), (), answer ? KeysDown(state) : "0",
    (input::ReadKeyboard(state), TRUE))
EFFECT(BOOL, SetKeyboardState, (BYTE* state), (KeyChanges(state)),
    (input::WriteKeyboard(state), TRUE))
READER(int, GetSystemMetrics, (int index), (index), SystemMetric(index))
READER(DWORD, GetTickCount, (), (), input::Ticks())
EFFECT(void, Sleep, (DWORD milliseconds), (milliseconds), PassTime(milliseconds))
READER(LPARAM, GetMessageExtraInfo, (), (), input::IsVirtual() ? 0 : ::GetMessageExtraInfo())
READER(HWND, GetForegroundWindow, (), (), world::ForegroundWindow())
READER(HWND, WindowFromPoint, (POINT point), (point), input::WindowAt(point))
EFFECT(HHOOK, SetWindowsHookExA, (int type, HOOKPROC procedure, HINSTANCE module, DWORD thread),
    (type, "module=" + ModuleText(module), "thread=" + ThreadText(thread)),
    input::InstallHook(type, procedure))
EFFECT(HWND, SetFocus, (HWND window), (window), ::SetFocus(window))
// clang-format on

// The plug-in's own stay; what is loaded beside it takes its hooks away again.
BOOL WINAPI OnUnhookWindowsHookEx(HHOOK hook) {
    return input::RemoveHook(hook);
}
const Wrapper g_UnhookWindowsHookEx{"UnhookWindowsHookEx", Address(OnUnhookWindowsHookEx), false};

UINT_PTR WINAPI OnSetTimer(HWND, UINT_PTR, UINT period, TIMERPROC procedure) {
    return input::StartTimer(period, procedure);
}
const Wrapper g_SetTimer{"SetTimer", Address(OnSetTimer), false};
BOOL WINAPI OnKillTimer(HWND, UINT_PTR timer) {
    return input::StopTimer(timer);
}
const Wrapper g_KillTimer{"KillTimer", Address(OnKillTimer), false};

// What comes next is not the plug-in's: no line, and it goes on in any case.
WRAPPER(LRESULT, CallNextHookEx, (HHOOK, int code, WPARAM wparam, LPARAM lparam)) {
    Fails("CallNextHookEx");
    return input::PassOn(code, wparam, lparam);
}

}  // namespace
}  // namespace intercept
