// Real input: records travel through the system's queue to hooks that the desk installs around the
// plug-in's procedures. The queue of the bookkeeping is held beside it, to know each event again.
#include <utility>

#include "standin/engine/desk_internal.h"
#include "standin/engine/trace.h"
#include "standin/engine/trace_control.h"
#include "standin/engine/world.h"

namespace desk {
namespace {

// Times of the user's records lie this far apart, so that two clicks are never a double click.
constexpr DWORD kBetweenRecords = 10000;
DWORD g_record_time = 0x10000000;

// Marks the record that keeps two moves apart.
constexpr ULONG_PTR kSeparator = 0x5E9A7A70;

constexpr UINT kWanted = PM_REMOVE | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE | PM_QS_INPUT;

UINT ClientMessage(UINT message) {
    if (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK)
        return message - WM_NCMOUSEMOVE + WM_MOUSEMOVE;
    return message;
}

bool IsMouse(UINT message) {
    const UINT client = ClientMessage(message);
    return client >= WM_MOUSEFIRST && client <= WM_MBUTTONDBLCLK;
}

bool IsKey(UINT message) {
    return message == WM_KEYDOWN || message == WM_KEYUP || message == WM_SYSKEYDOWN ||
           message == WM_SYSKEYUP;
}

// Takes the record that a delivered event comes from. Records before it went to other windows.
// Null: nobody injected it.
bool TakeRecord(bool (*fits)(const Event&, UINT, int), UINT message, int key, bool* own) {
    for (size_t i = 0; i < g_desk.waiting.size(); ++i) {
        if (!fits(g_desk.waiting[i], message, key)) continue;
        *own = g_desk.waiting[i].own;
        g_desk.waiting.erase(g_desk.waiting.begin(),
                             g_desk.waiting.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        return true;
    }
    return false;
}

bool FitsMouse(const Event& event, UINT message, int) {
    return event.kind != EventKind::kKey && event.message == message;
}

bool FitsKey(const Event& event, UINT up, int general) {
    return event.kind == EventKind::kKey && GeneralKey(event.key) == general &&
           event.down == (up == 0);
}

// On Windows an injected record takes a moment to come out of the queue.
bool SystemIsSynchronous() {
    static const bool synchronous =
        GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
    return synchronous;
}

// An event of the mouse over a window of ours has to reach it.
void LookForLostEvents() {
    if (!SystemIsSynchronous()) return;
    for (const Event& event : g_desk.waiting)
        if (event.kind != EventKind::kKey && IsOwn(WindowAt(event.at)))
            g_desk.disturbance = "the system lost an event of the mouse at " + PointText(event.at) +
                                 " over " + world::Of(WindowAt(event.at));
}

}  // namespace

void InjectForReal(const INPUT& record) {
    INPUT timed = record;
    g_record_time += kBetweenRecords;
    if (timed.type == INPUT_MOUSE) timed.mi.time = g_record_time;
    // Wine tells the right Shift key from the left one by this flag, Windows by the key itself.
    if (timed.type == INPUT_KEYBOARD && timed.ki.wVk == VK_RSHIFT && SystemIsSynchronous())
        timed.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
    ::SendInput(1, &timed, sizeof timed);
}

void LookForStrayCursor() {
    POINT now{};
    if (!SystemIsSynchronous() || !::GetCursorPos(&now)) return;
    if (now.x != g_desk.cursor.x || now.y != g_desk.cursor.y)
        g_desk.disturbance = "the system put the cursor to " + PointText(now) +
                             ", it was left at " + PointText(g_desk.cursor);
}

void MoveCursorForReal(POINT screen) {
    // Wine keeps the event that a hook is looking at in the queue. A move would merge with it when
    // that is a move too, and vanish with it; something has to lie between.
    if (g_desk.handling_move && g_desk.waiting.size() == 1 && SystemIsSynchronous()) {
        INPUT separator{};
        separator.type = INPUT_MOUSE;
        separator.mi.dwFlags = MOUSEEVENTF_WHEEL;
        separator.mi.dwExtraInfo = kSeparator;
        ::SendInput(1, &separator, sizeof separator);
    }
    ::SetCursorPos(screen.x, screen.y);
}

LRESULT CALLBACK SystemMouseHook(int code, WPARAM wparam, LPARAM lparam) {
    if (code != HC_ACTION) return CallNextHookEx(nullptr, code, wparam, lparam);
    const UINT message = static_cast<UINT>(wparam);
    if (message == WM_MOUSEWHEEL &&
        reinterpret_cast<MOUSEHOOKSTRUCTEX*>(lparam)->dwExtraInfo == kSeparator)
        return 1;
    bool own = false;
    const bool injected = TakeRecord(FitsMouse, ClientMessage(message), 0, &own);
    // The system tells windows that come to lie under a resting cursor about it; nobody moved.
    if (!injected && !g_desk.interactive && ClientMessage(message) == WM_MOUSEMOVE) return 1;
    MOUSEHOOKSTRUCTEX hook = *reinterpret_cast<MOUSEHOOKSTRUCTEX*>(lparam);
    hook.dwExtraInfo = 0;
    const bool outer = std::exchange(g_desk.handling_move, ClientMessage(message) == WM_MOUSEMOVE);
    const bool swallowed = AskMouseHook(message, &hook, own);
    g_desk.handling_move = outer;
    if (swallowed) return 1;
    return CallNextHookEx(nullptr, code, wparam, lparam);
}

LRESULT CALLBACK SystemKeyHook(int code, WPARAM wparam, LPARAM lparam) {
    if (code != HC_ACTION) return CallNextHookEx(nullptr, code, wparam, lparam);
    const bool up = (lparam & (static_cast<LPARAM>(KF_UP) << 16)) != 0;
    const int general = GeneralKey(static_cast<int>(wparam));
    bool own = false;
    TakeRecord(FitsKey, up ? 1 : 0, general, &own);
    if (AskKeyHook(general, lparam, own)) return 1;
    return CallNextHookEx(nullptr, code, wparam, lparam);
}

void RunInteractive(HWND main_window, bool (*hotkey)(int virtual_key), bool watch) {
    MSG message;
    if (watch) BeginWatch();
    while (IsWindow(main_window)) {
        if (watch && !PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE)) Look();
        if (GetMessageA(&message, nullptr, 0, 0) <= 0) break;
        if (IsMouse(message.message))
            ReportMouseArrival(message.hwnd, message.message, message.wParam, message.pt);
        else if (IsKey(message.message))
            ReportKeyArrival(message.hwnd, message.message, message.wParam);
        trace::Flush();
        trace::NoteProgress();
        if (world::SpeakToDialogs(&message)) continue;
        if (message.message == WM_KEYDOWN && hotkey(static_cast<int>(message.wParam))) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    if (watch) EndWatch();
}

void DrainReal() {
    if (g_desk.interactive) return;  // the user's own loop hands the events out
    for (;;) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, kWanted)) {
            if (IsMouse(message.message)) {
                // Without hooks nobody has taken the record yet.
                bool own = false;
                if (!g_desk.mouse_hook)
                    TakeRecord(FitsMouse, ClientMessage(message.message), 0, &own);
                ReportMouseArrival(message.hwnd, message.message, message.wParam, message.pt);
            } else if (IsKey(message.message)) {
                bool own = false;
                if (!g_desk.key_hook)
                    TakeRecord(FitsKey, (message.lParam >> 31) & 1 ? 1 : 0,
                               static_cast<int>(message.wParam), &own);
                ReportKeyArrival(message.hwnd, message.message, message.wParam);
            }
            Dispatch(&message);
            trace::NoteProgress();
        }
        if (g_desk.waiting.empty() || SystemIsSynchronous()) break;
        constexpr DWORD kLongestWait = 100;
        if (MsgWaitForMultipleObjects(0, nullptr, FALSE, kLongestWait, QS_ALLINPUT) == WAIT_TIMEOUT)
            break;
    }
    // What is left went to windows of others, or got lost.
    LookForLostEvents();
    LookForStrayCursor();
    g_desk.waiting.clear();
}

}  // namespace desk
