// core.dll: tables of actions, the action manager, icons.

#include "standin/interfaces/action_objects.h"
#include "standin/interfaces/core_objects.h"

#include "host_text.h"

#include <gup.h>
#include <maxicon.h>

#include <cstdlib>
#include <string>

namespace {

BOOL Assign(MSTR& target, const char* text) {
    target.~MSTR();
    ::new (&target) MSTR(Wide(text));
    return TRUE;
}

// --- an action of the plug-in's own table ---

std::string TextResource(HINSTANCE module, int id) {
    char text[256];
    const int length = LoadStringA(module, static_cast<UINT>(id), text, sizeof(text));
    return std::string(text, static_cast<std::size_t>(length));
}

class PluginActionItem final : public HostActionItem {
public:
    PluginActionItem(ActionTable* table, const ActionDescription& action, HINSTANCE module)
        : name(TextResource(module, action.mShortNameResourceID)),
          description(TextResource(module, action.mDescriptionResourceID)),
          category(TextResource(module, action.mCategoryResourceID)),
          m_table(table),
          m_id(action.mCmdID) {}

    const std::string name, description, category;

    ActionTableId TableId() const override { return m_table->GetId(); }
    int GetId() override { return m_id; }
    BOOL ExecuteAction() override { return eng_plugin_action_execute(TableId(), m_id); }
    BOOL IsChecked() override { return m_table->IsChecked(m_id); }
    BOOL IsItemVisible() override { return m_table->IsItemVisible(m_id); }
    BOOL IsEnabled() override { return m_table->IsEnabled(m_id); }

private:
    ActionTable* m_table;
    int m_id;
};

BOOL AssignOf(ActionTable* table, int id, const std::string PluginActionItem::* text,
              MSTR& target) {
    ActionItem* item = table->GetAction(id);
    return item && Assign(target, (static_cast<PluginActionItem*>(item)->*text).c_str());
}

// --- the host's own tables ---

class BuiltInActionItem final : public StandsFor<HostActionItem, eng_action> {
public:
    using StandsFor::StandsFor;
    ActionTableId TableId() const override { return eng_action_table(m_handle); }
    int GetId() override { return eng_action_id(m_handle); }
    BOOL ExecuteAction() override { return eng_action_execute(m_handle); }
    BOOL IsChecked() override { return eng_action_is_checked(m_handle); }
    BOOL IsItemVisible() override { return TRUE; }
    BOOL IsEnabled() override { return eng_action_is_enabled(m_handle); }
};

MSTR g_nameOfBuiltInTables(_M("Host actions"));

class BuiltInActionTable final : public ActionTable {
public:
    explicit BuiltInActionTable(eng_table* handle)
        : ActionTable(eng_table_id(handle), eng_table_id(handle), g_nameOfBuiltInTables, nullptr, 0,
                      nullptr, nullptr),
          m_handle(handle) {}

    ActionItem* GetAction(int id) override {
        return ObjectOf<BuiltInActionItem>(eng_table_action(m_handle, id));
    }
    BOOL IsItemVisible(int) override { return TRUE; }
    BOOL IsEnabled(int) override { return TRUE; }
    MaxIcon* GetIcon(int) override { return nullptr; }
    BOOL GetMenuText(int id, MSTR& text) override {
        const char* const name = eng_action_name(m_handle, id);
        return name && Assign(text, name);
    }

private:
    eng_table* m_handle;
};

// --- the action manager ---

class HostManagerOfActions final : public Published<IActionManager> {
public:
    int ActivateActionTable(ActionCallback* callback, ActionTableId id) override {
        const int activated = eng_activate_table(callback, id);
        auto* const table = static_cast<ActionTable*>(eng_plugin_table(id));
        if (table) {
            table->SetCallback(callback);
            if (callback) callback->SetTable(table);
        }
        return activated;
    }
    int DeactivateActionTable(ActionCallback*, ActionTableId) override {
        return Unexpected("DeactivateActionTable");
    }
    ActionTable* FindTable(ActionTableId id) override {
        if (void* table = eng_plugin_table(id)) return static_cast<ActionTable*>(table);
        return ObjectOf<BuiltInActionTable>(eng_find_table(id));
    }
    BOOL RegisterActionContext(ActionContextId id, GivenText name) override {
        return eng_register_context(id, Narrow(name));
    }
};
HostManagerOfActions g_actionManager;

}  // namespace

IActionManager* HostActionManager() {
    return &g_actionManager;
}

