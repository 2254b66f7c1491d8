// The system's input played call by call: which question each part of the plug-in asks of it, and
// how the plug-in's own state stands at each call that may let further events in. Windows, host and
// system are played here; every effect is written down together with the state at that moment.

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "assists/gizmo_and_lock.h"
#include "assists/isolated_playback.h"
#include "assists/pixel_nudge.h"
#include "assists/sticky_snap.h"
#include "hooks/keyboard_hook.h"
#include "host/host.h"
#include "host/window_kind.h"
#include "input/input_records.h"
#include "input/keys.h"
#include "input/screen.h"
#include "navigation/gesture_moves.h"
#include "navigation/gesture_state.h"
#include "navigation/modifier_cursor.h"
#include "navigation/quick_transform.h"
#include "navigation/sculpt_redirect.h"
#include "navigation/selection_clicks.h"
#include "navigation/selection_moves.h"
#include "navigation/time_scrub.h"
#include "navigation/view_drag.h"
#include "navigation/zoom_drag.h"
#include "resources/module.h"
#include "script/poly_tools.h"
#include "settings/plugin_settings.h"
#include "tests/plugin/plugin_state.h"

namespace {

using Lines = std::vector<std::string>;

// The played world.
Lines g_lines;
std::map<int, SHORT> g_keys;  // the whole answer, not only its sign
std::map<int, SHORT> g_message_keys;
std::vector<int> g_asked_keys;
POINT g_cursor = {};
int g_cursor_questions = 0;
int g_screen_width = 1600;
int g_metrics_questions = 0;
bool g_has_slider = true;
int g_slider_searches = 0;
int g_mode = host::kModeMove;
int g_lock_requests_before = 0;
std::map<int, bool> g_checked_actions;
std::map<HWND, bool> g_checked_buttons;
HCURSOR g_modifier_cursor = nullptr;
WindowKind g_kind_under_cursor = kWindowOther;

HWND WindowNumber(int number) {
    return reinterpret_cast<HWND>(static_cast<INT_PTR>(number));
}
const HWND kView = WindowNumber(0x100);
const HWND kMain = WindowNumber(0x200);
const HWND kSlider = WindowNumber(0x300);
const HWND kThumb = WindowNumber(0x400);
const HWND kPanel = WindowNumber(0x500);
const HWND kButton = WindowNumber(0x600);
constexpr SHORT kDown = static_cast<SHORT>(0x8000);
constexpr SHORT kPressedSinceLastAsked = 1;
constexpr LRESULT kAnswerOfTheNext = 77;

// What is set at this moment, in a fixed order.
std::string State() {
    std::string state;
    const auto add = [&state](const char* name, bool set) {
        if (set) state += std::string(state.empty() ? "" : " ") + name;
    };
    add("orbit", g_orbitActive != 0);
    add("zoom", g_zoomActive != 0);
    add("pan", g_panActive != 0);
    add("quick", g_quickXform != 0);
    add("clone", g_shiftClone != 0);
    add("ctrl-click", g_selCtrl != 0);
    add("shift-click", g_selShift != 0);
    add("ctrl-shift-click", g_selCtrlShift != 0);
    add("no-select-mode", g_selectNotPushed != 0);
    add("redirect", g_sculptRedirect != 0);
    add("armed", g_scrubState == kScrubArmed);
    add("dragging", g_scrubState == kScrubDragging);
    add("key-released", g_scrubState == kScrubDraggingReleased);
    add("isolated", g_isolatedPlayback != 0);
    add("owes-alt", g_altUpPending != 0);
    add("button", g_activeToolButton != nullptr);
    add("sculpt-button", g_pendingSculptButton != 0);
    return state;
}

void Note(const std::string& effect) {
    g_lines.push_back(effect + " [" + State() + "]");
}

std::string NameOf(HWND window) {
    if (window == kView) return "view";
    if (window == kThumb) return "thumb";
    if (window == kPanel) return "panel";
    if (window == kButton) return "button";
    return "?";
}

std::string NameOf(UINT message) {
    switch (message) {
        case WM_MOUSEMOVE: return "move";
        case WM_LBUTTONDOWN: return "left down";
        case WM_LBUTTONUP: return "left up";
        case WM_RBUTTONDOWN: return "right down";
        case WM_RBUTTONUP: return "right up";
        case WM_MBUTTONDOWN: return "middle down";
        case WM_MBUTTONUP: return "middle up";
        case WM_COMMAND: return "command";
        default: return std::to_string(message);
    }
}

LRESULT WINAPI PlayedSendMessage(HWND window, UINT message, WPARAM wparam, LPARAM) {
    Note(NameOf(window) + " " + NameOf(message) + " " + std::to_string(wparam));
    return 0;
}

std::string NameOf(const INPUT& record) {
    if (record.type == INPUT_MOUSE) {
        switch (record.mi.dwFlags) {
            case MOUSEEVENTF_LEFTDOWN: return "left-down";
            case MOUSEEVENTF_LEFTUP: return "left-up";
            default: return "other-button";
        }
    }
    std::string name = record.ki.wVk == VK_MENU      ? "alt"
                       : record.ki.wVk == VK_CONTROL ? "ctrl"
                                                     : "?";
    return name + (record.ki.dwFlags & KEYEVENTF_KEYUP ? "-up" : "-down");
}

UINT WINAPI PlayedSendInput(UINT count, INPUT* records, int size) {
    EXPECT_EQ(size, int{sizeof(INPUT)}) << "the system takes no records of another size";
    std::string line = "input";
    for (UINT i = 0; i < count; ++i)
        line += " " + NameOf(records[i]);
    Note(line);
    return count;
}

SHORT WINAPI PlayedAsyncKeyState(int key) {
    g_asked_keys.push_back(key);
    const auto found = g_keys.find(key);
    return found == g_keys.end() ? SHORT{0} : found->second;
}

// The keys as the message that is being handled saw them.
SHORT WINAPI PlayedKeyState(int key) {
    const auto found = g_message_keys.find(key);
    return found == g_message_keys.end() ? SHORT{0} : found->second;
}

BOOL WINAPI PlayedKeyboardState(BYTE* keys) {
    for (int i = 0; i < 256; ++i)
        keys[i] = 0x80;
    return TRUE;
}

BOOL WINAPI PlayedSetKeyboardState(BYTE* keys) {
    Note(std::string("keyboard state, shift ") + (keys[VK_SHIFT] ? "down" : "up"));
    return TRUE;
}

BOOL WINAPI PlayedCursorPos(POINT* point) {
    ++g_cursor_questions;
    *point = g_cursor;
    return TRUE;
}

BOOL WINAPI PlayedSetCursorPos(int x, int y) {
    Note("cursor to " + std::to_string(x) + "," + std::to_string(y));
    return TRUE;
}

int WINAPI PlayedMetrics(int index) {
    ++g_metrics_questions;
    return index == SM_CXVIRTUALSCREEN ? g_screen_width : index == SM_CYVIRTUALSCREEN ? 1200 : 0;
}

BOOL WINAPI PlayedScreenToClient(HWND, POINT*) {
    return TRUE;
}

HCURSOR WINAPI PlayedSetCursor(HCURSOR cursor) {
    Note(cursor ? "cursor" : "no cursor");
    return nullptr;
}

HWND WINAPI PlayedSetFocus(HWND window) {
    Note("focus " + NameOf(window));
    return nullptr;
}

void WINAPI PlayedSleep(DWORD milliseconds) {
    Note("sleep " + std::to_string(milliseconds));
}

HWND WINAPI PlayedFindWindow(HWND parent, HWND, LPCSTR class_name, LPCSTR title) {
    if (title) return std::string(title) == "VertexPaint" ? kPanel : nullptr;
    if (parent == kMain && std::string(class_name) == "TimeSlider") {
        ++g_slider_searches;
        return g_has_slider ? kSlider : nullptr;
    }
    if (!g_has_slider) return nullptr;
    return parent == kSlider && std::string(class_name) == "TimeSliderThumb" ? kThumb : nullptr;
}

BOOL WINAPI PlayedWindowRect(HWND, RECT* frame) {
    *frame = {300, 1100, 340, 1120};
    return TRUE;
}

BOOL WINAPI PlayedEnumChildWindows(HWND, WNDENUMPROC, LPARAM found) {
    *reinterpret_cast<HWND*>(found) = kButton;
    return TRUE;
}

BOOL WINAPI PlayedIsWindow(HWND) {
    return TRUE;
}

HWND WINAPI PlayedParent(HWND window) {
    return window == kButton ? kPanel : kMain;
}

int WINAPI PlayedCtrlId(HWND) {
    return 1007;
}

LRESULT WINAPI PlayedCallNextHook(HHOOK, int, WPARAM, LPARAM) {
    return kAnswerOfTheNext;
}

}  // namespace

