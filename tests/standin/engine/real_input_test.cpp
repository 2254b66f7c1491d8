// What real input notices when the system does not play along: events on their way that vanish, a
// cursor that nobody moved.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "standin/engine/input/control.h"
#include "standin/engine/input/internal.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"
#include "tests/standin/engine/in_both_inputs.h"

namespace {

class RealInputTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static const std::string problem =
            input::Open(input::Kind::kReal, input::NewDesktopName(),
                        GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN));
        ASSERT_EQ(problem, "");
    }
    void SetUp() override {
        world::Create({});
        input::TakeForeground(world::Find("main"));
        input::g_input.cursor = {};
        input::g_input.disturbance.clear();
    }
    void TearDown() override { world::Destroy(); }

    static POINT InView(LONG x, LONG y) {
        return input::ToScreen(world::Find("viewport.persp"), {x, y});
    }
    static std::string At(POINT point) {
        return std::to_string(point.x) + "," + std::to_string(point.y);
    }
};

TEST_F(RealInputTest, nothing_is_noticed_while_all_arrives) {
    input::InjectMove(InView(30, 40));
    input::Drain();
    input::InjectButton(VK_LBUTTON, true);
    input::InjectButton(VK_LBUTTON, false);
    input::Drain();
    EXPECT_EQ(input::Disturbance(), "");
}

TEST_F(RealInputTest, a_move_that_vanishes_is_noticed) {
    const POINT place = InView(30, 40);
    input::InjectMove(place);
    MSG taken;
    ASSERT_TRUE(PeekMessageA(&taken, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE));
    input::Drain();
    EXPECT_EQ(input::Disturbance(),
              "the system lost an event of the mouse at " + At(place) + " over viewport.persp");
}

TEST_F(RealInputTest, a_button_that_vanishes_is_noticed) {
    const POINT place = InView(50, 20);
    input::InjectMove(place);
    input::Drain();
    input::InjectButton(VK_MBUTTON, true);
    MSG taken;
    ASSERT_TRUE(PeekMessageA(&taken, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE));
    input::Drain();
    EXPECT_EQ(input::Disturbance(),
              "the system lost an event of the mouse at " + At(place) + " over viewport.persp");
    input::InjectButton(VK_MBUTTON, false);
    input::Drain();
}

TEST_F(RealInputTest, a_cursor_that_moved_by_itself_is_noticed_after_the_events) {
    const POINT place = InView(30, 40);
    input::InjectMove(place);
    const POINT elsewhere = {place.x + 7, place.y};
    ::SetCursorPos(elsewhere.x, elsewhere.y);
    input::Drain();
    EXPECT_EQ(input::Disturbance(),
              "the system put the cursor to " + At(elsewhere) + ", it was left at " + At(place));
}

TEST_F(RealInputTest, a_cursor_that_moved_by_itself_is_noticed_before_the_next_event) {
    const POINT place = InView(30, 40);
    input::InjectMove(place);
    input::Drain();
    ::SetCursorPos(place.x, place.y + 9);
    input::InjectKey('K', true);
    EXPECT_EQ(input::Disturbance(), "the system put the cursor to " + At({place.x, place.y + 9}) +
                                        ", it was left at " + At(place));
    input::InjectKey('K', false);
    input::Drain();
}

TEST_F(RealInputTest, events_over_no_window_of_ours_may_go_elsewhere) {
    ShowWindow(world::Find("main"), SW_HIDE);
    input::InjectMove({300, 300});
    input::Drain();
    EXPECT_EQ(input::Disturbance(), "");
}

// --- hooks of other programs in the same thread, around the plug-in's ---

std::vector<std::string> g_calls;
LRESULT g_last_answer = 0;   // of the hook that is asked last
LRESULT g_handed_back = -1;  // what the one in the middle got for passing on

void NoteCall(const char* who, int code, WPARAM message) {
    if (message == WM_MOUSEMOVE) return;
    g_calls.push_back(std::string(who) + " " + std::to_string(code) + " " +
                      std::to_string(message));
}

LRESULT CALLBACK AskedFirst(int code, WPARAM message, LPARAM details) {
    NoteCall("first", code, message);
    return CallNextHookEx(nullptr, code, message, details);
}

