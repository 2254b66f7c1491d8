// Viewports as hosts up to 2012 hand them out: pointers that the caller gives back.
#pragma once

#include "standin/interfaces/published.h"

#include <maxapi.h>

using ViewObject = ViewExp;

template <class View>
class WithViewports : public Published<Interface> {
public:
    HWND GetMAXHWnd() override { return eng_main_window(); }
    ViewExp* GetActiveViewport() override { return ObjectOf<View>(eng_active_viewport()); }
    ViewExp* GetViewport(HWND window) override { return ObjectOf<View>(eng_viewport_of(window)); }
    void ReleaseViewport(ViewExp* view) override { eng_release_viewport(HandleOf<View>(view)); }
};