// --- ActionCallback, ActionTable, icons ---

#if SDK_GENERATION >= 2024
using TableName = const MSTR;
#else
using TableName = MSTR;
#endif
#if SDK_GENERATION >= 2026
using Description = const ActionDescription;
#else
using Description = ActionDescription;
#endif
ActionTable::ActionTable(ActionTableId id, ActionContextId contextId, TableName& name,
                         HACCEL hDefaults, int numIds, Description* pOps, HINSTANCE hInst)
    : mId(id),
      mContextId(contextId),
      mName(name),
      mhDefaultAccels(hDefaults),
      mhAccel(hDefaults),
      mpCallback(nullptr) {
    for (int index = 0; index < numIds; ++index) {
        ActionItem* item = new PluginActionItem(this, pOps[index], hInst);
        mOps.Append(1, &item, numIds);
    }
}

ActionTable::~ActionTable() {
    for (int index = 0; index < mOps.Count(); ++index)
        delete mOps[index];
    delete callbacks;
}

ActionItem* ActionTable::GetAction(int cmdId) {
    for (int index = 0; index < mOps.Count(); ++index) {
        if (mOps[index]->GetId() == cmdId) return mOps[index];
    }
    return nullptr;
}

int ActionTable::ReadPersistentActionId(TableName& idString) {
    char* end = nullptr;
    const auto narrow = Narrow(idString.data());
    const char* const text = narrow;
    const long id = std::strtol(text, &end, 10);
    return end == text || *end != '\0' ? -1 : static_cast<int>(id);
}

// clang-format off
ActionCallback::ActionCallback() : mpTable(nullptr) {}
ActionCallback::~ActionCallback() = default;
#if SDK_GENERATION >= 2026
void ActionCallback::PopulateDynamicMenu(MaxSDK::CUI::ICuiDynamicMenu*, int, HWND, const IPoint2&) {}
void ActionCallback::DynamicMenuItemSelected(int, int) {}
#else
IMenu* ActionCallback::GetDynamicMenu(int, HWND, IPoint2&) { return nullptr; }
#endif

BaseInterface* ActionTable::GetInterface(Interface_ID id) { return id == GetID() ? this : nullptr; }
Interface_ID ActionTable::GetID() { return Interface_ID(mId, mContextId); }
FPInterfaceDesc* ActionTable::GetDesc() { return nullptr; }
FPInterfaceDesc* ActionTable::GetDescByID(Interface_ID) { return nullptr; }
const MCHAR* ActionTable::fpGetContextName() const { return mName.data(); }
HACCEL ActionTable::GetHAccel() { return mhAccel; }
void ActionTable::SetHAccel(HACCEL accelerators) { mhAccel = accelerators; }
HACCEL ActionTable::GetDefaultHAccel() { return mhDefaultAccels; }
void ActionTable::SetDefaultHAccel(HACCEL accelerators) { mhDefaultAccels = accelerators; }
MSTR& ActionTable::GetName() { return mName; }
ActionTableId ActionTable::GetId() { return mId; }
ActionContextId ActionTable::GetContextId() { return mContextId; }
ActionCallback* ActionTable::GetCallback() { return mpCallback; }
void ActionTable::SetCallback(ActionCallback* callback) { mpCallback = callback; }
int ActionTable::Count() { return mOps.Count(); }
ActionItem* ActionTable::operator[](int index) { return mOps[index]; }
ActionItem* ActionTable::GetActionByIndex(int index) { return EntryAt(mOps, index); }
void ActionTable::AppendOperation(ActionItem*) { Unexpected("ActionTable::AppendOperation"); }
BOOL ActionTable::DeleteOperation(ActionItem*) { return Unexpected("ActionTable::DeleteOperation"); }
void ActionTable::DeleteThis() { delete this; }
BOOL ActionTable::GetMenuText(int cmdId, MSTR& menuText) { return GetButtonText(cmdId, menuText); }
#if SDK_GENERATION >= 2016
BOOL ActionTable::IsIndeterminate(int) { return FALSE; }
#else
BOOL ActionTable::IsItemVisible(int) { return TRUE; }
BOOL ActionTable::IsEnabled(int) { return TRUE; }
MaxIcon* ActionTable::GetIcon(int) { return nullptr; }
#endif
ActionItem* ActionTable::GetCurrentAssignment(ACCEL) { return nullptr; }
void ActionTable::AssignKey(int, ACCEL) { Unexpected("ActionTable::AssignKey"); }
void ActionTable::RemoveShortcutFromTable(ACCEL) { Unexpected("RemoveShortcutFromTable"); }
// clang-format on

