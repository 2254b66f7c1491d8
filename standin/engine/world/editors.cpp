// The editors with their panning and zooming clients, and the time slider's thumb.
#include <algorithm>
#include <cmath>
#include <tuple>

#include "standin/engine/input/input.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

constexpr double kZoomPerPixel = 0.005;
constexpr int kDragThreshold = 3;

enum class EditKind { kNone, kPan, kZoom, kEdit, kRegion };

struct EditDrag {
    EditKind kind = EditKind::kNone;
    HWND window = nullptr;
    unsigned button = 0;
    POINT start{};
    POINT last{};
    bool begun = false;
    Modifiers keys{};
    std::vector<std::vector<Key>> keys_before;  // of the selected tracks at the press
    UnwrapVertices vertices_before{};
};
EditDrag g_edit;

// Actions of the Unwrap editor.
constexpr int kUnwrapMove = 40007;
constexpr int kUnwrapMoveHorizontal = 40033;
constexpr int kUnwrapMoveVertical = 40034;
constexpr int kUnwrapRotate = 40008;
constexpr int kUnwrapScale = 40009;
constexpr int kUnwrapScaleHorizontal = 40035;
constexpr int kUnwrapScaleVertical = 40036;
constexpr int kUnwrapFreeform = 40087;
constexpr int kUnwrapLock = 40020;
constexpr int kTrackViewDragMode = 40328;
constexpr int kUnwrapTools[] = {kUnwrapMove,          kUnwrapMoveHorizontal, kUnwrapMoveVertical,
                                kUnwrapRotate,        kUnwrapScale,          kUnwrapScaleHorizontal,
                                kUnwrapScaleVertical, kUnwrapFreeform};

constexpr double kSheetOrigin = 160;  // in the canvas, from the left and from the top
constexpr double kVertexReach = 4;
constexpr double kDegreesPerPixel = 0.5;
constexpr double kScalePerPixel = 0.01;

// Where in the thumb it was taken hold of, or -1.
int g_thumb_grip = -1;

double FramesPerPixel(const Editor& editor) {
    RECT client{};
    GetClientRect(editor.client, &client);
    return (g_world.shown_to - g_world.shown_from) / std::max<int>(1, client.right);
}

// In the track view panning and zooming is about the shown times; the other editors have a sheet.
void PanEditor(Editor& editor, double dx, double dy) {
    editor.pan_x += dx;
    editor.pan_y += dy;
    if (editor.name == "trackview") {
        const double frames = dx * FramesPerPixel(editor);
        g_world.shown_from -= frames;
        g_world.shown_to -= frames;
    }
}

void ZoomEditor(Editor& editor, double dy) {
    const double factor = std::exp(-dy * kZoomPerPixel);
    editor.zoom = std::clamp(editor.zoom * factor, 0.001, 1000.0);
    if (editor.name == "trackview") {
        const double middle = (g_world.shown_from + g_world.shown_to) / 2;
        const double half =
            std::clamp((g_world.shown_to - g_world.shown_from) / 2 / factor, 0.5, 100000.0);
        g_world.shown_from = middle - half;
        g_world.shown_to = middle + half;
    }
}

// --- the Unwrap editor's vertices ---

bool IsUnwrap(const Editor& editor) {
    return editor.name == "unwrap";
}

bool IsUnwrapOn(int id) {
    const eng_action* action = FindAction(kUnwrapTable, id);
    return action && action->checked;
}

// The transform tool in use; 0 for none.
int UnwrapTool() {
    const auto* tool = std::find_if(std::begin(kUnwrapTools), std::end(kUnwrapTools), IsUnwrapOn);
    return tool == std::end(kUnwrapTools) ? 0 : *tool;
}

constexpr size_t kNoVertex = std::tuple_size_v<UnwrapVertices>;

