#include <max.h>

#include "host/core_interface.h"
#include "host/host.h"

namespace host {

HWND Viewport::Window() const {
    return view_ ? view_->GetHWnd() : nullptr;
}

bool Viewport::IsPerspective() const {
    return view_ && view_->IsPerspView();
}

bool Viewport::IsUserView() const {
    return view_ && view_->GetViewType() == VIEW_ISO_USER;
}

bool Viewport::IsLocked() const {
    // The host has no question of this name. A view through a spot light is the one kind of view
    // that the standard zoom and pan modes have no counterpart for; dragging it would move the
    // light.
    return view_ && view_->GetViewSpot() != nullptr;
}

void SetActiveViewport(HWND window) {
    if (Interface* core = Core()) core->SetActiveViewport(window);
}

}  // namespace host
