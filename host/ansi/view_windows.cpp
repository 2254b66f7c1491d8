// Where viewports lie in hosts up to 2012: all in one panel, so that its class tells them from
// other windows, and nothing else needs to be asked of the host.

#include "host/view_windows.h"

#include <cstring>

namespace host {

bool MayHoldViewports(HWND parent) {
    char class_name[128];
    return parent && GetClassNameA(parent, class_name, static_cast<int>(sizeof class_name)) &&
           std::strcmp(class_name, "ViewPanel") == 0;
}

bool IsViewToFocus(HWND window, HWND panel) {
    return panel && GetParent(window) == panel;
}

}  // namespace host
