#include "hooks/keyboard_hook.h"

#include "assists/gizmo_and_lock.h"
#include "assists/pixel_nudge.h"
#include "assists/sticky_snap.h"
#include "host/host.h"
#include "host/selecting_mode.h"
#include "host/window_kind.h"
#include "input/keys.h"
#include "navigation/gesture_state.h"
#include "navigation/held_alt.h"
#include "navigation/modifier_cursor.h"
#include "navigation/quick_transform.h"
#include "navigation/time_scrub.h"
#include "resources/module.h"
#include "settings/plugin_settings.h"

namespace {

constexpr LPARAM kTransitionBit = 0x80000000;

bool IsStickyHeld() {
    return IsTimeScrubOn() || g_heldSnapSticky != 0 ||
           (g_selectionLockRequests & kLockBySticky) != 0;
}

bool IsModifierKey(WPARAM key) {
    return key == VK_CONTROL || key == VK_SHIFT || key == VK_MENU;
}

bool IsAnyButtonDown() {
    return GetAsyncKeyState(VK_LBUTTON) < 0 || GetAsyncKeyState(VK_MBUTTON) < 0 ||
           GetAsyncKeyState(VK_RBUTTON) < 0;
}

bool TakesCustomCursor(WindowKind kind) {
    if (kind == kWindowOther) return false;
    const auto mode = host::CurrentModeId();
    return mode && IsSelectingMode(*mode);
}

void ShowModifierCursor() {
    const WindowKind kind = ClassifyWindow(nullptr);
    if (kind == kWindowSchematicGraph) {
        ShowArrowCursor();
        return;
    }
    const bool shift_alone = IsShiftAlone();
    if (shift_alone &&
        (kind == kWindowUnwrapView || kind == kWindowTrackView || kind == kWindowTrackBar)) {
        ShowArrowCursor();
        return;
    }
    if (shift_alone && !IsSelectToolAvailable()) {
        ShowArrowCursor();
        return;
    }
    if (!TakesCustomCursor(kind)) return;
    if (HCURSOR cursor = ChooseModifierCursor()) {
        SetCursor(cursor);
    } else {
        ShowArrowCursor();
    }
}

}  // namespace

// The hook code is not looked at: every call is handled alike.
LRESULT CALLBACK KeyboardProc(int code, WPARAM key, LPARAM flags) {
    if (!g_settings.useMayaStyle) return CallNextHookEx(nullptr, code, key, flags);

    const bool released = (flags & kTransitionBit) != 0;
    // Whichever key comes up first ends what a held key switched on: nobody knows which key that
    // is.
    if (released && g_selectionLockRequests >= 1) SetSelectionLock(false, kLockBySticky, true);
    if (released) EndNudgeSeries();
    if (!released && IsStickyHeld()) return 1;
    if (released && key == VK_MENU && IsNavigating()) {
        HoldAltDown();
        return 1;
    }
    if (released && IsTimeScrubOn()) {
        ReleaseTimeScrub();
        return 1;
    }
    if (released && g_heldSnapSticky) {
        SetStickySnap(g_heldSnapSticky, false);
        return 1;
    }
    if (!g_quickXform && IsModifierKey(key) && g_settings.customSelectionCursors &&
        !IsAnyButtonDown()) {
        ShowModifierCursor();
    }
    return CallNextHookEx(nullptr, code, key, flags);
}
