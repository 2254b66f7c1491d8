// The C interface: each call of the plug-in is written down, then done to the world.
#include "standin/engine/engine_api.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "standin/engine/intercept/faults.h"
#include "standin/engine/input/input.h"
#include "standin/engine/plugin/loader.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/internal.h"

using world::g_world;

namespace {

// Whether a call has been made to fail: by its member's name, with or without the class before it.
bool FailsNow(std::string_view call) {
    if (!faults::IsAnybodyWatching()) return false;
    const std::string_view name = call.substr(0, call.find(' '));
    return world::Fails(name) || world::Fails(name.substr(name.find('.') + 1));
}

// The reader's line costs texts, so they are only made when somebody wants them.
template <typename Result>
Result Asked(const char* call, Result result) {
    if (FailsNow(call)) result = Result{};
    if (trace::AsksWanted()) trace::Ask(call, std::to_string(result));
    return result;
}
template <typename Call, typename Result>
Result AskedWith(Call call, Result result) {
    if (faults::IsAnybodyWatching() && FailsNow(call())) result = Result{};
    if (trace::AsksWanted()) trace::Ask(call(), std::to_string(result));
    return result;
}

std::string ViewName(const eng_view* view) {
    return view ? view->name : "none";
}
std::string NodeName(const eng_node* node) {
    return node ? node->name : "none";
}
std::string MenuName(const eng_menu* menu) {
    return trace::Quoted(menu ? menu->title : "");
}
std::string Number(long long value) {
    return std::to_string(value);
}

eng_view* LendView(eng_view* view) {
    if (view) ++g_world.views_out;
    return view;
}

}  // namespace

void eng_register_plugin_calls(const eng_plugin_calls* calls) {
    world::g_plugin_calls = calls;
}

void eng_register_script_calls(const eng_script_calls* calls) {
    world::g_script_calls = calls;
}

void** eng_slot(void* handle) {
    return &static_cast<world::Handle*>(handle)->slot;
}

int eng_fails(const char* call) {
    return world::Fails(call) ? 1 : 0;
}

void eng_unexpected(const char* what) {
    trace::Sdk("unexpected " + std::string(what));
    trace::Die(3, "the plug-in called " + std::string(what) +
                      ", which the stand-in does not have; add it to the host DLLs");
}

// --- heap ---

void* eng_alloc(size_t bytes) {
    return std::malloc(bytes ? bytes : 1);
}

int eng_is_of_plugin(const void* address) {
    return plugin::IsItsCode(address) ? 1 : 0;
}

void eng_throw_no_memory(void) {
    plugin::LeaveForNoMemory();
    trace::Die(3, "the host's heap has no memory left, and nobody there would catch that");
}

void eng_free(void* memory) {
    std::free(memory);
}

// --- core interface ---

unsigned long eng_version(void) {
    const int release = g_world.options.release;
    // The level of the SDK that came with a release; between releases the last one holds.
    const int api = release >= 14000 ? 38 : release >= 13900 ? 37 : release >= 13000 ? 35 : 33;
    const unsigned long version = static_cast<unsigned long>(release) << 16 | api << 8;
    return Asked("Get3DSMAXVersion", version);
}

HWND eng_main_window(void) {
    const HWND window = world::Fails("GetMAXHWnd") ? nullptr : g_world.main;
    if (trace::AsksWanted()) trace::Ask("GetMAXHWnd", world::Of(window));
    return window;
}

const char* eng_dir(int which) {
    constexpr int kPluginConfiguration = 9;
    const char* dir = which == kPluginConfiguration && !world::Fails("GetDir")
                          ? g_world.options.config_dir.c_str()
                          : "";
    if (trace::AsksWanted()) {
        // The folder differs from play to play, all but its own name.
        const std::string path = dir;
        const size_t end = path.find_last_not_of('\\');
        const size_t before = end == std::string::npos ? end : path.find_last_of('\\', end);
        trace::Ask("GetDir " + Number(which),
                   trace::Quoted(before == std::string::npos ? path : path.substr(before + 1)));
    }
    return dir;
}

