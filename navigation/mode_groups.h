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

// Modes of host plug-ins in which clicks keep their own meaning.
constexpr bool NeverEmulatesSelection(int mode) {
    return mode == 66510 || mode == 69632 || mode == 69633;
}

// The sculpt mode in which the middle button is replayed as Alt and left button.
inline constexpr int kSculptMode = 9247;

// A mode in which any button press with Alt is answered with a middle click.
inline constexpr int kMiddleClickMode = 65743;
