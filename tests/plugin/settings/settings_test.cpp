#include "settings/plugin_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "standin/engine/plugin/globals.h"
#include "tests/plugin/rows.h"

namespace {

struct ExpectedSetting {
    const char* key;
    int default_value;
    int control;
    Enabling enabling;
    Reading reading;
};

constexpr Enabling kAlways = Enabling::kAlways;
constexpr Enabling kFollows = Enabling::kFollows;
constexpr Enabling kFollowsLast = Enabling::kFollowsLast;
constexpr Reading kTogether = Reading::kTogether;
constexpr Reading kTogetherFirst = Reading::kTogetherFirst;
constexpr Reading kAlone = Reading::kAlone;
constexpr Reading kAloneUnmarked = Reading::kAloneUnmarked;

// In file order, which is also the order in which boxes are enabled and read.
const ExpectedSetting kExpected[] = {
    // clang-format off
    {"altRightZoom",           1, 1007, kFollows,     kTogether},
    {"mClickXForms",           1, 1004, kFollows,     kTogetherFirst},
    {"hideMClickXForms",       0, 1027, kFollows,     kAlone},
    {"useShiftClone",          1, 1006, kFollowsLast, kAloneUnmarked},
    {"focusViewports",         1, 1010, kAlways,      kTogether},
    {"lockArcRotateOrtho",     1, 1009, kFollows,     kTogether},
    {"lockArcRotateUser",      0, 1014, kFollows,     kTogether},
    {"slowZooming",            1, 1005, kFollows,     kTogether},
    {"altLeftArcRotate",       1, 1011, kFollows,     kTogether},
    {"customSelectionCursors", 1, 1012, kFollows,     kTogether},
    {"useMayaStyle",           1, 1015, kAlways,      kTogether},
    // clang-format on
};

const char* Name(Enabling enabling) {
    switch (enabling) {
        case kAlways: return "kAlways";
        case kFollows: return "kFollows";
        case kFollowsLast: return "kFollowsLast";
    }
    return "?";
}

const char* Name(Reading reading) {
    switch (reading) {
        case kTogether: return "kTogether";
        case kTogetherFirst: return "kTogetherFirst";
        case kAlone: return "kAlone";
        case kAloneUnmarked: return "kAloneUnmarked";
    }
    return "?";
}

template <class Row>
std::string Text(const Row& row) {
    return std::string("{\"") + row.key + "\", " + std::to_string(row.default_value) + ", " +
           std::to_string(row.control) + ", " + Name(row.enabling) + ", " + Name(row.reading) + "}";
}

TEST(Settings, KeysDefaultsAndBoxesInFileOrder) {
    Table settings = {"kSettings (settings/plugin_settings.h)", {}};
    for (const SettingDescription& setting : kSettings)
        settings.rows.push_back(Text(setting));
    Table expected = {"kExpected (tests/plugin/settings/settings_test.cpp)", {}};
    for (const ExpectedSetting& setting : kExpected)
        expected.rows.push_back(Text(setting));
    const std::string difference = FirstDifference(settings, expected);
    if (!difference.empty()) ADD_FAILURE() << difference;
}

// Scenarios set and show settings by their keys; the stand-in finds them by their place.
TEST(Settings, TheStandInKnowsTheirKeys) {
    Table settings = {"kSettings (settings/plugin_settings.h)", {}};
    for (const SettingDescription& setting : kSettings)
        settings.rows.push_back(setting.key);
    Table names = {"kOptions (standin/engine/plugin/globals.h)", {}};
    for (const std::string_view key : plugin::kOptions)
        names.rows.emplace_back(key);
    const std::string difference = FirstDifference(settings, names);
    if (!difference.empty()) ADD_FAILURE() << difference;
}

TEST(Settings, EachRowNamesAFieldOfItsOwn) {
    PluginSettings settings;
    int value = 0;
    for (const SettingDescription& setting : kSettings)
        settings.*setting.field = ++value;
    value = 0;
    for (const SettingDescription& setting : kSettings) {
        EXPECT_EQ(settings.*setting.field, ++value) << setting.key;
    }
}

TEST(Settings, AllOffBeforeAnythingIsRead) {
    const PluginSettings settings;
    for (const SettingDescription& setting : kSettings) {
        EXPECT_EQ(settings.*setting.field, 0) << setting.key;
    }
}

TEST(Settings, AnyTextIsOnAndNoneIsOff) {
    EXPECT_EQ(FlagFromText(""), 0);
    for (const char* text : {"1", "0", "off", "false", " ", "00000000000000"}) {
        EXPECT_EQ(FlagFromText(text), 1) << text;
    }
    EXPECT_STREQ(FlagText(1), "1");
    EXPECT_STREQ(FlagText(0), "");
}

}  // namespace
