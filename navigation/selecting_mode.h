// Whether Ctrl and Shift select in a command mode: asked by the clicks and by the cursor that
// announces them.
#pragma once

#include "host/host.h"
#include "navigation/mode_groups.h"

// The object modes, and others while sub-objects are edited, but for those that create edges and
// faces.
inline bool IsSelectingMode(int mode) {
    return !NeverEmulatesSelection(mode) && (IsObjectMode(mode) || host::IsSubObjectEditing());
}
