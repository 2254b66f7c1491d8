// What `show` prints, and the balance at the end of a play.
#include <algorithm>

#include "standin/engine/intercept/faults.h"
#include "standin/engine/input/input.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

std::string JoinedNames(const std::vector<eng_node*>& nodes) {
    std::string text;
    for (const eng_node* node : nodes)
        text += " " + node->name;
    return text.empty() ? " none" : text;
}

void ShowCamera(const eng_view& view, std::vector<std::string>& lines) {
    const eng_view::Camera& camera = view.camera;
    lines.push_back("camera " + view.name + " rotation " + NumberText(camera.azimuth) + " " +
                    NumberText(camera.elevation) + " distance " + NumberText(camera.distance) +
                    " target " + VectorText(camera.target));
}

void ShowObjects(std::vector<std::string>& lines) {
    for (const eng_node* node : LiveNodes())
        lines.push_back("object " + node->name + " position " + VectorText(NodePosition(*node)) +
                        " rotation " + TripleText(EulerAngles(node->state.rotation)) + " scale " +
                        TripleText(node->state.scale) + " selected " +
                        (IsSelected(node) ? "1" : "0") + " hidden " +
                        (node->state.hidden ? "1" : "0"));
}

// Where the pivot and the body of each object stand in a view, in its client pixels.
void ShowPoints(const eng_view& view, std::vector<std::string>& lines) {
    const ViewBasis basis = BasisOf(view);
    for (const eng_node* node : LiveNodes()) {
        const Projected pivot = Project(basis, NodePosition(*node));
        const Projected body = Project(basis, NodeCenter(*node));
        lines.push_back("point " + view.name + " " + node->name + " pivot " + NumberText(pivot.x) +
                        "," + NumberText(pivot.y) + " body " + NumberText(body.x) + "," +
                        NumberText(body.y));
    }
}

std::string FramesText(int ticks) {
    return NumberText(ticks / static_cast<double>(kTicksPerFrame));
}

void ShowKeys(std::vector<std::string>& lines) {
    for (const auto& [name, track] : g_world.tracks) {
        if (track->node && !track->node->state.alive) continue;
        std::string line = "track " + name;
        for (const Key& key : KeysOf(*track))
            line += " " + std::to_string(key.frame) + (key.selected ? "*" : "");
        if (std::find(g_world.selected_tracks.begin(), g_world.selected_tracks.end(),
                      track.get()) != g_world.selected_tracks.end())
            line += " selected";
        lines.push_back(line);
    }
}

void ShowEditors(std::vector<std::string>& lines) {
    for (const Editor& editor : g_world.editors) {
        std::string line = "editor " + std::string(editor.name);
        line += editor.client ? " open" : " closed";
        line += " pan " + NumberText(editor.pan_x) + "," + NumberText(editor.pan_y) + " zoom " +
                NumberText(editor.zoom);
        if (editor.name == "trackview")
            line += " times " + NumberText(g_world.shown_from) + " " + NumberText(g_world.shown_to);
        if (editor.name == "unwrap") {
            line += " vertices";
            for (const UnwrapVertex& vertex : g_world.unwrap_vertices)
                line += " " + NumberText(vertex.at.x) + "," + NumberText(vertex.at.y) +
                        (vertex.selected ? "*" : "");
        }
        lines.push_back(line);
    }
}

std::string RectText(const RECT& rect) {
    return std::to_string(rect.left) + "," + std::to_string(rect.top) + " " +
           std::to_string(rect.right - rect.left) + "x" + std::to_string(rect.bottom - rect.top);
}

struct ControlList {
    HWND dialog;
    std::vector<std::string>* lines;
};

