// menus.dll: where menus and their entries come from.

#include "standin/interfaces/host_dll.h"

#include <sdk_layout.h>

// The host of 2026 has none of these menus.
#if SDK_GENERATION < 2026
#include "standin/interfaces/menu_objects.h"

#if SDK_GENERATION < 2016
template <class Object, class Base, class Engine>
static void Release(Base* object, void (*release)(Engine*)) {
    if (object == nullptr) return;
    Engine* handle = HandleOf<Object>(object);
    *eng_slot(handle) = nullptr;
    ::delete static_cast<Object*>(object);
    release(handle);
}
#endif

// clang-format off
IMenu* GetIMenu() { return ObjectOf<HostMenu>(eng_new_menu()); }
IMenuItem* GetIMenuItem() { return ObjectOf<HostMenuItem>(eng_new_item()); }
#if SDK_GENERATION < 2016
void ReleaseIMenu(IMenu* menu) { Release<HostMenu>(menu, eng_release_menu); }
void ReleaseIMenuItem(IMenuItem* item) { Release<HostMenuItem>(item, eng_release_item); }
#endif
// clang-format on
#endif
