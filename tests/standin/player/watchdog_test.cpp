// When a play that stands still is ended, and whether it may be begun again.
#include "standin/player/watchdog.h"

#include <gtest/gtest.h>

namespace {

TEST(WatchdogTest, a_play_under_way_may_stand_still_for_less_than_ten_seconds) {
    EXPECT_FALSE(watchdog::Judge(0, nullptr));
    EXPECT_FALSE(watchdog::Judge(9999, nullptr));
}

TEST(WatchdogTest, a_play_under_way_that_stands_still_for_ten_seconds_has_failed) {
    const auto end = watchdog::Judge(10000, nullptr);
    ASSERT_TRUE(end);
    EXPECT_FALSE(end->again);
    EXPECT_EQ(end->message, "no progress for 10 seconds, the play is ended here");
}

TEST(WatchdogTest, getting_ready_may_take_as_long_as_a_busy_machine_needs) {
    EXPECT_FALSE(watchdog::Judge(10000, "loading the host"));
    EXPECT_FALSE(watchdog::Judge(29999, "loading the host"));
}

TEST(WatchdogTest, a_play_that_never_gets_ready_is_begun_again_and_says_where_it_stood) {
    const auto end = watchdog::Judge(30000, "loading the host");
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->again);
    EXPECT_EQ(end->message,
              "the play has not begun after 30 seconds, it was still loading the host");
}

}  // namespace
