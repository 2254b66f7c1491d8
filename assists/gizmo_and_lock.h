// The host's selection lock and transform gizmo, switched for the length of a gesture or of a held
// key and then put back. Both are host toggles without a "set", so they are executed until their
// checked state is right, a bounded number of times.
#pragma once

// Who wants the selection lock on, as bits; the lock is on while this is not empty (1 or more).
extern int g_selectionLockRequests;
// The set as it stood before the last change.
extern int g_previousLockRequests;
// Whether the gizmo was shown when it was last hidden and has not been brought back since.
extern int g_gizmoWasOn;

inline constexpr int kLockByMiddleButton = 1;
inline constexpr int kLockBySticky = 4;

// Adds or removes a requester and drives the lock when the set changes between empty and not empty.
// With `restore` that change also hides the gizmo (set filled) or brings it back (set emptied).
void SetSelectionLock(bool on, int requester, bool restore);

// Remembers whether the gizmo is shown, and hides it when the setting for it is on or `force` is.
void SaveAndHideGizmo(bool force);
// Shows the gizmo again if it was remembered as shown.
void RestoreGizmo();
