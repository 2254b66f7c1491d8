#include "benchmarks/entry_points.h"

#include "standin/engine/input/internal.h"
#include "standin/engine/plugin/loader.h"
#include "standin/engine/world/world.h"

namespace entry_points {
namespace {

HOOKPROC g_mouse_hook = nullptr;
HOOKPROC g_key_hook = nullptr;
Wrapper g_wrapper = nullptr;

LRESULT Pass(HOOKPROC entry, int code, WPARAM wparam, LPARAM lparam) {
    return g_wrapper ? g_wrapper(entry, code, wparam, lparam) : entry(code, wparam, lparam);
}

// The system tells windows that come to lie under a resting cursor about it, as when a capture
// ends.
bool IsMoveOfNobody(WPARAM message, POINT at) {
    static POINT last{-1, -1};
    const bool moved = at.x != last.x || at.y != last.y;
    last = at;
    return !moved && (message == WM_MOUSEMOVE || message == WM_NCMOUSEMOVE);
}

LRESULT CALLBACK PassMouse(int code, WPARAM message, LPARAM details) {
    if (IsMoveOfNobody(message, reinterpret_cast<const MOUSEHOOKSTRUCT*>(details)->pt))
        return g_mouse_hook(code, message, details);
    return Pass(g_mouse_hook, code, message, details);
}

LRESULT CALLBACK PassKey(int code, WPARAM key, LPARAM flags) {
    return Pass(g_key_hook, code, key, flags);
}

LRESULT CALLBACK RunCommand(int, WPARAM id, LPARAM) {
    return plugin::Execute(static_cast<int>(id));
}

LRESULT CALLBACK SendShortcut(int, WPARAM command, LPARAM main_window) {
    return SendMessageA(reinterpret_cast<HWND>(main_window), WM_COMMAND, command, 0);
}

}  // namespace

bool Open(input::Kind input) {
    input::HookChain& mouse = input::g_input.mouse_hooks;
    input::HookChain& keys = input::g_input.key_hooks;
    if (!mouse || !keys) return false;
    g_mouse_hook = mouse.procedures.front();
    g_key_hook = keys.procedures.front();
    if (input == input::Kind::kVirtual) {
        mouse.procedures = {PassMouse};
        keys.procedures = {PassKey};
        return true;
    }
    UnhookWindowsHookEx(mouse.system);
    UnhookWindowsHookEx(keys.system);
    const DWORD thread = GetCurrentThreadId();
    mouse.system = SetWindowsHookExA(WH_MOUSE, PassMouse, nullptr, thread);
    keys.system = SetWindowsHookExA(WH_KEYBOARD, PassKey, nullptr, thread);
    return mouse.system && keys.system;
}

void Watch(Wrapper wrapper) {
    g_wrapper = wrapper;
}

HOOKPROC MouseHook() {
    return g_mouse_hook;
}

HOOKPROC KeyHook() {
    return g_key_hook;
}

void Command(int id) {
    Pass(RunCommand, HC_ACTION, static_cast<WPARAM>(id), 0);
}

void Shortcut() {
    // No menu and no accelerator of the host has this number.
    constexpr WORD kCommand = 40999;
    constexpr WORD kFromAccelerator = 1;
    Pass(SendShortcut, HC_ACTION, MAKEWPARAM(kCommand, kFromAccelerator),
         reinterpret_cast<LPARAM>(world::Find("main")));
}

void Wheel() {
    MOUSEHOOKSTRUCTEX details{};
    details.pt = input::CursorSoFar();
    details.hwnd = input::WindowAt(details.pt);
    details.wHitTestCode = HTCLIENT;
    details.mouseData = MAKELONG(0, WHEEL_DELTA);
    PassMouse(HC_ACTION, WM_MOUSEWHEEL, reinterpret_cast<LPARAM>(&details));
}

}  // namespace entry_points
