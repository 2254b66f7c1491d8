// Menus of hosts from 2025 on: made anew at every start, within the notification that the host
// sends when it loads its own. So a menu is only written down while the plug-in starts, and made
// later.

#include <max.h>

#include <CUI/ICuiMenu.h>
#include <CUI/ICuiMenuManager.h>
#include <actiontable.h>
#include <notify.h>

#include "host/core_interface.h"
#include "host/host.h"
#include "host/sdk_text.h"

// What is written down of an entry and of the menu, in place of what older hosts make.
class IMenuItem {
public:
    unsigned long table = 0;
    int action = 0;
    bool separator = false;
};

class IMenu {
public:
    static constexpr int kMost = 8;
    const char* title = nullptr;  // null: nothing was written down
    IMenuItem* entries[kMost] = {};
    int count = 0;
};

namespace host {
namespace {

using MaxSDK::MaxGuid;

// What the users' own changes of the menu refer to, so it never changes: the last four digits of an
// entry are the number of its action, those of separators count up from F000, those of the menu are
// FFFF.
constexpr char kOurIds[] = "{8d0f6a52-47c1-4e0b-9f3e-6b21c5a4%04x}";
constexpr unsigned kMenuNumber = 0xFFFF;
constexpr unsigned kFirstSeparatorNumber = 0xF000;
// The host's own: new menus stand before it, as its last one.
constexpr char kHelpMenu[] = "{cee8f758-2199-411b-81e7-d3ff4a80d143}";
constexpr char kNone[] = "{00000000-0000-0000-0000-000000000000}";

IMenu g_menu;
IMenuItem g_entries[IMenu::kMost];
int g_entryCount = 0;

MaxGuid OurId(unsigned number) {
    char text[sizeof kOurIds];
    wsprintfA(text, kOurIds, number);
    return MaxGuid(text);
}

IMenuItem* NewEntry() {
    return g_entryCount < IMenu::kMost ? &g_entries[g_entryCount++] : nullptr;
}

void MakeEntries(MaxSDK::CUI::ICuiMenu& menu) {
    const MaxGuid at_the_end(kNone);
    const MSTR own_text(_M(""));  // an entry without a title shows its action's
    unsigned separator = kFirstSeparatorNumber;
    for (int index = 0; index < g_menu.count; ++index) {
        const IMenuItem& entry = *g_menu.entries[index];
        if (entry.separator) {
            menu.CreateSeparator(OurId(separator++), at_the_end);
        } else {
            menu.CreateAction(OurId(static_cast<unsigned>(entry.action)), entry.table, entry.action,
                              own_text, at_the_end);
        }
    }
}

// Whenever the host loads its menus, at its start and later on.
void MakeMenu(void*, NotifyInfo* info) {
    auto* const manager = static_cast<MaxSDK::CUI::ICuiMenuManager*>(info->callParam);
    MaxSDK::CUI::ICuiMenu* const bar = manager ? manager->GetMainMenuBar() : nullptr;
    if (!bar) return;
    const MSTR title(TextForHost(g_menu.title));
    const MaxGuid id = OurId(kMenuNumber);
    MaxSDK::CUI::ICuiMenu* menu = bar->CreateSubMenu(id, title, MaxGuid(kHelpMenu));
    // A user may have taken the help menu away.
    if (!menu) menu = bar->CreateSubMenu(id, title, MaxGuid(kNone));
    if (menu) MakeEntries(*menu);
}

}  // namespace

bool RegisterMenuContext(int, const char*) {
    return !g_menu.title;  // nothing is left of another session
}

IMenu* NewMenu(const char* title) {
    g_menu.title = title;
    return &g_menu;
}

IMenuItem* NewActionEntry(unsigned long table, int action) {
    ActionTable* actions = FindActionTable(table);
    IMenuItem* entry = actions && actions->GetAction(action) ? NewEntry() : nullptr;
    if (entry) {
        entry->table = table;
        entry->action = action;
    }
    return entry;
}

IMenuItem* NewSeparatorEntry() {
    IMenuItem* entry = NewEntry();
    if (entry) entry->separator = true;
    return entry;
}

void AppendEntry(IMenu* menu, IMenuItem* entry) {
    if (menu && entry && menu->count < IMenu::kMost) menu->entries[menu->count++] = entry;
}

void InsertIntoMainMenuBar(IMenu* menu) {
    if (menu) RegisterNotification(MakeMenu, nullptr, NOTIFY_CUI_REGISTER_MENUS);
}

}  // namespace host