LRESULT CALLBACK AskedLast(int code, WPARAM message, LPARAM) {
    NoteCall("last", code, message);
    return message == WM_MOUSEMOVE ? 0 : g_last_answer;
}

LRESULT CALLBACK InTheMiddle(int code, WPARAM message, LPARAM details) {
    NoteCall("ours", code, message);
    const LRESULT answer = input::PassOn(code, message, details);
    if (message != WM_MOUSEMOVE) g_handed_back = answer;
    return answer;
}

class HookChain : public RealInputTest {
protected:
    void SetUp() override {
        RealInputTest::SetUp();
        const DWORD thread = GetCurrentThreadId();
        last_ = SetWindowsHookExA(WH_MOUSE, AskedLast, nullptr, thread);
        ours_ = input::InstallHook(WH_MOUSE, InTheMiddle);
        first_ = SetWindowsHookExA(WH_MOUSE, AskedFirst, nullptr, thread);
        g_last_answer = 0;
        g_handed_back = -1;
        input::InjectMove(InView(30, 40));
        input::Drain();
        g_calls.clear();
        swallowed_ = input::CountsSoFar().swallowed;
    }
    void TearDown() override {
        input::SetPeeking(false);
        for (const HHOOK hook : {last_, first_})
            UnhookWindowsHookEx(hook);
        input::RemoveHook(ours_);
        if (input::AsyncDown(VK_MBUTTON)) input::InjectButton(VK_MBUTTON, false);
        input::Drain();
        RealInputTest::TearDown();
    }
    static void PressMiddle() {
        input::InjectButton(VK_MBUTTON, true);
        input::Drain();
    }

    unsigned long long swallowed_ = 0;

private:
    HHOOK last_ = nullptr;
    HHOOK ours_ = nullptr;
    HHOOK first_ = nullptr;
};

const std::string kMiddle = " " + std::to_string(WM_MBUTTONDOWN);

TEST_F(HookChain, OthersSeeWhatIsPassedOnWithItsCode) {
    input::SetPeeking(true);
    PressMiddle();
    EXPECT_EQ(g_calls, (std::vector<std::string>{"first 3" + kMiddle, "ours 3" + kMiddle,
                                                 "last 3" + kMiddle, "first 0" + kMiddle,
                                                 "ours 0" + kMiddle, "last 0" + kMiddle}));
    EXPECT_EQ(input::Capture(), world::Find("viewport.persp"));
}

TEST_F(HookChain, ACodeOfItsOwnIsPassedOnAsItIs) {
    input::SetNextCode(-1);
    PressMiddle();
    EXPECT_EQ(g_calls, (std::vector<std::string>{"first 0" + kMiddle, "ours -1" + kMiddle,
                                                 "last -1" + kMiddle}));
    EXPECT_EQ(input::Capture(), world::Find("viewport.persp"));
}

TEST_F(HookChain, TheAnswerOfOthersIsHandedBack) {
    g_last_answer = 1;
    PressMiddle();
    EXPECT_EQ(g_handed_back, 1);
    EXPECT_EQ(input::Capture(), nullptr) << "the other program keeps the press";
    EXPECT_EQ(input::CountsSoFar().swallowed, swallowed_) << "the plug-in did not";
}

// --- keys that the system does not tell of as Windows does ---

TEST_F(RealInputTest, the_general_keys_tell_of_each_press) {
    const auto asked = [](int key) {
        return static_cast<unsigned short>(input::AsyncKeyState(key));
    };
    asked(VK_CONTROL);
    input::InjectKey(VK_RCONTROL, true);
    input::Drain();
    EXPECT_EQ(asked(VK_CONTROL), 0x8001);
    EXPECT_EQ(asked(VK_CONTROL), 0x8000);
    input::InjectKey(VK_CONTROL, true);
    input::InjectKey(VK_CONTROL, false);
    input::Drain();
    EXPECT_EQ(asked(VK_CONTROL), 0x8001);
    input::InjectKey(VK_RCONTROL, false);
    input::Drain();
    EXPECT_EQ(asked(VK_CONTROL), 0);
}