BOOL ActionTable::GetButtonText(int cmdId, MSTR& buttonText) {
    return AssignOf(this, cmdId, &PluginActionItem::name, buttonText);
}
BOOL ActionTable::GetDescriptionText(int cmdId, MSTR& descText) {
    return AssignOf(this, cmdId, &PluginActionItem::description, descText);
}
void ActionTable::WritePersistentActionId(int cmdId, MSTR& idString) {
    Assign(idString, std::to_string(cmdId).c_str());
}

MaxBmpFileIcon::MaxBmpFileIcon(const MCHAR* pFilePrefix, int index)
    : mIndex(index), mFilePrefix(pFilePrefix), mIsStandard(false) {}

// --- from the host into the plug-in ---

namespace {

ClassDesc* Descriptor(void* desc) {
    return static_cast<ClassDesc*>(desc);
}
ActionTable* Table(void* table) {
    return static_cast<ActionTable*>(table);
}
ActionCallback* Callback(void* callback) {
    return static_cast<ActionCallback*>(callback);
}

// Reads what only derived classes may.
class IconReader : public MaxBmpFileIcon {
public:
    static int Index(MaxIcon* icon) { return static_cast<IconReader*>(icon)->mIndex; }
    static MSTR& File(MaxIcon* icon) { return static_cast<IconReader*>(icon)->mFilePrefix; }
};
int ActionIcon(void* table, int id) {
    MaxIcon* icon = Table(table)->GetIcon(id);
    return icon == nullptr ? -1 : IconReader::Index(icon);
}

BOOL TextOf(ActionTable* table, int id, int what, MSTR& answer) {
    MaxIcon* const icon = what == 4 ? table->GetIcon(id) : nullptr;
    switch (what) {
        case 0: return table->GetButtonText(id, answer);
        case 1: return table->GetMenuText(id, answer);
        case 2: return table->GetDescriptionText(id, answer);
        case 3: return AssignOf(table, id, &PluginActionItem::category, answer);
        default: return icon && Assign(answer, Narrow(IconReader::File(icon).data()));
    }
}
int ActionText(void* table, int id, int what, char* text, int size) {
    MSTR answer(_M(""));
    if (!TextOf(Table(table), id, what, answer)) return 0;
    lstrcpynA(text, Narrow(answer.data()), size);
    return 1;
}

// The one that the table has now: others may have taken the place of the one that was activated.
int ExecuteAction(void* activated, int id) {
    ActionTable* const table = Callback(activated)->GetTable();
    // Not by way of its table of functions, which is the plug-in's: the host calls its own.
    ActionCallback* const callback = table ? table->ActionTable::GetCallback() : nullptr;
    return (callback ? callback : Callback(activated))->ExecuteAction(id);
}

void ModeChanged(void* callback, eng_mode* oldMode, eng_mode* newMode) {
    static_cast<CommandModeChangedCallback*>(callback)->ModeChanged(ModeObject(oldMode),
                                                                    ModeObject(newMode));
}

// clang-format off
const eng_plugin_calls kPluginCalls = {
    .release = MAX_RELEASE,
    .create = [](void* desc) { return Descriptor(desc)->Create(FALSE); },
    .super_class_id = [](void* desc) -> unsigned long { return Descriptor(desc)->SuperClassID(); },
    .table_count = [](void* desc) { return Descriptor(desc)->NumActionTables(); },
    .table = [](void* desc, int index) -> void* { return Descriptor(desc)->GetActionTable(index); },
    .gup_start = [](void* gup) -> unsigned long { return static_cast<GUP*>(gup)->Start(); },
    .action_table_id = [](void* table) -> unsigned long { return Table(table)->GetId(); },
    .action_count = [](void* table) { return Table(table)->Count(); },
    .action_id = [](void* table, int index) { return (*Table(table))[index]->GetId(); },
    .action_checked = [](void* table, int id) -> int { return Table(table)->IsChecked(id); },
    .action_visible = [](void* table, int id) -> int { return Table(table)->IsItemVisible(id); },
    .action_enabled = [](void* table, int id) -> int { return Table(table)->IsEnabled(id); },
    .action_icon = ActionIcon,
    .action_text = ActionText,
    .execute_action = ExecuteAction,
    .mode_changed = ModeChanged,
};
// clang-format on
const bool g_registered = (eng_register_plugin_calls(&kPluginCalls), true);

}  // namespace
