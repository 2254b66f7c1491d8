// What kind of the host's windows a message or the cursor is over, and searches for its buttons.
#pragma once

#include <windows.h>

// The order matters: 3 and above are editors, which gestures treat alike.
enum WindowKind : int {
    kWindowOther = 0,
    kWindowViewport = 1,
    kWindowViewportLocked = 2,  // must not be orbited, panned or zoomed
    kWindowUnwrapView = 3,
    kWindowSchematicGraph = 4,
    kWindowTrackView = 5,
    kWindowTrackBar = 7,
    kWindowNavPanel = 8,  // no window is classified so today; gestures know what to do with one
};

constexpr bool IsViewportKind(int kind) {
    return kind == kWindowViewport || kind == kWindowViewportLocked;
}
constexpr bool IsEditorKind(int kind) {
    return kind >= kWindowUnwrapView;
}

// Null: the window under the cursor. A window that is gone is kWindowOther.
WindowKind ClassifyWindow(HWND window);

// What the searches below look for: a dialog control id, and a text that an empty one leaves open.
// A caller sets them and runs its search to the end before anyone else can.
extern int g_searchCtrlId;
extern char g_searchText[128];

// Sets both; a text that is too long is cut.
void SetButtonSearch(int control, const char* text);

// The item of this id in a window; null when there is none, or when its text is not the one that is
// looked for.
HWND FindItem(HWND window, int id);

// Callbacks for EnumChildWindows; `found` points to an HWND that is null when the search begins.
// The first finds a custom button by id, depth first; the second any item by id and text.
BOOL CALLBACK FindCustButtonById(HWND child, LPARAM found);
BOOL CALLBACK FindButtonByIdAndText(HWND child, LPARAM found);
