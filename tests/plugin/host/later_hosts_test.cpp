// Hosts whose toolbars are no windows, and whose viewports lie in windows of any class. The host is
// played: it has actions with their states, and knows which windows are viewports.

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "assists/gizmo_and_lock.h"
#include "assists/sticky_snap.h"
#include "hooks/viewport_focus.h"
#include "host/core_interface.h"
#include "host/host.h"
#include "host/selecting_mode.h"
#include "host/toolbar_controls.h"
#include "host/toolbars.h"
#include "host/window_kind.h"
#include "resources/command_ids.h"
#include "settings/plugin_settings.h"
#include "tests/plugin/host/played_views.h"

extern HWND g_lastFocusedViewport;
PluginSettings g_settings;
int g_hostRelease = 20000;

namespace {

using Lines = std::vector<std::string>;

struct Action {
    bool checked = false;
    bool enabled = true;
    bool stuck = false;
};
std::map<int, Action> g_actions;  // of the main table
Lines g_lines;

Action* Find(unsigned long table, int action) {
    const auto found = g_actions.find(action);
    return table == host::kMainTable && found != g_actions.end() ? &found->second : nullptr;
}

}  // namespace

namespace host {

std::optional<bool> IsActionChecked(unsigned long table, int action) {
    const Action* const found = Find(table, action);
    return found ? std::optional<bool>(found->checked) : std::nullopt;
}
std::optional<bool> IsActionEnabled(unsigned long table, int action) {
    const Action* const found = Find(table, action);
    return found ? std::optional<bool>(found->enabled) : std::nullopt;
}
bool ExecuteAction(unsigned long table, int action) {
    g_lines.push_back("execute " + std::to_string(action));
    Action* const found = Find(table, action);
    if (found && !found->stuck) found->checked = !found->checked;
    return found != nullptr;
}
void SetActionChecked(unsigned long, int, bool) {}
bool IsSnapOn() {
    return false;
}
bool IsSubObjectEditing() {
    return false;
}
void SetActiveViewport(HWND) {
    g_lines.push_back("activate");
}

}  // namespace host

namespace {

class LaterHosts : public testing::Test {
protected:
    void SetUp() override {
        g_actions.clear();
        ForgetPlayedViews();
        g_settings = {};
        g_lastFocusedViewport = nullptr;
        g_lines.clear();
    }
    void TearDown() override {
        for (const HWND window : m_windows)
            DestroyWindow(window);
        for (const std::string& name : m_classes)
            UnregisterClassA(name.c_str(), nullptr);
    }

