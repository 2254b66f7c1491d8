// What the plug-in makes of the host's windows, with real windows of every class and place: their
// kinds, the searches for buttons, the commands of the main window, the keys of the views, and
// moves over an open menu. The host behind the windows is played here.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "assists/brushes.h"
#include "input/input_records.h"
#include "navigation/modifier_cursor.h"
#include "host/host.h"
#include "navigation/gesture_state.h"
#include "navigation/view_drag.h"
#include "navigation/selection_moves.h"
#include "tests/plugin/host/played_views.h"
#include "tests/plugin/plugin_state.h"
#include "navigation/selection_clicks.h"
#include "hooks/viewport_focus.h"
#include "host/toolbar_controls.h"
#include "host/toolbars.h"
#include "host/window_kind.h"
#include "input/screen.h"
#include "script/poly_tools.h"
#include "hooks/arrow_key_filter.h"
#include "settings/plugin_settings.h"
#include "resources/module.h"

namespace {

// The played host.
std::map<HWND, bool> g_checked_buttons;
std::optional<bool> g_select_enabled;
std::vector<HWND> g_activated;
int g_mode = 0;

struct Message {
    HWND window;
    UINT message;
    WPARAM wparam;
    LPARAM lparam;
    friend bool operator==(const Message&, const Message&) = default;
};
std::vector<Message> g_messages;
constexpr LRESULT kAnswer = 42;

void PrintTo(const Message& message, std::ostream* out) {
    *out << message.message << ' ' << message.wparam << ' ' << message.lparam;
}

bool IsWatched(UINT message) {
    return message == WM_DISPLAYCHANGE || message == WM_COMMAND || message == WM_NOTIFY ||
           message == WM_CHAR || message == WM_KEYDOWN || message == WM_KEYUP ||
           message == WM_MOUSEMOVE || message == WM_LBUTTONDOWN || message == WM_LBUTTONUP;
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (!IsWatched(message)) return DefWindowProcA(window, message, wparam, lparam);
    g_messages.push_back({window, message, wparam, lparam});
    return kAnswer;
}

// The same procedure at an address between these two.
WNDPROC ProcedureBetween(ULONG_PTR first, ULONG_PTR last) {
    void* place = nullptr;
    for (ULONG_PTR address = first; !place && address < last; address += 0x1000000)
        place = VirtualAlloc(reinterpret_cast<void*>(address), 0x1000, MEM_RESERVE | MEM_COMMIT,
                             PAGE_EXECUTE_READWRITE);
    if (!place) return nullptr;
    // mov rax, Procedure; jmp rax
    const ULONG_PTR target = reinterpret_cast<ULONG_PTR>(Procedure);
    auto* code = static_cast<unsigned char*>(place);
    code[0] = 0x48;
    code[1] = 0xB8;
    for (int i = 0; i < 8; ++i)
        code[2 + i] = static_cast<unsigned char>(target >> (8 * i));
    code[10] = 0xFF;
    code[11] = 0xE0;
    return reinterpret_cast<WNDPROC>(place);
}

// At an address that 32 bits hold, as those of the hosts of that time were.
WNDPROC ProcedureBelowTwoGibibytes() {
    static const WNDPROC low = ProcedureBetween(0x20000000, 0x70000000);
    return low;
}

// What is passed on to an earlier procedure: carried out, or only noted.
bool g_only_note_calls = false;
WNDPROC g_called_procedure = nullptr;

LRESULT WINAPI PlayedCallWindowProc(WNDPROC procedure, HWND window, UINT message, WPARAM wparam,
                                    LPARAM lparam) {
    using Call = LRESULT(WINAPI*)(WNDPROC, HWND, UINT, WPARAM, LPARAM);
    static const auto call = reinterpret_cast<Call>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("user32.dll"), "CallWindowProcA")));
    if (!g_only_note_calls) return call(procedure, window, message, wparam, lparam);
    g_called_procedure = procedure;
    return kAnswer;
}