void eng_register_dialog(HWND dialog) {
    trace::Sdk("RegisterDlgWnd " + world::Of(dialog));
    if (world::Fails("RegisterDlgWnd")) return;
    g_world.registered_dialogs.push_back(dialog);
}

int eng_unregister_dialog(HWND dialog) {
    trace::Sdk("UnRegisterDlgWnd " + world::Of(dialog));
    if (world::Fails("UnRegisterDlgWnd")) return 0;
    return std::erase(g_world.registered_dialogs, dialog) > 0;
}

// --- viewports ---

eng_view* eng_active_viewport(void) {
    eng_view* view = world::Fails("GetActiveViewport") ? nullptr : g_world.active_view;
    if (trace::AsksWanted()) trace::Ask("GetActiveViewport", ViewName(view));
    return LendView(view);
}

eng_view* eng_viewport_of(HWND window) {
    eng_view* view = world::Fails("GetViewport") ? nullptr : world::ViewOf(window);
    if (trace::AsksWanted()) trace::Ask("GetViewport " + world::Of(window), ViewName(view));
    return LendView(view);
}

void eng_release_viewport(eng_view* view) {
    if (trace::AsksWanted()) trace::Ask("ReleaseViewport " + ViewName(view), "ok");
    if (view)
        --g_world.views_out;
    else
        ++g_world.null_releases;  // what the host makes of it is not known
}

int eng_set_active_viewport(HWND window) {
    trace::Sdk("SetActiveViewport " + world::Of(window));
    eng_view* view = world::ViewOf(window);
    if (!view || view == g_world.active_view || world::Fails("SetActiveViewport")) return 0;
    world::ActivateView(view);
    return 1;
}

HWND eng_view_window(eng_view* view) {
    const HWND window = world::Fails("GetHWnd") ? nullptr : view->window;
    if (trace::AsksWanted()) trace::Ask("ViewExp.GetHWnd " + ViewName(view), world::Of(window));
    return window;
}

int eng_view_is_perspective(eng_view* view) {
    return AskedWith([&] { return "ViewExp.IsPerspView " + ViewName(view); },
                     view->kind == world::ViewKind::kPerspective ? 1 : 0);
}

int eng_view_type(eng_view* view) {
    enum { kTop = 2, kFront = 4, kUser = 6, kPerspective = 7, kSpot = 12 };
    int type = kUser;
    if (view->locked)
        type = kSpot;
    else if (view->kind == world::ViewKind::kPerspective)
        type = kPerspective;
    else if (view->kind == world::ViewKind::kOrthographic)
        type = view->camera.elevation > 45 ? kTop : kFront;
    // A User view stays one for those who ask, even where it is locked: the lock is another
    // question.
    if (view->kind == world::ViewKind::kUser) type = kUser;
    return AskedWith([&] { return "ViewExp.GetViewType " + ViewName(view); }, type);
}

eng_node* eng_view_camera(eng_view* view) {
    if (trace::AsksWanted()) trace::Ask("ViewExp.GetViewCamera " + ViewName(view), "none");
    return nullptr;
}

eng_node* eng_view_spot(eng_view* view) {
    eng_node* spot = view->locked && !world::Fails("GetViewSpot") ? &g_world.spot : nullptr;
    if (trace::AsksWanted()) trace::Ask("ViewExp.GetViewSpot " + ViewName(view), NodeName(spot));
    return spot;
}

int eng_view_is_active(eng_view* view) {
    return AskedWith([&] { return "ViewExp.IsActive " + ViewName(view); },
                     view == g_world.active_view ? 1 : 0);
}

int eng_view_is_enabled(eng_view* view) {
    return AskedWith([&] { return "ViewExp.IsEnabled " + ViewName(view); }, view->window ? 1 : 0);
}

// --- command modes ---

