// The globals of the plug-in's state tables. A link map knows names and places, not what stands
// there.
#pragma once

#include <string_view>

namespace plugin {

enum class GlobalKind { kNumber, kFlag, kPoint, kWindow, kPointer, kText };

struct Global {
    std::string_view name;
    GlobalKind kind;
};

inline constexpr Global kGlobals[] = {
    {"g_hostRelease", GlobalKind::kNumber},
    {"g_navKind", GlobalKind::kNumber},
    {"g_orbitActive", GlobalKind::kNumber},
    {"g_zoomActive", GlobalKind::kNumber},
    {"g_panActive", GlobalKind::kNumber},
    {"g_navLocked", GlobalKind::kNumber},
    {"g_heldButtons", GlobalKind::kNumber},
    {"g_quickXform", GlobalKind::kNumber},
    {"g_shiftClone", GlobalKind::kNumber},
    {"g_selCtrl", GlobalKind::kNumber},
    {"g_selShift", GlobalKind::kNumber},
    {"g_selCtrlShift", GlobalKind::kNumber},
    {"g_selectNotPushed", GlobalKind::kNumber},
    {"g_replayWaits", GlobalKind::kNumber},
    {"g_sculptRedirect", GlobalKind::kNumber},
    {"g_scrubState", GlobalKind::kNumber},
    {"g_scrubWrapped", GlobalKind::kNumber},
    {"g_scrubLast", GlobalKind::kPoint},
    {"g_thumbPos", GlobalKind::kPoint},
    {"g_zoomLast", GlobalKind::kPoint},
    {"g_zoomVirtual", GlobalKind::kPoint},
    {"g_zoomWarp", GlobalKind::kNumber},
    {"g_altUpPending", GlobalKind::kNumber},
    {"g_selectionLockRequests", GlobalKind::kNumber},
    {"g_previousLockRequests", GlobalKind::kNumber},
    {"g_gizmoWasOn", GlobalKind::kNumber},
    {"g_heldSnapSticky", GlobalKind::kNumber},
    {"g_nudgeActive", GlobalKind::kNumber},
    {"g_nudgeRecorderWasOn", GlobalKind::kNumber},
    {"g_nudgeRepeating", GlobalKind::kNumber},
    {"g_nudgeStartTick", GlobalKind::kNumber},
    {"g_activeToolButton", GlobalKind::kWindow},
    {"g_pendingSculptButton", GlobalKind::kNumber},
    {"g_graphiteSculptTool", GlobalKind::kNumber},
    {"g_graphitePdTool", GlobalKind::kNumber},
    {"g_polyShiftActive", GlobalKind::kFlag},
    {"g_searchCtrlId", GlobalKind::kNumber},
    {"g_searchText", GlobalKind::kText},
    {"g_isolatedPlayback", GlobalKind::kNumber},
    {"g_savedIsolatedPlayback", GlobalKind::kNumber},
    {"g_playbackDepth", GlobalKind::kNumber},
    {"g_viewPanel", GlobalKind::kWindow},
    {"g_lastFocusedViewport", GlobalKind::kWindow},
    {"g_prevMainWndProc", GlobalKind::kPointer},
    {"g_optionsWindow", GlobalKind::kWindow},
    {"g_optionsOpen", GlobalKind::kFlag},
    {"g_welcomeWindow", GlobalKind::kWindow},
    {"g_lockButton", GlobalKind::kWindow},
    {"g_angleSnapButton", GlobalKind::kWindow},
    {"g_button50021", GlobalKind::kWindow},
    {"g_zoomExtentsButton", GlobalKind::kWindow},
    {"g_navigationPanel", GlobalKind::kWindow},
};

// The record of the options: 32-bit numbers in the order of the settings file.
inline constexpr std::string_view kSettingsRecord = "g_settings";
inline constexpr std::string_view kOptions[] = {
    "altRightZoom",     "mClickXForms",           "hideMClickXForms",  "useShiftClone",
    "focusViewports",   "lockArcRotateOrtho",     "lockArcRotateUser", "slowZooming",
    "altLeftArcRotate", "customSelectionCursors", "useMayaStyle",
};

}  // namespace plugin
