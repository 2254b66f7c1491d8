// Virtual input: the engine plays the system. Nothing waits, nothing depends on another process.
#include <cstdlib>
#include <utility>

#include "standin/engine/input/internal.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"

namespace input {
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
    g_input.posted = false;
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

// As the system finds the second press of a double click: by the last press that it recorded,
// whatever became of that one. The same keys and buttons have to be held, as Wine has it. What is
// only peeked at is not recorded.
UINT WithDoubleClick(const Event& event, HWND window, int hit, bool records) {
    if (!IsButtonDown(event.message)) return event.message;
    const Press& last = g_input.last_press;
    const bool asked = hit != HTCLIENT || (GetClassLongPtrA(window, GCL_STYLE) & CS_DBLCLKS) != 0;
    const bool again = asked && last.message == event.message && last.window == window &&
                       last.flags == event.flags && event.time - last.time < GetDoubleClickTime() &&
                       std::abs(event.at.x - last.at.x) < GetSystemMetrics(SM_CXDOUBLECLK) / 2 &&
                       std::abs(event.at.y - last.at.y) < GetSystemMetrics(SM_CYDOUBLECLK) / 2;
    if (records) {
        g_input.last_press = {};
        if (!again) g_input.last_press = {event.message, window, event.at, event.flags, event.time};
    }
    return again ? event.message + (WM_LBUTTONDBLCLK - WM_LBUTTONDOWN) : event.message;
}

}  // namespace

// An event between the queue and its window. The thread's key state knows of it when the hooks are
// through, or before when something behind it is dispatched from inside of them.
struct Delivery {
    const Event& event;
    HWND window = nullptr;  // mouse
    int hit = HTCLIENT;
    Delivery* outer = nullptr;
    bool delivered = false;

    explicit Delivery(const Event& one) : event(one), outer(g_input.delivery) {
        g_input.delivery = this;
    }
    ~Delivery() { g_input.delivery = outer; }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

    void Deliver() {
        if (!std::exchange(delivered, true) && event.kind != EventKind::kMove)
            g_input.thread.Change(event.key, event.down, 0x80);
    }
};

// Those around it have been noted already: a delivery inside of another one was begun by a pump.
void NoteDelivered() {
    Delivery* const delivery = g_input.delivery;
    if (!delivery || delivery->delivered) return;
    // Wine comes upon the press once more then, before it lets it go, and takes it for two.
    if (delivery->window) WithDoubleClick(delivery->event, delivery->window, delivery->hit, true);
    delivery->Deliver();
}

namespace {

enum class End { kArrived, kSwallowed, kPeeked };

// `code` tells a peek from the taking; a peek leaves the event where it is unless the hook keeps
// it.
End DeliverMouse(const Event& event, int code) {
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
    Delivery delivery(event);
    const bool takes = code == HC_ACTION;
    if (!window) {
        if (takes) delivery.Deliver();
        return takes ? End::kArrived : End::kPeeked;
    }

    delivery.window = window;
    delivery.hit = hit;
    UINT message = WithDoubleClick(event, window, hit, takes);
    if (hit != HTCLIENT) message += WM_NCMOUSEMOVE - WM_MOUSEMOVE;
    MOUSEHOOKSTRUCTEX hook{};
    hook.pt = event.at;
    hook.hwnd = window;
    hook.wHitTestCode = static_cast<UINT>(hit);
    const bool swallowed = AskMouseHook(code, message, &hook, event.own) != 0;
    if (swallowed || takes || IsForNobody(hit)) delivery.Deliver();
    if (swallowed) return End::kSwallowed;
    // Here the system would have the window set the cursor's shape; there is none to be seen.
    if (IsForNobody(hit)) return End::kArrived;
    if (!takes) return End::kPeeked;
    if (!IsWindow(window)) return End::kArrived;

    if (!captured && IsButtonDown(event.message)) {
        const bool eaten = !Activate(window, hit, message);
        if (eaten || !IsWindow(window)) return End::kArrived;
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
    return End::kArrived;
}

End DeliverKey(const Event& event, int code) {
    const int general = GeneralKey(event.key);
    const bool takes = code == HC_ACTION;
    Delivery delivery(event);
    const bool swallowed = AskKeyHook(code, general, event.lparam, event.own) != 0;
    if (swallowed || takes) delivery.Deliver();
    if (swallowed) return End::kSwallowed;
    if (!takes) return End::kPeeked;
    const HWND window = Focus();
    if (!window) return End::kArrived;
    MSG arrived{};
    arrived.hwnd = window;
    arrived.message = event.message;
    arrived.wParam = static_cast<WPARAM>(general);
    arrived.lParam = event.lparam;
    ReportKeyArrival(window, event.message, arrived.wParam);
    if (general != VK_TAB) {
        Dispatch(&arrived);
        return End::kArrived;
    }
    // The system's dialogs ask the system's own table whether Shift is down with Tab.
    ::SetKeyboardState(g_input.thread.keys);
    Dispatch(&arrived);
    BYTE nothing_down[256] = {};
    ::SetKeyboardState(nothing_down);
    return End::kArrived;
}

End Deliver(const Event& event, int code) {
    const End end =
        event.kind == EventKind::kKey ? DeliverKey(event, code) : DeliverMouse(event, code);
    trace::NoteProgress();
    return end;
}

}  // namespace

void DrainVirtual() {
    // Behind a message that a hook kept the system goes on to the next one in the same way: a call
    // that takes does not peek before.
    bool takes = false;
    for (;;) {
        // The system dispatches what was posted before it dispatches input.
        if (g_input.posted) {
            PumpPosted();
            takes = false;
        }
        if (g_input.waiting.empty()) {
            // Asking the system takes longer than most events do. Without a dialog of the system's
            // controls nobody posts but those who say so.
            if (world::AnyDialogOpen()) PumpPosted();
            if (g_input.waiting.empty() && !g_input.posted) return;
            continue;
        }
        const Event event = g_input.waiting.front();
        g_input.waiting.pop_front();
        if (g_input.peeking && !takes) {
            if (Deliver(event, HC_NOREMOVE) == End::kPeeked) {
                g_input.waiting.push_front(event);
                takes = true;
            }
            continue;
        }
        takes = Deliver(event, HC_ACTION) == End::kSwallowed;
    }
}

}  // namespace input