eng_mode* eng_current_mode(void) {
    eng_mode* mode = world::Fails("GetCommandMode") ? nullptr : world::CurrentMode();
    if (trace::AsksWanted()) trace::Ask("GetCommandMode", world::ModeText(mode));
    return mode;
}

int eng_mode_id(eng_mode* mode) {
    return Asked("CommandMode.ID", mode->id);
}

int eng_mode_class(eng_mode* mode) {
    return Asked("CommandMode.Class", mode->class_id);
}

void eng_push_standard_mode(int id) {
    trace::Sdk("PushStdCommandMode " + Number(id));
    if (world::Fails("PushStdCommandMode")) return;
    world::PushMode(id);
}

void eng_set_standard_mode(int id) {
    trace::Sdk("SetStdCommandMode " + Number(id));
    if (world::Fails("SetStdCommandMode")) return;
    world::SetTopMode(id);
}

void eng_pop_mode(void) {
    trace::Sdk("PopCommandMode");
    if (world::Fails("PopCommandMode")) return;
    world::PopMode();
}

int eng_mode_stack_size(void) {
    return Asked("GetCommandStackSize",
                 world::Fails("GetCommandStackSize") ? 0 : world::ModeDepth());
}

eng_mode* eng_mode_stack_entry(int entry) {
    const int depth = world::ModeDepth();
    eng_mode* mode = entry >= 0 && entry < depth ? g_world.modes[depth - 1 - entry] : nullptr;
    if (trace::AsksWanted())
        trace::Ask("GetCommandStackEntry " + Number(entry), world::ModeText(mode));
    return mode;
}

void eng_register_mode_callback(void* callback) {
    trace::Sdk("RegisterCommandModeChangedCallback");
    if (world::Fails("RegisterCommandModeChangedCallback")) return;
    g_world.mode_callbacks.push_back(callback);
}

// --- selection and tool state ---

int eng_selected_count(void) {
    return Asked("GetSelNodeCount", world::SelectedCount());
}

eng_node* eng_selected(int index) {
    const bool there = index >= 0 && index < world::SelectedCount() && !world::Fails("GetSelNode");
    eng_node* node = there ? g_world.selection[index] : nullptr;
    if (trace::AsksWanted()) trace::Ask("GetSelNode " + Number(index), NodeName(node));
    return node;
}

void eng_select_node(eng_node* node, int clear) {
    trace::Sdk("SelectNode " + NodeName(node) + " " + Number(clear));
    if (world::Fails("SelectNode")) return;
    std::vector<eng_node*> nodes;
    if (!clear) nodes = g_world.selection;
    nodes.push_back(node);
    world::SetSelection(nodes);
}

void eng_clear_selection(int redraw) {
    trace::Sdk("ClearNodeSelection " + Number(redraw));
    if (world::Fails("ClearNodeSelection")) return;
    world::SetSelection({});
}

void eng_select_nodes(eng_node* const* nodes, int count, int select, int redraw) {
    std::string text = "SelectNodeTab";
    for (int i = 0; i < count; ++i)
        text += " " + NodeName(nodes[i]);
    trace::Sdk(text + " " + Number(select) + " " + Number(redraw));
    if (world::Fails("SelectNodeTab")) return;
    std::vector<eng_node*> selection = g_world.selection;
    for (int i = 0; i < count; ++i) {
        if (select)
            selection.push_back(nodes[i]);
        else
            std::erase(selection, nodes[i]);
    }
    world::SetSelection(selection);
}

int eng_subobject_level(void) {
    return Asked("GetSubObjectLevel", g_world.subobject_level);
}

int eng_snap_state(void) {
    return Asked("GetSnapState", g_world.snap ? 1 : 0);
}

int eng_axis_constraints(void) {
    return Asked("GetAxisConstraints", g_world.axis_constraint);
}

void eng_set_axis_constraints(int constraint) {
    trace::Sdk("SetAxisConstraints " + Number(constraint));
    if (world::Fails("SetAxisConstraints")) return;
    g_world.axis_constraint = constraint;
}

