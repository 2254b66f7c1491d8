// The judgement over the calls that were counted.
#include "benchmarks/bounds.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

nlohmann::json Count(int most) {
    return {{"title", "a move"},
            {"most", most},
            {"entries", 4},
            {"confirmed", true},
            {"allocations", 0}};
}

TEST(BoundsTest, ReadsNamesAndCallsAndLeavesRemarksOut) {
    std::vector<std::string> complaints;
    const bounds::Table table =
        bounds::Parse("# heading\n\noff 1\nmove_viewport  15  # over a viewport\n", &complaints);
    EXPECT_THAT(table, ElementsAre(Pair("move_viewport", 15), Pair("off", 1)));
    EXPECT_THAT(complaints, IsEmpty());
}

TEST(BoundsTest, ComplainsOfLinesThatAreNoBound) {
    std::vector<std::string> complaints;
    const bounds::Table table =
        bounds::Parse("pan\npan 12\npan 13\norbit 0\nzoom 16 17\nkey x\n", &complaints);
    EXPECT_THAT(table, ElementsAre(Pair("pan", 12)));
    constexpr char kRest[] = " of the bounds: a situation and its calls, once each";
    EXPECT_THAT(complaints,
                ElementsAre(std::string("line 1") + kRest, std::string("line 3") + kRest,
                            std::string("line 4") + kRest, std::string("line 5") + kRest,
                            std::string("line 6") + kRest));
}

TEST(BoundsTest, AsManyCallsAsAllowedAreNoMiss) {
    EXPECT_THAT(bounds::Misses({{"pan", 12}}, {{"pan", Count(12)}}), IsEmpty());
}

TEST(BoundsTest, OneCallMoreIsAMiss) {
    EXPECT_THAT(bounds::Misses({{"pan", 12}}, {{"pan", Count(13)}}),
                ElementsAre("pan: 13 calls, 12 are allowed"));
}

TEST(BoundsTest, EachSituationHasABoundAndEachBoundASituation) {
    EXPECT_THAT(bounds::Misses({{"pan", 12}}, {{"orbit", Count(13)}}),
                ElementsAre("orbit has no bound; it takes 13 calls", "there is no situation pan"));
}

TEST(BoundsTest, AmongManyTheBoundIsTheSameUnlessItHasItsOwn) {
    const bounds::Table table = {{"start", 186}, {"start@windows_1000", 4186}};
    EXPECT_THAT(bounds::Misses(
                    table, {{"start@nodes_1000", Count(187)}, {"start@windows_1000", Count(4186)}}),
                ElementsAre("start@nodes_1000: 187 calls, 186 are allowed"));
}

TEST(BoundsTest, WhatWasNotMeasuredOrAllocatesIsAMiss) {
    nlohmann::json count = Count(12);
    count["entries"] = 0;
    count["confirmed"] = false;
    count["allocations"] = 2;
    EXPECT_THAT(bounds::Misses({{"pan", 12}}, {{"pan", count}}),
                ElementsAre("pan: nothing came", "pan is not what it says: a move",
                            "pan: memory is allocated"));
}

}  // namespace
