// What the files of the desk share.
#pragma once

#include <windows.h>

#include <deque>
#include <string>

#include "standin/engine/desk.h"
#include "standin/engine/desk_control.h"

namespace desk {

enum class EventKind { kMove, kButton, kKey };

// One injected record on its way. What depends on the moment of the injection is kept with it.
struct Event {
    EventKind kind = EventKind::kMove;
    int key = 0;  // the button's or key's virtual key; for keys the left or right variant
    bool down = false;
    POINT at{};        // mouse
    bool own = false;  // injected by the plug-in
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

struct State {
    InputKind kind = InputKind::kVirtual;
    bool interactive = false;
    SIZE screen{1280, 1024};
    HDESK desktop = nullptr;
    POINT cursor{};
    unsigned long clock = 1000;
    KeyState async;
    KeyState thread;
    bool alt_alone = false;  // Alt went down and no other key since: its release opens the menu
    std::deque<Event> waiting;
    HOOKPROC mouse_hook = nullptr;
    HOOKPROC key_hook = nullptr;
    HHOOK system_mouse_hook = nullptr;
    HHOOK system_key_hook = nullptr;
    bool passed_on = false;
    bool posted = false;
    bool draining = false;
    bool handling_move = false;  // real input: the hook is looking at a move
    std::string disturbance;
    HWND capture = nullptr;
    Counts counts;
};

extern State g_desk;

int GeneralKey(int key);
// "X,Y"
std::string PointText(POINT point);
// The window is of the thread that plays.
bool IsOwn(HWND window);
// The plug-in's procedures, with their trace lines. True: the event is swallowed.
bool AskMouseHook(UINT message, MOUSEHOOKSTRUCT* hook, bool own);
bool AskKeyHook(int general_key, LPARAM lparam, bool own);
// The trace lines of events that reach a window.
void ReportMouseArrival(HWND window, UINT message, WPARAM wparam, POINT screen);
void ReportKeyArrival(HWND window, UINT message, WPARAM key);

// Virtual input (desk_virtual.cpp) and real input (desk_real.cpp).
void DrainVirtual();
void DrainReal();
void InjectForReal(const INPUT& record);
void LookForStrayCursor();
void MoveCursorForReal(POINT screen);
LRESULT CALLBACK SystemMouseHook(int code, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK SystemKeyHook(int code, WPARAM wparam, LPARAM lparam);

// The watch of interactive use (desk_watch.cpp). Look is called when the queue is empty.
void BeginWatch();
void Look();
void EndWatch();

}  // namespace desk
