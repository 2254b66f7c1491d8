// What the stand-in host does by itself when it is worked like the real one.
#include <gtest/gtest.h>
#include <windows.h>

#include <cmath>
#include <string>
#include <vector>

#include "standin/engine/engine_api.h"
#include "standin/engine/intercept/faults.h"
#include "standin/engine/input/input.h"
#include "standin/engine/input/control.h"
#include "standin/engine/world/world.h"
#include "standin/engine/world/internal.h"

namespace {

using world::Vector;

class WorldTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static const std::string problem =
            input::Open(input::Kind::kVirtual, input::NewDesktopName(), 1280, 1024);
        ASSERT_EQ(problem, "");
    }
    void SetUp() override { world::Create({}); }
    void TearDown() override {
        if (input::KeyDown(VK_MENU)) Alt(false);
        world::Destroy();
        world::g_plugin_calls = nullptr;
        world::g_script_calls = nullptr;
    }

    static void Alt(bool down) {
        input::InjectKey(VK_MENU, down);
        input::Drain();
    }
};

LRESULT Mouse(const std::string& window, UINT message, WPARAM flags, int x, int y) {
    return SendMessageA(world::Find(window), message, flags, MAKELPARAM(x, y));
}

void LeftDrag(const std::string& window, POINT from, POINT to, WPARAM flags = 0) {
    Mouse(window, WM_LBUTTONDOWN, flags, from.x, from.y);
    Mouse(window, WM_MOUSEMOVE, MK_LBUTTON | flags, (from.x + to.x) / 2, (from.y + to.y) / 2);
    Mouse(window, WM_MOUSEMOVE, MK_LBUTTON | flags, to.x, to.y);
    Mouse(window, WM_LBUTTONUP, flags, to.x, to.y);
}

eng_view& View(const std::string& name) {
    return *world::ViewOf(world::Find(name));
}

eng_node& Node(const std::string& name) {
    eng_node* node = world::FindNode(name);
    EXPECT_NE(node, nullptr) << name;
    return *node;
}

world::Projected PivotIn(const std::string& view, const std::string& node) {
    return world::Project(world::BasisOf(View(view)), world::NodePosition(Node(node)));
}

POINT BodyIn(const std::string& view, const std::string& node) {
    const auto p = world::Project(world::BasisOf(View(view)), world::NodeCenter(Node(node)));
    return {std::lround(p.x), std::lround(p.y)};
}

void Click(const std::string& view, POINT at, WPARAM flags = 0) {
    Mouse(view, WM_LBUTTONDOWN, MK_LBUTTON | flags, at.x, at.y);
    Mouse(view, WM_LBUTTONUP, flags, at.x, at.y);
}

std::string Only(std::string_view what, std::string_view argument = {}) {
    const std::vector<std::string> lines = world::Show(what, argument);
    return lines.size() == 1 ? lines[0] : "(" + std::to_string(lines.size()) + " lines)";
}

const char* const kViews[] = {"viewport.top", "viewport.front", "viewport.user", "viewport.persp"};

// --- windows ---

TEST_F(WorldTest, ViewportsAreLargeAndHaveTheViewPanelAsParent) {
    for (const char* name : kViews) {
        const HWND window = world::Find(name);
        RECT client{};
        GetClientRect(window, &client);
        EXPECT_GE(client.right, 400) << name;
        EXPECT_GE(client.bottom, 300) << name;
        EXPECT_EQ(GetParent(window), world::Find("viewpanel"));
        EXPECT_EQ(world::Of(window), name);
    }
    char text[64];
    GetClassNameA(world::Find("viewpanel"), text, sizeof text);
    EXPECT_STREQ(text, "ViewPanel");
}

std::string ClassOf(HWND window) {
    char text[64] = "";
    GetClassNameA(window, text, sizeof text);
    return text;
}

// A new world of the host of a release.
void CreateOf(int release) {
    static eng_plugin_calls calls{};
    calls.release = release;
    eng_register_plugin_calls(&calls);
    world::Create({});
}

TEST_F(WorldTest, ViewportsLieInAWindowOfAnotherClassInLaterHosts) {
    CreateOf(17000);
    EXPECT_NE(ClassOf(world::Find("viewpanel")), "ViewPanel");
    for (const char* name : kViews)
        EXPECT_EQ(GetParent(world::Find(name)), world::Find("viewpanel")) << name;
    EXPECT_EQ(ClassOf(world::Find("button.50027")), "CustButton");
    EXPECT_EQ(eng_table_action(eng_find_table(0), 50027), nullptr);
    eng_button* const button = eng_toolbar_button(50027);
    EXPECT_NE(button, nullptr);
    eng_release_button(button);
}

TEST_F(WorldTest, NothingOfADrawnToolbarIsAButtonThatCouldBeFound) {
    CreateOf(20000);
    EXPECT_EQ(world::MissingWindow(), "");
    for (const int id : {50027, 40074, 50021, 50016, 59231}) {
        const HWND window = world::Find("button." + std::to_string(id));
        EXPECT_NE(ClassOf(window), "CustButton");
        EXPECT_EQ(GetDlgItem(GetParent(window), id), nullptr);
        EXPECT_EQ(eng_button_of(window), nullptr);
        EXPECT_EQ(eng_toolbar_button(id), nullptr);
    }
    EXPECT_EQ(ClassOf(world::Find("brush.4184")), "CustButton");
    eng_button* const brush = eng_button_of(world::Find("brush.4184"));
    EXPECT_NE(brush, nullptr);
    eng_release_button(brush);
    EXPECT_TRUE(world::Leaks().empty());
}

TEST_F(WorldTest, ActionsTellTheStatesOfDrawnButtons) {
    CreateOf(20000);
    eng_table* const table = eng_find_table(0);
    for (const int id : {50027, 40074, 50021, 59231}) {
        eng_action* const action = eng_table_action(table, id);
        ASSERT_NE(action, nullptr) << id;
        world::CheckButton(id, true);
        EXPECT_TRUE(eng_action_is_checked(action)) << id;
        world::EnableButton(id, false);
        EXPECT_FALSE(eng_action_is_enabled(action)) << id;
        world::EnableButton(id, true);
        EXPECT_TRUE(eng_action_is_enabled(action)) << id;
        world::PlaceButton(id, false);
        EXPECT_EQ(eng_table_action(table, id), nullptr) << id;
        world::PlaceButton(id, true);
        EXPECT_EQ(eng_table_action(table, id), action) << id;
    }
    // What is drawn is clicked by users, and by nobody's messages.
    SendMessageA(world::Find("button.59231"), BM_CLICK, 0, 0);
    EXPECT_TRUE(eng_action_is_checked(eng_table_action(table, 59231)));
    Mouse("button.59231", WM_LBUTTONDOWN, 1, 3, 3);
    Mouse("button.59231", WM_LBUTTONUP, 0, 3, 3);
    EXPECT_FALSE(eng_action_is_checked(eng_table_action(table, 59231)));
    eng_push_standard_mode(1);
    eng_action_execute(eng_table_action(table, 50027));
    EXPECT_EQ(world::ModeId(), 6);
}

TEST_F(WorldTest, AWindowThatIsNotThereIsNamed) {
    EXPECT_EQ(world::MissingWindow(), "");
    for (const char* name : {"button.50016", "button.59231", "viewport.persp", "trackbar"}) {
        DestroyWindow(world::Find(name));
        EXPECT_EQ(world::MissingWindow(), name);
    }
}

TEST_F(WorldTest, AButtonWhoseToolbarWasNotMadeIsNamed) {
    DestroyWindow(world::Find("button.40074"));
    world::FindButton(40074)->parent = nullptr;
    EXPECT_EQ(world::MissingWindow(), "button.40074");
}

TEST_F(WorldTest, ViewportProceduresLieBelowTwoGibibytes) {
    for (const char* name : kViews) {
        const LONG_PTR procedure = GetWindowLongPtrA(world::Find(name), GWLP_WNDPROC);
        EXPECT_GT(procedure, 0);
        EXPECT_LT(procedure, 0x80000000LL);
        EXPECT_EQ(CallWindowProcA(
                      reinterpret_cast<WNDPROC>(static_cast<INT_PTR>(static_cast<int>(procedure))),
                      world::Find(name), WM_ERASEBKGND, 0, 0),
                  1);
    }
}

