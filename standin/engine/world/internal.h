// What the files of the world share: the scene, the stacks and tables, and the handles that the
// engine's C interface gives out. Nothing outside the engine includes this.
#pragma once

#include <windows.h>

#include <array>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "standin/engine/engine_api.h"
#include "standin/engine/world/world.h"
#include "standin/engine/world/geometry.h"
#include "standin/engine/world/try.h"

namespace world {

// Every handle begins with the slot that eng_slot hands out.
struct Handle {
    void* slot = nullptr;
};

enum class Shape { kBox, kSphere, kCone, kTorus };

struct Key {
    int frame = 0;
    bool selected = false;
    friend bool operator==(const Key&, const Key&) = default;
};

// What an undo record brings back.
struct NodeState {
    bool alive = true;
    Vector position;  // of the pivot, without what the keys add
    Vector center;    // of the body, from the pivot, in the object's axes
    Rotation rotation;
    Vector scale{1, 1, 1};
    bool hidden = false;
    std::vector<Key> keys;
    friend bool operator==(const NodeState&, const NodeState&) = default;
};

}  // namespace world

struct eng_mode : world::Handle {
    int id = 0;
    int class_id = 0;
};

struct eng_node : world::Handle {
    std::string name;
    world::Shape shape = world::Shape::kBox;
    double size = 20;
    COLORREF color = 0;
    world::NodeState state;
};

struct eng_view : world::Handle {
    struct Camera {
        double azimuth = 0;
        double elevation = 0;
        double distance = 300;
        world::Vector target;
        friend bool operator==(const Camera&, const Camera&) = default;
    };
    std::string name;
    HWND window = nullptr;
    world::ViewKind kind = world::ViewKind::kPerspective;
    world::ViewKind home_kind = world::ViewKind::kPerspective;
    bool locked = false;
    bool grid = true;
    Camera camera;
    Camera home;
};

struct eng_action : world::Handle {
    unsigned long table = 0;
    int id = 0;
    const char* name = "";
    bool checked = false;
    bool stuck = false;
};

struct eng_table : world::Handle {
    unsigned long id = 0;
    std::map<int, std::unique_ptr<eng_action>> actions;
};

struct eng_button : world::Handle {
    int id = 0;
    std::string name;  // as scenarios call it
    const char* text = "";
    const char* label = "";  // what is drawn on it
    HWND window = nullptr;
    HWND parent = nullptr;
    RECT place{};             // in the parent
    bool on_toolbar = false;  // the toolbars know it
    bool drawn = false;       // by the host itself, whose action of the number tells its state
    bool enabled = true;
    bool checked = false;
    bool pressed = false;
    int flyout_entry = 0;
};

struct eng_menu : world::Handle {
    std::string title;
    std::vector<eng_item*> items;
    bool registered = false;
};

struct eng_item : world::Handle {
    std::string id;  // from 2025 on
    std::string title;
    bool separator = false;
    bool has_action = false;
    unsigned long table = 0;
    int action = 0;
    eng_menu* submenu = nullptr;
    UINT command = 0;  // what the menu bar sends for it
};

