// Viewports as hosts from 2013 on hand them out: references that stay the host's.
#pragma once

#include "standin/interfaces/published.h"

#include <maxapi.h>

class ViewObject : public ViewExp {
public:
    bool IsAlive() override { return true; }
    ViewExp* ToPointer() override { return this; }
};

// Stands where there is no viewport. Only whether it is alive may be asked.
class NoView final : public ViewExp {
public:
    bool IsAlive() override { return false; }
    ViewExp* ToPointer() override { return Asked("ToPointer", nullptr); }
    int GetViewType() override { return Asked("GetViewType", 0); }
    BOOL IsPerspView() override { return Asked("IsPerspView", FALSE); }
    INode* GetViewCamera() override { return Asked("GetViewCamera", nullptr); }
    INode* GetViewSpot() override { return Asked("GetViewSpot", nullptr); }
    HWND GetHWnd() override { return Asked("GetHWnd", nullptr); }
    BOOL IsActive() override { return Asked("IsActive", FALSE); }
    BOOL IsEnabled() override { return Asked("IsEnabled", FALSE); }

private:
    template <class Answer>
    static Answer Asked(const char* what, Answer answer) {
        eng_unexpected(what);
        return answer;
    }
};

template <class View>
class WithViewports : public Published<Interface> {
public:
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
