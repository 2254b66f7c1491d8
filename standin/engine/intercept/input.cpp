// Keyboard, mouse, clock and hooks as the plug-in calls them.
#include <cstring>

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
        default: return Number(key);
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

UINT WINAPI OnSendInput(UINT count, INPUT* records, int) {
    std::string text = "SendInput";
    for (UINT i = 0; i < count; ++i)
        text += ' ' + RecordText(records[i]);
    trace::Win(text);
    if (Fails("SendInput")) return 0;
    return input::SendInputRecords(records, count);
}

HCURSOR g_shape = nullptr;

HCURSOR WINAPI OnSetCursor(HCURSOR cursor) {
    trace::Win("SetCursor " + ResourceText(cursor));
    if (Fails("SetCursor")) return nullptr;
    if (!input::IsVirtual()) return ::SetCursor(cursor);
    const HCURSOR before = g_shape;
    g_shape = cursor;
    return before;
}

BOOL WINAPI OnSetCursorPos(int x, int y) {
    trace::Win("SetCursorPos " + PointText(x, y));
    if (Fails("SetCursorPos")) return FALSE;
    return input::MoveCursor({x, y});
}

BOOL WINAPI OnGetCursorPos(POINT* point) {
    const bool fails = Fails("GetCursorPos");
    if (!fails) *point = input::Cursor();
    if (trace::AsksWanted())
        trace::Ask("GetCursorPos", fails ? "0" : PointText(point->x, point->y));
    return !fails;
}

SHORT WINAPI OnGetAsyncKeyState(int key) {
    const SHORT state = Fails("GetAsyncKeyState") ? SHORT{0} : input::AsyncKeyState(key);
    if (trace::AsksWanted()) trace::Ask("GetAsyncKeyState " + Number(key), Number(state));
    return state;
}

SHORT WINAPI OnGetKeyState(int key) {
    const SHORT state = Fails("GetKeyState") ? SHORT{0} : input::ThreadKeyState(key);
    if (trace::AsksWanted()) trace::Ask("GetKeyState " + Number(key), Number(state));
    return state;
}

std::string KeysDown(const BYTE state[256]) {
    std::string text;
    for (int key = 0; key < 256; ++key) {
        if ((state[key] & 0x80) == 0) continue;
        if (!text.empty()) text += ' ';
        text += Number(key) + "=" + Number(state[key]);
    }
    return text.empty() ? "none" : text;
}

BOOL WINAPI OnGetKeyboardState(BYTE* state) {
    const bool fails = Fails("GetKeyboardState");
    if (!fails) input::ReadKeyboard(state);
    if (trace::AsksWanted()) trace::Ask("GetKeyboardState", fails ? "0" : KeysDown(state));
    return !fails;
}

BOOL WINAPI OnSetKeyboardState(BYTE* state) {
    BYTE before[256];
    input::ReadKeyboard(before);
    std::string text = "SetKeyboardState";
    for (int key = 0; key < 256; ++key)
        if (before[key] != state[key]) text += ' ' + Number(key) + "=" + Number(state[key]);
    trace::Win(text);
    if (Fails("SetKeyboardState")) return FALSE;
    input::WriteKeyboard(state);
    return TRUE;
}

int WINAPI OnGetSystemMetrics(int index) {
    int value = 0;
    if (!Fails("GetSystemMetrics")) {
        const SIZE screen = input::ScreenSize();
        const RECT all = input::WholeScreen();
        switch (index) {
            case SM_CXSCREEN: value = screen.cx; break;
            case SM_CYSCREEN: value = screen.cy; break;
            case SM_XVIRTUALSCREEN: value = all.left; break;
            case SM_YVIRTUALSCREEN: value = all.top; break;
            case SM_CXVIRTUALSCREEN: value = all.right - all.left; break;
            case SM_CYVIRTUALSCREEN: value = all.bottom - all.top; break;
            case SM_SWAPBUTTON: value = input::ButtonsAreSwapped(); break;
            default: value = ::GetSystemMetrics(index);
        }
    }
    if (trace::AsksWanted()) trace::Ask("GetSystemMetrics " + Number(index), Number(value));
    return value;
}

