#include "navigation/quick_transform.h"

#include <span>

#include "assists/gizmo_and_lock.h"
#include "host/host.h"
#include "host/mode_groups.h"
#include "input/keys.h"
#include "settings/plugin_settings.h"

int g_quickXform = 0;
int g_shiftClone = 0;  // it clones

namespace {

// An editor's edit modes in which the drag may start, and the mode that it switches on: in the
// Track View one that moves keys, in the Unwrap editor the lock of the selected vertices, without
// which a press beside them would begin a region. All are actions of the editor's table.
struct EditorDrag {
    unsigned long table;
    std::span<const int> edit_modes;
    int drag_mode;
    bool waits;  // gives the editor a moment after each switch
};

constexpr int kTrackViewModes[] = {230, 380, 480, 2020, 2030, 2040};
constexpr int kUnwrapModes[] = {40007, 40033, 40034, 40008, 40009, 40087};
constexpr EditorDrag kTrackViewDrag = {host::kTrackViewTable, kTrackViewModes, 40328, false};
constexpr EditorDrag kUnwrapDrag = {host::kUnwrapTable, kUnwrapModes, 40020, true};

const EditorDrag* DragOfEditor(WindowKind kind) {
    if (kind == kWindowTrackView) return &kTrackViewDrag;
    if (kind == kWindowUnwrapView) return &kUnwrapDrag;
    return nullptr;
}

bool IsAnyChecked(unsigned long table, std::span<const int> actions) {
    for (int action : actions) {
        if (host::IsActionChecked(table, action).value_or(false)) return true;
    }
    return false;
}

// Executes the drag mode's action until its state is the wanted one. Not bounded: the host takes
// its time, and a drag must not begin or be left in the wrong mode. An action that does not exist,
// or that the host refuses to run (the Unwrap editor's lock while the editor is not active), will
// never get there and ends it.
void SwitchDragMode(const EditorDrag& drag, bool on, bool waits) {
    while (host::IsActionChecked(drag.table, drag.drag_mode).value_or(on) != on) {
        if (!host::ExecuteAction(drag.table, drag.drag_mode)) return;
        if (waits) Sleep(1);
    }
}

bool StartInViewport(const MouseEvent& event) {
    if (host::SelectedNodeCount() == 0) return false;
    const auto mode = host::CurrentModeId();
    if (!mode || !AllowsQuickTransform(*mode)) return false;

    g_quickXform = 1;
    SetSelectionLock(true, kLockByMiddleButton, false);
    WPARAM keys = 0;
    if (g_settings.useShiftClone && IsShiftDown()) {
        g_shiftClone = 1;
        keys = MK_SHIFT;
    }
    SendMouse(event, WM_LBUTTONDOWN, keys);
    if (g_previousLockRequests < 1) SaveAndHideGizmo(false);
    return true;
}

bool StartInEditor(const MouseEvent& event, const EditorDrag& drag) {
    // The host switches the drag mode of the active editor only, and a middle press makes none
    // active.
    SetFocus(event.window);
    if (!IsAnyChecked(drag.table, drag.edit_modes)) return false;
    g_quickXform = 1;
    SwitchDragMode(drag, true, drag.waits);
    SendMouse(event, WM_LBUTTONDOWN, 0);
    return true;
}

void EndInViewport(const MouseEvent& event) {
    g_quickXform = 0;
    if (g_shiftClone) {
        g_shiftClone = 0;
        RestoreGizmo();
    }
    if (event.message == WM_RBUTTONDOWN) {
        // A right click cancels the host's drag.
        SendMouse(event, WM_RBUTTONDOWN, 0);
        SendMouse(event, WM_RBUTTONUP, 0);
    }
    SendMouse(event, WM_LBUTTONUP, 0);
    SetSelectionLock(false, kLockByMiddleButton, true);
}

void EndInEditor(const MouseEvent& event, const EditorDrag& drag) {
    g_quickXform = 0;
    SendMouse(event, WM_LBUTTONUP, 0);
    SetFocus(event.window);
    SwitchDragMode(drag, false, true);
}

bool Start(const MouseEvent& event) {
    if (PressOf(event.message) != WM_MBUTTONDOWN) return false;
    if (!g_settings.mClickXForms && !(g_settings.useShiftClone && IsShiftDown())) return false;
    if (g_quickXform) return false;
    if (IsViewportKind(event.kind)) return StartInViewport(event);
    const EditorDrag* drag = DragOfEditor(event.kind);
    return drag && StartInEditor(event, *drag);
}

bool End(const MouseEvent& event) {
    if (!g_quickXform) return false;
    if (event.message != WM_MBUTTONUP && !(event.message == WM_RBUTTONDOWN && IsShiftDown())) {
        return false;
    }
    if (IsViewportKind(event.kind)) {
        EndInViewport(event);
        return false;
    }
    if (const EditorDrag* drag = DragOfEditor(event.kind)) EndInEditor(event, *drag);
    // Over an editor that has no quick transforms the drag stays marked as running.
    return IsEditorKind(event.kind);
}

bool Move(const MouseEvent& event) {
    if (event.message != WM_MOUSEMOVE || !g_quickXform || event.kind != kWindowTrackView ||
        !IsShiftDown()) {
        return false;
    }
    SendMouse(event, WM_MOUSEMOVE, MK_LBUTTON | MK_CONTROL);
    return true;
}

}  // namespace

Answer QuickTransform(const MouseEvent& event) {
    const bool taken = Start(event) || End(event) || Move(event);
    return taken ? Answer::kConsumed : Answer::kNotMine;
}
