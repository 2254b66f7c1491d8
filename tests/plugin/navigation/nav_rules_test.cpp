// The gesture rules over every combination of what they look at, against the same rules told a
// second time as plain conditions.

#include "navigation/nav_rules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Situation {
    bool orbit, zoom, pan, locked, ctrl_selection, middle_click_mode;
    bool left_held, right_held, middle_held;
    bool right_zoom, left_orbit;  // the two settings
    unsigned button;              // pressed or released

    unsigned State() const {
        return (orbit ? kNavOrbit : 0u) | (zoom ? kNavZoom : 0u) | (pan ? kNavPan : 0u) |
               (locked ? kNavLocked : 0u) | (ctrl_selection ? kNavCtrlSelection : 0u) |
               (middle_click_mode ? kNavMiddleClickMode : 0u);
    }
    unsigned Held() const {
        return (left_held ? kHeldLeft : 0u) | (right_held ? kHeldRight : 0u) |
               (middle_held ? kHeldMiddle : 0u);
    }
    bool Left() const { return button == kHeldLeft; }
    bool Right() const { return button == kHeldRight; }
    bool Middle() const { return button == kHeldMiddle; }

    std::string Text() const {
        std::string text;
        for (auto [flag, name] : {std::pair{orbit, "orbit "},
                                  {zoom, "zoom "},
                                  {pan, "pan "},
                                  {locked, "locked "},
                                  {ctrl_selection, "ctrl-selection "},
                                  {middle_click_mode, "middle-click-mode "},
                                  {left_held, "L "},
                                  {right_held, "R "},
                                  {middle_held, "M "},
                                  {right_zoom, "altRightZoom "},
                                  {left_orbit, "altLeftArcRotate "}}) {
            if (flag) text += name;
        }
        return text + "and the " + (Left() ? "left" : Right() ? "right" : "middle") + " button";
    }
};

std::vector<Situation> AllSituations() {
    std::vector<Situation> all;
    for (unsigned bits = 0; bits < (1u << 11); ++bits) {
        auto bit = [bits](unsigned index) { return (bits >> index & 1) != 0; };
        for (unsigned button : {1u, 2u, 16u}) {
            all.push_back({bit(0), bit(1), bit(2), bit(3), bit(4), bit(5), bit(6), bit(7), bit(8),
                           bit(9), bit(10), button});
        }
    }
    return all;
}

// Whether a numbered rule applies, and what it does then.
struct Expectation {
    bool applies;
    NavAction action;
};

std::vector<Expectation> PressExpectations(const Situation& s) {
    return {
        {s.middle_click_mode, NavAction::kMiddleClick},
        {s.pan && s.Left(), NavAction::kPanToZoom},
        {s.pan && s.right_zoom && s.Right(), NavAction::kPanToZoom},
        {(s.orbit || s.locked) && s.left_held && s.Middle(), NavAction::kOrbitToZoom},
        {(s.orbit || s.locked) && s.right_zoom && s.Right(), NavAction::kOrbitToZoom},
        {s.zoom && s.right_held && s.right_zoom && s.Middle(), NavAction::kZoomToPan},
        {s.zoom && s.right_held && s.right_zoom && s.Left(), NavAction::kZoomToOrbit},
        {!s.zoom && s.right_zoom && s.Right(), NavAction::kStartZoom},
        {!s.ctrl_selection && s.left_orbit && s.Left(), NavAction::kStartOrbit},
        {s.Middle(), NavAction::kStartPan},
    };
}