size_t VertexAt(const Editor& editor, POINT point) {
    const UnwrapVertices& vertices = g_world.unwrap_vertices;
    const auto* found = std::find_if(vertices.begin(), vertices.end(), [&](const auto& vertex) {
        const Vector at = OnUnwrapCanvas(editor, vertex.at);
        return std::abs(at.x - point.x) <= kVertexReach && std::abs(at.y - point.y) <= kVertexReach;
    });
    return static_cast<size_t>(found - vertices.begin());
}

void SelectVertices(const UnwrapVertices& vertices) {
    if (vertices == g_world.unwrap_vertices) return;
    HoldBegin();
    g_world.unwrap_vertices = vertices;
    HoldAccept("Select");
}

// Ctrl toggles the vertex of a click and, as is assumed, adds a region; that Alt takes away is
// assumed as well. A plain click or region picks.
void ClickVertex(size_t hit, Modifiers keys) {
    UnwrapVertices vertices = g_world.unwrap_vertices;
    if (keys.ctrl) {
        vertices[hit].selected = !vertices[hit].selected;
    } else if (keys.alt) {
        vertices[hit].selected = false;
    } else {
        for (size_t i = 0; i < vertices.size(); ++i)
            vertices[i].selected = i == hit;
    }
    SelectVertices(vertices);
}

void SelectRegion(const Editor& editor) {
    const auto [left, right] = std::minmax(g_edit.start.x, g_edit.last.x);
    const auto [top, bottom] = std::minmax(g_edit.start.y, g_edit.last.y);
    UnwrapVertices vertices = g_world.unwrap_vertices;
    for (UnwrapVertex& vertex : vertices) {
        const Vector at = OnUnwrapCanvas(editor, vertex.at);
        const bool inside = at.x >= left && at.x <= right && at.y >= top && at.y <= bottom;
        if (g_edit.keys.ctrl)
            vertex.selected = vertex.selected || inside;
        else if (g_edit.keys.alt)
            vertex.selected = vertex.selected && !inside;
        else
            vertex.selected = inside;
    }
    SelectVertices(vertices);
}

// With the lock on a press anywhere drags what is selected. Else it takes the vertex under it, or
// begins a region where there is none.
EditKind PressOnSheet(const Editor& editor, POINT point) {
    const bool tool = UnwrapTool() != 0;
    if (IsUnwrapOn(kUnwrapLock)) return tool ? EditKind::kEdit : EditKind::kNone;
    const size_t hit = VertexAt(editor, point);
    if (hit == kNoVertex) return EditKind::kRegion;
    const bool drags = tool && !g_edit.keys.ctrl && !g_edit.keys.alt;
    if (!drags || !g_world.unwrap_vertices[hit].selected) ClickVertex(hit, g_edit.keys);
    return drags ? EditKind::kEdit : EditKind::kNone;
}

Vector CenterOfSelected(const UnwrapVertices& vertices) {
    Vector sum;
    int count = 0;
    for (const UnwrapVertex& vertex : vertices) {
        if (!vertex.selected) continue;
        sum = sum + vertex.at;
        ++count;
    }
    return count ? sum * (1.0 / count) : sum;
}

// Where a tool brings a point, by the pixels of the drag. Freeform is a move here: its box with
// corners to scale and turn by is not drawn.
Vector Transformed(const Editor& editor, int tool, Vector from, Vector center, POINT by) {
    const Vector moved{by.x / editor.zoom, by.y / editor.zoom, 0};
    const double factor = std::exp(-by.y * kScalePerPixel);
    const Vector arm = from - center;
    switch (tool) {
        case kUnwrapMoveHorizontal: return {from.x + moved.x, from.y, 0};
        case kUnwrapMoveVertical: return {from.x, from.y + moved.y, 0};
        case kUnwrapRotate:
            return center + Turned(arm, Vector{0, 0, 1}, (by.x - by.y) * kDegreesPerPixel);
        case kUnwrapScale: return center + arm * factor;
        case kUnwrapScaleHorizontal: return {center.x + arm.x * factor, from.y, 0};
        case kUnwrapScaleVertical: return {from.x, center.y + arm.y * factor, 0};
        default: return from + moved;
    }
}

