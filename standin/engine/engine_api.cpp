// The C interface: the functions of the table, and what its rows call.
#include "standin/engine/engine_api.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "standin/engine/calls.h"
#include "standin/engine/plugin/loader.h"
#include "standin/engine/trace/control.h"

using world::g_world;

namespace {

// By its member's name, with or without the class before it.
bool Fails(std::string_view call) {
    if (!faults::IsAnybodyWatching()) return false;
    return faults::IsOn(call) || faults::IsOn(call.substr(call.find('.') + 1));
}

// --- core interface ---

unsigned long Version() {
    const int release = g_world.options.release;
    // The level of the SDK that came with a release; between releases the last one holds.
    const int api = release >= 14000 ? 38 : release >= 13900 ? 37 : release >= 13000 ? 35 : 33;
    return static_cast<unsigned long>(release) << 16 | api << 8;
}

template <typename Handle>
Handle* Lent(Handle* handle, int& count) {
    if (handle) ++count;
    return handle;
}

bool ActivateAnother(eng_view* view) {
    if (!view || view == g_world.active_view) return false;
    world::ActivateView(view);
    return true;
}

int ViewType(const eng_view& view) {
    enum { kTop = 2, kFront = 4, kUser = 6, kPerspective = 7, kSpot = 12 };
    // A User view stays one for those who ask, even where it is locked: the lock is another
    // question.
    if (view.kind == world::ViewKind::kUser) return kUser;
    if (view.locked) return kSpot;
    if (view.kind == world::ViewKind::kPerspective) return kPerspective;
    return view.camera.elevation > 45 ? kTop : kFront;
}

eng_node* EntryOf(const std::vector<eng_node*>& nodes, int index) {
    return index >= 0 && index < static_cast<int>(nodes.size()) ? nodes[index] : nullptr;
}

std::string NamesOf(const std::vector<eng_node*>& nodes) {
    std::string names;
    for (const eng_node* node : nodes)
        names += (names.empty() ? "" : " ") + calls::Text(node);
    return names;
}

void SelectAll(const std::vector<eng_node*>& nodes, bool select) {
    std::vector<eng_node*> selection = g_world.selection;
    for (eng_node* node : nodes) {
        if (select)
            selection.push_back(node);
        else
            std::erase(selection, node);
    }
    world::SetSelection(selection);
}

void ZoomExtents(bool all, bool skip_perspective) {
    for (eng_view& view : g_world.views) {
        const bool meant = all || &view == g_world.active_view;
        const bool skipped = skip_perspective && view.kind == world::ViewKind::kPerspective;
        if (meant && !skipped) world::ZoomExtents(view, false);
    }
}

bool IsSet(int set) {
    return set >= 0 && set < static_cast<int>(g_world.sets.size());
}

const char* NameOfSet(int set) {
    return IsSet(set) ? g_world.sets[set].name.c_str() : nullptr;
}

const std::vector<eng_node*>& NodesOfSet(int set) {
    static const std::vector<eng_node*> none;
    return IsSet(set) ? g_world.sets[set].nodes : none;
}

// --- actions, menus, toolbar ---

bool ActivateTable(void* callback, unsigned long table) {
    if (table != g_world.plugin_table_id || !g_world.plugin_table) return false;
    // With several activations the last callback counts.
    g_world.action_callback = callback;
    return !std::exchange(g_world.plugin_table_active, true);
}

const char* ActionName(unsigned long table, int id) {
    const eng_action* const action = world::FindAction(table, id);
    return action ? action->name : nullptr;
}

int RunPluginAction(unsigned long table, int id) {
    const bool active = table == g_world.plugin_table_id && g_world.plugin_table_active;
    return active ? world::RunPluginAction(id) : 0;
}

template <typename Handle>
Handle* New(std::vector<std::unique_ptr<Handle>>& list) {
    return list.emplace_back(std::make_unique<Handle>()).get();
}

template <typename Handle>
bool Forget(std::vector<std::unique_ptr<Handle>>& list, const Handle* handle) {
    return std::erase_if(list, [=](const auto& known) { return known.get() == handle; }) > 0;
}

bool StandsInMenu(const eng_item* item) {
    return std::any_of(g_world.menus.begin(), g_world.menus.end(), [=](const auto& menu) {
        return std::find(menu->items.begin(), menu->items.end(), item) != menu->items.end();
    });
}

void AddItem(eng_menu& menu, eng_item* item, int position) {
    if (!item) return;
    const int count = static_cast<int>(menu.items.size());
    if (position < 0 || position > count) position = count;
    menu.items.insert(menu.items.begin() + position, item);
}

void SetAction(eng_item& item, unsigned long table, int id) {
    item.has_action = true;
    item.table = table;
    item.action = id;
}

int AddNotification(void* procedure, void* own, int code) {
    g_world.notifications.push_back({procedure, own, code});
    return 1;
}

// As Windows writes it; empty for none.
std::string IdText(const void* id) {
    GUID guid;
    std::memcpy(&guid, id, sizeof guid);
    if (IsEqualGUID(guid, GUID{})) return {};
    char text[40];
    std::snprintf(text, sizeof text, "%08lx-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                  guid.Data1, guid.Data2, guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2],
                  guid.Data4[3], guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
    return text;
}

// Where the entry with this id stands in the menu; at its end for none, nowhere for an unknown one.
std::optional<int> PlaceBefore(const eng_menu& menu, const std::string& id) {
    const auto found = std::find_if(menu.items.begin(), menu.items.end(),
                                    [&](const eng_item* item) { return item->id == id; });
    if (!id.empty() && found == menu.items.end()) return std::nullopt;
    return id.empty() ? -1 : static_cast<int>(found - menu.items.begin());
}

// Null: the menus are not being loaded, something has the id already, or there is no such place.
eng_item* CreateEntry(eng_menu& menu, const void* given_id, const void* before) {
    const std::optional<int> place = PlaceBefore(menu, IdText(before));
    const std::string id = IdText(given_id);
    const bool known = std::any_of(g_world.items.begin(), g_world.items.end(),
                                   [&](const auto& item) { return item->id == id; });
    if (!g_world.menus_loading || known || !place) return nullptr;
    eng_item* const item = New(g_world.items);
    item->id = id;
    AddItem(menu, item, *place);
    return item;
}

eng_menu* CreateSubMenu(eng_menu& menu, const void* id, const char* title, const void* before) {
    eng_item* const entry = CreateEntry(menu, id, before);
    if (!entry) return nullptr;
    entry->submenu = New(g_world.menus);
    entry->submenu->title = title;
    entry->submenu->registered = true;
    return entry->submenu;
}

int CreateAction(eng_menu& menu, const void* id, unsigned long table, int action, const char* title,
                 const void* before) {
    eng_item* const entry = CreateEntry(menu, id, before);
    if (!entry) return 0;
    entry->title = title;
    SetAction(*entry, table, action);
    return 1;
}

int CreateSeparator(eng_menu& menu, const void* id, const void* before) {
    eng_item* const entry = CreateEntry(menu, id, before);
    if (entry) entry->separator = true;
    return entry != nullptr;
}

// What is drawn by the host itself is no window that it could be asked by.
eng_button* ButtonWindow(eng_button* button) {
    return button && !button->drawn ? button : nullptr;
}

eng_button* ToolbarButton(int id) {
    eng_button* button = ButtonWindow(world::FindButton(id));
    return button && button->window && button->on_toolbar ? button : nullptr;
}

void SetFlyout(eng_button& button, int entry, bool notify) {
    constexpr int kFlyoffChosen = 8187;
    button.flyout_entry = entry;
    if (notify && button.window)
        SendMessageA(GetParent(button.window), WM_COMMAND, MAKEWPARAM(button.id, kFlyoffChosen),
                     reinterpret_cast<LPARAM>(button.window));
}

const bool g_faults_known = faults::AddNames({
#define EFFECT(result, function, parameters, member, ...) member,
#define READER EFFECT
#define READER_OF(result, function, parameters, class_name, member, ...) member,
#define READER_AS EFFECT
#define FAULT(name) name,
#define ALWAYS(...)
#define RELEASE(...)
#define SILENT(...)
#define OWN(...)
#include "standin/engine/host_calls.inc"
});

}  // namespace

#define EFFECT(result, function, parameters, member, traced, ...) \
    result function parameters TRACE_FAIL_ACT(trace::Sdk, result, member, traced, __VA_ARGS__)
#define ALWAYS(result, function, parameters, member, traced, ...) \
    result function parameters {                                  \
        trace::Sdk(member + calls::Listed traced);                \
        return static_cast<result>(__VA_ARGS__);                  \
    }
#define READER_OF(result, function, parameters, class_name, member, traced, ...)   \
    result function parameters FAIL_READ_TRACE(result, class_name, member, traced, \
                                               calls::Text(answer), __VA_ARGS__)
#define READER(result, function, parameters, member, ...) \
    READER_OF(result, function, parameters, "", member, __VA_ARGS__)
#define READER_AS(result, function, parameters, member, traced, shown, ...) \
    result function parameters FAIL_READ_TRACE(result, "", member, traced, shown, __VA_ARGS__)
#define RELEASE(function, parameters, member, traced, ...)                        \
    void function parameters {                                                    \
        if (trace::AsksWanted()) trace::Ask(member + calls::Listed traced, "ok"); \
        static_cast<void>(__VA_ARGS__);                                           \
    }
#define SILENT(result, function, parameters, ...) \
    result function parameters {                  \
        return static_cast<result>(__VA_ARGS__);  \
    }
#define OWN(...)
#define FAULT(...)
#include "standin/engine/host_calls.inc"

void eng_unexpected(const char* what) {
    trace::Sdk("unexpected " + std::string(what));
    trace::Die(3, "the plug-in called " + std::string(what) +
                      ", which the stand-in does not have; add it to the host DLLs");
}

void eng_throw_no_memory() {
    plugin::LeaveForNoMemory();
    trace::Die(3, "the host's heap has no memory left, and nobody there would catch that");
}

const char* eng_dir(int which) {
    constexpr int kPluginConfiguration = 9;
    const bool known = !Fails("GetDir") && which == kPluginConfiguration;
    const char* dir = known ? g_world.options.config_dir.c_str() : "";
    if (trace::AsksWanted()) {
        // The folder differs from play to play, all but its own name.
        const std::string path = dir;
        const size_t end = path.find_last_not_of('\\');
        const size_t before = end == std::string::npos ? end : path.find_last_of('\\', end);
        trace::Ask("GetDir " + std::to_string(which), trace::Quoted(path.substr(before + 1)));
    }
    return dir;
}

// The answer only says that the text reached MAXScript; what goes wrong in it is told on the
// listener, and stands in the trace as a value.
int eng_execute_script(const char* text) {
    trace::Script(text ? text : "");
    if (!text || Fails("ExecuteStringScript")) return 0;
    const world::ScriptResult result = world::RunScript(text);
    if (!result.ok) trace::Value(result.text);
    return 1;
}

void eng_listener_flush() {
    const std::string text = std::exchange(g_world.listener_text, {});
    if (!text.empty()) trace::Listener(text);
}