std::vector<Expectation> ReleaseExpectations(const Situation& s) {
    const bool R = s.right_zoom;
    return {
        {s.orbit && R && s.right_held && s.Left(), NavAction::kOrbitToZoom},
        {s.pan && R && s.right_held && s.Middle(), NavAction::kPanToZoom},
        {s.zoom && s.left_held && s.middle_held && s.Middle(), NavAction::kZoomToOrbit},
        {s.zoom && s.left_held && s.right_held && R && s.Right(), NavAction::kZoomToOrbit},
        {s.zoom && s.middle_held && s.left_held && s.Left(), NavAction::kZoomToPan},
        {s.zoom && R && s.middle_held && s.right_held && s.Right(), NavAction::kZoomToPan},
        {s.zoom && R && s.right_held && s.Right(), NavAction::kEndZoom},
        {!s.zoom && s.locked && R && s.right_held && s.Right(), NavAction::kEndZoom},
        {(s.pan || s.locked) && s.Middle(), NavAction::kEndPan},
        {(s.orbit || s.locked) && s.Left(), NavAction::kEndOrbit},
        {s.zoom && R && s.right_held && (s.Left() || s.Middle()), NavAction::kSwallow},
        {(s.locked || s.pan || s.orbit) && R && s.Right(), NavAction::kSwallow},
        {s.locked && s.Left(), NavAction::kLeaveLocked},
    };
}

// Two tellings of the same rules, and what they are called.
struct Telling {
    std::span<const NavRule> rules;
    const char* table;
    std::vector<Expectation> (*expectations)(const Situation&);
    const char* conditions;

    std::string Names() const {
        return std::string(table) + " (navigation/nav_rules.cpp) and " + conditions +
               " (tests/plugin/navigation/nav_rules_test.cpp)";
    }
};

std::string RuleText(std::size_t number, std::size_t count) {
    return number < count ? "rule " + std::to_string(number + 1) : "no rule";
}

void CompareFromEveryStart(const Telling& telling, const Situation& situation) {
    const auto [rules, table, expectations, conditions] = telling;
    const std::vector<Expectation> expected = expectations(situation);
    ASSERT_TRUE(rules.size() == expected.size())
        << telling.Names() << " have " << rules.size() << " and " << expected.size()
        << " rules: tell each rule in both, at the same place";
    PluginSettings settings;
    settings.altRightZoom = situation.right_zoom;
    settings.altLeftArcRotate = situation.left_orbit;
    for (std::size_t start = 0; start <= rules.size(); ++start) {
        std::size_t want = start;
        while (want < expected.size() && !expected[want].applies)
            ++want;
        const NavRule* rule = FindRule(rules, rules.data() + start, situation.State(),
                                       situation.Held(), situation.button, settings);
        const std::size_t is =
            rule ? static_cast<std::size_t>(rule - rules.data()) : expected.size();
        ASSERT_TRUE(is == want) << telling.Names() << " find " << RuleText(is, expected.size())
                                << " and " << RuleText(want, expected.size()) << " for \""
                                << situation.Text() << "\", from rule " << start + 1
                                << " on: tell the rule alike in both";
        ASSERT_TRUE(!rule || rule->action == expected[want].action)
            << telling.Names() << " give " << RuleText(want, expected.size())
            << " different actions: correct one of them";
    }
}

TEST(PressRules, FirstApplyingRuleDecidesInEverySituation) {
    const Telling telling = {kPressRules, "kPress", PressExpectations, "PressExpectations()"};
    for (const Situation& situation : AllSituations()) {
        CompareFromEveryStart(telling, situation);
        if (HasFatalFailure()) return;
    }
}

TEST(ReleaseRules, EachApplyingRuleIsFoundInOrderInEverySituation) {
    const Telling telling = {kReleaseRules, "kRelease", ReleaseExpectations,
                             "ReleaseExpectations()"};
    for (const Situation& situation : AllSituations()) {
        CompareFromEveryStart(telling, situation);
        if (HasFatalFailure()) return;
    }
}

TEST(PressRules, EveryRuleIsTheFirstOneSomewhere) {
    std::vector<int> first(kPressRules.size());
    for (const Situation& situation : AllSituations()) {
        const auto expected = PressExpectations(situation);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            if (!expected[i].applies) continue;
            ++first[i];
            break;
        }
    }
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_GT(first[i], 0) << "rule " << i + 1 << " of kPress (navigation/nav_rules.cpp) is "
                               << "never the first that applies: the rules above it say it all";
}

}  // namespace