int g_screen_width = 1600;

int WINAPI PlayedMetrics(int index) {
    return index == SM_CXVIRTUALSCREEN ? g_screen_width : 1200;
}

}  // namespace

// The import slots of Win32 calls that are looked at.
extern "C" {
void* __imp_GetSystemMetrics = reinterpret_cast<void*>(PlayedMetrics);
void* __imp_CallWindowProcA = reinterpret_cast<void*>(PlayedCallWindowProc);
}

extern HWND g_lastFocusedViewport;
PluginSettings g_settings;
int g_hostRelease = 13900;

void ShowArrowCursor() {}
HCURSOR ChooseModifierCursor() {
    return LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_CROSS));
}

namespace host {

void RunScript(char*) {}
void SetActiveViewport(HWND window) {
    g_activated.push_back(window);
}
std::optional<int> CurrentModeId() {
    return g_mode;
}
void PushStandardMode(int) {}
void PopModeIfStacked() {}
int SelectedNodeCount() {
    return 0;
}
bool IsSubObjectEditing() {
    return false;
}
void BeginUndoRecord() {}
void AcceptUndoRecord(const char*) {}
void CancelUndoRecord() {}
std::optional<bool> IsToolbarButtonEnabled(int id) {
    EXPECT_EQ(id, 50027);
    return g_select_enabled;
}
std::optional<int> ButtonFlyout(HWND) {
    return std::nullopt;
}
void ChooseButtonFlyout(HWND, int) {}
std::optional<bool> IsButtonChecked(HWND button) {
    const auto found = g_checked_buttons.find(button);
    if (found == g_checked_buttons.end()) return std::nullopt;
    return found->second;
}

}  // namespace host

namespace {

class HostWindows : public testing::Test {
protected:
    void SetUp() override {
        ForgetPlayedViews();
        g_checked_buttons.clear();
        g_activated.clear();
        g_messages.clear();
        g_mode = host::kModeMove;
        g_settings = {};
        g_hostRelease = 13900;
        g_lastFocusedViewport = nullptr;
        g_activeToolButton = nullptr;
        g_searchCtrlId = 0;
        g_searchText[0] = '\0';
    }

    void TearDown() override {
        for (const HWND window : windows_)
            if (IsWindow(window)) DestroyWindow(window);
        for (const std::string& name : classes_)
            UnregisterClassA(name.c_str(), nullptr);
    }