void TransformVertices(const Editor& editor, POINT by) {
    const int tool = UnwrapTool();
    const Vector center = CenterOfSelected(g_edit.vertices_before);
    g_world.unwrap_vertices = g_edit.vertices_before;
    for (UnwrapVertex& vertex : g_world.unwrap_vertices)
        if (vertex.selected) vertex.at = Transformed(editor, tool, vertex.at, center, by);
}

// A right press goes back to the tool before. (Where there is none the host opens a menu, a loop of
// its own that a scenario could not leave.)
void ReturnToToolBefore() {
    eng_action* before = FindAction(kUnwrapTable, g_world.unwrap_tool_before);
    if (before && !before->checked) ExecuteAction(*before);
}

// --- drags ---

// Left drags move what is selected: keys in time, texture corners on their sheet.
void BeginEdit(const Editor& editor) {
    g_edit.begun = true;
    HoldBegin();
    g_edit.keys_before.clear();
    for (Track* track : g_world.selected_tracks)
        g_edit.keys_before.push_back(KeysOf(*track));
    g_edit.vertices_before = g_world.unwrap_vertices;
    NoteCommand("edit in " + std::string(editor.name));
}

void MoveEdit(const Editor& editor, POINT point) {
    if (editor.name == "trackview") {
        const int frames =
            static_cast<int>(std::lround((point.x - g_edit.start.x) * FramesPerPixel(editor)));
        for (size_t i = 0; i < g_world.selected_tracks.size() && i < g_edit.keys_before.size();
             ++i) {
            std::vector<Key> keys = g_edit.keys_before[i];
            for (Key& key : keys)
                if (key.selected) key.frame += frames;
            KeysOf(*g_world.selected_tracks[i]) = std::move(keys);
        }
    } else if (IsUnwrap(editor)) {
        TransformVertices(editor, {point.x - g_edit.start.x, point.y - g_edit.start.y});
    }
}

void EndEdit(bool accept) {
    const Editor* editor = EditorOf(g_edit.window);
    if (g_edit.kind == EditKind::kRegion && accept && editor) SelectRegion(*editor);
    if (g_edit.kind == EditKind::kEdit && g_edit.begun) {
        if (accept)
            HoldAccept("Edit");
        else
            HoldCancel();
    }
    g_edit = {};
    Redraw();
}

// What the middle button does is settled at the press, by the keys that are down then. Ctrl counts
// by the message as well, Alt is in no message.
EditKind PressMiddle(const Editor& editor, Modifiers keys) {
    return keys.ctrl && (keys.alt || !editor.alt_for_zoom) ? EditKind::kZoom : EditKind::kPan;
}

void PressInEditor(Editor& editor, unsigned button, WPARAM flags, POINT point) {
    PressIn(editor.client, button);
    // Not confirmed for the left and the right button: that they bring the editor to the front.
    if (button != MK_MBUTTON && input::Focus() != editor.client) input::SetFocus(editor.client);
    const bool editing = g_edit.kind == EditKind::kEdit || g_edit.kind == EditKind::kRegion;
    if (button == MK_RBUTTON && editing && g_edit.window == editor.client) {
        EndEdit(false);
        return;
    }
    if (g_edit.kind != EditKind::kNone) return;
    g_edit.keys = ModifiersOf(flags);
    EditKind kind = EditKind::kNone;
    if (button == MK_MBUTTON)
        kind = PressMiddle(editor, g_edit.keys);
    else if (button == MK_LBUTTON)
        kind = IsUnwrap(editor) ? PressOnSheet(editor, point) : EditKind::kEdit;
    else if (IsUnwrap(editor))
        ReturnToToolBefore();
    if (kind == EditKind::kNone) return;
    g_edit.kind = kind;
    g_edit.window = editor.client;
    g_edit.button = button;
    g_edit.start = g_edit.last = point;
}

