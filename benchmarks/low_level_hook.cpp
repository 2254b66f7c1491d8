// What the plug-in is held against: the same Alt translation done from outside of the host, by a
// program with the system's low-level hooks. Every event of the desktop has to visit this process
// before it goes on to its queue, whatever window it is for.
//
//   Alt + left    becomes the host's orbit: Alt + middle
//   Alt + middle  becomes the host's pan: middle alone
//   Alt + right   becomes the host's zoom: Ctrl + Alt + middle
//
// usage: low_level_hook NAME. The events NAME-toggle and NAME-quit are waited for; NAME-done is set
// when the program is ready and after each toggle, which installs the hooks or takes them out.
#include <windows.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace {

constexpr ULONG_PTR kOwn = 0x4B415256;  // marks the records that this program sends

HHOOK g_mouse = nullptr;
HHOOK g_keyboard = nullptr;
bool g_alt_down = false;
DWORD g_held = 0;  // the button whose press was translated, as its message
bool g_called = false;

INPUT Key(WORD key, bool down) {
    INPUT record{};
    record.type = INPUT_KEYBOARD;
    record.ki.wVk = key;
    record.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    record.ki.dwExtraInfo = kOwn;
    return record;
}

INPUT Middle(bool down) {
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = down ? MOUSEEVENTF_MIDDLEDOWN : MOUSEEVENTF_MIDDLEUP;
    record.mi.dwExtraInfo = kOwn;
    return record;
}

void Send(std::initializer_list<INPUT> records) {
    SendInput(static_cast<UINT>(records.size()), const_cast<INPUT*>(records.begin()),
              sizeof(INPUT));
}

bool Press(WPARAM message) {
    if (!g_alt_down || g_held) return false;
    switch (message) {
        case WM_LBUTTONDOWN: Send({Middle(true)}); break;
        case WM_MBUTTONDOWN: Send({Key(VK_MENU, false), Middle(true)}); break;
        case WM_RBUTTONDOWN: Send({Key(VK_CONTROL, true), Middle(true)}); break;
        default: return false;
    }
    g_held = static_cast<DWORD>(message);
    return true;
}

bool Release(WPARAM message) {
    const bool held = (message == WM_LBUTTONUP && g_held == WM_LBUTTONDOWN) ||
                      (message == WM_MBUTTONUP && g_held == WM_MBUTTONDOWN) ||
                      (message == WM_RBUTTONUP && g_held == WM_RBUTTONDOWN);
    if (!held) return false;
    g_held = 0;
    if (message == WM_MBUTTONUP) {
        Send({Middle(false)});
        if (g_alt_down) Send({Key(VK_MENU, true)});
    } else if (message == WM_RBUTTONUP) {
        Send({Middle(false), Key(VK_CONTROL, false)});
    } else {
        Send({Middle(false)});
    }
    return true;
}

LRESULT CALLBACK OnMouse(int code, WPARAM message, LPARAM details) {
    g_called = true;
    const auto* event = reinterpret_cast<const MSLLHOOKSTRUCT*>(details);
    if (code == HC_ACTION && event->dwExtraInfo != kOwn && (Press(message) || Release(message)))
        return 1;
    return CallNextHookEx(nullptr, code, message, details);
}

LRESULT CALLBACK OnKey(int code, WPARAM message, LPARAM details) {
    g_called = true;
    const auto* event = reinterpret_cast<const KBDLLHOOKSTRUCT*>(details);
    const bool is_alt =
        event->vkCode == VK_LMENU || event->vkCode == VK_RMENU || event->vkCode == VK_MENU;
    if (code == HC_ACTION && event->dwExtraInfo != kOwn && is_alt)
        g_alt_down = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
    return CallNextHookEx(nullptr, code, message, details);
}

bool Toggle() {
    if (g_mouse) {
        UnhookWindowsHookEx(g_mouse);
        UnhookWindowsHookEx(g_keyboard);
        g_mouse = nullptr;
        g_keyboard = nullptr;
        // Hooks on another desktop than the events are would cost nothing and show nothing.
        return std::exchange(g_called, false);
    }
    HMODULE module = GetModuleHandleA(nullptr);
    g_mouse = SetWindowsHookExA(WH_MOUSE_LL, OnMouse, module, 0);
    g_keyboard = SetWindowsHookExA(WH_KEYBOARD_LL, OnKey, module, 0);
    return g_mouse && g_keyboard;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    const std::string name = arguments[1];
    const HANDLE quit = CreateEventA(nullptr, TRUE, FALSE, (name + "-quit").c_str());
    const HANDLE toggle = CreateEventA(nullptr, FALSE, FALSE, (name + "-toggle").c_str());
    const HANDLE done = CreateEventA(nullptr, FALSE, FALSE, (name + "-done").c_str());
    if (!quit || !toggle || !done) return 1;

    // The system calls the hooks while their thread waits for messages.
    MSG message;
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
    SetEvent(done);
    const HANDLE events[] = {quit, toggle};
    for (;;) {
        switch (MsgWaitForMultipleObjects(2, events, FALSE, INFINITE, QS_ALLINPUT)) {
            case WAIT_OBJECT_0: return 0;
            case WAIT_OBJECT_0 + 1:
                if (!Toggle()) return 1;
                SetEvent(done);
                break;
            case WAIT_OBJECT_0 + 2:
                while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                    DispatchMessageA(&message);
                break;
            default: return 1;
        }
    }
}
