// The start, the action table and what its callback does for each command, with everything around
// them played: each effect is written down, in order.

#include <windows.h>

#include <max.h>

#include <actiontable.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "assists/gizmo_and_lock.h"
#include "assists/isolated_playback.h"
#include "assists/pixel_nudge.h"
#include "assists/sticky_snap.h"
#include "hooks/arrow_key_filter.h"
#include "hooks/viewport_focus.h"
#include "host/host.h"
#include "host/toolbar_controls.h"
#include "host/toolbars.h"
#include "navigation/time_scrub.h"
#include "resources/module.h"
#include "script/script_texts.h"
#include "settings/settings_store.h"
#include "shell/action_callback.h"
#include "shell/action_table.h"
#include "shell/utility.h"
#include "windows/about.h"
#include "windows/options_window.h"
#include "windows/welcome_window.h"

namespace {

using Lines = std::vector<std::string>;

HWND WindowNumber(int number) {
    return reinterpret_cast<HWND>(static_cast<INT_PTR>(number));
}
const HWND kMain = WindowNumber(0x100);
const HWND kOptions = WindowNumber(0x200);
const HWND kWelcome = WindowNumber(0x300);
const HWND kUnderCursor = WindowNumber(0x400);
const HACCEL kKeys = reinterpret_cast<HACCEL>(static_cast<INT_PTR>(0x500));

Lines g_lines;
std::optional<bool> g_over_button;
const char* g_text = nullptr;
int g_release = 0;
bool g_welcome_wanted = true;
bool g_menu_is_new = true;
GUP* g_utility = nullptr;

std::string Number(LONG_PTR value) {
    return std::to_string(value);
}

BOOL WINAPI PlayedCursorPos(POINT* point) {
    *point = {31, 42};
    return TRUE;
}

HWND WINAPI PlayedWindowFromPoint(POINT point) {
    EXPECT_EQ(point.x, 31);
    EXPECT_EQ(point.y, 42);
    return kUnderCursor;
}

LRESULT WINAPI PlayedSendMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    g_lines.push_back(std::string(window == kOptions ? "options" : "welcome") + " message " +
                      Number(message) + " " + Number(static_cast<LONG_PTR>(wparam)) + " " +
                      Number(lparam) + (g_welcomeWindow ? ", still known" : ""));
    return 0;
}

HACCEL WINAPI PlayedLoadAccelerators(HINSTANCE module, LPCSTR name) {
    EXPECT_EQ(module, g_module);
    g_lines.push_back("accelerators " + Number(reinterpret_cast<INT_PTR>(name)));
    return kKeys;
}

}  // namespace

// The import slots of the Win32 calls, filled by hand.
extern "C" {
void* __imp_GetCursorPos = reinterpret_cast<void*>(PlayedCursorPos);
void* __imp_WindowFromPoint = reinterpret_cast<void*>(PlayedWindowFromPoint);
void* __imp_SendMessageA = reinterpret_cast<void*>(PlayedSendMessage);
void* __imp_LoadAcceleratorsA = reinterpret_cast<void*>(PlayedLoadAccelerators);
}

HINSTANCE g_module = GetModuleHandleA(nullptr);
PluginSettings g_settings;
HWND g_optionsWindow = nullptr;
HWND g_welcomeWindow = nullptr;
int g_hostRelease = 0;

