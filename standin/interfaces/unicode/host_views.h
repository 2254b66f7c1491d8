// Viewports as hosts from 2013 on hand them out: references that stay the host's.
#pragma once

#include "standin/interfaces/published.h"

#include <maxapi.h>

class ViewObject : public ViewExp {
public:
    bool IsAlive() override { return true; }
    ViewExp* ToPointer() override { return this; }
#if SDK_GENERATION >= 2018
    BOOL IsCanvasNavigationMode() override { return Unexpected("IsCanvasNavigationMode"); }
#endif
};

// Stands where there is no viewport. Only whether it is alive may be asked.
class NoView final : public ViewExp {
public:
    bool IsAlive() override { return false; }
    ViewExp* ToPointer() override { return Unexpected("ToPointer"); }
#if SDK_GENERATION >= 2018
    BOOL IsCanvasNavigationMode() override { return Unexpected("IsCanvasNavigationMode"); }
#endif
    int GetViewType() override { return Unexpected("GetViewType"); }
    BOOL IsPerspView() override { return Unexpected("IsPerspView"); }
    INode* GetViewCamera() override { return Unexpected("GetViewCamera"); }
    INode* GetViewSpot() override { return Unexpected("GetViewSpot"); }
    HWND GetHWnd() override { return Unexpected("GetHWnd"); }
    BOOL IsActive() override { return Unexpected("IsActive"); }
    BOOL IsEnabled() override { return Unexpected("IsEnabled"); }
};

template <class View>
class WithViewports : public Published<Interface> {
public:
    HWND GetMAXHWnd() const override { return eng_main_window(); }
#if SDK_GENERATION >= 2018
    MaxSDK::QmaxMainWindow* GetQmaxMainWindow() const override {
        return Unexpected("GetQmaxMainWindow");
    }
#endif
    ViewExp& GetActiveViewExp() override { return Lent(eng_active_viewport()); }
    ViewExp& GetViewExp(HWND window) override { return Lent(eng_viewport_of(window)); }

private:
    // The engine counts what it lends; of a reference nothing comes back, so the loan ends here.
    static ViewExp& Lent(eng_view* handle) {
        static NoView none;
        if (handle == nullptr) return none;
        eng_release_viewport(handle);
        return *ObjectOf<View>(handle);
    }
};
