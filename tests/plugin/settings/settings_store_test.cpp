// The settings file with the system's functions for such files played around it: which path,
// section, key and default text each reading is asked with and how much room it has, and what is
// written in which order.

#include "settings/settings_store.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "host/host.h"

namespace {

using Lines = std::vector<std::string>;

Lines g_lines;
std::string g_folder;
DWORD g_attributes = FILE_ATTRIBUTE_NORMAL;
std::map<std::string, std::string> g_values;  // those of the file

DWORD WINAPI PlayedAttributes(LPCSTR path) {
    g_lines.push_back(std::string("attributes of ") + path);
    return g_attributes;
}

DWORD WINAPI PlayedRead(LPCSTR section, LPCSTR key, LPCSTR otherwise, LPSTR text, DWORD size,
                        LPCSTR path) {
    g_lines.push_back(std::string(path) + " [" + section + "] " + key + " or \"" + otherwise +
                      "\" in " + std::to_string(size));
    const auto value = g_values.find(key);
    lstrcpynA(text, value == g_values.end() ? otherwise : value->second.c_str(),
              static_cast<int>(size));
    return static_cast<DWORD>(lstrlenA(text));
}

BOOL WINAPI PlayedWrite(LPCSTR section, LPCSTR key, LPCSTR text, LPCSTR path) {
    g_lines.push_back(std::string(path) + " [" + section + "] " + key + "=" + text);
    return TRUE;
}

}  // namespace

// The import slots of the Win32 calls, filled by hand.
extern "C" {
void* __imp_GetFileAttributesA = reinterpret_cast<void*>(PlayedAttributes);
void* __imp_GetPrivateProfileStringA = reinterpret_cast<void*>(PlayedRead);
void* __imp_WritePrivateProfileStringA = reinterpret_cast<void*>(PlayedWrite);
}

namespace host {

const char* ConfigurationDirectory() {
    return g_folder.c_str();
}
void RefreshMacroButtons() {
    g_lines.push_back("refresh");
}

}  // namespace host

namespace {

// In file order, with the text that stands for an absent key.
struct Key {
    const char* name;
    const char* otherwise;
    int PluginSettings::* field;
};
constexpr Key kKeys[] = {
    {"altRightZoom", "1", &PluginSettings::altRightZoom},
    {"mClickXForms", "1", &PluginSettings::mClickXForms},
    {"hideMClickXForms", "", &PluginSettings::hideMClickXForms},
    {"useShiftClone", "1", &PluginSettings::useShiftClone},
    {"focusViewports", "1", &PluginSettings::focusViewports},
    {"lockArcRotateOrtho", "1", &PluginSettings::lockArcRotateOrtho},
    {"lockArcRotateUser", "", &PluginSettings::lockArcRotateUser},
    {"slowZooming", "1", &PluginSettings::slowZooming},
    {"altLeftArcRotate", "1", &PluginSettings::altLeftArcRotate},
    {"customSelectionCursors", "1", &PluginSettings::customSelectionCursors},
    {"useMayaStyle", "1", &PluginSettings::useMayaStyle},
};

class SettingsStore : public testing::Test {
protected:
    void SetUp() override {
        g_lines.clear();
        g_folder = "C:\\cfg";
        g_attributes = FILE_ATTRIBUTE_NORMAL;
        g_values.clear();
        g_settings = {};
    }

