// The functions that MAXScript gets from the plug-in. They register themselves while the library is
// loaded, in this order, and live until the process ends.

#include <cstring>

#include "host/host.h"
#include "host/toolbars.h"
#include "script/poly_tools.h"

// Last, because they define macros in lower case.
#include <maxscript/maxscript.h>

#include <maxscript/foundation/functions.h>

namespace {

constexpr int kTitleSize = 512;
constexpr int kComparedCharacters = 10;

Value* ScriptBoolean(bool value) {
    return value ? &true_value : &false_value;
}

// "Track View" has as many characters as are compared, so longer titles that begin with it match.
// Deliberate: the shorter "Trackbar" is compared with its terminator, so only that very title does.
bool HasForegroundTitle(const char* title) {
    HWND window = GetForegroundWindow();
    if (!window) return false;
    char text[kTitleSize] = "";
    GetWindowTextA(window, text, kTitleSize);
    return std::strncmp(text, title, kComparedCharacters) == 0;
}

Value* IsTrackViewFocused(Value**, int) {
    return ScriptBoolean(HasForegroundTitle("Track View"));
}

Value* IsTrackBarFocused(Value**, int) {
    return ScriptBoolean(HasForegroundTitle("Trackbar"));
}

// A value of another type ends each of these by the interpreter's own error, before anything is
// stored.
Value* SetGraphiteSculptTool(Value** arguments, int) {
    g_graphiteSculptTool = arguments[0]->to_int();
    return &true_value;
}

Value* SetGraphitePdTool(Value** arguments, int) {
    g_graphitePdTool = arguments[0]->to_int();
    return &true_value;
}

Value* SetPolyShiftActive(Value** arguments, int) {
    g_polyShiftActive = arguments[0]->to_bool() != FALSE;
    return &true_value;
}

constexpr int kZoomExtentsEntry = 0;
constexpr int kZoomExtentsSelectedEntry = 1;

void ZoomExtents(int entry) {
    const auto current = host::ZoomExtentsEntry();
    if (!current) return;
    if (*current == entry) {
        host::ZoomExtentsOfActiveView();
    } else {
        host::ChooseZoomExtentsEntry(entry);
    }
}

Value* RunZoomExtents(Value**, int count) {
    ZoomExtents(count > 0 ? kZoomExtentsSelectedEntry : kZoomExtentsEntry);
    return &true_value;
}

// The SDK wants the names writable.
MCHAR kTrackViewName[] = _M("trackview_isFocused");
MCHAR kTrackBarName[] = _M("trackbar_isFocused");
MCHAR kSculptToolName[] = _M("kv_graphiteSculptTool");
MCHAR kPdToolName[] = _M("kv_graphitePdTool");
MCHAR kPolyShiftName[] = _M("kv_polyShiftActive");
MCHAR kZoomExtentsName[] = _M("kv_zoomExtents");

Primitive g_trackViewPrimitive(kTrackViewName, IsTrackViewFocused, 0);
Primitive g_trackBarPrimitive(kTrackBarName, IsTrackBarFocused, 0);
Primitive g_sculptToolPrimitive(kSculptToolName, SetGraphiteSculptTool, 0);
Primitive g_pdToolPrimitive(kPdToolName, SetGraphitePdTool, 0);
Primitive g_polyShiftPrimitive(kPolyShiftName, SetPolyShiftActive, 0);
Primitive g_zoomExtentsPrimitive(kZoomExtentsName, RunZoomExtents, 0);

}  // namespace
