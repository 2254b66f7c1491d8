// menus.dll: where menus and their entries come from.

#include "standin/interfaces/menu_objects.h"

IMenu* GetIMenu() {
    return ObjectOf<HostMenu>(eng_new_menu());
}
IMenuItem* GetIMenuItem() {
    return ObjectOf<HostMenuItem>(eng_new_item());
}

void ReleaseIMenu(IMenu* menu) {
    if (menu == nullptr) return;
    eng_menu* handle = static_cast<HostMenu*>(menu)->Handle();
    ForgetObjectOf<HostMenu>(handle);
    eng_release_menu(handle);
}

void ReleaseIMenuItem(IMenuItem* item) {
    if (item == nullptr) return;
    eng_item* handle = static_cast<HostMenuItem*>(item)->Handle();
    ForgetObjectOf<HostMenuItem>(handle);
    eng_release_item(handle);
}
