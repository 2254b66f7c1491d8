#include "host/mode_groups.h"

#include <gtest/gtest.h>

#include <set>

namespace {

constexpr int kModes[] = {-1,    100,   200,   202,   300,   9247,
                          65743, 66509, 66511, 69631, 69634, 0x4F298C8B};

TEST(ModeGroups, ObjectModesAre1To12) {
    for (int mode = -3; mode < 40; ++mode)
        EXPECT_EQ(IsObjectMode(mode), mode > 0 && mode < 13) << mode;
    for (const int mode : kModes)
        EXPECT_FALSE(IsObjectMode(mode)) << mode;
}

TEST(ModeGroups, TheMiddleButtonDrivesAllOfThemButTheSelectingOnes) {
    const std::set<int> driven = {1, 2, 3, 4, 5, 7, 8, 9, 10, 11};
    for (int mode = -3; mode < 40; ++mode)
        EXPECT_EQ(AllowsQuickTransform(mode), driven.contains(mode)) << mode;
    for (const int mode : kModes)
        EXPECT_FALSE(AllowsQuickTransform(mode)) << mode;
}

TEST(ModeGroups, CreatingEdgesAndFacesNeverSelects) {
    for (const int mode : {0x103CE, 0x11000, 0x11001})
        EXPECT_TRUE(NeverEmulatesSelection(mode)) << mode;
    for (int mode = -3; mode < 40; ++mode)
        EXPECT_FALSE(NeverEmulatesSelection(mode)) << mode;
    for (const int mode : kModes)
        EXPECT_FALSE(NeverEmulatesSelection(mode)) << mode;
}

TEST(ModeGroups, TwoModesHaveAMeaningOfTheirOwn) {
    EXPECT_EQ(kSculptMode, 9247);
    EXPECT_EQ(kPatchOrCrossInsertMode, 65743);
}

}  // namespace
