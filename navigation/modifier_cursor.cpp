#include "navigation/modifier_cursor.h"

#include "input/keys.h"
#include "navigation/gesture_state.h"
#include "navigation/selection_clicks.h"
#include "resources/module.h"
#include "resources/resource_ids.h"

namespace {

// Resource id of the cursor, 0 for none; the first line that holds decides.
int ChooseCursorId() {
    const bool alt = IsAltDown();
    const bool shift = !alt && IsShiftDown();
    const bool ctrl = !alt && IsCtrlDown();
    if (g_selCtrlShift || (shift && ctrl)) return IDC_CURSOR_SELECT_CONTROL_SHIFT;
    if (g_selShift || shift) return IDC_CURSOR_SELECT_SHIFT;
    if (g_selCtrl || ctrl) return IDC_CURSOR_SELECT_CONTROL;
    if (g_orbitActive) return IDC_CURSOR_ORBIT;
    if (g_zoomActive) return IDC_CURSOR_ZOOM;
    if (g_panActive) return IDC_CURSOR_PAN;
    if (g_navLocked) return IDC_CURSOR_REFUSED;
    return 0;
}

}  // namespace

HCURSOR ChooseModifierCursor() {
    const int id = ChooseCursorId();
    return id ? LoadModuleCursor(id) : nullptr;
}
