#include <max.h>

#include <actiontable.h>

#include "host/core_interface.h"
#include "host/host.h"
#include "host/sdk_text.h"

namespace host {
namespace {

constexpr int kNameSize = 64;

IActionManager* ActionManager() {
    Interface* core = Core();
    return core ? core->GetActionManager() : nullptr;
}

ActionItem* FindAction(unsigned long table_id, int action) {
    ActionTable* table = FindActionTable(table_id);
    return table ? table->GetAction(action) : nullptr;
}

}  // namespace

ActionTable* FindActionTable(unsigned long id) {
    IActionManager* manager = ActionManager();
    return manager ? manager->FindTable(id) : nullptr;
}

std::optional<bool> IsActionChecked(unsigned long table, int action) {
    ActionItem* item = FindAction(table, action);
    return item ? std::optional<bool>(item->IsChecked() != FALSE) : std::nullopt;
}

std::optional<bool> IsActionEnabled(unsigned long table, int action) {
    ActionItem* item = FindAction(table, action);
    return item ? std::optional<bool>(item->IsEnabled() != FALSE) : std::nullopt;
}

bool ExecuteAction(unsigned long table, int action) {
    ActionItem* item = FindAction(table, action);
    return item && item->ExecuteAction();
}

void SetActionChecked(unsigned long table, int action, bool checked) {
    ActionItem* item = FindAction(table, action);
    if (item && (item->IsChecked() != FALSE) != checked) item->ExecuteAction();
}

void RegisterActionContext(unsigned long id, const char* name) {
    IActionManager* manager = ActionManager();
    if (!manager) return;
    MCHAR text[kNameSize];  // the SDK of 2012 takes a writable text
    CopyTextForHost(text, kNameSize, name);
    manager->RegisterActionContext(id, text);
}

void ActivateActionCallback(ActionCallback* callback, unsigned long table) {
    if (IActionManager* manager = ActionManager()) manager->ActivateActionTable(callback, table);
}

}  // namespace host
