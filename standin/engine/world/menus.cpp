// The menu manager's menus and the menu bar that is made of them.
#include <algorithm>

#include "standin/engine/input/control.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

// Command ids of the menu bar's entries: the host's own, then actions, counted anew at every
// rebuild.
constexpr UINT kFirstOwnCommand = 0x7000;
constexpr UINT kFirstActionCommand = 0xA000;

// Published by the host's maker: menus of others stand before it.
constexpr char kHelpMenuId[] = "cee8f758-2199-411b-81e7-d3ff4a80d143";

enum OwnCommand : UINT {
    kReset = kFirstOwnCommand,
    kExit,
    kUndo,
    kSelectAll,
    kSelectNone,
    kMove,
    kRotate,
    kScale,
    kSelectTool,
    kZoomExtents,
    kResetViews,
    kOpenVertexPaint,
    kOpenTrackView,
    kOpenSchematic,
    kOpenUnwrap,
    kPlay,
    kKeyMode,
    kAbout,
};

struct OwnEntry {
    const char* menu;
    const char* text;  // null: a separator
    UINT command;
};
constexpr OwnEntry kOwnEntries[] = {
    {"File", "Reset Views", kReset},
    {"File", nullptr, 0},
    {"File", "Exit", kExit},
    {"Edit", "Undo", kUndo},
    {"Edit", nullptr, 0},
    {"Edit", "Select Tool", kSelectTool},
    {"Edit", "Move", kMove},
    {"Edit", "Rotate", kRotate},
    {"Edit", "Scale", kScale},
    {"Edit", nullptr, 0},
    {"Edit", "Select All", kSelectAll},
    {"Edit", "Select None", kSelectNone},
    {"Tools", "Paint on Vertices", kOpenVertexPaint},
    {"Tools", "Unwrap Editor", kOpenUnwrap},
    {"Tools", "Schematic View", kOpenSchematic},
    {"Views", "Zoom Extents", kZoomExtents},
    {"Views", "Reset All Views", kResetViews},
    {"Animation", "Play", kPlay},
    {"Animation", "Key Mode", kKeyMode},
    {"Animation", "Track View", kOpenTrackView},
    {"Help", "About the Stand-in", kAbout},
};

std::string TitleOf(const eng_item& item) {
    if (item.separator) return "-";
    if (!item.title.empty()) return item.title;
    if (item.submenu) return item.submenu->title;
    // Without a title of its own an entry shows the action's menu text.
    char text[256] = "";
    if (item.has_action && item.table == g_world.plugin_table_id && g_world.plugin_table &&
        g_plugin_calls && g_plugin_calls->action_text)
        g_plugin_calls->action_text(g_world.plugin_table, item.action, 1, text, sizeof text);
    else if (const eng_action* action = FindAction(item.table, item.action))
        return action->name;
    return text;
}

bool IsPluginItem(const eng_item& item) {
    return item.has_action && g_world.plugin_table && item.table == g_world.plugin_table_id;
}

HMENU BuildPopup(const eng_menu& menu, UINT& next_command);

void Append(HMENU bar, eng_item& item, UINT& next_command) {
    if (item.separator) {
        AppendMenuA(bar, MF_SEPARATOR, 0, nullptr);
    } else if (item.submenu) {
        const HMENU popup = BuildPopup(*item.submenu, next_command);
        AppendMenuA(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), TitleOf(item).c_str());
    } else {
        if (item.has_action) item.command = next_command++;
        AppendMenuA(bar, MF_STRING, item.command, TitleOf(item).c_str());
    }
}

HMENU BuildPopup(const eng_menu& menu, UINT& next_command) {
    const HMENU popup = CreatePopupMenu();
    for (eng_item* item : menu.items)
        Append(popup, *item, next_command);
    return popup;
}

eng_item* ItemOfCommand(UINT command) {
    for (const auto& item : g_world.items)
        if (item->command == command && item->has_action) return item.get();
    return nullptr;
}

void RunOwnCommand(UINT command) {
    switch (command) {
        case kExit:
            PostMessageA(g_world.main, WM_CLOSE, 0, 0);
            input::NotePosted();
            break;
        case kUndo: Undo(); break;
        case kSelectAll:
            HoldBegin();
            SetSelection(LiveNodes());
            HoldAccept("Select");
            break;
        case kSelectNone:
            HoldBegin();
            SetSelection({});
            HoldAccept("Select");
            break;
        case kMove: ReplaceMode(1); break;
        case kRotate: ReplaceMode(2); break;
        case kScale: ReplaceMode(3); break;
        case kSelectTool: ReplaceMode(6); break;
        case kZoomExtents:
            if (g_world.active_view) ZoomExtents(*g_world.active_view, false);
            break;
        case kReset:
        case kResetViews: ResetViews(); break;
        case kOpenVertexPaint: OpenWindow("vertexpaint"); break;
        case kOpenTrackView: OpenWindow("trackview"); break;
        case kOpenSchematic: OpenWindow("schematic"); break;
        case kOpenUnwrap: OpenWindow("unwrap"); break;
        case kPlay: SetPlaying(!g_world.playing); break;
        case kKeyMode: ButtonCommand(*FindButton(50021), BN_CLICKED); break;
        case kAbout:
            // Only where there is somebody to answer it.
            if (g_world.options.visible)
                MessageBoxA(g_world.main,
                            "A stand-in for the host that KarvelMax runs in: windows, scene and\n"
                            "tools as far as the plug-in touches them.",
                            "About the Stand-in", MB_OK);
            break;
        default: break;
    }
}