void MoveInEditor(Editor& editor, POINT point) {
    if (g_edit.window != editor.client) return;
    const double dx = point.x - g_edit.last.x;
    const double dy = point.y - g_edit.last.y;
    g_edit.last = point;
    switch (g_edit.kind) {
        case EditKind::kPan: PanEditor(editor, dx, dy); break;
        case EditKind::kZoom: ZoomEditor(editor, dy); break;
        case EditKind::kEdit:
            if (!g_edit.begun && std::abs(point.x - g_edit.start.x) < kDragThreshold &&
                std::abs(point.y - g_edit.start.y) < kDragThreshold)
                return;
            if (!g_edit.begun) BeginEdit(editor);
            MoveEdit(editor, point);
            break;
        default: return;
    }
    Redraw();
}

void ReleaseInEditor(Editor& editor, unsigned button) {
    if (g_edit.window == editor.client && g_edit.button == button && g_edit.kind != EditKind::kNone)
        EndEdit(true);
    ReleaseIn(editor.client, button);
}

// The frame whose thumb place is nearest.
void DragThumb(POINT point) {
    RECT slider{}, thumb{};
    GetClientRect(g_world.time_slider, &slider);
    GetClientRect(g_world.thumb, &thumb);
    POINT in_slider = point;
    MapWindowPoints(g_world.thumb, g_world.time_slider, &in_slider, 1);
    const int room = slider.right - thumb.right;
    if (room <= 0) return;
    const double part = static_cast<double>(in_slider.x - g_thumb_grip) / room;
    const int first = g_world.range_start / kTicksPerFrame;
    const int last = g_world.range_end / kTicksPerFrame;
    const int frame = first + static_cast<int>(std::lround(part * (last - first)));
    SetTime(std::clamp(frame, first, last) * kTicksPerFrame);
}

}  // namespace

void CreateEditors() {
    g_world.editors = {{
        {"trackview", "TVTrackWindow", "Track View - Curve Editor", kTrackViewTable,
         kTrackViewDragMode, false},
        {"unwrap", "UnwrapView", "Edit UVWs", kUnwrapTable, kUnwrapLock, true},
        {"schematic", "SVGraphWindow", "Schematic View 1", 0, 0, false},
    }};
    g_world.unwrap_vertices = {
        {{{-60, -60, 0}}, {{60, -60, 0}}, {{90, 0, 0}}, {{60, 60, 0}}, {{-60, 60, 0}}}};
}

bool EditorTakesAction(const eng_action& action) {
    return std::all_of(g_world.editors.begin(), g_world.editors.end(), [&](const Editor& editor) {
        const bool needs_front =
            editor.front_action && editor.table == action.table && editor.front_action == action.id;
        return !needs_front || (editor.frame && editor.frame == GetActiveWindow());
    });
}

void ChooseUnwrapTool(const eng_action& chosen) {
    const auto is_tool = [&](int id) { return chosen.table == kUnwrapTable && chosen.id == id; };
    if (std::none_of(std::begin(kUnwrapTools), std::end(kUnwrapTools), is_tool)) return;
    const int before = UnwrapTool();
    if (before && before != chosen.id) g_world.unwrap_tool_before = before;
    for (const int id : kUnwrapTools)
        FindAction(kUnwrapTable, id)->checked = false;
}

Vector OnUnwrapCanvas(const Editor& editor, Vector sheet) {
    return {kSheetOrigin + editor.pan_x + sheet.x * editor.zoom,
            kSheetOrigin + editor.pan_y + sheet.y * editor.zoom, 0};
}

Editor* EditorOf(HWND client) {
    if (!client) return nullptr;
    for (Editor& editor : g_world.editors)
        if (editor.client == client) return &editor;
    return nullptr;
}

