// The judgement over the calls that were counted.
#include "benchmarks/bounds.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using bounds::Bound;

bounds::Count Count(int most, int host) {
    return {"a move", most, host, 4, 0, true};
}

TEST(BoundsTest, ReadsNamesAndCallsAndLeavesRemarksOut) {
    std::vector<std::string> complaints;
    const bounds::Table table = bounds::Parse(
        "# heading\n\noff 1 0\nmove_viewport  15 5  # over a viewport\n", &complaints);
    EXPECT_THAT(table, ElementsAre(Pair("move_viewport", Bound{15, 5}), Pair("off", Bound{1, 0})));
    EXPECT_THAT(complaints, IsEmpty());
}

TEST(BoundsTest, ComplainsOfLinesThatAreNoBound) {
    std::vector<std::string> complaints;
    const bounds::Table table =
        bounds::Parse("pan 12\npan 12 5\npan 13 5\norbit 0 0\nzoom 16 5 1\nkey x 0\n", &complaints);
    EXPECT_THAT(table, ElementsAre(Pair("pan", Bound{12, 5})));
    constexpr char kRest[] = " of the bounds: a situation, its calls, those to the host";
    EXPECT_THAT(complaints,
                ElementsAre(std::string("line 1") + kRest, std::string("line 3") + kRest,
                            std::string("line 4") + kRest, std::string("line 5") + kRest,
                            std::string("line 6") + kRest));
}

TEST(BoundsTest, AsManyCallsAsAllowedAreNoMiss) {
    EXPECT_THAT(bounds::Misses({{"pan", {12, 5}}}, {{"pan", Count(12, 5)}}), IsEmpty());
}

TEST(BoundsTest, OneCallMoreIsAMiss) {
    EXPECT_THAT(bounds::Misses({{"pan", {12, 5}}}, {{"pan", Count(13, 5)}}),
                ElementsAre("pan: 13 calls, 5 to the host, allowed are 12 calls, 5 to the host"));
}

TEST(BoundsTest, ACallToTheHostInPlaceOfOneToTheSystemIsAMiss) {
    EXPECT_THAT(bounds::Misses({{"pan", {12, 5}}}, {{"pan", Count(12, 6)}}),
                ElementsAre("pan: 12 calls, 6 to the host, allowed are 12 calls, 5 to the host"));
}

TEST(BoundsTest, EachSituationHasABoundAndEachBoundASituation) {
    EXPECT_THAT(bounds::Misses({{"pan", {12, 5}}}, {{"orbit", Count(13, 0)}}),
                ElementsAre("orbit has no bound; it takes 13 calls, 0 to the host",
                            "there is no situation pan"));
}

TEST(BoundsTest, AmongManyTheBoundIsTheSameUnlessItHasItsOwn) {
    const bounds::Table table = {{"start", {186, 140}}, {"start@windows_1000", {4186, 140}}};
    EXPECT_THAT(
        bounds::Misses(table, {{"start@nodes_1000", Count(187, 140)},
                               {"start@windows_1000", Count(4186, 140)}}),
        ElementsAre("start@nodes_1000: 187 calls, 140 to the host, allowed are 186 calls, 140 to "
                    "the host"));
}

TEST(BoundsTest, WhatWasNotMeasuredOrAllocatesIsAMiss) {
    bounds::Count count = Count(12, 5);
    count.entries = 0;
    count.confirmed = false;
    count.allocations = 2;
    EXPECT_THAT(bounds::Misses({{"pan", {12, 5}}}, {{"pan", count}}),
                ElementsAre("pan: nothing came", "pan is not what it says: a move",
                            "pan: memory is allocated"));
}

}  // namespace
