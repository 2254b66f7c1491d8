#include "standin/engine/input/input.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "standin/engine/input/internal.h"
#include "standin/engine/trace/message_names.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"

namespace input {

State g_input;

namespace {

std::string Number(long long value) {
    return std::to_string(value);
}

std::string KeyText(int general_key) {
    switch (general_key) {
        case VK_MENU: return "alt";
        case VK_CONTROL: return "ctrl";
        case VK_SHIFT: return "shift";
        default: return Number(general_key);
    }
}

// The left or right variant that a record is about.
int SideKey(int key, bool extended) {
    switch (key) {
        case VK_MENU: return extended ? VK_RMENU : VK_LMENU;
        case VK_CONTROL: return extended ? VK_RCONTROL : VK_LCONTROL;
        case VK_SHIFT: return VK_LSHIFT;
        default: return key;
    }
}

WPARAM MouseFlags() {
    WPARAM flags = 0;
    if (g_input.async.Down(LogicalButton(VK_LBUTTON))) flags |= MK_LBUTTON;
    if (g_input.async.Down(LogicalButton(VK_RBUTTON))) flags |= MK_RBUTTON;
    if (g_input.async.Down(VK_MBUTTON)) flags |= MK_MBUTTON;
    if (g_input.async.Down(VK_SHIFT)) flags |= MK_SHIFT;
    if (g_input.async.Down(VK_CONTROL)) flags |= MK_CONTROL;
    return flags;
}

UINT ButtonMessage(int key, bool down) {
    switch (key) {
        case VK_LBUTTON: return down ? WM_LBUTTONDOWN : WM_LBUTTONUP;
        case VK_RBUTTON: return down ? WM_RBUTTONDOWN : WM_RBUTTONUP;
        default: return down ? WM_MBUTTONDOWN : WM_MBUTTONUP;
    }
}

// Whether a key message is one of the system's (menu) kind, by the keys that are down before it.
UINT KeyMessage(int key, bool down) {
    const bool alt = g_input.async.Down(VK_MENU);
    const bool ctrl = g_input.async.Down(VK_CONTROL);
    bool system = false;
    switch (GeneralKey(key)) {
        case VK_MENU:
            if (down) {
                system = !ctrl;
                if (system) g_input.alt_alone = true;
            } else {
                system = alt && g_input.alt_alone;
                g_input.alt_alone = false;
            }
            break;
        case VK_CONTROL:
            system = !down && alt;
            if (system) g_input.alt_alone = false;
            break;
        default:
            system = (alt && !ctrl) || key == VK_F10;
            if (system) g_input.alt_alone = false;
    }
    if (system) return down ? WM_SYSKEYDOWN : WM_SYSKEYUP;
    return down ? WM_KEYDOWN : WM_KEYUP;
}

void QueueKey(int key, bool down, int scan, bool extended, bool own) {
    Event event;
    event.kind = EventKind::kKey;
    event.key = SideKey(key, extended);
    event.down = down;
    event.own = own;
    event.message = KeyMessage(event.key, down);
    g_input.touched.insert(event.key);
    const bool was_down = g_input.async.Down(event.key);
    g_input.async.Change(event.key, down, 0xC0);
    unsigned flags = 0;
    if (extended && GeneralKey(event.key) != VK_SHIFT) flags |= KF_EXTENDED;
    if (g_input.async.Down(VK_MENU)) flags |= KF_ALTDOWN;
    if (was_down) flags |= KF_REPEAT;
    if (!down) flags |= KF_UP;
    event.lparam = static_cast<LPARAM>((flags | static_cast<unsigned>(scan & 0xFF)) << 16 | 1u);
    g_input.waiting.push_back(event);
}

void QueueButton(int key, bool down, bool own) {
    Event event;
    event.kind = EventKind::kButton;
    event.key = LogicalButton(key);
    event.down = down;
    event.at = g_input.cursor;
    event.time = g_input.time;
    event.own = own;
    event.message = ButtonMessage(event.key, down);
    g_input.async.Change(key, down, 0xC0);
    g_input.touched.insert({key, event.key});
    event.flags = MouseFlags();
    g_input.waiting.push_back(event);
}

// A move that nobody has taken yet becomes a move to the newer place.
void QueueMove(POINT to, bool own) {
    g_input.cursor = to;
    Event event;
    event.kind = EventKind::kMove;
    event.at = to;
    event.own = own;
    event.message = WM_MOUSEMOVE;
    event.flags = MouseFlags();
    if (!g_input.waiting.empty() && g_input.waiting.back().kind == EventKind::kMove)
        g_input.waiting.back() = event;
    else
        g_input.waiting.push_back(event);
}

POINT OnScreen(POINT point) {
    return {std::clamp<LONG>(point.x, g_input.origin.x, g_input.screen.cx - 1),
            std::clamp<LONG>(point.y, g_input.origin.y, g_input.screen.cy - 1)};
}

// What the parts of an absolute place are parts of: the main monitor, or the whole screen.
RECT Measured(DWORD flags) {
    if (flags & MOUSEEVENTF_VIRTUALDESK) return WholeScreen();
    return {0, 0, g_input.screen.cx, g_input.screen.cy};
}

// The system takes places in 65536ths of the screen; rounded up so that it comes back exactly.
LONG InScreenParts(LONG pixel, LONG size) {
    return static_cast<LONG>((static_cast<long long>(pixel) * 65536 + size - 1) / size);
}

bool SameRecordKey(const INPUT& record, DWORD flag) {
    return record.type == INPUT_MOUSE && (record.mi.dwFlags & flag) != 0;
}

struct ButtonRow {
    DWORD flag;
    int key;
    bool down;
};
constexpr ButtonRow kButtonRows[] = {
    {MOUSEEVENTF_LEFTDOWN, VK_LBUTTON, true},   {MOUSEEVENTF_LEFTUP, VK_LBUTTON, false},
    {MOUSEEVENTF_RIGHTDOWN, VK_RBUTTON, true},  {MOUSEEVENTF_RIGHTUP, VK_RBUTTON, false},
    {MOUSEEVENTF_MIDDLEDOWN, VK_MBUTTON, true}, {MOUSEEVENTF_MIDDLEUP, VK_MBUTTON, false},
};

// The queue's side of one record of SendInput, whoever sends it.
void QueueRecord(const INPUT& record, bool own) {
    if (record.type == INPUT_KEYBOARD) {
        QueueKey(record.ki.wVk, (record.ki.dwFlags & KEYEVENTF_KEYUP) == 0, record.ki.wScan,
                 (record.ki.dwFlags & KEYEVENTF_EXTENDEDKEY) != 0, own);
        return;
    }
    if (SameRecordKey(record, MOUSEEVENTF_MOVE)) {
        POINT to{};
        if (record.mi.dwFlags & MOUSEEVENTF_ABSOLUTE) {
            const RECT all = Measured(record.mi.dwFlags);
            const auto pixel = [](LONG part, LONG size) {
                return static_cast<LONG>(static_cast<long long>(part) * size >> 16);
            };
            to = {all.left + pixel(record.mi.dx, all.right - all.left),
                  all.top + pixel(record.mi.dy, all.bottom - all.top)};
        } else {
            to = {g_input.cursor.x + record.mi.dx, g_input.cursor.y + record.mi.dy};
        }
        to = OnScreen(to);
        if (to.x != g_input.cursor.x || to.y != g_input.cursor.y) QueueMove(to, own);
    }
    for (const ButtonRow& row : kButtonRows)
        if (SameRecordKey(record, row.flag)) QueueButton(row.key, row.down, own);
}

void Inject(const INPUT& record) {
    ++g_input.counts.injected;
    const bool outermost = g_input.kind == Kind::kReal && !g_input.interactive && !g_input.draining;
    if (outermost) LookForStrayCursor();
    QueueRecord(record, false);
    if (g_input.kind == Kind::kReal) InjectForReal(record);
}

std::string DownText(const KeyState& state) {
    struct Row {
        const char* name;
        int key;
    };
    static constexpr Row kRows[] = {
        {"alt", VK_MENU},     {"ctrl", VK_CONTROL},   {"shift", VK_SHIFT},
        {"left", VK_LBUTTON}, {"middle", VK_MBUTTON}, {"right", VK_RBUTTON},
    };
    std::string text;
    for (const Row& row : kRows) {
        if (!text.empty()) text += ' ';
        text += row.name;
        text += state.Down(row.key) ? "=1" : "=0";
    }
    return text;
}

// Of the system's answer for a key, with real input: the bit that tells of a press since the last
// question is the bookkeeping's where the system does not keep it, for keys that have two sides.
SHORT AsyncKeyStateOfSystem(int key, unsigned pressed) {
    if (g_input.interactive) return ::GetAsyncKeyState(key);
    // Wine swaps no buttons, see InjectForReal.
    const int asked = SystemIsSynchronous() ? LogicalButton(key) : key;
    const unsigned state = static_cast<unsigned short>(::GetAsyncKeyState(asked));
    const bool has_sides = key == VK_MENU || key == VK_CONTROL || key == VK_SHIFT;
    return static_cast<SHORT>(has_sides ? (state & ~1u) | pressed : state);
}

HookObserver* g_observer = nullptr;

// One way through a chain. Another begins within it when a hook pumps the queue.
class ChainCall {
public:
    explicit ChainCall(HookChain& chain)
        : passed_on_(std::exchange(g_input.passed_on, false)),
          called_(std::exchange(g_input.called, &chain)),
          chain_(chain),
          next_(std::exchange(chain.next, 0)) {}
    ~ChainCall() {
        g_input.passed_on = passed_on_;
        g_input.called = called_;
        chain_.next = next_;
    }
    ChainCall(const ChainCall&) = delete;
    ChainCall& operator=(const ChainCall&) = delete;

private:
    bool passed_on_;
    HookChain* called_;
    HookChain& chain_;
    size_t next_;
};

bool Verdict(LRESULT answer) {
    const bool swallowed = answer != 0 && !g_input.passed_on;
    ++(swallowed ? g_input.counts.swallowed : g_input.counts.passed);
    trace::Out(swallowed ? "swallow" : "pass");
    return swallowed;
}

std::string CodeText(int code) {
    return code == HC_ACTION ? "" : code == HC_NOREMOVE ? " peek" : " code=" + Number(code);
}

// As the system looks for the window of a place, among the descendants of one that is hit.
HWND Deepest(HWND window, POINT screen) {
    for (HWND child = GetTopWindow(window); child; child = GetWindow(child, GW_HWNDNEXT)) {
        RECT frame{};
        GetWindowRect(child, &frame);
        if (!IsWindowVisible(child) || !IsWindowEnabled(child) || !PtInRect(&frame, screen))
            continue;
        const LRESULT hit = SendMessageA(child, WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y));
        if (hit != HTTRANSPARENT) return Deepest(child, screen);
    }
    return window;
}

struct Search {
    POINT screen;
    HWND found;
};

BOOL CALLBACK Hit(HWND window, LPARAM search) {
    auto* const wanted = reinterpret_cast<Search*>(search);
    RECT frame{};
    GetWindowRect(window, &frame);
    if (!IsWindowVisible(window) || !PtInRect(&frame, wanted->screen)) return TRUE;
    wanted->found = Deepest(window, wanted->screen);
    return FALSE;
}

}  // namespace

