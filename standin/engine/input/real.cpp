// Real input: records travel through the system's queue to hooks that are installed around the
// plug-in's procedures. The queue of the bookkeeping is held beside it, to know each event again.
#include <utility>

#include "standin/engine/input/internal.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"

namespace input {
namespace {

// Marks the record that keeps two moves apart.
constexpr ULONG_PTR kSeparator = 0x5E9A7A70;

constexpr UINT kWanted = PM_REMOVE | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE | PM_QS_INPUT;

UINT ClientMessage(UINT message) {
    if (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK)
        return message - WM_NCMOUSEMOVE + WM_MOUSEMOVE;
    return message;
}

// The message that its record made, before the system knew it for the second press of two.
UINT RecordMessage(UINT message) {
    const UINT client = ClientMessage(message);
    switch (client) {
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDBLCLK: return client - (WM_LBUTTONDBLCLK - WM_LBUTTONDOWN);
        default: return client;
    }
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
// Empty: nobody injected it.
std::optional<Event> TakeRecord(bool (*fits)(const Event&, UINT, int), UINT message, int key) {
    for (size_t i = 0; i < g_input.waiting.size(); ++i) {
        if (!fits(g_input.waiting[i], message, key)) continue;
        const Event event = g_input.waiting[i];
        g_input.waiting.erase(g_input.waiting.begin(),
                              g_input.waiting.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        return event;
    }
    return {};
}

bool FitsMouse(const Event& event, UINT message, int) {
    return event.kind != EventKind::kKey && event.message == message;
}

bool FitsKey(const Event& event, UINT up, int general) {
    return event.kind == EventKind::kKey && GeneralKey(event.key) == general &&
           event.down == (up == 0);
}

// An event of the mouse over a window of ours has to reach it.
void LookForLostEvents() {
    if (!SystemIsSynchronous()) return;
    for (const Event& event : g_input.waiting)
        if (event.kind != EventKind::kKey && IsOwn(WindowAt(event.at)))
            g_input.disturbance = "the system lost an event of the mouse at " +
                                  PointText(event.at) + " over " + world::Of(WindowAt(event.at));
}

// A hook that pumps the queue is handed the event that it was called for once more, since Wine
// takes it out of the queue only when the hooks are through. The oldest comes first.
bool ComesAgain(bool mouse, UINT message, int key, bool up) {
    if (g_input.pumps_within == 0) return false;
    HookedEvent* oldest = nullptr;
    for (HookedEvent* event = g_input.hooked; event; event = event->outer)
        if (event->queued) oldest = event;
    if (!oldest || oldest->mouse != mouse) return false;
    const bool same = mouse ? RecordMessage(oldest->message) == RecordMessage(message)
                            : oldest->key == key && oldest->up == up;
    if (same) oldest->queued = false;
    return same;
}

class InHook {
public:
    InHook() {
        event_.outer = g_input.hooked;
        g_input.hooked = &event_;
    }
    ~InHook() { g_input.hooked = event_.outer; }
    InHook(const InHook&) = delete;
    InHook& operator=(const InHook&) = delete;
    HookedEvent* operator->() { return &event_; }

private:
    HookedEvent event_;
};

// After a peek whose event nobody kept, the record waits on.
void PutBack(const std::optional<Event>& record, int code, LRESULT answer, int hit = HTCLIENT) {
    if (record && code == HC_NOREMOVE && answer == 0 && !IsForNobody(hit))
        g_input.waiting.push_front(*record);
}

bool g_watching = false;

// Nothing comes out of the queue for an event that a hook keeps, and the watch would not look.
void WakeWatch() {
    if (g_watching) PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
}

}  // namespace

// On Windows an injected record takes a moment to come out of the queue.
bool SystemIsSynchronous() {
    static const bool synchronous =
        GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
    return synchronous;
}

void InjectForReal(const INPUT& record) {
    INPUT timed = record;
    if (timed.type == INPUT_MOUSE && timed.mi.time == 0) timed.mi.time = g_input.time;
    // Wine knows of swapped buttons, but does not swap them.
    constexpr DWORD kLeft = MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP;
    constexpr DWORD kRight = MOUSEEVENTF_RIGHTDOWN | MOUSEEVENTF_RIGHTUP;
    if (timed.type == INPUT_MOUSE && g_input.swapped && SystemIsSynchronous()) {
        const DWORD flags = timed.mi.dwFlags;
        timed.mi.dwFlags =
            (flags & ~(kLeft | kRight)) | (flags & kLeft) << 2 | (flags & kRight) >> 2;
    }
    // Wine tells the right keys from the left ones by this flag, Windows by the key itself.
    const WORD key = timed.type == INPUT_KEYBOARD ? timed.ki.wVk : WORD{0};
    if ((key == VK_RSHIFT || key == VK_RCONTROL || key == VK_RMENU) && SystemIsSynchronous())
        timed.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
    ::SendInput(1, &timed, sizeof timed);
}

void LookForStrayCursor() {
    POINT now{};
    if (!SystemIsSynchronous() || !::GetCursorPos(&now)) return;
    if (now.x != g_input.cursor.x || now.y != g_input.cursor.y)
        g_input.disturbance = "the system put the cursor to " + PointText(now) +
                              ", it was left at " + PointText(g_input.cursor);
}

void MoveCursorForReal(POINT screen) {
    // Wine keeps the event that a hook is looking at in the queue. A move would merge with it when
    // that is a move too, and vanish with it; something has to lie between.
    if (g_input.handling_move && g_input.waiting.size() == 1 && SystemIsSynchronous()) {
        INPUT separator{};
        separator.type = INPUT_MOUSE;
        separator.mi.dwFlags = MOUSEEVENTF_WHEEL;
        separator.mi.dwExtraInfo = kSeparator;
        ::SendInput(1, &separator, sizeof separator);
    }
    ::SetCursorPos(screen.x, screen.y);
}

// The watch of interactive use peeks at messages where no host does.
static bool IsOwnPeek(int code) {
    return g_input.interactive && code == HC_NOREMOVE;
}

LRESULT CALLBACK SystemMouseHook(int code, WPARAM wparam, LPARAM lparam) {
    if (IsOwnPeek(code)) return CallNextHookEx(nullptr, code, wparam, lparam);
    const UINT message = static_cast<UINT>(wparam);
    if (message == WM_MOUSEWHEEL &&
        reinterpret_cast<MOUSEHOOKSTRUCTEX*>(lparam)->dwExtraInfo == kSeparator)
        return 1;
    if (ComesAgain(true, message, 0, false)) return 1;
    const std::optional<Event> record = TakeRecord(FitsMouse, RecordMessage(message), 0);
    // The system tells windows that come to lie under a resting cursor about it; nobody moved.
    if (!record && !g_input.interactive && ClientMessage(message) == WM_MOUSEMOVE) return 1;
    MOUSEHOOKSTRUCTEX hook = *reinterpret_cast<MOUSEHOOKSTRUCTEX*>(lparam);
    hook.dwExtraInfo = 0;
    InHook hooked;
    hooked->mouse = true;
    hooked->message = message;
    const bool outer = std::exchange(g_input.handling_move, ClientMessage(message) == WM_MOUSEMOVE);
    const LRESULT answer = AskMouseHook(code, message, &hook, record && record->own);
    g_input.handling_move = outer;
    PutBack(record, code, answer, static_cast<int>(hook.wHitTestCode));
    if (answer) WakeWatch();
    return answer;
}

LRESULT CALLBACK SystemKeyHook(int code, WPARAM wparam, LPARAM lparam) {
    if (IsOwnPeek(code)) return CallNextHookEx(nullptr, code, wparam, lparam);
    const bool up = (lparam & (static_cast<LPARAM>(KF_UP) << 16)) != 0;
    const int general = GeneralKey(static_cast<int>(wparam));
    if (ComesAgain(false, 0, general, up)) return 1;
    const std::optional<Event> record = TakeRecord(FitsKey, up ? 1 : 0, general);
    InHook hooked;
    hooked->key = general;
    hooked->up = up;
    const LRESULT answer = AskKeyHook(code, general, lparam, record && record->own);
    PutBack(record, code, answer);
    if (answer) WakeWatch();
    return answer;
}

void RunInteractive(HWND main_window, bool (*hotkey)(int virtual_key, bool repeated), bool watch) {
    MSG message;
    if (watch) BeginWatch();
    g_watching = watch;
    while (IsWindow(main_window)) {
        if (watch && !PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE)) Look();
        if (GetMessageA(&message, nullptr, 0, 0) <= 0) break;
        if (IsMouse(message.message))
            ReportMouseArrival(message.hwnd, message.message, message.wParam, message.pt);
        else if (IsKey(message.message))
            ReportKeyArrival(message.hwnd, message.message, message.wParam);
        trace::Flush();
        trace::NoteProgress();
        if (world::HandleDialogMessage(&message)) continue;
        const bool repeated = (message.lParam & (static_cast<LPARAM>(KF_REPEAT) << 16)) != 0;
        if (message.message == WM_KEYDOWN && hotkey(static_cast<int>(message.wParam), repeated))
            continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    g_watching = false;
    if (watch) EndWatch();
}

static bool TakeMessage(MSG* message) {
    if (g_input.peeking && !PeekMessageA(message, nullptr, 0, 0, kWanted & ~PM_REMOVE))
        return false;
    return PeekMessageA(message, nullptr, 0, 0, kWanted);
}

void DispatchReal() {
    MSG message;
    while (TakeMessage(&message)) {
        if (IsMouse(message.message)) {
            // Without hooks nobody has taken the record yet.
            if (!g_input.mouse_hooks) TakeRecord(FitsMouse, RecordMessage(message.message), 0);
            ReportMouseArrival(message.hwnd, message.message, message.wParam, message.pt);
        } else if (IsKey(message.message)) {
            if (!g_input.key_hooks)
                TakeRecord(FitsKey, (message.lParam >> 31) & 1 ? 1 : 0,
                           static_cast<int>(message.wParam));
            ReportKeyArrival(message.hwnd, message.message, message.wParam);
        }
        Dispatch(&message);
        trace::NoteProgress();
    }
}

void DrainReal() {
    if (g_input.interactive) return;  // the user's own loop dispatches the events
    for (;;) {
        DispatchReal();
        if (g_input.waiting.empty() || SystemIsSynchronous()) break;
        constexpr DWORD kLongestWait = 100;
        if (MsgWaitForMultipleObjects(0, nullptr, FALSE, kLongestWait, QS_ALLINPUT) == WAIT_TIMEOUT)
            break;
    }
    // What is left went to windows of others, or got lost.
    LookForLostEvents();
    LookForStrayCursor();
    g_input.waiting.clear();
}

}  // namespace input
