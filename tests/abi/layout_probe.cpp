// Names every class whose layout the host and the plug-in share, so that the compiler lays it out;
// tools/checks/check_abi.py reads the layouts from the compiler's report. A call through a pointer
// makes the compiler number the members of a class, a derived object makes it write out a whole
// table.
//
// SDK_GENERATION tells which generation's headers these are.

#include <max.h>

#include <INamedSelectionSetManager.h>
#include <INodeTab.h>
#include <gup.h>
#include <iparamb2.h>
#include <macrorec.h>
#include <maxheapdirect.h>
#include <maxicon.h>
#include <maxscript/maxscript.h>

#include <maxscript/foundation/functions.h>
#include <maxscript/util/listener.h>

void CallEachClass(Interface* host, ViewExp* view, CommandMode* mode, IActionManager* actions,
                   ActionItem* item, ICustButton* button, ICustomControl* control, INode* node,
                   MacroRecorder* recorder, INamedSelectionSetManager* sets, Value* value,
                   WindowStream* stream, ReferenceTarget* target, FPStaticInterface* single,
                   FPMixinInterface* mixin, BaseInterfaceServer* server) {
    host->GetSnapState();
    view->GetViewType();
    mode->ID();
    actions->FindTable(kActionMainUI);
    item->GetId();
    button->IsChecked();
    control->IsEnabled();
    node->Hide(TRUE);
    recorder->Enable();
    sets->GetNumNamedSelSets();
    value->to_int();
    stream->flush();
    target->NotifyDependents(FOREVER, PART_DISPLAY, REFMSG_CHANGE);
    single->EnableActions(TRUE);
    mixin->GetDescByID(Interface_ID());
    server->NumInterfaces();
}

#if __has_include(<imenuman.h>)
#include <imenuman.h>
#include <imenus.h>

void CallMenus(IMenuManager* menus, IMenu* menu, IMenuItem* item) {
    menus->UpdateMenuBar();
    menu->SetTitle(_M(""));
    menu->NumItems();
    item->ActAsSeparator();
}
#endif

#if SDK_GENERATION >= 2026 && __has_include(<CUI/ICuiMenu.h>)
#include <CUI/ICuiMenu.h>
#include <CUI/ICuiMenuManager.h>
#include <notify.h>

void CallLaterMenus(MaxSDK::CUI::ICuiMenuManager* menus, MaxSDK::CUI::ICuiMenu* menu) {
    const MaxSDK::MaxGuid id("");
    menus->GetMainMenuBar();
    menu->CreateSeparator(id, id);
    static_assert(sizeof(NotifyInfo) + sizeof(*menus) + sizeof(*menu) > 0);
}
#endif

class ProbeDescriptor : public ClassDesc2 {
public:
    int IsPublic() override { return TRUE; }
    void* Create(BOOL) override { return nullptr; }
    const MCHAR* ClassName() override { return _M(""); }
    SClass_ID SuperClassID() override { return GUP_CLASS_ID; }
    Class_ID ClassID() override { return Class_ID(1, 2); }
#if SDK_GENERATION >= 2024
    const MCHAR* NonLocalizedClassName() override { return _M(""); }
    const MCHAR* InternalName() override { return _M(""); }
#endif
    const MCHAR* Category() override { return _M(""); }
};

class ProbeUtility : public GUP {
public:
    DWORD Start() override { return GUPRESULT_KEEP; }
    void Stop() override {}
#if SDK_GENERATION >= 2016
    DWORD_PTR Control(DWORD) override { return 0; }
    IOResult Save(ISave*) override { return IO_OK; }
    IOResult Load(ILoad*) override { return IO_OK; }
    void DeleteThis() override {}
#endif
};

class ProbeCallback : public ActionCallback {
public:
    BOOL ExecuteAction(int) override { return TRUE; }
};

class ProbeTable : public ActionTable {
public:
    ProbeTable(MSTR& name, ActionDescription* actions)
        : ActionTable(1, 2, name, nullptr, 1, actions, nullptr) {}
    BOOL IsChecked(int) override { return FALSE; }
#if SDK_GENERATION >= 2016
    BOOL IsItemVisible(int) override { return TRUE; }
    BOOL IsEnabled(int) override { return TRUE; }
    MaxIcon* GetIcon(int) override { return nullptr; }
#endif
};

class ProbeModeCallback : public CommandModeChangedCallback {
public:
    void ModeChanged(CommandMode*, CommandMode*) override {}
};

void* MakeEachTable(int kind, ActionDescription* actions) {
    MSTR name(_M(""));
    switch (kind) {
        case 0: return new ProbeDescriptor;
        case 1: return new ProbeUtility;
        case 2: return new ProbeCallback;
        case 3: return new ProbeTable(name, actions);
        case 4: return new ProbeModeCallback;
        default: return new MaxBmpFileIcon(_M(""), 1);
    }
}

int SizeEachClass(Hold* hold, Listener* listener, Primitive* primitive, Boolean* boolean) {
    hold->Begin();
    listener->edit_stream->flush();
    return static_cast<int>(sizeof(Hold) + sizeof(Listener) + sizeof(INodeTab) + sizeof(MSTR) +
                            sizeof(Interval) + sizeof(TabHdr) + sizeof(*primitive) +
                            sizeof(*boolean));
}
