// Viewports: their cameras, what is under a point, and what the mouse does in them.
#include <algorithm>
#include <cmath>
#include <limits>

#include "standin/engine/input/input.h"
#include "standin/engine/input/control.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

constexpr double kFieldOfView = 45;       // degrees, vertical
constexpr double kDegreesPerPixel = 0.5;  // orbiting and turning
constexpr double kZoomPerPixel = 0.005;
constexpr double kFastZoomPerPixel = 0.015;
constexpr double kScalePerPixel = 0.01;
constexpr int kDragThreshold = 3;  // pixels before a press becomes a drag

// Constraint codes of the host.
enum Axis { kAxisYZ, kAxisZX, kAxisXY, kAxisX, kAxisY, kAxisZ };
constexpr int kScreenSystem = 1;
constexpr int kLocalSystem = 4;

enum class DragKind { kNone, kOrbit, kZoom, kPan, kTransform, kClick };

// What a button that went down in a viewport has set going. There is one mouse, so there is one.
struct Drag {
    DragKind kind = DragKind::kNone;
    HWND window = nullptr;
    unsigned button = 0;
    POINT start{};
    POINT last{};
    int mode = 0;
    eng_view::Camera camera{};  // at the press
    bool quick = false;         // the hand holds the middle button
    bool begun = false;         // moved past the threshold
    bool clone = false;         // Shift was down at the press
    bool holding = false;       // an undo record is open
    bool deselect = false;      // a press on nothing: without a move it clears the selection
    std::vector<NodeState> before;
    std::vector<eng_node*> nodes;
    Vector pivot;
};
Drag g_drag;

struct Axes {
    Vector x, y, z;
};

