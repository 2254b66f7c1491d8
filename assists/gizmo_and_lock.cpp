#include "assists/gizmo_and_lock.h"

#include "host/host.h"
#include "settings/plugin_settings.h"
#include "host/toolbar_controls.h"
#include "host/toolbars.h"

int g_selectionLockRequests = 0;
int g_previousLockRequests = 0;
int g_gizmoWasOn = 0;

namespace {

constexpr int kLockAction = kLockButtonId;  // the button and its action share their number
constexpr int kGizmoAction = 40105;
constexpr int kLockTries = 10;
constexpr int kGizmoTries = 5;

void DriveLockButton(bool on) {
    for (int i = 0; i < kLockTries; ++i) {
        if (host::IsLockOn().value_or(on) == on) return;
        host::ExecuteAction(host::kMainTable, kLockAction);
    }
}

void SetGizmoAction(bool shown) {
    for (int i = 0; i < kGizmoTries; ++i) {
        if (host::IsActionChecked(host::kMainTable, kGizmoAction).value_or(shown) == shown) return;
        host::ExecuteAction(host::kMainTable, kGizmoAction);
    }
}

}  // namespace

void SetSelectionLock(bool on, int requester, bool restore) {
    g_previousLockRequests = g_selectionLockRequests;
    if (on) {
        g_selectionLockRequests |= requester;
    } else {
        g_selectionLockRequests &= ~requester;
    }
    const bool was_wanted = g_previousLockRequests >= 1;
    const bool is_wanted = g_selectionLockRequests >= 1;
    if (was_wanted == is_wanted) return;
    DriveLockButton(on);
    if (!restore) return;
    if (is_wanted) {
        SaveAndHideGizmo(false);
    } else {
        RestoreGizmo();
    }
}

void SaveAndHideGizmo(bool force) {
    g_gizmoWasOn = host::IsActionChecked(host::kMainTable, kGizmoAction).value_or(false);
    if (g_settings.hideMClickXForms || force) SetGizmoAction(false);
}

void RestoreGizmo() {
    if (!g_gizmoWasOn) return;
    g_gizmoWasOn = 0;
    SetGizmoAction(true);
}
