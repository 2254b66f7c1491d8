// The settings file "Karvel.ini": one section, read at start and whenever the options window opens
// or closes, written when the user confirms. Nothing here reports a failure: a file or key that
// cannot be read gives the defaults, a write that fails is ignored.
#pragma once

#include <windows.h>

#include "settings/plugin_settings.h"

// Characters that GetSettingsFilePath may write, terminator included.
inline constexpr int kSettingsPathSize = 1024;

// Screen position of the options window's top-left corner, in pixels.
struct OptionsWindowPosition {
    int left;
    int top;
};

void GetSettingsFilePath(char (&path)[kSettingsPathSize]);

// Sets all flags to their defaults, in memory only.
void ResetSettingsToDefaults();
void LoadSettings();
void SaveSettings();

void LoadOptionsWindowPosition(OptionsWindowPosition& position);
void SaveOptionsWindowPosition(const OptionsWindowPosition& position);

// Whether the welcome window opens when the plug-in starts.
bool IsWelcomePopupEnabled();
void SetWelcomePopupEnabled(bool enabled);
