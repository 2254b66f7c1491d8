// core.dll: tables of actions, the action manager, icons.

#include "standin/interfaces/action_objects.h"
#include "standin/interfaces/core_objects.h"

#include "host_text.h"

#include <gup.h>
#include <maxicon.h>

#include <cstdlib>
#include <string>

namespace {

void AssignText(MSTR& target, const char* text) {
    target.~MSTR();
    ::new (&target) MSTR(Wide(text));
}

// ---- an action of the plug-in's own table
// --------------------------------------------------------

std::string TextResource(HINSTANCE module, int id) {
    char text[256];
    const int length = LoadStringA(module, static_cast<UINT>(id), text, sizeof(text));
    return std::string(text, static_cast<std::size_t>(length));
}

class PluginActionItem final : public HostActionItem {
public:
    PluginActionItem(ActionTable* table, const ActionDescription& action, HINSTANCE module)
        : m_table(table),
          m_id(action.mCmdID),
          m_name(TextResource(module, action.mShortNameResourceID)),
          m_description(TextResource(module, action.mDescriptionResourceID)),
          m_category(TextResource(module, action.mCategoryResourceID)) {}

    const char* Name() const { return m_name.c_str(); }
    const char* Description() const { return m_description.c_str(); }
    const char* Category() const { return m_category.c_str(); }

    ActionTableId TableId() const override { return m_table->GetId(); }
    int GetId() override { return m_id; }
    BOOL ExecuteAction() override { return eng_plugin_action_execute(m_table->GetId(), m_id); }
    BOOL IsChecked() override { return m_table->IsChecked(m_id); }
    BOOL IsItemVisible() override { return m_table->IsItemVisible(m_id); }
    BOOL IsEnabled() override { return m_table->IsEnabled(m_id); }

private:
    ActionTable* m_table;
    int m_id;
    std::string m_name;
    std::string m_description;
    std::string m_category;
};

PluginActionItem* PluginItem(ActionTable* table, int id) {
    return static_cast<PluginActionItem*>(table->GetAction(id));
}

// ---- the host's own tables
// -----------------------------------------------------------------------

class BuiltInActionItem final : public HostActionItem {
public:
    BuiltInActionItem(eng_action* handle, ActionTableId table) : m_handle(handle), m_table(table) {}

    ActionTableId TableId() const override { return m_table; }
    int GetId() override { return eng_action_id(m_handle); }
    BOOL ExecuteAction() override { return eng_action_execute(m_handle); }
    BOOL IsChecked() override { return eng_action_is_checked(m_handle); }
    BOOL IsItemVisible() override { return TRUE; }
    BOOL IsEnabled() override { return eng_action_is_enabled(m_handle); }

private:
    eng_action* m_handle;
    ActionTableId m_table;
};

MSTR g_nameOfBuiltInTables(_M("Host actions"));

class BuiltInActionTable final : public ActionTable {
public:
    BuiltInActionTable(eng_table* handle, ActionTableId id)
        : ActionTable(id, id, g_nameOfBuiltInTables, nullptr, 0, nullptr, nullptr),
          m_handle(handle) {}