// The import slots of the Win32 calls, filled by hand.
extern "C" {
void* __imp_SendMessageA = reinterpret_cast<void*>(PlayedSendMessage);
void* __imp_SendInput = reinterpret_cast<void*>(PlayedSendInput);
void* __imp_GetAsyncKeyState = reinterpret_cast<void*>(PlayedAsyncKeyState);
void* __imp_GetKeyState = reinterpret_cast<void*>(PlayedKeyState);
void* __imp_GetKeyboardState = reinterpret_cast<void*>(PlayedKeyboardState);
void* __imp_SetKeyboardState = reinterpret_cast<void*>(PlayedSetKeyboardState);
void* __imp_GetCursorPos = reinterpret_cast<void*>(PlayedCursorPos);
void* __imp_SetCursorPos = reinterpret_cast<void*>(PlayedSetCursorPos);
void* __imp_GetSystemMetrics = reinterpret_cast<void*>(PlayedMetrics);
void* __imp_ScreenToClient = reinterpret_cast<void*>(PlayedScreenToClient);
void* __imp_SetCursor = reinterpret_cast<void*>(PlayedSetCursor);
void* __imp_SetFocus = reinterpret_cast<void*>(PlayedSetFocus);
void* __imp_Sleep = reinterpret_cast<void*>(PlayedSleep);
void* __imp_FindWindowExA = reinterpret_cast<void*>(PlayedFindWindow);
void* __imp_GetWindowRect = reinterpret_cast<void*>(PlayedWindowRect);
void* __imp_EnumChildWindows = reinterpret_cast<void*>(PlayedEnumChildWindows);
void* __imp_IsWindow = reinterpret_cast<void*>(PlayedIsWindow);
void* __imp_GetParent = reinterpret_cast<void*>(PlayedParent);
void* __imp_GetDlgCtrlID = reinterpret_cast<void*>(PlayedCtrlId);
void* __imp_CallNextHookEx = reinterpret_cast<void*>(PlayedCallNextHook);
}

