// Viewports of hosts from 2013 on: references that stay the host's. Where there is no viewport, the
// reference leads to one that is not alive.

#include <max.h>

#include "host/core_interface.h"
#include "host/host.h"

namespace host {
namespace {

ViewExp* Alive(ViewExp& view) {
    return view.IsAlive() ? view.ToPointer() : nullptr;
}

}  // namespace

Viewport Viewport::OfWindow(HWND window) {
    Interface* core = Core();
    return Viewport(core ? Alive(core->GetViewExp(window)) : nullptr);
}

Viewport Viewport::Active() {
    Interface* core = Core();
    return Viewport(core ? Alive(core->GetActiveViewExp()) : nullptr);
}

// There is nothing to give back.
Viewport::~Viewport() = default;

}  // namespace host