TEST_F(WorldTest, ButtonsLieInAToolbarOrPageBetween) {
    struct Row {
        int id;
        const char* panel;
        int between;  // windows between the button and the panel
        const char* text;
    };
    world::OpenWindow("vertexpaint");
    const Row rows[] = {{59231, "main", 1, ""},
                        {40074, "main", 1, ""},
                        {50021, "main", 1, ""},
                        {50027, "main", 1, ""},
                        {4184, "commandpanel", 2, "Push/Pull"},
                        {4185, "commandpanel", 2, "Relax"},
                        {4186, "commandpanel", 2, "Revert"},
                        {1007, "vertexpaint", 1, "Paint"},
                        {1008, "vertexpaint", 1, "Erase"}};
    for (const Row& row : rows) {
        const eng_button* button = world::FindButton(row.id);
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(GetDlgItem(GetParent(button->window), row.id), button->window);
        HWND panel = GetParent(button->window);
        for (int i = 0; i < row.between; ++i)
            panel = GetParent(panel);
        EXPECT_EQ(panel, world::Find(row.panel)) << row.id;
        char text[64] = "";
        GetWindowTextA(button->window, text, sizeof text);
        EXPECT_STREQ(text, row.text);
        GetClassNameA(button->window, text, sizeof text);
        EXPECT_STREQ(text, "CustButton");
    }
    const HWND flyout = world::FindButton(50016)->window;
    EXPECT_EQ(GetParent(GetParent(GetParent(flyout))), world::Find("main"));
    EXPECT_EQ(FindWindowExA(world::Find("main"), nullptr, nullptr, "Command Panel"),
              world::Find("commandpanel"));
    EXPECT_EQ(FindWindowExA(world::Find("main"), nullptr, nullptr, "VertexPaint"),
              world::Find("vertexpaint"));
}

TEST_F(WorldTest, EditorsAreClientsOfTopLevelFramesAndCanGo) {
    EXPECT_EQ(world::Find("trackview"), nullptr);
    ASSERT_TRUE(world::OpenWindow("trackview"));
    const HWND client = world::Find("trackview");
    char text[64];
    GetClassNameA(client, text, sizeof text);
    EXPECT_STREQ(text, "TVTrackWindow");
    GetWindowTextA(GetAncestor(client, GA_ROOT), text, sizeof text);
    EXPECT_EQ(std::string(text).substr(0, 10), "Track View");
    EXPECT_TRUE(world::CloseWindow("trackview"));
    EXPECT_EQ(world::Find("trackview"), nullptr);
    EXPECT_FALSE(IsWindow(client));
    world::OpenWindow("unwrap");
    world::DestroyWindow("unwrap");
    EXPECT_EQ(world::Find("unwrap"), nullptr);
    EXPECT_FALSE(world::OpenWindow("viewport.top"));
}

// Children of the main window, the frontmost first.
std::vector<std::string> ChildNames() {
    std::vector<std::string> names;
    for (HWND child = GetWindow(world::Find("main"), GW_CHILD); child;
         child = GetWindow(child, GW_HWNDNEXT))
        names.push_back(world::Of(child));
    return names;
}

TEST_F(WorldTest, MoreWindowsStandBeforeTheOthersOrAfterThem) {
    std::vector<std::string> expected = ChildNames();
    ASSERT_FALSE(expected.empty());
    world::AddWindows(2, true);
    expected.insert(expected.begin(), 2, "<Static>");
    EXPECT_EQ(ChildNames(), expected);
    world::AddWindows(3, false);
    expected.insert(expected.end(), 3, "<Static>");
    EXPECT_EQ(ChildNames(), expected);
}

TEST_F(WorldTest, MoreObjectsLieWhereNoClickMeetsThem) {
    const size_t before = world::LiveNodes().size();
    world::AddNodes(400, false);
    EXPECT_EQ(world::LiveNodes().size(), before + 400);
    EXPECT_EQ(world::SelectedCount(), 0);
    for (const char* name : {"viewport.front", "viewport.user", "viewport.persp"}) {
        RECT client{};
        GetClientRect(world::Find(name), &client);
        const POINT quarter{client.right / 4, client.bottom / 4};
        EXPECT_EQ(world::HitTest(View(name), quarter), nullptr) << name;
    }
    world::AddNodes(3, true);
    EXPECT_EQ(world::SelectedCount(), 3);
}

TEST_F(WorldTest, WhatIsSelectedTwiceIsSelectedOnceAndInItsOrder) {
    eng_node* const box = world::FindNode("Box001");
    eng_node* const cone = world::FindNode("Cone001");
    world::SetSelection({cone, box, cone, nullptr, box});
    EXPECT_EQ(world::g_world.selection, (std::vector<eng_node*>{cone, box}));
}

TEST_F(WorldTest, MoreModesLieOnTheStack) {
    const int before = world::ModeDepth();
    world::AddModes(5);
    EXPECT_EQ(world::ModeDepth(), before + 5);
}

TEST_F(WorldTest, AnyTitleCanBeInFront) {
    EXPECT_EQ(world::ForegroundWindow(), world::Find("main"));
    char text[64] = "";
    world::SetForegroundTitle("Trackbar");
    GetWindowTextA(world::ForegroundWindow(), text, sizeof text);
    EXPECT_STREQ(text, "Trackbar");
    EXPECT_EQ(GetForegroundWindow(), world::ForegroundWindow());
    world::OpenWindow("trackview");
    GetWindowTextA(world::ForegroundWindow(), text, sizeof text);
    EXPECT_STREQ(text, "Trackbar");  // opening an editor does not bring it to the front
    world::SetForegroundTitle("Track View - Curve Editor");
    EXPECT_EQ(world::ForegroundWindow(), GetAncestor(world::Find("trackview"), GA_ROOT));
    SetFocus(world::Find("main"));
    EXPECT_EQ(world::ForegroundWindow(), world::Find("main"));
}

// Searches meet the other rollup's buttons first.
TEST_F(WorldTest, BrushButtonsAreOnAPageOfARollupBesideOthersOfTheirNumbers) {
    struct Found {
        int id;
        std::vector<HWND> windows;
    };
    for (const int id : {4184, 4185, 4186}) {
        const std::string number = std::to_string(id);
        const HWND brush = world::Find("brush." + number);
        const HWND page = GetParent(brush);
        char text[64] = "";
        GetClassNameA(page, text, sizeof text);
        EXPECT_STREQ(text, "#32770");
        GetClassNameA(GetParent(page), text, sizeof text);
        EXPECT_STREQ(text, "RollupWindow");
        EXPECT_EQ(GetParent(GetParent(page)), world::Find("commandpanel"));

        Found found{id, {}};
        EnumChildWindows(
            world::Find("commandpanel"),
            [](HWND window, LPARAM parameter) {
                auto& list = *reinterpret_cast<Found*>(parameter);
                if (GetDlgCtrlID(window) == list.id) list.windows.push_back(window);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&found));
        EXPECT_EQ(found.windows, (std::vector<HWND>{world::Find("geometry." + number), brush}));
        for (const HWND window : found.windows) {
            GetClassNameA(window, text, sizeof text);
            EXPECT_STREQ(text, "CustButton");
        }
    }
    char brush_text[64] = "", other_text[64] = "";
    GetWindowTextA(world::Find("brush.4185"), brush_text, sizeof brush_text);
    GetWindowTextA(world::Find("geometry.4185"), other_text, sizeof other_text);
    EXPECT_STREQ(brush_text, "Relax");
    EXPECT_STRNE(other_text, brush_text);
    Mouse("geometry.4185", WM_LBUTTONDOWN, 1, 3, 3);
    Mouse("geometry.4185", WM_LBUTTONUP, 0, 3, 3);
    EXPECT_TRUE(world::ButtonOf(world::Find("geometry.4185"))->checked);
    EXPECT_FALSE(world::FindButton(4185)->checked);
    EXPECT_EQ(Only("modes"), "modes 6");
}

TEST_F(WorldTest, TheLockButtonIsOnAStatusBarBelowTheTimeControls) {
    const HWND bar = GetParent(world::Find("button.59231"));
    char text[64] = "";
    GetClassNameA(bar, text, sizeof text);
    EXPECT_STREQ(text, "CustStatus");
    EXPECT_EQ(GetParent(bar), world::Find("main"));
    RECT bar_place{}, times{};
    GetWindowRect(bar, &bar_place);
    for (const char* name : {"timeslider", "trackbar"}) {
        GetWindowRect(world::Find(name), &times);
        EXPECT_GE(bar_place.top, times.bottom) << name;
    }
}