int eng_coordinate_system(void) {
    return Asked("GetRefCoordSys", g_world.coordinate_system);
}

void eng_set_coordinate_system(int system) {
    trace::Sdk("SetRefCoordSys " + Number(system));
    if (world::Fails("SetRefCoordSys")) return;
    g_world.coordinate_system = system;
}

int eng_time(void) {
    world::UpdatePlayback();
    return Asked("GetTime", g_world.time);
}

void eng_disable_redraw(void) {
    trace::Sdk("DisableSceneRedraw");
    ++g_world.redraw_stops;
}

void eng_enable_redraw(void) {
    trace::Sdk("EnableSceneRedraw");
    --g_world.redraw_stops;
    world::Redraw();
}

void eng_redraw_views(int time, unsigned long flags) {
    trace::Sdk("RedrawViews " + Number(time) + " " + Number(flags));
    if (world::Fails("RedrawViews")) return;
    world::Redraw();
}

void eng_force_complete_redraw(int disabled_too) {
    trace::Sdk("ForceCompleteRedraw " + Number(disabled_too));
    if (world::Fails("ForceCompleteRedraw")) return;
    world::Redraw();
}

void eng_zoom_extents(int all, int skip_perspective) {
    trace::Sdk("ViewportZoomExtents " + Number(all) + " " + Number(skip_perspective));
    if (world::Fails("ViewportZoomExtents")) return;
    for (eng_view& view : g_world.views) {
        const bool meant = all || &view == g_world.active_view;
        const bool skipped = skip_perspective && view.kind == world::ViewKind::kPerspective;
        if (meant && !skipped) world::ZoomExtents(view, false);
    }
}

// --- nodes ---

const char* eng_node_name(eng_node* node) {
    return node->name.c_str();
}

void eng_node_hide(eng_node* node, int hide) {
    trace::Sdk("Hide " + NodeName(node) + " " + Number(hide));
    if (world::Fails("Hide")) return;
    node->state.hidden = hide != 0;
    world::Redraw();
}

int eng_node_is_hidden(eng_node* node) {
    return AskedWith([&] { return "IsHidden " + NodeName(node); }, node->state.hidden ? 1 : 0);
}

void eng_node_notify(eng_node* node, unsigned long, unsigned) {
    trace::Sdk("NotifyDependents " + NodeName(node));
    if (world::Fails("NotifyDependents")) return;
    world::Redraw();
}

// --- named selection sets ---

int eng_has_set_manager(void) {
    return Asked("GetCOREInterface 0x042A42B3 0x01CF1CC5",
                 world::Fails("GetNamedSelectionSets") ? 0 : 1);
}

int eng_set_count(void) {
    return Asked("GetNumNamedSelSets",
                 world::Fails("GetNumNamedSelSets") ? 0 : static_cast<int>(g_world.sets.size()));
}

const char* eng_set_name(int set) {
    const bool there = set >= 0 && set < static_cast<int>(g_world.sets.size());
    const char* name =
        there && !world::Fails("GetNamedSelSetName") ? g_world.sets[set].name.c_str() : nullptr;
    if (trace::AsksWanted())
        trace::Ask("GetNamedSelSetName " + Number(set), name ? trace::Quoted(name) : "none");
    return name;
}

int eng_set_node_count(int set) {
    const bool there = set >= 0 && set < static_cast<int>(g_world.sets.size());
    return AskedWith([&] { return "GetNamedSelSetItemCount " + Number(set); },
                     there ? static_cast<int>(g_world.sets[set].nodes.size()) : 0);
}

eng_node* eng_set_node(int set, int index) {
    eng_node* node = nullptr;
    if (set >= 0 && set < static_cast<int>(g_world.sets.size()) && index >= 0 &&
        index < static_cast<int>(g_world.sets[set].nodes.size()) &&
        !world::Fails("GetNamedSelSetItem"))
        node = g_world.sets[set].nodes[index];
    if (trace::AsksWanted())
        trace::Ask("GetNamedSelSetItem " + Number(set) + " " + Number(index), NodeName(node));
    return node;
}

