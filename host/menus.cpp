#include <max.h>

#include <actiontable.h>
#include <imenuman.h>
#include <imenus.h>

#include "host/core_interface.h"
#include "host/host.h"
#include "host/sdk_text.h"

namespace host {
namespace {

IMenuManager* MenuManager() {
    Interface* core = Core();
    return core ? core->GetMenuManager() : nullptr;
}

}  // namespace

bool RegisterMenuContext(int id, const char* name) {
    IMenuManager* manager = MenuManager();
    return manager && manager->RegisterMenuBarContext(id, TextForHost(name));
}

IMenu* NewMenu(const char* title) {
    IMenuManager* manager = MenuManager();
    IMenu* menu = manager ? GetIMenu() : nullptr;
    if (!menu) return nullptr;
    menu->SetTitle(TextForHost(title));
    manager->RegisterMenu(menu, 0);
    return menu;
}

IMenuItem* NewActionEntry(unsigned long table_id, int action) {
    ActionTable* table = FindActionTable(table_id);
    ActionItem* action_item = table ? table->GetAction(action) : nullptr;
    IMenuItem* entry = action_item ? GetIMenuItem() : nullptr;
    if (entry) entry->SetActionItem(action_item);
    return entry;
}

IMenuItem* NewSeparatorEntry() {
    IMenuItem* entry = GetIMenuItem();
    if (entry) entry->ActAsSeparator();
    return entry;
}

void AppendEntry(IMenu* menu, IMenuItem* entry) {
    if (menu && entry) menu->AddItem(entry);
}

void InsertIntoMainMenuBar(IMenu* menu) {
    IMenuManager* manager = MenuManager();
    IMenu* bar = menu && manager ? manager->GetMainMenuBar() : nullptr;
    IMenuItem* entry = bar ? GetIMenuItem() : nullptr;
    if (!entry) return;
    entry->SetSubMenu(menu);
    bar->AddItem(entry, bar->NumItems() - 1);
    manager->UpdateMenuBar();
}

}  // namespace host