DWORD WINAPI OnGetTickCount() {
    const DWORD ticks = Fails("GetTickCount") ? 0 : input::Ticks();
    if (trace::AsksWanted()) trace::Ask("GetTickCount", Number(ticks));
    return ticks;
}

// Time only passes where a scenario says so, here and with `clock`.
void WINAPI OnSleep(DWORD milliseconds) {
    trace::Win("Sleep " + Number(milliseconds));
    if (Fails("Sleep")) return;
    input::AdvanceClock(milliseconds);
    if (!input::IsVirtual()) ::Sleep(milliseconds ? 1 : 0);  // what waits gets its turn
}

LPARAM WINAPI OnGetMessageExtraInfo() {
    const LPARAM extra =
        Fails("GetMessageExtraInfo") || input::IsVirtual() ? 0 : ::GetMessageExtraInfo();
    if (trace::AsksWanted()) trace::Ask("GetMessageExtraInfo", Number(extra));
    return extra;
}

HWND WINAPI OnGetForegroundWindow() {
    const HWND window = Fails("GetForegroundWindow") ? nullptr : world::ForegroundWindow();
    if (trace::AsksWanted()) trace::Ask("GetForegroundWindow", world::Of(window));
    return window;
}

HWND WINAPI OnWindowFromPoint(POINT point) {
    const HWND window = Fails("WindowFromPoint") ? nullptr : input::WindowAt(point);
    if (trace::AsksWanted())
        trace::Ask("WindowFromPoint " + PointText(point.x, point.y), world::Of(window));
    return window;
}

std::string ThreadText(DWORD thread) {
    return thread == 0 ? "all" : thread == GetCurrentThreadId() ? "ui" : "other";
}

HHOOK WINAPI OnSetWindowsHookExA(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    trace::Win("SetWindowsHookExA " + Number(type) + " module=" + ModuleText(module) +
               " thread=" + ThreadText(thread));
    if (Fails("SetWindowsHookExA")) return nullptr;
    return input::InstallHook(type, procedure);
}

LRESULT WINAPI OnCallNextHookEx(HHOOK, int code, WPARAM wparam, LPARAM lparam) {
    Fails("CallNextHookEx");
    return input::PassOn(code, wparam, lparam);
}

HWND WINAPI OnSetFocus(HWND window) {
    trace::Win("SetFocus " + world::Of(window));
    if (Fails("SetFocus")) return nullptr;
    return ::SetFocus(window);
}

const Row kRows[] = {
    {"SendInput", Address(OnSendInput)},
    {"SetCursor", Address(OnSetCursor)},
    {"SetCursorPos", Address(OnSetCursorPos)},
    {"GetCursorPos", Address(OnGetCursorPos)},
    {"GetAsyncKeyState", Address(OnGetAsyncKeyState)},
    {"GetKeyState", Address(OnGetKeyState)},
    {"GetKeyboardState", Address(OnGetKeyboardState)},
    {"SetKeyboardState", Address(OnSetKeyboardState)},
    {"GetSystemMetrics", Address(OnGetSystemMetrics)},
    {"GetTickCount", Address(OnGetTickCount)},
    {"Sleep", Address(OnSleep)},
    {"GetMessageExtraInfo", Address(OnGetMessageExtraInfo)},
    {"GetForegroundWindow", Address(OnGetForegroundWindow)},
    {"WindowFromPoint", Address(OnWindowFromPoint)},
    {"SetWindowsHookExA", Address(OnSetWindowsHookExA)},
    {"CallNextHookEx", Address(OnCallNextHookEx)},
    {"SetFocus", Address(OnSetFocus)},
};

}  // namespace

std::span<const Row> InputCalls() {
    return kRows;
}

}  // namespace intercept