// --- undo, macro recorder ---

void eng_hold_begin(void) {
    trace::Sdk("theHold.Begin");
    if (world::Fails("theHold.Begin")) return;
    world::HoldBegin();
}

void eng_hold_accept(const char* name) {
    trace::Sdk("theHold.Accept " + trace::Quoted(name ? name : ""));
    if (world::Fails("theHold.Accept")) return;
    world::HoldAccept(name ? name : "");
}

void eng_hold_cancel(void) {
    trace::Sdk("theHold.Cancel");
    if (world::Fails("theHold.Cancel")) return;
    world::HoldCancel();
}

void eng_macro_enable(void) {
    trace::Sdk("MacroRecorder.Enable");
    if (world::Fails("MacroRecorder.Enable")) return;
    --g_world.macro_disabled;
}

void eng_macro_disable(void) {
    trace::Sdk("MacroRecorder.Disable");
    if (world::Fails("MacroRecorder.Disable")) return;
    ++g_world.macro_disabled;
}

int eng_macro_enabled(void) {
    return Asked("MacroRecorder.Enabled", g_world.macro_disabled <= 0 ? 1 : 0);
}

// --- actions ---

int eng_register_context(unsigned long id, const char* name) {
    trace::Sdk("RegisterActionContext " + std::to_string(id) + " " + trace::Quoted(name));
    if (world::Fails("RegisterActionContext")) return 0;
    return g_world.contexts.insert(id).second ? 1 : 0;
}

int eng_activate_table(void* callback, unsigned long table) {
    trace::Sdk("ActivateActionTable " + std::to_string(table));
    if (world::Fails("ActivateActionTable") || table != g_world.plugin_table_id ||
        !g_world.plugin_table)
        return 0;
    // With several activations the last callback counts.
    g_world.action_callback = callback;
    const bool was_active = g_world.plugin_table_active;
    g_world.plugin_table_active = true;
    return was_active ? 0 : 1;
}

int eng_deactivate_table(void* callback, unsigned long table) {
    trace::Sdk("DeactivateActionTable " + std::to_string(table));
    if (!g_world.plugin_table_active || callback != g_world.action_callback ||
        table != g_world.plugin_table_id)
        return 0;
    g_world.plugin_table_active = false;
    g_world.action_callback = nullptr;
    return 1;
}

void* eng_plugin_table(unsigned long id) {
    return id == g_world.plugin_table_id && !world::Fails("FindTable") ? g_world.plugin_table
                                                                       : nullptr;
}

eng_table* eng_find_table(unsigned long id) {
    eng_table* table = world::Fails("FindTable") ? nullptr : world::FindTable(id);
    if (trace::AsksWanted())
        trace::Ask("FindTable " + std::to_string(id), table ? "found" : "none");
    return table;
}

eng_action* eng_table_action(eng_table* table, int id) {
    eng_action* action = world::Fails("GetAction") ? nullptr : world::FindAction(table->id, id);
    if (trace::AsksWanted())
        trace::Ask("GetAction " + std::to_string(table->id) + " " + Number(id),
                   action ? "found" : "none");
    return action;
}

int eng_action_id(eng_action* action) {
    return action->id;
}

int eng_action_is_checked(eng_action* action) {
    return AskedWith(
        [&] {
            return "ActionItem.IsChecked " + std::to_string(action->table) + " " +
                   Number(action->id);
        },
        world::ActionChecked(*action) ? 1 : 0);
}

int eng_action_is_enabled(eng_action* action) {
    return AskedWith(
        [&] {
            return "ActionItem.IsEnabled " + std::to_string(action->table) + " " +
                   Number(action->id);
        },
        1);
}

int eng_action_execute(eng_action* action) {
    trace::Sdk("ExecuteAction " + std::to_string(action->table) + " " + Number(action->id));
    if (world::Fails("ExecuteAction")) return 0;
    return world::ExecuteAction(*action) ? 1 : 0;
}

