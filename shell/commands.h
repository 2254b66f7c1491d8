// The list of commands, in the order of the action table.
#pragma once

#include "resources/command_ids.h"
#include "resources/resource_ids.h"

enum class Action {
    kOnce,
    kWhileHeld,  // "sticky": in effect while its key is held, so it makes sense with a hotkey only
};

struct Command {
    CommandId id;
    int description;  // string ids
    int name;         // of its button and its menu entry
    int icon;         // index of its image in the host's icon file
    Action action;
    int since;  // first release of the host that has it
};

inline constexpr int kNoIcon = -1;
inline constexpr int kFirstReleaseWithSnaps = 7000;

inline constexpr Command kCommands[] = {
    // clang-format off
    {kCommandSelectionLock,    IDS_SELECTION_LOCK,   IDS_STICKY_SHORT_NAME,    kNoIcon, Action::kWhileHeld, 0},
    {kCommandShowOptions,      IDS_SHOW_OPTIONS,     IDS_OPTIONS_MENU,         16,      Action::kOnce,      0},
    {kCommandAbout,            IDS_ABOUT,            IDS_ABOUT_MENU,           kNoIcon, Action::kOnce,      0},
    {kCommandHelp,             IDS_HELP,             IDS_HELP_MENU,            kNoIcon, Action::kOnce,      0},
    {kCommandTimeScrubber,     IDS_TIME_SCRUBBER,    IDS_STICKY_SHORT_NAME,    kNoIcon, Action::kWhileHeld, 0},
    {kCommandToggleNavigation, IDS_MAYA_NAVIGATION,  IDS_MAYA_NAVIGATION_MENU, 15,      Action::kOnce,      0},
    {kCommandNudgeUp,          IDS_NUDGE_UP,         IDS_NUDGE_UP,             kNoIcon, Action::kOnce,      0},
    {kCommandNudgeDown,        IDS_NUDGE_DOWN,       IDS_NUDGE_DOWN,           kNoIcon, Action::kOnce,      0},
    {kCommandNudgeLeft,        IDS_NUDGE_LEFT,       IDS_NUDGE_LEFT,           kNoIcon, Action::kOnce,      0},
    {kCommandNudgeRight,       IDS_NUDGE_RIGHT,      IDS_NUDGE_RIGHT,          kNoIcon, Action::kOnce,      0},
    {kCommandCenterPivot,      IDS_CENTER_PIVOT,     IDS_CENTER_PIVOT,         18,      Action::kOnce,      0},
    {kCommandFrameSelected,    IDS_FRAME_SELECTED,   IDS_FRAME_SELECTED,       4,       Action::kOnce,      0},
    {kCommandFrameAll,         IDS_FRAME_ALL,        IDS_FRAME_ALL,            3,       Action::kOnce,      0},
    {kCommandResetViews,       IDS_RESET_ALL_VIEWS,  IDS_RESET_ALL_VIEWS,      5,       Action::kOnce,      0},
    {kCommandPreviousKey,      IDS_PREVIOUS_KEY,     IDS_PREVIOUS_KEY,         2,       Action::kOnce,      0},
    {kCommandNextKey,          IDS_NEXT_KEY,         IDS_NEXT_KEY,             1,       Action::kOnce,      0},
    {kCommandSnapPoints,       IDS_SNAP_TO_POINTS,   IDS_STICKY_SHORT_NAME,    kNoIcon, Action::kWhileHeld, kFirstReleaseWithSnaps},
    {kCommandSnapCurves,       IDS_SNAP_TO_CURVES,   IDS_STICKY_SHORT_NAME,    kNoIcon, Action::kWhileHeld, kFirstReleaseWithSnaps},
    {kCommandSnapGrids,        IDS_SNAP_TO_GRIDS,    IDS_STICKY_SHORT_NAME,    kNoIcon, Action::kWhileHeld, kFirstReleaseWithSnaps},
    {kCommandSnapAngles,       IDS_SNAP_ANGLES,      IDS_STICKY_SHORT_NAME,    kNoIcon, Action::kWhileHeld, kFirstReleaseWithSnaps},
    // clang-format on
};

constexpr bool IsStickyCommand(int id) {
    for (const Command& command : kCommands) {
        if (command.id == id) return command.action == Action::kWhileHeld;
    }
    return false;
}
