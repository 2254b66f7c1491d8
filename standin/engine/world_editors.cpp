// The editors with their panning and zooming clients, and the time slider's thumb.
#include <algorithm>
#include <cmath>

#include "standin/engine/desk.h"
#include "standin/engine/trace.h"
#include "standin/engine/world_internal.h"

namespace world {

namespace {

constexpr double kZoomPerPixel = 0.005;
constexpr int kDragThreshold = 3;

enum class EditKind { kNone, kPan, kZoom, kEdit };

struct EditDrag {
    EditKind kind = EditKind::kNone;
    HWND window = nullptr;
    unsigned button = 0;
    POINT start{};
    POINT last{};
    bool begun = false;
    std::vector<std::vector<Key>> keys;  // of the selected tracks at the press
    Vector moved;
};
EditDrag g_edit;

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

// Left drags move what is selected: keys in time, texture corners on their sheet.
void BeginEdit(const Editor& editor) {
    g_edit.begun = true;
    HoldBegin();
    g_edit.keys.clear();
    for (Track* track : g_world.selected_tracks)
        g_edit.keys.push_back(KeysOf(*track));
    g_edit.moved = g_world.unwrap_moved;
    NoteDeed("edit in " + std::string(editor.name));
}

void MoveEdit(const Editor& editor, POINT point) {
    if (editor.name == "trackview") {
        const int frames =
            static_cast<int>(std::lround((point.x - g_edit.start.x) * FramesPerPixel(editor)));
        for (size_t i = 0; i < g_world.selected_tracks.size() && i < g_edit.keys.size(); ++i) {
            std::vector<Key> keys = g_edit.keys[i];
            for (Key& key : keys)
                if (key.selected) key.frame += frames;
            KeysOf(*g_world.selected_tracks[i]) = std::move(keys);
        }
    } else if (editor.name == "unwrap") {
        g_world.unwrap_moved = g_edit.moved + Vector{(point.x - g_edit.start.x) / editor.zoom,
                                                     (point.y - g_edit.start.y) / editor.zoom, 0};
    }
}

void EndEdit(bool accept) {
    if (g_edit.kind == EditKind::kEdit && g_edit.begun) {
        if (accept)
            HoldAccept("Edit");
        else
            HoldCancel();
    }
    g_edit = {};
    Redraw();
}

void PressInEditor(Editor& editor, unsigned button, WPARAM flags, POINT point) {
    PressIn(editor.client, button);
    if (desk::Focus() != editor.client) desk::SetFocus(editor.client);
    if (button == MK_RBUTTON && g_edit.kind == EditKind::kEdit && g_edit.window == editor.client) {
        EndEdit(false);
        return;
    }
    if (g_edit.kind != EditKind::kNone) return;
    if (button == MK_MBUTTON)
        g_edit.kind = (flags & MK_CONTROL) ? EditKind::kZoom : EditKind::kPan;
    else if (button == MK_LBUTTON)
        g_edit.kind = EditKind::kEdit;
    else
        return;
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
        {"trackview", "TVTrackWindow", "Track View - Curve Editor"},
        {"unwrap", "UnwrapView", "Edit UVWs"},
        {"schematic", "SVGraphWindow", "Schematic View 1"},
    }};
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
            case WM_PAINT: DrawWindow(window); return 0;
            case WM_ERASEBKGND: return 1;
            case WM_NCDESTROY:
                if (g_edit.window == window) EndEdit(true);
                ForgetPresses(window);
                editor->client = nullptr;
                break;
            default: break;
        }
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

LRESULT CALLBACK EditorFrameProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_SYSCOMMAND:
            // Alt alone would start the menu loop of the window's system menu and stop everything.
            if ((wparam & 0xFFF0) == SC_KEYMENU) return 0;
            break;
        case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
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
            if (g_thumb_grip >= 0) DragThumb(PointOf(lparam));
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