    HWND Make(const char* class_name, HWND parent = nullptr, int id = 0) {
        if (m_classes.insert(class_name).second) {
            WNDCLASSA description{};
            description.lpfnWndProc = DefWindowProcA;
            description.lpszClassName = class_name;
            EXPECT_NE(RegisterClassA(&description), 0) << class_name;
        }
        const DWORD style = (parent ? WS_CHILD : WS_POPUP) | WS_VISIBLE;
        const HWND window =
            CreateWindowExA(0, class_name, "", style, 0, 0, 100, 100, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
        EXPECT_NE(window, nullptr) << class_name;
        m_windows.push_back(window);
        return window;
    }
    HWND MakeView(HWND parent) {
        const HWND window = Make("AnyView", parent);
        g_views[window] = window;
        return window;
    }
    static Lines Taken() { return std::exchange(g_lines, {}); }

private:
    std::vector<HWND> m_windows;
    std::set<std::string> m_classes;
};

TEST_F(LaterHosts, StatesAreThoseOfTheActions) {
    EXPECT_EQ(host::IsLockOn(), std::nullopt);
    EXPECT_FALSE(host::IsAngleSnapOn());
    EXPECT_EQ(host::IsSelectEnabled(), std::nullopt);
    EXPECT_TRUE(IsSelectToolAvailable());
    for (const bool is : {true, false}) {
        g_actions = {{59231, {is, !is}}, {40074, {!is, is}}, {50027, {!is, is}}};
        EXPECT_EQ(host::IsLockOn(), is);
        EXPECT_EQ(host::IsAngleSnapOn(), !is);
        EXPECT_EQ(host::IsSelectEnabled(), is);
        EXPECT_EQ(IsSelectToolAvailable(), is);
    }
}

TEST_F(LaterHosts, NoWindowIsTakenForAButton) {
    g_main_window = Make("Main");
    const HWND bar = Make("CustToolbar", Make("Frame", g_main_window));
    for (const int id : {59231, 40074, 50016})
        Make("CustButton", bar, id);
    FindToolbarControls();
    EXPECT_EQ(host::IsLockOn(), std::nullopt);
    EXPECT_FALSE(host::IsAngleSnapOn());
    EXPECT_EQ(host::ZoomExtentsEntry(), std::nullopt);
    host::ChooseZoomExtentsEntry(1);
    EXPECT_EQ(host::IsToolbarButton(Make("CustButton", bar)), std::nullopt);
}

TEST_F(LaterHosts, TheLockIsSwitchedUntilItsActionShowsIt) {
    g_actions[59231] = {};
    SetSelectionLock(true, kLockBySticky, false);
    EXPECT_EQ(Taken(), Lines{"execute 59231"});
    SetSelectionLock(false, kLockBySticky, false);
    EXPECT_EQ(Taken(), Lines{"execute 59231"});
    EXPECT_EQ(host::IsLockOn(), false);

    g_actions[59231].stuck = true;
    SetSelectionLock(true, kLockBySticky, false);
    EXPECT_EQ(Taken(), Lines(10, "execute 59231"));
    SetSelectionLock(false, kLockBySticky, false);
    g_actions.clear();
    SetSelectionLock(true, kLockBySticky, false);
    SetSelectionLock(false, kLockBySticky, false);
    EXPECT_EQ(Taken(), Lines{});
}

TEST_F(LaterHosts, TheAngleSnapIsSwitchedOnceWhereItsActionDiffers) {
    g_actions[40074] = {};
    SetStickySnap(kCommandSnapAngles, true);
    EXPECT_EQ(Taken(), Lines{"execute 40074"});
    SetStickySnap(kCommandSnapAngles, false);
    EXPECT_EQ(Taken(), Lines{"execute 40074"});
    g_actions[40074].checked = true;
    SetStickySnap(kCommandSnapAngles, true);
    EXPECT_EQ(Taken(), Lines{});
    SetStickySnap(kCommandSnapAngles, false);
    EXPECT_EQ(Taken(), Lines{"execute 40074"});
}

TEST_F(LaterHosts, AViewIsWhatTheHostCallsOne) {
    for (const HWND parent : {Make("ViewPanel"), Make("AnyPanel"), HWND{}}) {
        const HWND view = MakeView(parent);
        EXPECT_EQ(ClassifyWindow(view), kWindowViewport);
        g_locked_views.insert(view);
        EXPECT_EQ(ClassifyWindow(view), kWindowViewportLocked);
        g_views.erase(view);
        EXPECT_EQ(ClassifyWindow(view), kWindowOther);
    }
}

TEST_F(LaterHosts, AnEditorOfAnUnknownClassIsAnother) {
    EXPECT_EQ(ClassifyWindow(Make("UnwrapView")), kWindowUnwrapView);
    EXPECT_EQ(ClassifyWindow(Make("AnyCanvas", Make("AnyEditor"))), kWindowOther);
    EXPECT_EQ(ClassifyWindow(Make("TrackBar")), kWindowTrackBar);
}

TEST_F(LaterHosts, TheFocusGoesToAViewInAnyPanel) {
    g_main_window = Make("HostFrame");
    g_active_view = MakeView(Make("AnyPanel"));
    InstallViewportAutoFocus();
    g_settings.focusViewports = 1;
    const HWND panel = Make("OtherPanel");
    const HWND view = MakeView(panel);
    SetWindowPos(panel, HWND_TOPMOST, 0, 0, 100, 100, 0);
    SetCursorPos(50, 50);
    const auto shortcut = [] { SendMessageA(g_main_window, WM_COMMAND, MAKEWPARAM(1000, 1), 0); };
    shortcut();
    EXPECT_EQ(Taken(), Lines{"activate"});
    EXPECT_EQ(g_lastFocusedViewport, view);
    g_lastFocusedViewport = nullptr;
    g_views.erase(view);
    shortcut();
    EXPECT_EQ(Taken(), Lines{});
}

}  // namespace
