#include "shell/action_callback.h"

#include "assists/gizmo_and_lock.h"
#include "assists/sticky_snap.h"
#include "host/host.h"
#include "host/toolbars.h"
#include "navigation/time_scrub.h"
#include "script/script_texts.h"
#include "windows/options_window.h"
#include "windows/welcome_window.h"
#include "windows/about.h"
#include "settings/plugin_settings.h"
#include "shell/commands.h"
#include "assists/pixel_nudge.h"

namespace {

constexpr char kHotkeysOnly[] = "Sticky functions can only be used with hotkeys.\n";

// A click on a toolbar button starts an action with the cursor over that button.
bool IsCursorOverToolbarButton() {
    POINT cursor = {};
    GetCursorPos(&cursor);
    return host::IsToolbarButton(WindowFromPoint(cursor)).value_or(false);
}

void ToggleOptions() {
    if (g_optionsWindow) {
        SendMessageA(g_optionsWindow, WM_COMMAND, IDOK, 0);
    } else {
        ShowOptionsDialog();
    }
}

void ToggleNavigation() {
    g_settings.useMayaStyle = !g_settings.useMayaStyle;
    SaveOptions();
    host::RefreshMacroButtons();
    if (g_optionsWindow) RefreshOptionsPage();
}

void ToggleWelcome() {
    if (g_welcomeWindow) {
        SendMessageA(g_welcomeWindow, WM_COMMAND, IDOK, 0);
        g_welcomeWindow = nullptr;
    } else {
        OpenWelcomeDialog();
    }
}

}  // namespace

BOOL aCallback::ExecuteAction(int id) {
    if (IsStickyCommand(id) && IsCursorOverToolbarButton()) {
        host::PrintToListener(kHotkeysOnly);
        return TRUE;
    }
    switch (id) {
        case kCommandSelectionLock: SetSelectionLock(true, kLockBySticky, true); return TRUE;
        case kCommandSnapPoints:
        case kCommandSnapCurves:
        case kCommandSnapGrids:
        case kCommandSnapAngles: SetStickySnap(id, true); return TRUE;
        case kCommandShowOptions: ToggleOptions(); return TRUE;
        case kCommandTimeScrubber: ArmTimeScrub(); return TRUE;
        case kCommandToggleNavigation: ToggleNavigation(); return TRUE;
        case kCommandNudgeUp:
        case kCommandNudgeDown:
        case kCommandNudgeLeft:
        case kCommandNudgeRight: NudgeSelection(id); return TRUE;
        case kCommandCenterPivot: host::RunScript(kCenterPivot); return TRUE;
        case kCommandFrameSelected: host::RunScript(kFrameSelected); return TRUE;
        case kCommandFrameAll: host::RunScript(kFrameAll); return TRUE;
        case kCommandPreviousKey: host::RunScript(kPreviousKey); return TRUE;
        case kCommandNextKey: host::RunScript(kNextKey); return TRUE;
        case kCommandResetViews: host::RunScript(kResetViews); return TRUE;
        case kCommandAbout:
            ShowAboutBox(host::MainWindow());
            return FALSE;  // Deliberate, as for the help command: carried out, yet not "handled".
        case kCommandHelp: ToggleWelcome(); return FALSE;
        default: return FALSE;
    }
}
