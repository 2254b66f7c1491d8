#include "settings/plugin_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct ExpectedSetting {
    const char* key;
    int default_value;
    int control;
};

// In file order.
const ExpectedSetting kExpected[] = {
    {"altRightZoom", 1, 1007},      {"mClickXForms", 1, 1004},
    {"hideMClickXForms", 0, 1027},  {"useShiftClone", 1, 1006},
    {"focusViewports", 1, 1010},    {"lockArcRotateOrtho", 1, 1009},
    {"lockArcRotateUser", 0, 1014}, {"slowZooming", 1, 1005},
    {"altLeftArcRotate", 1, 1011},  {"customSelectionCursors", 1, 1012},
    {"useMayaStyle", 1, 1015},
};

TEST(Settings, KeysDefaultsAndBoxesInFileOrder) {
    std::vector<std::string> keys;
    std::vector<std::string> expected_keys;
    for (const SettingDescription& setting : kSettings)
        keys.push_back(setting.key);
    for (const ExpectedSetting& expected : kExpected)
        expected_keys.push_back(expected.key);
    ASSERT_EQ(keys, expected_keys) << "a new setting gets its row in kExpected of this test";
    for (std::size_t i = 0; i < std::size(kExpected); ++i) {
        EXPECT_EQ(kSettings[i].default_value, kExpected[i].default_value) << kExpected[i].key;
        EXPECT_EQ(kSettings[i].control, kExpected[i].control) << kExpected[i].key;
    }
}

std::vector<int> BoxesOf(Enabling enabling) {
    std::vector<int> boxes;
    for (const SettingDescription& setting : kSettings) {
        if (setting.enabling == enabling) boxes.push_back(setting.control);
    }
    return boxes;
}

std::vector<int> BoxesOf(Reading reading) {
    std::vector<int> boxes;
    for (const SettingDescription& setting : kSettings) {
        if (setting.reading == reading) boxes.push_back(setting.control);
    }
    return boxes;
}

TEST(Settings, BoxesFollowNavigationInThisOrder) {
    EXPECT_EQ(BoxesOf(Enabling::kFollows),
              (std::vector<int>{1007, 1004, 1027, 1009, 1014, 1005, 1011, 1012}));
    EXPECT_EQ(BoxesOf(Enabling::kFollowsLast), std::vector<int>{1006});
    EXPECT_EQ(BoxesOf(Enabling::kAlways), (std::vector<int>{1010, 1015}));
}

TEST(Settings, BoxesAreReadInThisOrder) {
    EXPECT_EQ(BoxesOf(Reading::kTogetherFirst), std::vector<int>{1004});
    EXPECT_EQ(BoxesOf(Reading::kTogether),
              (std::vector<int>{1007, 1010, 1009, 1014, 1005, 1011, 1012, 1015}));
    EXPECT_EQ(BoxesOf(Reading::kAlone), std::vector<int>{1027});
    EXPECT_EQ(BoxesOf(Reading::kAloneUnmarked), std::vector<int>{1006});
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
