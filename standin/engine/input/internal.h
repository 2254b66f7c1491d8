// What the files of the input share.
#pragma once

#include <windows.h>

#include <deque>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "standin/engine/input/input.h"
#include "standin/engine/input/control.h"

namespace input {

enum class EventKind { kMove, kButton, kKey };

// One injected record on its way. What depends on the moment of the injection is kept with it.
struct Event {
    EventKind kind = EventKind::kMove;
    int key = 0;  // the button's or key's virtual key; for keys the left or right variant
    bool down = false;
    POINT at{};         // mouse
    unsigned time = 0;  // mouse
    bool own = false;   // injected by the plug-in
    UINT message = 0;
    WPARAM flags = 0;   // mouse: the MK_ values
    LPARAM lparam = 0;  // keys: as in key messages
};

struct KeyState {
    // As the system keeps it: 0x80 down, 0x40 pressed since it was last asked for, 1 toggled.
    BYTE keys[256] = {};
    void Change(int key, bool down, BYTE down_bits);
    bool Down(int key) const { return (keys[key & 255] & 0x80) != 0; }
};

// What the system remembers of a press, to know the second one of a double click.
struct Press {
    UINT message = 0;
    HWND window = nullptr;
    POINT at{};
    WPARAM flags = 0;
    unsigned time = 0;
};

// An event that a system hook is being called for.
struct HookedEvent {
    bool mouse = false;
    UINT message = 0;  // mouse
    int key = 0;       // keyboard
    bool up = false;
    bool queued = true;  // the system still has it in its queue
    HookedEvent* outer = nullptr;
};

// The hooks of one kind, in the order in which they are called: the one installed last is the
// first.
struct HookChain {
    std::vector<HOOKPROC> procedures;
    size_t next = 0;  // the one that the running one's CallNextHookEx leads to
    HHOOK system = nullptr;
    explicit operator bool() const { return !procedures.empty(); }
};

struct State {
    Kind kind = Kind::kVirtual;
    bool interactive = false;
    SIZE screen{1280, 1024};
    POINT origin{};
    HDESK desktop = nullptr;
    std::string desktop_name;
    std::set<int> touched;  // keys of the sides, and buttons, that records were about
    POINT cursor{};
    unsigned long clock = 1000;
    KeyState async;
    KeyState thread;
    WPARAM menu_key = 0;     // went down as the last key that a window got
    bool alt_alone = false;  // Alt went down and no other key since: its release opens the menu
    std::deque<Event> waiting;
    HookChain mouse_hooks;
    HookChain key_hooks;
    struct Timer {
        UINT_PTR id;
        unsigned long period, due;
        TIMERPROC procedure;
    };
    std::vector<Timer> timers;
    HookChain* called = nullptr;  // the one that is being gone through
    bool passed_on = false;
    bool posted = false;
    bool draining = false;
    bool busy = false;
    bool peeking = false;
    bool swapped = false;
    bool swapped_before = false;  // real input: as the user had it
    std::optional<int> next_code;
    // Stamped on what is injected, so that it does not depend on the machine what is a double
    // click.
    unsigned time = 0x10000000;
    Press last_press;
    std::set<HWND> reentering;
    HookedEvent* hooked = nullptr;
    struct Delivery* delivery = nullptr;
    int pumps_within = 0;
    bool handling_move = false;  // real input: the hook is looking at a move
    std::string disturbance;
    HWND capture = nullptr;
    Counts counts;
};

extern State g_input;

int GeneralKey(int key);
bool IsExtended(int key);
// After the end of the thread that went there.
bool Leave(HDESK desktop);
// What a window has there is told to the hooks only; the system drops it when it looks at it.
bool IsForNobody(int hit);
// "X,Y"
std::string PointText(POINT point);
// The window is of the thread that plays.
bool IsOwn(HWND window);
// The plug-in's procedures, with their trace lines. The answer is for the system: what is not zero
// keeps the event from its window.
LRESULT AskMouseHook(int code, UINT message, MOUSEHOOKSTRUCT* hook, bool own);
LRESULT AskKeyHook(int code, int general_key, LPARAM lparam, bool own);
// The button that the system makes of a physical one, and the other way round.
int LogicalButton(int key);
// What SendInput calls a change of the button, and 0 for a key that is no button.
DWORD ButtonFlag(int key, bool down);
// The trace lines of events that reach a window.
void ReportMouseArrival(HWND window, UINT message, WPARAM wparam, POINT screen);
void ReportKeyArrival(HWND window, UINT message, WPARAM key);

// Virtual input (virtual.cpp) and real input (real.cpp).
void DrainVirtual();
// What the hooks are looking at is as good as delivered to whoever pumps the queue in there.
void NoteDelivered();
void DrainReal();
void DispatchReal();
void InjectForReal(const INPUT& record);
bool SystemIsSynchronous();
void LookForStrayCursor();
void MoveCursorForReal(POINT screen);
LRESULT CALLBACK SystemMouseHook(int code, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK SystemKeyHook(int code, WPARAM wparam, LPARAM lparam);

// The watch of interactive use (watch.cpp). Look is called when the queue is empty.
void BeginWatch();
void Look();
void EndWatch();

}  // namespace input
