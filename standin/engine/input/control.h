// Input as the player and the intercepted calls of the plug-in use it: what is injected, what
// waits, what the hooks and windows are given. The same bookkeeping runs for both kinds of input;
// with real input it tells which of the delivered events the plug-in injected itself.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace input {

enum class Kind { kVirtual, kReal };

// A name that no desktop here has had: the number of a process comes again, and the desktop of the
// process that had it before may be just about to vanish.
std::string NewDesktopName();
// Before any window of the process exists: the thread goes to the desktop of this name, which is
// made where it is missing, so that plays beside each other share neither cursor nor focus nor
// keys. Answers what is wrong, empty: nothing.
// The size is that of the main monitor; `origin` is where the whole screen begins, at 0,0 or, with
// other monitors to the left of it or above it, before that.
std::string Open(Kind kind, const std::string& desktop, int width, int height,
                 POINT origin = {0, 0});
// After the end of the thread that called Open. True: its desktop is as it was found.
bool TidyDesktop();
// The same time or later. False: the process still holds the desktop.
bool LeaveDesktop();
// The name of the desktop that the thread is on.
std::string DesktopName();
// Real input on the user's own desktop and screen, with the system's clock.
void OpenInteractive();
// Dispatches what the user does until the window is gone. A key that nobody kept is offered to
// `hotkey` first; true: it was one. With `watch` the trace also tells what scene, menus and
// dialogs show, whenever that has changed and the queue is empty.
void RunInteractive(HWND main_window, bool (*hotkey)(int virtual_key, bool repeated), bool watch);
bool IsInteractive();
// Once the main window stands.
void TakeForeground(HWND main_window);
void Close();

// What the user does. Nothing is delivered before Drain.
void InjectKey(int virtual_key, bool down);
void InjectMove(POINT screen);
// The button that the user's system takes as this one. A press is far enough in time from all
// before it to be one of its own; with `soon` it follows the press before it at once.
void InjectButton(int virtual_key, bool down, bool soon = false);
// While the host is busy, what the user does waits; keys and buttons change at once.
void SetBusy(bool busy);
// The host's loop looks at each message before it takes it, and the hooks are asked both times.
void SetPeeking(bool peeking);
// The next call of a hook comes with this code.
void SetNextCode(int code);
// The user's buttons are swapped in the system's settings.
void SetSwapped(bool swapped);
// What the play has set in the system is as the user had it.
void GiveBackSettings();
// While such a window handles a message of a button that was sent to it, it pumps the queue.
void SetReenters(HWND window, bool reenters);
// Dispatches what waits, from inside of something that is being dispatched.
void PumpWithin(HWND window, UINT message);
// Delivers what waits, with all that follows from it, and what was posted to the windows.
void Drain();
// Real input: empty as long as everything that was injected since Open came out of the system's
// queue and the cursor stayed where it was put. Else what went wrong on the system's side; nothing
// can be concluded from such a play, it has to be played again.
std::string Disturbance();
void AdvanceClock(unsigned long milliseconds);

// One call of a hook, for somebody who looks over the plug-in's shoulder.
struct HookCall {
    bool mouse = false;
    int code = HC_ACTION;
    UINT message = 0;  // mouse
    HWND window = nullptr;
    POINT at{};
    UINT hit = 0;
    int key = 0;  // keyboard: the general virtual key
    bool up = false;
};
class HookObserver {
public:
    HookObserver() = default;
    HookObserver(const HookObserver&) = delete;
    HookObserver& operator=(const HookObserver&) = delete;
    virtual ~HookObserver() = default;
    virtual void BeforeHook(const HookCall& call) = 0;
    virtual void AfterHook(const HookCall& call, bool swallowed) = 0;
};
// Null: nobody looks.
void Observe(HookObserver* observer);

struct Counts {
    unsigned long long injected = 0;   // records of the user
    unsigned long long own = 0;        // records of the plug-in
    unsigned long long swallowed = 0;  // events that the hooks kept
    unsigned long long passed = 0;
};
Counts CountsSoFar();

// The system's calls as the plug-in gets them answered.
UINT SendInputRecords(const INPUT* records, UINT count);
bool MoveCursor(POINT screen);
SHORT AsyncKeyState(int virtual_key);
SHORT ThreadKeyState(int virtual_key);
void ReadKeyboard(BYTE state[256]);
void WriteKeyboard(const BYTE state[256]);
SIZE ScreenSize();   // of the main monitor
RECT WholeScreen();  // of all monitors
bool ButtonsAreSwapped();
HWND WindowAt(POINT screen);
HHOOK InstallHook(int type, HOOKPROC procedure);
BOOL RemoveHook(HHOOK hook);
// A timer runs by the clock of the play, and fires where that is let go on.
UINT_PTR StartTimer(unsigned long period, TIMERPROC procedure);
BOOL StopTimer(UINT_PTR timer);
void FireTimers();
LRESULT PassOn(int code, WPARAM wparam, LPARAM lparam);
void NotePosted();
// A message went to a window by another way than from here; it may have moved the capture.
void NoteSent(UINT message);
// The same, for whoever knows that it did.
void FollowCapture();

// What is down by the injected records, without the side effects of asking.
bool AsyncDown(int virtual_key);
POINT CursorSoFar();
// One line each: "alt=0 ctrl=0 shift=0 left=0 middle=0 right=0", asynchronous and of the thread.
std::string AsyncText();
std::string ThreadText();
bool AnythingDown();

// A message that came out of the queue, or is as good as that: dialogs first, then the window.
void Dispatch(MSG* message);

}  // namespace input
