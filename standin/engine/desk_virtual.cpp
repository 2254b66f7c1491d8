// Virtual input: the desk plays the system. Nothing waits, nothing depends on another process.
#include "standin/engine/desk_internal.h"
#include "standin/engine/trace_control.h"
#include "standin/engine/world.h"

namespace desk {
namespace {

bool IsButtonDown(UINT message) {
    return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN;
}

bool IsInput(UINT message) {
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
           (message >= WM_NCMOUSEMOVE && message <= WM_NCXBUTTONDBLCLK) ||
           (message >= WM_KEYFIRST && message <= WM_KEYLAST && message != WM_CHAR);
}

// What was posted to the windows. The system's own mouse and keyboard stay out of a virtual play;
// painting has nobody to look at it and is asked for when a picture is taken.
void PumpPosted() {
    g_desk.posted = false;
    MSG message;
    constexpr UINT kWanted = PM_REMOVE | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE;
    while (PeekMessageA(&message, nullptr, 0, 0, kWanted))
        if (!IsInput(message.message)) Dispatch(&message);
}

// A click brings its window to the front, as the system does between hook and window. False: the
// window wants the click to be forgotten.
bool Activate(HWND window, int hit, UINT message) {
    const HWND top = GetAncestor(window, GA_ROOT);
    if (!top || top == GetActiveWindow()) return true;
    const LRESULT answer = SendMessageA(window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(top),
                                        MAKELPARAM(hit, message));
    if (answer == MA_NOACTIVATE) return true;
    if (answer == MA_NOACTIVATEANDEAT) return false;
    SetForegroundWindow(top);
    return answer != MA_ACTIVATEANDEAT;
}

void DeliverMouse(const Event& event) {
    HWND window = Capture();
    const bool captured = window != nullptr;
    int hit = HTCLIENT;
    const LPARAM screen = MAKELPARAM(event.at.x, event.at.y);
    if (!captured) {
        window = WindowAt(event.at);
        if (window && GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId())
            window = nullptr;
        if (window) hit = static_cast<int>(SendMessageA(window, WM_NCHITTEST, 0, screen));
    }
    const auto delivered = [&event] {
        if (event.kind == EventKind::kButton) g_desk.thread.Change(event.key, event.down, 0x80);
    };
    if (!window) {
        delivered();
        return;
    }

    UINT message = event.message;
    if (hit != HTCLIENT) message += WM_NCMOUSEMOVE - WM_MOUSEMOVE;
    MOUSEHOOKSTRUCTEX hook{};
    hook.pt = event.at;
    hook.hwnd = window;
    hook.wHitTestCode = static_cast<UINT>(hit);
    const bool swallowed = AskMouseHook(message, &hook, event.own);
    delivered();
    if (swallowed || !IsWindow(window)) return;

    // Here the system would have the window set the cursor's shape; there is none to be seen.
    if (hit == HTERROR || hit == HTNOWHERE) return;
    if (!captured && IsButtonDown(event.message)) {
        const bool eaten = !Activate(window, hit, message);
        if (eaten || !IsWindow(window)) return;
    }
    POINT client = event.at;
    ScreenToClient(window, &client);
    MSG arrived{};
    arrived.hwnd = window;
    arrived.message = message;
    arrived.wParam = hit == HTCLIENT ? event.flags : static_cast<WPARAM>(hit);
    arrived.lParam = hit == HTCLIENT ? MAKELPARAM(client.x, client.y) : screen;
    arrived.pt = event.at;
    ReportMouseArrival(window, message, arrived.wParam, event.at);
    Dispatch(&arrived);
}

void DeliverKey(const Event& event) {
    const int general = GeneralKey(event.key);
    const bool swallowed = AskKeyHook(general, event.lparam, event.own);
    g_desk.thread.Change(event.key, event.down, 0x80);
    if (swallowed) return;
    const HWND window = Focus();
    if (!window) return;
    MSG arrived{};
    arrived.hwnd = window;
    arrived.message = event.message;
    arrived.wParam = static_cast<WPARAM>(general);
    arrived.lParam = event.lparam;
    ReportKeyArrival(window, event.message, arrived.wParam);
    if (general != VK_TAB) {
        Dispatch(&arrived);
        return;
    }
    // The system's dialogs ask the system's own table whether Shift is down with Tab.
    ::SetKeyboardState(g_desk.thread.keys);
    Dispatch(&arrived);
    BYTE nothing_down[256] = {};
    ::SetKeyboardState(nothing_down);
}

}  // namespace

void DrainVirtual() {
    for (;;) {
        // The system hands out what was posted before it hands out input.
        if (g_desk.posted) PumpPosted();
        if (g_desk.waiting.empty()) {
            // Asking the system takes longer than most events do. Without a dialog of the system's
            // controls nobody posts but those who say so.
            if (world::AnyDialogOpen()) PumpPosted();
            if (g_desk.waiting.empty() && !g_desk.posted) return;
            continue;
        }
        const Event event = g_desk.waiting.front();
        g_desk.waiting.pop_front();
        if (event.kind == EventKind::kKey)
            DeliverKey(event);
        else
            DeliverMouse(event);
        trace::NoteProgress();
    }
}

}  // namespace desk