LRESULT CALLBACK EditorProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (Editor* editor = EditorOf(window)) {
        const POINT point = PointOf(lparam);
        switch (message) {
            case WM_LBUTTONDOWN: PressInEditor(*editor, MK_LBUTTON, wparam, point); return 0;
            case WM_MBUTTONDOWN: PressInEditor(*editor, MK_MBUTTON, wparam, point); return 0;
            case WM_RBUTTONDOWN: PressInEditor(*editor, MK_RBUTTON, wparam, point); return 0;
            case WM_MOUSEMOVE: MoveInEditor(*editor, point); return 0;
            case WM_LBUTTONUP: ReleaseInEditor(*editor, MK_LBUTTON); return 0;
            case WM_MBUTTONUP: ReleaseInEditor(*editor, MK_MBUTTON); return 0;
            case WM_RBUTTONUP: ReleaseInEditor(*editor, MK_RBUTTON); return 0;
            // A press on the canvas leaves what is in front there.
            case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
            case WM_PAINT: DrawWindow(window); return 0;
            case WM_ERASEBKGND: return 1;
            case WM_NCDESTROY:
                if (g_edit.window == window) EndEdit(true);
                ForgetPresses(window);
                editor->client = nullptr;
                if (editor->frame == window) editor->frame = nullptr;
                break;
            default: break;
        }
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

LRESULT CALLBACK EditorFrameProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (KeepsFromSystem(message, wparam, lparam)) return 0;
    switch (message) {
        case WM_NCDESTROY:
            for (Editor& editor : g_world.editors)
                if (editor.frame == window) editor.frame = nullptr;
            if (g_world.foreground == window) g_world.foreground = nullptr;
            break;
        default: break;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

LRESULT CALLBACK ThumbProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    // A press that the user makes on the thumb itself holds the mouse, so that the drag may leave
    // it. One that is sent while an event is handled goes with a mouse that is elsewhere.
    const auto press = [&](unsigned button) {
        if (trace::Depth() == 0) PressIn(window, button);
        if (g_thumb_grip < 0) g_thumb_grip = std::max<int>(0, PointOf(lparam).x);
        return 0;
    };
    const auto release = [&](unsigned button) {
        ReleaseIn(window, button);
        if (!IsPressedIn(window, MK_LBUTTON) && !IsPressedIn(window, MK_RBUTTON)) g_thumb_grip = -1;
        return 0;
    };
    switch (message) {
        case WM_LBUTTONDOWN: return press(MK_LBUTTON);
        case WM_RBUTTONDOWN: return press(MK_RBUTTON);
        case WM_LBUTTONUP: return release(MK_LBUTTON);
        case WM_RBUTTONUP: return release(MK_RBUTTON);
        case WM_MOUSEMOVE:
            if (g_thumb_grip >= 0) {
                const int before = g_world.time;
                DragThumb(PointOf(lparam));
                if (before != g_world.time && IsScrubKeyHeld()) NoteTry(Try::kScrub);
            }
            return 0;
        case WM_PAINT: DrawWindow(window); return 0;
        case WM_ERASEBKGND: return 1;
        case WM_NCDESTROY:
            g_thumb_grip = -1;
            ForgetPresses(window);
            if (g_world.thumb == window) g_world.thumb = nullptr;
            break;
        default: break;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

void PlaceThumb() {
    if (!g_world.thumb || !g_world.time_slider) return;
    RECT slider{}, thumb{};
    GetClientRect(g_world.time_slider, &slider);
    GetClientRect(g_world.thumb, &thumb);
    const int length = std::max(1, g_world.range_end - g_world.range_start);
    const double part =
        std::clamp(static_cast<double>(g_world.time - g_world.range_start) / length, 0.0, 1.0);
    const int x = static_cast<int>(std::lround(part * (slider.right - thumb.right)));
    SetWindowPos(g_world.thumb, nullptr, x, (slider.bottom - thumb.bottom) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    if (g_world.options.visible) InvalidateRect(g_world.thumb, nullptr, FALSE);
}

void FrameTrackViewTimes() {
    g_world.shown_from = g_world.range_start / static_cast<double>(kTicksPerFrame);
    g_world.shown_to = g_world.range_end / static_cast<double>(kTicksPerFrame);
    Redraw();
}

void FrameTrackViewValues() {
    Editor& editor = g_world.editors[0];
    editor.pan_y = 0;
    editor.zoom = 1;
    Redraw();
}

}  // namespace world
