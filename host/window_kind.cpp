#include "host/window_kind.h"

#include <cstring>

#include "host/class_name.h"
#include "host/host.h"
#include "host/view_windows.h"

int g_searchCtrlId = 0;
char g_searchText[128] = "";

namespace {

HWND WindowUnderCursor() {
    POINT cursor = {};
    GetCursorPos(&cursor);
    return WindowFromPoint(cursor);
}

}  // namespace

WindowKind ClassifyWindow(HWND window) {
    if (!window) window = WindowUnderCursor();
    const ClassName name(window);
    if (name.Is("TrackBar")) return kWindowTrackBar;

    HWND parent = GetParent(window);
    const host::Viewport viewport = host::Viewport::OfWindow(window);
    if (viewport && host::MayHoldViewports(parent)) {
        return viewport.IsLocked() ? kWindowViewportLocked : kWindowViewport;
    }
    if (name.Is("UnwrapView")) return kWindowUnwrapView;
    if (name.Is("SVGraphWindow")) return kWindowSchematicGraph;
    if (name.Is("TVTrackWindow")) return kWindowTrackView;
    return kWindowOther;
}

void SetButtonSearch(int control, const char* text) {
    g_searchCtrlId = control;
    lstrcpynA(g_searchText, text, static_cast<int>(sizeof g_searchText));
}

BOOL CALLBACK FindCustButtonById(HWND child, LPARAM found) {
    HWND& result = *reinterpret_cast<HWND*>(found);
    HWND item = GetDlgItem(child, g_searchCtrlId);
    if (!item) {
        EnumChildWindows(child, FindCustButtonById, found);
        return result ? FALSE : TRUE;
    }
    // An item of another class hides what lies below it.
    if (!ClassName(item).Is("CustButton")) return TRUE;
    result = item;
    return FALSE;
}

HWND FindItem(HWND window, int id) {
    HWND item = GetDlgItem(window, id);
    if (!item || g_searchText[0] == '\0') return item;
    char text[128] = "";
    GetWindowTextA(item, text, static_cast<int>(sizeof text));
    return std::strcmp(text, g_searchText) == 0 ? item : nullptr;
}

BOOL CALLBACK FindButtonByIdAndText(HWND child, LPARAM found) {
    HWND item = FindItem(child, g_searchCtrlId);
    if (!item) return TRUE;
    *reinterpret_cast<HWND*>(found) = item;
    return FALSE;
}