TEST_F(WorldTest, AMiddlePressLeavesWhatIsInFrontThere) {
    for (const char* name : {"trackview", "unwrap", "schematic"}) {
        world::OpenWindow(name);
        SetFocus(world::Find("main"));
        EXPECT_EQ(SendMessageA(world::Find(name), WM_MOUSEACTIVATE,
                               reinterpret_cast<WPARAM>(GetAncestor(world::Find(name), GA_ROOT)),
                               MAKELPARAM(HTCLIENT, WM_MBUTTONDOWN)),
                  MA_NOACTIVATE);
        Mouse(name, WM_MBUTTONDOWN, 0, 5, 40);
        Mouse(name, WM_MBUTTONUP, 0, 5, 40);
        EXPECT_EQ(input::Focus(), world::Find("main")) << name;
        EXPECT_EQ(GetActiveWindow(), world::Find("main")) << name;
    }
}

TEST_F(WorldTest, AClickedEditorOrViewportGetsTheFocus) {
    world::OpenWindow("trackview");
    Mouse("trackview", WM_LBUTTONDOWN, 0, 5, 40);
    Mouse("trackview", WM_LBUTTONUP, 0, 5, 40);
    EXPECT_EQ(input::Focus(), world::Find("trackview"));
    EXPECT_EQ(world::ForegroundWindow(), GetAncestor(world::Find("trackview"), GA_ROOT));
    Mouse("viewport.user", WM_RBUTTONDOWN, 0, 5, 40);
    Mouse("viewport.user", WM_RBUTTONUP, 0, 5, 40);
    EXPECT_EQ(input::Focus(), world::Find("viewport.user"));
    EXPECT_EQ(world::ForegroundWindow(), world::Find("main"));
}

TEST_F(WorldTest, WhatTheWorldStartsWith) {
    EXPECT_EQ(Only("modes"), "modes 6");
    EXPECT_EQ(Only("selection"), "selection none");
    EXPECT_EQ(Only("time"), "time 0");
    EXPECT_EQ(Only("range"), "range 0 100");
    EXPECT_EQ(world::g_world.active_view, &View("viewport.persp"));
    for (const std::string& line : world::Show("actions", ""))
        EXPECT_EQ(line.ends_with(" on"), line == "action 0 40105 on") << line;
    for (const std::string& line : world::Show("buttons", "")) {
        EXPECT_EQ(line.find("disabled"), std::string::npos) << line;
        EXPECT_NE(line.find(" off"), std::string::npos) << line;
    }
    const std::vector<std::string> objects = world::Show("objects", "");
    ASSERT_EQ(objects.size(), 4u);
    EXPECT_EQ(objects[0], "object Box001 position 0,0,0 rotation 0 scale 1 selected 0 hidden 0");
}

TEST_F(WorldTest, ADestroyedButtonIsGoneAndCanComeBack) {
    world::PlaceButton(50027, false);
    EXPECT_EQ(world::Find("button.50027"), nullptr);
    EXPECT_EQ(eng_toolbar_button(50027), nullptr);
    world::PlaceButton(50027, true);
    eng_button* button = eng_toolbar_button(50027);
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(eng_button_is_enabled(button), 1);
    EXPECT_EQ(world::Leaks(), std::vector<std::string>{"1 custom buttons not released"});
    eng_release_button(button);
    EXPECT_TRUE(world::Leaks().empty());
}

// --- capture ---

TEST_F(WorldTest, CaptureIsKeptUntilTheLastButtonIsUp) {
    const HWND view = world::Find("viewport.top");
    Mouse("viewport.top", WM_LBUTTONDOWN, 0, 5, 5);
    EXPECT_EQ(input::Capture(), view);
    Mouse("viewport.top", WM_RBUTTONDOWN, 0, 5, 5);
    Mouse("viewport.top", WM_LBUTTONUP, 0, 5, 5);
    EXPECT_EQ(input::Capture(), view);
    Mouse("viewport.top", WM_MBUTTONUP, 0, 5, 5);  // never went down here
    EXPECT_EQ(input::Capture(), view);
    Mouse("viewport.top", WM_RBUTTONUP, 0, 5, 5);
    EXPECT_EQ(input::Capture(), nullptr);
}

TEST_F(WorldTest, AWindowThatGoesTakesItsCaptureAlong) {
    world::OpenWindow("schematic");
    Mouse("schematic", WM_MBUTTONDOWN, 0, 5, 5);
    EXPECT_EQ(input::Capture(), world::Find("schematic"));
    world::DestroyWindow("schematic");
    EXPECT_EQ(input::Capture(), nullptr);
}

// --- navigation ---

TEST_F(WorldTest, AltMiddleOrbitsWherePerspectiveOrUser) {
    for (const char* name : kViews) {
        const eng_view::Camera before = View(name).camera;
        Alt(true);
        Mouse(name, WM_MBUTTONDOWN, 0, 100, 100);
        Mouse(name, WM_MOUSEMOVE, MK_MBUTTON, 140, 120);
        Mouse(name, WM_MBUTTONUP, 0, 140, 120);
        Alt(false);
        const eng_view::Camera& after = View(name).camera;
        if (View(name).kind == world::ViewKind::kOrthographic) {
            EXPECT_EQ(after, before) << name;
            continue;
        }
        EXPECT_NE(after.azimuth, before.azimuth) << name;
        EXPECT_NE(after.elevation, before.elevation) << name;
        EXPECT_EQ(after.distance, before.distance) << name;
        EXPECT_EQ(after.target, before.target) << name;
    }
}

TEST_F(WorldTest, MiddleWithoutAltAndLockedViewsDoNotOrbit) {
    const eng_view::Camera before = View("viewport.persp").camera;
    Mouse("viewport.persp", WM_MBUTTONDOWN, 0, 100, 100);
    Mouse("viewport.persp", WM_MOUSEMOVE, MK_MBUTTON, 140, 120);
    Mouse("viewport.persp", WM_MBUTTONUP, 0, 140, 120);
    EXPECT_EQ(View("viewport.persp").camera, before);
    world::LockView("viewport.persp", true);
    Alt(true);
    Mouse("viewport.persp", WM_MBUTTONDOWN, 0, 100, 100);
    Mouse("viewport.persp", WM_MOUSEMOVE, MK_MBUTTON, 140, 120);
    Mouse("viewport.persp", WM_MBUTTONUP, 0, 140, 120);
    EXPECT_EQ(View("viewport.persp").camera, before);
}

TEST_F(WorldTest, ZoomModeZoomsAndControlMakesItFaster) {
    world::PushMode(200);
    const double start = View("viewport.persp").camera.distance;
    LeftDrag("viewport.persp", {100, 200}, {100, 180});
    const double slow = View("viewport.persp").camera.distance;
    EXPECT_LT(slow, start);
    LeftDrag("viewport.persp", {100, 200}, {100, 180}, MK_CONTROL);
    const double fast = View("viewport.persp").camera.distance;
    EXPECT_LT(fast / slow, slow / start);
    LeftDrag("viewport.persp", {100, 180}, {100, 200});
    EXPECT_GT(View("viewport.persp").camera.distance, fast);
    EXPECT_EQ(Only("modes"), "modes 6 200");
}

TEST_F(WorldTest, PanModeKeepsThePointUnderTheCursor) {
    world::PushMode(202);
    for (const char* name : kViews) {
        const auto before = PivotIn(name, "Box001");
        LeftDrag(name, {100, 200}, {130, 185}, MK_CONTROL);
        const auto after = PivotIn(name, "Box001");
        EXPECT_NEAR(after.x - before.x, 30, 1e-6) << name;
        EXPECT_NEAR(after.y - before.y, -15, 1e-6) << name;
    }
}

TEST_F(WorldTest, ARightClickEndsAViewModeButNotTheLastMode) {
    world::PushMode(202);
    Mouse("viewport.top", WM_RBUTTONDOWN, MK_RBUTTON, 9, 9);
    Mouse("viewport.top", WM_RBUTTONUP, 0, 9, 9);
    EXPECT_EQ(Only("modes"), "modes 6");
    Mouse("viewport.top", WM_RBUTTONDOWN, MK_RBUTTON, 9, 9);
    Mouse("viewport.top", WM_RBUTTONUP, 0, 9, 9);
    EXPECT_EQ(Only("modes"), "modes 6");
}

