#pragma once

#include <Noncopyable.h>
#include <ifnpub.h>
#include <strclass.h>

#include <cstring>

class ActionCallback;
class ActionItem;
class IMenu;
class IPoint2;
class MaxIcon;

typedef DWORD ActionTableId;
typedef DWORD ActionContextId;

const ActionTableId kActionMainUI = 0;
const ActionTableId kActionTrackView = 1;
const ActionTableId kActionMaterialEditor = 2;
const ActionTableId kActionVideoPost = 3;
const ActionTableId kActionSchematicView = 5;
const ActionTableId kActionCommonIReshade = 6;
const ActionTableId kActionScanlineIReshade = 7;

// One action of a table; the texts are string resources of the module that the table is given.
struct ActionDescription {
    int mCmdID;
    int mDescriptionResourceID;
    int mShortNameResourceID;
    int mCategoryResourceID;
};

// An action in the host's own shape; only called.
class ActionItem : public FPMixinInterface {
public:
    virtual int GetId() = 0;
    virtual BOOL ExecuteAction() = 0;
    SDK_SLOTS_2(ActionItem, 28, 29)
    SDK_SLOTS_3(ActionItem, 30, 31, 32)
    virtual BOOL IsChecked() = 0;
    virtual BOOL IsItemVisible() = 0;
    virtual BOOL IsEnabled() = 0;
    SDK_SLOTS_4(ActionItem, 36, 37, 38, 39)
    SDK_SLOTS_5(ActionItem, 40, 41, 42, 43, 44)
};

// The plug-in's side of a table of actions: what runs when the user invokes one.
class ActionCallback : public BaseInterfaceServer {
public:
    SDK_CORE_API ActionCallback();
    SDK_CORE_API ~ActionCallback() override;
    ActionCallback(const ActionCallback&) = delete;
    ActionCallback& operator=(const ActionCallback&) = delete;

    virtual BOOL ExecuteAction(int id) = 0;
    SDK_CORE_API virtual IMenu* GetDynamicMenu(int id, HWND window, IPoint2& point);

    ActionTable* GetTable() { return mpTable; }
    void SetTable(ActionTable* table) { mpTable = table; }

private:
    ActionTable* mpTable;
};

// A table of actions. The plug-in derives from it, so every slot is named.
class ActionTable : public FPMixinInterface, public Noncopyable {
public:
    SDK_CORE_API ActionTable(ActionTableId id, ActionContextId contextId, MSTR& name,
                             HACCEL hDefaults, int numIds, ActionDescription* pOps,
                             HINSTANCE hInst);
    SDK_CORE_API ~ActionTable() override;
    ActionTable(const ActionTable&) = delete;
    ActionTable& operator=(const ActionTable&) = delete;

