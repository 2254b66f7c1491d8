// Toolbars of hosts from 2018 on: nothing of them is a window of its own, so the actions are asked.

#include "host/core_interface.h"
#include "host/host.h"
#include "host/toolbar_controls.h"
#include "host/toolbars.h"

void FindToolbarControls() {}

namespace host {

std::optional<bool> IsLockOn() {
    return IsActionChecked(kMainTable, kLockButtonId);
}

bool IsAngleSnapOn() {
    return IsActionChecked(kMainTable, kAngleSnapButtonId).value_or(false);
}

std::optional<bool> IsSelectEnabled() {
    return IsActionEnabled(kMainTable, kSelectButton);
}

// An action does not tell which entry of a flyout stands for it.
std::optional<int> ZoomExtentsEntry() {
    return std::nullopt;
}

void ChooseZoomExtentsEntry(int) {}

// Buttons of that class are still windows elsewhere, as the brushes of the command panel.
std::optional<bool> IsToolbarButton(HWND) {
    return std::nullopt;
}

}  // namespace host
