#include "tests/walks/walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "settings/plugin_settings.h"
#include "standin/scenario/parser.h"

namespace {

using Lines = std::vector<std::string>;

bool IsSound(const Lines& lines, std::string* why) {
    scenario::Vocabulary anything;
    anything.is_window = [](std::string_view) { return true; };
    anything.is_object = [](std::string_view) { return true; };
    anything.is_action = [](unsigned long, int) { return true; };
    anything.is_fault = [](std::string_view) { return true; };
    anything.is_global = [](std::string_view) { return true; };
    scenario::Scenario read;
    scenario::Mistake mistake;
    const bool sound = scenario::Parse(walk::Text(lines), anything, &read, &mistake);
    *why = std::to_string(mistake.line) + ": " + mistake.message;
    return sound;
}

TEST(Walk, IsTheSameForTheSameSeed) {
    EXPECT_EQ(walk::Make(7, 300, {}), walk::Make(7, 300, {}));
    EXPECT_NE(walk::Make(7, 300, {}), walk::Make(8, 300, {}));
}

TEST(Walk, IsASoundScenario) {
    for (uint64_t seed = 1; seed <= 50; ++seed) {
        walk::Kind kind;
        if (seed % 2 == 0) kind.faults = {"SendInput", "GetViewport"};
        kind.destroys = seed % 3 == 0;
        std::string why;
        EXPECT_TRUE(IsSound(walk::Make(seed, 400, kind), &why)) << "seed " << seed << ", " << why;
    }
}

TEST(Walk, HasNoFaultsUnlessWanted) {
    for (const std::string& line : walk::Make(3, 2000, {}))
        EXPECT_FALSE(line.starts_with("fail ")) << line;
}

TEST(Walk, LetsOnlyTheGivenCallsFail) {
    walk::Kind kind;
    kind.faults = {"SendInput", "GetViewport"};
    std::set<std::string> failing;
    for (const std::string& line : walk::Make(3, 3000, kind))
        if (line.starts_with("fail ")) failing.insert(line.substr(0, line.find(" off")));
    EXPECT_EQ(failing, (std::set<std::string>{"fail GetViewport", "fail SendInput"}));
}

TEST(Walk, DestroysNothingUnlessWanted) {
    const auto destroys_host_windows = [](const Lines& lines) {
        return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return line == "destroy trackbar" || line == "destroy thumb" ||
                   line == "destroy timeslider" || line == "destroy viewport.top";
        });
    };
    walk::Kind destroys;
    destroys.destroys = true;
    bool any = false;
    for (uint64_t seed = 1; seed <= 20; ++seed) {
        EXPECT_FALSE(destroys_host_windows(walk::Make(seed, 1000, {})));
        any = any || destroys_host_windows(walk::Make(seed, 1000, destroys));
    }
    EXPECT_TRUE(any);
}

TEST(Walk, ChangesEachSettingAndClicksEachBox) {
    std::set<std::string> lines;
    for (uint64_t seed = 1; seed <= 20; ++seed)
        for (const std::string& line : walk::Make(seed, 3000, {}))
            lines.insert(line);
    for (const SettingDescription& setting : kSettings) {
        const std::string key = setting.key;
        EXPECT_TRUE(lines.contains("poke " + key + " 1") || key == "useMayaStyle")
            << "no walk sets " << key << ": add it to kOptions of tests/walks/walk.cpp";
        const std::string box = "options." + std::to_string(setting.control);
        EXPECT_TRUE(lines.contains("click " + box))
            << "no walk clicks " << box << ": add it to kControls of tests/walks/walk.cpp";
    }
}

// Whoever holds something at a rest would be blamed on the plug-in.
TEST(Walk, HoldsNothingAtRest) {
    for (uint64_t seed = 1; seed <= 20; ++seed) {
        walk::Kind kind;
        kind.faults = {"SendInput", "GetViewport"};
        std::set<std::string> held;
        int rests = 0;
        for (const std::string& line : walk::Make(seed, 2000, kind)) {
            if (line.starts_with("key down ")) held.insert(line.substr(9));
            if (line.starts_with("key up ")) held.erase(line.substr(7));
            if (line.starts_with("down ")) held.insert("button " + line.substr(5));
            if (line.starts_with("up ")) held.erase("button " + line.substr(3));
            if (line.starts_with("fail ") && !line.ends_with(" off")) held.insert(line);
            if (line.ends_with(" off")) held.erase(line.substr(0, line.size() - 4));
            if (!walk::IsRest(line)) continue;
            ++rests;
            EXPECT_TRUE(held.empty()) << *held.begin() << " at seed " << seed;
        }
        EXPECT_GE(rests, 4) << "seed " << seed;
    }
}

TEST(Walk, CountsWhatUserAndHostDo) {
    const Lines walk = walk::Make(5, 1000, {});
    const size_t events = walk::EventsIn(walk);
    EXPECT_GE(events, 1000u);
    EXPECT_LT(events, walk.size() - walk::HeadOf(walk));
    EXPECT_EQ(walk::EventsIn({"release 13900", "start", "down left", "mode 6",
                              "poke g_heldButtons 0", "up left"}),
              2u);
}