namespace world {

constexpr int kTicksPerFrame = 160;
constexpr unsigned long kMainTable = 0;
constexpr unsigned long kTrackViewTable = 1;
constexpr unsigned long kSnapTable = 1259304063;
constexpr unsigned long kUnwrapTable = 2077580866;
// Any tool that paints through the host's painter interface runs in this mode.
constexpr int kPainterMode = 0x4F298C8B;
constexpr int kVertexPaintMode = 0xFFFF + 0x300;

struct Track {
    std::string name;
    eng_node* node = nullptr;  // null: no object's track
    bool countable = false;    // keys can be counted
    std::vector<Key> keys;     // of a track without object
};

struct NamedSet {
    std::string name;
    std::vector<eng_node*> nodes;
};

// Texture corners on the sheet of the Unwrap editor, in their order around the shape.
struct UnwrapVertex {
    Vector at;
    bool selected = false;
    friend bool operator==(const UnwrapVertex&, const UnwrapVertex&) = default;
};
using UnwrapVertices = std::array<UnwrapVertex, 5>;

struct SceneState {
    std::vector<NodeState> nodes;  // by index in g_nodes; later ones did not exist
    std::vector<eng_node*> selection;
    UnwrapVertices unwrap_vertices{};
    friend bool operator==(const SceneState&, const SceneState&) = default;
};

struct UndoRecord {
    std::string name;
    SceneState before;
};

// An editor with one client window that pans and zooms. Of the Unwrap editor is known how it acts;
// that the two others do not take the front at a middle press either, and that the Track View
// refuses its drag mode as the Unwrap editor refuses its lock, is assumed.
struct Editor {
    std::string_view name;
    const char* class_name;
    const char* title;
    unsigned long table = 0;
    int front_action = 0;       // of its table: refused while the editor's dialog is not active
    bool alt_for_zoom = false;  // the zoom wants Alt beside Ctrl
    HWND frame = nullptr;
    HWND client = nullptr;
    double pan_x = 0;
    double pan_y = 0;
    double zoom = 1;
};

// The whole world in one place, so that another one can be made.
struct State {
    Options options;
    bool created = false;

    // windows
    HWND main = nullptr;
    HWND view_panel = nullptr;
    HWND command_panel = nullptr;
    HWND paint_floater = nullptr;
    HWND time_slider = nullptr;
    HWND thumb = nullptr;
    HWND track_bar = nullptr;
    HWND other = nullptr;
    HWND status = nullptr;
    HWND try_panel = nullptr;
    HWND titled = nullptr;  // stands for a foreground window of any title
    HWND foreground = nullptr;
    std::map<std::string, HWND, std::less<>> dialogs;
    std::map<int, HWND> told;  // windows of a report by their numbers there
    std::string missing;       // the one that the system did not make
    std::deque<eng_view> views;
    eng_view* active_view = nullptr;
    std::array<Editor, 3> editors;
    std::vector<std::unique_ptr<eng_button>> buttons;
    int running_brush = 0;  // the brush button that was clicked last, while its mode lasts

    // command modes
    std::map<std::pair<int, int>, std::unique_ptr<eng_mode>> known_modes;
    std::vector<eng_mode*> modes;
    std::vector<void*> mode_callbacks;

    // scene
    std::vector<std::unique_ptr<eng_node>> nodes;
    eng_node spot;
    std::vector<eng_node*> selection;
    std::vector<NamedSet> sets;
    std::map<std::string, std::unique_ptr<Track>, std::less<>> tracks;
    std::vector<Track*> selected_tracks;
    int subobject_level = 0;
    int axis_constraint = 2;    // AXIS_XY
    int coordinate_system = 0;  // COORDS_HYBRID
    bool snap = false;
    bool key_mode = false;
    int time = 0;  // ticks
    int range_start = 0;
    int range_end = 100 * kTicksPerFrame;
    bool playing = false;
    unsigned long playing_since = 0;
    int playing_from = 0;
    double shown_from = 0;  // of the track view, frames
    double shown_to = 100;
    UnwrapVertices unwrap_vertices{};
    int unwrap_tool_before = 0;  // action of the tool that a right press returns to

    // undo
    std::vector<SceneState> holds;
    std::vector<UndoRecord> undo;

    // actions
    std::map<unsigned long, std::unique_ptr<eng_table>> tables;
    std::set<unsigned long> contexts;
    void* plugin_table = nullptr;
    unsigned long plugin_table_id = 0;
    bool plugin_table_active = false;
    void* action_callback = nullptr;

    // menus
    std::vector<std::unique_ptr<eng_menu>> menus;
    std::vector<std::unique_ptr<eng_item>> items;
    std::set<int> menu_contexts;
    eng_menu* main_menu = nullptr;
    HMENU menu_bar = nullptr;
    struct Notification {
        void* procedure;
        void* own;
        int code;
    };
    std::vector<Notification> notifications;
    bool menus_loading = false;

    // PolyTools
    int sculpt_tool = 0;
    int paint_deform_tool = 0;
    bool poly_shift = false;
    bool polytools_loaded = true;