PluginSettings g_settings;
int g_hostRelease = 13900;
int g_heldSnapSticky = 0;
int g_selectionLockRequests = 0;
int g_previousLockRequests = 0;
int g_isolatedPlayback = 0;

void SetSelectionLock(bool on, int requester, bool restore) {
    g_previousLockRequests = g_lock_requests_before;
    Note(std::string("lock ") + (on ? "on " : "off ") + std::to_string(requester) +
         (restore ? " restore" : ""));
}
void SaveAndHideGizmo(bool force) {
    Note(force ? "hide gizmo by force" : "hide gizmo");
}
void RestoreGizmo() {
    Note("restore gizmo");
}
void EndNudgeSeries() {}
void SetStickySnap(int, bool) {}
void ShowArrowCursor() {
    Note("arrow");
}
HCURSOR LoadModuleCursor(int) {
    return reinterpret_cast<HCURSOR>(static_cast<INT_PTR>(7));
}
HCURSOR ChooseModifierCursor() {
    return g_modifier_cursor;
}
HCURSOR ChooseGestureCursor() {
    return g_modifier_cursor;
}
WindowKind ClassifyWindow(HWND) {
    return g_kind_under_cursor;
}
BOOL CALLBACK FindCustButtonById(HWND, LPARAM) {
    return TRUE;
}
BOOL CALLBACK FindButtonByIdAndText(HWND, LPARAM) {
    return TRUE;
}

void SetButtonSearch(int, const char*) {}

namespace host {

void RunScript(char*) {
    Note("script");
}
HWND MainWindow() {
    return kMain;
}
std::optional<int> CurrentModeId() {
    return g_mode;
}
void PushStandardMode(int id) {
    Note("push " + std::to_string(id));
}
void PopModeIfStacked() {
    Note("pop");
}
int SelectedNodeCount() {
    return 1;
}
bool IsSubObjectEditing() {
    return false;
}
void BeginUndoRecord() {
    Note("begin");
}
void AcceptUndoRecord(const char* name) {
    Note(std::string("accept ") + name);
}
void CancelUndoRecord() {
    Note("cancel");
}
std::optional<bool> IsActionChecked(unsigned long, int action) {
    return g_checked_actions[action];
}
bool ExecuteAction(unsigned long, int action) {
    g_checked_actions[action] = !g_checked_actions[action];
    Note("execute " + std::to_string(action));
    return true;
}
void RefreshMacroButtons() {
    Note("refresh");
}
std::optional<bool> IsSelectEnabled() {
    return true;
}
std::optional<bool> IsButtonChecked(HWND button) {
    const auto found = g_checked_buttons.find(button);
    if (found == g_checked_buttons.end()) return std::nullopt;
    return found->second;
}

}  // namespace host

