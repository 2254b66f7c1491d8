#include "host/toolbar_controls.h"

#include <algorithm>
#include <iterator>

#include "host/host.h"
#include "host/window_kind.h"

HWND g_lockButton = nullptr;
HWND g_angleSnapButton = nullptr;
HWND g_button50021 = nullptr;
HWND g_zoomExtentsButton = nullptr;
HWND g_navigationPanel = nullptr;

namespace {

HWND FindControl(int id) {
    HWND main_window = host::MainWindow();
    if (!main_window) return nullptr;
    HWND found = nullptr;
    g_searchCtrlId = id;
    EnumChildWindows(main_window, FindButtonByIdAndText, reinterpret_cast<LPARAM>(&found));
    return found;
}

// The search state is shared and outlives each search, so this one leaves it as it was.
HWND FindControlAgain(int id) {
    char text[std::size(g_searchText)];
    std::copy(std::begin(g_searchText), std::end(g_searchText), text);
    const int searched_id = g_searchCtrlId;
    g_searchText[0] = '\0';
    HWND found = FindControl(id);
    g_searchCtrlId = searched_id;
    std::copy(std::begin(text), std::end(text), g_searchText);
    return found;
}

// A button that is not found now keeps its dead handle, so it is looked for again the next time.
HWND LiveButton(HWND& button, int id) {
    if (!button || GetDlgCtrlID(button) == id) return button;
    HWND found = FindControlAgain(id);
    if (found) button = found;
    return found;
}

}  // namespace

void FindToolbarControls() {
    g_lockButton = FindControl(kLockButtonId);
    g_angleSnapButton = FindControl(kAngleSnapButtonId);
    g_button50021 = FindControl(50021);
    g_zoomExtentsButton = FindControl(kZoomExtentsButtonId);
    g_navigationPanel = g_zoomExtentsButton ? GetParent(GetParent(g_zoomExtentsButton)) : nullptr;
}

HWND LockButton() {
    return LiveButton(g_lockButton, kLockButtonId);
}

HWND AngleSnapButton() {
    return LiveButton(g_angleSnapButton, kAngleSnapButtonId);
}
