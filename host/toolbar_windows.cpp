// Toolbars of hosts up to 2016: each button is a window.

#include "host/class_name.h"
#include "host/host.h"
#include "host/toolbar_controls.h"
#include "host/toolbars.h"
#include "host/window_kind.h"

namespace host {

std::optional<bool> IsLockOn() {
    HWND button = LockButton();
    if (!button) return std::nullopt;
    return IsButtonChecked(button).value_or(false);
}

bool IsAngleSnapOn() {
    return IsButtonChecked(AngleSnapButton()).value_or(false);
}

std::optional<bool> IsSelectEnabled() {
    return IsToolbarButtonEnabled(kSelectButton);
}

std::optional<int> ZoomExtentsEntry() {
    if (!IsWindow(g_navigationPanel)) return std::nullopt;
    g_searchCtrlId = kZoomExtentsButtonId;
    // Deliberate: a search that finds nothing leaves the control that was found before.
    EnumChildWindows(g_navigationPanel, FindButtonByIdAndText,
                     reinterpret_cast<LPARAM>(&g_zoomExtentsButton));
    return ButtonFlyout(g_zoomExtentsButton);
}

void ChooseZoomExtentsEntry(int entry) {
    ChooseButtonFlyout(g_zoomExtentsButton, entry);
}

std::optional<bool> IsToolbarButton(HWND window) {
    return ClassName(window).Is("CustButton");
}

}  // namespace host
