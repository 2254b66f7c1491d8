#pragma once

#include <imenus.h>

typedef int MenuContextId;

const MenuContextId kMainMenuBar = 1;

class IMenuManager : public FPStaticInterface {
public:
    virtual bool RegisterMenu(IMenu* pMenu, DWORD flags = 0) = 0;
    SDK_SLOTS_3(IMenuManager, 29, 30, 31)
    virtual bool RegisterMenuBarContext(MenuContextId contextId, const MCHAR* pName) = 0;
    SDK_SLOTS_4(IMenuManager, 33, 34, 35, 36)
    virtual void UpdateMenuBar() = 0;
    SDK_SLOTS_6(IMenuManager, 38, 39, 40, 41, 42, 43)
    virtual IMenu* GetMainMenuBar() = 0;
    SDK_SLOTS_4(IMenuManager, 45, 46, 47, 48)
};