    // A visible window of a class of this name; without a parent a top-level one.
    HWND Make(const char* class_name, HWND parent = nullptr, int id = 0, const char* text = "",
              WNDPROC procedure = Procedure) {
        if (!classes_.contains(class_name)) {
            WNDCLASSA description{};
            description.lpfnWndProc = procedure;
            description.lpszClassName = class_name;
            EXPECT_NE(RegisterClassA(&description), 0) << class_name;
            classes_.insert(class_name);
        }
        const DWORD style = (parent ? WS_CHILD : WS_POPUP) | WS_VISIBLE;
        const HWND window =
            CreateWindowExA(0, class_name, text, style, 0, 0, 100, 100, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
        EXPECT_NE(window, nullptr) << class_name;
        windows_.push_back(window);
        return window;
    }

    HWND MakeView(HWND parent, const char* class_name = "AnyView", WNDPROC procedure = Procedure) {
        const HWND window = Make(class_name, parent, 0, "", procedure);
        g_views[window] = window;
        return window;
    }

    HWND Search(WNDENUMPROC callback, HWND where, int id, const char* text = "") {
        g_searchCtrlId = id;
        lstrcpynA(g_searchText, text, static_cast<int>(sizeof g_searchText));
        HWND found = nullptr;
        EnumChildWindows(where, callback, reinterpret_cast<LPARAM>(&found));
        return found;
    }

private:
    std::vector<HWND> windows_;
    std::set<std::string> classes_;
};

const bool g_nothing_was_kept = g_searchCtrlId == 0 && g_searchText[0] == '\0' &&
                                !g_activeToolButton && g_pendingSculptButton == 0 && !g_viewPanel &&
                                !g_lastFocusedViewport;

TEST_F(HostWindows, NothingIsKeptFromTheLoadingOn) {
    EXPECT_TRUE(g_nothing_was_kept);
}

TEST_F(HostWindows, KindsGoByWholeClassNames) {
    EXPECT_EQ(ClassifyWindow(Make("TrackBar")), kWindowTrackBar);
    EXPECT_EQ(ClassifyWindow(Make("UnwrapView")), kWindowUnwrapView);
    EXPECT_EQ(ClassifyWindow(Make("SVGraphWindow")), kWindowSchematicGraph);
    EXPECT_EQ(ClassifyWindow(Make("TVTrackWindow")), kWindowTrackView);
    for (const char* longer : {"TrackBar2", "UnwrapViewX", "SVGraphWindow_", "TVTrackWindow1"})
        EXPECT_EQ(ClassifyWindow(Make(longer)), kWindowOther) << longer;
}

TEST_F(HostWindows, KindsGoByTheLettersCase) {
    for (const char* other_case : {"Trackbar", "UNWRAPVIEW", "svgraphwindow", "TvTrackWindow"})
        EXPECT_EQ(ClassifyWindow(Make(other_case)), kWindowOther) << other_case;
}

TEST_F(HostWindows, AViewIsOneOnlyInTheViewPanel) {
    const HWND panel = Make("ViewPanel");
    const HWND view = MakeView(panel);
    EXPECT_EQ(ClassifyWindow(view), kWindowViewport);
    g_locked_views.insert(view);
    EXPECT_EQ(ClassifyWindow(view), kWindowViewportLocked);
    EXPECT_EQ(ClassifyWindow(MakeView(Make("ViewPanelX"))), kWindowOther);
    EXPECT_EQ(ClassifyWindow(MakeView(nullptr)), kWindowOther);
}

TEST_F(HostWindows, WhatTheHostHasNoViewForIsLookedAtFurther) {
    const HWND panel = Make("ViewPanel");
    EXPECT_EQ(ClassifyWindow(Make("AnyView", panel)), kWindowOther);
    EXPECT_EQ(ClassifyWindow(Make("UnwrapView", panel)), kWindowUnwrapView);
}

TEST_F(HostWindows, TheTrackBarComesBeforeTheViewsAndTheyBeforeTheEditors) {
    const HWND panel = Make("ViewPanel");
    EXPECT_EQ(ClassifyWindow(MakeView(panel, "TrackBar")), kWindowTrackBar);
    for (const char* editor : {"UnwrapView", "SVGraphWindow", "TVTrackWindow"})
        EXPECT_EQ(ClassifyWindow(MakeView(panel, editor)), kWindowViewport) << editor;
}

MouseEvent PressIn(HWND window) {
    return {{WM_RBUTTONDOWN, window, {}, HTCLIENT}, {}, kWindowViewport};
}

TEST_F(HostWindows, ABrushIsLookedForInItsPanelOnly) {
    g_main_window = Make("Main");
    const HWND elsewhere = Make("CustButton", Make("Elsewhere"), 1007, "Paint");
    g_checked_buttons[elsewhere] = true;
    const HWND view = Make("View");
    SuspendToolForView(PressIn(view), host::kModeZoomView);
    EXPECT_EQ(g_activeToolButton, nullptr);

    const HWND panel = Make("Panel", g_main_window, 0, "VertexPaint");
    const HWND button = Make("CustButton", Make("Page", panel), 1007, "Paint");
    g_checked_buttons[button] = true;
    SuspendToolForView(PressIn(view), host::kModeZoomView);
    EXPECT_EQ(g_activeToolButton, button);
}

// The button that a drag in a view would click again.
HWND BrushInUse(HWND view) {
    g_activeToolButton = nullptr;
    SuspendToolForView(PressIn(view), host::kModeZoomView);
    return g_activeToolButton;
}

TEST_F(HostWindows, BrushesAreFoundByNumberAndCaption) {
    constexpr int kPainterMode = 0x4F298C8B;
    struct Brush {
        const char* panel;
        int mode;
        int id;
        const char* caption;  // empty: any
    };
    const Brush brushes[] = {
        {"Command Panel", kPainterMode, 4184, "Push/Pull"},
        {"Command Panel", kPainterMode, 4185, "Relax"},
        {"Command Panel", kPainterMode, 4186, "Revert"},
        {"VertexPaint", host::kModeMove, 1007, "Paint"},
        {"VertexPaint", host::kModeMove, 1008, "Erase"},
        {"VertexPaint", host::kModeMove, 1009, ""},
        {"VertexPaint", host::kModeMove, 1077, ""},
    };
    const HWND view = Make("View");
    for (const Brush& brush : brushes) {
        g_main_window = Make("Main");
        const HWND page = Make("Page", Make("Panel", g_main_window, 0, brush.panel));
        for (const char* caption : {brush.caption, "Another"}) {
            const HWND button = Make("CustButton", page, brush.id, caption);
            g_checked_buttons = {{button, true}};
            const bool wanted = caption == brush.caption || !brush.caption[0];
            g_mode = brush.mode;
            EXPECT_EQ(BrushInUse(view), wanted ? button : nullptr) << brush.id << caption;
            // The first panel counts in the painter's mode alone.
            g_mode = 5;
            EXPECT_EQ(BrushInUse(view), wanted && brush.mode != kPainterMode ? button : nullptr)
                << brush.id << caption;
            g_checked_buttons[button] = false;
            g_mode = brush.mode;
            EXPECT_EQ(BrushInUse(view), nullptr) << brush.id << caption;
            DestroyWindow(button);
        }
    }
}

TEST_F(HostWindows, OfSeveralBrushesTheOneWithTheLowestNumberCounts) {
    g_main_window = Make("Main");
    const HWND view = Make("View");
    const HWND page = Make("Page", Make("Panel", g_main_window, 0, "VertexPaint"));
    HWND lower = nullptr;
    for (const int id : {1077, 1009, 1008, 1007}) {
        lower = Make("CustButton", page, id, id == 1007 ? "Paint" : "Erase");
        g_checked_buttons[lower] = true;
        EXPECT_EQ(BrushInUse(view), lower) << id;
    }
}

TEST_F(HostWindows, WhatADragBeforeHasLeftIsForgottenOutsideOfThePaintersMode) {
    g_main_window = Make("Main");
    const HWND view = Make("View");
    const HWND left = Make("CustButton", g_main_window, 4184, "Push/Pull");
    g_activeToolButton = left;
    SuspendToolForView(PressIn(view), host::kModeZoomView);
    EXPECT_EQ(g_activeToolButton, nullptr);
    g_mode = 0x4F298C8B;
    g_activeToolButton = left;
    SuspendToolForView(PressIn(view), host::kModeZoomView);
    EXPECT_EQ(g_activeToolButton, left);
}

TEST_F(HostWindows, TheHostIsAskedForAWindowWithoutParentToo) {
    const HWND window = Make("Alone");
    g_view_questions = 0;
    EXPECT_EQ(ClassifyWindow(window), kWindowOther);
    EXPECT_EQ(g_view_questions, 1);
}

TEST_F(HostWindows, NullIsTheWindowUnderTheCursor) {
    const HWND below = Make("TVTrackWindow");
    const HWND focused = Make("UnwrapView");
    SetWindowPos(focused, nullptr, 300, 300, 50, 50, SWP_NOZORDER);
    SetFocus(focused);
    SetCapture(focused);
    SetWindowPos(below, HWND_TOPMOST, 0, 0, 100, 100, 0);
    SetCursorPos(50, 50);
    EXPECT_EQ(ClassifyWindow(nullptr), kWindowTrackView);
    ReleaseCapture();
}

TEST_F(HostWindows, AWindowThatIsGoneIsNoKind) {
    for (const char* name : {"TrackBar", "UnwrapView", "SVGraphWindow", "TVTrackWindow"}) {
        const HWND window = Make(name);
        const HWND gone = Make(name);
        DestroyWindow(gone);
        // One right behind the other: the name of the one must not be taken for the other's.
        const WindowKind kind = ClassifyWindow(window);
        const WindowKind kind_of_gone = ClassifyWindow(gone);
        EXPECT_NE(kind, kWindowOther) << name;
        EXPECT_EQ(kind_of_gone, kWindowOther) << name;
    }
}

TEST_F(HostWindows, CustomButtonsAreFoundDepthFirst) {
    const HWND frame = Make("Frame");
    const HWND upper = Make("Bar", Make("Bar", Make("Bar", frame)));
    // Below the same bar, and deeper.
    Make("CustButton", Make("Bar", upper), 7);
    const HWND wanted = Make("CustButton", upper, 7);
    Make("CustButton", Make("Bar", frame), 7);
    EXPECT_EQ(Search(FindCustButtonById, frame, 7), wanted);
    EXPECT_EQ(Search(FindCustButtonById, frame, 8), nullptr);
}

TEST_F(HostWindows, AnItemOfAnotherClassHidesTheButtonsBelowIt) {
    const HWND bar = Make("Bar", Make("Frame"));
    Make("Plain", bar, 7);
    Make("CustButton", Make("Bar", bar), 7);
    g_searchCtrlId = 7;
    HWND found = nullptr;
    EXPECT_TRUE(FindCustButtonById(bar, reinterpret_cast<LPARAM>(&found)));
    EXPECT_EQ(found, nullptr);
}

TEST_F(HostWindows, ButtonsAreFoundByIdAndWholeText) {
    const HWND frame = Make("Frame");
    const HWND longer = Make("Plain", Make("Bar", frame), 7, "Relax all");
    const HWND lower = Make("Plain", Make("Bar", frame), 7, "relax");
    const HWND wanted = Make("Plain", Make("Bar", frame), 7, "Relax");
    EXPECT_EQ(Search(FindButtonByIdAndText, frame, 7, "Relax"), wanted);
    EXPECT_EQ(Search(FindButtonByIdAndText, frame, 7, "relax"), lower);
    EXPECT_EQ(Search(FindButtonByIdAndText, frame, 7, "Revert"), nullptr);
    EXPECT_EQ(Search(FindButtonByIdAndText, frame, 9), nullptr);
    // Without a text the first one will do.
    EXPECT_EQ(Search(FindButtonByIdAndText, frame, 7), longer);
}

TEST_F(HostWindows, TheSearchByTextDoesNotDescendByItself) {
    const HWND bar = Make("Bar", Make("Frame"));
    Make("Plain", Make("Bar", bar), 7);
    g_searchCtrlId = 7;
    HWND found = nullptr;
    EXPECT_TRUE(FindButtonByIdAndText(bar, reinterpret_cast<LPARAM>(&found)));
    EXPECT_EQ(found, nullptr);
}

TEST_F(HostWindows, TheOwnViewButtonsArePressedWhenTheirStateDiffers) {
    const HWND frame = Make("Frame");
    const HWND view = Make("AnyView", Make("Bar", frame));
    const HWND tools = Make("Bar", frame);
    const HWND pan = Make("CustButton", tools, 1, "Any caption");
    const HWND zoom = Make("CustButton", tools, 2);
    g_checked_buttons = {{pan, false}, {zoom, false}};
    g_activeToolButton = tools;

    PressViewButton(view, 200, false);
    EXPECT_TRUE(g_messages.empty());
    EXPECT_EQ(g_activeToolButton, tools);

    PressViewButton(view, 200, true);
    EXPECT_EQ(g_messages,
              (std::vector<Message>{{zoom, WM_LBUTTONDOWN, 1, 0}, {zoom, WM_LBUTTONUP, 1, 0}}));
    EXPECT_EQ(g_activeToolButton, nullptr);
    EXPECT_STREQ(g_searchText, "Zoom");

    g_messages.clear();
    PressViewButton(view, 202, true);
    EXPECT_EQ(g_messages,
              (std::vector<Message>{{pan, WM_LBUTTONDOWN, 1, 0}, {pan, WM_LBUTTONUP, 1, 0}}));
    EXPECT_STREQ(g_searchText, "Pan");

    // A button that the host knows nothing of is none.
    g_messages.clear();
    g_checked_buttons.clear();
    PressViewButton(view, 200, true);
    EXPECT_TRUE(g_messages.empty());
}

// The size is asked once a drag; the screen may change in it.
TEST_F(HostWindows, AChangeOfTheScreenIsHeardOfInADrag) {
    g_main_window = Make("HostFrame");
    InstallViewportAutoFocus();
    ForgetScreenSize();
    EXPECT_EQ(ScreenSize().x, 1600);
    g_screen_width = 1000;
    SendMessageA(g_main_window, WM_DEVMODECHANGE, 0, 0);
    EXPECT_EQ(ScreenSize().x, 1600);
    SendMessageA(g_main_window, WM_DISPLAYCHANGE, 32, MAKELPARAM(1000, 1200));
    EXPECT_EQ(ScreenSize().x, 1000);
    EXPECT_EQ(g_messages.back(),
              (Message{g_main_window, WM_DISPLAYCHANGE, 32, MAKELPARAM(1000, 1200)}));
    g_screen_width = 1600;
}

// A second start may come when the host has no main window any more.
TEST_F(HostWindows, WithoutAMainWindowTheProcedureBeforeStaysKnown) {
    const HWND frame = Make("HostFrame");
    g_main_window = frame;
    InstallViewportAutoFocus();
    g_main_window = nullptr;
    InstallViewportAutoFocus();
    EXPECT_EQ(SendMessageA(frame, WM_NOTIFY, 7, 8), kAnswer);
    EXPECT_EQ(g_messages, (std::vector<Message>{{frame, WM_NOTIFY, 7, 8}}));
}

TEST_F(HostWindows, OnlyShortcutsMoveTheFocus) {
    g_main_window = Make("HostFrame");
    const HWND panel = Make("ViewPanel");
    const HWND view = MakeView(panel);
    g_active_view = view;
    SetWindowPos(panel, HWND_TOPMOST, 0, 0, 100, 100, 0);
    SetCursorPos(50, 50);
    InstallViewportAutoFocus();
    EXPECT_EQ(g_viewPanel, panel);
    g_settings.focusViewports = 1;

    const auto send = [](UINT message, int id, int code) {
        g_messages.clear();
        const WPARAM wparam = MAKEWPARAM(id, code);
        EXPECT_EQ(SendMessageA(g_main_window, message, wparam, 5), kAnswer);
        EXPECT_EQ(g_messages, (std::vector<Message>{{g_main_window, message, wparam, 5}}));
    };
    // A menu's entry, a control's notification, another message.
    send(WM_COMMAND, 1000, 0);
    send(WM_COMMAND, 1000, 2);
    send(WM_NOTIFY, 1000, 1);
    EXPECT_TRUE(g_activated.empty());
    send(WM_COMMAND, 1000, 1);
    EXPECT_EQ(g_activated, std::vector<HWND>{view});
    // They do not count as the second shortcut over the view either.
    send(WM_COMMAND, 1000, 0);
    EXPECT_EQ(g_lastFocusedViewport, view);
}

TEST_F(HostWindows, AViewMetTwiceGetsOneFilter) {
    ASSERT_NE(ProcedureBelowTwoGibibytes(), nullptr);
    const HWND panel = Make("ViewPanel");
    const HWND view = MakeView(panel, "LowView", ProcedureBelowTwoGibibytes());
    const HWND inner = Make("Inner", view);
    g_views[inner] = view;
    g_active_view = view;
    g_hostRelease = 6999;
    const LONG_PTR before = GetWindowLongPtrA(view, GWLP_WNDPROC);
    const LONG_PTR inner_before = GetWindowLongPtrA(inner, GWLP_WNDPROC);
    InstallViewportKeyFilters();
    EXPECT_NE(GetWindowLongPtrA(view, GWLP_WNDPROC), before);
    EXPECT_EQ(GetWindowLongPtrA(inner, GWLP_WNDPROC), inner_before);

    g_settings.useMayaStyle = 1;
    EXPECT_EQ(SendMessageA(view, WM_KEYDOWN, VK_LEFT, 0), 0);
    EXPECT_TRUE(g_messages.empty());
    // Filtered twice, it would pass the message to itself without end.
    EXPECT_EQ(SendMessageA(view, WM_KEYDOWN, VK_PRIOR, 0), kAnswer);
    EXPECT_EQ(g_messages, (std::vector<Message>{{view, WM_KEYDOWN, VK_PRIOR, 0}}));
}

TEST_F(HostWindows, CharactersPassTheFilter) {
    ASSERT_NE(ProcedureBelowTwoGibibytes(), nullptr);
    const HWND view = MakeView(Make("ViewPanel"), "LowView", ProcedureBelowTwoGibibytes());
    g_active_view = view;
    g_hostRelease = 6000;
    InstallViewportKeyFilters();
    g_settings.useMayaStyle = 1;
    // The character of the same number as the key to the left.
    EXPECT_EQ(SendMessageA(view, WM_CHAR, VK_LEFT, 0), kAnswer);
    for (const int key : {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN}) {
        EXPECT_EQ(SendMessageA(view, WM_KEYDOWN, static_cast<WPARAM>(key), 0), 0);
        EXPECT_EQ(SendMessageA(view, WM_KEYUP, static_cast<WPARAM>(key), 0), 0);
    }
    EXPECT_EQ(g_messages, (std::vector<Message>{{view, WM_CHAR, VK_LEFT, 0}}));
}

// A host of that time has its code below two gibibytes, so nothing is lost there.
TEST_F(HostWindows, TheFilterKeeps32BitsOfTheEarlierProcedure) {
    g_hostRelease = 6999;
    const WNDPROC procedures[] = {ProcedureBetween(0x720000000, 0x770000000),
                                  ProcedureBetween(0x90000000, 0xF0000000)};
    for (const WNDPROC procedure : procedures) {
        ASSERT_NE(procedure, nullptr);
        const HWND view = MakeView(Make("ViewPanel"), "FarView");
        const LONG_PTR before = GetWindowLongPtrA(view, GWLP_WNDPROC);
        SetWindowLongPtrA(view, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
        g_active_view = view;
        InstallViewportKeyFilters();
        g_only_note_calls = true;
        EXPECT_EQ(SendMessageA(view, WM_KEYDOWN, VK_PRIOR, 0), kAnswer);
        SetWindowLongPtrA(view, GWLP_WNDPROC, before);
        g_only_note_calls = false;
        // As a signed number of 32 bits.
        EXPECT_EQ(reinterpret_cast<LONG_PTR>(g_called_procedure),
                  static_cast<int>(reinterpret_cast<LONG_PTR>(procedure)));
    }
}

TEST_F(HostWindows, MovesOverAnOpenMenuAreTheHosts) {
    const HWND view = MakeView(Make("ViewPanel"));
    g_settings.customSelectionCursors = 1;
    const MouseEvent event = {{WM_MOUSEMOVE, view, {20, 30}, HTCLIENT}, {20, 30}, kWindowViewport};
    g_selCtrl = 1;  // a click is replayed, so every move matters but these
    EXPECT_FALSE(MayMoveSelect(HTMENU));
    EXPECT_TRUE(MayMoveSelect(HTCLIENT));
    g_selCtrl = 0;
    EXPECT_EQ(EmulateSelectingMove(event), Answer::kConsumed);
    EXPECT_EQ(g_messages, (std::vector<Message>{{view, WM_MOUSEMOVE, 0, MAKELPARAM(20, 30)}}));
}

TEST_F(HostWindows, ToolbarButtonsAreKnownByTheirClass) {
    EXPECT_EQ(host::IsToolbarButton(Make("CustButton")), true);
    for (const char* other : {"CustButto", "CustButtonA", "CustButtonBehindItsEnd"})
        EXPECT_EQ(host::IsToolbarButton(Make(other)), false) << other;
    EXPECT_EQ(host::IsToolbarButton(nullptr), false);
}

TEST_F(HostWindows, ToolbarButtonsAreKnownByTheLettersCase) {
    EXPECT_EQ(host::IsToolbarButton(Make("custbutton")), false);
}

TEST_F(HostWindows, StatesAreThoseOfTheButtons) {
    g_main_window = Make("Main");
    FindToolbarControls();
    EXPECT_EQ(host::IsLockOn(), std::nullopt);
    EXPECT_FALSE(host::IsAngleSnapOn());
    const HWND bar = Make("CustToolbar", g_main_window);
    const HWND lock = Make("CustButton", bar, 59231);
    const HWND snap = Make("CustButton", bar, 40074);
    FindToolbarControls();
    // Buttons that the host does not know as such.
    EXPECT_EQ(host::IsLockOn(), false);
    EXPECT_FALSE(host::IsAngleSnapOn());
    for (const bool on : {true, false}) {
        g_checked_buttons = {{lock, on}, {snap, !on}};
        EXPECT_EQ(host::IsLockOn(), on);
        EXPECT_EQ(host::IsAngleSnapOn(), !on);
    }
    for (const std::optional<bool> enabled : {std::optional<bool>(true), {false}, {}}) {
        g_select_enabled = enabled;
        EXPECT_EQ(host::IsSelectEnabled(), enabled);
    }
}

// What a search for one control finds, as the system and the search's own rules have it.
HWND FoundAlone(int id) {
    HWND found = nullptr;
    g_searchCtrlId = id;
    EnumChildWindows(g_main_window, FindButtonByIdAndText, reinterpret_cast<LPARAM>(&found));
    return found;
}

// The one pass over thousands of windows finds what four searches find, wherever controls of one
// number stand: beside each other, within each other, in the main window itself.
TEST_F(HostWindows, OnePassFindsWhatFourSearchesFind) {
    constexpr int kIds[] = {59231, 40074, 50021, 50016};
    std::mt19937 random(20121);
    const auto up_to = [&random](size_t limit) { return random() % limit; };
    for (int tree = 0; tree < 40; ++tree) {
        SCOPED_TRACE(tree);
        g_main_window = Make("Main");
        g_searchText[0] = '\0';
        std::vector<HWND> windows = {g_main_window};
        for (int i = 0; i < 40; ++i) {
            const int id = up_to(3) == 0 ? kIds[up_to(4)] : 100 + i;
            windows.push_back(
                Make("Part", windows[up_to(windows.size())], id, up_to(2) ? "Lock" : "Free"));
        }
        for (const char* text : {"", "Lock"}) {
            lstrcpynA(g_searchText, text, static_cast<int>(sizeof g_searchText));
            std::vector<HWND> alone;
            for (int id : kIds)
                alone.push_back(FoundAlone(id));
            g_searchCtrlId = 0;
            FindToolbarControls();
            EXPECT_EQ((std::vector<HWND>{g_lockButton, g_angleSnapButton, g_button50021,
                                         g_zoomExtentsButton}),
                      alone);
            EXPECT_EQ(g_searchCtrlId, 50016);
        }
        g_searchText[0] = '\0';
    }
}

}  // namespace
