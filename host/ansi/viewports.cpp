// Viewports of hosts up to 2012: pointers, each given back by whoever asked for it.

#include <max.h>

#include "host/core_interface.h"
#include "host/host.h"

namespace host {

Viewport Viewport::OfWindow(HWND window) {
    Interface* core = Core();
    return Viewport(core ? core->GetViewport(window) : nullptr);
}

Viewport Viewport::Active() {
    Interface* core = Core();
    return Viewport(core ? core->GetActiveViewport() : nullptr);
}

Viewport::~Viewport() {
    // What the host does with null here is not documented, so it never sees one.
    if (view_) Core()->ReleaseViewport(view_);
}

}  // namespace host