void FrameAllViews() {
    for (eng_view& view : g_world.views)
        ZoomExtents(view, true);
}

void AddLines(const eng_menu& menu, const std::string& path, std::vector<std::string>& lines) {
    for (const eng_item* item : menu.items) {
        std::string line = path.empty() ? TitleOf(*item) : path + " / " + TitleOf(*item);
        if (item->submenu) {
            lines.push_back("menu " + line);
            AddLines(*item->submenu, line, lines);
            continue;
        }
        if (IsPluginItem(*item) && g_plugin_calls && g_plugin_calls->action_checked &&
            g_plugin_calls->action_checked(g_world.plugin_table, item->action))
            line += " checked";
        lines.push_back("menu " + line);
    }
}

}  // namespace

void CreateMenus() {
    auto bar = std::make_unique<eng_menu>();
    bar->title = "Main Menu Bar";
    bar->registered = true;
    g_world.main_menu = bar.get();
    g_world.menus.push_back(std::move(bar));
    g_world.menu_contexts.insert(1);
    eng_menu* open = nullptr;
    for (const OwnEntry& entry : kOwnEntries) {
        if (!open || open->title != entry.menu) {
            auto menu = std::make_unique<eng_menu>();
            menu->title = entry.menu;
            menu->registered = true;
            open = menu.get();
            g_world.menus.push_back(std::move(menu));
            auto item = std::make_unique<eng_item>();
            item->submenu = open;
            if (open->title == "Help") item->id = kHelpMenuId;
            g_world.main_menu->items.push_back(item.get());
            g_world.items.push_back(std::move(item));
        }
        auto item = std::make_unique<eng_item>();
        item->separator = entry.text == nullptr;
        if (entry.text) item->title = entry.text;
        item->command = entry.command;
        open->items.push_back(item.get());
        g_world.items.push_back(std::move(item));
    }
    UpdateMenuBar();
}

void LoadMenus() {
    constexpr int kMenusAreLoading = 0x120;
    if (!g_notify) return;
    g_world.menus_loading = true;
    for (const auto& one : std::vector(g_world.notifications)) {
        if (one.code != kMenusAreLoading) continue;
        trace::In("notification " + std::to_string(one.code));
        g_notify(one.procedure, one.own, one.code);
        trace::Out("0");
    }
    g_world.menus_loading = false;
    UpdateMenuBar();
}

void DestroyMenus() {
    if (g_world.menu_bar) DestroyMenu(g_world.menu_bar);
    g_world.menu_bar = nullptr;
}

void UpdateMenuBar() {
    const HMENU old = g_world.menu_bar;
    UINT next_command = kFirstActionCommand;
    g_world.menu_bar = CreateMenu();
    for (eng_item* item : g_world.main_menu->items)
        Append(g_world.menu_bar, *item, next_command);
    if (g_world.main) SetMenu(g_world.main, g_world.menu_bar);
    if (old) DestroyMenu(old);
}

bool MenuCommand(UINT command) {
    if (command >= kReset && command <= kAbout) {
        RunOwnCommand(command);
        return true;
    }
    const eng_item* item = ItemOfCommand(command);
    if (!item) return false;
    NoteCommand("menu " + TitleOf(*item));
    if (IsPluginItem(*item))
        RunPluginAction(item->action);
    else if (eng_action* action = FindAction(item->table, item->action))
        ExecuteAction(*action);
    return true;
}

bool HostKey(int virtual_key, bool repeated) {
    const bool ctrl = input::ThreadKeyState(VK_CONTROL) < 0;
    if (ctrl) {
        if (virtual_key != 'Z') return false;
        Undo();
        return true;
    }
    switch (virtual_key) {
        case 'Q': RunOwnCommand(kSelectTool); return true;
        case 'W': RunOwnCommand(kMove); return true;
        case 'E': RunOwnCommand(kRotate); return true;
        case 'R': RunOwnCommand(kScale); return true;
        case 'Z': FrameAllViews(); return true;
        case 'G':
            if (g_world.active_view && !repeated)
                g_world.active_view->grid = !g_world.active_view->grid;
            Redraw();
            return true;
        default: return false;
    }
}

// The host asks a menu's actions for their state when the menu opens.
void PrepareMenu(HMENU menu) {
    const int count = GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position) {
        const UINT command = GetMenuItemID(menu, position);
        const eng_item* item = command == 0 ? nullptr : ItemOfCommand(command);
        if (!item || !IsPluginItem(*item) || !g_plugin_calls) continue;
        const std::string id = std::to_string(item->action);
        trace::In("query checked " + id);
        const int checked = g_plugin_calls->action_checked(g_world.plugin_table, item->action);
        trace::Out(std::to_string(checked));
        trace::In("query enabled " + id);
        const int enabled = g_plugin_calls->action_enabled(g_world.plugin_table, item->action);
        trace::Out(std::to_string(enabled));
        CheckMenuItem(menu, position, MF_BYPOSITION | (checked ? MF_CHECKED : MF_UNCHECKED));
        EnableMenuItem(menu, position, MF_BYPOSITION | (enabled ? MF_ENABLED : MF_GRAYED));
    }
}

std::vector<std::string> MenuLines() {
    std::vector<std::string> lines;
    AddLines(*g_world.main_menu, "", lines);
    return lines;
}

}  // namespace world
