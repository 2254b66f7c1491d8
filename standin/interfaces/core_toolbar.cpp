// core.dll: the toolbars and their buttons, and the menu manager.

#include "standin/interfaces/core_objects.h"
#if SDK_GENERATION < 2026
#include "standin/interfaces/menu_objects.h"
#endif

namespace {

class HostButton final : public StandsFor<ICustButton, eng_button> {
public:
    using StandsFor::StandsFor;
    BOOL IsEnabled() override { return eng_button_is_enabled(m_handle); }
    BOOL IsChecked() override { return eng_button_is_checked(m_handle); }
    int GetCurFlyOff() override { return eng_button_flyout(m_handle); }
    void SetCurFlyOff(int entry, BOOL notify) override {
        eng_button_set_flyout(m_handle, entry, notify);
    }
};

class HostToolbars final : public CUIFrameMgr {};
HostToolbars g_toolbars;

#if SDK_GENERATION < 2026
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
#endif

}  // namespace

// clang-format off
#if SDK_GENERATION < 2026
IMenuManager* HostMenuManager() { return &g_menuManager; }
#endif
CUIFrameMgr* GetCUIFrameMgr() { return Given<CUIFrameMgr>("GetCUIFrameMgr", &g_toolbars); }
void CUIFrameMgr::SetMacroButtonStates(BOOL force) { eng_set_macro_button_states(force); }
ICustButton* CUIFrameMgr::GetICustButton(int id) {
    return ObjectOf<HostButton>(eng_toolbar_button(id));
}
ICustButton* GetICustButton(HWND window) { return ObjectOf<HostButton>(eng_button_of(window)); }
void ReleaseICustButton(ICustButton* button) { eng_release_button(HandleOf<HostButton>(button)); }
// clang-format on