namespace {

class PlayedInput : public testing::Test {
protected:
    void SetUp() override {
        BuildInputRecords();
        g_lines.clear();
        g_keys.clear();
        g_message_keys.clear();
        g_asked_keys.clear();
        g_cursor = {};
        g_cursor_questions = 0;
        g_screen_width = 1600;
        g_metrics_questions = 0;
        ForgetScreenSize();
        g_has_slider = true;
        g_mode = host::kModeMove;
        g_lock_requests_before = 0;
        g_checked_actions.clear();
        g_checked_buttons.clear();
        g_modifier_cursor = nullptr;
        g_kind_under_cursor = kWindowOther;
        g_settings = {};
        g_settings.useMayaStyle = 1;
        g_settings.mClickXForms = 1;
        g_settings.customSelectionCursors = 1;
        g_settings.useShiftClone = 1;
        g_hostRelease = 11000;  // without scripts that ask PolyTools
        g_selectionLockRequests = 0;
        g_isolatedPlayback = 0;
        g_graphiteSculptTool = 0;
        g_orbitActive = g_zoomActive = g_panActive = g_navLocked = 0;
        g_navKind = kWindowOther;
        g_quickXform = g_shiftClone = 0;
        g_selCtrl = g_selShift = g_selCtrlShift = g_selectNotPushed = 0;
        g_replayWaits = 0;
        g_sculptRedirect = 0;
        g_scrubState = g_scrubWrapped = 0;
        g_altUpPending = 0;
        g_activeToolButton = nullptr;
        g_pendingSculptButton = 0;
    }

