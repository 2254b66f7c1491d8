// The virtual keyboard, mouse and screen, as the plug-in asks about them.
#include "standin/engine/input/input.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "standin/engine/input/control.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"
#include "tests/standin/engine/in_both_inputs.h"

namespace {

class InputTest : public testing::Test {
protected:
    void SetUp() override { Open({0, 0}); }
    void TearDown() override {
        world::Destroy();
        input::Close();
    }
    static void Open(POINT origin) {
        // The thread stays on the desktop that it came to first.
        static const std::string desktop = input::NewDesktopName();
        world::Destroy();
        ASSERT_EQ(input::Open(input::Kind::kVirtual, desktop, 1280, 1024, origin), "");
        world::Create({});
    }
    static void Key(int key, bool down) {
        input::InjectKey(key, down);
        input::Drain();
    }
    static unsigned Asked(int key) {
        return static_cast<unsigned short>(input::AsyncKeyState(key));
    }
    static INPUT KeyRecord(int key, DWORD flags) {
        INPUT record{};
        record.type = INPUT_KEYBOARD;
        record.ki.wVk = static_cast<WORD>(key);
        record.ki.dwFlags = flags;
        return record;
    }
};

TEST_F(InputTest, TheGeneralKeysTellOfEachPress) {
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

TEST_F(InputTest, AGeneralRecordIsTheLeftKeyUnlessExtended) {
    Key(VK_RCONTROL, true);
    INPUT left_up = KeyRecord(VK_CONTROL, KEYEVENTF_KEYUP);
    input::SendInputRecords(&left_up, 1);
    EXPECT_TRUE(input::AsyncDown(VK_CONTROL));
    INPUT right_up = KeyRecord(VK_CONTROL, KEYEVENTF_KEYUP | KEYEVENTF_EXTENDEDKEY);
    input::SendInputRecords(&right_up, 1);
    EXPECT_FALSE(input::AsyncDown(VK_CONTROL));
    input::Drain();
    EXPECT_FALSE(input::AnythingDown());
}

TEST_F(InputTest, SwappedButtonsAreAskedByTheHardware) {
    input::SetSwapped(true);
    EXPECT_TRUE(input::ButtonsAreSwapped());
    input::InjectButton(VK_LBUTTON, true);
    input::Drain();
    EXPECT_EQ(Asked(VK_LBUTTON), 0u);
    EXPECT_EQ(Asked(VK_RBUTTON), 0x8001u);
    EXPECT_TRUE(input::KeyDown(VK_LBUTTON)) << "the thread knows of messages";
    input::InjectButton(VK_LBUTTON, false);
    input::Drain();
    EXPECT_FALSE(input::KeyDown(VK_LBUTTON));
    EXPECT_FALSE(input::AnythingDown());
    input::GiveBackSettings();
    EXPECT_FALSE(input::ButtonsAreSwapped());
}

TEST_F(InputTest, TheWholeScreenMayBeginBeforeTheMainMonitor) {
    Open({-1280, -100});
    const RECT all = input::WholeScreen();
    EXPECT_EQ(all.left, -1280);
    EXPECT_EQ(all.top, -100);
    EXPECT_EQ(all.right, 1280);
    EXPECT_EQ(all.bottom, 1024);
    EXPECT_EQ(input::ScreenSize().cx, 1280);
    for (const POINT place : {POINT{-1280, -100}, POINT{-1, -1}, POINT{0, 0}, POINT{1279, 1023}}) {
        input::InjectMove(place);
        input::Drain();
        EXPECT_EQ(input::Cursor().x, place.x);
        EXPECT_EQ(input::Cursor().y, place.y);
    }
    input::MoveCursor({-5000, 5000});
    EXPECT_EQ(input::Cursor().x, -1280);
    EXPECT_EQ(input::Cursor().y, 1023);
    // Without the flag for all monitors a place is one of the main monitor.
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    input::SendInputRecords(&record, 1);
    EXPECT_EQ(input::Cursor().x, 0);
    EXPECT_EQ(input::Cursor().y, 0);
    input::Drain();
}

TEST_F(InputTest, InjectedButtonsAreTheHardwares) {
    input::SetSwapped(true);
    input::InjectMove(input::ToScreen(world::Find("viewport.persp"), {30, 40}));
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    trace::BeginCommand(true);
    input::SendInputRecords(&record, 1);
    input::Drain();
    EXPECT_EQ(trace::NextLine(trace::Reading::kArrivals),
              "got viewport.persp WM_MOUSEMOVE 0 30,40");
    EXPECT_EQ(trace::NextLine(trace::Reading::kArrivals),
              "got viewport.persp WM_RBUTTONDOWN 2 30,40");
    EXPECT_EQ(Asked(VK_LBUTTON), 0x8001u);
    record.mi.dwFlags = MOUSEEVENTF_LEFTUP;
    input::SendInputRecords(&record, 1);
    input::Drain();
    EXPECT_FALSE(input::AnythingDown());
}

TEST_F(InputTest, AnInjectedPressMayBeTheSecondOfADoubleClick) {
    input::InjectMove(input::ToScreen(world::Find("viewport.persp"), {30, 40}));
    in_both_inputs::PressAfterAClick();
}

TEST_F(InputTest, HooksGetTheGeneralKeyAndWhichSideItIs) {
    in_both_inputs::PressBothSides();
}

// The codes with which the procedures were called.
std::vector<int> g_codes;
LRESULT g_answer = 0;

LRESULT CALLBACK Note(int code, WPARAM wparam, LPARAM lparam) {
    g_codes.push_back(code);
    if (g_answer) return g_answer;
    return input::PassOn(code, wparam, lparam);
}

TEST_F(InputTest, APeekComesBeforeTheTakingUnlessTheTakingGoesOn) {
    g_codes.clear();
    g_answer = 0;
    input::InstallHook(WH_KEYBOARD, Note);
    input::SetPeeking(true);
    Key('K', true);
    EXPECT_EQ(g_codes, (std::vector<int>{HC_NOREMOVE, HC_ACTION}));
    g_codes.clear();
    g_answer = 1;
    Key('K', false);
    EXPECT_EQ(g_codes, std::vector<int>{HC_NOREMOVE}) << "kept at the peek, it is gone";
    EXPECT_FALSE(input::KeyDown('K'));
    g_answer = 0;
    g_codes.clear();
    input::SetPeeking(false);
    input::SetNextCode(-2);
    Key('K', true);
    Key('K', false);
    EXPECT_EQ(g_codes, (std::vector<int>{-2, HC_ACTION}));
}

}  // namespace
