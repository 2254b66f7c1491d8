#include "host/watching.h"

#include <max.h>

#include <actiontable.h>

#include "host/core_interface.h"
#include "host/sdk_text.h"

namespace host {

bool IsNodeNamed(INode* node, const char* name) {
    const MCHAR* text = node ? node->GetName() : nullptr;
    if (!text) return false;
    // Both are plain letters and digits where they are equal.
    while (*name != '\0' && *text == static_cast<MCHAR>(*name)) {
        ++name;
        ++text;
    }
    return *name == '\0' && *text == 0;
}

ActionCallback* CallbackOfTable(unsigned long table) {
    ActionTable* found = FindActionTable(table);
    return found ? found->GetCallback() : nullptr;
}

void SetCallbackOfTable(unsigned long table, ActionCallback* callback) {
    if (ActionTable* found = FindActionTable(table)) found->SetCallback(callback);
}

}  // namespace host
