#include "host/watching.h"

#include <max.h>

#include <actiontable.h>

#include "host/core_interface.h"
#include "host/sdk_text.h"

namespace host {
namespace {

ActionTable* FindTable(unsigned long table) {
    Interface* core = Core();
    IActionManager* manager = core ? core->GetActionManager() : nullptr;
    return manager ? manager->FindTable(table) : nullptr;
}

}  // namespace

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
    ActionTable* found = FindTable(table);
    return found ? found->GetCallback() : nullptr;
}

void SetCallbackOfTable(unsigned long table, ActionCallback* callback) {
    if (ActionTable* found = FindTable(table)) found->SetCallback(callback);
}

}  // namespace host