// The axes that constraints speak of. The "View" system is the screen's in orthographic views and
// the world's elsewhere.
Axes SystemAxes(const eng_view& view, const ViewBasis& basis) {
    const int system = g_world.coordinate_system;
    if (system == kScreenSystem || (system == 0 && view.kind == ViewKind::kOrthographic))
        return {basis.right, basis.up, basis.forward * -1};
    if (system >= kLocalSystem && !g_world.selection.empty()) {
        const Rotation& r = g_world.selection.front()->state.rotation;
        return {r.x, r.y, r.z};
    }
    return {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
}

Vector SelectionPivot() {
    Vector sum;
    if (g_world.selection.empty()) return sum;
    for (const eng_node* node : g_world.selection)
        sum = sum + NodePosition(*node);
    return sum * (1.0 / static_cast<double>(g_world.selection.size()));
}

// The displacement along the constrained axes whose picture on the screen is (dx, dy) pixels, seen
// at `pivot`. An axis that points at the viewer cannot be seen to move and is left out.
Vector Displacement(const eng_view& view, Vector pivot, double dx, double dy) {
    const ViewBasis basis = BasisOf(view);
    const double pixel = PixelSize(basis, pivot);
    const Axes axes = SystemAxes(view, basis);
    std::vector<Vector> free;
    switch (g_world.axis_constraint) {
        case kAxisYZ: free = {axes.y, axes.z}; break;
        case kAxisZX: free = {axes.z, axes.x}; break;
        case kAxisX: free = {axes.x}; break;
        case kAxisY: free = {axes.y}; break;
        case kAxisZ: free = {axes.z}; break;
        default: free = {axes.x, axes.y}; break;
    }
    const double right = dx * pixel;
    const double up = -dy * pixel;
    std::erase_if(free, [&](const Vector& axis) {
        return std::hypot(Dot(axis, basis.right), Dot(axis, basis.up)) < 1e-3;
    });
    if (free.size() == 2) {
        const double a = Dot(free[0], basis.right), b = Dot(free[1], basis.right);
        const double c = Dot(free[0], basis.up), d = Dot(free[1], basis.up);
        const double determinant = a * d - b * c;
        if (std::abs(determinant) > 1e-3)
            return free[0] * ((right * d - b * up) / determinant) +
                   free[1] * ((a * up - right * c) / determinant);
        free.resize(1);
    }
    if (free.empty()) return {};
    const double a = Dot(free[0], basis.right), c = Dot(free[0], basis.up);
    return free[0] * ((right * a + up * c) / (a * a + c * c));
}

// Turning goes about the constrained axis; with a plane, about the axis that stands on it.
Vector TurningAxis(const eng_view& view) {
    const Axes axes = SystemAxes(view, BasisOf(view));
    switch (g_world.axis_constraint) {
        case kAxisX:
        case kAxisYZ: return axes.x;
        case kAxisY:
        case kAxisZX: return axes.y;
        default: return axes.z;
    }
}

Vector ScaleFactors(int mode, double factor) {
    if (mode == 4 || mode == 10) return {factor, factor, factor};
    std::array<bool, 3> on{};
    switch (g_world.axis_constraint) {
        case kAxisYZ: on = {false, true, true}; break;
        case kAxisZX: on = {true, false, true}; break;
        case kAxisX: on = {true, false, false}; break;
        case kAxisY: on = {false, true, false}; break;
        case kAxisZ: on = {false, false, true}; break;
        default: on = {true, true, false}; break;
    }
    const bool squash = mode == 5 || mode == 11;
    // Squashing keeps the volume: what the constrained axes gain, the others lose.
    const int count = on[0] + on[1] + on[2];
    const double rest = squash ? std::pow(factor, -static_cast<double>(count) / (3 - count)) : 1;
    return {on[0] ? factor : rest, on[1] ? factor : rest, on[2] ? factor : rest};
}

const char* TransformName(int mode, bool clone) {
    if (clone) return "Clone Object";
    switch (mode) {
        case 1:
        case 7: return "Move";
        case 2:
        case 8: return "Rotate";
        default: return "Scale";
    }
}

// --- the drags ---

void Orbit(eng_view& view, double dx, double dy) {
    view.camera.azimuth = std::remainder(view.camera.azimuth - dx * kDegreesPerPixel, 360);
    view.camera.elevation = std::clamp(view.camera.elevation + dy * kDegreesPerPixel, -90.0, 90.0);
}

void Zoom(eng_view& view, double dy, bool fast) {
    const double rate = fast ? kFastZoomPerPixel : kZoomPerPixel;
    view.camera.distance = std::clamp(view.camera.distance * std::exp(dy * rate), 1.0, 100000.0);
}

// The point at the target's depth stays under the cursor.
void Pan(eng_view& view, double dx, double dy) {
    const ViewBasis basis = BasisOf(view);
    const double pixel = PixelSize(basis, view.camera.target);
    view.camera.target = view.camera.target - basis.right * (dx * pixel) + basis.up * (dy * pixel);
}

void BeginTransform(const eng_view& view) {
    g_drag.begun = true;
    g_drag.quick = input::AsyncDown(VK_MBUTTON);
    HoldBegin();
    g_drag.holding = true;
    if (g_drag.clone) {
        const std::vector<eng_node*> originals = g_world.selection;
        std::vector<eng_node*> copies;
        copies.reserve(originals.size());
        for (const eng_node* original : originals)
            copies.push_back(CloneNode(*original));
        SetSelection(copies);
    }
    g_drag.nodes = g_world.selection;
    g_drag.before.clear();
    for (const eng_node* node : g_drag.nodes)
        g_drag.before.push_back(node->state);
    g_drag.pivot = SelectionPivot();
    NoteCommand(std::string(TransformName(g_drag.mode, g_drag.clone)) + " in " + view.name);
}

void MoveTransform(const eng_view& view, POINT point) {
    const double dx = point.x - g_drag.start.x;
    const double dy = point.y - g_drag.start.y;
    for (size_t i = 0; i < g_drag.nodes.size(); ++i) {
        eng_node& node = *g_drag.nodes[i];
        const NodeState& before = g_drag.before[i];
        node.state = before;
        switch (g_drag.mode) {
            case 1:
            case 7:
                node.state.position = before.position + Displacement(view, g_drag.pivot, dx, dy);
                break;
            case 2:
            case 8:
                node.state.rotation =
                    Turned(before.rotation, TurningAxis(view), (dx - dy) * kDegreesPerPixel);
                break;
            default:
                node.state.scale =
                    Scaled(before.scale, ScaleFactors(g_drag.mode, std::exp(-dy * kScalePerPixel)));
                break;
        }
    }
}

void EndTransform(bool accept) {
    if (g_drag.holding) {
        if (accept)
            HoldAccept(TransformName(g_drag.mode, g_drag.clone));
        else
            HoldCancel();
    }
    if (accept && g_drag.begun && g_drag.quick)
        NoteTry(g_drag.clone ? Try::kClone : Try::kQuickTransform);
    g_drag = {};
    Redraw();
}

// Over when a button comes up, or when another drag takes its place.
void EndViewDrag(const eng_view& view) {
    if (view.camera == g_drag.camera) return;
    switch (g_drag.kind) {
        case DragKind::kOrbit: NoteViewDrag(Try::kOrbit); break;
        case DragKind::kZoom: NoteViewDrag(Try::kZoom); break;
        case DragKind::kPan: NoteViewDrag(Try::kPan); break;
        default: break;
    }
}

bool SelectionLocked() {
    const eng_action* lock = FindAction(0, 59231);
    return lock && ActionChecked(*lock);
}

// Not confirmed: a tutorial of the host has a Ctrl click on a selected object take it away, a later
// release's header has it add.
constexpr bool kCtrlClickTakesAway = false;

// Alt takes away, Shift turns over, Ctrl adds, a plain click picks one.
void ClickSelect(eng_node* hit, Modifiers keys) {
    if (SelectionLocked()) return;
    std::vector<eng_node*> nodes = g_world.selection;
    const bool was = hit && IsSelected(hit);
    if (keys.alt || keys.ctrl || keys.shift) {
        if (!hit) return;
        if (was && (keys.alt || keys.shift || kCtrlClickTakesAway))
            std::erase(nodes, hit);
        else if (!was && !keys.alt)
            nodes.push_back(hit);
    } else {
        nodes.clear();
        if (hit) nodes.push_back(hit);
    }
    if (nodes == g_world.selection) return;
    NoteCommand(hit ? "click on " + hit->name : std::string("click on nothing"));
    HoldBegin();
    SetSelection(nodes);
    HoldAccept("Select");
    if (input::AsyncDown(VK_CONTROL) || input::AsyncDown(VK_SHIFT)) NoteTry(Try::kModifierClick);
}

// --- messages ---

// Where there is a picture of the pointer: in the view modes it is the host's own.
void ShowPointer() {
    if (!g_world.options.visible) return;
    if (const HCURSOR cursor = HostCursor(ModeId())) SetCursor(cursor);
}

void PressLeft(eng_view& view, WPARAM flags, POINT point) {
    const int mode = ModeId();
    g_drag.mode = mode;
    if (mode == 200 || mode == 202) {
        if (!view.locked) g_drag.kind = mode == 200 ? DragKind::kZoom : DragKind::kPan;
        ShowPointer();
        return;
    }
    if (IsSelectMode(mode)) {
        g_drag.kind = DragKind::kClick;
        ClickSelect(HitTest(view, point), ModifiersOf(flags));
        return;
    }
    if (!IsTransformMode(mode)) return;
    g_drag.kind = DragKind::kTransform;
    g_drag.clone = (flags & MK_SHIFT) != 0;
    // With the selection locked the drag works wherever it begins; else a press on another object
    // takes that one.
    if (SelectionLocked()) return;
    eng_node* hit = HitTest(view, point);
    // Alt takes away here as well, and nothing is left to drag.
    if (hit && IsSelected(hit) && input::KeyDown(VK_MENU)) {
        g_drag.kind = DragKind::kClick;
        ClickSelect(hit, {true, false, false});
        return;
    }
    if (hit && !IsSelected(hit))
        ClickSelect(hit, {input::KeyDown(VK_MENU), (flags & MK_CONTROL) != 0, false});
    g_drag.deselect = !hit && !(flags & (MK_CONTROL | MK_SHIFT)) && !input::KeyDown(VK_MENU);
}

void Press(eng_view& view, unsigned button, WPARAM flags, POINT point) {
    // The right button takes back what the left one is doing.
    if (button == MK_RBUTTON && g_drag.kind == DragKind::kTransform &&
        g_drag.window == view.window) {
        EndTransform(false);
        PressIn(view.window, button);
        return;
    }
    PressIn(view.window, button);  // a drag elsewhere ends with its capture
    ActivateView(&view);
    if (input::Focus() != view.window) input::SetFocus(view.window);
    if (g_drag.kind != DragKind::kNone) return;
    g_drag = {};
    g_drag.window = view.window;
    g_drag.button = button;
    g_drag.start = g_drag.last = point;
    g_drag.camera = view.camera;
    if (button == MK_LBUTTON)
        PressLeft(view, flags, point);
    else if (button == MK_MBUTTON && input::KeyDown(VK_MENU) && !view.locked &&
             view.kind != ViewKind::kOrthographic)
        g_drag.kind = DragKind::kOrbit;
    if (g_drag.kind == DragKind::kNone) g_drag = {};
}

void Move(eng_view& view, WPARAM flags, POINT point) {
    ShowPointer();
    if (g_drag.kind == DragKind::kNone || g_drag.window != view.window) return;
    const double dx = point.x - g_drag.last.x;
    const double dy = point.y - g_drag.last.y;
    g_drag.last = point;
    switch (g_drag.kind) {
        case DragKind::kOrbit: Orbit(view, dx, dy); break;
        case DragKind::kZoom: Zoom(view, dy, (flags & MK_CONTROL) != 0); break;
        case DragKind::kPan: Pan(view, dx, dy); break;
        case DragKind::kTransform:
            if (g_world.selection.empty()) return;
            if (!g_drag.begun && std::abs(point.x - g_drag.start.x) < kDragThreshold &&
                std::abs(point.y - g_drag.start.y) < kDragThreshold)
                return;
            if (!g_drag.begun) BeginTransform(view);
            MoveTransform(view, point);
            break;
        default: return;
    }
    Redraw();
}

void Release(eng_view& view, unsigned button, POINT point) {
    const bool was_pressed = IsPressedIn(view.window, button);
    if (g_drag.kind != DragKind::kNone && g_drag.window == view.window && g_drag.button == button) {
        const Drag drag = g_drag;
        if (drag.kind == DragKind::kTransform && drag.begun) MoveTransform(view, point);
        EndViewDrag(view);
        if (drag.kind == DragKind::kTransform)
            EndTransform(true);
        else
            NoteCommand(std::string(drag.kind == DragKind::kOrbit  ? "orbit "
                                    : drag.kind == DragKind::kZoom ? "zoom "
                                    : drag.kind == DragKind::kPan  ? "pan "
                                                                   : "select ") +
                        view.name);
        g_drag = {};
        if (drag.kind == DragKind::kTransform && !drag.begun && drag.deselect && !SelectionLocked())
            ClickSelect(nullptr, {});
    } else if (button == MK_RBUTTON && was_pressed && g_drag.kind == DragKind::kNone &&
               IsViewMode(ModeId()) && ModeDepth() >= 2) {
        // A right click ends the host's view modes.
        PopMode();
    }
    ReleaseIn(view.window, button);
}

}  // namespace

