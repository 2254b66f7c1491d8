// Groups of the host's command modes, by id.
#pragma once

// The host's object and sub-object move, rotate, scale, squash and select modes.
constexpr bool IsObjectMode(int mode) {
    return mode >= 1 && mode <= 12;
}

// The transform modes that a middle-button drag can drive: all object modes but the selecting ones.
constexpr bool AllowsQuickTransform(int mode) {
    return IsObjectMode(mode) && mode != 6 && mode != 12;
}

// Above 0xFFFF the ids count the modes of the host's own plug-ins.
inline constexpr int kMeshCreateFaceMode = 66510;
inline constexpr int kPolyCreateEdgeMode = 69632;
inline constexpr int kPolyCreateFaceMode = 69633;

// Creating edges and faces, where clicks with Ctrl and Shift have a meaning of their own.
constexpr bool NeverEmulatesSelection(int mode) {
    return mode == kMeshCreateFaceMode || mode == kPolyCreateEdgeMode ||
           mode == kPolyCreateFaceMode;
}

// The sculpt mode in which the middle button is replayed as Alt and left button. The host's SDK
// does not name it.
inline constexpr int kSculptMode = 9247;

// Creating a patch, and the cross insert of splines: both have this id, ids need not be unique. Any
// button press with Alt is answered with a middle click.
inline constexpr int kPatchOrCrossInsertMode = 65743;