TEST_F(RealInputTest, swapped_buttons_arrive_exchanged) {
    input::SetSwapped(true);
    input::InjectMove(InView(30, 40));
    input::InjectButton(VK_LBUTTON, true);
    input::Drain();
    EXPECT_LT(GetKeyState(VK_LBUTTON), 0);
    EXPECT_GE(input::AsyncKeyState(VK_LBUTTON), 0);
    EXPECT_LT(input::AsyncKeyState(VK_RBUTTON), 0);
    input::InjectButton(VK_LBUTTON, false);
    input::Drain();
    input::GiveBackSettings();
    EXPECT_FALSE(input::ButtonsAreSwapped());
    EXPECT_EQ(input::Disturbance(), "");
}

TEST_F(RealInputTest, injected_buttons_are_the_hardwares) {
    input::SetSwapped(true);
    input::InjectMove(InView(30, 40));
    input::Drain();
    INPUT record{};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    trace::BeginCommand(true);
    input::SendInputRecords(&record, 1);
    input::Drain();
    EXPECT_EQ(trace::NextLine(trace::Reading::kArrivals),
              "got viewport.persp WM_RBUTTONDOWN 2 30,40");
    EXPECT_LT(input::AsyncKeyState(VK_LBUTTON), 0);
    record.mi.dwFlags = MOUSEEVENTF_LEFTUP;
    input::SendInputRecords(&record, 1);
    input::Drain();
    input::GiveBackSettings();
    EXPECT_EQ(input::Disturbance(), "");
}

TEST_F(RealInputTest, an_injected_press_may_be_the_second_of_a_double_click) {
    input::InjectMove(InView(30, 40));
    in_both_inputs::PressAfterAClick();
}

TEST_F(RealInputTest, hooks_get_the_general_key_and_which_side_it_is) {
    input::RemoveHook(in_both_inputs::PressBothSides());
}

// What our own bookkeeping of the menu keys says, against what the system does with the same
// messages in a window of nobody's.
TEST_F(RealInputTest, the_menu_command_comes_where_the_system_sends_it) {
    static int commands = 0;
    WNDCLASSA window_class{};
    window_class.lpszClassName = "MenuKeyTest";
    window_class.lpfnWndProc = [](HWND window, UINT message, WPARAM wparam,
                                  LPARAM lparam) -> LRESULT {
        if (message == WM_SYSCOMMAND && (wparam & 0xFFF0) == SC_KEYMENU) return ++commands, 0;
        return DefWindowProcA(window, message, wparam, lparam);
    };
    RegisterClassA(&window_class);
    const HWND window = CreateWindowExA(0, "MenuKeyTest", "", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                        nullptr, nullptr, nullptr, nullptr);
    // Each letter is a press, each small one a release: A for Alt, F for F10, K for another key.
    for (const std::string keys :
         {"Aa", "AKka", "Ff", "AaAa", "KAka", "FKkf", "AAa", "FFf", "KkAa"}) {
        trace::BeginCommand(true);
        commands = 0;
        input::SetFocus(world::Find("main"));
        int told = 0;
        for (const HWND focus : {world::Find("main"), window}) {
            input::SetFocus(focus);
            for (const char c : keys) {
                const char key = static_cast<char>(c & ~0x20);
                input::InjectKey(key == 'A' ? VK_MENU : key == 'F' ? VK_F10 : 'K', c == key);
                if (focus != window) {
                    input::Drain();
                    continue;
                }
                MSG message;
                while (PeekMessageA(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE))
                    DispatchMessageA(&message);
                input::g_input.waiting.clear();
            }
            if (focus == window) break;
            while (const auto line = trace::NextLine(trace::Reading::kArrivals))
                told += *line == "got main WM_SYSCOMMAND SC_KEYMENU 0,0";
        }
        EXPECT_EQ(told, commands) << keys;
        EXPECT_EQ(commands > 0, keys != "AKka" && keys != "FKkf" && keys != "KAka" && keys != "AAa")
            << keys;
    }
    DestroyWindow(window);
    UnregisterClassA("MenuKeyTest", nullptr);
}

}  // namespace