int eng_plugin_action_execute(unsigned long table, int id) {
    trace::Sdk("ExecuteAction " + std::to_string(table) + " " + Number(id));
    if (table != g_world.plugin_table_id || !g_world.plugin_table_active) return 0;
    return world::RunPluginAction(id);
}

// --- menus ---

eng_menu* eng_new_menu(void) {
    if (trace::AsksWanted()) trace::Ask("GetIMenu", world::Fails("GetIMenu") ? "none" : "menu");
    if (world::Fails("GetIMenu")) return nullptr;
    g_world.menus.push_back(std::make_unique<eng_menu>());
    return g_world.menus.back().get();
}

void eng_release_menu(eng_menu* menu) {
    if (trace::AsksWanted()) trace::Ask("ReleaseIMenu " + MenuName(menu), "ok");
    std::erase_if(g_world.menus, [=](const auto& known) {
        return known.get() == menu && !known->registered && menu != g_world.main_menu;
    });
}

eng_item* eng_new_item(void) {
    if (trace::AsksWanted())
        trace::Ask("GetIMenuItem", world::Fails("GetIMenuItem") ? "none" : "item");
    if (world::Fails("GetIMenuItem")) return nullptr;
    g_world.items.push_back(std::make_unique<eng_item>());
    return g_world.items.back().get();
}

void eng_release_item(eng_item* item) {
    if (trace::AsksWanted()) trace::Ask("ReleaseIMenuItem", "ok");
    for (const auto& menu : g_world.menus)
        if (std::find(menu->items.begin(), menu->items.end(), item) != menu->items.end()) return;
    std::erase_if(g_world.items, [=](const auto& known) { return known.get() == item; });
}

void eng_menu_set_title(eng_menu* menu, const char* title) {
    trace::Sdk("SetTitle " + trace::Quoted(title ? title : ""));
    if (world::Fails("SetTitle")) return;
    menu->title = title ? title : "";
}

int eng_menu_count(eng_menu* menu) {
    return AskedWith([&] { return "NumItems " + MenuName(menu); },
                     static_cast<int>(menu->items.size()));
}

void eng_menu_add(eng_menu* menu, eng_item* item, int position) {
    trace::Sdk("AddItem " + MenuName(menu) + " " + Number(position));
    if (world::Fails("AddItem")) return;
    if (!item) return;
    const int count = static_cast<int>(menu->items.size());
    if (position < 0 || position > count) position = count;
    menu->items.insert(menu->items.begin() + position, item);
}

void eng_item_set_title(eng_item* item, const char* title) {
    trace::Sdk("SetTitle " + trace::Quoted(title ? title : ""));
    if (world::Fails("SetTitle")) return;
    item->title = title ? title : "";
}

void eng_item_separator(eng_item* item) {
    trace::Sdk("ActAsSeparator");
    if (world::Fails("ActAsSeparator")) return;
    item->separator = true;
}

void eng_item_set_action(eng_item* item, unsigned long table, int id) {
    trace::Sdk("SetActionItem " + Number(id));
    if (world::Fails("SetActionItem")) return;
    item->has_action = true;
    item->table = table;
    item->action = id;
}

void eng_item_set_submenu(eng_item* item, eng_menu* menu) {
    trace::Sdk("SetSubMenu " + MenuName(menu));
    if (world::Fails("SetSubMenu")) return;
    item->submenu = menu;
}

int eng_register_menu(eng_menu* menu, unsigned long flags) {
    trace::Sdk("RegisterMenu " + MenuName(menu) + " flags=" + std::to_string(flags));
    if (!menu || menu->registered || world::Fails("RegisterMenu")) return 0;
    menu->registered = true;
    return 1;
}

int eng_register_menu_context(int id, const char* name) {
    trace::Sdk("RegisterMenuBarContext " + Number(id) + " " + trace::Quoted(name ? name : ""));
    if (world::Fails("RegisterMenuBarContext")) return 0;
    return g_world.menu_contexts.insert(id).second ? 1 : 0;
}

