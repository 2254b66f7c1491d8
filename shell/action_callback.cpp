#include "shell/action_callback.h"

#include <cstring>

#include "assists/gizmo_and_lock.h"
#include "assists/sticky_snap.h"
#include "host/host.h"
#include "navigation/navigation_state.h"
#include "resources/resource_ids.h"
#include "script/script_texts.h"
#include "settings/options_window.h"
#include "settings/settings_store.h"
#include "settings/welcome_window.h"
#include "shell/about.h"
#include "shell/commands.h"
#include "shell/module.h"
#include "shell/pixel_nudge.h"
#include "shell/script_runner.h"
#include "shell/utility.h"

namespace {

constexpr char kHotkeysOnly[] = "Sticky functions can only be used with hotkeys.\n";

// A click on a toolbar button starts an action with the cursor over that button.
bool IsCursorOverToolbarButton() {
    POINT cursor = {};
    GetCursorPos(&cursor);
    char class_name[16];
    if (!GetClassNameA(WindowFromPoint(cursor), class_name, static_cast<int>(sizeof class_name))) {
        return false;
    }
    return std::strcmp(class_name, "CustButton") == 0;
}

void ArmTimeScrubber() {
    if (g_scrubState != kScrubOff || GetAsyncKeyState(VK_LBUTTON) < 0) return;
    g_scrubState = kScrubArmed;
    SetCursor(LoadModuleCursor(IDC_CURSOR_TIME_SCRUB));
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
    SaveSettings();
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
        case kCommandTimeScrubber: ArmTimeScrubber(); return TRUE;
        case kCommandToggleNavigation: ToggleNavigation(); return TRUE;
        case kCommandNudgeUp:
        case kCommandNudgeDown:
        case kCommandNudgeLeft:
        case kCommandNudgeRight: NudgeSelection(id); return TRUE;
        case kCommandCenterPivot: RunScript(kCenterPivot); return TRUE;
        case kCommandFrameSelected: RunScript(kFrameSelected); return TRUE;
        case kCommandFrameAll: RunScript(kFrameAll); return TRUE;
        case kCommandPreviousKey: RunScript(kPreviousKey); return TRUE;
        case kCommandNextKey: RunScript(kNextKey); return TRUE;
        case kCommandResetViews: RunScript(kResetViews); return TRUE;
        case kCommandAbout:
            ShowAboutBox(host::MainWindow());
            return FALSE;  // Deliberate, as for the help command: carried out, yet not "handled".
        case kCommandHelp: ToggleWelcome(); return FALSE;
        default: return FALSE;
    }
}
