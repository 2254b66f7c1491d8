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
    ASSERT_EQ(std::size(kSettings), std::size(kExpected));
    for (std::size_t i = 0; i < std::size(kExpected); ++i) {
        EXPECT_STREQ(kSettings[i].key, kExpected[i].key);
        EXPECT_EQ(kSettings[i].default_value, kExpected[i].default_value) << kExpected[i].key;
        EXPECT_EQ(kSettings[i].control, kExpected[i].control) << kExpected[i].key;
    }
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
    EXPECT_EQ(settings.useMayaStyle, 11);
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
