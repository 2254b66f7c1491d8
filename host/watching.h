// What a recording of the session needs of the host.
#pragma once

class ActionCallback;
class INode;

namespace host {

// Whether the object has exactly this name.
bool IsNodeNamed(INode* node, const char* name);

// Who carries out the actions of a table; null when there is no such table, or nobody does.
ActionCallback* CallbackOfTable(unsigned long table);
void SetCallbackOfTable(unsigned long table, ActionCallback* callback);

}  // namespace host
