// What has to be the same with virtual input and with real.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "standin/engine/input/control.h"
#include "standin/engine/trace/control.h"

namespace in_both_inputs {

// A press that a program injects after a click, at once and late. The mouse is over the perspective
// view at (30, 40).
inline void PressAfterAClick() {
    INPUT press{};
    press.type = INPUT_MOUSE;
    press.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    for (const bool late : {false, true}) {
        input::InjectButton(VK_LBUTTON, true);
        input::InjectButton(VK_LBUTTON, false);
        input::Drain();
        if (late) input::AdvanceClock(600);
        trace::BeginCommand(true);
        input::SendInputRecords(&press, 1);
        input::Drain();
        EXPECT_EQ(trace::NextLine(trace::Reading::kArrivals),
                  late ? "got viewport.persp WM_LBUTTONDOWN 1 30,40"
                       : "got viewport.persp WM_LBUTTONDBLCLK 1 30,40");
        input::InjectButton(VK_LBUTTON, false);
        input::Drain();
    }
}

inline std::vector<std::string> g_keys;

inline LRESULT CALLBACK NoteKey(int, WPARAM key, LPARAM lparam) {
    const bool extended = (lparam & (static_cast<LPARAM>(KF_EXTENDED) << 16)) != 0;
    g_keys.push_back(std::to_string(key) + (extended ? " extended" : ""));
    return 0;
}

// What a keyboard hook is told of the two sides of keys. Answers the hook, which stays installed.
inline HHOOK PressBothSides() {
    const HHOOK hook = input::InstallHook(WH_KEYBOARD, NoteKey);
    g_keys.clear();
    for (const int key : {VK_LCONTROL, VK_RCONTROL, VK_LMENU, VK_RMENU, VK_CONTROL, VK_RSHIFT}) {
        input::InjectKey(key, true);
        input::InjectKey(key, false);
        input::Drain();
    }
    EXPECT_EQ(g_keys,
              (std::vector<std::string>{"17", "17", "17 extended", "17 extended", "18", "18",
                                        "18 extended", "18 extended", "17", "17", "16", "16"}));
    return hook;
}

}  // namespace in_both_inputs
