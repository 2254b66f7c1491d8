#pragma once

#include <baseinterface.h>

#define CUSTBUTTONWINDOWCLASS _M("CustButton")

// What a custom button tells its parent in the high word of WM_COMMAND, besides BN_CLICKED.
#define BN_BUTTONDOWN 8173
#define BN_BUTTONUP 8174
#define BN_RIGHTCLICK 8183
#define BN_FLYOFF 8187

// A command to a custom control, in wParam; the state is in lParam.
#define CC_COMMAND (WM_USER + 700)
#define CC_CMD_SET_STATE 24

class ICustomControl : public InterfaceServer {
public:
    SDK_SLOTS_3(ICustomControl, 2, 3, 4)
    virtual BOOL IsEnabled() = 0;
    SDK_SLOTS_4(ICustomControl, 6, 7, 8, 9)
};

class ICustButton : public ICustomControl {
public:
    SDK_SLOTS_9(ICustButton, 10, 11, 12, 13, 14, 15, 16, 17, 18)
    virtual void SetCurFlyOff(int f, BOOL notify = FALSE) = 0;
    virtual int GetCurFlyOff() = 0;
    virtual BOOL IsChecked() = 0;
    SDK_SLOTS_8(ICustButton, 22, 23, 24, 25, 26, 27, 28, 29)
    SDK_SLOTS_5(ICustButton, 30, 31, 32, 33, 34)
};

// A button of the first kind is found by its window, released by whoever asked for it.
SDK_CORE_API ICustButton* GetICustButton(HWND hCtrl);
SDK_CORE_API void ReleaseICustButton(ICustButton* pControl);

// The owner of the toolbars. Its data belongs to the host alone.
class CUIFrameMgr {
public:
    CUIFrameMgr(const CUIFrameMgr&) = delete;
    CUIFrameMgr& operator=(const CUIFrameMgr&) = delete;

    SDK_CORE_API void SetMacroButtonStates(BOOL force);
    SDK_CORE_API ICustButton* GetICustButton(int id);

protected:
    CUIFrameMgr() {}
};

SDK_CORE_API CUIFrameMgr* GetCUIFrameMgr();