// What becomes of lines with "; " between them.
std::string Repaired(std::string_view text) {
    Lines lines;
    for (size_t at = 0; at <= text.size(); at += lines.back().size() + 2)
        lines.emplace_back(text.substr(at, text.find("; ", at) - at));
    std::string repaired;
    for (const std::string& line : walk::Repair(lines))
        repaired += (repaired.empty() ? "" : "; ") + line;
    return repaired;
}

// What the host does for a while ends before the rest.
TEST(Repair, EndsBusyAndPeekingHostsAtTheEnd) {
    EXPECT_EQ(
        Repaired("start; busy off; busy on; busy on; peek on; down left"),
        "start; busy on; peek on; down left; busy off; peek off; up left; key down f8; key up f8");
}

TEST(Repair, SwapsNoButtonsThatAreDownAndClicksNoneOfThemTwice) {
    EXPECT_EQ(
        Repaired("start; down left; swap on; doubleclick left; up left; doubleclick left; swap on"),
        "start; down left; up left; doubleclick left; swap on; key down f8; key up f8");
}

TEST(Walk, DoesWithRealInputWhatThatCanDo) {
    walk::Kind real;
    real.real = true;
    bool pumps = false;
    for (uint64_t seed = 1; seed <= 30; ++seed) {
        bool peeks = false;
        bool reenters = false;
        for (const std::string& line : walk::Make(seed, 400, real)) {
            peeks = peeks || line == "peek on";
            reenters = reenters || line.starts_with("reenter ");
            EXPECT_FALSE(line.starts_with("screen ")) << line;
        }
        pumps = pumps || reenters;
        EXPECT_FALSE(peeks && reenters) << "seed " << seed;
    }
    EXPECT_TRUE(pumps);
}

TEST(Walk, ReachesTheWholeScreen) {
    walk::Kind kind;
    kind.left = -1280;
    const Lines lines = walk::Make(3, 2000, kind);
    EXPECT_NE(std::find(lines.begin(), lines.end(), "screen -1280,0 2560x1024"), lines.end());
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return line.starts_with("move screen -");
    }));
}

TEST(Repair, ReleasesWhatIsDownAndForgetsOtherReleases) {
    EXPECT_EQ(Repaired("start; up left; key down alt; down right; key up ctrl"),
              "start; key down alt; down right; up right; key up alt; key down f8; key up f8");
}

TEST(Repair, LeavesWhatIsSoundAlone) {
    const Lines once = walk::Repair({"start", "down left", "move by 1 1", "up left"});
    EXPECT_EQ(walk::Repair(once), once);
}

TEST(Repair, ForgetsMovesOverEditorsThatAreNotOpen) {
    EXPECT_EQ(Repaired("start; move unwrap 5 5; open unwrap; move unwrap 6 6; close unwrap; "
                       "destroy unwrap; move unwrap 7 7"),
              "start; open unwrap; move unwrap 6 6; close unwrap; key down f8; key up f8");
}

TEST(Repair, LetsNothingFailAtTheEnd) {
    EXPECT_EQ(
        Repaired("start; fail SendInput; fail SendInput; fail GetViewport off; down left"),
        "start; fail SendInput; down left; fail SendInput off; up left; key down f8; key up f8");
}

TEST(Repair, KeepsTheRestsInBetween) {
    const Lines lines = {"start",       "down left", "up left",     "key down f8",
                         "key up f8",   "mode 6",    "down right",  "up right",
                         "key down f8", "key up f8", "poke g_pan 0"};
    const Lines repaired = walk::Repair(lines);
    EXPECT_EQ(std::count_if(repaired.begin(), repaired.end(), walk::IsRest), 3);
}

// Whatever shrinking leaves out, what remains is a walk with a rest at its end.
TEST(Repair, MakesAWalkOfAnyPart) {
    walk::Dice dice(17);
    for (uint64_t seed = 1; seed <= 30; ++seed) {
        walk::Kind kind;
        kind.faults = {"SendInput"};
        kind.destroys = true;
        Lines part;
        for (const std::string& line : walk::Make(seed, 300, kind))
            if (line == "start" || !dice.Once(3)) part.push_back(line);
        const Lines repaired = walk::Repair(part);
        std::string why;
        EXPECT_TRUE(IsSound(repaired, &why)) << why;
        EXPECT_EQ(walk::Repair(repaired), repaired);
        std::multiset<std::string> down;
        for (const std::string& line : repaired) {
            if (line.starts_with("down ")) down.insert(line.substr(5));
            if (line.starts_with("up ")) {
                EXPECT_EQ(down.erase(line.substr(3)), 1u) << line;
            }
        }
        EXPECT_TRUE(down.empty());
        EXPECT_EQ(std::count(repaired.begin(), repaired.end(), "fail SendInput"),
                  std::count(repaired.begin(), repaired.end(), "fail SendInput off"));
    }
}

}  // namespace