// --- transforms ---

struct Nudge {
    int constraint;
    POINT over, end;  // the overshooting move and the last one
    double dx, dy;    // what the object must move on the screen
};
constexpr Nudge kNudges[] = {
    {4, {1, -2}, {1, 0}, 0, -1},
    {4, {1, 4}, {1, 2}, 0, 1},
    {3, {-2, 1}, {0, 1}, -1, 0},
    {3, {4, 1}, {2, 1}, 1, 0},
};

TEST_F(WorldTest, ANudgeMovesTheSelectionByExactlyOnePixel) {
    world::SetAction(0, 59231, world::ActionState::kOn);
    world::PushMode(1);
    for (const char* name : kViews) {
        for (const char* object : {"Box001", "Torus001"}) {
            for (const Nudge& nudge : kNudges) {
                world::Select({object});
                world::g_world.coordinate_system = 1;
                world::g_world.axis_constraint = nudge.constraint;
                const auto before = PivotIn(name, object);
                Mouse(name, WM_LBUTTONDOWN, 0, 1, 1);
                Mouse(name, WM_MOUSEMOVE, MK_LBUTTON, nudge.over.x, nudge.over.y);
                Mouse(name, WM_MOUSEMOVE, MK_LBUTTON, nudge.end.x, nudge.end.y);
                Mouse(name, WM_LBUTTONUP, 0, nudge.end.x, nudge.end.y);
                const auto after = PivotIn(name, object);
                EXPECT_NEAR(after.x - before.x, nudge.dx, 1e-6) << name << " " << object;
                EXPECT_NEAR(after.y - before.y, nudge.dy, 1e-6) << name << " " << object;
            }
        }
    }
    EXPECT_EQ(world::g_world.undo.size(), 20u);  // of 32: the oldest were forgotten
}

TEST_F(WorldTest, APressThatDoesNotTravelMovesNothing) {
    world::Select({"Box001"});
    world::ReplaceMode(1);
    world::SetAction(0, 59231, world::ActionState::kOn);
    Mouse("viewport.persp", WM_LBUTTONDOWN, 0, 50, 50);
    Mouse("viewport.persp", WM_MOUSEMOVE, MK_LBUTTON, 52, 52);
    Mouse("viewport.persp", WM_LBUTTONUP, 0, 52, 52);
    EXPECT_EQ(world::NodePosition(Node("Box001")), Vector{});
    EXPECT_EQ(Only("undo"), "undo none");
}

TEST_F(WorldTest, AMoveCanBeUndone) {
    world::Select({"Box001", "Cone001"});
    world::ReplaceMode(1);
    world::g_world.coordinate_system = 1;
    const Vector cone = world::NodePosition(Node("Cone001"));
    LeftDrag("viewport.top", {10, 10}, {60, 10});
    const Vector box = world::NodePosition(Node("Box001"));
    EXPECT_GT(box.x, 1);
    EXPECT_EQ(world::NodePosition(Node("Cone001")), cone + box);
    EXPECT_EQ(Only("undo"), "undo \"Move\"");
    EXPECT_TRUE(world::Undo());
    EXPECT_EQ(world::NodePosition(Node("Box001")), Vector{});
    EXPECT_EQ(world::NodePosition(Node("Cone001")), cone);
    EXPECT_FALSE(world::Undo());
}

TEST_F(WorldTest, TheRightButtonCancelsAMove) {
    world::Select({"Box001"});
    world::ReplaceMode(1);
    Mouse("viewport.top", WM_LBUTTONDOWN, 0, 10, 10);
    Mouse("viewport.top", WM_MOUSEMOVE, MK_LBUTTON, 90, 40);
    EXPECT_NE(world::NodePosition(Node("Box001")), Vector{});
    Mouse("viewport.top", WM_RBUTTONDOWN, 0, 90, 40);
    Mouse("viewport.top", WM_RBUTTONUP, 0, 90, 40);
    EXPECT_EQ(world::NodePosition(Node("Box001")), Vector{});
    Mouse("viewport.top", WM_MOUSEMOVE, MK_LBUTTON, 120, 40);
    Mouse("viewport.top", WM_LBUTTONUP, 0, 120, 40);
    EXPECT_EQ(world::NodePosition(Node("Box001")), Vector{});
    EXPECT_EQ(Only("undo"), "undo none");
    EXPECT_EQ(input::Capture(), nullptr);
    EXPECT_TRUE(world::Leaks().empty());
}

TEST_F(WorldTest, ShiftAtThePressLeavesACopy) {
    world::Select({"Box001"});
    world::ReplaceMode(1);
    world::SetAction(0, 59231, world::ActionState::kOn);
    LeftDrag("viewport.top", {10, 10}, {60, 10}, MK_SHIFT);
    EXPECT_EQ(Only("selection"), "selection Box002");
    EXPECT_EQ(world::NodePosition(Node("Box001")), Vector{});
    EXPECT_GT(world::NodePosition(Node("Box002")).x, 1);
    EXPECT_EQ(world::Show("objects", "").size(), 5u);
    EXPECT_TRUE(world::Undo());
    EXPECT_EQ(Only("selection"), "selection Box001");
    EXPECT_EQ(world::Show("objects", "").size(), 4u);
}

TEST_F(WorldTest, RotateAndScaleModesDoTheirWork) {
    for (const int mode : {2, 8}) {
        world::Select({"Box001"});
        world::ReplaceMode(mode);
        LeftDrag("viewport.top", {10, 10}, {70, 10});
        EXPECT_NEAR(world::EulerAngles(Node("Box001").state.rotation).z, 30, 1e-9) << mode;
        world::Undo();
    }
    world::g_world.axis_constraint = 2;
    struct Row {
        int mode;
        bool x, y, z;  // which factors grow
    };
    for (const Row& row : {Row{3, true, true, false}, Row{9, true, true, false},
                           Row{4, true, true, true}, Row{10, true, true, true}}) {
        world::ReplaceMode(row.mode);
        LeftDrag("viewport.top", {10, 90}, {10, 40});
        const Vector scale = Node("Box001").state.scale;
        EXPECT_EQ(scale.x > 1, row.x) << row.mode;
        EXPECT_EQ(scale.y > 1, row.y) << row.mode;
        EXPECT_EQ(scale.z > 1, row.z) << row.mode;
        world::Undo();
    }
    for (const int mode : {5, 11}) {
        world::ReplaceMode(mode);
        LeftDrag("viewport.top", {10, 90}, {10, 40});
        const Vector scale = Node("Box001").state.scale;
        EXPECT_NEAR(scale.x * scale.y * scale.z, 1, 1e-9) << mode;
        EXPECT_NE(scale.z, 1) << mode;
        world::Undo();
    }
}

// --- selection ---

TEST_F(WorldTest, ClicksSelect) {
    const POINT box = BodyIn("viewport.front", "Box001");
    const POINT cone = BodyIn("viewport.front", "Cone001");
    for (const int mode : {6, 12}) {
        world::ReplaceMode(mode);
        world::Select({});
        Click("viewport.front", box);
        EXPECT_EQ(Only("selection"), "selection Box001");
        Click("viewport.front", cone);
        EXPECT_EQ(Only("selection"), "selection Cone001");
        Click("viewport.front", box, MK_CONTROL);
        EXPECT_EQ(Only("selection"), "selection Cone001 Box001");
        Click("viewport.front", box, MK_CONTROL);  // adding twice changes nothing
        EXPECT_EQ(Only("selection"), "selection Cone001 Box001");
        Click("viewport.front", box, MK_SHIFT);
        EXPECT_EQ(Only("selection"), "selection Cone001");
        Click("viewport.front", box, MK_CONTROL | MK_SHIFT);
        EXPECT_EQ(Only("selection"), "selection Cone001 Box001");
        Alt(true);
        Click("viewport.front", cone);
        EXPECT_EQ(Only("selection"), "selection Box001");
        Click("viewport.front", cone);
        EXPECT_EQ(Only("selection"), "selection Box001");
        Alt(false);
        Click("viewport.front", {3, 3}, MK_CONTROL);
        EXPECT_EQ(Only("selection"), "selection Box001");
        Click("viewport.front", {3, 3});
        EXPECT_EQ(Only("selection"), "selection none");
    }
}

