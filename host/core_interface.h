// What the sources of this folder share among themselves.
#pragma once

#include <optional>

class ActionTable;
class GUP;
class Interface;

namespace host {

// The host's core interface; null is possible only outside a running host.
Interface* Core();

// The host's action table of this id, null when there is none.
ActionTable* FindActionTable(unsigned long id);

// Whether an action can be run now; empty when the host has no such action.
std::optional<bool> IsActionEnabled(unsigned long table, int action);

// Has MAXScript evaluate a text for the utility object. The text is not changed.
void ExecuteScript(GUP& utility, char* text);

}  // namespace host
