// `kv_frameView` in every situation: which window has the focus, which keys there are.
#include <gtest/gtest.h>

#include "script/script_texts.h"
#include "tests/standin/script/fake_host.h"

namespace script_test {
namespace {

FakeKey Key(int frame) {
    return {frame * script::kTicksPerFrame, false};
}

FakeKey SelectedKey(int frame) {
    return {frame * script::kTicksPerFrame, true};
}

class FrameView : public testing::Test {
protected:
    FrameView() {
        host.primitives["trackview_isfocused"] = [this](const script::Arguments&) {
            return script::Value(track_view_focused);
        };
        host.primitives["trackbar_isfocused"] = [this](const script::Arguments&) {
            return script::Value(track_bar_focused);
        };
        host.primitives["kv_zoomextents"] = [](const script::Arguments&) {
            return script::Value(true);
        };
        host.range = {{10 * script::kTicksPerFrame}, {90 * script::kTicksPerFrame}};
        EXPECT_EQ(RunText(interpreter, kDefineFrameView), "kv_frameView()");
        EXPECT_EQ(host.TakeJournal(), "");
    }

    // What the host is made to do, without the two questions about the focus.
    std::string Effects(const char* text) {
        const script::Result result = interpreter.Evaluate(text);
        EXPECT_FALSE(result.error) << Describe(result, interpreter);
        std::erase_if(host.journal, [](const std::string& line) {
            return line == "trackview_isfocused" || line == "trackbar_isfocused";
        });
        return host.TakeJournal();
    }

    std::string Framed(int first, int last) {
        return "range (interval " + std::to_string(first) + "f " + std::to_string(last) +
               "f); action 1 1040; action 1 2180; range (interval 10f 90f)";
    }

