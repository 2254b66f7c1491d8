#pragma once

#include <ifnpub.h>
#include <maxapi.h>
#include <strclass.h>

class ActionItem;
class IMenu;

// What menus and menu entries have in common. It is their second base, behind the first one's data.
class IMenuElement : public MaxHeapOperators {
public:
    SDK_SLOTS_5(IMenuElement, 0, 1, 2, 3, 4)
    virtual void SetTitle(const MCHAR* pTitle) = 0;
    SDK_SLOTS_4(IMenuElement, 6, 7, 8, 9)
    SDK_SLOTS_2(IMenuElement, 10, 11)
};

class IMenuItem : public FPMixinInterface, public IMenuElement {
public:
    SDK_SLOTS_3(IMenuItem, 26, 27, 28)
    virtual void ActAsSeparator() = 0;
    SDK_SLOT(IMenuItem, 30)
    virtual void SetActionItem(ActionItem* pItem) = 0;
    SDK_SLOTS_3(IMenuItem, 32, 33, 34)
    virtual void SetSubMenu(IMenu* pSubMenu) = 0;
    SDK_SLOTS_4(IMenuItem, 36, 37, 38, 39)
    SDK_TEN_SLOTS(IMenuItem, 4)
    SDK_SLOTS_2(IMenuItem, 50, 51)
};

class IMenu : public FPMixinInterface, public IMenuElement {
public:
    SDK_SLOTS_2(IMenu, 26, 27)
    virtual int NumItems() const = 0;
    SDK_SLOT(IMenu, 29)
    virtual void AddItem(IMenuItem* pItem, int position = -1) = 0;
    SDK_SLOTS_9(IMenu, 31, 32, 33, 34, 35, 36, 37, 38, 39)
    SDK_TEN_SLOTS(IMenu, 4)
    SDK_SLOTS_5(IMenu, 50, 51, 52, 53, 54)
};

SDK_MENUS_API IMenu* GetIMenu();
SDK_MENUS_API IMenuItem* GetIMenuItem();
SDK_MENUS_API void ReleaseIMenu(IMenu* pMenu);
SDK_MENUS_API void ReleaseIMenuItem(IMenuItem* pItem);