TEST_F(WorldTest, AnAltClickTakesAwayInATransformModeAndDragsNothing) {
    const POINT box = BodyIn("viewport.front", "Box001");
    const POINT cone = BodyIn("viewport.front", "Cone001");
    for (const int mode : {1, 2, 3}) {
        world::ReplaceMode(mode);
        world::Select({"Box001", "Cone001"});
        const std::vector<std::string> before = world::Show("objects", "");
        Alt(true);
        Click("viewport.front", box);
        EXPECT_EQ(Only("selection"), "selection Cone001");
        Click("viewport.front", box);
        EXPECT_EQ(Only("selection"), "selection Cone001");
        LeftDrag("viewport.front", cone, {cone.x + 20, cone.y});
        EXPECT_EQ(Only("selection"), "selection none");
        Alt(false);
        world::Select({"Box001", "Cone001"});
        EXPECT_EQ(world::Show("objects", ""), before);
    }
}

TEST_F(WorldTest, ViewModesHavePointersOfTheirOwn) {
    world::g_world.options.visible = true;
    const HCURSOR arrow = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    const HCURSOR zoom = world::HostCursor(200);
    const HCURSOR pan = world::HostCursor(202);
    ASSERT_TRUE(zoom && pan);
    EXPECT_NE(zoom, pan);
    for (const auto& [mode, cursor] : {std::pair{200, zoom}, {202, pan}}) {
        SetCursor(arrow);
        world::PushMode(mode);
        LeftDrag("viewport.persp", {200, 150}, {210, 170});
        EXPECT_EQ(GetCursor(), cursor) << mode;
        SetCursor(arrow);
        const HWND view = world::Find("viewport.persp");
        EXPECT_EQ(SendMessageA(view, WM_SETCURSOR, reinterpret_cast<WPARAM>(view),
                               MAKELPARAM(HTCLIENT, WM_MOUSEMOVE)),
                  1);
        EXPECT_EQ(GetCursor(), cursor) << mode;
        world::PopMode();
        EXPECT_EQ(GetCursor(), arrow) << mode;
    }
    // A tool leaves the pointer to whoever set it.
    SetCursor(pan);
    LeftDrag("viewport.persp", {200, 150}, {210, 170});
    EXPECT_EQ(GetCursor(), pan);
}

TEST_F(WorldTest, HiddenObjectsCannotBeHit) {
    const POINT box = BodyIn("viewport.front", "Box001");
    world::HideObject("Box001", true);
    Click("viewport.front", box);
    EXPECT_NE(Only("selection"), "selection Box001");
}

TEST_F(WorldTest, ALockedSelectionStays) {
    world::Select({"Torus001"});
    world::SetAction(0, 59231, world::ActionState::kOn);
    Click("viewport.front", BodyIn("viewport.front", "Box001"));
    EXPECT_EQ(Only("selection"), "selection Torus001");
}

TEST_F(WorldTest, OuterHoldDecidesOverAClick) {
    const POINT box = BodyIn("viewport.front", "Box001");
    eng_hold_begin();
    Click("viewport.front", box);
    eng_hold_cancel();
    EXPECT_EQ(Only("selection"), "selection none");
    EXPECT_EQ(Only("undo"), "undo none");
    eng_hold_begin();
    Click("viewport.front", box);
    eng_hold_accept("Select");
    EXPECT_EQ(Only("selection"), "selection Box001");
    EXPECT_EQ(Only("undo"), "undo \"Select\"");
    eng_hold_begin();
    eng_hold_accept("Nothing");
    EXPECT_EQ(Only("undo"), "undo \"Select\"");
    world::Undo();
    EXPECT_EQ(Only("selection"), "selection none");
}

// --- actions, buttons ---

TEST_F(WorldTest, LockAndAngleSnapShareTheirStateWithTheButtons) {
    for (const int id : {59231, 40074}) {
        eng_action* action = eng_table_action(eng_find_table(0), id);
        ASSERT_NE(action, nullptr);
        eng_action_execute(action);
        EXPECT_TRUE(world::FindButton(id)->checked);
        world::CheckButton(id, false);
        EXPECT_EQ(eng_action_is_checked(action), 0);
        Mouse("button." + std::to_string(id), WM_LBUTTONDOWN, 1, 0, 0);
        Mouse("button." + std::to_string(id), WM_LBUTTONUP, 1, 0, 0);
        EXPECT_EQ(eng_action_is_checked(action), 1);
        world::SetAction(0, id, world::ActionState::kStuck);
        eng_action_execute(action);
        EXPECT_EQ(eng_action_is_checked(action), 1);
    }
}

TEST_F(WorldTest, TheSnapActionSwitchesTheSnapState) {
    EXPECT_EQ(eng_snap_state(), 0);
    eng_action_execute(eng_table_action(eng_find_table(0), 40072));
    EXPECT_EQ(eng_snap_state(), 1);
}

TEST_F(WorldTest, BrushesRunTheirModeAndOneAtATime) {
    const auto click = [](int id) {
        const HWND button = world::FindButton(id)->window;
        SendMessageA(GetParent(button), WM_COMMAND, id, reinterpret_cast<LPARAM>(button));
    };
    click(4184);
    click(4185);
    EXPECT_EQ(Only("modes"), "modes 6 1328123019");
    EXPECT_FALSE(world::FindButton(4184)->checked);
    EXPECT_TRUE(world::FindButton(4185)->checked);
    world::PushMode(200);
    EXPECT_TRUE(world::FindButton(4185)->checked);
    world::PopMode();
    world::PopMode();
    EXPECT_FALSE(world::FindButton(4185)->checked);
    click(4185);
    EXPECT_TRUE(world::FindButton(4185)->checked);
    EXPECT_EQ(Only("modes"), "modes 6 1328123019");
}

TEST_F(WorldTest, ABrushThatOnlyReportsCheckedStaysSo) {
    world::PushMode(0x4F298C8B);
    world::CheckBrush(4186, true);
    world::PopMode();
    EXPECT_TRUE(world::FindButton(4186)->checked);
}

TEST_F(WorldTest, ARebuiltToolbarHasOtherWindows) {
    const std::string names[] = {"button.59231", "button.40074", "button.50016"};
    std::vector<HWND> before;
    std::vector<RECT> places;
    for (const std::string& name : names) {
        before.push_back(world::Find(name));
        places.emplace_back();
        GetWindowRect(before.back(), &places.back());
    }
    const HWND view = world::Find("viewport.persp");
    world::CheckButton(40074, true);
    world::RebuildToolbars();
    for (size_t i = 0; i < before.size(); ++i) {
        EXPECT_FALSE(IsWindow(before[i])) << names[i];
        const HWND now = world::Find(names[i]);
        ASSERT_TRUE(IsWindow(now)) << names[i];
        RECT place{};
        GetWindowRect(now, &place);
        EXPECT_TRUE(EqualRect(&place, &places[i])) << names[i];
        EXPECT_TRUE(IsChild(world::Find("main"), now)) << names[i];
    }
    EXPECT_TRUE(world::FindButton(40074)->checked);
    EXPECT_EQ(world::Find("viewport.persp"), view);
    // The host's own access to toolbars knows the new ones.
    eng_button* const button = eng_toolbar_button(40074);
    ASSERT_NE(button, nullptr);
    eng_release_button(button);
    EXPECT_EQ(world::MissingWindow(), "");
}

TEST_F(WorldTest, TheFlyoutRunsTheChosenEntryWhenNotified) {
    world::Select({"Torus001"});
    const eng_view::Camera top = View("viewport.top").camera;
    eng_button* flyout = eng_toolbar_button(50016);
    ASSERT_NE(flyout, nullptr);
    EXPECT_EQ(eng_button_flyout(flyout), 0);
    eng_button_set_flyout(flyout, 1, 1);
    EXPECT_EQ(eng_button_flyout(flyout), 1);
    const Vector selected = View("viewport.persp").camera.target;
    EXPECT_NEAR(selected.y, 80, 1);
    eng_button_set_flyout(flyout, 0, 0);
    EXPECT_EQ(View("viewport.persp").camera.target, selected);
    eng_button_set_flyout(flyout, 0, 1);
    EXPECT_NE(View("viewport.persp").camera.target, selected);
    EXPECT_EQ(View("viewport.top").camera, top);  // the active viewport alone
    eng_release_button(flyout);
}

