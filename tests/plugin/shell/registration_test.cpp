// What the plug-in hands to the system and to the host while it is loaded and started: its hooks,
// its script functions, and its search for the host's buttons. Each call is written down.

#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "input/input_records.h"
#include "hooks/keyboard_hook.h"
#include "host/host.h"
#include "hooks/mouse_hook.h"
#include "host/window_kind.h"
#include "shell/class_descriptor.h"
#include "resources/module.h"
#include "host/toolbar_controls.h"

// Last, because they define macros in lower case.
#include <maxscript/maxscript.h>

#include <maxscript/foundation/functions.h>

namespace {

using Lines = std::vector<std::string>;

HWND WindowNumber(int number) {
    return reinterpret_cast<HWND>(static_cast<INT_PTR>(number));
}
const HWND kMain = WindowNumber(0x100);
const HWND kForeground = WindowNumber(0x200);
const HWND kFrame = WindowNumber(0x300);
const HWND kBar = WindowNumber(0x400);

Lines g_lines;
HWND g_foreground = kForeground;
HWND g_gone = nullptr;
std::string g_title;
bool g_cursors_load = true;
std::optional<int> g_flyout = 0;

// The script functions register themselves before any object of this file that has a constructor.
struct Registered {
    const char* name;
    value_cf function;
    short flags;
};
Registered g_registered[16];
int g_registered_count = 0;

void PlayedPrimitive(Primitive*, MCHAR* name, value_cf function, short flags) {
    if (g_registered_count < 16) g_registered[g_registered_count] = {name, function, flags};
    ++g_registered_count;
}
void PlayedPrimitiveEnd(Primitive*) {}

HHOOK WINAPI PlayedSetHook(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    g_lines.push_back("hook " + std::to_string(kind) + (module ? " of a module" : "") +
                      (thread == GetCurrentThreadId() ? " for this thread: " : " for ?: ") +
                      (procedure == KeyboardProc ? "keys" : "mouse"));
    return nullptr;
}

std::string NameOf(HWND window) {
    if (window == kMain) return "main";
    if (window == kFrame) return "frame";
    return window == kBar ? "bar" : "?";
}

// A search by the shared state finds its control at once, as the window of its number. Any other
// search is shown windows in turn.
BOOL WINAPI PlayedEnumChildWindows(HWND parent, WNDENUMPROC callback, LPARAM found) {
    g_lines.push_back("look in " + NameOf(parent));
    if (callback != FindButtonByIdAndText) {
        for (int id : {7, 40074, 59231, 50021, 8, 50016})
            EXPECT_TRUE(callback(WindowNumber(id), found));
        return TRUE;
    }
    g_lines.back() += " for " + std::to_string(g_searchCtrlId) +
                      (g_searchText[0] ? std::string(" by ") + g_searchText : "");
    *reinterpret_cast<HWND*>(found) = WindowNumber(g_searchCtrlId);
    return TRUE;
}

HWND WINAPI PlayedParent(HWND window) {
    if (window == kBar || window == WindowNumber(40074)) return kFrame;
    return window == kFrame ? kMain : kBar;
}

// A window that has gone has no number any more.
int WINAPI PlayedCtrlId(HWND window) {
    return window == g_gone ? 0 : static_cast<int>(reinterpret_cast<INT_PTR>(window));
}

HWND WINAPI PlayedForeground() {
    return g_foreground;
}

int WINAPI PlayedWindowText(HWND window, LPSTR text, int size) {
    EXPECT_EQ(window, kForeground);
    g_lines.push_back("title in " + std::to_string(size));
    lstrcpynA(text, g_title.c_str(), size);
    return lstrlenA(text);
}

int WINAPI PlayedLoadString(HINSTANCE module, UINT id, LPSTR text, int size) {
    EXPECT_EQ(module, g_module);
    g_lines.push_back("text " + std::to_string(id) + " in " + std::to_string(size));
    lstrcpynA(text, g_title.c_str(), size);
    return lstrlenA(text);
}

HCURSOR WINAPI PlayedLoadCursor(HINSTANCE module, LPCSTR name) {
    EXPECT_EQ(module, g_module);
    g_lines.push_back("cursor " + std::to_string(reinterpret_cast<INT_PTR>(name)));
    return g_cursors_load ? reinterpret_cast<HCURSOR>(const_cast<char*>(name)) : nullptr;
}

BOOL WINAPI PlayedIsWindow(HWND) {
    return TRUE;
}

}  // namespace