    SDK_CORE_API BaseInterface* GetInterface(Interface_ID id) override;
    SDK_CORE_API Interface_ID GetID() override;
    FPStatus _dispatch_fn(FunctionID function, TimeValue, FPValue& result,
                          FPParams* parameters) override {
        switch (function) {
            case kGetId: return Answer(result, TYPE_DWORD, GetId());
            // The text itself, which lasts as long as this table: nobody would end a copy.
            case kGetName: return Answer(result, TYPE_STRING, GetName().data());
            case kGetContextId: return Answer(result, TYPE_DWORD, GetContextId());
            case kGetContextName: return Answer(result, TYPE_STRING, fpGetContextName());
            case kGetCount: return Answer(result, TYPE_INT, Count());
            case kGetActionByIndex:
                return Answer(result, TYPE_INTERFACE, GetActionByIndex(parameters->params[0].i));
            default: return FPS_NO_SUCH_FUNCTION;
        }
    }
    SDK_CORE_API FPInterfaceDesc* GetDesc() override;
    SDK_CORE_API FPInterfaceDesc* GetDescByID(Interface_ID id) override;
    SDK_CORE_API const MCHAR* fpGetContextName() const;
    SDK_CORE_API virtual HACCEL GetHAccel();
    SDK_CORE_API virtual void SetHAccel(HACCEL accelerators);
    SDK_CORE_API virtual HACCEL GetDefaultHAccel();
    SDK_CORE_API virtual void SetDefaultHAccel(HACCEL accelerators);
    SDK_CORE_API virtual MSTR& GetName();
    SDK_CORE_API virtual ActionTableId GetId();
    SDK_CORE_API virtual ActionContextId GetContextId();
    SDK_CORE_API virtual ActionCallback* GetCallback();
    SDK_CORE_API virtual void SetCallback(ActionCallback* callback);
    SDK_CORE_API virtual int Count();
    SDK_CORE_API virtual ActionItem* operator[](int index);
    SDK_CORE_API virtual ActionItem* GetAction(int cmdId);
    SDK_CORE_API virtual ActionItem* GetActionByIndex(int index);
    SDK_CORE_API virtual void AppendOperation(ActionItem* item);
    SDK_CORE_API virtual BOOL DeleteOperation(ActionItem* item);
    SDK_CORE_API virtual void DeleteThis();
    SDK_CORE_API virtual BOOL GetButtonText(int cmdId, MSTR& buttonText);
    SDK_CORE_API virtual BOOL GetMenuText(int cmdId, MSTR& menuText);
    SDK_CORE_API virtual BOOL GetDescriptionText(int cmdId, MSTR& descText);
    using FPInterface::IsChecked;
    virtual BOOL IsChecked(int) { return FALSE; }
    SDK_CORE_API virtual BOOL IsItemVisible(int cmdId);
    using FPInterface::IsEnabled;
    SDK_CORE_API virtual BOOL IsEnabled(int cmdId);
    SDK_CORE_API virtual void WritePersistentActionId(int cmdId, MSTR& idString);
    SDK_CORE_API virtual int ReadPersistentActionId(MSTR& idString);
    SDK_CORE_API virtual MaxIcon* GetIcon(int cmdId);
    SDK_CORE_API virtual ActionItem* GetCurrentAssignment(ACCEL accelerator);
    SDK_CORE_API virtual void AssignKey(int cmdId, ACCEL accelerator);
    SDK_CORE_API virtual void RemoveShortcutFromTable(ACCEL accelerator);

private:
    // What a script may call by number.
    enum : FunctionID {
        kGetId,
        kGetName,
        kGetContextId,
        kGetContextName,
        kGetCount,
        kGetActionByIndex,
    };

    // Values go to the host in places of 8 bytes each.
    template <class T>
    static FPStatus Answer(FPValue& result, ParamType2 type, T value) {
        ULONG_PTR place = 0;
        static_assert(sizeof(value) <= sizeof(place));
        std::memcpy(&place, &value, sizeof(value));
        result.Loadva(type, reinterpret_cast<char*>(&place), true);
        return FPS_OK;
    }

    // Owned and used by the host alone.
    Tab<ActionItem*> mOps;
    ActionTableId mId;
    ActionContextId mContextId;
    MSTR mName;
    HACCEL mhDefaultAccels;
    HACCEL mhAccel;
    ActionCallback* mpCallback;
};

class IActionManager : public FPStaticInterface {
public:
    SDK_SLOTS_3(IActionManager, 28, 29, 30)
    virtual int ActivateActionTable(ActionCallback* pCallback, ActionTableId id) = 0;
    virtual int DeactivateActionTable(ActionCallback* pCallback, ActionTableId id) = 0;
    virtual ActionTable* FindTable(ActionTableId id) = 0;
    SDK_SLOTS_2(IActionManager, 34, 35)
    virtual BOOL RegisterActionContext(ActionContextId contextId,
                                       SDK_CONST_FROM_2013 MCHAR* pName) = 0;
    SDK_SLOTS_3(IActionManager, 37, 38, 39)
    SDK_TEN_SLOTS(IActionManager, 4)
    SDK_SLOTS_2(IActionManager, 50, 51)
};