TEST_F(WorldTest, KeySteppingFollowsKeyMode) {
    eng_action* next = eng_table_action(eng_find_table(0), 50022);
    eng_action* previous = eng_table_action(eng_find_table(0), 50020);
    world::Select({"Box001"});
    eng_action_execute(next);
    EXPECT_EQ(Only("time"), "time 1");
    EXPECT_EQ(world::Evaluate("max key mode"), "OK");
    eng_action_execute(next);
    EXPECT_EQ(Only("time"), "time 20");
    eng_action_execute(next);
    EXPECT_EQ(Only("time"), "time 60");
    eng_action_execute(next);
    EXPECT_EQ(Only("time"), "time 60");
    eng_action_execute(previous);
    EXPECT_EQ(Only("time"), "time 20");
}

TEST_F(WorldTest, FailingCallsAnswerAsAHostThatHasNothing) {
    for (const char* name : {"GetActiveViewport", "GetViewport", "FindTable", "GetCommandMode",
                             "GetICustButton", "GetMainMenuBar"}) {
        ASSERT_TRUE(faults::IsName(name)) << name;
        world::SetFault(name, true);
    }
    EXPECT_FALSE(faults::IsName("GetNothing"));
    EXPECT_EQ(eng_active_viewport(), nullptr);
    EXPECT_EQ(eng_viewport_of(world::Find("viewport.top")), nullptr);
    EXPECT_EQ(eng_find_table(0), nullptr);
    EXPECT_EQ(eng_current_mode(), nullptr);
    EXPECT_EQ(eng_toolbar_button(50027), nullptr);
    EXPECT_EQ(eng_main_menu(), nullptr);
    world::SetFault("FindTable", false);
    EXPECT_NE(eng_find_table(0), nullptr);
    EXPECT_TRUE(world::Leaks().empty());
}

// --- command modes ---

std::vector<std::pair<int, int>> g_mode_changes;
void NoteModes(void*, eng_mode* before, eng_mode* now) {
    g_mode_changes.emplace_back(before ? before->id : -1, now ? now->id : -1);
}

TEST_F(WorldTest, EveryChangeOfModeIsTold) {
    eng_plugin_calls calls{};
    calls.mode_changed = NoteModes;
    eng_register_plugin_calls(&calls);
    int callback = 0;
    eng_register_mode_callback(&callback);
    g_mode_changes.clear();
    eng_push_standard_mode(200);
    eng_pop_mode();
    world::ClearModes();
    world::ReplaceMode(2, 9);
    EXPECT_EQ(g_mode_changes,
              (std::vector<std::pair<int, int>>{{6, 200}, {200, 6}, {6, -1}, {-1, 2}}));
    EXPECT_EQ(eng_mode_class(eng_current_mode()), 9);
    world::ReplaceMode(2);
    EXPECT_EQ(eng_mode_class(eng_current_mode()), 3);
    world::ReplaceMode(65743);
    EXPECT_EQ(eng_mode_class(eng_current_mode()), 10);
}

TEST_F(WorldTest, PlaybackRunsByTheClockAndEndsWithItsMode) {
    world::SetPlaying(true);
    EXPECT_EQ(Only("modes"), "modes 6 300");
    input::AdvanceClock(1000);
    EXPECT_EQ(Only("time"), "time 30");
    world::SetPlaying(false);
    input::AdvanceClock(1000);
    EXPECT_EQ(Only("time"), "time 30");
    EXPECT_EQ(Only("modes"), "modes 6");
}

// --- editors, time slider ---

TEST_F(WorldTest, EditorsPanAndZoomWithTheMiddleButton) {
    for (const char* name : {"trackview", "unwrap", "schematic"}) {
        world::OpenWindow(name);
        const world::Editor& editor = *world::EditorOf(world::Find(name));
        Mouse(name, WM_MBUTTONDOWN, 0, 50, 50);
        Mouse(name, WM_MOUSEMOVE, MK_MBUTTON, 80, 40);
        Mouse(name, WM_MBUTTONUP, 0, 80, 40);
        EXPECT_EQ(editor.pan_x, 30) << name;
        EXPECT_EQ(editor.pan_y, -10) << name;
        EXPECT_EQ(editor.zoom, 1) << name;
        Alt(true);
        Mouse(name, WM_MBUTTONDOWN, MK_CONTROL, 50, 50);
        Mouse(name, WM_MOUSEMOVE, MK_CONTROL | MK_MBUTTON, 50, 30);
        Mouse(name, WM_MBUTTONUP, MK_CONTROL, 50, 30);
        Alt(false);
        EXPECT_GT(editor.zoom, 1) << name;
        EXPECT_EQ(editor.pan_x, 30) << name;
        EXPECT_EQ(input::Capture(), nullptr);
    }
}

TEST_F(WorldTest, TheUnwrapEditorZoomsOnCtrlAndAltTogetherOnly) {
    world::OpenWindow("unwrap");
    const world::Editor& editor = *world::EditorOf(world::Find("unwrap"));
    Mouse("unwrap", WM_MBUTTONDOWN, MK_CONTROL, 50, 50);
    Mouse("unwrap", WM_MOUSEMOVE, MK_CONTROL | MK_MBUTTON, 60, 80);
    Mouse("unwrap", WM_MBUTTONUP, MK_CONTROL, 60, 80);
    EXPECT_EQ(editor.pan_x, 10);
    EXPECT_EQ(editor.pan_y, 30);
    EXPECT_EQ(editor.zoom, 1);
    Alt(true);
    Mouse("unwrap", WM_MBUTTONDOWN, 0, 50, 50);
    Alt(false);
    // Keys that come and go during a drag make nothing else of it.
    Mouse("unwrap", WM_MOUSEMOVE, MK_CONTROL | MK_MBUTTON, 60, 80);
    Mouse("unwrap", WM_MBUTTONUP, 0, 60, 80);
    EXPECT_EQ(editor.pan_x, 20);
    EXPECT_EQ(editor.pan_y, 60);
    EXPECT_EQ(editor.zoom, 1);
    Alt(true);
    Mouse("unwrap", WM_MBUTTONDOWN, MK_CONTROL, 50, 50);
    Alt(false);
    Mouse("unwrap", WM_MOUSEMOVE, MK_MBUTTON, 90, 50);
    EXPECT_EQ(editor.zoom, 1);
    Mouse("unwrap", WM_MOUSEMOVE, MK_MBUTTON, 90, 30);
    Mouse("unwrap", WM_MBUTTONUP, 0, 90, 30);
    EXPECT_GT(editor.zoom, 1);
    EXPECT_EQ(editor.pan_x, 20);
    EXPECT_EQ(editor.pan_y, 60);
}

// The corners of the sheet stand at 100,100 220,100 250,160 220,220 100,220.
class UnwrapTest : public WorldTest {
protected:
    static constexpr unsigned long kTable = 2077580866;

    void SetUp() override {
        WorldTest::SetUp();
        world::OpenWindow("unwrap");
        SetFocus(world::Find("unwrap"));
    }
    static eng_action* Action(int id) { return eng_table_action(eng_find_table(kTable), id); }
    static std::string Vertices() {
        const std::string line = world::Show("editors", "")[1];
        return line.substr(line.find("vertices ") + 9);
    }
    static void Click(POINT at, WPARAM flags = 0) {
        Mouse("unwrap", WM_LBUTTONDOWN, flags, at.x, at.y);
        Mouse("unwrap", WM_LBUTTONUP, flags, at.x, at.y);
    }
};

TEST_F(UnwrapTest, APressOnTheEmptyCanvasSelectsARegion) {
    eng_action_execute(Action(40007));
    LeftDrag("unwrap", {90, 90}, {110, 230});
    EXPECT_EQ(Vertices(), "-60,-60* 60,-60 90,0 60,60 -60,60*");
    LeftDrag("unwrap", {260, 170}, {240, 150});
    EXPECT_EQ(Vertices(), "-60,-60 60,-60 90,0* 60,60 -60,60");
    LeftDrag("unwrap", {230, 90}, {210, 110}, MK_CONTROL);
    EXPECT_EQ(Vertices(), "-60,-60 60,-60* 90,0* 60,60 -60,60");
    Click({30, 300});
    EXPECT_EQ(Vertices(), "-60,-60 60,-60 90,0 60,60 -60,60");
    EXPECT_TRUE(world::Undo());
    EXPECT_EQ(Vertices(), "-60,-60 60,-60* 90,0* 60,60 -60,60");
    // Taken back before it ends, a region picks nothing.
    Mouse("unwrap", WM_LBUTTONDOWN, 0, 90, 90);
    Mouse("unwrap", WM_MOUSEMOVE, MK_LBUTTON, 110, 110);
    Mouse("unwrap", WM_RBUTTONDOWN, MK_LBUTTON, 110, 110);
    Mouse("unwrap", WM_RBUTTONUP, MK_LBUTTON, 110, 110);
    Mouse("unwrap", WM_LBUTTONUP, 0, 110, 110);
    EXPECT_EQ(Vertices(), "-60,-60 60,-60* 90,0* 60,60 -60,60");
}

