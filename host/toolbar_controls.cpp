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

constexpr int kUnusedButtonId = 50021;

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

struct WantedControl {
    int id;
    HWND* found;
};
constexpr WantedControl kWantedControls[] = {
    {kLockButtonId, &g_lockButton},
    {kAngleSnapButtonId, &g_angleSnapButton},
    {kUnusedButtonId, &g_button50021},
    {kZoomExtentsButtonId, &g_zoomExtentsButton},
};

// A search shows the windows one after the other, each before those in it, and asks each for an
// item of the number; the first one that has it ends it. So what a window has comes before what the
// windows in it have, wherever it lies among them, and what lies in the main window itself is not
// found.
void Consider(const WantedControl& wanted, HWND parent) {
    if (parent == host::MainWindow()) return;
    if (*wanted.found && !IsChild(parent, GetParent(*wanted.found))) return;
    HWND item = FindItem(parent, wanted.id);
    if (item) *wanted.found = item;
}

// The searches for all of them in one pass. It does not ask each window for four items: the host
// may have thousands of windows, and that question costs a hundred times as much as its answer's
// number.
BOOL CALLBACK FindWantedControls(HWND window, LPARAM) {
    const int id = GetDlgCtrlID(window);
    for (const WantedControl& wanted : kWantedControls) {
        if (wanted.id == id) Consider(wanted, GetParent(window));
    }
    return TRUE;
}

}  // namespace

void FindToolbarControls() {
    for (const WantedControl& wanted : kWantedControls)
        *wanted.found = nullptr;
    if (HWND main_window = host::MainWindow()) {
        EnumChildWindows(main_window, FindWantedControls, 0);
        // As the last of four searches would leave it.
        g_searchCtrlId = kZoomExtentsButtonId;
    }
    g_navigationPanel = g_zoomExtentsButton ? GetParent(GetParent(g_zoomExtentsButton)) : nullptr;
}

HWND LockButton() {
    return LiveButton(g_lockButton, kLockButtonId);
}

HWND AngleSnapButton() {
    return LiveButton(g_angleSnapButton, kAngleSnapButtonId);
}
