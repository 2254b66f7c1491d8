// Menus and their entries as the plug-in sees them. core.dll (the menu manager) and menus.dll
// (which makes them) each contain this code; the objects have no data but the engine's handle.
#pragma once

#include "standin/interfaces/action_objects.h"

#include "host_text.h"

#include <imenus.h>

class HostMenu : public StandsFor<Published<IMenu>, eng_menu> {
public:
    using StandsFor::StandsFor;
    void SetTitle(const MCHAR* title) override { eng_menu_set_title(m_handle, Narrow(title)); }
    int NumItems() const override { return eng_menu_count(m_handle); }
    inline void AddItem(IMenuItem* item, int position) override;
};

class HostMenuItem : public StandsFor<Published<IMenuItem>, eng_item> {
public:
    using StandsFor::StandsFor;
    void SetTitle(const MCHAR* title) override { eng_item_set_title(m_handle, Narrow(title)); }
    void ActAsSeparator() override { eng_item_separator(m_handle); }
    void SetActionItem(ActionItem* item) override {
        HostActionItem* action = static_cast<HostActionItem*>(item);
        eng_item_set_action(m_handle, action->TableId(), action->GetId());
    }
    void SetSubMenu(IMenu* menu) override {
        eng_item_set_submenu(m_handle, HandleOf<HostMenu>(menu));
    }
};

void HostMenu::AddItem(IMenuItem* item, int position) {
    eng_menu_add(m_handle, HandleOf<HostMenuItem>(item), position);
}
