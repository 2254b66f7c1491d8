// Where the windows of viewports lie.
#pragma once

#include <windows.h>

namespace host {

// Whether a window in this one, or one without a parent (null), is a viewport when the host has a
// viewport for it.
bool MayHoldViewports(HWND parent);

// Whether a window is a viewport that the focus may go to. `panel` is where the active one lay at
// the start; null: there was none.
bool IsViewToFocus(HWND window, HWND panel);

}  // namespace host
