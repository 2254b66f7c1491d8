// Where viewports lie in hosts up to 2012: all in one panel, so that its class tells them from
// other windows, and nothing else needs to be asked of the host.

#include "host/view_windows.h"

#include "host/class_name.h"

namespace host {

bool MayHoldViewports(HWND parent) {
    return parent && ClassName(parent).Is("ViewPanel");
}

bool IsViewToFocus(HWND window, HWND panel) {
    return panel && GetParent(window) == panel;
}

}  // namespace host