char* LoadText(int id) {
    g_lines.push_back("text " + Number(id));
    return const_cast<char*>(g_text);
}
void SetSelectionLock(bool on, int requester, bool restore) {
    g_lines.push_back("lock " + Number(on) + " by " + Number(requester) + " " + Number(restore));
}
void SetStickySnap(int command, bool on) {
    g_lines.push_back("snap " + Number(command) + " " + Number(on));
}
void ArmTimeScrub() {
    g_lines.push_back("scrub");
}
void NudgeSelection(int command) {
    g_lines.push_back("nudge " + Number(command));
}
void ShowAboutBox(HWND owner) {
    g_lines.push_back(owner == kMain ? "about, of main" : "about");
}
void ShowOptionsDialog() {
    g_lines.push_back("options opened");
}
void OpenWelcomeDialog() {
    g_lines.push_back("welcome opened");
}
void SaveOptions() {
    g_lines.push_back("saved with navigation " + Number(g_settings.useMayaStyle));
}
void RefreshOptionsPage() {
    g_lines.push_back("page");
}
void InstallViewportAutoFocus() {
    g_lines.push_back("focus");
}
void InstallViewportKeyFilters() {
    g_lines.push_back("filters");
}
void FindToolbarControls() {
    g_lines.push_back("controls");
}
void LoadSettings() {
    g_lines.push_back("settings");
}
bool IsWelcomePopupEnabled() {
    return g_welcome_wanted;
}
void RegisterPlaybackCallback() {
    g_lines.push_back("playback");
}

namespace host {

int Release() {
    g_lines.push_back("release");
    return g_release;
}
HWND MainWindow() {
    return kMain;
}
void RegisterActionContext(unsigned long context, const char* name) {
    g_lines.push_back("context " + std::to_string(context) + " \"" + name + "\"");
}
void RefreshMacroButtons() {
    g_lines.push_back("refresh");
}
void PrintToListener(const char* text) {
    g_lines.push_back(std::string("listener ") + text);
}
void RunScript(char* text) {
    const std::string whole = text;
    g_lines.push_back("script " + whole.substr(0, whole.find('\n')));
}
void SetScriptRunner(GUP& utility) {
    g_lines.push_back(&utility == g_utility ? "runner" : "another runner");
}
void ActivateActionCallback(ActionCallback* callback, unsigned long table) {
    g_lines.push_back((callback ? "callback for " : "no callback for ") + std::to_string(table));
}
bool RegisterMenuContext(int id, const char* name) {
    g_lines.push_back("menu context " + Number(id) + " " + name);
    return g_menu_is_new;
}
// Entries are their numbers here.
IMenu* NewMenu(const char* title) {
    g_lines.push_back(std::string("menu ") + title);
    return reinterpret_cast<IMenu*>(static_cast<INT_PTR>(1000));
}
IMenuItem* NewActionEntry(unsigned long table, int action) {
    EXPECT_EQ(table, 0x737D5FB8u);
    return reinterpret_cast<IMenuItem*>(static_cast<INT_PTR>(action));
}
IMenuItem* NewSeparatorEntry() {
    return reinterpret_cast<IMenuItem*>(static_cast<INT_PTR>(100));
}
void AppendEntry(IMenu* menu, IMenuItem* entry) {
    EXPECT_EQ(reinterpret_cast<INT_PTR>(menu), 1000);
    g_lines.push_back("entry " + Number(reinterpret_cast<INT_PTR>(entry)));
}
std::optional<bool> IsToolbarButton(HWND window) {
    EXPECT_EQ(window, kUnderCursor);
    return g_over_button;
}
void InsertIntoMainMenuBar(IMenu* menu) {
    g_lines.push_back("inserted " + Number(reinterpret_cast<INT_PTR>(menu)));
}

}  // namespace host