    static MouseEvent Event(UINT message, POINT screen = {500, 400}) {
        return {{message, kView, screen, HTCLIENT}, screen, kWindowViewport};
    }
    static MouseEvent EventIn(WindowKind kind, UINT message) {
        MouseEvent event = Event(message);
        event.kind = kind;
        return event;
    }
    template <typename Message>
    static bool Takes(Answer (*use)(const Message&), const MouseEvent& event) {
        const Answer answer = use(event);
        EXPECT_NE(answer, Answer::kPassed);
        return answer == Answer::kConsumed;
    }
    static Lines Taken() {
        Lines lines;
        lines.swap(g_lines);
        return lines;
    }
    static void HoldLeftCtrl() { g_keys[VK_CONTROL] = g_keys[VK_LCONTROL] = kDown; }
};

// A quick transform runs before the host hears of it: a view that draws or asks in its press may
// let the next event in.
TEST_F(PlayedInput, AQuickTransformRunsFromItsFirstEffectOn) {
    EXPECT_TRUE(Takes(QuickTransform, Event(WM_MBUTTONDOWN)));
    EXPECT_EQ(Taken(),
              (Lines{"lock on 1 [quick]", "view left down 0 [quick]", "hide gizmo [quick]"}));
    EXPECT_FALSE(Takes(QuickTransform, Event(WM_MBUTTONUP)));
    EXPECT_EQ(Taken(), (Lines{"view left up 0 []", "lock off 1 restore []"}));
}

TEST_F(PlayedInput, ACloneIsMarkedBeforeItsPress) {
    g_keys[VK_SHIFT] = kDown;
    g_lock_requests_before = kLockBySticky;
    EXPECT_TRUE(Takes(QuickTransform, Event(WM_MBUTTONDOWN)));
    EXPECT_EQ(Taken(), (Lines{"lock on 1 [quick]", "view left down 4 [quick clone]"}));
    EXPECT_FALSE(Takes(QuickTransform, Event(WM_RBUTTONDOWN)));
    EXPECT_EQ(Taken(), (Lines{"restore gizmo []", "view right down 0 []", "view right up 0 []",
                              "view left up 0 []", "lock off 1 restore []"}));
}

TEST_F(PlayedInput, AQuickTransformOfAnEditorRunsFromTheSwitchOfItsModeOn) {
    g_checked_actions[230] = true;
    EXPECT_TRUE(Takes(QuickTransform, EventIn(kWindowTrackView, WM_MBUTTONDOWN)));
    EXPECT_EQ(Taken(),
              (Lines{"focus view []", "execute 40328 [quick]", "view left down 0 [quick]"}));
    EXPECT_TRUE(Takes(QuickTransform, EventIn(kWindowTrackView, WM_MBUTTONUP)));
    EXPECT_EQ(Taken(),
              (Lines{"view left up 0 []", "focus view []", "execute 40328 []", "sleep 1 []"}));

    g_checked_actions[40007] = true;
    EXPECT_TRUE(Takes(QuickTransform, EventIn(kWindowUnwrapView, WM_MBUTTONDOWN)));
    EXPECT_EQ(Taken(), (Lines{"focus view []", "execute 40020 [quick]", "sleep 1 [quick]",
                              "view left down 0 [quick]"}));
    EXPECT_TRUE(Takes(QuickTransform, EventIn(kWindowUnwrapView, WM_MBUTTONUP)));
    EXPECT_EQ(Taken(),
              (Lines{"view left up 0 []", "focus view []", "execute 40020 []", "sleep 1 []"}));
}

TEST_F(PlayedInput, AResumedToolFindsTheGestureOver) {
    g_orbitActive = g_zoomActive = g_panActive = 1;
    g_activeToolButton = kButton;
    ResumeToolAfterView(Event(WM_RBUTTONUP));
    // The button is forgotten once it has been clicked.
    EXPECT_EQ(Taken(),
              (Lines{"view left up 0 [button]", "pop [button]", "panel command 1007 [button]"}));
    EXPECT_EQ(State(), "");

    g_hostRelease = 12000;
    g_zoomActive = 1;
    g_pendingSculptButton = 3;
    ResumeToolAfterView(Event(WM_RBUTTONUP));
    EXPECT_EQ(Taken(), (Lines{"view left up 0 [sculpt-button]", "pop [sculpt-button]",
                              "script [sculpt-button]"}));
    EXPECT_EQ(State(), "");
}

TEST_F(PlayedInput, ABrushIsRememberedBeforeItsModeGoes) {
    g_checked_buttons[kButton] = true;
    SuspendToolForView(Event(WM_MBUTTONDOWN), host::kModePanView);
    EXPECT_EQ(Taken(), (Lines{"pop [button]", "push 202 [button]", "view left down 8 [button]"}));
}

TEST_F(PlayedInput, AViewButtonIsPressedWithNoBrushToBringBack) {
    g_activeToolButton = kPanel;
    g_checked_buttons[kButton] = false;
    PressViewButton(kView, host::kModeZoomView, true);
    EXPECT_EQ(Taken(), (Lines{"button left down 1 []", "button left up 1 []"}));
}

TEST_F(PlayedInput, AScrubDragsBeforeTheThumbHearsOfIt) {
    g_scrubState = kScrubArmed;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_LBUTTONDOWN)));
    EXPECT_EQ(Taken(), Lines{"thumb left down 1 [dragging]"});
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_LBUTTONUP)));
    EXPECT_EQ(Taken(), Lines{"thumb left up 0 [armed]"});

    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MBUTTONDOWN)));
    EXPECT_EQ(Taken(), (Lines{"refresh [dragging]", "thumb left down 1 [dragging]"}));
    g_scrubState = kScrubDraggingReleased;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MBUTTONUP)));
    EXPECT_EQ(Taken(), Lines{"thumb left up 0 []"});

    g_scrubState = kScrubArmed;
    g_isolatedPlayback = 1;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_RBUTTONDOWN)));
    EXPECT_EQ(Taken(), (Lines{"refresh [dragging]", "thumb right down 2 [dragging]"}));
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_RBUTTONUP)));
    // The flag comes back after the thumb's release and before the buttons show it.
    EXPECT_EQ(Taken(), (Lines{"thumb right up 0 [armed]", "refresh [armed isolated]"}));
}

TEST_F(PlayedInput, ACtrlClickRunsBeforeItsInputIsSent) {
    HoldLeftCtrl();
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDOWN)));
    EXPECT_EQ(Taken(), Lines{"input alt-down ctrl-up left-down ctrl-down [ctrl-click]"});
    // The injected press comes back, with Alt down for everybody.
    g_message_keys[VK_MENU] = g_keys[VK_MENU] = kDown;
    EXPECT_FALSE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDOWN)));
    EXPECT_EQ(Taken(), Lines{});
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONUP)));
    EXPECT_EQ(Taken(), (Lines{"view left up 0 []", "input alt-up []"}));
}

// Injected by somebody as a Ctrl of no side, it is released as one.
TEST_F(PlayedInput, ACtrlOfNoSideIsReleasedAsOne) {
    g_keys[VK_CONTROL] = kDown;
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDOWN)));
    EXPECT_EQ(Taken(), Lines{"input alt-down ctrl-up left-down ctrl-down [ctrl-click]"});
}