Modifiers ModifiersOf(WPARAM flags) {
    return {input::KeyDown(VK_MENU), (flags & MK_CONTROL) || input::KeyDown(VK_CONTROL),
            (flags & MK_SHIFT) || input::KeyDown(VK_SHIFT)};
}

bool DragRuns() {
    return g_drag.kind != DragKind::kNone;
}

void ForgetDrag(HWND window) {
    if (g_drag.window != window || g_drag.kind == DragKind::kNone) return;
    if (const eng_view* view = ViewOf(window)) EndViewDrag(*view);
    if (g_drag.kind == DragKind::kTransform) EndTransform(true);
    g_drag = {};
}

eng_view& AddView(std::string_view name, ViewKind kind) {
    constexpr double kTop = 90, kUser = 30, kPerspective = 20;  // elevations
    eng_view& view = g_world.views.emplace_back();
    view.name = name;
    view.kind = view.home_kind = kind;
    const bool flat = kind == ViewKind::kOrthographic;
    const double elevation = name == "viewport.front"  ? 0
                             : flat                    ? kTop
                             : kind == ViewKind::kUser ? kUser
                                                       : kPerspective;
    view.camera = view.home = {flat ? 0.0 : 30.0, elevation, 300, {}};
    return view;
}

void CreateViews() {
    AddView("viewport.top", ViewKind::kOrthographic);
    AddView("viewport.front", ViewKind::kOrthographic);
    AddView("viewport.user", ViewKind::kUser);
    g_world.active_view = &AddView("viewport.persp", ViewKind::kPerspective);
}

