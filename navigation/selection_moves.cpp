#include "navigation/selection_moves.h"

#include "host/selecting_mode.h"
#include "input/keys.h"
#include "navigation/modifier_cursor.h"
#include "navigation/selection_clicks.h"
#include "resources/module.h"
#include "settings/plugin_settings.h"

namespace {

// Shift alone means nothing here: the host has its own use for it.
bool LeavesShiftToHost(WindowKind kind) {
    if (!IsShiftAlone()) return false;
    return IsEditorKind(kind) || !IsSelectToolAvailable();
}

// The answer about brushes costs a script, too much for every move: only when all else is settled.
bool MayEmulate() {
    return DoesModeSelect() && MayEmulateClick();
}

WPARAM SelectingMoveKeys() {
    WPARAM keys = IsClickEmulated() ? MK_LBUTTON : 0;
    // Deliberate: the whole answer counts, not its sign, so a key pressed and released since the
    // last question counts too.
    if (CtrlState()) keys |= MK_CONTROL;
    if (ShiftState()) keys |= MK_SHIFT;
    return keys;
}

}  // namespace

bool MayMoveSelect(UINT hit_test) {
    if (hit_test == HTMENU || !g_settings.customSelectionCursors) return false;
    return IsClickEmulated() || MayModifiersMatter();
}

Answer EmulateSelectingMove(const MouseEvent& event) {
    if (GetAsyncKeyState(VK_RBUTTON) < 0) return Answer::kNotMine;
    HCURSOR cursor = ChooseModifierCursor();
    if (!cursor && !IsAltDown()) return Answer::kNotMine;
    if (LeavesShiftToHost(event.kind) || !MayEmulate()) return Answer::kNotMine;

    SendMouse(event, WM_MOUSEMOVE, SelectingMoveKeys());
    if (cursor && (IsClickEmulated() || GetAsyncKeyState(VK_LBUTTON) >= 0)) {
        SetCursor(cursor);
    } else {
        ShowArrowCursor();
    }
    return Answer::kConsumed;
}
