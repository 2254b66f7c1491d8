// What the sources of this folder share among themselves.
#pragma once

class Interface;

namespace host {

// The host's core interface; null is possible only outside a running host.
Interface* Core();

}  // namespace host
