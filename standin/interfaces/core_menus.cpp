// core.dll up to 2024: the menu manager.

#include "standin/interfaces/core_objects.h"
#include "standin/interfaces/menu_objects.h"

namespace {

class HostManagerOfMenus final : public Published<IMenuManager> {
public:
    bool RegisterMenu(IMenu* menu, DWORD flags) override {
        return eng_register_menu(HandleOf<HostMenu>(menu), flags) != 0;
    }
    bool RegisterMenuBarContext(MenuContextId id, const MCHAR* name) override {
        return eng_register_menu_context(id, Narrow(name)) != 0;
    }
    void UpdateMenuBar() override { eng_update_menu_bar(); }
    IMenu* GetMainMenuBar() override { return ObjectOf<HostMenu>(eng_main_menu()); }
};
HostManagerOfMenus g_menuManager;

}  // namespace

MenuManager* HostMenuManager() {
    return Given<MenuManager>("GetMenuManager", &g_menuManager);
}
