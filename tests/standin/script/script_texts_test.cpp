// The other texts of the system: key stepping, pivots, view reset, PolyTools, isolated playback.
#include <gtest/gtest.h>

#include <cstdio>

#include "script/script_texts.h"
#include "tests/standin/script/fake_host.h"

namespace script_test {
namespace {

class ScriptTexts : public testing::Test {
protected:
    std::string Effects(const char* text) {
        const script::Result result = interpreter.Evaluate(text);
        EXPECT_FALSE(result.error) << Describe(result, interpreter);
        return host.TakeJournal();
    }

    FakeHost host;
    script::Interpreter interpreter{host};
};

TEST_F(ScriptTexts, KeySteppingRunsItsActionBetweenTwoTogglesOfKeyMode) {
    bool key_mode_during_action = false;
    host.on_action = [&] { key_mode_during_action = host.key_mode; };
    EXPECT_EQ(Effects(kPreviousKey), "max key mode; action 0 50020; max key mode");
    EXPECT_TRUE(key_mode_during_action);
    EXPECT_FALSE(host.key_mode);
    EXPECT_EQ(Effects(kNextKey), "max key mode; action 0 50022; max key mode");
    host.key_mode = true;
    Effects(kNextKey);
    EXPECT_FALSE(key_mode_during_action);
    EXPECT_TRUE(host.key_mode);
}

TEST_F(ScriptTexts, CenterPivotMovesThePivotsOfTheSelectionOnly) {
    host.AddNode("Box001", {1, 2, 3});
    host.AddNode("Sphere001", {4, 5, 6});
    host.AddNode("Cone001", {7, 8, 9});
    EXPECT_EQ(Effects(kCenterPivot), "");
    host.selection = {script::NodeId(3), script::NodeId(1)};
    EXPECT_EQ(Effects(kCenterPivot), "pivot Cone001; pivot Box001");
    EXPECT_EQ(RunText(interpreter, "$Cone001.pivot"), "[7,8,9]");
    EXPECT_EQ(RunText(interpreter, "$Box001.pivot"), "[1,2,3]");
    EXPECT_EQ(RunText(interpreter, "$Sphere001.pivot"), "[0,0,0]");
    host.selection = host.Nodes();
    EXPECT_EQ(Effects(kCenterPivot), "pivot Box001; pivot Sphere001; pivot Cone001");
}

TEST_F(ScriptTexts, ViewReset) {
    EXPECT_EQ(Effects(kResetViews), "reset views; redraw; max tool zoomextents all");
}

TEST_F(ScriptTexts, SelectEverything) {
    EXPECT_EQ(Effects(kSelectEverything), "select");
    host.AddNode("Box001");
    host.AddNode("Sphere001");
    host.selection = {script::NodeId(2)};
    EXPECT_EQ(Effects(kSelectEverything), "select Box001 Sphere001");
}

TEST_F(ScriptTexts, ReadPolyTools) {
    int sculpt = 0;
    int paint = 0;
    bool shift = false;
    host.primitives["kv_graphitesculpttool"] = [&](const script::Arguments& arguments) {
        sculpt = std::get<int>(arguments.at(0));
        return script::Value(true);
    };
    host.primitives["kv_graphitepdtool"] = [&](const script::Arguments& arguments) {
        paint = std::get<int>(arguments.at(0));
        return script::Value(true);
    };
    host.primitives["kv_polyshiftactive"] = [&](const script::Arguments& arguments) {
        shift = std::get<bool>(arguments.at(0));
        return script::Value(true);
    };
    host.sculpt_tool = 7;
    host.paint_deform_tool = 12;
    host.poly_shift = true;
    EXPECT_EQ(Effects(kQueryPolyTools),
              "kv_graphitesculpttool 7; kv_graphitepdtool 12; kv_polyshiftactive true");
    EXPECT_EQ(sculpt, 7);
    EXPECT_EQ(paint, 12);
    EXPECT_TRUE(shift);
}

TEST_F(ScriptTexts, PressSculptButton) {
    for (const int index : {1, 2, 15}) {
        char text[200];
        std::snprintf(text, sizeof text, kToggleSculptButton, index, index, index, index);
        const std::string number = std::to_string(index);
        EXPECT_EQ(Effects(text), "sculpt button " + number + " on; tool 2 " + number + " on");
        EXPECT_EQ(Effects(text), "sculpt button " + number + " off; tool 2 " + number + " off");
    }
}

// A text is read and run one expression at a time: the first toggle of key mode has happened when
// the host refuses the action.
TEST_F(ScriptTexts, AFailingActionEndsTheText) {
    host.on_action = [] { throw script::Error("action failed"); };
    EXPECT_EQ(RunText(interpreter, kNextKey), "1:25: action failed");
    EXPECT_TRUE(host.key_mode);
}

}  // namespace
}  // namespace script_test
