// core.dll from 2025 on: menus that are made within a notification.

#include "standin/interfaces/core_objects.h"
#include "standin/interfaces/published.h"

#include "host_text.h"

#include <notify.h>

using namespace MaxSDK;
using namespace MaxSDK::CUI;

namespace {

// Entries are only looked at for null.
template <class Entry>
Entry* EntryOf(int made) {
    static char entry;
    return made != 0 ? reinterpret_cast<Entry*>(&entry) : nullptr;
}

class HostCuiMenu final : public StandsFor<Published<ICuiMenu>, eng_menu> {
public:
    using StandsFor::StandsFor;
    ICuiMenu* CreateSubMenu(const MaxGuid& id, const MSTR& title, const MaxGuid& before) override {
        eng_menu* const menu = eng_menu_create_menu(m_handle, &id, Narrow(title.data()), &before);
        return ObjectOf<HostCuiMenu>(menu);
    }
    ICuiActionMenuItem* CreateAction(const MaxGuid& id, ActionTableId table, int action,
                                     const MSTR& title, const MaxGuid& before) override {
        return EntryOf<ICuiActionMenuItem>(
            eng_menu_create_action(m_handle, &id, table, action, Narrow(title.data()), &before));
    }
    ICuiMenuItem* CreateSeparator(const MaxGuid& id, const MaxGuid& before) override {
        return EntryOf<ICuiMenuItem>(eng_menu_create_separator(m_handle, &id, &before));
    }
};

class HostCuiMenuManager final : public Published<ICuiMenuManager> {
public:
    ICuiMenu* GetMainMenuBar() const override { return ObjectOf<HostCuiMenu>(eng_main_menu()); }
};
HostCuiMenuManager g_menuManager;

// As the host tells each plug-in that its menus are being loaded.
void Notify(void* procedure, void* own, int code) {
    NotifyInfo info = {};
    info.intcode = code;
    info.callParam = HostMenuManager();
    reinterpret_cast<NOTIFYPROC>(procedure)(own, &info);
}
const bool g_registered = (eng_register_notifier(Notify), true);

}  // namespace

MenuManager* HostMenuManager() {
    return Given<MenuManager>("GetMenuManager", &g_menuManager);
}

int RegisterNotification(NOTIFYPROC procedure, void* own, int code) {
    return eng_register_notification(reinterpret_cast<void*>(procedure), own, code);
}
int UnRegisterNotification(NOTIFYPROC, void*, int) {
    return Unexpected("UnRegisterNotification");
}