BOOL CALLBACK AddControl(HWND control, LPARAM parameter) {
    const auto& list = *reinterpret_cast<const ControlList*>(parameter);
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, list.dialog, reinterpret_cast<POINT*>(&place), 2);
    char class_name[64] = "";
    GetClassNameA(control, class_name, sizeof class_name);
    const LONG style = GetWindowLongA(control, GWL_STYLE);
    const LRESULT code = SendMessageA(control, WM_GETDLGCODE, 0, 0);
    // A picture's text is the number of its resource, behind a mark that is no character.
    char text[256] = "";
    if (!(code & DLGC_STATIC) || (style & SS_TYPEMASK) != SS_BITMAP)
        GetWindowTextA(control, text, sizeof text);
    const bool checkable = (code & DLGC_BUTTON) != 0;
    list.lines->push_back(
        "control " + Of(control) + " " + class_name + " " + RectText(place) +
        ((style & WS_VISIBLE) ? "" : " hidden") + ((style & WS_DISABLED) ? " disabled" : "") +
        (checkable && SendMessageA(control, BM_GETCHECK, 0, 0) == BST_CHECKED ? " on" : "") +
        (control == input::Focus() ? " focus" : "") + " " + trace::Quoted(text));
    return TRUE;
}

// The controls of an open dialog in their order, in pixels of its client area. `units` is what 400
// by 800 dialog units come to.
void ShowControls(const char* name, std::vector<std::string>& lines) {
    const HWND dialog = Find(name);
    if (!dialog) return;
    RECT outer{};
    RECT client{};
    RECT units{0, 0, 400, 800};
    GetWindowRect(dialog, &outer);
    GetClientRect(dialog, &client);
    MapDialogRect(dialog, &units);
    char title[256] = "";
    GetWindowTextA(dialog, title, sizeof title);
    lines.push_back(std::string("dialog ") + name + " " + RectText(outer) + " client " +
                    std::to_string(client.right) + "x" + std::to_string(client.bottom) + " units " +
                    std::to_string(units.right) + "x" + std::to_string(units.bottom) + " owner " +
                    Of(GetWindow(dialog, GW_OWNER)) + " " + trace::Quoted(title));
    ControlList list{dialog, &lines};
    EnumChildWindows(dialog, AddControl, reinterpret_cast<LPARAM>(&list));
}

}  // namespace

void SetFault(std::string_view name, bool on) {
    faults::Set(name, on);
    // No call but a pointer of the host's that plug-ins look at themselves.
    if (name == "the_listener" && g_script_calls) g_script_calls->show_listener(!on);
}

namespace {

std::string CommandText(int id, int what) {
    char text[256] = "";
    const bool known =
        g_plugin_calls->action_text(g_world.plugin_table, id, what, text, sizeof text) != 0;
    return known ? std::string("\"") + text + '"' : "none";
}

// The plug-in's table as a list of commands shows it: category, description, text on a button,
// icon.
void ShowCommands(std::vector<std::string>& lines) {
    if (!g_plugin_calls || !g_world.plugin_table) return;
    const int count = g_plugin_calls->action_count(g_world.plugin_table);
    for (int index = 0; index < count; ++index) {
        const int id = g_plugin_calls->action_id(g_world.plugin_table, index);
        const int icon = g_plugin_calls->action_icon(g_world.plugin_table, id);
        lines.push_back("command " + std::to_string(id) + ' ' + CommandText(id, 3) + ' ' +
                        CommandText(id, 2) + ' ' + CommandText(id, 0) + " icon " +
                        (icon < 0 ? "none" : CommandText(id, 4) + ' ' + std::to_string(icon)));
    }
}

}  // namespace

