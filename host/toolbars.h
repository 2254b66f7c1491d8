// The host's toolbars, by role. Their buttons are windows up to 2016; from 2018 on the host draws
// them itself, and the actions behind the buttons are asked, whose numbers they share.
#pragma once

#include <windows.h>

#include <optional>

namespace host {

// Whether the selection lock is on; empty when the host has none that could be asked.
std::optional<bool> IsLockOn();

// Off as well where the host has no angle snap that could be asked.
bool IsAngleSnapOn();

// Whether the select tool can be chosen; empty when the host has none.
std::optional<bool> IsSelectEnabled();

// The entry that the flyout "Zoom Extents" shows; empty: not known.
std::optional<int> ZoomExtentsEntry();
// Chooses another, and has it carried out; where the entry is not known this does nothing.
void ChooseZoomExtentsEntry(int entry);

// Whether a window, or null, is a button of a toolbar; empty: not known.
std::optional<bool> IsToolbarButton(HWND window);

}  // namespace host