void ResetViews() {
    for (eng_view& view : g_world.views) {
        view.kind = view.home_kind;
        view.camera = view.home;
    }
    Redraw();
}

ViewBasis BasisOf(const eng_view& view) {
    ViewBasis basis;
    RECT client{0, 0, 400, 300};
    if (view.window) GetClientRect(view.window, &client);
    basis.width = std::max<int>(1, client.right);
    basis.height = std::max<int>(1, client.bottom);
    const double a = Radians(view.camera.azimuth);
    const double e = Radians(view.camera.elevation);
    basis.right = {std::cos(a), std::sin(a), 0};
    basis.forward = {-std::sin(a) * std::cos(e), std::cos(a) * std::cos(e), -std::sin(e)};
    basis.up = {-std::sin(a) * std::sin(e), std::cos(a) * std::sin(e), std::cos(e)};
    basis.distance = view.camera.distance;
    basis.eye = view.camera.target - basis.forward * view.camera.distance;
    basis.focal = basis.height / 2.0 / std::tan(Radians(kFieldOfView / 2));
    basis.perspective = view.kind == ViewKind::kPerspective;
    return basis;
}

Projected Project(const ViewBasis& basis, Vector point) {
    const Vector v = point - basis.eye;
    const double depth = Dot(v, basis.forward);
    const double scale =
        basis.focal / (basis.perspective ? std::max(depth, 0.001) : basis.distance);
    return {basis.width / 2.0 + Dot(v, basis.right) * scale,
            basis.height / 2.0 - Dot(v, basis.up) * scale, depth};
}

