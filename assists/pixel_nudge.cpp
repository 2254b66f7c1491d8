#include "assists/pixel_nudge.h"

#include <iterator>

#include "assists/gizmo_and_lock.h"
#include "host/host.h"
#include "host/toolbars.h"
#include "input/mouse_event.h"
#include "resources/command_ids.h"
#include "settings/plugin_settings.h"

int g_nudgeActive = 0;
int g_nudgeRecorderWasOn = 0;  // whether the macro recorder ran when the series began
int g_nudgeRepeating = 0;      // the key repeats: the transform gizmo is hidden meanwhile
DWORD g_nudgeStartTick = 0;

namespace {

constexpr DWORD kRepeatAfterMs = 100;

// A drag of the move tool, in client coordinates of the view. The first move goes three pixels too
// far, or the host would take it for a click; the drag ends one pixel from where it began.
struct NudgeDrag {
    int constraint;
    POINT overshoot;
    POINT end;
};
constexpr POINT kDragStart = {1, 1};
// Up, down, left and right, in the order of the commands.
constexpr NudgeDrag kDrags[] = {
    {host::kConstrainY, {1, -2}, {1, 0}},
    {host::kConstrainY, {1, 4}, {1, 2}},
    {host::kConstrainX, {-2, 1}, {0, 1}},
    {host::kConstrainX, {4, 1}, {2, 1}},
};
static_assert(std::size(kDrags) == kCommandNudgeRight - kCommandNudgeUp + 1);

bool CanNudge() {
    if (!g_settings.useMayaStyle) return false;
    const auto mode_class = host::CurrentModeClass();
    if (!mode_class) return false;
    if ((*mode_class < 1 || *mode_class > 12) && !host::IsSubObjectEditing()) return false;
    return host::IsSelectEnabled().value_or(false);
}

void EnterNudgeSeries() {
    if (!g_nudgeActive) {
        g_nudgeActive = 1;
        g_nudgeRecorderWasOn = host::IsMacroRecorderOn();
        host::SilenceMacroRecorder();
        g_nudgeStartTick = GetTickCount();
    } else if (!g_nudgeRepeating && GetTickCount() - g_nudgeStartTick > kRepeatAfterMs) {
        g_nudgeRepeating = 1;
        SaveAndHideGizmo(true);
    }
}

void DragInActiveView(const NudgeDrag& drag) {
    const HWND view = host::Viewport::Active().Window();
    if (!view) return;
    SendMouse(view, WM_LBUTTONDOWN, 0, kDragStart);
    SendMouse(view, WM_MOUSEMOVE, MK_LBUTTON, drag.overshoot);
    SendMouse(view, WM_MOUSEMOVE, MK_LBUTTON, drag.end);
    SendMouse(view, WM_LBUTTONUP, 0, drag.end);
}

}  // namespace

void NudgeSelection(int command) {
    if (!CanNudge()) return;
    const NudgeDrag& drag = kDrags[command - kCommandNudgeUp];

    host::StopSceneRedraw();
    host::PrepareDrag();
    EnterNudgeSeries();
    SetSelectionLock(true, kLockBySticky, false);
    // The host keeps one coordinate system a tool, so this comes after the change of tool.
    const int system = host::CoordinateSystem();
    host::SetCoordinateSystem(host::kScreenCoordinates);
    const int constraint = host::AxisConstraint();
    host::SetAxisConstraint(drag.constraint);

    DragInActiveView(drag);

    host::SetAxisConstraint(constraint);
    host::SetCoordinateSystem(system);
    SetSelectionLock(false, kLockBySticky, false);
    host::EndDrag();
    host::RestartSceneRedraw();
    host::RedrawViewsNow();
}

void EndNudgeSeries() {
    if (!g_nudgeActive) return;
    g_nudgeActive = 0;
    host::EndMacroRecorderSilence();
    if (g_nudgeRepeating) {
        g_nudgeRepeating = 0;
        RestoreGizmo();
    }
    host::RedrawEverything();
}
