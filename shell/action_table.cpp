#include "shell/action_table.h"

#include <max.h>

#include <actiontable.h>
#include <maxicon.h>

#include <iterator>

#include "host/host.h"
#include "host/sdk_text.h"
#include "resources/resource_ids.h"
#include "windows/options_window.h"
#include "settings/plugin_settings.h"
#include "windows/welcome_window.h"
#include "shell/commands.h"
#include "resources/module.h"

namespace {

constexpr MCHAR kIconFile[] = _M("Karvel");
constexpr int kCommandCount = static_cast<int>(std::size(kCommands));

// What the host copies a new table from.
ActionDescription g_actions[kCommandCount];

// One for each row of kCommands, made when first asked for, and kept: nobody says who would free
// it.
MaxIcon* g_icons[kCommandCount];

// Fills g_actions with what this host has; how many that are.
int DescribeCommands() {
    int count = 0;
    for (const Command& command : kCommands) {
        if (g_hostRelease < command.since) continue;
        g_actions[count++] = {command.id, command.description, command.name, IDS_KARVEL};
    }
    return count;
}

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
        for (int i = 0; i < kCommandCount; ++i) {
            if (kCommands[i].id != command || kCommands[i].icon == kNoIcon) continue;
            if (!g_icons[i]) g_icons[i] = new MaxBmpFileIcon(kIconFile, kCommands[i].icon);
            return g_icons[i];
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
    auto* table = new KarvelActionTable(name, default_keys, DescribeCommands());
    host::RegisterActionContext(kKarvelTableId, context_name);
    return table;
}