std::vector<std::string> Show(std::string_view what, std::string_view argument) {
    UpdatePlayback();
    std::vector<std::string> lines;
    if (what == "camera" || what == "points") {
        for (const eng_view& view : g_world.views)
            if (argument.empty() || argument == view.name)
                what == "camera" ? ShowCamera(view, lines) : ShowPoints(view, lines);
    } else if (what == "objects") {
        ShowObjects(lines);
    } else if (what == "selection") {
        lines.push_back("selection" + JoinedNames(g_world.selection));
    } else if (what == "modes") {
        std::string line = "modes";
        for (const eng_mode* mode : g_world.modes)
            line += " " + std::to_string(mode->id);
        lines.push_back(g_world.modes.empty() ? "modes none" : line);
    } else if (what == "time") {
        lines.push_back("time " + FramesText(g_world.time));
    } else if (what == "range") {
        lines.push_back("range " + FramesText(g_world.range_start) + " " +
                        FramesText(g_world.range_end));
    } else if (what == "actions") {
        for (const auto& [id, table] : g_world.tables)
            for (const auto& [number, action] : table->actions)
                if (IsAction(id, number))
                    lines.push_back("action " + std::to_string(id) + " " + std::to_string(number) +
                                    (ActionChecked(*action) ? " on" : " off"));
    } else if (what == "commands") {
        ShowCommands(lines);
    } else if (what == "views") {
        for (const eng_view& view : g_world.views)
            lines.push_back("view " + view.name + " " + ViewText(view.window) +
                            (view.locked ? " locked" : "") +
                            (&view == g_world.active_view ? " active" : ""));
    } else if (what == "editors") {
        ShowEditors(lines);
    } else if (what == "tracks") {
        ShowKeys(lines);
    } else if (what == "menu") {
        lines = MenuLines();
    } else if (what == "dialogs") {
        for (const HWND dialog : g_world.registered_dialogs)
            lines.push_back("dialog " + Of(dialog));
        if (lines.empty()) lines.push_back("dialog none");
    } else if (what == "controls") {
        ShowControls("options", lines);
        ShowControls("welcome", lines);
    } else if (what == "tried") {
        for (int i = 0; i < kTryCount; ++i)
            if (IsTried(static_cast<Try>(i)))
                lines.push_back(std::string("tried ") + trace::Quoted(kTryRows[i].what));
    } else if (what == "undo") {
        std::string line = "undo";
        for (const UndoRecord& record : g_world.undo)
            line += " \"" + record.name + "\"";
        lines.push_back(g_world.undo.empty() ? "undo none" : line);
    } else if (what == "sets") {
        for (const NamedSet& set : g_world.sets)
            lines.push_back("set \"" + set.name + "\"" + JoinedNames(set.nodes));
        if (lines.empty()) lines.push_back("set none");
    } else if (what == "buttons") {
        for (const auto& button : g_world.buttons) {
            std::string line = button->name + (button->window ? "" : " absent") +
                               (button->enabled ? "" : " disabled") +
                               (button->checked ? " on" : " off");
            if (button->id == 50016) line += " entry " + std::to_string(button->flyout_entry);
            lines.push_back(line);
        }
    } else if (what == "leaks") {
        for (const std::string& leak : Leaks())
            lines.push_back("leak " + leak);
        if (lines.empty()) lines.push_back("leak none");
    } else if (what == "capture") {
        lines.push_back("capture " + Of(input::Capture()));
    } else if (what == "state") {
        lines.push_back("subobject " + std::to_string(g_world.subobject_level));
        lines.push_back("snap " + std::to_string(g_world.snap));
        lines.push_back("constraint " + std::to_string(g_world.axis_constraint));
        lines.push_back("system " + std::to_string(g_world.coordinate_system));
        lines.push_back("keymode " + std::to_string(g_world.key_mode));
        lines.push_back("playing " + std::to_string(g_world.playing));
        lines.push_back("recorder " + std::string(g_world.macro_disabled > 0 ? "off" : "on"));
        lines.push_back("polytools " + std::to_string(g_world.sculpt_tool) + " " +
                        std::to_string(g_world.paint_deform_tool) + " " +
                        std::to_string(g_world.poly_shift));
    }
    return lines;
}

std::vector<std::string> Leaks() {
    std::vector<std::string> lines;
    const auto report = [&](int count, const char* what) {
        if (count != 0) lines.push_back(std::to_string(count) + " " + what);
    };
    report(g_world.views_out, "viewports not released");
    report(g_world.null_releases, "viewports released that were none");
    report(g_world.buttons_out, "custom buttons not released");
    report(g_world.redraw_stops, "redraw stops left");
    report(static_cast<int>(g_world.holds.size()), "undo records left open");
    report(g_world.macro_disabled, "macro recorder stops left");
    return lines;
}

void NoteCommand(std::string_view text) {
    if (!g_world.options.visible) return;
    g_world.last_commands.emplace_back(text);
    if (g_world.last_commands.size() > 5)
        g_world.last_commands.erase(g_world.last_commands.begin());
    if (g_world.status) InvalidateRect(g_world.status, nullptr, FALSE);
}

}  // namespace world