eng_menu* eng_main_menu(void) {
    eng_menu* menu = world::Fails("GetMainMenuBar") ? nullptr : g_world.main_menu;
    if (trace::AsksWanted()) trace::Ask("GetMainMenuBar", menu ? MenuName(menu) : "none");
    return menu;
}

void eng_update_menu_bar(void) {
    trace::Sdk("UpdateMenuBar");
    if (world::Fails("UpdateMenuBar")) return;
    world::UpdateMenuBar();
}

// --- toolbar ---

// Asks the actions on the visible toolbars anew; the plug-in's own are on none until the user puts
// them there.
void eng_set_macro_button_states(int force) {
    trace::Sdk("SetMacroButtonStates " + Number(force));
    if (world::Fails("SetMacroButtonStates")) return;
}

eng_button* eng_toolbar_button(int id) {
    eng_button* button = world::FindButton(id);
    const bool on_toolbar =
        button && button->window &&
        (button->parent == g_world.toolbar || button->parent == g_world.navigation_toolbar);
    if (!on_toolbar || world::Fails("GetICustButton")) button = nullptr;
    if (trace::AsksWanted())
        trace::Ask("GetICustButton " + Number(id), button ? button->name : "none");
    if (button) ++g_world.buttons_out;
    return button;
}

eng_button* eng_button_of(HWND window) {
    eng_button* button = world::Fails("GetICustButton") ? nullptr : world::ButtonOf(window);
    if (trace::AsksWanted())
        trace::Ask("GetICustButton " + world::Of(window), button ? button->name : "none");
    if (button) ++g_world.buttons_out;
    return button;
}

void eng_release_button(eng_button* button) {
    if (trace::AsksWanted())
        trace::Ask("ReleaseICustButton " + (button ? button->name : std::string("none")), "ok");
    if (button) --g_world.buttons_out;
}

int eng_button_is_enabled(eng_button* button) {
    return AskedWith([&] { return "ICustButton.IsEnabled " + button->name; },
                     button->enabled ? 1 : 0);
}

int eng_button_is_checked(eng_button* button) {
    return AskedWith([&] { return "ICustButton.IsChecked " + button->name; },
                     button->checked ? 1 : 0);
}

int eng_button_flyout(eng_button* button) {
    return AskedWith([&] { return "ICustButton.GetCurFlyOff " + button->name; },
                     button->flyout_entry);
}

void eng_button_set_flyout(eng_button* button, int entry, int notify) {
    trace::Sdk("SetCurFlyOff " + Number(button->id) + " " + Number(entry) + " " + Number(notify));
    if (world::Fails("SetCurFlyOff")) return;
    constexpr int kFlyoffChosen = 8187;
    button->flyout_entry = entry;
    if (notify && button->window)
        SendMessageA(GetParent(button->window), WM_COMMAND, MAKEWPARAM(button->id, kFlyoffChosen),
                     reinterpret_cast<LPARAM>(button->window));
}

// --- MAXScript ---

// The answer only says that the text reached MAXScript; what goes wrong in it is told on the
// listener, and stands in the trace as a value.
int eng_execute_script(const char* text) {
    trace::Script(text ? text : "");
    if (!text || world::Fails("ExecuteStringScript")) return 0;
    const world::ScriptResult result = world::RunScript(text);
    if (!result.ok) trace::Value(result.text);
    return 1;
}

void eng_register_primitive(const char* name, void* function) {
    world::AddPrimitive(name, function);
}

void eng_script_error(const char* message) {
    world::FailScript(message ? message : "script error");
}

int eng_listener_put(const char* text) {
    if (world::Fails("puts")) return 0;
    g_world.listener_text += text ? text : "";
    return 1;
}

void eng_listener_flush(void) {
    const std::string text = std::move(g_world.listener_text);
    g_world.listener_text.clear();
    if (!text.empty()) trace::Listener(text);
}