    FakeHost host;
    script::Interpreter interpreter{host};
    bool track_view_focused = false;
    bool track_bar_focused = false;
};

TEST_F(FrameView, ZoomsTheViewsWhenNoTrackWindowHasTheFocus) {
    host.tracks = {{"Position", {SelectedKey(5), Key(20)}}};
    EXPECT_EQ(Effects(kFrameSelected), "kv_zoomextents 1");
    EXPECT_EQ(Effects(kFrameAll), "kv_zoomextents");
}

TEST_F(FrameView, AsksTheTrackBarOnlyWhenTheTrackViewHasNoFocus) {
    interpreter.Evaluate(kFrameAll);
    EXPECT_EQ(host.TakeJournal(), "trackview_isfocused; trackbar_isfocused; kv_zoomextents");
    track_view_focused = true;
    interpreter.Evaluate(kFrameAll);
    EXPECT_EQ(host.TakeJournal(), "trackview_isfocused");
}

TEST_F(FrameView, FramesTheSelectedKeysOfAllSelectedTracks) {
    track_view_focused = true;
    host.tracks = {{"Position", {Key(0), SelectedKey(30), SelectedKey(20)}},
                   {"Rotation", {Key(-5), SelectedKey(45), Key(99)}}};
    EXPECT_EQ(Effects(kFrameSelected), Framed(20, 45));
}

TEST_F(FrameView, FramesAllKeys) {
    track_view_focused = true;
    host.tracks = {{"Position", {Key(0), SelectedKey(30), SelectedKey(20)}},
                   {"Rotation", {Key(-5), SelectedKey(45), Key(99)}}};
    EXPECT_EQ(Effects(kFrameAll), Framed(-5, 99));
}

TEST_F(FrameView, TheTrackBarCountsLikeTheTrackView) {
    track_bar_focused = true;
    host.tracks = {{"Position", {SelectedKey(3), SelectedKey(7), Key(50)}}};
    EXPECT_EQ(Effects(kFrameSelected), Framed(3, 7));
    EXPECT_EQ(Effects(kFrameAll), Framed(3, 50));
}

TEST_F(FrameView, FallsBackToAllKeysWhenNoneIsSelected) {
    track_view_focused = true;
    host.tracks = {{"Position", {Key(2), Key(40)}}};
    EXPECT_EQ(Effects(kFrameSelected), Framed(2, 40));
}

TEST_F(FrameView, WidensOneSelectedKeyByAFrameOnEachSide) {
    track_view_focused = true;
    host.tracks = {{"Position", {Key(0), SelectedKey(25), Key(60)}}};
    EXPECT_EQ(Effects(kFrameSelected), Framed(24, 26));
}

TEST_F(FrameView, WidensTheOnlyKeyAndSeveralAtTheSameTime) {
    track_view_focused = true;
    host.tracks = {{"Position", {Key(0)}}};
    EXPECT_EQ(Effects(kFrameAll), Framed(-1, 1));
    EXPECT_EQ(Effects(kFrameSelected), Framed(-1, 1));
    host.tracks = {{"Position", {SelectedKey(12)}}, {"Scale", {SelectedKey(12)}}};
    EXPECT_EQ(Effects(kFrameSelected), Framed(11, 13));
}

TEST_F(FrameView, DoesNothingWithoutKeysOrTracks) {
    track_view_focused = true;
    EXPECT_EQ(Effects(kFrameSelected), "");
    EXPECT_EQ(Effects(kFrameAll), "");
    host.tracks = {{"Position", {}}, {"Rotation", {}}};
    EXPECT_EQ(Effects(kFrameSelected), "");
    EXPECT_EQ(Effects(kFrameAll), "");
}

TEST_F(FrameView, SkipsATrackWhoseKeysCannotBeCounted) {
    track_view_focused = true;
    host.tracks = {{"Position", {SelectedKey(5), SelectedKey(8)}},
                   {"Broken", {SelectedKey(70)}, false},
                   {"Scale", {SelectedKey(15)}}};
    EXPECT_EQ(Effects(kFrameSelected), Framed(5, 15));
    EXPECT_EQ(Effects(kFrameAll), Framed(5, 15));
    host.tracks = {{"Broken", {SelectedKey(70)}, false}};
    EXPECT_EQ(Effects(kFrameSelected), "");
}

TEST_F(FrameView, SkipsAGapInTheSelectedTracks) {
    track_view_focused = true;
    host.tracks = {{"Gone", {Key(1)}, true, false}, {"Position", {Key(4), Key(6)}}};
    EXPECT_EQ(Effects(kFrameAll), Framed(4, 6));
}

TEST_F(FrameView, LeavesNoVariablesBehind) {
    track_view_focused = true;
    host.tracks = {{"Position", {Key(4), Key(6)}}};
    Effects(kFrameAll);
    for (const char* name :
         {"keyTimes", "keyCount", "thisTrack", "maxtime", "mintime", "origRange", "a", "key"})
        EXPECT_EQ(RunText(interpreter, name), "undefined") << name;
}

TEST_F(FrameView, CanBeCalledFromAnActionThatItRuns) {
    track_view_focused = true;
    host.tracks = {{"Position", {Key(4), Key(6)}}};
    int calls = 0;
    host.on_action = [this, &calls] {
        if (++calls > 1) return;
        track_view_focused = false;
        EXPECT_EQ(RunText(interpreter, kFrameAll), "true");
        track_view_focused = true;
    };
    EXPECT_EQ(Effects(kFrameAll),
              "range (interval 4f 6f); action 1 1040; kv_zoomextents; action 1 2180; range "
              "(interval 10f 90f)");
}

TEST_F(FrameView, CanBeDefinedTwice) {
    EXPECT_EQ(RunText(interpreter, kDefineFrameView), "kv_frameView()");
    EXPECT_EQ(Effects(kFrameAll), "kv_zoomextents");
}

TEST_F(FrameView, WantsOneArgument) {
    EXPECT_EQ(RunText(interpreter, "kv_frameView()"),
              "1:1: Argument count error: kv_frameView wanted 1, got 0");
    EXPECT_EQ(RunText(interpreter, "kv_frameView 1 2"),
              "1:1: Argument count error: kv_frameView wanted 1, got 2");
}

// Undefined when the primitives are missing: a host without the plug-in.
TEST(FrameViewAlone, FailsAtTheFirstMissingPrimitive) {
    FakeHost host;
    script::Interpreter interpreter(host);
    EXPECT_EQ(RunText(interpreter, kDefineFrameView), "kv_frameView()");
    EXPECT_EQ(RunText(interpreter, kFrameAll), "3:6: Call needs function or class, got: undefined");
}

}  // namespace
}  // namespace script_test
