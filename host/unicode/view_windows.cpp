// Where viewports lie in later hosts: anywhere. What the class of that window is called there is
// not known, and there may be several, so the host's own answer is all that counts.

#include "host/view_windows.h"

#include "host/host.h"

namespace host {

bool MayHoldViewports(HWND) {
    return true;
}

bool IsViewToFocus(HWND window, HWND) {
    return static_cast<bool>(Viewport::OfWindow(window));
}

}  // namespace host
