// core.dll: the host's main interface, and the viewports, command modes and nodes that it hands
// out.

#include "standin/interfaces/core_objects.h"
#include "standin/interfaces/published.h"

#include "host_text.h"
#include "host_views.h"

#include <INodeTab.h>

#include <vector>

// --- nodes ---

namespace {

class HostNode final : public StandsFor<Published<INode>, eng_node> {
public:
    using StandsFor::StandsFor;
    AnsweredText GetName() override { return Kept(eng_node_name(m_handle)); }
    void Hide(BOOL onOff) override { eng_node_hide(m_handle, onOff); }
    int IsHidden(DWORD, BOOL) override { return eng_node_is_hidden(m_handle); }
#if SDK_GENERATION >= 2018
    RefResult NotifyDependents(const Interval&, PartID, RefMessage, SClass_ID, BOOL,
                               RefTargetHandle, NotifyDependentsOption) override {
#elif SDK_GENERATION >= 2016
    RefResult NotifyDependents(const Interval&, PartID, RefMessage, SClass_ID, BOOL,
                               RefTargetHandle) override{
#else
    RefResult NotifyDependents(Interval, PartID, RefMessage, SClass_ID, BOOL,
                               RefTargetHandle) override {
#endif
        eng_node_notify(m_handle);
        return REF_SUCCEED;
    }
};  // namespace

INode* NodeObject(eng_node* handle) {
    return ObjectOf<HostNode>(handle);
}

// --- viewports ---

class HostView final : public StandsFor<ViewObject, eng_view> {
public:
    using StandsFor::StandsFor;
    int GetViewType() override { return eng_view_type(m_handle); }
    BOOL IsPerspView() override { return eng_view_is_perspective(m_handle); }
    INode* GetViewCamera() override { return nullptr; }
    INode* GetViewSpot() override { return NodeObject(eng_view_spot(m_handle)); }
    HWND GetHWnd() override { return eng_view_window(m_handle); }
    BOOL IsActive() override { return eng_view_is_active(m_handle); }
    BOOL IsEnabled() override { return TRUE; }
};

// --- command modes ---

class HostMode final : public StandsFor<CommandMode, eng_mode> {
public:
    using StandsFor::StandsFor;
    int Class() override { return eng_mode_class(m_handle); }
    int ID() override { return eng_mode_id(m_handle); }
};

// --- macro recorder, named selection sets ---

class HostRecorder final : public MacroRecorder {
public:
    void Enable() override { eng_macro_enable(); }
    void Disable() override { eng_macro_disable(); }
    BOOL Enabled() override { return eng_macro_enabled(); }
};
HostRecorder g_recorder;

class HostSelectionSets final : public Published<INamedSelectionSetManager> {
public:
    Interface_ID GetID() override { return IID_NAMED_SELECTION_SET_MANAGER; }
    int GetNumNamedSelSets() const override { return eng_set_count(); }
    AnsweredText GetNamedSelSetName(int set) const override { return Kept(eng_set_name(set)); }
    int GetNamedSelSetItemCount(int set) const override { return eng_set_node_count(set); }
    INode* GetNamedSelSetItem(int set, int index) const override {
        return NodeObject(eng_set_node(set, index));
    }
};
HostSelectionSets g_selectionSets;

// --- the main interface ---

class HostInterface final : public WithViewports<HostView> {
public:
#if SDK_GENERATION >= 2026
    MSTR GetDir(int which) override { return MSTR(Kept(eng_dir(which))); }
#else
    const MCHAR* GetDir(int which) override { return Kept(eng_dir(which)); }
#endif
    void RegisterDlgWnd(HWND dialog) override { eng_register_dialog(dialog); }
    int UnRegisterDlgWnd(HWND dialog) override { return eng_unregister_dialog(dialog); }
    IActionManager* GetActionManager() override {
        return Given("GetActionManager", HostActionManager());
    }
#if SDK_GENERATION >= 2026
    MenuManager* GetICuiMenuManager() override { return HostMenuManager(); }
#else
    MenuManager* GetMenuManager() override { return HostMenuManager(); }
#endif
    MacroRecorder* GetMacroRecorder() override {
        return Given<MacroRecorder>("GetMacroRecorder", &g_recorder);
    }

    BOOL SetActiveViewport(HWND window) override { return eng_set_active_viewport(window); }

    CommandMode* GetCommandMode() override { return ModeObject(eng_current_mode()); }
    void SetCommandMode(CommandMode*) override { Unexpected("SetCommandMode"); }
    void PushCommandMode(CommandMode*) override { Unexpected("PushCommandMode"); }
    void PopCommandMode() override { eng_pop_mode(); }
    void SetStdCommandMode(int) override { Unexpected("SetStdCommandMode"); }
    void PushStdCommandMode(int id) override { eng_push_standard_mode(id); }
    int GetCommandStackSize() override { return eng_mode_stack_size(); }
    CommandMode* GetCommandStackEntry(int) override { return Unexpected("GetCommandStackEntry"); }
    void RegisterCommandModeChangedCallback(CommandModeChangedCallback* callback) override {
        eng_register_mode_callback(callback);
    }

    int GetSelNodeCount() override { return eng_selected_count(); }
    INode* GetSelNode(int index) override { return NodeObject(eng_selected(index)); }
    void SelectNode(INode*, int) override { Unexpected("SelectNode"); }
    void SelectNodeTab(INodeTab& nodes, BOOL select, BOOL redraw) override {
        std::vector<eng_node*> handles;
        handles.reserve(static_cast<std::size_t>(nodes.Count()));
        for (int index = 0; index < nodes.Count(); ++index)
            handles.push_back(HandleOf<HostNode>(nodes[index]));
        eng_select_nodes(handles.data(), nodes.Count(), select, redraw);
    }
    void ClearNodeSelection(BOOL redraw) override { eng_clear_selection(redraw); }
    int GetSubObjectLevel() override { return eng_subobject_level(); }
    BOOL SelectionFrozen() override { return Unexpected("SelectionFrozen"); }
    void FreezeSelection() override { Unexpected("FreezeSelection"); }
    void ThawSelection() override { Unexpected("ThawSelection"); }

    BOOL GetSnapState() override { return eng_snap_state(); }
    int GetAxisConstraints() override { return eng_axis_constraints(); }
    void SetAxisConstraints(int constraint) override { eng_set_axis_constraints(constraint); }
    void PushAxisConstraints(int) override { Unexpected("PushAxisConstraints"); }
    void PopAxisConstraints() override { Unexpected("PopAxisConstraints"); }
    int GetRefCoordSys() override { return eng_coordinate_system(); }
    void SetRefCoordSys(int system) override { eng_set_coordinate_system(system); }
    void EnableUndo(BOOL) override { Unexpected("EnableUndo"); }

    TimeValue GetTime() override { return eng_time(); }
    void DisableSceneRedraw() override { eng_disable_redraw(); }
    void EnableSceneRedraw() override { eng_enable_redraw(); }
    void RedrawViews(TimeValue time, DWORD flags, ReferenceTarget*) override {
        eng_redraw_views(time, flags);
    }
    void ForceCompleteRedraw(BOOL disabledToo) override { eng_force_complete_redraw(disabledToo); }
    void ViewportZoomExtents(BOOL all, BOOL skipPerspective) override {
        eng_zoom_extents(all, skipPerspective);
    }
};
HostInterface g_interface;

}  // namespace

// clang-format off
CommandMode* ModeObject(eng_mode* handle) { return ObjectOf<HostMode>(handle); }
Interface* GetCOREInterface() { return Given<Interface>("GetCOREInterface", &g_interface); }
FPInterface* GetCOREInterface(Interface_ID id) {
    const bool known = id == IID_NAMED_SELECTION_SET_MANAGER && eng_has_set_manager() != 0;
    return known ? &g_selectionSets : nullptr;
}
DWORD Get3DSMAXVersion() { return eng_version(); }

Hold theHold;
void Hold::Begin() { eng_hold_begin(); }
#if SDK_GENERATION >= 2026
void Hold::Accept(const MSTR& name) { eng_hold_accept(Narrow(name.data())); }
#else
void Hold::Accept(GivenText name) { eng_hold_accept(Narrow(name)); }
#endif
void Hold::Cancel() { eng_hold_cancel(); }

Interval::Interval(TimeValue first, TimeValue last) : start(first), end(last) {}
// clang-format on
