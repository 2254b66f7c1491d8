// What the desk notices when the system does not play along: events on their way that vanish, a
// cursor that nobody moved.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "standin/engine/desk_control.h"
#include "standin/engine/desk_internal.h"
#include "standin/engine/world.h"

namespace {

class RealInputTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static const std::string problem =
            desk::Open(desk::InputKind::kReal, desk::NewDesktopName(),
                       GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN));
        ASSERT_EQ(problem, "");
    }
    void SetUp() override {
        world::Create({});
        desk::TakeForeground(world::Find("main"));
        desk::g_desk.cursor = {};
        desk::g_desk.disturbance.clear();
    }
    void TearDown() override { world::Destroy(); }

    static POINT InView(LONG x, LONG y) {
        return desk::ToScreen(world::Find("viewport.persp"), {x, y});
    }
    static std::string At(POINT point) {
        return std::to_string(point.x) + "," + std::to_string(point.y);
    }
};

TEST_F(RealInputTest, nothing_is_noticed_while_all_arrives) {
    desk::InjectMove(InView(30, 40));
    desk::Drain();
    desk::InjectButton(VK_LBUTTON, true);
    desk::InjectButton(VK_LBUTTON, false);
    desk::Drain();
    EXPECT_EQ(desk::Disturbance(), "");
}

TEST_F(RealInputTest, a_move_that_vanishes_is_noticed) {
    const POINT place = InView(30, 40);
    desk::InjectMove(place);
    MSG taken;
    ASSERT_TRUE(PeekMessageA(&taken, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE));
    desk::Drain();
    EXPECT_EQ(desk::Disturbance(),
              "the system lost an event of the mouse at " + At(place) + " over viewport.persp");
}

TEST_F(RealInputTest, a_button_that_vanishes_is_noticed) {
    const POINT place = InView(50, 20);
    desk::InjectMove(place);
    desk::Drain();
    desk::InjectButton(VK_MBUTTON, true);
    MSG taken;
    ASSERT_TRUE(PeekMessageA(&taken, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE));
    desk::Drain();
    EXPECT_EQ(desk::Disturbance(),
              "the system lost an event of the mouse at " + At(place) + " over viewport.persp");
    desk::InjectButton(VK_MBUTTON, false);
    desk::Drain();
}

TEST_F(RealInputTest, a_cursor_that_moved_by_itself_is_noticed_after_the_events) {
    const POINT place = InView(30, 40);
    desk::InjectMove(place);
    const POINT elsewhere = {place.x + 7, place.y};
    ::SetCursorPos(elsewhere.x, elsewhere.y);
    desk::Drain();
    EXPECT_EQ(desk::Disturbance(),
              "the system put the cursor to " + At(elsewhere) + ", it was left at " + At(place));
}

TEST_F(RealInputTest, a_cursor_that_moved_by_itself_is_noticed_before_the_next_event) {
    const POINT place = InView(30, 40);
    desk::InjectMove(place);
    desk::Drain();
    ::SetCursorPos(place.x, place.y + 9);
    desk::InjectKey('K', true);
    EXPECT_EQ(desk::Disturbance(), "the system put the cursor to " + At({place.x, place.y + 9}) +
                                       ", it was left at " + At(place));
    desk::InjectKey('K', false);
    desk::Drain();
}

TEST_F(RealInputTest, events_over_no_window_of_ours_may_go_elsewhere) {
    ShowWindow(world::Find("main"), SW_HIDE);
    desk::InjectMove({300, 300});
    desk::Drain();
    EXPECT_EQ(desk::Disturbance(), "");
}

}  // namespace
