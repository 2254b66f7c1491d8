#include "navigation/modifier_cursor.h"

#include "input/keys.h"
#include "navigation/gesture_state.h"
#include "navigation/selection_clicks.h"
#include "resources/module.h"
#include "resources/resource_ids.h"

namespace {

// Resource ids of cursors, 0 for none; the first line that holds decides.
int CursorOfGesture() {
    if (g_orbitActive) return IDC_CURSOR_ORBIT;
    if (g_zoomActive) return IDC_CURSOR_ZOOM;
    if (g_panActive) return IDC_CURSOR_PAN;
    return g_navLocked ? IDC_CURSOR_REFUSED : 0;
}

int CursorOfModifiers() {
    const bool alt = IsAltDown();
    const bool shift = !alt && IsShiftDown();
    const bool ctrl = !alt && IsCtrlDown();
    if (g_selCtrlShift || (shift && ctrl)) return IDC_CURSOR_SELECT_CONTROL_SHIFT;
    if (g_selShift || shift) return IDC_CURSOR_SELECT_SHIFT;
    if (g_selCtrl || ctrl) return IDC_CURSOR_SELECT_CONTROL;
    return CursorOfGesture();
}

HCURSOR Load(int id) {
    return id ? LoadModuleCursor(id) : nullptr;
}

}  // namespace

HCURSOR ChooseModifierCursor() {
    return Load(CursorOfModifiers());
}

// Alt only hides the other two keys, so without them it need not be asked, which costs most while
// it is down.
HCURSOR ChooseGestureCursor() {
    const bool is_plain = !IsClickEmulated() && !MayShiftOrCtrlMatter();
    return Load(is_plain ? CursorOfGesture() : CursorOfModifiers());
}
