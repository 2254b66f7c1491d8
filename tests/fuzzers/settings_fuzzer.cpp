// The text of a settings file through the store that the plug-in reads and writes it with. The
// first two bytes of the input are the length of the host's directory and what is wrong with it;
// the rest is the file.

#include <windows.h>

#include <iterator>

#include "settings/plugin_settings.h"
#include "settings/settings_store.h"
#include "tests/fuzzers/fuzzer.h"
#include "tests/fuzzers/profile_calls.h"

namespace {

using fuzzer::Check;

// The same keys told a second time.
struct Key {
    const char* name;
    int PluginSettings::* field;
    bool default_value;
};
constexpr Key kKeys[] = {
    {"altRightZoom", &PluginSettings::altRightZoom, true},
    {"mClickXForms", &PluginSettings::mClickXForms, true},
    {"hideMClickXForms", &PluginSettings::hideMClickXForms, false},
    {"useShiftClone", &PluginSettings::useShiftClone, true},
    {"focusViewports", &PluginSettings::focusViewports, true},
    {"lockArcRotateOrtho", &PluginSettings::lockArcRotateOrtho, true},
    {"lockArcRotateUser", &PluginSettings::lockArcRotateUser, false},
    {"slowZooming", &PluginSettings::slowZooming, true},
    {"altLeftArcRotate", &PluginSettings::altLeftArcRotate, true},
    {"customSelectionCursors", &PluginSettings::customSelectionCursors, true},
    {"useMayaStyle", &PluginSettings::useMayaStyle, true},
};
static_assert(std::size(kKeys) == std::size(kSettings),
              "each row of kSettings (settings/plugin_settings.h) has one in kKeys");

// On is any text that is not empty; a null inside ends it.
bool IsOn(const char* key, bool default_value) {
    const auto value = profile::Find("main", key);
    return value ? !value->empty() && value->front() != '\0' : default_value;
}

void CheckFlags() {
    for (const Key& key : kKeys) {
        const int value = g_settings.*key.field;
        Check(value == 0 || value == 1, "a flag that is neither on nor off");
        Check((value != 0) == IsOn(key.name, key.default_value), key.name);
    }
}

void CheckPath() {
    char path[kSettingsPathSize + 1];
    path[kSettingsPathSize] = 0x55;
    char(&given)[kSettingsPathSize] = reinterpret_cast<char(&)[kSettingsPathSize]>(path);
    GetSettingsFilePath(given);
    Check(path[kSettingsPathSize] == 0x55, "the path is longer than its room");
    const std::string text = given;
    Check(text.ends_with("Karvel.ini"), "the file has another name");
    const std::string directory = text.substr(0, text.size() - std::string("Karvel.ini").size());
    Check(directory.empty() || directory.ends_with('\\'), "no separator before the name");
    // What the host says is kept, as far as there is room, and nothing is put before it.
    const std::string wanted = profile::g_directory;
    Check(wanted.starts_with(directory.substr(0, directory.empty() ? 0 : directory.size() - 1)),
          "another directory");
}

bool SameFlags(const PluginSettings& a, const PluginSettings& b) {
    for (const Key& key : kKeys)
        if (a.*key.field != b.*key.field) return false;
    return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzer::Input input(data, size);
    const unsigned length = input.Byte() * 8;
    const unsigned choices = input.Byte();
    profile::g_directory.assign(length, 'd');
    if (length > 0 && (choices & 1)) profile::g_directory.back() = '\\';
    profile::g_is_missing = (choices & 2) != 0;
    profile::g_text = input.Rest();
    g_settings = PluginSettings();

    CheckPath();
    LoadSettings();
    CheckFlags();
    Check(IsWelcomePopupEnabled() == IsOn("flinderPopup", true), "flinderPopup");
    OptionsWindowPosition position = {-1, -1};
    LoadOptionsWindowPosition(position);

    // What is saved is loaded again, whatever else stands in the file.
    const PluginSettings loaded = g_settings;
    SaveSettings();
    g_settings = PluginSettings();
    LoadSettings();
    Check(SameFlags(loaded, g_settings), "settings are lost between saving and loading");
    CheckFlags();

    SaveOptionsWindowPosition(position);
    OptionsWindowPosition again = {-2, -2};
    LoadOptionsWindowPosition(again);
    Check(again.left == position.left && again.top == position.top, "the place is lost");

    const bool popup = (choices & 4) != 0;
    SetWelcomePopupEnabled(popup);
    Check(IsWelcomePopupEnabled() == popup, "the welcome window's choice is lost");
    g_settings = PluginSettings();
    LoadSettings();
    Check(SameFlags(loaded, g_settings), "another value was written over a setting");

    ResetSettingsToDefaults();
    for (const Key& key : kKeys)
        Check((g_settings.*key.field != 0) == key.default_value, "a default");
    return 0;
}
