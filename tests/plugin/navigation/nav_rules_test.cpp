// The gesture rules over every combination of what they look at, against the same rules told button
// by button.

#include "navigation/nav_rules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/walks/chords.h"

namespace {

struct Field {
    bool chords::Situation::* is_so;
    const char* name;
    unsigned state, held;  // the bits of it that the plug-in's tables know
};
constexpr Field kFields[] = {
    {&chords::Situation::orbit, "orbit", kNavOrbit, 0},
    {&chords::Situation::zoom, "zoom", kNavZoom, 0},
    {&chords::Situation::pan, "pan", kNavPan, 0},
    {&chords::Situation::refused, "locked", kNavLocked, 0},
    {&chords::Situation::ctrl_click, "ctrl-selection", kNavCtrlSelection, 0},
    {&chords::Situation::click_mode, "middle-click-mode", kNavMiddleClickMode, 0},
    {&chords::Situation::left, "L", 0, kHeldLeft},
    {&chords::Situation::right, "R", 0, kHeldRight},
    {&chords::Situation::middle, "M", 0, kHeldMiddle},
    {&chords::Situation::right_zoom, "altRightZoom", 0, 0},
    {&chords::Situation::left_orbit, "altLeftArcRotate", 0, 0},
};

struct Rules {
    const char* name;
    std::span<const NavRule> rules;
    std::size_t starts;  // from how many of them on the plug-in may search
    chords::Meaning (*meant)(const chords::Situation& now, unsigned button, int behind);
};
const Rules kTables[] = {
    {"kPress", kPressRules, 1,
     [](const chords::Situation& now, unsigned button, int) { return chords::Press(now, button); }},
    {"kRelease", kReleaseRules, kReleaseRules.size() + 1, chords::Release},
};

class NavRules : public testing::TestWithParam<Rules> {};

TEST_P(NavRules, AreWhatTheButtonsMeanInEverySituation) {
    const Rules& table = GetParam();
    std::vector<int> first(table.rules.size());
    for (unsigned bits = 0; bits < 1u << std::size(kFields); ++bits) {
        chords::Situation now;
        unsigned state = kNavNone;
        unsigned held = kHeldNone;
        std::string text;
        for (std::size_t i = 0; i < std::size(kFields); ++i) {
            const Field& field = kFields[i];
            if (!(now.*field.is_so = (bits >> i & 1) != 0)) continue;
            state |= field.state;
            held |= field.held;
            text += std::string(field.name) + ' ';
        }
        PluginSettings settings;
        settings.altRightZoom = now.right_zoom;
        settings.altLeftArcRotate = now.left_orbit;
        for (const unsigned button : {kHeldLeft, kHeldRight, kHeldMiddle})
            for (std::size_t start = 0; start < table.starts; ++start) {
                const NavRule* const rule = FindRule(table.rules, table.rules.data() + start, state,
                                                     held, button, settings);
                const int row = rule ? static_cast<int>(rule - table.rules.data()) + 1 : 0;
                const chords::Meaning meaning = table.meant(now, button, static_cast<int>(start));
                ASSERT_TRUE(row == meaning.row &&
                            (!rule || (rule->action == meaning.action &&
                                       (rule->held & ~button) == (meaning.held & ~button))))
                    << table.name << " (navigation/nav_rules.cpp) finds rule " << row
                    << " and tests/walks/chords.cpp rule " << meaning.row << " (0: none) for \""
                    << text << "\" and button " << button << ", from rule " << start + 1
                    << " on: tell the rule, its action and its held buttons alike in both";
                if (rule && start == 0) ++first[rule - table.rules.data()];
            }
    }
    // The last release rule is tried once a gesture has handed its release on, never first.
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_TRUE(first[i] > 0 || (table.starts > 1 && i + 1 == first.size()))
            << "rule " << i + 1 << " of " << table.name << " (navigation/nav_rules.cpp) is never "
            << "the first that applies: the rules above it say it all";
}

INSTANTIATE_TEST_SUITE_P(Tables, NavRules, testing::ValuesIn(kTables),
                         [](const auto& table) { return std::string(table.param.name); });

}  // namespace
