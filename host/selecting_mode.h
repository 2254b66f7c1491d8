// Whether Ctrl and Shift select in a command mode: asked by the clicks and by the cursor that
// announces them.
#pragma once

#include "host/host.h"
#include "host/mode_groups.h"
#include "host/toolbars.h"

// Where the host has none that could be asked, nothing speaks against the select tool.
inline bool IsSelectToolAvailable() {
    return host::IsSelectEnabled().value_or(true);
}

// The object modes, and others while sub-objects are edited, but for those that create edges and
// faces.
inline bool IsSelectingMode(int mode) {
    return !NeverEmulatesSelection(mode) && (IsObjectMode(mode) || host::IsSubObjectEditing());
}