bool IsForNobody(int hit) {
    return hit == HTERROR || hit == HTNOWHERE;
}

std::string PointText(POINT point) {
    return Number(point.x) + "," + Number(point.y);
}

bool IsOwn(HWND window) {
    return window && GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
}

int GeneralKey(int key) {
    switch (key) {
        case VK_LMENU:
        case VK_RMENU: return VK_MENU;
        case VK_LCONTROL:
        case VK_RCONTROL: return VK_CONTROL;
        case VK_LSHIFT:
        case VK_RSHIFT: return VK_SHIFT;
        default: return key;
    }
}

bool IsExtended(int key) {
    return (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_INSERT || key == VK_DELETE ||
           key == VK_RMENU || key == VK_RCONTROL;
}

void KeyState::Change(int key, bool down, BYTE down_bits) {
    const auto set = [this](int which, BYTE bits) {
        BYTE& state = keys[which & 255];
        if (bits) {
            if (!(state & 0x80)) state ^= 1;
            state = static_cast<BYTE>(state | bits);
        } else {
            state = static_cast<BYTE>(state & ~0x80);
        }
    };
    set(key, down ? down_bits : 0);
    const int general = GeneralKey(key);
    if (general == key) return;
    // The general key follows its two sides, and each press of them is one of its own.
    const int left = general == VK_MENU ? VK_LMENU : general == VK_SHIFT ? VK_LSHIFT : VK_LCONTROL;
    const BYTE sides = (keys[left] | keys[left + 1]) & 0x80;
    set(general, static_cast<BYTE>(down ? sides | (down_bits & 0x40) : sides));
}

int LogicalButton(int key) {
    if (!g_input.swapped) return key;
    return key == VK_LBUTTON ? VK_RBUTTON : key == VK_RBUTTON ? VK_LBUTTON : key;
}

DWORD ButtonFlag(int key, bool down) {
    for (const ButtonRow& row : kButtonRows)
        if (row.key == key && row.down == down) return row.flag;
    return 0;
}

LRESULT AskMouseHook(int code, UINT message, MOUSEHOOKSTRUCT* hook, bool own) {
    if (!g_input.mouse_hooks) return 0;
    code = std::exchange(g_input.next_code, {}).value_or(code);
    POINT client = hook->pt;
    ScreenToClient(hook->hwnd, &client);
    std::string text = "mouse " + names::Message(message) + ' ' + world::Of(hook->hwnd) + ' ' +
                       PointText(client) + ' ' + PointText(hook->pt) +
                       " hit=" + Number(static_cast<int>(hook->wHitTestCode));
    if (own) text += " own";
    text += CodeText(code);
    trace::SetEventWindow(hook->hwnd);
    trace::In(text);
    HookCall call;
    call.mouse = true;
    call.code = code;
    call.message = message;
    call.window = hook->hwnd;
    call.at = hook->pt;
    call.hit = hook->wHitTestCode;
    if (g_observer) g_observer->BeforeHook(call);
    const ChainCall scope(g_input.mouse_hooks);
    const LRESULT answer = PassOn(code, message, reinterpret_cast<LPARAM>(hook));
    const bool swallowed = Verdict(answer);
    if (g_observer) g_observer->AfterHook(call, swallowed);
    return answer;
}

LRESULT AskKeyHook(int code, int general_key, LPARAM lparam, bool own) {
    if (!g_input.key_hooks) return 0;
    code = std::exchange(g_input.next_code, {}).value_or(code);
    const bool up = (lparam & (static_cast<LPARAM>(KF_UP) << 16)) != 0;
    std::string text = "key " + KeyText(general_key) + (up ? " up" : " down");
    if (own) text += " own";
    text += CodeText(code);
    trace::In(text);
    HookCall call;
    call.code = code;
    call.key = general_key;
    call.up = up;
    if (g_observer) g_observer->BeforeHook(call);
    const ChainCall scope(g_input.key_hooks);
    const LRESULT answer = PassOn(code, static_cast<WPARAM>(general_key), lparam);
    const bool swallowed = Verdict(answer);
    if (g_observer) g_observer->AfterHook(call, swallowed);
    return answer;
}

void Observe(HookObserver* observer) {
    g_observer = observer;
}

void ReportMouseArrival(HWND window, UINT message, WPARAM wparam, POINT screen) {
    ScreenToClient(window, &screen);
    trace::Got(world::Of(window) + ' ' + names::Message(message) + ' ' +
               Number(static_cast<long long>(wparam)) + ' ' + PointText(screen));
}

void ReportKeyArrival(HWND window, UINT message, WPARAM key) {
    trace::Got(world::Of(window) + ' ' + names::Message(message) + ' ' +
               Number(static_cast<long long>(key)) + " 0,0");
}

// --- input.h ---

bool IsVirtual() {
    return g_input.kind == Kind::kVirtual;
}

bool KeyDown(int virtual_key) {
    if (IsVirtual()) return g_input.thread.Down(virtual_key);
    return ::GetKeyState(virtual_key) < 0;
}

POINT Cursor() {
    if (IsVirtual()) return g_input.cursor;
    POINT cursor{};
    ::GetCursorPos(&cursor);
    return cursor;
}

unsigned long Ticks() {
    return g_input.interactive ? GetTickCount() : g_input.clock;
}

HWND Capture() {
    if (!IsVirtual()) return ::GetCapture();
    if (g_input.capture && !IsWindow(g_input.capture)) g_input.capture = nullptr;
    return g_input.capture;
}

void SetCapture(HWND window) {
    ::SetCapture(window);
    g_input.capture = window;
}

void ReleaseCapture() {
    ::ReleaseCapture();
    g_input.capture = nullptr;
}

HWND Focus() {
    return ::GetFocus();
}

void SetFocus(HWND window) {
    ::SetFocus(window);
}

POINT ToScreen(HWND window, POINT client) {
    ClientToScreen(window, &client);
    return client;
}

POINT ToClient(HWND window, POINT screen) {
    ScreenToClient(window, &screen);
    return screen;
}

// --- control.h ---

std::string NewDesktopName() {
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    static unsigned made = 0;
    return "standin-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(now.QuadPart) +
           "-" + std::to_string(++made);
}

std::string Open(Kind kind, const std::string& desktop, int width, int height, POINT origin) {
    g_input = State();
    g_input.kind = kind;
    g_input.screen = {width, height};
    g_input.origin = origin;
    // Opens the one that is there already.
    g_input.desktop_name = desktop;
    g_input.desktop = CreateDesktopA(desktop.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
    if (!g_input.desktop || !SetThreadDesktop(g_input.desktop))
        return "the system gives no desktop to play on, end other programs and try again";
    // The first window makes the system set the desktop up, at the size that holds now.
    DestroyWindow(
        CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
    if (kind == Kind::kVirtual) return {};
    if (!SystemIsSynchronous())
        g_input.swapped = g_input.swapped_before = ::GetSystemMetrics(SM_SWAPBUTTON) != 0;
    // Without acceleration a distance is a distance.
    int plain[3] = {0, 0, 0};
    SystemParametersInfoA(SPI_SETMOUSE, 0, plain, 0);
    if (GetSystemMetrics(SM_XVIRTUALSCREEN) != origin.x ||
        GetSystemMetrics(SM_YVIRTUALSCREEN) != origin.y)
        return "the system's screen does not begin at " + PointText(origin) +
               ", real input needs one that does";
    if (GetSystemMetrics(SM_CXVIRTUALSCREEN) == width - origin.x &&
        GetSystemMetrics(SM_CYVIRTUALSCREEN) == height - origin.y)
        return {};
    return "the system's screen is not " + std::to_string(width) + "x" + std::to_string(height) +
           ", real input needs one of that size";
}

static std::string NameOf(HDESK desktop) {
    char name[MAX_PATH] = "";
    GetUserObjectInformationA(desktop, UOI_NAME, name, sizeof name, nullptr);
    return name;
}

// The system may have closed the handle with the thread.
bool Leave(HDESK desktop) {
    return NameOf(desktop).empty() || CloseDesktop(desktop);
}

bool LeaveDesktop() {
    return Leave(g_input.desktop);
}

std::string DesktopName() {
    return NameOf(GetThreadDesktop(GetCurrentThreadId()));
}

void OpenInteractive() {
    g_input = State();
    g_input.kind = Kind::kReal;
    g_input.interactive = true;
    g_input.origin = {GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_YVIRTUALSCREEN)};
    g_input.screen = {g_input.origin.x + GetSystemMetrics(SM_CXVIRTUALSCREEN),
                      g_input.origin.y + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
}

bool IsInteractive() {
    return g_input.interactive;
}

void TakeForeground(HWND main_window) {
    SetForegroundWindow(main_window);
    SetActiveWindow(main_window);
    ::SetFocus(main_window);
    if (g_input.interactive) return;
    if (!IsVirtual()) ::SetCursorPos(0, 0);
    // What the windows' making and the cursor's first place set off is nobody's input.
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_INPUT | PM_QS_POSTMESSAGE)) {
    }
}

void Close() {
    for (const HookChain* chain : {&g_input.mouse_hooks, &g_input.key_hooks})
        if (chain->system) UnhookWindowsHookEx(chain->system);
    GiveBackSettings();
    g_input = State();
}

void InjectKey(int virtual_key, bool down) {
    INPUT record{};
    record.type = INPUT_KEYBOARD;
    record.ki.wVk = static_cast<WORD>(virtual_key);
    record.ki.wScan = static_cast<WORD>(MapVirtualKeyA(static_cast<UINT>(virtual_key), 0));
    record.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    if (IsExtended(virtual_key)) record.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
    ++g_input.time;
    Inject(record);
}

void InjectMove(POINT screen) {
    screen = OnScreen(screen);
    if (screen.x == g_input.cursor.x && screen.y == g_input.cursor.y) return;
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_VIRTUALDESK;
    const RECT all = WholeScreen();
    record.mi.dx = InScreenParts(screen.x - all.left, all.right - all.left);
    record.mi.dy = InScreenParts(screen.y - all.top, all.bottom - all.top);
    ++g_input.time;
    Inject(record);
}

void InjectButton(int virtual_key, bool down, bool soon) {
    constexpr unsigned kFarApart = 10000;
    g_input.time += down && !soon ? kFarApart : 1;
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = ButtonFlag(LogicalButton(virtual_key), down);
    Inject(record);
}

void Drain() {
    // A command that is played from inside an event leaves the queue to the event's own drain.
    if (g_input.draining || g_input.busy) return;
    g_input.draining = true;
    if (IsVirtual())
        DrainVirtual();
    else
        DrainReal();
    g_input.draining = false;
}

std::string Disturbance() {
    return g_input.disturbance;
}

void AdvanceClock(unsigned long milliseconds) {
    g_input.clock += milliseconds;
    g_input.time += milliseconds;
}

void SetBusy(bool busy) {
    g_input.busy = busy;
}

void SetPeeking(bool peeking) {
    g_input.peeking = peeking;
}

void SetNextCode(int code) {
    g_input.next_code = code;
}

void SetSwapped(bool swapped) {
    if (g_input.swapped == swapped) return;
    g_input.swapped = swapped;
    if (!IsVirtual() && !SystemIsSynchronous()) ::SwapMouseButton(swapped);
}

void GiveBackSettings() {
    SetSwapped(g_input.swapped_before);
}

void SetReenters(HWND window, bool reenters) {
    if (reenters)
        g_input.reentering.insert(window);
    else
        g_input.reentering.erase(window);
}

void PumpWithin(HWND window, UINT message) {
    const bool is_button = message > WM_MOUSEMOVE && message <= WM_MBUTTONDBLCLK;
    if (!is_button || !g_input.reentering.contains(window) || g_input.interactive) return;
    NoteDelivered();
    ++g_input.pumps_within;
    if (IsVirtual())
        DrainVirtual();
    else
        DispatchReal();
    --g_input.pumps_within;
}

Counts CountsSoFar() {
    return g_input.counts;
}

UINT SendInputRecords(const INPUT* records, UINT count) {
    for (UINT i = 0; i < count; ++i) {
        ++g_input.counts.own;
        QueueRecord(records[i], true);
    }
    if (!IsVirtual())
        for (UINT i = 0; i < count; ++i)
            InjectForReal(records[i]);
    return count;
}

bool MoveCursor(POINT screen) {
    screen = OnScreen(screen);
    if (g_input.interactive) return ::SetCursorPos(screen.x, screen.y);
    if (screen.x == g_input.cursor.x && screen.y == g_input.cursor.y) return true;
    QueueMove(screen, false);
    if (!IsVirtual()) MoveCursorForReal(screen);
    return true;
}

SHORT AsyncKeyState(int virtual_key) {
    BYTE& state = g_input.async.keys[virtual_key & 255];
    const unsigned pressed = state & 0x40 ? 1u : 0u;
    state = static_cast<BYTE>(state & ~0x40);
    if (!IsVirtual()) return AsyncKeyStateOfSystem(virtual_key, pressed);
    return static_cast<SHORT>((state & 0x80 ? 0x8000u : 0u) | pressed);
}

SHORT ThreadKeyState(int virtual_key) {
    if (!IsVirtual()) return ::GetKeyState(virtual_key);
    const BYTE state = g_input.thread.keys[virtual_key & 255];
    return static_cast<SHORT>((state & 0x80 ? 0xFF80u : 0u) | (state & 1u));
}

void ReadKeyboard(BYTE state[256]) {
    if (IsVirtual())
        std::memcpy(state, g_input.thread.keys, 256);
    else
        ::GetKeyboardState(state);
}

void WriteKeyboard(const BYTE state[256]) {
    if (IsVirtual())
        std::memcpy(g_input.thread.keys, state, 256);
    else
        ::SetKeyboardState(const_cast<BYTE*>(state));
}

SIZE ScreenSize() {
    return g_input.screen;
}

RECT WholeScreen() {
    return {g_input.origin.x, g_input.origin.y, g_input.screen.cx, g_input.screen.cy};
}

bool ButtonsAreSwapped() {
    return g_input.interactive ? ::GetSystemMetrics(SM_SWAPBUTTON) != 0 : g_input.swapped;
}

HWND WindowAt(POINT screen) {
    const HWND window = ::WindowFromPoint(screen);
    if (!IsVirtual() || IsOwn(window)) return window;
    // What other processes put on the desktop is nothing to a virtual play.
    Search search{screen, nullptr};
    EnumThreadWindows(GetCurrentThreadId(), Hit, reinterpret_cast<LPARAM>(&search));
    return search.found ? search.found : window;
}

HHOOK InstallHook(int type, HOOKPROC procedure) {
    if (type != WH_MOUSE && type != WH_KEYBOARD) return nullptr;
    HookChain& chain = type == WH_MOUSE ? g_input.mouse_hooks : g_input.key_hooks;
    chain.procedures.insert(chain.procedures.begin(), procedure);
    if (!IsVirtual() && !chain.system)
        chain.system = ::SetWindowsHookExA(type, type == WH_MOUSE ? SystemMouseHook : SystemKeyHook,
                                           nullptr, GetCurrentThreadId());
    // Nobody but RemoveHook looks at it.
    return reinterpret_cast<HHOOK>(procedure);
}

BOOL RemoveHook(HHOOK hook) {
    for (HookChain* chain : {&g_input.mouse_hooks, &g_input.key_hooks}) {
        std::vector<HOOKPROC>& all = chain->procedures;
        const auto found = std::find(all.begin(), all.end(), reinterpret_cast<HOOKPROC>(hook));
        if (found == all.end()) continue;
        if (static_cast<size_t>(found - all.begin()) < chain->next) --chain->next;
        all.erase(found);
        if (all.empty() && chain->system)
            UnhookWindowsHookEx(std::exchange(chain->system, nullptr));
        return TRUE;
    }
    return FALSE;
}

UINT_PTR StartTimer(unsigned long period, TIMERPROC procedure) {
    static UINT_PTR last = 0;
    g_input.timers.push_back({++last, period, g_input.clock + period, procedure});
    return last;
}

BOOL StopTimer(UINT_PTR timer) {
    return std::erase_if(g_input.timers, [=](const auto& one) { return one.id == timer; }) > 0;
}

void FireTimers() {
    // As the system's queue: however late, each fires once.
    for (const State::Timer& timer : std::vector(g_input.timers)) {
        if (g_input.clock < timer.due) continue;
        for (State::Timer& one : g_input.timers)
            if (one.id == timer.id) one.due = g_input.clock + one.period;
        timer.procedure(nullptr, WM_TIMER, timer.id, g_input.clock);
    }
}

LRESULT PassOn(int code, WPARAM wparam, LPARAM lparam) {
    HookChain* const chain = g_input.called;
    if (chain && chain->next < chain->procedures.size()) {
        const HOOKPROC procedure = chain->procedures[chain->next++];
        const LRESULT answer = procedure(code, wparam, lparam);
        if (chain->next > 0) --chain->next;
        return answer;
    }
    g_input.passed_on = true;
    // The procedures stand in the place of the hook installed here.
    return IsVirtual() ? 0 : ::CallNextHookEx(nullptr, code, wparam, lparam);
}

void NotePosted() {
    g_input.posted = true;
}

void NoteSent(UINT message) {
    // The world's own windows tell of their capture; the system's controls in a dialog do not.
    if (IsVirtual() && !world::AnyDialogOpen()) return;
    if (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST && message != WM_MOUSEMOVE)
        FollowCapture();
}

void FollowCapture() {
    g_input.capture = ::GetCapture();
}

bool AsyncDown(int virtual_key) {
    if (g_input.interactive) return ::GetAsyncKeyState(virtual_key) < 0;
    return g_input.async.Down(virtual_key);
}

POINT CursorSoFar() {
    return g_input.interactive ? Cursor() : g_input.cursor;
}

std::string AsyncText() {
    return DownText(g_input.async);
}

std::string ThreadText() {
    if (IsVirtual()) return DownText(g_input.thread);
    KeyState state;
    ::GetKeyboardState(state.keys);
    return DownText(state);
}

bool AnythingDown() {
    for (const BYTE key : g_input.async.keys)
        if (key & 0x80) return true;
    return false;
}

static bool IsOverTitleOfDialog(HWND top, POINT screen) {
    if (!world::IsDialog(top)) return false;
    const LRESULT hit = SendMessageA(top, WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y));
    return hit == HTCAPTION || hit == HTSYSMENU;
}

