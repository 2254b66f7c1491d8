#include "shell/action_table.h"

#include <max.h>

#include <actiontable.h>
#include <maxicon.h>

#include "host/host.h"
#include "host/sdk_text.h"
#include "resources/resource_ids.h"
#include "settings/options_window.h"
#include "settings/plugin_settings.h"
#include "settings/welcome_window.h"
#include "shell/commands.h"
#include "shell/module.h"

namespace {

constexpr int kFirstReleaseWithSnaps = 7000;
constexpr MCHAR kIconFile[] = _M("Karvel");

// Command, then string ids of its description, its button and menu text, and its category. Hosts
// below release 7000 get the first rows only, without the snaps.
ActionDescription g_actions[] = {
    // clang-format off
    {kCommandSelectionLock,    IDS_SELECTION_LOCK,   IDS_STICKY_SHORT_NAME,    IDS_KARVEL},
    {kCommandShowOptions,      IDS_SHOW_OPTIONS,     IDS_OPTIONS_MENU,         IDS_KARVEL},
    {kCommandAbout,            IDS_ABOUT,            IDS_ABOUT_MENU,           IDS_KARVEL},
    {kCommandHelp,             IDS_HELP,             IDS_HELP_MENU,            IDS_KARVEL},
    {kCommandTimeScrubber,     IDS_TIME_SCRUBBER,    IDS_STICKY_SHORT_NAME,    IDS_KARVEL},
    {kCommandToggleNavigation, IDS_MAYA_NAVIGATION,  IDS_MAYA_NAVIGATION_MENU, IDS_KARVEL},
    {kCommandNudgeUp,          IDS_NUDGE_UP,         IDS_NUDGE_UP,             IDS_KARVEL},
    {kCommandNudgeDown,        IDS_NUDGE_DOWN,       IDS_NUDGE_DOWN,           IDS_KARVEL},
    {kCommandNudgeLeft,        IDS_NUDGE_LEFT,       IDS_NUDGE_LEFT,           IDS_KARVEL},
    {kCommandNudgeRight,       IDS_NUDGE_RIGHT,      IDS_NUDGE_RIGHT,          IDS_KARVEL},
    {kCommandCenterPivot,      IDS_CENTER_PIVOT,     IDS_CENTER_PIVOT,         IDS_KARVEL},
    {kCommandFrameSelected,    IDS_FRAME_SELECTED,   IDS_FRAME_SELECTED,       IDS_KARVEL},
    {kCommandFrameAll,         IDS_FRAME_ALL,        IDS_FRAME_ALL,            IDS_KARVEL},
    {kCommandResetViews,       IDS_RESET_ALL_VIEWS,  IDS_RESET_ALL_VIEWS,      IDS_KARVEL},
    {kCommandPreviousKey,      IDS_PREVIOUS_KEY,     IDS_PREVIOUS_KEY,         IDS_KARVEL},
    {kCommandNextKey,          IDS_NEXT_KEY,         IDS_NEXT_KEY,             IDS_KARVEL},
    {kCommandSnapPoints,       IDS_SNAP_TO_POINTS,   IDS_STICKY_SHORT_NAME,    IDS_KARVEL},
    {kCommandSnapCurves,       IDS_SNAP_TO_CURVES,   IDS_STICKY_SHORT_NAME,    IDS_KARVEL},
    {kCommandSnapGrids,        IDS_SNAP_TO_GRIDS,    IDS_STICKY_SHORT_NAME,    IDS_KARVEL},
    {kCommandSnapAngles,       IDS_SNAP_ANGLES,      IDS_STICKY_SHORT_NAME,    IDS_KARVEL},
    // clang-format on
};
constexpr int kActionCount = static_cast<int>(sizeof g_actions / sizeof g_actions[0]);
constexpr int kActionCountWithoutSnaps = kActionCount - 4;

struct ActionIcon {
    int command;
    int index;      // of its image in the icon file
    MaxIcon* icon;  // made when first asked for, and kept: nobody says who would free it
};
ActionIcon g_icons[] = {
    {kCommandShowOptions, 16, nullptr}, {kCommandToggleNavigation, 15, nullptr},
    {kCommandCenterPivot, 18, nullptr}, {kCommandFrameSelected, 4, nullptr},
    {kCommandFrameAll, 3, nullptr},     {kCommandPreviousKey, 2, nullptr},
    {kCommandNextKey, 1, nullptr},      {kCommandResetViews, 5, nullptr},
};

}  // namespace

// Not in the unnamed namespace: the name in its type information would depend on the folder of the
// build.
class KarvelActionTable : public ActionTable {
public:
    KarvelActionTable(MSTR& name, HACCEL default_keys, int count)
        : ActionTable(kKarvelTableId, kKarvelTableId, name, default_keys, count, g_actions,
                      g_module) {}

    BOOL IsChecked(int command) override {
        switch (command) {
            case kCommandShowOptions: return g_optionsWindow != nullptr;
            case kCommandToggleNavigation: return g_settings.useMayaStyle != 0;
            case kCommandHelp: return g_welcomeWindow != nullptr;
            default: return FALSE;
        }
    }

    // Menus leave the sticky commands out: a click cannot hold them.
    BOOL IsItemVisible(int command) override { return !IsStickyCommand(command); }

    BOOL IsEnabled(int) override { return TRUE; }

    MaxIcon* GetIcon(int command) override {
        for (ActionIcon& entry : g_icons) {
            if (entry.command != command) continue;
            if (!entry.icon) entry.icon = new MaxBmpFileIcon(kIconFile, entry.index);
            return entry.icon;
        }
        return nullptr;
    }
};

ActionTable* BuildKarvelActionTable() {
    // The buffer of LoadText serves other texts too, so this one is copied before anything else.
    const char* text = LoadText(IDS_KARVEL);
    char context_name[64];
    lstrcpynA(context_name, text ? text : "", static_cast<int>(sizeof context_name));
    MSTR name(host::TextForHost(context_name));
    HACCEL default_keys = LoadAcceleratorsA(g_module, MAKEINTRESOURCEA(IDR_ACCELERATORS_ABSENT));
    g_hostRelease = host::Release();
    const int count =
        g_hostRelease < kFirstReleaseWithSnaps ? kActionCountWithoutSnaps : kActionCount;
    auto* table = new KarvelActionTable(name, default_keys, count);
    host::RegisterActionContext(kKarvelTableId, context_name);
    return table;
}