double PixelSize(const ViewBasis& basis, Vector point) {
    const double depth =
        basis.perspective ? std::max(Dot(point - basis.eye, basis.forward), 0.001) : basis.distance;
    return depth / basis.focal;
}

std::vector<std::pair<Vector, Vector>> WireFrame(const eng_node& node) {
    std::vector<std::pair<Vector, Vector>> lines;
    const double s = node.size;
    const Vector position = NodePosition(node);
    const auto world_point = [&](Vector local) {
        return position +
               Rotated(node.state.rotation, Scaled(node.state.center + local, node.state.scale));
    };
    const auto line = [&](Vector a, Vector b) {
        lines.emplace_back(world_point(a), world_point(b));
    };
    // A closed curve of points at(0)..at(1).
    const auto ring = [&](int pieces, auto at) {
        for (int i = 0; i < pieces; ++i)
            line(at(i / static_cast<double>(pieces)), at((i + 1) / static_cast<double>(pieces)));
    };
    constexpr double kTurn = 2 * std::numbers::pi;
    switch (node.shape) {
        case Shape::kBox: {
            const double h = s / 2;
            for (const double a : {-h, h})
                for (const double b : {-h, h}) {
                    line({-h, a, b}, {h, a, b});
                    line({a, -h, b}, {a, h, b});
                    line({a, b, -h}, {a, b, h});
                }
            break;
        }
        case Shape::kSphere:
            for (int i = 0; i < 4; ++i) {
                const double turn = i * std::numbers::pi / 4;
                ring(24, [&](double t) {
                    return Vector{s * std::cos(turn) * std::cos(t * kTurn),
                                  s * std::sin(turn) * std::cos(t * kTurn),
                                  s * std::sin(t * kTurn)};
                });
            }
            for (const double z : {-0.5, 0.0, 0.5})
                ring(24, [&](double t) {
                    const double r = s * std::sqrt(1 - z * z);
                    return Vector{r * std::cos(t * kTurn), r * std::sin(t * kTurn), s * z};
                });
            break;
        case Shape::kCone:
            ring(24, [&](double t) {
                return Vector{s * std::cos(t * kTurn), s * std::sin(t * kTurn), -s};
            });
            for (int i = 0; i < 8; ++i)
                line({s * std::cos(i * kTurn / 8), s * std::sin(i * kTurn / 8), -s}, {0, 0, s});
            break;
        case Shape::kTorus: {
            const double thick = s * 0.35;
            for (int i = 0; i < 10; ++i) {
                const double turn = i * kTurn / 10;
                ring(8, [&](double t) {
                    const double r = s + thick * std::cos(t * kTurn);
                    return Vector{r * std::cos(turn), r * std::sin(turn),
                                  thick * std::sin(t * kTurn)};
                });
            }
            for (int i = 0; i < 4; ++i) {
                const double turn = i * kTurn / 4;
                ring(30, [&](double t) {
                    const double r = s + thick * std::cos(turn);
                    return Vector{r * std::cos(t * kTurn), r * std::sin(t * kTurn),
                                  thick * std::sin(turn)};
                });
            }
            break;
        }
    }
    return lines;
}

