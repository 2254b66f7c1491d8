#include "report/input_log.h"

#include <windows.h>

#include "report/report_file.h"
#include "report/window_tree.h"

namespace report {
namespace {

constexpr UINT kMilliseconds = 10000;

struct LogEntry {
    HWND window = nullptr;
    WPARAM key = 0;
    DWORD at = 0;  // ms since the beginning
    int code = 0;
    UINT message = 0;  // 0: a key
    UINT hit = 0;
    POINT point = {};
    bool down = false;
};
// A mouse tells of itself up to a thousand times a second. What is beyond the room is left out.
constexpr int kMost = 16384;
LogEntry g_seen[kMost];
int g_count = 0;

enum { kLogMouse, kLogKeys };
HHOOK g_logHooks[2];
UINT_PTR g_logTimer = 0;
DWORD g_begin = 0;
void (*g_done)() = nullptr;

LogEntry* Next(int code) {
    if (g_count == kMost) return nullptr;
    LogEntry& seen = g_seen[g_count++];
    seen = {};
    seen.at = GetTickCount() - g_begin;
    seen.code = code;
    return &seen;
}

LRESULT CALLBACK NoteMouse(int code, WPARAM message, LPARAM details) {
    const auto& hook = *reinterpret_cast<const MOUSEHOOKSTRUCT*>(details);
    if (LogEntry* seen = Next(code)) {
        seen->message = static_cast<UINT>(message);
        seen->window = hook.hwnd;
        seen->point = hook.pt;
        seen->hit = hook.wHitTestCode;
    }
    return CallNextHookEx(g_logHooks[kLogMouse], code, message, details);
}

// Keys that write are told without saying which.
bool IsWritingKey(WPARAM key) {
    const bool modifier = key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU;
    return !modifier && (key < VK_F1 || key > VK_F24);
}

LRESULT CALLBACK NoteKey(int code, WPARAM key, LPARAM flags) {
    if (LogEntry* seen = Next(code)) {
        seen->key = IsWritingKey(key) ? 0 : key;
        seen->down = (flags & (static_cast<LPARAM>(KF_UP) << 16)) == 0;
    }
    return CallNextHookEx(g_logHooks[kLogKeys], code, key, flags);
}

void TakeHooksAway() {
    for (HHOOK& hook : g_logHooks) {
        if (hook) UnhookWindowsHookEx(hook);
        hook = nullptr;
    }
}

void CALLBACK EndLog(HWND, UINT, UINT_PTR, DWORD) {
    KillTimer(nullptr, g_logTimer);
    g_logTimer = 0;
    TakeHooksAway();
    g_done();
    g_count = 0;
}

}  // namespace

bool StartInputLog(void (*done)()) {
    if (g_logTimer) return false;
    g_count = 0;
    g_begin = GetTickCount();
    g_done = done;
    const DWORD thread = GetCurrentThreadId();
    g_logHooks[kLogMouse] = SetWindowsHookExA(WH_MOUSE, NoteMouse, nullptr, thread);
    g_logHooks[kLogKeys] = SetWindowsHookExA(WH_KEYBOARD, NoteKey, nullptr, thread);
    g_logTimer = SetTimer(nullptr, 0, kMilliseconds, EndLog);
    if (g_logHooks[kLogMouse] && g_logHooks[kLogKeys] && g_logTimer) return true;
    TakeHooksAway();
    return false;
}

void WriteInputLog(File& file, const WindowTree& tree) {
    if (g_logTimer) return;  // these are not complete
    for (int index = 0; index < g_count; ++index) {
        const LogEntry& seen = g_seen[index];
        Line line("input");
        line.Word(seen.message ? "mouse" : "key").Unsigned("at", seen.at);
        if (seen.message) {
            line.Bits("message", seen.message).Key("window", tree.Number(seen.window));
            line.Point("point", seen.point).Unsigned("hit", seen.hit);
        } else {
            line.Unsigned("key", static_cast<unsigned long>(seen.key)).Flag("down", seen.down);
        }
        file.Write(line.Key("code", seen.code));
    }
}

}  // namespace report
