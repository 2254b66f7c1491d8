// The commands that a user can bind to a key, a toolbar button or a menu. The ids are stored in
// users' files, so they never change; 9 and 20 are not used.
#pragma once

enum CommandId : int {
    kCommandSelectionLock = 1,
    kCommandSnapPoints = 2,
    kCommandSnapCurves = 3,
    kCommandSnapGrids = 4,
    kCommandShowOptions = 5,
    kCommandSnapAngles = 6,
    kCommandTimeScrubber = 7,
    kCommandToggleNavigation = 8,
    kCommandNudgeUp = 10,
    kCommandNudgeDown = 11,
    kCommandNudgeLeft = 12,
    kCommandNudgeRight = 13,
    kCommandCenterPivot = 14,
    kCommandFrameSelected = 15,
    kCommandFrameAll = 16,
    kCommandPreviousKey = 17,
    kCommandNextKey = 18,
    kCommandResetViews = 19,
    kCommandAbout = 21,
    kCommandHelp = 22,
};

// Identity of the action table and of its context.
inline constexpr unsigned long kKarvelTableId = 0x737D5FB8;
