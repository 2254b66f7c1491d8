#include "settings/settings_store.h"

#include <cstdlib>

#include "host/host.h"

PluginSettings g_settings;

namespace {

constexpr char kFileName[] = "Karvel.ini";
constexpr char kSection[] = "main";
constexpr char kWelcomeKey[] = "flinderPopup";
constexpr char kDefaultPosition[] = "200";

int ReadFlag(const char* path, const SettingDescription& setting) {
    char text[16];
    GetPrivateProfileStringA(kSection, setting.key, FlagText(setting.default_value), text,
                             sizeof text, path);
    return FlagFromText(text);
}

int ReadCoordinate(const char* path, const char* key) {
    char text[128];
    GetPrivateProfileStringA(kSection, key, kDefaultPosition, text, sizeof text, path);
    return std::atoi(text);
}

void WriteCoordinate(const char* path, const char* key, int value) {
    char text[16];
    wsprintfA(text, "%i", value);
    WritePrivateProfileStringA(kSection, key, text, path);
}

}  // namespace

void GetSettingsFilePath(char (&path)[kSettingsPathSize]) {
    // Room stays for the separator and the file's name.
    lstrcpynA(path, host::ConfigurationDirectory(),
              kSettingsPathSize - static_cast<int>(sizeof kFileName) - 1);
    const int length = lstrlenA(path);
    if (length > 0 && path[length - 1] != '\\') lstrcatA(path, "\\");
    lstrcatA(path, kFileName);
}

void ResetSettingsToDefaults() {
    for (const SettingDescription& setting : kSettings) {
        g_settings.*setting.field = setting.default_value;
    }
    host::RefreshMacroButtons();
}

void LoadSettings() {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    // Deliberate: 0 is no attribute value of a missing file, so a missing file is read like any
    // other and each key yields its default.
    if (GetFileAttributesA(path) == 0) {
        ResetSettingsToDefaults();
    } else {
        for (const SettingDescription& setting : kSettings) {
            g_settings.*setting.field = ReadFlag(path, setting);
        }
    }
    host::RefreshMacroButtons();
}

void SaveSettings() {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    for (const SettingDescription& setting : kSettings) {
        WritePrivateProfileStringA(kSection, setting.key, FlagText(g_settings.*setting.field),
                                   path);
    }
}

void LoadOptionsWindowPosition(OptionsWindowPosition& position) {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    position.top = ReadCoordinate(path, "top");
    position.left = ReadCoordinate(path, "left");
}

void SaveOptionsWindowPosition(const OptionsWindowPosition& position) {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    WriteCoordinate(path, "top", position.top);
    WriteCoordinate(path, "left", position.left);
}

bool IsWelcomePopupEnabled() {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    char text[8];
    GetPrivateProfileStringA(kSection, kWelcomeKey, "1", text, sizeof text, path);
    return FlagFromText(text) != 0;
}

void SetWelcomePopupEnabled(bool enabled) {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    WritePrivateProfileStringA(kSection, kWelcomeKey, FlagText(enabled), path);
}
