// Pictures of the world: enough for a person to see what is going on.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "standin/engine/input/input.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

constexpr COLORREF kFace = RGB(68, 68, 68);
constexpr COLORREF kDark = RGB(48, 48, 50);
constexpr COLORREF kLight = RGB(225, 225, 225);
constexpr COLORREF kDim = RGB(140, 140, 140);
constexpr COLORREF kGrid = RGB(88, 88, 92);
constexpr COLORREF kAxisLine = RGB(30, 30, 32);
constexpr COLORREF kYellow = RGB(240, 200, 40);
constexpr COLORREF kBlue = RGB(60, 110, 180);
constexpr COLORREF kRed = RGB(230, 70, 70);
constexpr COLORREF kGreen = RGB(80, 210, 90);
constexpr COLORREF kSky = RGB(90, 140, 255);
constexpr double kNearest = 1;  // depth at which perspective lines are cut off

// An off-screen picture that is copied to the window at the end, so that nothing flickers.
class Canvas {
public:
    explicit Canvas(HWND window) : window_(window) {
        target_ = BeginPaint(window, &paint_);
        GetClientRect(window, &area);
        dc = CreateCompatibleDC(target_);
        bitmap_ = CreateCompatibleBitmap(target_, std::max<int>(1, area.right),
                                         std::max<int>(1, area.bottom));
        old_bitmap_ = SelectObject(dc, bitmap_);
        old_font_ = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
        SelectObject(dc, GetStockObject(DC_PEN));
        SelectObject(dc, GetStockObject(DC_BRUSH));
        SetBkMode(dc, TRANSPARENT);
    }
    ~Canvas() {
        BitBlt(target_, 0, 0, area.right, area.bottom, dc, 0, 0, SRCCOPY);
        SelectObject(dc, old_font_);
        SelectObject(dc, old_bitmap_);
        DeleteObject(bitmap_);
        DeleteDC(dc);
        EndPaint(window_, &paint_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    void Fill(RECT rect, COLORREF color) {
        SetDCBrushColor(dc, color);
        FillRect(dc, &rect, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }
    void Line(double x1, double y1, double x2, double y2, COLORREF color) {
        // Far outside the picture lines of any length cost time and overflow 16-bit drivers.
        constexpr double kFar = 16000;
        for (const double value : {x1, y1, x2, y2})
            if (!(std::abs(value) < kFar)) return;
        SetDCPenColor(dc, color);
        MoveToEx(dc, static_cast<int>(std::lround(x1)), static_cast<int>(std::lround(y1)), nullptr);
        LineTo(dc, static_cast<int>(std::lround(x2)), static_cast<int>(std::lround(y2)));
    }
    void Frame(RECT rect, COLORREF color) {
        SetDCBrushColor(dc, color);
        FrameRect(dc, &rect, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }
    void Text(int x, int y, const std::string& text, COLORREF color) {
        SetTextColor(dc, color);
        TextOutA(dc, x, y, text.c_str(), static_cast<int>(text.size()));
    }
    int WidthOf(const std::string& text) const {
        SIZE size{};
        GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &size);
        return size.cx;
    }
    void CenteredText(RECT rect, const std::string& text, COLORREF color) {
        SetTextColor(dc, color);
        DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &rect,
                  DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
    // The pointer's picture with its hot spot at this point.
    void Pointer(int x, int y) {
        const HCURSOR cursor = GetCursor();
        ICONINFO info{};
        if (!cursor || !GetIconInfo(cursor, &info)) return;
        DrawIconEx(dc, x - static_cast<int>(info.xHotspot), y - static_cast<int>(info.yHotspot),
                   cursor, 0, 0, 0, nullptr, DI_NORMAL);
        if (info.hbmMask) DeleteObject(info.hbmMask);
        if (info.hbmColor) DeleteObject(info.hbmColor);
    }

    HDC dc = nullptr;
    RECT area{};

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC target_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ old_bitmap_ = nullptr;
    HGDIOBJ old_font_ = nullptr;
};

// A line of the scene, cut where it would pass behind the eye.
void SceneLine(Canvas& canvas, const ViewBasis& basis, Vector a, Vector b, COLORREF color) {
    if (basis.perspective) {
        const double depth_a = Dot(a - basis.eye, basis.forward);
        const double depth_b = Dot(b - basis.eye, basis.forward);
        if (depth_a < kNearest && depth_b < kNearest) return;
        if (depth_a < kNearest)
            a = a + (b - a) * ((kNearest - depth_a) / (depth_b - depth_a));
        else if (depth_b < kNearest)
            b = b + (a - b) * ((kNearest - depth_b) / (depth_a - depth_b));
    }
    const Projected from = Project(basis, a);
    const Projected to = Project(basis, b);
    canvas.Line(from.x, from.y, to.x, to.y, color);
}

// The home grid lies on the ground, in the front view it stands upright.
void DrawGrid(Canvas& canvas, const eng_view& view, const ViewBasis& basis) {
    const bool upright =
        view.kind == ViewKind::kOrthographic && std::abs(view.camera.elevation) < 1;
    constexpr int kHalf = 10;
    constexpr double kStep = 20;
    for (int i = -kHalf; i <= kHalf; ++i) {
        const double at = i * kStep;
        const double end = kHalf * kStep;
        const COLORREF color = i == 0 ? kAxisLine : kGrid;
        if (upright) {
            SceneLine(canvas, basis, {-end, 0, at}, {end, 0, at}, color);
            SceneLine(canvas, basis, {at, 0, -end}, {at, 0, end}, color);
        } else {
            SceneLine(canvas, basis, {-end, at, 0}, {end, at, 0}, color);
            SceneLine(canvas, basis, {at, -end, 0}, {at, end, 0}, color);
        }
    }
}

struct Axis {
    Vector axis;
    COLORREF color;
    const char* name;
};
const Axis kAxes[] = {{{1, 0, 0}, kRed, "x"}, {{0, 1, 0}, kGreen, "y"}, {{0, 0, 1}, kSky, "z"}};

// At the pivot of what is selected: the gizmo with its arrow heads in a transform mode, when it is
// shown at all, else a plain tripod.
void DrawPivot(Canvas& canvas, const ViewBasis& basis, const eng_node& node) {
    const eng_action* gizmo_action = FindAction(0, 40105);
    const bool gizmo = gizmo_action && ActionChecked(*gizmo_action) && IsTransformMode(ModeId());
    const Vector pivot = NodePosition(node);
    const double length = PixelSize(basis, pivot) * (gizmo ? 56 : 20);
    const Projected from = Project(basis, pivot);
    for (const Axis& row : kAxes) {
        const Projected to = Project(basis, pivot + row.axis * length);
        const COLORREF color = gizmo ? row.color : kRed;
        canvas.Line(from.x, from.y, to.x, to.y, color);
        if (!gizmo) continue;
        const double size = std::hypot(to.x - from.x, to.y - from.y);
        if (size > 8) {
            const double ux = (to.x - from.x) / size, uy = (to.y - from.y) / size;
            for (const double side : {-4.0, -2.0, 2.0, 4.0})
                canvas.Line(to.x, to.y, to.x - ux * 12 - uy * side, to.y - uy * 12 + ux * side,
                            color);
        }
        canvas.Text(static_cast<int>(to.x) + 4, static_cast<int>(to.y) - 6, row.name, color);
    }
}

// Which way the world's axes go, in the corner.
void DrawTripod(Canvas& canvas, const ViewBasis& basis) {
    constexpr double kLength = 24;
    const double x = 34, y = canvas.area.bottom - 34;
    for (const Axis& row : kAxes) {
        const double dx = Dot(row.axis, basis.right) * kLength;
        const double dy = -Dot(row.axis, basis.up) * kLength;
        if (std::hypot(dx, dy) < 2) continue;
        canvas.Line(x, y, x + dx, y + dy, row.color);
        canvas.Text(static_cast<int>(x + dx * 1.3) - 3, static_cast<int>(y + dy * 1.3) - 7,
                    row.name, row.color);
    }
}

std::string ViewLabel(const eng_view& view) {
    if (view.locked) return "Spot001 (locked)";
    switch (view.kind) {
        case ViewKind::kPerspective: return "Perspective";
        case ViewKind::kUser: return "User";
        default: return view.camera.elevation > 45 ? "Top" : "Front";
    }
}

void DrawViewport(Canvas& canvas, const eng_view& view) {
    canvas.Fill(canvas.area, RGB(72, 72, 76));
    const ViewBasis basis = BasisOf(view);
    if (view.grid) DrawGrid(canvas, view, basis);
    for (const bool selected : {false, true})
        for (const eng_node* node : LiveNodes()) {
            if (node->state.hidden || IsSelected(node) != selected) continue;
            for (const auto& [from, to] : WireFrame(*node))
                SceneLine(canvas, basis, from, to, selected ? RGB(255, 255, 255) : node->color);
        }
    for (const eng_node* node : g_world.selection)
        if (!node->state.hidden) DrawPivot(canvas, basis, *node);
    DrawTripod(canvas, basis);
    const bool active = &view == g_world.active_view;
    canvas.Text(8, 6, "[+] [ " + ViewLabel(view) + " ] [ Wireframe ]", active ? kYellow : kLight);
    canvas.Frame(canvas.area, active ? kYellow : kDark);
    if (active) {
        RECT inner = canvas.area;
        InflateRect(&inner, -1, -1);
        canvas.Frame(inner, kYellow);
    }
}

void DrawTrackView(Canvas& canvas, const Editor& editor) {
    canvas.Fill(canvas.area, kDark);
    const double from = g_world.shown_from, to = g_world.shown_to;
    const auto x_of = [&](double frame) {
        return (frame - from) / std::max(1e-6, to - from) * canvas.area.right;
    };
    double step = 1;
    for (int i = 0; step * canvas.area.right / std::max(1e-6, to - from) < 40 && i < 24; ++i)
        step *= i % 3 == 1 ? 2.5 : 2;
    const double first = std::ceil(from / step) * step;
    const int marks = static_cast<int>(std::max(0.0, (to - first) / step)) + 1;
    for (int i = 0; i < marks; ++i) {
        const double frame = first + i * step;
        canvas.Line(x_of(frame), 20, x_of(frame), canvas.area.bottom, kGrid);
        canvas.Text(static_cast<int>(x_of(frame)) + 2, 24, NumberText(frame), kDim);
    }
    std::vector<const Track*> tracks(g_world.selected_tracks.begin(),
                                     g_world.selected_tracks.end());
    if (tracks.empty())
        for (const auto& [name, track] : g_world.tracks)
            tracks.push_back(track.get());
    double y = 70 + editor.pan_y;
    for (const Track* track : tracks) {
        const std::vector<Key>& keys = track->node ? track->node->state.keys : track->keys;
        const COLORREF color = track->node ? track->node->color : kLight;
        canvas.Text(6, static_cast<int>(y) - 20, track->name, color);
        double last_x = 0, last_y = y;
        for (size_t i = 0; i < keys.size(); ++i) {
            const double kx = x_of(keys[i].frame);
            const double ky = y + ((i % 2) ? 0 : 24) * editor.zoom;
            canvas.Line(last_x, i ? last_y : ky, kx, ky, color);
            const RECT box{static_cast<LONG>(kx) - 3, static_cast<LONG>(ky) - 3,
                           static_cast<LONG>(kx) + 4, static_cast<LONG>(ky) + 4};
            canvas.Fill(box, keys[i].selected ? RGB(255, 255, 255) : color);
            last_x = kx;
            last_y = ky;
        }
        if (!keys.empty()) canvas.Line(last_x, last_y, canvas.area.right, last_y, color);
        y += 60 * editor.zoom;
    }
    const double now = x_of(g_world.time / static_cast<double>(kTicksPerFrame));
    canvas.Line(now, 20, now, canvas.area.bottom, kYellow);
}

// A sheet of squares that the editor's panning and zooming shifts.
void DrawSheet(Canvas& canvas, const Editor& editor) {
    canvas.Fill(canvas.area, kDark);
    const double cell = 32 * editor.zoom;
    if (cell >= 4) {
        const double left = std::fmod(editor.pan_x, cell);
        const double top = std::fmod(editor.pan_y, cell);
        const int lines = static_cast<int>(std::max(canvas.area.right, canvas.area.bottom) / cell);
        for (int i = 0; i <= lines + 1; ++i) {
            canvas.Line(left + i * cell, 0, left + i * cell, canvas.area.bottom, kGrid);
            canvas.Line(0, top + i * cell, canvas.area.right, top + i * cell, kGrid);
        }
    }
}

void DrawUnwrap(Canvas& canvas, const Editor& editor) {
    DrawSheet(canvas, editor);
    const UnwrapVertices& vertices = g_world.unwrap_vertices;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const Vector from = OnUnwrapCanvas(editor, vertices[i].at);
        const Vector to = OnUnwrapCanvas(editor, vertices[(i + 1) % vertices.size()].at);
        canvas.Line(from.x, from.y, to.x, to.y, kLight);
    }
    for (const UnwrapVertex& vertex : vertices) {
        const Vector at = OnUnwrapCanvas(editor, vertex.at);
        canvas.Fill({static_cast<LONG>(at.x) - 3, static_cast<LONG>(at.y) - 3,
                     static_cast<LONG>(at.x) + 4, static_cast<LONG>(at.y) + 4},
                    vertex.selected ? kRed : kBlue);
    }
    const auto& actions = g_world.tables[kUnwrapTable]->actions;
    std::string state;
    for (const auto& [id, action] : actions)
        if (action->checked) state += (state.empty() ? "" : ", ") + std::string(action->name);
    canvas.Text(6, 22, state, kYellow);
}

void DrawSchematic(Canvas& canvas, const Editor& editor) {
    DrawSheet(canvas, editor);
    double x = 30, y = 60;
    for (const eng_node* node : LiveNodes()) {
        const double left = x * editor.zoom + editor.pan_x;
        const double top = y * editor.zoom + editor.pan_y;
        const RECT box{static_cast<LONG>(left), static_cast<LONG>(top),
                       static_cast<LONG>(left + 110 * editor.zoom),
                       static_cast<LONG>(top + 40 * editor.zoom)};
        canvas.Fill(box, IsSelected(node) ? RGB(210, 210, 210) : node->color);
        canvas.CenteredText(box, node->name, IsSelected(node) ? RGB(0, 0, 0) : kLight);
        x += 150;
        if (x > 250) {
            x = 30;
            y += 70;
        }
    }
}

void DrawEditor(Canvas& canvas, const Editor& editor) {
    if (editor.name == "trackview")
        DrawTrackView(canvas, editor);
    else if (editor.name == "unwrap")
        DrawUnwrap(canvas, editor);
    else
        DrawSchematic(canvas, editor);
    canvas.Fill({0, 0, canvas.area.right, 18}, kFace);
    canvas.Text(6, 2,
                std::string(editor.title) + "   pan " + NumberText(std::round(editor.pan_x)) + "," +
                    NumberText(std::round(editor.pan_y)) + "   zoom " + NumberText(editor.zoom),
                kLight);
}

std::string ModeName(int id) {
    struct Row {
        int id;
        const char* name;
    };
    static constexpr Row kRows[] = {
        {1, "Move"},
        {2, "Rotate"},
        {3, "Scale"},
        {4, "Uniform scale"},
        {5, "Squash"},
        {6, "Select"},
        {7, "Move sub-object"},
        {8, "Rotate sub-object"},
        {9, "Scale sub-object"},
        {10, "Uniform scale sub-object"},
        {11, "Squash sub-object"},
        {12, "Select sub-object"},
        {200, "Zoom"},
        {202, "Pan"},
        {203, "Rotate view"},
        {300, "Playback"},
        {kPainterMode, "Painter"},
        {kVertexPaintMode, "Vertex paint"},
        {9247, "Sculpt"},
        {66510, "Create face (mesh)"},
        {69632, "Create edge (poly)"},
        {69633, "Create face (poly)"},
        {65743, "Create patch / cross insert"},
        {kNoMode, "none"},
    };
    for (const Row& row : kRows)
        if (row.id == id) return row.name;
    return "mode";
}

void DrawStatus(Canvas& canvas) {
    canvas.Fill(canvas.area, kFace);
    std::string stack;
    for (const eng_mode* mode : g_world.modes)
        stack += " " + std::to_string(mode->id);
    canvas.Text(8, 2,
                "Mode: " + ModeName(ModeId()) +
                    (ModeId() == kNoMode ? "" : " (" + std::to_string(ModeId()) + ")") +
                    "     Stack:" + (stack.empty() ? " empty" : stack) +
                    "     Selected: " + std::to_string(SelectedCount()),
                kLight);
    struct Held {
        int key;
        const char* name;
    };
    static constexpr Held kHeld[] = {{VK_MENU, "Alt"},
                                     {VK_CONTROL, "Ctrl"},
                                     {VK_SHIFT, "Shift"},
                                     {VK_LBUTTON, "Left button"},
                                     {VK_MBUTTON, "Middle button"},
                                     {VK_RBUTTON, "Right button"}};
    std::string held;
    for (const Held& row : kHeld)
        if (input::KeyDown(row.key)) held += (held.empty() ? "" : " + ") + std::string(row.name);
    canvas.Text(8, 17, "Held: " + (held.empty() ? std::string("nothing") : held), kYellow);
    std::string last;
    for (const std::string& command : g_world.last_commands)
        last += (last.empty() ? "" : "  |  ") + command;
    canvas.Text(8, 32, "Last: " + last, kDim);
    const RECT well{canvas.area.right - 110, 2, canvas.area.right - 8, canvas.area.bottom - 2};
    canvas.Fill(well, RGB(150, 150, 150));
    canvas.Text(well.left + 4, well.top + 2, "Cursor", RGB(20, 20, 20));
    canvas.Pointer(well.left + 70, (well.top + well.bottom) / 2);
}

void DrawButton(Canvas& canvas, const eng_button& button) {
    canvas.Fill(canvas.area, button.checked ? kBlue : button.pressed ? kDark : RGB(90, 90, 90));
    canvas.Frame(canvas.area, kDark);
    std::string label = button.label;
    if (button.id == 50016) label = button.flyout_entry == 0 ? "Zoom ext. all" : "Zoom ext. sel.";
    canvas.CenteredText(canvas.area, label, button.enabled ? kLight : RGB(120, 120, 120));
}

int FrameToX(int frame, int width) {
    const int first = g_world.range_start / kTicksPerFrame;
    const int last = std::max(first + 1, g_world.range_end / kTicksPerFrame);
    return 40 + static_cast<int>(std::lround(static_cast<double>(frame - first) * (width - 80) /
                                             (last - first)));
}

void DrawTimes(Canvas& canvas, bool with_keys) {
    canvas.Fill(canvas.area, with_keys ? kDark : kFace);
    const int first = g_world.range_start / kTicksPerFrame;
    const int last = g_world.range_end / kTicksPerFrame;
    if (!with_keys) {
        canvas.Fill(
            {4, canvas.area.bottom / 2 - 2, canvas.area.right - 4, canvas.area.bottom / 2 + 2},
            kDark);
        return;
    }
    const int step = std::max(1, (last - first) / 20);
    for (int frame = first; frame <= last; frame += step) {
        const int x = FrameToX(frame, canvas.area.right);
        canvas.Line(x, 0, x, 8, kDim);
        canvas.Text(x - 6, 12, std::to_string(frame), kDim);
    }
    for (const eng_node* node : g_world.selection)
        for (const Key& key : node->state.keys) {
            const int x = FrameToX(key.frame, canvas.area.right);
            canvas.Fill({x - 3, 1, x + 4, 11}, key.selected ? RGB(255, 255, 255) : kRed);
        }
    const int now = FrameToX(g_world.time / kTicksPerFrame, canvas.area.right);
    canvas.Line(now, 0, now, canvas.area.bottom, kYellow);
}

void DrawThumb(Canvas& canvas) {
    canvas.Fill(canvas.area, RGB(110, 110, 110));
    canvas.Frame(canvas.area, kLight);
    canvas.CenteredText(canvas.area,
                        std::to_string(g_world.time / kTicksPerFrame) + " / " +
                            std::to_string(g_world.range_end / kTicksPerFrame),
                        kLight);
}

// Panels show their title in a bar of their own.
void DrawPanel(Canvas& canvas, HWND window) {
    canvas.Fill(canvas.area, kFace);
    canvas.Frame(canvas.area, kDark);
    char title[128] = "";
    GetWindowTextA(window, title, sizeof title);
    if (!*title || IsToolbar(window)) return;
    canvas.Fill({0, 0, canvas.area.right, 20}, kDark);
    canvas.Text(8, 3, title, kLight);
}

// What there is to try, and below it the keys. On a low screen each takes one line, and the keys
// are on the terminal only.
void DrawTry(Canvas& canvas) {
    constexpr int kLine = 12;
    const int keys = static_cast<int>(g_world.options.keys.size());
    const bool roomy = canvas.area.bottom >= 24 + kTryCount * 27 + 4 + keys * kLine;
    const int row_height = roomy ? 27 : 15;
    int y = 24;
    for (int i = 0; i < kTryCount; ++i) {
        const TryRow& row = kTryRows[i];
        const bool done = IsTried(static_cast<Try>(i));
        const RECT box{6, y + 2, 17, y + 13};
        canvas.Fill(box, done ? kGreen : kDark);
        canvas.Frame(box, kDim);
        if (done) {
            canvas.Line(8, y + 7, 11, y + 10, RGB(0, 0, 0));
            canvas.Line(11, y + 10, 15, y + 4, RGB(0, 0, 0));
        }
        canvas.Text(23, y, row.what, done ? kGreen : kLight);
        if (roomy)
            canvas.Text(23, y + kLine, row.how, kDim);
        else
            canvas.Text(29 + canvas.WidthOf(row.what), y, row.how, kDim);
        y += row_height;
    }
    if (!roomy) return;
    y += 2;
    canvas.Line(6, y, canvas.area.right - 6, y, kDim);
    for (const std::string& line : g_world.options.keys) {
        y += kLine;
        canvas.Text(6, y - 10, line, kLight);
    }
}

// Pictures of the screen come without the system's pointer.
void DrawPointer(Canvas& canvas, HWND window) {
    if (!g_world.options.draw_pointer) return;
    const POINT at = input::ToClient(window, input::Cursor());
    if (PtInRect(&canvas.area, at)) canvas.Pointer(at.x, at.y);
}

}  // namespace

void DrawWindow(HWND window) {
    if (!g_world.options.visible || !g_world.created) {
        ValidateRect(window, nullptr);
        return;
    }
    Canvas canvas(window);
    if (const eng_view* view = ViewOf(window))
        DrawViewport(canvas, *view);
    else if (const Editor* editor = EditorOf(window))
        DrawEditor(canvas, *editor);
    else if (const eng_button* button = ButtonOf(window))
        DrawButton(canvas, *button);
    else if (window == g_world.status)
        DrawStatus(canvas);
    else if (window == g_world.time_slider || window == g_world.track_bar)
        DrawTimes(canvas, window == g_world.track_bar);
    else if (window == g_world.thumb)
        DrawThumb(canvas);
    else if (window == g_world.main)
        canvas.Fill(canvas.area, kFace);
    else
        DrawPanel(canvas, window);
    if (window == g_world.try_panel) DrawTry(canvas);
    DrawPointer(canvas, window);
}

}  // namespace world