// The nearest object whose picture's outline box is under the point, with a little room around it.
eng_node* HitTest(const eng_view& view, POINT client) {
    constexpr double kRoom = 2;
    const ViewBasis basis = BasisOf(view);
    eng_node* nearest = nullptr;
    double nearest_depth = std::numeric_limits<double>::max();
    for (eng_node* node : LiveNodes()) {
        if (node->state.hidden) continue;
        const double depth = Dot(NodeCenter(*node) - basis.eye, basis.forward);
        if ((basis.perspective && depth <= 0) || depth >= nearest_depth) continue;
        double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
        for (const auto& [from, to] : WireFrame(*node)) {
            for (const Vector& end : {from, to}) {
                const Projected p = Project(basis, end);
                left = std::min(left, p.x);
                right = std::max(right, p.x);
                top = std::min(top, p.y);
                bottom = std::max(bottom, p.y);
            }
        }
        if (client.x >= left - kRoom && client.x <= right + kRoom && client.y >= top - kRoom &&
            client.y <= bottom + kRoom) {
            nearest = node;
            nearest_depth = depth;
        }
    }
    return nearest;
}

eng_view* ViewOf(HWND window) {
    if (!window) return nullptr;
    for (eng_view& view : g_world.views)
        if (view.window == window) return &view;
    return nullptr;
}

void ActivateView(eng_view* view) {
    if (g_world.active_view == view) return;
    g_world.active_view = view;
    Redraw();
}