namespace {

constexpr BOOL kDone = TRUE;
constexpr BOOL kNotHandled = FALSE;
const char kRefusal[] = "listener Sticky functions can only be used with hotkeys.\n";

bool IsHeld(int id) {
    return (id >= 1 && id <= 4) || id == 6 || id == 7;
}

class ShellCommands : public testing::Test {
protected:
    void SetUp() override {
        g_over_button = false;
        g_text = "Karvel";
        g_release = 13900;
        g_settings = {};
        g_optionsWindow = nullptr;
        g_welcomeWindow = nullptr;
        g_welcome_wanted = true;
        g_menu_is_new = true;
        g_lines.clear();
    }
    static Lines Taken() {
        Lines lines;
        lines.swap(g_lines);
        return lines;
    }
    static void Expect(int id, BOOL answer, const Lines& lines) {
        EXPECT_EQ(callback().ExecuteAction(id), answer) << id;
        EXPECT_EQ(Taken(), lines) << id;
    }
    static aCallback& callback() {
        static aCallback the_callback(nullptr);
        return the_callback;
    }
    static ActionTable& Table() {
        ActionTable* const table = BuildKarvelActionTable();
        Taken();
        return *table;
    }
};

TEST_F(ShellCommands, TheStartGoesStepByStep) {
    KarvelMax utility;
    g_utility = &utility;
    EXPECT_EQ(utility.Start(), 0u);
    const Lines beginning = {"runner",   "focus",    "filters", "callback for 1937596344",
                             "controls", "settings", "playback"};
    const Lines framing = {"script fn kv_frameView selType = ",
                           "menu context 914580876 Flinder Menu Context"};
    const Lines menu = {"menu Flinder", "entry 8",  "entry 100",    "entry 5",
                        "entry 22",     "entry 21", "inserted 1000"};
    Lines expected = beginning;
    expected.push_back("welcome opened");
    expected.insert(expected.end(), framing.begin(), framing.end());
    expected.insert(expected.end(), menu.begin(), menu.end());
    EXPECT_EQ(Taken(), expected);

    // The user does not want to be greeted, and the menu is there from an earlier start.
    g_welcome_wanted = false;
    g_menu_is_new = false;
    EXPECT_EQ(utility.Start(), 0u);
    expected = beginning;
    expected.insert(expected.end(), framing.begin(), framing.end());
    EXPECT_EQ(Taken(), expected);
}

TEST_F(ShellCommands, TheUtilityKeepsNothingAndStopsNothing) {
    KarvelMax utility;
    utility.Stop();
    EXPECT_EQ(utility.Control(7), 0u);
    EXPECT_EQ(utility.Save(nullptr), 0);
    EXPECT_EQ(utility.Load(nullptr), 0);
    EXPECT_EQ(g_lines, Lines{});
}

TEST_F(ShellCommands, EachDoesItsOwn) {
    Expect(1, kDone, {"lock 1 by 4 1"});
    for (const int id : {2, 3, 4, 6})
        Expect(id, kDone, {"snap " + Number(id) + " 1"});
    Expect(5, kDone, {"options opened"});
    Expect(7, kDone, {"scrub"});
    Expect(8, kDone, {"saved with navigation 1", "refresh"});
    Expect(8, kDone, {"saved with navigation 0", "refresh"});
    for (const int id : {10, 11, 12, 13})
        Expect(id, kDone, {"nudge " + Number(id)});
    Expect(14, kDone,
           {"script if selection != undefined then ( for obj in (selection as array) do obj.pivot "
            "= obj.center )"});
    Expect(15, kDone, {"script kv_frameView #selected"});
    Expect(16, kDone, {"script kv_frameView #all"});
    Expect(17, kDone, {"script max key mode; actionMan.executeAction 0 \"50020\"; max key mode"});
    Expect(18, kDone, {"script max key mode; actionMan.executeAction 0 \"50022\"; max key mode"});
    Expect(19, kDone,
           {"script viewport.ResetAllViews(); completeRedraw(); max tool zoomextents all"});
    // Carried out, and yet not handled.
    Expect(21, kNotHandled, {"about, of main"});
    Expect(22, kNotHandled, {"welcome opened"});
}

TEST_F(ShellCommands, OtherNumbersDoNothing) {
    for (const int id : {-1, 0, 9, 20, 23, 1000})
        Expect(id, kNotHandled, {});
}

TEST_F(ShellCommands, WhatIsOpenIsClosed) {
    g_optionsWindow = kOptions;
    Expect(5, kDone, {"options message 273 1 0"});
    EXPECT_EQ(g_optionsWindow, kOptions);  // it goes when it has closed itself
    g_welcomeWindow = kWelcome;
    Expect(22, kNotHandled, {"welcome message 273 1 0, still known"});
    EXPECT_EQ(g_welcomeWindow, nullptr);
    Expect(22, kNotHandled, {"welcome opened"});
}

TEST_F(ShellCommands, TheSwitchShowsInAnOpenPage) {
    g_optionsWindow = kOptions;
    g_settings.useMayaStyle = 7;
    Expect(8, kDone, {"saved with navigation 0", "refresh", "page"});
}

TEST_F(ShellCommands, HeldOnesAreRefusedOverAToolbarButtonOnly) {
    g_over_button = true;
    for (int id = 0; id < 24; ++id) {
        callback().ExecuteAction(id);
        const Lines lines = Taken();
        EXPECT_EQ(lines == Lines{kRefusal}, IsHeld(id)) << id;
    }
    EXPECT_EQ(callback().ExecuteAction(1), kDone);
    // Where the host does not tell, nothing speaks against a hotkey.
    for (const std::optional<bool> other : {std::optional<bool>(false), std::optional<bool>()}) {
        Taken();
        g_over_button = other;
        Expect(1, kDone, {"lock 1 by 4 1"});
    }
}

TEST_F(ShellCommands, CheckedAreThoseWhoseWindowIsOpenOrWhoseSwitchIsOn) {
    ActionTable& table = Table();
    for (int id = -1; id < 24; ++id)
        EXPECT_EQ(table.IsChecked(id), FALSE) << id;
    g_optionsWindow = kOptions;
    g_welcomeWindow = kWelcome;
    g_settings.useMayaStyle = 1;
    for (int id = -1; id < 24; ++id)
        EXPECT_EQ(table.IsChecked(id), id == 5 || id == 8 || id == 22 ? TRUE : FALSE) << id;
    g_optionsWindow = nullptr;
    EXPECT_EQ(table.IsChecked(5), FALSE);
    EXPECT_EQ(table.IsChecked(8), TRUE);
    g_settings.useMayaStyle = 0;
    EXPECT_EQ(table.IsChecked(8), FALSE);
    EXPECT_EQ(table.IsChecked(22), TRUE);
}

TEST_F(ShellCommands, HeldOnesAreNotVisibleAndAllAreEnabled) {
    ActionTable& table = Table();
    for (int id = -1; id < 24; ++id) {
        EXPECT_EQ(table.IsItemVisible(id), IsHeld(id) ? FALSE : TRUE) << id;
        EXPECT_EQ(table.IsEnabled(id), TRUE) << id;
    }
}

TEST_F(ShellCommands, EightHaveAnIconWhichIsKept) {
    ActionTable& table = Table();
    std::vector<MaxIcon*> icons;
    for (int id = -1; id < 24; ++id) {
        MaxIcon* const icon = table.GetIcon(id);
        EXPECT_EQ(icon != nullptr, id == 5 || id == 8 || (id >= 14 && id <= 19)) << id;
        EXPECT_EQ(table.GetIcon(id), icon) << id;
        for (const MaxIcon* other : icons)
            EXPECT_NE(icon, other) << id;
        if (icon) icons.push_back(icon);
    }
}

TEST_F(ShellCommands, TheTableIsMadeInOrder) {
    ActionTable* const table = BuildKarvelActionTable();
    EXPECT_EQ(g_lines,
              (Lines{"text 4", "accelerators 40001", "release", "context 1937596344 \"Karvel\""}));
    EXPECT_EQ(g_hostRelease, 13900);
    EXPECT_EQ(table->Count(), 20);
    EXPECT_EQ(table->GetId(), 0x737D5FB8u);
    EXPECT_EQ(table->GetContextId(), 0x737D5FB8u);
    EXPECT_STREQ(table->GetName().data(), "Karvel");
    EXPECT_EQ(table->GetDefaultHAccel(), kKeys);
    g_release = 6999;
    EXPECT_EQ(Table().Count(), 16);
    g_release = 7000;
    EXPECT_EQ(Table().Count(), 20);
}

TEST_F(ShellCommands, ATextThatIsMissingIsAnEmptyName) {
    g_text = nullptr;
    ActionTable* const table = BuildKarvelActionTable();
    EXPECT_EQ(g_lines.back(), "context 1937596344 \"\"");
    EXPECT_STREQ(table->GetName().data(), "");
}

}  // namespace
