// What the sources of this folder share among themselves.
#pragma once

class GUP;
class Interface;

namespace host {

// The host's core interface; null is possible only outside a running host.
Interface* Core();

// Has MAXScript evaluate a text for the utility object. The text is not changed.
void ExecuteScript(GUP& utility, char* text);

}  // namespace host