// The import slots of the calls, filled by hand. Those of the host stand under the names that our
// declarations give them.
extern "C" {
void* __imp__ZN9PrimitiveC1EPcPFP5ValuePS2_iEs = reinterpret_cast<void*>(PlayedPrimitive);
void* __imp__ZN9PrimitiveD1Ev = reinterpret_cast<void*>(PlayedPrimitiveEnd);
char g_true_place[16];
char g_false_place[16];
void* __imp_true_value = g_true_place;
void* __imp_false_value = g_false_place;
void* __imp_SetWindowsHookExA = reinterpret_cast<void*>(PlayedSetHook);
void* __imp_EnumChildWindows = reinterpret_cast<void*>(PlayedEnumChildWindows);
void* __imp_GetParent = reinterpret_cast<void*>(PlayedParent);
void* __imp_GetDlgCtrlID = reinterpret_cast<void*>(PlayedCtrlId);
void* __imp_GetForegroundWindow = reinterpret_cast<void*>(PlayedForeground);
void* __imp_GetWindowTextA = reinterpret_cast<void*>(PlayedWindowText);
void* __imp_LoadStringA = reinterpret_cast<void*>(PlayedLoadString);
void* __imp_LoadCursorA = reinterpret_cast<void*>(PlayedLoadCursor);
void* __imp_IsWindow = reinterpret_cast<void*>(PlayedIsWindow);
}

extern "C" const MCHAR* LibDescription();
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

int g_searchCtrlId = 0;
char g_searchText[128] = "";

BOOL CALLBACK FindButtonByIdAndText(HWND, LPARAM) {
    return TRUE;
}
void BuildInputRecords() {
    g_lines.push_back("records");
}
LRESULT CALLBACK KeyboardProc(int, WPARAM, LPARAM) {
    return 0;
}
LRESULT CALLBACK MouseHookProc(int, WPARAM, LPARAM) {
    return 1;
}
KarvelMaxClassDesc& KarvelMaxDescriptor() {
    static char place[sizeof(KarvelMaxClassDesc)];
    return *reinterpret_cast<KarvelMaxClassDesc*>(place);
}

HWND FindItem(HWND window, int id) {
    g_lines.push_back(std::to_string(id) + " in " + NameOf(window));
    const bool is_there = window == (id == 40074 ? kFrame : kBar);
    return is_there ? WindowNumber(id) : nullptr;
}

int g_hostRelease = 0;

namespace host {

void RunScript(char*) {}
const MCHAR* TextForHost(const char* text) {
    return text;
}
unsigned long VersionWord() {
    return 0;
}
HWND MainWindow() {
    return kMain;
}
std::optional<bool> IsButtonChecked(HWND) {
    return std::nullopt;
}
std::optional<bool> IsToolbarButtonEnabled(int) {
    return std::nullopt;
}
std::optional<int> ButtonFlyout(HWND button) {
    g_lines.push_back("flyout of " + std::to_string(reinterpret_cast<INT_PTR>(button)));
    return g_flyout;
}
void ChooseButtonFlyout(HWND, int entry) {
    g_lines.push_back("choose " + std::to_string(entry));
}
void ZoomExtentsOfActiveView() {
    g_lines.push_back("zoom extents");
}

}  // namespace host

namespace {

Lines Taken() {
    Lines lines;
    lines.swap(g_lines);
    return lines;
}

Value* Call(const char* name, int count = 0) {
    for (const Registered& one : g_registered) {
        if (one.name && std::strcmp(one.name, name) == 0) return one.function(nullptr, count);
    }
    ADD_FAILURE() << name << " is not registered";
    return nullptr;
}
bool IsTrue(const Value* value) {
    return reinterpret_cast<const char*>(value) == g_true_place;
}
bool IsFalse(const Value* value) {
    return reinterpret_cast<const char*>(value) == g_false_place;
}

TEST(Loading, HooksAreSetForTheLoadingThreadWithoutAModule) {
    Taken();
    const HINSTANCE module = reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(0x777));
    EXPECT_EQ(DllMain(module, DLL_PROCESS_ATTACH, nullptr), TRUE);
    EXPECT_EQ(g_module, module);
    EXPECT_EQ(Taken(),
              (Lines{"hook 2 for this thread: keys", "hook 7 for this thread: mouse", "records"}));
}

TEST(Loading, OtherReasonsOfTheLoaderSetNothing) {
    Taken();
    for (const DWORD reason : {DLL_THREAD_ATTACH, DLL_THREAD_DETACH, DLL_PROCESS_DETACH})
        EXPECT_EQ(DllMain(nullptr, reason, nullptr), TRUE);
    EXPECT_EQ(Taken(), Lines{});
}

TEST(Loading, ScriptFunctionsAreRegisteredInTheirOrder) {
    ASSERT_EQ(g_registered_count, 6);
    const char* const names[] = {"trackview_isFocused",   "trackbar_isFocused",
                                 "kv_graphiteSculptTool", "kv_graphitePdTool",
                                 "kv_polyShiftActive",    "kv_zoomExtents"};
    for (int i = 0; i < 6; ++i) {
        EXPECT_STREQ(g_registered[i].name, names[i]);
        EXPECT_EQ(g_registered[i].flags, 0);
    }
}

