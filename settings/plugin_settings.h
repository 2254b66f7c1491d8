// The user's choices, as the hooks read them at every event. Free of Win32, so that the decision
// tables that use it can be tested anywhere.
#pragma once

#include "resources/resource_ids.h"

// Each field is 0 (off) or 1 (on) and carries the name of its key in the settings file. All are off
// until the file has been read. The order is the order in which the file is written.
struct PluginSettings {
    int altRightZoom = 0;
    int mClickXForms = 0;
    int hideMClickXForms = 0;
    int useShiftClone = 0;
    int focusViewports = 0;
    int lockArcRotateOrtho = 0;
    int lockArcRotateUser = 0;
    int slowZooming = 0;
    int altLeftArcRotate = 0;
    int customSelectionCursors = 0;
    int useMayaStyle = 0;
};

extern PluginSettings g_settings;

// How the check box of a setting in the options window is enabled.
enum class Enabling {
    kAlways,
    kFollows,      // with navigation
    kFollowsLast,  // the same, after the frames of the groups
};

// What a click on the check box reads. The order in which boxes are read is that of the rows.
enum class Reading {
    kTogether,       // this box and all others that are read together
    kTogetherFirst,  // the same; this one before the others
    kAlone,          // this box
    kAloneUnmarked,  // this box, and the window has nothing to save for it
};

struct SettingDescription {
    int PluginSettings::* field;
    const char* key;
    int default_value;
    int control;  // its check box
    Enabling enabling;
    Reading reading;
};

// One row a setting, in file order: drives load, save, reset and the options window.
inline constexpr SettingDescription kSettings[] = {
    // clang-format off
    {&PluginSettings::altRightZoom,             "altRightZoom",             1, IDC_ALT_RIGHT_ZOOM,           Enabling::kFollows,      Reading::kTogether},
    {&PluginSettings::mClickXForms,             "mClickXForms",             1, IDC_MIDDLE_CLICK_TRANSFORMS,  Enabling::kFollows,      Reading::kTogetherFirst},
    {&PluginSettings::hideMClickXForms,         "hideMClickXForms",         0, IDC_HIDE_GIZMO,               Enabling::kFollows,      Reading::kAlone},
    {&PluginSettings::useShiftClone,            "useShiftClone",            1, IDC_SHIFT_CLONE,              Enabling::kFollowsLast,  Reading::kAloneUnmarked},
    {&PluginSettings::focusViewports,           "focusViewports",           1, IDC_FOCUS_VIEWPORTS,          Enabling::kAlways,       Reading::kTogether},
    {&PluginSettings::lockArcRotateOrtho,       "lockArcRotateOrtho",       1, IDC_LOCK_ROTATE_ORTHOGRAPHIC, Enabling::kFollows,      Reading::kTogether},
    {&PluginSettings::lockArcRotateUser,        "lockArcRotateUser",        0, IDC_LOCK_ROTATE_USER,         Enabling::kFollows,      Reading::kTogether},
    {&PluginSettings::slowZooming,              "slowZooming",              1, IDC_SLOW_ZOOMING,             Enabling::kFollows,      Reading::kTogether},
    {&PluginSettings::altLeftArcRotate,         "altLeftArcRotate",         1, IDC_ALT_LEFT_ROTATE,          Enabling::kFollows,      Reading::kTogether},
    {&PluginSettings::customSelectionCursors,   "customSelectionCursors",   1, IDC_SELECTION_CURSORS,        Enabling::kFollows,      Reading::kTogether},
    {&PluginSettings::useMayaStyle,             "useMayaStyle",             1, IDC_MAYA_STYLE_ACTIVE,        Enabling::kAlways,       Reading::kTogether},
    // clang-format on
};

// The text of a flag in the file. Off is an empty value: any text that is not empty, "0" included,
// reads as on.
constexpr const char* FlagText(int value) {
    return value ? "1" : "";
}
constexpr int FlagFromText(const char* text) {
    return text[0] != '\0' ? 1 : 0;
}