// Where the system counts the swallowed press, the replayed one is the second of a double click.
TEST_F(PlayedInput, AReplayedPressMayComeAsADoubleClick) {
    HoldLeftCtrl();
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDOWN)));
    Taken();
    g_message_keys[VK_MENU] = g_keys[VK_MENU] = kDown;
    EXPECT_FALSE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDBLCLK)));
    EXPECT_EQ(Taken(), Lines{});
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONUP)));
    EXPECT_EQ(Taken(), (Lines{"view left up 0 []", "input alt-up []"}));
}

// Else the release of a replay that is lost on its way would go round for ever.
TEST_F(PlayedInput, AReleaseIsPutBehindTheReplayFourTimesAtMost) {
    HoldLeftCtrl();
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDOWN)));
    Taken();
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONUP)));
        EXPECT_EQ(Taken(), Lines{"input left-up [ctrl-click]"});
    }
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONUP)));
    EXPECT_EQ(Taken(), (Lines{"view left up 0 []", "input alt-up []"}));
}

TEST_F(PlayedInput, AShiftClickRunsUntilItsReleaseIsSent) {
    g_keys[VK_SHIFT] = kDown;
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDOWN)));
    EXPECT_EQ(Taken(), (Lines{"push 6 [shift-click]", "view left down 12 [shift-click]",
                              "keyboard state, shift down [shift-click]"}));
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONUP)));
    EXPECT_EQ(Taken(), (Lines{"view left up 4 [shift-click]", "pop []"}));

    HoldLeftCtrl();
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONDOWN)));
    EXPECT_EQ(
        Taken(),
        (Lines{"push 6 [ctrl-shift-click]", "begin [ctrl-shift-click]",
               "keyboard state, shift up [ctrl-shift-click]", "view left down 8 [ctrl-shift-click]",
               "keyboard state, shift down [ctrl-shift-click]", "cancel [ctrl-shift-click]"}));
    EXPECT_TRUE(Takes(EmulateSelectingClick, Event(WM_LBUTTONUP)));
    EXPECT_EQ(Taken(), (Lines{"view left up 8 [ctrl-shift-click]", "pop []"}));
}

TEST_F(PlayedInput, AStrokeIsReplayedOnlyWhileItRuns) {
    g_mode = 9247;
    MouseEvent press = Event(WM_MBUTTONDOWN);
    EXPECT_EQ(RedirectToSculpt(press), Answer::kConsumed);
    EXPECT_EQ(Taken(), Lines{"input alt-down left-down [redirect]"});
    MouseEvent release = Event(WM_MBUTTONUP);
    EXPECT_EQ(RedirectToSculpt(release), Answer::kConsumed);
    EXPECT_EQ(Taken(), Lines{"input left-up alt-up [redirect]"});
    EXPECT_EQ(State(), "");
}

TEST_F(PlayedInput, AltIsOwedBeforeItIsPressedAgain) {
    g_zoomActive = 1;
    EXPECT_EQ(KeyboardProc(HC_ACTION, VK_MENU, static_cast<LPARAM>(0x80000000)), 1);
    EXPECT_EQ(Taken(), Lines{"input alt-down [zoom owes-alt]"});
}

TEST_F(PlayedInput, TheZoomGoesByTheRealCursor) {
    g_zoomActive = 1;
    g_navKind = kWindowViewport;
    g_settings.slowZooming = 1;
    g_zoomVirtual = {500, 400};
    g_zoomLast = {500, 400};
    g_zoomWarp = 0;
    g_cursor = {520, 430};
    EXPECT_EQ(MoveGesture(Event(WM_MOUSEMOVE, {700, 600})), Answer::kConsumed);
    EXPECT_EQ(Taken(), Lines{"view move 1 [zoom]"});
    EXPECT_EQ(g_zoomLast.x, 520);
    EXPECT_EQ(g_zoomLast.y, 430);
    EXPECT_EQ(g_zoomVirtual.x, 520);
    EXPECT_EQ(g_zoomVirtual.y, 350);
}

TEST_F(PlayedInput, MovesAreAnOrbitsBeforeTheyAreAPans) {
    g_navKind = kWindowViewport;
    g_orbitActive = 1;
    g_panActive = 1;
    g_modifier_cursor = LoadModuleCursor(1);
    EXPECT_EQ(MoveGesture(Event(WM_MOUSEMOVE)), Answer::kPassed);
    EXPECT_EQ(Taken(), Lines{"cursor [orbit pan]"});
    g_orbitActive = 0;
    EXPECT_EQ(MoveGesture(Event(WM_MOUSEMOVE)), Answer::kConsumed);
    EXPECT_EQ(Taken(), Lines{"view move 9 [pan]"});
}