TEST(Loading, TextsAreReadIntoOneBufferOf256) {
    g_module = reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(0x777));
    Taken();
    g_title = "One";
    const char* const one = LibDescription();
    EXPECT_STREQ(one, "One");
    g_title = "Two";
    EXPECT_EQ(LoadText(4), one);
    EXPECT_STREQ(one, "Two");
    EXPECT_EQ(Taken(), (Lines{"text 1 in 256", "text 4 in 256"}));

    g_title.clear();
    EXPECT_EQ(LoadText(99), nullptr);
    g_module = nullptr;
    EXPECT_EQ(LoadText(4), nullptr);
    EXPECT_EQ(Taken(), Lines{"text 99 in 256"});
}

TEST(Module, ACursorIsLoadedOnceItCanBe) {
    Taken();
    for (const int id : {110, 111, 112, 115, 117, 118, 120, 135}) {
        const std::string line = "cursor " + std::to_string(id);
        g_cursors_load = false;
        EXPECT_EQ(LoadModuleCursor(id), nullptr);
        g_cursors_load = true;
        const auto cursor = reinterpret_cast<HCURSOR>(static_cast<INT_PTR>(id));
        EXPECT_EQ(LoadModuleCursor(id), cursor);
        EXPECT_EQ(LoadModuleCursor(id), cursor);
        EXPECT_EQ(Taken(), (Lines{line, line}));
    }
    EXPECT_EQ(LoadModuleCursor(1), nullptr);
    EXPECT_EQ(Taken(), Lines{});
}

TEST(Start, FourButtonsAreLookedForInOnePass) {
    Taken();
    FindToolbarControls();
    EXPECT_EQ(Taken(), (Lines{"look in main", "40074 in frame", "59231 in bar", "50021 in bar",
                              "50016 in bar"}));
    EXPECT_EQ(g_searchCtrlId, 50016);
    EXPECT_EQ(g_lockButton, WindowNumber(59231));
    EXPECT_EQ(g_angleSnapButton, WindowNumber(40074));
    EXPECT_EQ(g_button50021, WindowNumber(50021));
    EXPECT_EQ(g_zoomExtentsButton, WindowNumber(50016));
    EXPECT_EQ(g_navigationPanel, kFrame);
}

TEST(Toolbar, AButtonThatIsGoneIsLookedForByItsNumberAlone) {
    struct Button {
        HWND& kept;
        HWND (*live)();
        int id;
    };
    for (const Button& button : {Button{g_lockButton, LockButton, 59231},
                                 Button{g_angleSnapButton, AngleSnapButton, 40074}}) {
        g_gone = WindowNumber(0x900);
        button.kept = g_gone;
        // The state of another search, which its readers may want yet.
        g_searchCtrlId = 2;
        lstrcpynA(g_searchText, "Zoom", static_cast<int>(sizeof g_searchText));
        Taken();
        EXPECT_EQ(button.live(), WindowNumber(button.id));
        EXPECT_EQ(Taken(), Lines{"look in main for " + std::to_string(button.id)});
        EXPECT_EQ(button.kept, WindowNumber(button.id));
        EXPECT_EQ(g_searchCtrlId, 2);
        EXPECT_STREQ(g_searchText, "Zoom");
        // Found, it is not looked for again.
        EXPECT_EQ(button.live(), WindowNumber(button.id));
        EXPECT_EQ(Taken(), Lines{});
        g_searchText[0] = '\0';
    }
}

TEST(ScriptFunctions, TheTitleIsReadIntoABufferOf512) {
    Taken();
    g_title = "Track View - " + std::string(600, 'x');
    EXPECT_TRUE(IsTrue(Call("trackview_isFocused")));
    g_title = "Trackbar";
    EXPECT_TRUE(IsTrue(Call("trackbar_isFocused")));
    EXPECT_EQ(Taken(), (Lines{"title in 512", "title in 512"}));
    g_foreground = nullptr;
    EXPECT_TRUE(IsFalse(Call("trackview_isFocused")));
    g_foreground = kForeground;
    EXPECT_EQ(Taken(), Lines{});
}

TEST(ScriptFunctions, TheFlyoutIsLookedForInItsFrame) {
    FindToolbarControls();
    Taken();
    EXPECT_TRUE(IsTrue(Call("kv_zoomExtents")));
    EXPECT_EQ(Taken(), (Lines{"look in frame for 50016", "flyout of 50016", "zoom extents"}));
    EXPECT_TRUE(IsTrue(Call("kv_zoomExtents", 1)));
    EXPECT_EQ(Taken(), (Lines{"look in frame for 50016", "flyout of 50016", "choose 1"}));
    // A button that the host knows nothing of.
    g_flyout.reset();
    EXPECT_TRUE(IsTrue(Call("kv_zoomExtents", 1)));
    EXPECT_TRUE(IsTrue(Call("kv_zoomExtents")));
    EXPECT_EQ(Taken(), (Lines{"look in frame for 50016", "flyout of 50016",
                              "look in frame for 50016", "flyout of 50016"}));
    g_flyout = 0;
}

}  // namespace
