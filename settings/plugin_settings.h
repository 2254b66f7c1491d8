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

struct SettingDescription {
    int PluginSettings::* field;
    const char* key;
    int default_value;
    int control;  // its check box in the options window
};

// One row a setting, in file order: drives load, save, reset and the options window.
inline constexpr SettingDescription kSettings[] = {
    // clang-format off
    {&PluginSettings::altRightZoom,           "altRightZoom",           1, IDC_ALT_RIGHT_ZOOM},
    {&PluginSettings::mClickXForms,           "mClickXForms",           1, IDC_MIDDLE_CLICK_TRANSFORMS},
    {&PluginSettings::hideMClickXForms,       "hideMClickXForms",       0, IDC_HIDE_GIZMO},
    {&PluginSettings::useShiftClone,          "useShiftClone",          1, IDC_SHIFT_CLONE},
    {&PluginSettings::focusViewports,         "focusViewports",         1, IDC_FOCUS_VIEWPORTS},
    {&PluginSettings::lockArcRotateOrtho,     "lockArcRotateOrtho",     1, IDC_LOCK_ROTATE_ORTHOGRAPHIC},
    {&PluginSettings::lockArcRotateUser,      "lockArcRotateUser",      0, IDC_LOCK_ROTATE_USER},
    {&PluginSettings::slowZooming,            "slowZooming",            1, IDC_SLOW_ZOOMING},
    {&PluginSettings::altLeftArcRotate,       "altLeftArcRotate",       1, IDC_ALT_LEFT_ROTATE},
    {&PluginSettings::customSelectionCursors, "customSelectionCursors", 1, IDC_SELECTION_CURSORS},
    {&PluginSettings::useMayaStyle,           "useMayaStyle",           1, IDC_MAYA_STYLE_ACTIVE},
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