TEST_F(PlayedInput, MovesOfAQuickTransformAreTakenWithShiftInTheTrackViewOnly) {
    for (const int running : {0, 1}) {
        for (const SHORT shift : {SHORT{0}, kDown}) {
            for (const int number : {0, 1, 2, 3, 4, 5, 7}) {
                const auto kind = static_cast<WindowKind>(number);
                g_quickXform = running;
                g_keys[VK_SHIFT] = shift;
                const bool taken = running && shift && kind == kWindowTrackView;
                EXPECT_EQ(Takes(QuickTransform, EventIn(kind, WM_MOUSEMOVE)), taken);
                EXPECT_EQ(Taken(), taken ? Lines{"view move 9 [quick]"} : Lines{});
                EXPECT_FALSE(Takes(QuickTransform, EventIn(kind, WM_LBUTTONDOWN)));
                EXPECT_EQ(Taken(), Lines{});
            }
        }
    }
}

TEST_F(PlayedInput, TheScrubGoesByThePointOfTheMessage) {
    g_scrubState = kScrubArmed;
    g_cursor = {900, 900};
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_LBUTTONDOWN, {500, 400})));
    EXPECT_EQ(g_scrubLast.x, 500);
    EXPECT_EQ(g_scrubLast.y, 400);
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MOUSEMOVE, {530, 410})));
    EXPECT_EQ(g_scrubLast.x, 530);
    EXPECT_EQ(g_scrubLast.y, 410);
    EXPECT_EQ(g_thumbPos.x, 350);  // the thumb's middle is at 320, 1110
    EXPECT_EQ(g_thumbPos.y, 1110);
    // The edges as well are those that the message is at.
    g_cursor = {0, 0};
    Taken();
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MOUSEMOVE, {1591, 410})));
    EXPECT_EQ(Taken(), Lines{"cursor to 10,410 [dragging]"});
    EXPECT_EQ(g_cursor_questions, 0);
}

TEST_F(PlayedInput, TheKeysOfASelectingMoveAreTheWholeAnswer) {
    struct Case {
        SHORT ctrl, shift;
        const char* line;
    };
    for (const Case& c :
         {Case{0, 0, "view move 0 []"}, Case{kPressedSinceLastAsked, 0, "view move 8 []"},
          Case{0, kPressedSinceLastAsked, "view move 4 []"},
          Case{kDown, kPressedSinceLastAsked, "view move 12 []"}}) {
        g_modifier_cursor = LoadModuleCursor(1);
        g_keys[VK_CONTROL] = c.ctrl;
        g_keys[VK_SHIFT] = c.shift;
        EXPECT_TRUE(Takes(EmulateSelectingMove, Event(WM_MOUSEMOVE)));
        EXPECT_EQ(Taken(), (Lines{c.line, "cursor []"}));
    }
}

TEST_F(PlayedInput, TheButtonsAreAskedLeftMiddleRight) {
    EXPECT_EQ(KeyboardProc(HC_ACTION, VK_SHIFT, 0), kAnswerOfTheNext);
    g_asked_keys.resize(3);
    EXPECT_EQ(g_asked_keys, (std::vector<int>{VK_LBUTTON, VK_MBUTTON, VK_RBUTTON}));
}

TEST_F(PlayedInput, NoCursorWhileAButtonIsDown) {
    g_kind_under_cursor = kWindowViewport;
    g_modifier_cursor = LoadModuleCursor(1);
    EXPECT_EQ(KeyboardProc(HC_ACTION, VK_CONTROL, 0), kAnswerOfTheNext);
    EXPECT_EQ(Taken(), Lines{"cursor []"});
    for (const int button : {VK_LBUTTON, VK_MBUTTON, VK_RBUTTON}) {
        g_keys = {{button, kDown}};
        EXPECT_EQ(KeyboardProc(HC_ACTION, VK_CONTROL, 0), kAnswerOfTheNext);
        EXPECT_EQ(Taken(), Lines{});
    }
}

// The numbers are those that bug reports and traces of the state show.
TEST_F(PlayedInput, AKeyReleasedDuringAScrubIsKeptInMindOnce) {
    struct Release {
        int before;
        int after;
    };
    for (const Release& release : {Release{1, 0}, Release{2, 3}, Release{3, 0}}) {
        g_scrubState = release.before;
        EXPECT_EQ(KeyboardProc(HC_ACTION, 'Q', static_cast<LPARAM>(0x80000000)), 1);
        EXPECT_EQ(g_scrubState, release.after) << "released in state " << release.before;
    }
}