TEST_F(UnwrapTest, APressOnAVertexDragsIt) {
    eng_action_execute(Action(40007));
    LeftDrag("unwrap", {221, 99}, {231, 119});
    EXPECT_EQ(Vertices(), "-60,-60 70,-40* 90,0 60,60 -60,60");
    EXPECT_TRUE(world::Undo());
    EXPECT_EQ(Vertices(), "-60,-60 60,-60* 90,0 60,60 -60,60");
    // One of several selected ones takes them all along.
    Click({100, 100}, MK_CONTROL);
    LeftDrag("unwrap", {100, 100}, {110, 100});
    EXPECT_EQ(Vertices(), "-50,-60* 70,-60* 90,0 60,60 -60,60");
}

TEST_F(UnwrapTest, WithoutATransformToolNothingIsDragged) {
    LeftDrag("unwrap", {220, 100}, {240, 120});
    EXPECT_EQ(Vertices(), "-60,-60 60,-60* 90,0 60,60 -60,60");
    eng_action_execute(Action(40020));
    LeftDrag("unwrap", {30, 300}, {60, 330});
    EXPECT_EQ(Vertices(), "-60,-60 60,-60* 90,0 60,60 -60,60");
}

TEST_F(UnwrapTest, WithTheLockAPressAnywhereDragsTheSelection) {
    eng_action_execute(Action(40007));
    LeftDrag("unwrap", {90, 90}, {230, 110});
    eng_action_execute(Action(40020));
    LeftDrag("unwrap", {30, 300}, {50, 310});
    EXPECT_EQ(Vertices(), "-40,-50* 80,-50* 90,0 60,60 -60,60");
    LeftDrag("unwrap", {250, 160}, {250, 150});  // another vertex stays where it is
    EXPECT_EQ(Vertices(), "-40,-60* 80,-60* 90,0 60,60 -60,60");
    eng_action_execute(Action(40020));
    LeftDrag("unwrap", {30, 300}, {50, 310});
    EXPECT_EQ(Vertices(), "-40,-60 80,-60 90,0 60,60 -60,60");
}

TEST_F(UnwrapTest, CtrlTogglesAndAltTakesAwayTheClickedVertex) {
    eng_action_execute(Action(40007));
    Click({100, 100}, MK_CONTROL);
    Click({250, 160}, MK_CONTROL);
    EXPECT_EQ(Vertices(), "-60,-60* 60,-60 90,0* 60,60 -60,60");
    Click({100, 100}, MK_CONTROL);
    EXPECT_EQ(Vertices(), "-60,-60 60,-60 90,0* 60,60 -60,60");
    Alt(true);
    Click({100, 100});
    EXPECT_EQ(Vertices(), "-60,-60 60,-60 90,0* 60,60 -60,60");
    Click({250, 160});
    Alt(false);
    EXPECT_EQ(Vertices(), "-60,-60 60,-60 90,0 60,60 -60,60");
}

TEST_F(UnwrapTest, EachToolDoesWhatItsNameSays) {
    struct Row {
        int tool;
        const char* name;
        POINT by;
        const char* vertices;
    };
    // Of -60,-60 and 60,-60 about 0,-60. 180 pixels to the right are 90 degrees, 100 pixels up a
    // factor of 2.718.
    const Row rows[] = {
        {40007, "Move", {10, 20}, "-50,-40* 70,-40* 90,0 60,60 -60,60"},
        {40033, "Move Horizontal", {10, 20}, "-50,-60* 70,-60* 90,0 60,60 -60,60"},
        {40034, "Move Vertical", {10, 20}, "-60,-40* 60,-40* 90,0 60,60 -60,60"},
        {40008, "Rotate", {180, 0}, "0,-120* 0,0* 90,0 60,60 -60,60"},
        {40009, "Scale", {0, -100}, "-163.097,-60* 163.097,-60* 90,0 60,60 -60,60"},
        {40035, "Scale Horizontal", {0, -100}, "-163.097,-60* 163.097,-60* 90,0 60,60 -60,60"},
        {40036, "Scale Vertical", {0, -100}, "-60,-60* 60,-60* 90,0 60,60 -60,60"},
        {40087, "Freeform", {10, 20}, "-50,-40* 70,-40* 90,0 60,60 -60,60"},
    };
    LeftDrag("unwrap", {90, 90}, {230, 110});
    eng_action_execute(Action(40020));
    for (const Row& row : rows) {
        ASSERT_NE(Action(row.tool), nullptr) << row.name;
        EXPECT_STREQ(Action(row.tool)->name, row.name);
        eng_action_execute(Action(row.tool));
        for (const Row& other : rows)
            EXPECT_EQ(eng_action_is_checked(Action(other.tool)), other.tool == row.tool);
        LeftDrag("unwrap", {30, 200}, {30 + row.by.x, 200 + row.by.y});
        EXPECT_EQ(Vertices(), row.vertices) << row.name;
        // Both stand on the line that the vertical scaling leaves alone, so it changes nothing.
        if (row.tool != 40036) {
            EXPECT_TRUE(world::Undo());
        }
    }
}

TEST_F(UnwrapTest, TheLockIsRefusedWhileTheDialogIsNotActive) {
    SetFocus(world::Find("main"));
    EXPECT_EQ(eng_action_execute(Action(40020)), 0);
    EXPECT_EQ(eng_action_is_checked(Action(40020)), 0);
    EXPECT_EQ(eng_action_execute(Action(40007)), 1);  // the tools are not
    SetFocus(world::Find("unwrap"));
    EXPECT_EQ(eng_action_execute(Action(40020)), 1);
    EXPECT_EQ(eng_action_is_checked(Action(40020)), 1);
    world::CloseWindow("unwrap");
    EXPECT_EQ(eng_action_execute(Action(40020)), 0);
}

TEST_F(UnwrapTest, ARightPressReturnsToTheToolBefore) {
    eng_action_execute(Action(40007));
    eng_action_execute(Action(40008));
    Mouse("unwrap", WM_RBUTTONDOWN, MK_RBUTTON, 30, 300);
    Mouse("unwrap", WM_RBUTTONUP, 0, 30, 300);
    EXPECT_EQ(eng_action_is_checked(Action(40007)), 1);
    EXPECT_EQ(eng_action_is_checked(Action(40008)), 0);
}

TEST_F(UnwrapTest, ARightPressTakesARunningDragBack) {
    eng_action_execute(Action(40007));
    eng_action_execute(Action(40008));
    Mouse("unwrap", WM_LBUTTONDOWN, 0, 220, 100);
    Mouse("unwrap", WM_MOUSEMOVE, MK_LBUTTON, 250, 100);
    Mouse("unwrap", WM_RBUTTONDOWN, MK_LBUTTON, 250, 100);
    Mouse("unwrap", WM_RBUTTONUP, MK_LBUTTON, 250, 100);
    Mouse("unwrap", WM_LBUTTONUP, 0, 250, 100);
    EXPECT_EQ(Vertices(), "-60,-60 60,-60* 90,0 60,60 -60,60");
    EXPECT_EQ(eng_action_is_checked(Action(40008)), 1);
}

TEST_F(WorldTest, TheTrackViewsDragModeIsRefusedWhileItIsNotActive) {
    world::OpenWindow("trackview");
    eng_action* mode = eng_table_action(eng_find_table(1), 40328);
    SetFocus(world::Find("main"));
    EXPECT_EQ(eng_action_execute(mode), 0);
    EXPECT_EQ(eng_action_is_checked(mode), 0);
    SetFocus(world::Find("trackview"));
    EXPECT_EQ(eng_action_execute(mode), 1);
    EXPECT_EQ(eng_action_is_checked(mode), 1);
}