    static std::string Path() {
        char path[kSettingsPathSize] = "";
        GetSettingsFilePath(path);
        return path;
    }
    static Lines Readings() {
        Lines lines = {"attributes of C:\\cfg\\Karvel.ini"};
        for (const Key& key : kKeys)
            lines.push_back(std::string("C:\\cfg\\Karvel.ini [main] ") + key.name + " or \"" +
                            key.otherwise + "\" in 16");
        return lines;
    }
    static void ExpectDefaults() {
        for (const Key& key : kKeys)
            EXPECT_EQ(g_settings.*key.field, key.otherwise[0] ? 1 : 0) << key.name;
    }
};

TEST_F(SettingsStore, OneBackslashStandsBeforeTheName) {
    EXPECT_EQ(Path(), "C:\\cfg\\Karvel.ini");
    g_folder = "C:\\cfg\\";
    EXPECT_EQ(Path(), "C:\\cfg\\Karvel.ini");
    g_folder = "\\";
    EXPECT_EQ(Path(), "\\Karvel.ini");
    g_folder = "c";
    EXPECT_EQ(Path(), "c\\Karvel.ini");
    g_folder = "";
    EXPECT_EQ(Path(), "Karvel.ini");
}

TEST_F(SettingsStore, AFolderOfAnyLengthLeavesRoomForTheName) {
    g_folder = std::string(3000, 'd');
    const std::string path = Path();
    EXPECT_LT(path.size(), static_cast<size_t>(kSettingsPathSize));
    EXPECT_EQ(path.substr(path.find_first_not_of('d')), "\\Karvel.ini");
}

TEST_F(SettingsStore, LoadingReadsEachKeyWithItsDefault) {
    LoadSettings();
    Lines expected = Readings();
    expected.push_back("refresh");
    EXPECT_EQ(g_lines, expected);
    ExpectDefaults();
}

TEST_F(SettingsStore, LoadingTakesWhatStandsInTheFile) {
    for (const Key& key : kKeys) {
        g_values.clear();
        g_values[key.name] = key.otherwise[0] ? "" : "0";
        LoadSettings();
        for (const Key& other : kKeys)
            EXPECT_EQ(g_settings.*other.field,
                      (other.otherwise[0] ? 1 : 0) ^ (other.field == key.field ? 1 : 0))
                << key.name << " in the file, " << other.name;
    }
}

TEST_F(SettingsStore, AttributesOfZeroGiveTheDefaultsAndASecondRefresh) {
    g_attributes = 0;
    LoadSettings();
    EXPECT_EQ(g_lines, (Lines{"attributes of C:\\cfg\\Karvel.ini", "refresh", "refresh"}));
    ExpectDefaults();
}

TEST_F(SettingsStore, AttributesOfNoFileAreReadOn) {
    g_attributes = INVALID_FILE_ATTRIBUTES;
    LoadSettings();
    Lines expected = Readings();
    expected.push_back("refresh");
    EXPECT_EQ(g_lines, expected);
}

TEST_F(SettingsStore, ResettingSetsAllFlagsAndWritesNothing) {
    for (const Key& key : kKeys)
        g_settings.*key.field = key.otherwise[0] ? 0 : 1;
    ResetSettingsToDefaults();
    EXPECT_EQ(g_lines, Lines{"refresh"});
    ExpectDefaults();
}

TEST_F(SettingsStore, SavingWritesEachKeyInOrder) {
    for (const int value : {0, 1}) {
        Lines expected;
        for (const Key& key : kKeys) {
            g_settings.*key.field = value;
            expected.push_back(std::string("C:\\cfg\\Karvel.ini [main] ") + key.name + "=" +
                               (value ? "1" : ""));
        }
        g_lines.clear();
        SaveSettings();
        EXPECT_EQ(g_lines, expected);
    }
}

TEST_F(SettingsStore, ThePlaceIsReadTopFirst) {
    g_values = {{"top", "-31"}, {"left", "4567"}};
    OptionsWindowPosition place = {};
    LoadOptionsWindowPosition(place);
    EXPECT_EQ(g_lines, (Lines{"C:\\cfg\\Karvel.ini [main] top or \"200\" in 128",
                              "C:\\cfg\\Karvel.ini [main] left or \"200\" in 128"}));
    EXPECT_EQ(place.top, -31);
    EXPECT_EQ(place.left, 4567);
}

TEST_F(SettingsStore, APlaceThatIsNotThereIs200AndLettersAre0) {
    g_values = {{"left", "left"}};
    OptionsWindowPosition place = {};
    LoadOptionsWindowPosition(place);
    EXPECT_EQ(place.top, 200);
    EXPECT_EQ(place.left, 0);
}

TEST_F(SettingsStore, ThePlaceIsWrittenTopFirst) {
    SaveOptionsWindowPosition({-2147483647 - 1, 2147483647});
    EXPECT_EQ(g_lines, (Lines{"C:\\cfg\\Karvel.ini [main] top=2147483647",
                              "C:\\cfg\\Karvel.ini [main] left=-2147483648"}));
}

TEST_F(SettingsStore, TheWelcomeKeyIsOnForAnyTextAndByDefault) {
    const Lines reading = {"C:\\cfg\\Karvel.ini [main] flinderPopup or \"1\" in 8"};
    EXPECT_TRUE(IsWelcomePopupEnabled());
    EXPECT_EQ(g_lines, reading);
    g_values["flinderPopup"] = "0";
    EXPECT_TRUE(IsWelcomePopupEnabled());
    g_values["flinderPopup"] = "";
    EXPECT_FALSE(IsWelcomePopupEnabled());
}

TEST_F(SettingsStore, TheWelcomeKeyIsWrittenAlone) {
    SetWelcomePopupEnabled(true);
    SetWelcomePopupEnabled(false);
    EXPECT_EQ(g_lines, (Lines{"C:\\cfg\\Karvel.ini [main] flinderPopup=1",
                              "C:\\cfg\\Karvel.ini [main] flinderPopup="}));
}

}  // namespace
