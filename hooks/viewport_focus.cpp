#include "hooks/viewport_focus.h"

#include "host/host.h"
#include "host/view_windows.h"
#include "input/screen.h"
#include "settings/plugin_settings.h"

HWND g_viewPanel = nullptr;

// The viewport that this feature activated last; null after the shortcut that did not.
HWND g_lastFocusedViewport = nullptr;

// Stays callable for as long as the process runs: the subclass is never taken back.
WNDPROC g_prevMainWndProc = nullptr;

namespace {

constexpr WORD kFromAccelerator = 1;
constexpr WORD kExemptCommand = 7;

bool IsShortcut(UINT message, WPARAM wParam) {
    return message == WM_COMMAND && HIWORD(wParam) == kFromAccelerator &&
           LOWORD(wParam) != kExemptCommand;
}

void FocusViewportUnderCursor() {
    POINT cursor = {};
    GetCursorPos(&cursor);
    HWND window = WindowFromPoint(cursor);
    if (window == g_lastFocusedViewport) {
        // Deliberate: every other shortcut over the same viewport leaves the focus alone.
        g_lastFocusedViewport = nullptr;
        return;
    }
    if (!host::IsViewToFocus(window, g_viewPanel)) return;
    host::SetActiveViewport(window);
    g_lastFocusedViewport = window;
}

LRESULT CALLBACK MainWindowSubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DISPLAYCHANGE) ForgetScreenSize();
    if (g_settings.focusViewports && IsShortcut(message, wParam)) FocusViewportUnderCursor();
    return CallWindowProcA(g_prevMainWndProc, window, message, wParam, lParam);
}

}  // namespace

void InstallViewportAutoFocus() {
    {
        const host::Viewport active = host::Viewport::Active();
        HWND view = active.Window();
        g_viewPanel = view ? GetParent(view) : nullptr;
    }
    HWND main_window = host::MainWindow();
    if (!main_window) return;
    const auto previous = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(
        main_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(MainWindowSubclassProc)));
    // After a second start the procedure found there is this one; to pass on to it would not end.
    if (previous != MainWindowSubclassProc) g_prevMainWndProc = previous;
}
