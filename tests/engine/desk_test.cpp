// The virtual keyboard, mouse and screen, as the plug-in asks about them.
#include "standin/engine/desk.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "standin/engine/desk_control.h"
#include "standin/engine/trace_control.h"
#include "standin/engine/world.h"
#include "tests/engine/in_both_inputs.h"

namespace {

class DeskTest : public testing::Test {
protected:
    void SetUp() override { Open({0, 0}); }
    void TearDown() override {
        world::Destroy();
        desk::Close();
    }
    static void Open(POINT origin) {
        // The thread stays on the desktop that it came to first.
        static const std::string desktop = desk::NewDesktopName();
        world::Destroy();
        ASSERT_EQ(desk::Open(desk::InputKind::kVirtual, desktop, 1280, 1024, origin), "");
        world::Create({});
    }
    static void Key(int key, bool down) {
        desk::InjectKey(key, down);
        desk::Drain();
    }
    static unsigned Asked(int key) { return static_cast<unsigned short>(desk::AsyncKeyState(key)); }
    static INPUT KeyRecord(int key, DWORD flags) {
        INPUT record{};
        record.type = INPUT_KEYBOARD;
        record.ki.wVk = static_cast<WORD>(key);
        record.ki.dwFlags = flags;
        return record;
    }
};

TEST_F(DeskTest, TheGeneralKeysTellOfEachPress) {
    struct Row {
        int general, left, right;
    };
    for (const Row& row : {Row{VK_CONTROL, VK_LCONTROL, VK_RCONTROL},
                           Row{VK_MENU, VK_LMENU, VK_RMENU}, Row{VK_SHIFT, VK_LSHIFT, VK_RSHIFT}}) {
        EXPECT_EQ(Asked(row.general), 0u);
        Key(row.left, true);
        EXPECT_EQ(Asked(row.general), 0x8001u);
        EXPECT_EQ(Asked(row.general), 0x8000u) << "it was asked since";
        Key(row.right, true);
        EXPECT_EQ(Asked(row.general), 0x8001u) << "the other one is a press, too";
        Key(row.left, false);
        EXPECT_EQ(Asked(row.general), 0x8000u);
        Key(row.right, false);
        EXPECT_EQ(Asked(row.general), 0u);
        Key(row.right, true);
        Key(row.right, false);
        EXPECT_EQ(Asked(row.general), 1u) << "a press that is over";
        EXPECT_EQ(Asked(row.right), 1u);
        EXPECT_EQ(Asked(row.general), 0u);
        Asked(row.left);
        Asked(row.right);
    }
}

TEST_F(DeskTest, AGeneralRecordIsTheLeftKeyUnlessExtended) {
    Key(VK_RCONTROL, true);
    INPUT left_up = KeyRecord(VK_CONTROL, KEYEVENTF_KEYUP);
    desk::SendInputRecords(&left_up, 1);
    EXPECT_TRUE(desk::AsyncDown(VK_CONTROL));
    INPUT right_up = KeyRecord(VK_CONTROL, KEYEVENTF_KEYUP | KEYEVENTF_EXTENDEDKEY);
    desk::SendInputRecords(&right_up, 1);
    EXPECT_FALSE(desk::AsyncDown(VK_CONTROL));
    desk::Drain();
    EXPECT_FALSE(desk::AnythingDown());
}

TEST_F(DeskTest, SwappedButtonsAreAskedByTheHardware) {
    desk::SetSwapped(true);
    EXPECT_TRUE(desk::ButtonsAreSwapped());
    desk::InjectButton(VK_LBUTTON, true);
    desk::Drain();
    EXPECT_EQ(Asked(VK_LBUTTON), 0u);
    EXPECT_EQ(Asked(VK_RBUTTON), 0x8001u);
    EXPECT_TRUE(desk::KeyDown(VK_LBUTTON)) << "the thread knows of messages";
    desk::InjectButton(VK_LBUTTON, false);
    desk::Drain();
    EXPECT_FALSE(desk::KeyDown(VK_LBUTTON));
    EXPECT_FALSE(desk::AnythingDown());
    desk::GiveBackSettings();
    EXPECT_FALSE(desk::ButtonsAreSwapped());
}

TEST_F(DeskTest, TheWholeScreenMayBeginBeforeTheMainMonitor) {
    Open({-1280, -100});
    const RECT all = desk::WholeScreen();
    EXPECT_EQ(all.left, -1280);
    EXPECT_EQ(all.top, -100);
    EXPECT_EQ(all.right, 1280);
    EXPECT_EQ(all.bottom, 1024);
    EXPECT_EQ(desk::ScreenSize().cx, 1280);
    for (const POINT place : {POINT{-1280, -100}, POINT{-1, -1}, POINT{0, 0}, POINT{1279, 1023}}) {
        desk::InjectMove(place);
        desk::Drain();
        EXPECT_EQ(desk::Cursor().x, place.x);
        EXPECT_EQ(desk::Cursor().y, place.y);
    }
    desk::MoveCursor({-5000, 5000});
    EXPECT_EQ(desk::Cursor().x, -1280);
    EXPECT_EQ(desk::Cursor().y, 1023);
    // Without the flag for all monitors a place is one of the main monitor.
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    desk::SendInputRecords(&record, 1);
    EXPECT_EQ(desk::Cursor().x, 0);
    EXPECT_EQ(desk::Cursor().y, 0);
    desk::Drain();
}

TEST_F(DeskTest, InjectedButtonsAreTheHardwares) {
    desk::SetSwapped(true);
    desk::InjectMove(desk::ToScreen(world::Find("viewport.persp"), {30, 40}));
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    trace::BeginCommand(true);
    desk::SendInputRecords(&record, 1);
    desk::Drain();
    EXPECT_EQ(trace::NextLine(trace::Reading::kArrivals),
              "got viewport.persp WM_MOUSEMOVE 0 30,40");
    EXPECT_EQ(trace::NextLine(trace::Reading::kArrivals),
              "got viewport.persp WM_RBUTTONDOWN 2 30,40");
    EXPECT_EQ(Asked(VK_LBUTTON), 0x8001u);
    record.mi.dwFlags = MOUSEEVENTF_LEFTUP;
    desk::SendInputRecords(&record, 1);
    desk::Drain();
    EXPECT_FALSE(desk::AnythingDown());
}

TEST_F(DeskTest, AnInjectedPressMayBeTheSecondOfADoubleClick) {
    desk::InjectMove(desk::ToScreen(world::Find("viewport.persp"), {30, 40}));
    in_both_inputs::PressAfterAClick();
}

TEST_F(DeskTest, HooksGetTheGeneralKeyAndWhichSideItIs) {
    in_both_inputs::PressBothSides();
}

// The codes with which the procedures were called.
std::vector<int> g_codes;
LRESULT g_answer = 0;

LRESULT CALLBACK Note(int code, WPARAM wparam, LPARAM lparam) {
    g_codes.push_back(code);
    if (g_answer) return g_answer;
    return desk::PassOn(code, wparam, lparam);
}

TEST_F(DeskTest, ALookComesBeforeTheTakingUnlessTheTakingGoesOn) {
    g_codes.clear();
    g_answer = 0;
    desk::InstallHook(WH_KEYBOARD, Note);
    desk::SetPeeking(true);
    Key('K', true);
    EXPECT_EQ(g_codes, (std::vector<int>{HC_NOREMOVE, HC_ACTION}));
    g_codes.clear();
    g_answer = 1;
    Key('K', false);
    EXPECT_EQ(g_codes, std::vector<int>{HC_NOREMOVE}) << "kept at the look, it is gone";
    EXPECT_FALSE(desk::KeyDown('K'));
    g_answer = 0;
    g_codes.clear();
    desk::SetPeeking(false);
    desk::SetNextCode(-2);
    Key('K', true);
    Key('K', false);
    EXPECT_EQ(g_codes, (std::vector<int>{-2, HC_ACTION}));
}

}  // namespace