// What the system's own handling makes of the menu keys: Alt or F10, pressed and released with no
// other key between, is the command that opens the menu of the window.
static void NoteMenuKey(const MSG& message) {
    const bool down = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    const bool is_menu_key =
        message.wParam == VK_F10 || (message.wParam == VK_MENU && message.message != WM_KEYDOWN);
    if (down) {
        // A repeated Alt takes it back, as Wine has it.
        const bool repeated = message.wParam == VK_MENU && g_input.menu_key == VK_MENU;
        g_input.menu_key = is_menu_key && !repeated ? message.wParam : 0;
        return;
    }
    if (is_menu_key && std::exchange(g_input.menu_key, 0) == message.wParam)
        trace::Got(world::Of(GetAncestor(message.hwnd, GA_ROOT)) + " WM_SYSCOMMAND SC_KEYMENU 0,0");
    g_input.menu_key = 0;
}

void Dispatch(MSG* message) {
    switch (message->message) {
        // Caption, border and menu bar would start loops of the system's own that wait for the next
        // event, which a scenario only sends when this one is done. The same goes for the menu
        // keys.
        case WM_NCLBUTTONDOWN:
        case WM_NCRBUTTONDOWN:
        case WM_NCMBUTTONDOWN:
        case WM_NCLBUTTONUP:
        case WM_NCRBUTTONUP:
        case WM_NCMBUTTONUP:
        case WM_NCLBUTTONDBLCLK:
        case WM_NCRBUTTONDBLCLK:
        case WM_NCMBUTTONDBLCLK: return;
        case WM_SYSKEYDOWN:
        case WM_SYSKEYUP: NoteMenuKey(*message); return;
        case WM_SYSCHAR: return;
        case WM_KEYDOWN:
        case WM_KEYUP: NoteMenuKey(*message); break;
        case WM_RBUTTONUP:
            // So would the system menu of a dialog whose title is under the mouse, when a control
            // of the dialog has the capture.
            if (IsOverTitleOfDialog(GetAncestor(message->hwnd, GA_ROOT), message->pt)) return;
            break;
        default: break;
    }
    if (!world::HandleDialogMessage(message)) DispatchMessageA(message);
    NoteSent(message->message);
}

}  // namespace input
