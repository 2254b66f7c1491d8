#include "report/window_tree.h"

namespace report {

void WindowTree::Read(HWND main) {
    count_ = 0;
    if (!IsWindow(main)) return;
    Add(main);
    EnumThreadWindows(GetWindowThreadProcessId(main, nullptr), AddOwned,
                      reinterpret_cast<LPARAM>(this));
}

int WindowTree::Number(HWND window) const {
    for (int index = 0; window && index < count_; ++index) {
        if (windows_[index] == window) return index + 1;
    }
    return 0;
}

void WindowTree::Add(HWND window) {
    if (count_ == kMost) return;
    windows_[count_++] = window;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        Add(child);
}

// The system has them from the top of the screen to the bottom.
BOOL CALLBACK WindowTree::AddOwned(HWND window, LPARAM data) {
    WindowTree& tree = *reinterpret_cast<WindowTree*>(data);
    for (HWND owner = GetWindow(window, GW_OWNER); owner; owner = GetWindow(owner, GW_OWNER)) {
        if (owner != tree.windows_[0]) continue;
        tree.Add(window);
        break;
    }
    return TRUE;
}

}  // namespace report
