// What the journal gives back to those who ask for the lines of a command.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"

namespace {

using Lines = std::vector<std::string>;

class TraceTest : public testing::Test {
protected:
    void SetUp() override {
        trace::Open({});
        trace::BeginCommand(true);
    }
};

TEST_F(TraceTest, EffectsOfACommandAreItsOwn) {
    trace::Win("SetCursor 118");
    EXPECT_EQ(trace::EffectsOfCommand(), Lines{"win SetCursor 118"});
    trace::BeginCommand(true);
    trace::Win("SetCursor 117");
    EXPECT_EQ(trace::EffectsOfCommand(), Lines{"win SetCursor 117"});
}

TEST_F(TraceTest, ACommandThatSetsNothingOffHasNoEffectsOfAnEarlierOne) {
    trace::Win("SetCursor 118");
    trace::BeginCommand(false);
    EXPECT_EQ(trace::EffectsOfCommand(), Lines{});
}

// What happens in the middle of an event is no effect of its own, but one of the command.
TEST_F(TraceTest, AllEffectsOfACommandAreThoseOfEventsInBetweenAsWell) {
    trace::In("mouse 1");
    trace::Win("SendMessageA 1");
    trace::In("mouse 2");
    trace::Win("SendMessageA 2");
    trace::Out("swallow");
    trace::Win("SetCursor 118");
    trace::Out("swallow");
    EXPECT_EQ(trace::EffectsOfCommand(),
              (Lines{"win SendMessageA 1", "win SetCursor 118", "out swallow"}));
    EXPECT_EQ(trace::AllEffectsOfCommand(),
              (Lines{"win SendMessageA 1", "win SendMessageA 2", "win SetCursor 118"}));
    trace::BeginCommand(false);
    EXPECT_EQ(trace::AllEffectsOfCommand(), Lines{});
}

TEST_F(TraceTest, WhatIsUnreadStaysToBeReadUntilTheNextLine) {
    trace::Win("SetCursor 118");
    trace::BeginCommand(false);
    EXPECT_EQ(trace::NextLine(trace::Reading::kEffects), "win SetCursor 118");
    trace::Win("SetCursor 117");
    EXPECT_EQ(trace::EffectsOfCommand(), Lines{"win SetCursor 117"});
    EXPECT_EQ(trace::NextLine(trace::Reading::kEffects), "win SetCursor 117");
    EXPECT_FALSE(trace::NextLine(trace::Reading::kEffects));
}

TEST_F(TraceTest, AnEventForgetsWhatIsUnread) {
    trace::Win("SetCursor 118");
    trace::State("keys none");
    trace::BeginCommand(true);
    EXPECT_FALSE(trace::NextLine(trace::Reading::kEffects));
    EXPECT_FALSE(trace::NextLine(trace::Reading::kStates));
}

}  // namespace