// The slider lies among all windows of the main window, the thumb among few.
TEST_F(PlayedInput, TheSliderIsLookedForAgainOnlyWhenItIsGone) {
    g_scrubState = kScrubArmed;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_LBUTTONDOWN)));
    g_slider_searches = 0;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MOUSEMOVE)));
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MOUSEMOVE)));
    EXPECT_EQ(g_slider_searches, 0);
    g_has_slider = false;
    EXPECT_FALSE(Takes(ScrubTime, Event(WM_MOUSEMOVE)));
    EXPECT_EQ(g_slider_searches, 1);
    g_has_slider = true;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MOUSEMOVE)));
    EXPECT_EQ(g_slider_searches, 2);
}

TEST_F(PlayedInput, TheScreenIsAskedOnceADrag) {
    g_scrubState = kScrubArmed;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_LBUTTONDOWN)));
    g_metrics_questions = 0;
    for (int x : {510, 520, 530})
        EXPECT_TRUE(Takes(ScrubTime, Event(WM_MOUSEMOVE, {x, 400})));
    EXPECT_EQ(g_metrics_questions, 2);  // width and height
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_LBUTTONUP)));
    Taken();

    g_screen_width = 1000;
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_LBUTTONDOWN)));
    Taken();
    EXPECT_TRUE(Takes(ScrubTime, Event(WM_MOUSEMOVE, {991, 400})));
    EXPECT_EQ(Taken(), Lines{"cursor to 10,400 [dragging]"});
}

TEST_F(PlayedInput, AnUnknownScreenIsAskedAgain) {
    g_screen_width = 0;
    EXPECT_EQ(ScreenSize(), (ScreenPoint{0, 1200}));
    g_screen_width = 1600;
    EXPECT_EQ(ScreenSize(), (ScreenPoint{1600, 1200}));
    g_screen_width = 1000;
    EXPECT_EQ(ScreenSize(), (ScreenPoint{1600, 1200}));
    ForgetScreenSize();
    EXPECT_EQ(ScreenSize(), (ScreenPoint{1000, 1200}));
}

// The system tells of a press since the last question once. What a plain move sees of it is still
// told to the next one who asks on purpose.
TEST_F(PlayedInput, ALookLeavesAPressToTheNextQuestion) {
    struct Key {
        int key;
        SHORT (*state)();
    };
    for (const Key& key : {Key{VK_CONTROL, CtrlState}, Key{VK_SHIFT, ShiftState}}) {
        EXPECT_FALSE(MayModifiersMatter());
        g_keys[key.key] = kPressedSinceLastAsked;
        EXPECT_TRUE(MayModifiersMatter());
        g_keys[key.key] = 0;
        EXPECT_TRUE(MayModifiersMatter()) << "nobody has asked yet";
        EXPECT_EQ(key.state(), kPressedSinceLastAsked);
        EXPECT_EQ(key.state(), 0);
        EXPECT_FALSE(MayModifiersMatter());
        g_keys[key.key] = kDown;
        EXPECT_TRUE(MayModifiersMatter());
        EXPECT_EQ(key.state(), kDown);
        g_keys[key.key] = 0;
        EXPECT_FALSE(MayModifiersMatter());
    }
    g_keys[VK_MENU] = kDown;
    EXPECT_TRUE(MayModifiersMatter());
    EXPECT_FALSE(MayShiftMatter());
}

TEST_F(PlayedInput, APlainMoveAsksThreeKeysAndNothingElse) {
    EXPECT_FALSE(MayMoveSelect(HTCLIENT));
    EXPECT_EQ(g_asked_keys, (std::vector<int>{VK_CONTROL, VK_SHIFT, VK_MENU}));
    g_asked_keys.clear();
    EXPECT_FALSE(MayMoveSelect(HTMENU));
    g_settings.customSelectionCursors = 0;
    g_selShift = 1;
    EXPECT_FALSE(MayMoveSelect(HTCLIENT));
    EXPECT_EQ(g_asked_keys, std::vector<int>{});
    // A replayed click is moved by every move.
    g_settings.customSelectionCursors = 1;
    EXPECT_TRUE(MayMoveSelect(HTCLIENT));
    EXPECT_EQ(g_asked_keys, std::vector<int>{});
}

}  // namespace
