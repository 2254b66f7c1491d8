#include "assists/sticky_snap.h"

#include "host/host.h"
#include "resources/command_ids.h"
#include "host/toolbar_controls.h"
#include "host/toolbars.h"

int g_heldSnapSticky = 0;

namespace {

constexpr int kSnapToggleAction = 40072;
constexpr int kAngleSnapAction = kAngleSnapButtonId;
constexpr int kFirstReleaseWithNewIds = 13000;

struct SnapActions {
    int snap_set;
    int points;
    int curves;
    int grids;
};
constexpr SnapActions kOldSnapActions = {50069, 50073, 50075, 50067};
constexpr SnapActions kNewSnapActions = {80001, 80002, 80005, 80000};

const SnapActions& ActionsOfThisHost() {
    return g_hostRelease < kFirstReleaseWithNewIds ? kOldSnapActions : kNewSnapActions;
}

void SetSnapAction(int action, bool on) {
    host::SetActionChecked(host::kSnapsTable, action, on);
}

void SetSnapToggle(bool on) {
    if (host::IsSnapOn() != on) host::ExecuteAction(host::kMainTable, kSnapToggleAction);
}

void SetAngleSnap(bool on) {
    if (host::IsAngleSnapOn() != on) host::ExecuteAction(host::kMainTable, kAngleSnapAction);
}

}  // namespace

void SetStickySnap(int command, bool on) {
    if (on && g_heldSnapSticky) return;
    g_heldSnapSticky = on ? command : 0;

    if (command == kCommandSnapAngles) {
        SetAngleSnap(on);
        return;
    }
    const SnapActions& actions = ActionsOfThisHost();
    SetSnapToggle(on);
    if (!host::IsSubObjectEditing()) SetSnapAction(actions.snap_set, on);
    switch (command) {
        case kCommandSnapPoints: SetSnapAction(actions.points, on); break;
        case kCommandSnapCurves: SetSnapAction(actions.curves, on); break;
        case kCommandSnapGrids:
            SetSnapAction(actions.grids, on);
            // Deliberate: vertices join the grid only while sub-objects are edited.
            if (host::IsSubObjectEditing()) SetSnapAction(actions.points, on);
            break;
        default: break;
    }
}