    ActionItem* GetAction(int id) override {
        return ObjectOf<BuiltInActionItem>(eng_table_action(m_handle, id), GetId());
    }

private:
    eng_table* m_handle;
};

// ---- the action manager
// --------------------------------------------------------------------------

class HostManagerOfActions final : public Published<IActionManager> {
public:
    int ActivateActionTable(ActionCallback* callback, ActionTableId id) override {
        const int activated = eng_activate_table(callback, id);
        if (activated != 0) {
            if (ActionTable* table = static_cast<ActionTable*>(eng_plugin_table(id))) {
                table->SetCallback(callback);
                if (callback) callback->SetTable(table);
            }
        }
        return activated;
    }
    int DeactivateActionTable(ActionCallback* callback, ActionTableId id) override {
        return eng_deactivate_table(callback, id);
    }
    ActionTable* FindTable(ActionTableId id) override {
        if (void* table = eng_plugin_table(id)) return static_cast<ActionTable*>(table);
        return ObjectOf<BuiltInActionTable>(eng_find_table(id), id);
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

// ---- ActionCallback
// ------------------------------------------------------------------------------

ActionCallback::ActionCallback() : mpTable(nullptr) {}
ActionCallback::~ActionCallback() = default;
IMenu* ActionCallback::GetDynamicMenu(int, HWND, IPoint2&) {
    return nullptr;
}

// ---- ActionTable
// ---------------------------------------------------------------------------------

ActionTable::ActionTable(ActionTableId id, ActionContextId contextId, MSTR& name, HACCEL hDefaults,
                         int numIds, ActionDescription* pOps, HINSTANCE hInst)
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

BaseInterface* ActionTable::GetInterface(Interface_ID id) {
    return id == GetID() ? this : FPMixinInterface::GetInterface(id);
}
Interface_ID ActionTable::GetID() {
    return Interface_ID(mId, mContextId);
}
FPInterfaceDesc* ActionTable::GetDesc() {
    return nullptr;
}
FPInterfaceDesc* ActionTable::GetDescByID(Interface_ID) {
    return nullptr;
}
const MCHAR* ActionTable::fpGetContextName() const {
    return mName.data();
}

HACCEL ActionTable::GetHAccel() {
    return mhAccel;
}
void ActionTable::SetHAccel(HACCEL accelerators) {
    mhAccel = accelerators;
}
HACCEL ActionTable::GetDefaultHAccel() {
    return mhDefaultAccels;
}
void ActionTable::SetDefaultHAccel(HACCEL accelerators) {
    mhDefaultAccels = accelerators;
}
MSTR& ActionTable::GetName() {
    return mName;
}
ActionTableId ActionTable::GetId() {
    return mId;
}
ActionContextId ActionTable::GetContextId() {
    return mContextId;
}
ActionCallback* ActionTable::GetCallback() {
    return mpCallback;
}
void ActionTable::SetCallback(ActionCallback* callback) {
    mpCallback = callback;
}

int ActionTable::Count() {
    return mOps.Count();
}
ActionItem* ActionTable::operator[](int index) {
    return mOps[index];
}
ActionItem* ActionTable::GetAction(int cmdId) {
    for (int index = 0; index < mOps.Count(); ++index) {
        if (mOps[index]->GetId() == cmdId) return mOps[index];
    }
    return nullptr;
}
ActionItem* ActionTable::GetActionByIndex(int index) {
    return index >= 0 && index < mOps.Count() ? mOps[index] : nullptr;
}
void ActionTable::AppendOperation(ActionItem* item) {
    mOps.Append(1, &item);
}
BOOL ActionTable::DeleteOperation(ActionItem* item) {
    for (int index = 0; index < mOps.Count(); ++index) {
        if (mOps[index] == item) {
            mOps.Delete(index, 1);
            return TRUE;
        }
    }
    return FALSE;
}
void ActionTable::DeleteThis() {
    delete this;
}

BOOL ActionTable::GetButtonText(int cmdId, MSTR& buttonText) {
    PluginActionItem* item = PluginItem(this, cmdId);
    if (item != nullptr) AssignText(buttonText, item->Name());
    return item != nullptr;
}
BOOL ActionTable::GetMenuText(int cmdId, MSTR& menuText) {
    return GetButtonText(cmdId, menuText);
}
BOOL ActionTable::GetDescriptionText(int cmdId, MSTR& descText) {
    PluginActionItem* item = PluginItem(this, cmdId);
    if (item != nullptr) AssignText(descText, item->Description());
    return item != nullptr;
}
BOOL ActionTable::IsItemVisible(int) {
    return TRUE;
}
BOOL ActionTable::IsEnabled(int) {
    return TRUE;
}

void ActionTable::WritePersistentActionId(int cmdId, MSTR& idString) {
    AssignText(idString, std::to_string(cmdId).c_str());
}
int ActionTable::ReadPersistentActionId(MSTR& idString) {
    char* end = nullptr;
    const auto narrow = Narrow(idString.data());
    const char* const text = narrow;
    const long id = std::strtol(text, &end, 10);
    return end == text || *end != '\0' ? -1 : static_cast<int>(id);
}
MaxIcon* ActionTable::GetIcon(int) {
    return nullptr;
}

ActionItem* ActionTable::GetCurrentAssignment(ACCEL) {
    return nullptr;
}
void ActionTable::AssignKey(int, ACCEL) {
    eng_unexpected("ActionTable::AssignKey");
}
void ActionTable::RemoveShortcutFromTable(ACCEL) {
    eng_unexpected("ActionTable::RemoveShortcutFromTable");
}

// ---- icons
// ---------------------------------------------------------------------------------------

MaxBmpFileIcon::MaxBmpFileIcon(const MCHAR* pFilePrefix, int index)
    : mIndex(index), mFilePrefix(pFilePrefix), mIsStandard(false) {}

// ---- from the host into the plug-in
// --------------------------------------------------------------

namespace {

ClassDesc* Descriptor(void* desc) {
    return static_cast<ClassDesc*>(desc);
}
ActionTable* Table(void* table) {
    return static_cast<ActionTable*>(table);
}

void* Create(void* desc) {
    return Descriptor(desc)->Create(FALSE);
}
const char* ClassNameOf(void* desc) {
    static char name[64];
    const MCHAR* answer = Descriptor(desc)->ClassName();
    if (answer == nullptr) return nullptr;
    lstrcpynA(name, Narrow(answer), static_cast<int>(sizeof(name)));
    return name;
}
unsigned long SuperClass(void* desc) {
    return Descriptor(desc)->SuperClassID();
}
int TableCount(void* desc) {
    return Descriptor(desc)->NumActionTables();
}
void* TableAt(void* desc, int index) {
    return Descriptor(desc)->GetActionTable(index);
}

unsigned long TableIdOf(void* table) {
    return Table(table)->GetId();
}
int ActionCount(void* table) {
    return Table(table)->Count();
}
int ActionIdAt(void* table, int index) {
    return (*Table(table))[index]->GetId();
}
int ActionChecked(void* table, int id) {
    return Table(table)->IsChecked(id);
}
int ActionVisible(void* table, int id) {
    return Table(table)->IsItemVisible(id);
}
int ActionEnabled(void* table, int id) {
    return Table(table)->IsEnabled(id);
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

int ActionText(void* table, int id, int what, char* text, int size) {
    MSTR answer(_M(""));
    BOOL known = FALSE;
    switch (what) {
        case 0: known = Table(table)->GetButtonText(id, answer); break;
        case 1: known = Table(table)->GetMenuText(id, answer); break;
        case 2: known = Table(table)->GetDescriptionText(id, answer); break;
        case 3:
            if (const PluginActionItem* item = PluginItem(Table(table), id)) {
                AssignText(answer, item->Category());
                known = TRUE;
            }
            break;
        case 4:
            if (MaxIcon* icon = Table(table)->GetIcon(id)) {
                AssignText(answer, Narrow(IconReader::File(icon).data()));
                known = TRUE;
            }
            break;
        default: break;
    }
    if (!known || size <= 0) return 0;
    lstrcpynA(text, Narrow(answer.data()), size);
    return 1;
}

unsigned long Start(void* gup) {
    return static_cast<GUP*>(gup)->Start();
}
void Stop(void* gup) {
    static_cast<GUP*>(gup)->Stop();
}

int ExecuteAction(void* callback, int id) {
    return static_cast<ActionCallback*>(callback)->ExecuteAction(id);
}
void ModeChanged(void* callback, eng_mode* oldMode, eng_mode* newMode) {
    static_cast<CommandModeChangedCallback*>(callback)->ModeChanged(ModeObject(oldMode),
                                                                    ModeObject(newMode));
}

const eng_plugin_calls kPluginCalls = {
    .create = Create,
    .class_name = ClassNameOf,
    .super_class_id = SuperClass,
    .table_count = TableCount,
    .table = TableAt,
    .gup_start = Start,
    .gup_stop = Stop,
    .action_table_id = TableIdOf,
    .action_count = ActionCount,
    .action_id = ActionIdAt,
    .action_checked = ActionChecked,
    .action_visible = ActionVisible,
    .action_enabled = ActionEnabled,
    .action_icon = ActionIcon,
    .action_text = ActionText,
    .execute_action = ExecuteAction,
    .mode_changed = ModeChanged,
};
const bool g_registered = (eng_register_plugin_calls(&kPluginCalls), true);

}  // namespace
