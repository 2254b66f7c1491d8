// What real input leaves in the tables of its desktop, taken back: keys that are down, presses that
// nobody has asked for, the toggled state of each key, the cursor. The next play on the desktop
// begins as on a new one.
#include <iterator>

#include "standin/engine/input/internal.h"

namespace input {
namespace {

constexpr int kLastKey = 254;

void Send(int key, bool down) {
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = ButtonFlag(key, down);
    if (!record.mi.dwFlags) {
        // By the flag Wine tells the right keys from the left ones.
        const bool right = IsExtended(key) || key == VK_RSHIFT;
        record.type = INPUT_KEYBOARD;
        record.ki.wVk = static_cast<WORD>(key);
        record.ki.dwFlags = (down ? 0 : KEYEVENTF_KEYUP) | (right ? KEYEVENTF_EXTENDEDKEY : 0);
    }
    ::SendInput(1, &record, sizeof record);
}

void Tap(int key) {
    Send(key, true);
    Send(key, false);
}

bool IsToggled(int key) {
    return (::GetKeyState(key) & 1) != 0;
}

// What this thread's own window was sent.
void DropMessages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_INPUT | PM_QS_POSTMESSAGE)) {
    }
}

// A thread learns of a key's state on the desktop when the key changes, so each has to be pressed
// once before it can be asked.
void PressUntilNotToggled(int key) {
    Tap(key);
    DropMessages();
    if (IsToggled(key)) Tap(key);
    DropMessages();
}

// A general key follows its two sides: pressed together they are two presses, and one of it.
void PressTogether(int left, int right) {
    Send(left, true);
    Send(right, true);
    Send(right, false);
    Send(left, false);
    Tap(left);
    Tap(right);
    DropMessages();
}

struct Sides {
    int general, left, right;
};
constexpr Sides kSides[] = {{VK_MENU, VK_LMENU, VK_RMENU},
                            {VK_CONTROL, VK_LCONTROL, VK_RCONTROL},
                            {VK_SHIFT, VK_LSHIFT, VK_RSHIFT}};

bool TidyKeys(const std::set<int>& touched) {
    for (int key = 1; key <= kLastKey; ++key)
        if (GeneralKey(key) != key || touched.contains(key))
            if (::GetAsyncKeyState(key) < 0) Send(key, false);
    for (const int key : touched)
        PressUntilNotToggled(key);
    for (const Sides& sides : kSides)
        if (touched.contains(sides.left) || touched.contains(sides.right))
            if (IsToggled(sides.general)) PressTogether(sides.left, sides.right);
    bool tidy = true;
    for (int key = 1; key <= kLastKey; ++key) {
        ::GetAsyncKeyState(key);  // takes note of a press
        tidy = ::GetAsyncKeyState(key) == 0 && !IsToggled(key) && tidy;
    }
    return tidy;
}

DWORD WINAPI Tidy(void* desktop) {
    if (!SetThreadDesktop(static_cast<HDESK>(desktop))) return FALSE;
    // The buttons need a window to go to.
    constexpr int kSize = 16;
    const HWND window =
        CreateWindowExA(WS_EX_TOPMOST | WS_EX_NOACTIVATE, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0,
                        kSize, kSize, nullptr, nullptr, nullptr, nullptr);
    ::ClipCursor(nullptr);
    ::SetCursorPos(1, 1);
    const bool keys = TidyKeys(g_input.touched);
    POINT cursor{};
    const bool mouse =
        ::SetCursorPos(0, 0) && ::GetCursorPos(&cursor) && cursor.x == 0 && cursor.y == 0;
    DropMessages();
    DestroyWindow(window);
    return window && keys && mouse;
}

}  // namespace

bool TidyDesktop() {
    if (IsVirtual()) return true;
    if (!SystemIsSynchronous() || g_input.desktop_name.empty()) return false;
    const HDESK desktop =
        CreateDesktopA(g_input.desktop_name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
    if (!desktop) return false;
    const HANDLE thread = CreateThread(nullptr, 0, Tidy, desktop, 0, nullptr);
    DWORD tidy = FALSE;
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &tidy);
    CloseHandle(thread);
    return Leave(desktop) && tidy;
}

}  // namespace input
