#include "shell/toolbar_controls.h"

#include "host/host.h"
#include "navigation/window_kind.h"

HWND g_lockButton = nullptr;
HWND g_angleSnapButton = nullptr;
HWND g_button50021 = nullptr;
HWND g_zoomExtentsButton = nullptr;
HWND g_navigationPanel = nullptr;

namespace {

HWND FindControl(HWND main_window, int id) {
    HWND found = nullptr;
    g_searchCtrlId = id;
    EnumChildWindows(main_window, FindButtonByIdAndText, reinterpret_cast<LPARAM>(&found));
    return found;
}

}  // namespace

void FindToolbarControls() {
    HWND main_window = host::MainWindow();
    if (!main_window) return;
    g_lockButton = FindControl(main_window, kLockButtonId);
    g_angleSnapButton = FindControl(main_window, kAngleSnapButtonId);
    g_button50021 = FindControl(main_window, 50021);
    g_zoomExtentsButton = FindControl(main_window, kZoomExtentsButtonId);
    g_navigationPanel = g_zoomExtentsButton ? GetParent(GetParent(g_zoomExtentsButton)) : nullptr;
}