TEST_F(WorldTest, TrackViewFramesTheAnimationRange) {
    world::OpenWindow("trackview");
    EXPECT_EQ(world::Evaluate("animationRange = interval 10 40"), "(interval 10f 40f)");
    eng_action_execute(eng_table_action(eng_find_table(1), 1040));
    EXPECT_EQ(world::g_world.shown_from, 10);
    EXPECT_EQ(world::g_world.shown_to, 40);
}

TEST_F(WorldTest, LeftDragsInTheTrackViewMoveSelectedKeys) {
    world::OpenWindow("trackview");
    world::SetSelectedTracks({"Box001"});
    world::SelectKeys("Box001", {20});
    RECT client{};
    GetClientRect(world::Find("trackview"), &client);
    LeftDrag("trackview", {20, 50}, {20 + client.right / 10, 50});
    EXPECT_EQ(world::Show("tracks", "")[0], "track Box001 0 30* 60 selected");
    world::Undo();
    EXPECT_EQ(world::Show("tracks", "")[0], "track Box001 0 20* 60 selected");
}

TEST_F(WorldTest, TheThumbSetsTheTime) {
    RECT slider{}, thumb{};
    GetClientRect(world::Find("timeslider"), &slider);
    GetClientRect(world::Find("thumb"), &thumb);
    const int room = slider.right - thumb.right;
    Mouse("thumb", WM_LBUTTONDOWN, MK_LBUTTON, 40, 10);
    EXPECT_EQ(input::Capture(), world::Find("thumb"));
    Mouse("thumb", WM_MOUSEMOVE, MK_LBUTTON, 40 + room / 2, 10);
    EXPECT_EQ(Only("time"), "time 50");
    // The thumb went along: the point in it is where it was taken hold of.
    Mouse("thumb", WM_MOUSEMOVE, MK_LBUTTON, 40 + room / 4, 10);
    EXPECT_EQ(Only("time"), "time 75");
    Mouse("thumb", WM_LBUTTONUP, 0, 40, 10);
    Mouse("thumb", WM_MOUSEMOVE, 0, 0, 10);
    EXPECT_EQ(Only("time"), "time 75");
    EXPECT_EQ(input::Capture(), nullptr);
}

// --- menus ---

int g_ran = 0;
int RunAction(void*, int id) {
    g_ran = id;
    return 1;
}
int Checked(void*, int id) {
    return id == 8;
}
int Enabled(void*, int) {
    return 1;
}
int ActionText(void*, int id, int, char* text, int size) {
    return wsprintfA(text, "Action %d", id) < size;
}

TEST_F(WorldTest, AMenuOfThePluginStandsInTheBarAndWorks) {
    eng_plugin_calls calls{};
    calls.execute_action = RunAction;
    calls.action_checked = Checked;
    calls.action_enabled = Enabled;
    calls.action_text = ActionText;
    eng_register_plugin_calls(&calls);
    int table = 0, callback = 0;
    world::RegisterPluginTable(&table, 77);
    EXPECT_EQ(eng_activate_table(&callback, 78), 0);
    EXPECT_EQ(eng_activate_table(&callback, 77), 1);
    EXPECT_EQ(eng_register_menu_context(5, "Test"), 1);
    EXPECT_EQ(eng_register_menu_context(5, "Test"), 0);

    eng_menu* menu = eng_new_menu();
    eng_menu_set_title(menu, "Flinder");
    EXPECT_EQ(eng_register_menu(menu, 0), 1);
    EXPECT_EQ(eng_register_menu(menu, 0), 0);
    for (const int id : {8, 5}) {
        eng_item* item = eng_new_item();
        eng_item_set_action(item, 77, id);
        eng_menu_add(menu, item, -1);
    }
    eng_item* top = eng_new_item();
    eng_item_set_submenu(top, menu);
    const int count = eng_menu_count(eng_main_menu());
    eng_menu_add(eng_main_menu(), top, count - 1);
    eng_update_menu_bar();

    const HMENU bar = GetMenu(world::Find("main"));
    char text[64] = "";
    GetMenuStringA(bar, count - 1, text, sizeof text, MF_BYPOSITION);
    EXPECT_STREQ(text, "Flinder");
    GetMenuStringA(bar, count, text, sizeof text, MF_BYPOSITION);
    EXPECT_STREQ(text, "Help");
    const HMENU popup = GetSubMenu(bar, count - 1);
    GetMenuStringA(popup, 1, text, sizeof text, MF_BYPOSITION);
    EXPECT_STREQ(text, "Action 5");
    SendMessageA(world::Find("main"), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup),
                 MAKELPARAM(count - 1, 0));
    EXPECT_EQ(GetMenuState(popup, 0, MF_BYPOSITION) & MF_CHECKED, static_cast<UINT>(MF_CHECKED));
    EXPECT_EQ(GetMenuState(popup, 1, MF_BYPOSITION) & MF_CHECKED, 0u);
    g_ran = 0;
    SendMessageA(world::Find("main"), WM_COMMAND, GetMenuItemID(popup, 1), 0);
    EXPECT_EQ(g_ran, 5);
    g_ran = 0;
    SendMessageA(world::Find("main"), WM_COMMAND, MAKEWPARAM(GetMenuItemID(popup, 1), 1), 0);
    EXPECT_EQ(g_ran, 0);  // an accelerator's notice picks no menu entry
}

TEST_F(WorldTest, AltAloneDoesNotEnterTheMenu) {
    EXPECT_EQ(SendMessageA(world::Find("main"), WM_SYSCOMMAND, SC_KEYMENU, 0), 0);
}

// --- scripts ---

struct PrimitiveCall {
    std::vector<int> kinds;
    std::vector<int> integers;
};
PrimitiveCall g_primitive_call;
void CallPrimitive(void* function, const eng_value* args, int count, eng_value* result) {
    g_primitive_call = {};
    for (int i = 0; i < count; ++i) {
        g_primitive_call.kinds.push_back(args[i].kind);
        g_primitive_call.integers.push_back(args[i].integer);
        if (args[i].kind == ENG_STRING) eng_script_error("Unable to convert");
    }
    result->kind = ENG_BOOLEAN;
    result->integer = function != nullptr;
}

TEST_F(WorldTest, ScriptsCallPrimitivesAndCatchTheirErrors) {
    const eng_script_calls calls{CallPrimitive, nullptr};
    eng_register_script_calls(&calls);
    int function = 0;
    eng_register_primitive("kv_Test", &function);
    EXPECT_EQ(world::Evaluate("kv_test 3 true"), "true");
    EXPECT_EQ(g_primitive_call.kinds, (std::vector<int>{ENG_INTEGER, ENG_BOOLEAN}));
    EXPECT_EQ(g_primitive_call.integers, (std::vector<int>{3, 1}));
    EXPECT_EQ(world::Evaluate("kv_test()"), "true");
    EXPECT_TRUE(g_primitive_call.kinds.empty());
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(world::Evaluate("kv_test \"a\"").substr(0, 24), "error: Unable to convert");
        EXPECT_EQ(world::Evaluate("try (kv_test \"a\"; 1) catch (2)"), "2");
    }
    EXPECT_EQ(world::Evaluate("kv_test 1"), "true");
}

TEST_F(WorldTest, ScriptsWorkOnTheScene) {
    EXPECT_EQ(eng_execute_script("select $*"), 1);
    EXPECT_EQ(world::SelectedCount(), 4);
    const Vector center = world::NodeCenter(Node("Box001"));
    eng_execute_script("for obj in (selection as array) do obj.pivot = obj.center");
    EXPECT_EQ(world::NodePosition(Node("Box001")), center);
    EXPECT_EQ(world::NodeCenter(Node("Box001")), center);
    View("viewport.persp").camera.azimuth = 77;
    eng_execute_script("viewport.ResetAllViews()");
    EXPECT_EQ(View("viewport.persp").camera.azimuth, 30);
}

TEST_F(WorldTest, AnInterruptedSculptToolComesBackByItsButton) {
    world::SetSculptTool(3);
    world::PushMode(200);
    EXPECT_EQ(world::Evaluate("PolyToolsUI.SculptTool"), "0");
    world::PopMode();
    world::Evaluate(
        "PolyToolsUI.SculptButtons[3] = not PolyToolsUI.SculptButtons[3];"
        "PolyBoost.ToolToggle 2 3 PolyToolsUI.SculptButtons[3]");
    EXPECT_EQ(world::Evaluate("PolyToolsUI.SculptTool"), "3");
}

}  // namespace