    std::string interaction_mode = "3ds Max";
    unsigned long script_time = 0;
    std::map<int, bool> sculpt_buttons;

    std::vector<HWND> registered_dialogs;
    int macro_disabled = 0;
    int redraw_stops = 0;
    int views_out = 0;
    int buttons_out = 0;
    std::string listener_text;
    std::vector<std::string> last_commands;
    std::set<Try> tried;
    int null_releases = 0;
};

extern State g_world;
extern const eng_plugin_calls* g_plugin_calls;
extern void (*g_notify)(void* procedure, void* own, int code);  // null: a host before 2025
extern const eng_script_calls* g_script_calls;

// --- scene (scene.cpp) ---
void CreateScene();
eng_node* FindNode(std::string_view name);
std::vector<eng_node*> LiveNodes();
Vector NodePosition(const eng_node& node);  // of the pivot, at the current time
Vector NodeCenter(const eng_node& node);
void PlaceNodePivot(eng_node& node, Vector pivot);  // the body stays where it is
bool IsSelected(const eng_node* node);
void SetSelection(const std::vector<eng_node*>& nodes);
eng_node* CloneNode(const eng_node& original);
std::vector<Key>& KeysOf(Track& track);
Track* FindTrack(std::string_view name);
int PositionInSelection(const eng_node* node);
void SetTime(int ticks);
void UpdatePlayback();
void StepKey(bool next);
// The host's undo system, as theHold offers it: every begin needs one accept or cancel.
void HoldBegin();
void HoldAccept(std::string_view name);
void HoldCancel();
SceneState TakeScene();
void RestoreScene(const SceneState& scene);

// --- command modes (modes.cpp) ---
eng_mode* CurrentMode();
int ClassOfMode(int id);
bool IsTransformMode(int id);
bool IsSelectMode(int id);
bool IsViewMode(int id);
std::string ModeText(const eng_mode* mode);

// --- generations (actions.cpp) ---
// Up to 2016 the buttons of the toolbars and the status bar are windows. Later hosts draw them
// themselves: nothing that can be found or asked stands there, but the actions of the same numbers
// tell their states.
bool DrawsToolbars();
// Those up to 2012 have none.
bool HasInteractionMode();
// Whether the viewports lie in one window of a class by which plug-ins may know it.
bool HasViewPanel();

// --- actions and buttons (actions.cpp) ---
void CreateActions();
eng_table* FindTable(unsigned long id);
eng_action* FindAction(unsigned long table, int id);
bool ActionChecked(const eng_action& action);
bool ActionEnabled(const eng_action& action);
// As plug-ins find it: null as well where a toolbar that the host draws lacks the button.
eng_action* ActionOf(const eng_table& table, int id);
bool ExecuteAction(eng_action& action);
eng_button* FindButton(int id);  // by control id, whether its window is there or not
eng_button* ButtonOf(HWND window);
// Interactive mode's buttons for Move, Rotate and Scale; their numbers are those of the modes.
bool IsToolButton(const eng_button& button);
void ShowCurrentTool();
void SetButtonChecked(eng_button& button, bool checked);
// WM_COMMAND of a button at its toolbar or page.
void ButtonCommand(eng_button& button, int code);
void LeaveMode(int id);  // a command mode is no longer on the stack

// --- views (views.cpp) ---
struct ViewBasis {
    Vector right, up, forward, eye;
    double focal = 1;  // pixels at distance 1
    int width = 1, height = 1;
    bool perspective = true;
    double distance = 1;
};
ViewBasis BasisOf(const eng_view& view);
struct Projected {
    double x = 0, y = 0, depth = 0;
};
Projected Project(const ViewBasis& basis, Vector point);
double PixelSize(const ViewBasis& basis, Vector point);                  // world units
std::vector<std::pair<Vector, Vector>> WireFrame(const eng_node& node);  // world coordinates
eng_node* HitTest(const eng_view& view, POINT client);
eng_view* ViewOf(HWND window);
void CreateViews();
eng_view& AddView(std::string_view name, ViewKind kind);
void ResetViews();
void ActivateView(eng_view* view);
void ZoomExtents(eng_view& view, bool selected_only);
LRESULT CALLBACK ViewportProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
void ForgetDrag(HWND window);
bool DragRuns();  // in any view
// Ctrl and Shift by what the message says or the key state that belongs to it; a sender that wants
// one of them to count as up must clear both.
struct Modifiers {
    bool alt, ctrl, shift;
};
Modifiers ModifiersOf(WPARAM flags);

// --- editors, time slider (editors.cpp) ---
void CreateEditors();
Editor* EditorOf(HWND client);
LRESULT CALLBACK EditorProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK EditorFrameProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
// Whether the host would run an action of an editor's table now.
bool EditorTakesAction(const eng_action& action);
// One tool of the Unwrap editor at a time: the others are off when one is switched on.
void ChooseUnwrapTool(const eng_action& chosen);
// A point of the Unwrap editor's sheet in pixels of its client area.
Vector OnUnwrapCanvas(const Editor& editor, Vector sheet);
LRESULT CALLBACK ThumbProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
void PlaceThumb();
void FrameTrackViewTimes();
void FrameTrackViewValues();

// --- windows (windows.cpp) ---
constexpr char kMainClass[] = "StandinMainWindow";
constexpr char kViewportClass[] = "StandinViewport";
constexpr char kFrameClass[] = "StandinEditorFrame";
constexpr DWORD kChildStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
// A window to be made, of the stand-in's own or of those that a report tells.
struct Piece {
    // Values of their own, because pieces are written with the fields that matter to them.
    // NOLINTBEGIN(readability-redundant-member-init)
    std::string class_name = {};
    std::string title = {};
    HWND parent = nullptr;  // or owner
    RECT place{};           // in the parent, or on the screen
    int id = 0;
    DWORD style = kChildStyle;
    DWORD exstyle = 0;
    HMENU menu = nullptr;
    std::string behaves_as = {};             // the class whose behaviour it has; empty: its own
    std::optional<bool> double_clicks = {};  // empty: as it is known of the class
    // NOLINTEND(readability-redundant-member-init)
    HWND* slot = nullptr;  // where the world keeps it
};
HWND Make(const Piece& piece);
bool IsToolbar(HWND window);
void CreateWindows();
void ShowMainWindow();
void DestroyWindows();
// Buttons that went down in a window and have not come up; with the first one the window takes the
// capture, with the last one it gives it up.
void PressIn(HWND window, unsigned button);
void ReleaseIn(HWND window, unsigned button);
void ForgetPresses(HWND window);
bool IsPressedIn(HWND window, unsigned button);
POINT PointOf(LPARAM lparam);
bool KeepsFromSystem(UINT message, WPARAM wparam, LPARAM lparam);
void CreateButtonWindow(eng_button& button);
// A procedure that calls `procedure` and whose own address is below 2 GiB.
WNDPROC LowAddressProcedure(WNDPROC procedure);
void Redraw();  // everything that shows the scene

// --- a world from a report (told.cpp) ---
void CreateWindowsOf(const report::Report& told);
void SetStatesOf(const report::Report& told);

// --- menus (menus.cpp) ---
void CreateMenus();
void DestroyMenus();
void UpdateMenuBar();
bool MenuCommand(UINT command);  // a pick from the menu bar
void PrepareMenu(HMENU menu);    // a menu is about to open
std::vector<std::string> MenuLines();

// --- pointers (cursors.cpp) ---
HCURSOR HostCursor(int mode);  // null: the arrow

// --- drawing (draw.cpp) ---
void DrawWindow(HWND window);  // in WM_PAINT

// --- scripts (script.cpp) ---
struct ScriptResult {
    bool ok = false;
    std::string text;
};
ScriptResult RunScript(std::string_view text);
void AddPrimitive(std::string_view name, void* function);
[[noreturn]] void FailScript(const char* message);
void DestroyScripts();

std::string NumberText(double value);  // rounded to 3 decimals, no trailing zeros
std::string VectorText(Vector v);      // X,Y,Z
std::string TripleText(Vector v);      // one number when all are equal

}  // namespace world