void ZoomExtents(eng_view& view, bool selected_only) {
    if (view.locked) return;
    std::vector<eng_node*> nodes = selected_only ? g_world.selection : LiveNodes();
    std::erase_if(nodes,
                  [](const eng_node* node) { return !node->state.alive || node->state.hidden; });
    // The host frames everything when nothing is selected.
    if (nodes.empty() && selected_only) {
        ZoomExtents(view, false);
        return;
    }
    if (nodes.empty()) return;
    Vector low{1e9, 1e9, 1e9}, high{-1e9, -1e9, -1e9};
    for (const eng_node* node : nodes) {
        for (const auto& [from, to] : WireFrame(*node)) {
            for (const Vector& end : {from, to}) {
                low = {std::min(low.x, end.x), std::min(low.y, end.y), std::min(low.z, end.z)};
                high = {std::max(high.x, end.x), std::max(high.y, end.y), std::max(high.z, end.z)};
            }
        }
    }
    view.camera.target = (low + high) * 0.5;
    const double radius = Length(high - low) / 2;
    view.camera.distance = std::max(1.0, radius * 1.1 / std::sin(Radians(kFieldOfView / 2)));
    NoteCommand(selected_only ? "zoom extents selected" : "zoom extents");
    Redraw();
}

LRESULT CALLBACK ViewportProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    eng_view* view = ViewOf(window);
    if (view) {
        const POINT point = PointOf(lparam);
        switch (message) {
            // The second press of a double click begins what any press does.
            case WM_LBUTTONDBLCLK:
            case WM_LBUTTONDOWN: Press(*view, MK_LBUTTON, wparam, point); return 0;
            case WM_MBUTTONDBLCLK:
            case WM_MBUTTONDOWN: Press(*view, MK_MBUTTON, wparam, point); return 0;
            case WM_RBUTTONDBLCLK:
            case WM_RBUTTONDOWN: Press(*view, MK_RBUTTON, wparam, point); return 0;
            case WM_MOUSEMOVE: Move(*view, wparam, point); return 0;
            case WM_LBUTTONUP: Release(*view, MK_LBUTTON, point); return 0;
            case WM_MBUTTONUP: Release(*view, MK_MBUTTON, point); return 0;
            case WM_RBUTTONUP: Release(*view, MK_RBUTTON, point); return 0;
            case WM_SETCURSOR:
                if (LOWORD(lparam) != HTCLIENT || !HostCursor(ModeId())) break;
                ShowPointer();
                return TRUE;
            case WM_PAINT: DrawWindow(window); return 0;
            case WM_ERASEBKGND: return 1;
            case WM_NCDESTROY:
                ForgetDrag(window);
                ForgetPresses(window);
                view->window = nullptr;
                if (g_world.active_view == view) {
                    g_world.active_view = nullptr;
                    for (eng_view& next : g_world.views)
                        if (next.window) g_world.active_view = &next;
                }
                break;
            default: break;
        }
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

void TurnWheel(POINT screen, bool forward) {
    eng_view* view = ViewOf(input::WindowAt(screen));
    if (!view || view->locked) return;
    constexpr double kPixelsANotch = 40;
    Zoom(*view, forward ? -kPixelsANotch : kPixelsANotch, false);
    NoteCommand("wheel in " + view->name);
    Redraw();
}

void SetViewKind(std::string_view viewport, ViewKind kind) {
    eng_view* view = ViewOf(Find(viewport));
    if (!view || view->kind == kind) return;
    if (kind == ViewKind::kOrthographic) {
        view->camera.azimuth = 0;
        view->camera.elevation = view->name == "viewport.front" ? 0 : 90;
    } else if (view->kind == ViewKind::kOrthographic) {
        view->camera.azimuth = 30;
        view->camera.elevation = kind == ViewKind::kUser ? 30 : 20;
    }
    view->kind = kind;
    Redraw();
}

void LockView(std::string_view viewport, bool locked) {
    if (eng_view* view = ViewOf(Find(viewport))) view->locked = locked;
    Redraw();
}

std::string ViewText(HWND window) {
    const eng_view* view = ViewOf(window);
    if (!view) return "-";
    switch (view->kind) {
        case ViewKind::kPerspective: return "persp";
        case ViewKind::kOrthographic: return "ortho";
        default: return "user";
    }
}

std::string LockedText(HWND window) {
    const eng_view* view = ViewOf(window);
    return view ? (view->locked ? "1" : "0") : "-";
}

}  // namespace world
