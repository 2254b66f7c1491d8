// Action tables, toolbar and brush buttons.
#include <algorithm>
#include <cstring>

#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

constexpr int kFlyoffChosen = 8187;  // notification of a flyout whose entry was set

struct ActionRow {
    unsigned long table;
    int id;
    const char* name;
};
constexpr ActionRow kActions[] = {
    {kMainTable, 40072, "Snaps Toggle"},
    {kMainTable, 40074, "Angle Snap Toggle"},
    {kMainTable, 40105, "Transform Gizmo Toggle"},
    {kMainTable, 50020, "Previous Key"},
    {kMainTable, 50022, "Next Key"},
    {kMainTable, 59231, "Selection Lock Toggle"},
    {kTrackViewTable, 230, "Move Keys Horizontal"},
    {kTrackViewTable, 380, "Slide Keys"},
    {kTrackViewTable, 480, "Scale Keys"},
    {kTrackViewTable, 1040, "Zoom Horizontal Extents"},
    {kTrackViewTable, 2020, "Move Keys Vertical"},
    {kTrackViewTable, 2030, "Scale Values"},
    {kTrackViewTable, 2040, "Draw Curves"},
    {kTrackViewTable, 2180, "Zoom Value Extents"},
    {kTrackViewTable, 40328, "Move Keys"},
    {kSnapTable, 50067, "Snap to Grid Points"},
    {kSnapTable, 50069, "Snap Set"},
    {kSnapTable, 50073, "Snap to Vertex"},
    {kSnapTable, 50075, "Snap to Edge"},
    {kSnapTable, 80000, "Snap to Grid Points"},
    {kSnapTable, 80001, "Snap Set"},
    {kSnapTable, 80002, "Snap to Vertex"},
    {kSnapTable, 80005, "Snap to Edge"},
    {kUnwrapTable, 40007, "Move"},
    {kUnwrapTable, 40008, "Rotate"},
    {kUnwrapTable, 40009, "Scale"},
    {kUnwrapTable, 40020, "Lock Selected Vertices"},
    {kUnwrapTable, 40033, "Move Horizontal"},
    {kUnwrapTable, 40034, "Move Vertical"},
    {kUnwrapTable, 40035, "Scale Horizontal"},
    {kUnwrapTable, 40036, "Scale Vertical"},
    {kUnwrapTable, 40087, "Freeform"},
};

void AddAction(const ActionRow& row) {
    auto& table = g_world.tables[row.table];
    if (!table) {
        table = std::make_unique<eng_table>();
        table->id = row.table;
    }
    auto action = std::make_unique<eng_action>();
    action->table = row.table;
    action->id = row.id;
    action->name = row.name;
    table->actions[row.id] = std::move(action);
}

// Another rollup's buttons have the numbers of the sculpt brushes.
bool IsGeometryTool(const eng_button& button) {
    return button.name.starts_with("geometry.");
}
bool IsSculptBrush(const eng_button& button) {
    return button.name.starts_with("brush.");
}
bool IsPaintBrush(const eng_button& button) {
    return button.name.starts_with("paint.");
}

// Clicking a brush starts it: the other brushes of its kind stop, its command mode runs.
void StartBrush(eng_button& brush, bool (*is_kind)(const eng_button&), int mode) {
    for (const auto& button : g_world.buttons)
        if (is_kind(*button)) SetButtonChecked(*button, button.get() == &brush);
    g_world.running_brush = brush.id;
    if (ModeId() != mode) PushMode(mode);
}

// What plug-ins ask in place of the buttons that a host draws itself.
constexpr ActionRow kActionsOfDrawnButtons[] = {
    {kMainTable, 50016, "Zoom Extents"},
    {kMainTable, 50021, "Key Mode Toggle"},
    {kMainTable, 50027, "Select Object"},
};

// The button that shows an action's state, if there is one.
eng_button* ButtonOfAction(const eng_action& action) {
    return action.table == kMainTable ? FindButton(action.id) : nullptr;
}

// The host whose interface the DLLs have; what it says it is may be another. 2012 before a plug-in
// is loaded.
bool IsHostFrom(int release) {
    return g_plugin_calls && g_plugin_calls->release >= release;
}

}  // namespace

bool DrawsToolbars() {
    return IsHostFrom(20000);
}

bool HasInteractionMode() {
    return IsHostFrom(15000);
}

bool HasViewPanel() {
    return !IsHostFrom(15000);
}

void CreateActions() {
    for (const ActionRow& row : kActions)
        AddAction(row);
    if (DrawsToolbars())
        for (const ActionRow& row : kActionsOfDrawnButtons)
            AddAction(row);
    FindAction(kMainTable, 40105)->checked = true;

    struct ButtonRow {
        int id;
        const char* prefix;
        const char* text;
        const char* label;
    };
    static constexpr ButtonRow kButtons[] = {
        {50027, "button.", "", "Select"},     {59231, "button.", "", "Lock"},
        {40074, "button.", "", "Angle snap"}, {50021, "button.", "", "Key mode"},
        {50016, "button.", "", "Zoom ext."},  {4184, "brush.", "Push/Pull", ""},
        {4185, "brush.", "Relax", ""},        {4186, "brush.", "Revert", ""},
        {4184, "geometry.", "Attach", ""},    {4185, "geometry.", "Detach", ""},
        {4186, "geometry.", "Slice", ""},     {1007, "paint.", "Paint", ""},
        {1008, "paint.", "Erase", ""},        {1009, "paint.", "Pick colour", ""},
        {1077, "paint.", "Blur", ""},
    };
    for (const ButtonRow& row : kButtons) {
        auto button = std::make_unique<eng_button>();
        button->id = row.id;
        button->name = row.prefix + std::to_string(row.id);
        button->text = row.text;
        button->label = *row.label ? row.label : row.text;
        g_world.buttons.push_back(std::move(button));
    }
    if (!g_world.options.practice) return;
    for (const auto& [mode, label] : {std::pair{1, "Move"}, {2, "Rotate"}, {3, "Scale"}}) {
        auto button = std::make_unique<eng_button>();
        button->id = mode;
        button->name = "tool." + std::to_string(mode);
        button->label = label;
        g_world.buttons.push_back(std::move(button));
    }
}

bool IsToolButton(const eng_button& button) {
    return button.name.starts_with("tool.");
}

void ShowCurrentTool() {
    for (const auto& button : g_world.buttons)
        if (IsToolButton(*button)) SetButtonChecked(*button, button->id == ModeId());
}

eng_table* FindTable(unsigned long id) {
    const auto at = g_world.tables.find(id);
    return at == g_world.tables.end() ? nullptr : at->second.get();
}

eng_action* FindAction(unsigned long table, int id) {
    eng_table* found = FindTable(table);
    if (!found) return nullptr;
    const auto at = found->actions.find(id);
    return at == found->actions.end() ? nullptr : at->second.get();
}

bool ActionChecked(const eng_action& action) {
    if (action.table == kMainTable && action.id == 40072) return g_world.snap;
    if (const eng_button* button = ButtonOfAction(action)) return button->checked;
    return action.checked;
}

bool ActionEnabled(const eng_action& action) {
    const eng_button* const button = ButtonOfAction(action);
    return EditorTakesAction(action) && !(button && button->drawn && !button->enabled);
}

eng_action* ActionOf(const eng_table& table, int id) {
    eng_action* const action = FindAction(table.id, id);
    const eng_button* const button = action ? ButtonOfAction(*action) : nullptr;
    return button && button->drawn && !button->window ? nullptr : action;
}

static void SetActionChecked(eng_action& action, bool checked) {
    if (checked) ChooseUnwrapTool(action);
    action.checked = checked;
    if (action.table == kMainTable && action.id == 40072) g_world.snap = checked;
    if (eng_button* button = ButtonOfAction(action)) SetButtonChecked(*button, checked);
    Redraw();
}

bool ExecuteAction(eng_action& action) {
    if (!EditorTakesAction(action)) return false;
    NoteCommand(action.name);
    if (action.stuck) return true;
    if (action.table == kMainTable && (action.id == 50020 || action.id == 50022))
        StepKey(action.id == 50022);
    else if (action.table == kMainTable && !IsAction(kMainTable, action.id))
        ButtonCommand(*ButtonOfAction(action), BN_CLICKED);
    else if (action.table == kTrackViewTable && action.id == 1040)
        FrameTrackViewTimes();
    else if (action.table == kTrackViewTable && action.id == 2180)
        FrameTrackViewValues();
    else
        SetActionChecked(action, !ActionChecked(action));
    return true;
}

// Looks in interactive mode what a command of the plug-in has done.
class CommandWatch {
public:
    explicit CommandWatch(int id) : id_(id) {
        if (!g_world.options.practice) return;
        scene_ = TakeScene();
        snaps_ = Snaps();
        cameras_ = Cameras();
        if (id == kTimeScrubber) HoldScrubKey(true);
    }
    ~CommandWatch() {
        if (!g_world.options.practice) return;
        const bool nudge = id_ >= kNudgeUp && id_ <= kNudgeRight;
        const bool frame = id_ == kFrameSelected || id_ == kFrameAll;
        if (snaps_ != Snaps()) NoteTry(Try::kSnap);
        if (nudge && !(scene_ == TakeScene())) NoteTry(Try::kNudge);
        if (frame && cameras_ != Cameras()) NoteTry(Try::kFrame);
    }
    CommandWatch(const CommandWatch&) = delete;
    CommandWatch& operator=(const CommandWatch&) = delete;

private:
    enum {
        kTimeScrubber = 7,
        kNudgeUp = 10,
        kNudgeRight = 13,
        kFrameSelected = 15,
        kFrameAll = 16
    };

    static std::vector<bool> Snaps() {
        std::vector<bool> snaps = {g_world.snap, ActionChecked(*FindAction(kMainTable, 40074))};
        for (const auto& [number, action] : FindTable(kSnapTable)->actions)
            snaps.push_back(ActionChecked(*action));
        return snaps;
    }
    static std::vector<eng_view::Camera> Cameras() {
        std::vector<eng_view::Camera> cameras;
        cameras.reserve(g_world.views.size());
        for (const eng_view& view : g_world.views)
            cameras.push_back(view.camera);
        return cameras;
    }

    int id_;
    SceneState scene_;
    std::vector<bool> snaps_;
    std::vector<eng_view::Camera> cameras_;
};

int RunPluginAction(int id) {
    if (!g_world.action_callback || !g_plugin_calls || !g_plugin_calls->execute_action) return 0;
    const CommandWatch watch(id);
    trace::In("command " + std::to_string(id));
    const int handled = g_plugin_calls->execute_action(g_world.action_callback, id);
    trace::Out(std::to_string(handled));
    return handled;
}

// Of several with one number the one that scenarios call by it.
eng_button* FindButton(int id) {
    for (const auto& button : g_world.buttons)
        if (button->id == id) return button.get();
    return nullptr;
}

eng_button* ButtonOf(HWND window) {
    if (!window) return nullptr;
    for (const auto& button : g_world.buttons)
        if (button->window == window) return button.get();
    return nullptr;
}

void SetButtonChecked(eng_button& button, bool checked) {
    if (button.checked == checked) return;
    button.checked = checked;
    if (button.window && g_world.options.visible) InvalidateRect(button.window, nullptr, FALSE);
}

void ButtonCommand(eng_button& button, int code) {
    const int id = button.id;
    if (code != BN_CLICKED && code != kFlyoffChosen) return;
    NoteCommand("click " + button.name);
    if (IsGeometryTool(button)) {
        SetButtonChecked(button, !button.checked);
    } else if (IsSculptBrush(button)) {
        StartBrush(button, IsSculptBrush, kPainterMode);
    } else if (IsPaintBrush(button)) {
        StartBrush(button, IsPaintBrush, kVertexPaintMode);
    } else if (id == 50016) {
        if (g_world.active_view) ZoomExtents(*g_world.active_view, button.flyout_entry == 1);
    } else if (code == kFlyoffChosen) {
        return;
    } else if (id == 59231 || id == 40074) {
        ExecuteAction(*FindAction(kMainTable, id));
    } else if (id == 50021) {
        g_world.key_mode = !g_world.key_mode;
        SetButtonChecked(button, g_world.key_mode);
    } else if (id == 50027) {
        ReplaceMode(6);
    } else if (IsToolButton(button)) {
        ReplaceMode(id);
    }
}

// A brush that was started by its button stops with its command mode.
void LeaveMode(int id) {
    if (id == 300) {
        UpdatePlayback();
        g_world.playing = false;
    }
    eng_button* brush = FindButton(g_world.running_brush);
    if (!brush) return;
    if ((id == kPainterMode && IsSculptBrush(*brush)) ||
        (id == kVertexPaintMode && IsPaintBrush(*brush))) {
        SetButtonChecked(*brush, false);
        g_world.running_brush = 0;
    }
}

// --- what scenarios set ---

void CheckButton(int id, bool checked) {
    if (eng_button* button = FindButton(id)) SetButtonChecked(*button, checked);
    if (id == 50021) g_world.key_mode = checked;
}

void EnableButton(int id, bool enabled) {
    if (eng_button* button = FindButton(id)) {
        button->enabled = enabled;
        if (button->window) EnableWindow(button->window, enabled);
        Redraw();
    }
}

void PlaceButton(int id, bool present) {
    eng_button* button = FindButton(id);
    if (!button || present == (button->window != nullptr)) return;
    if (present)
        CreateButtonWindow(*button);
    else
        ::DestroyWindow(button->window);
}

bool IsAction(unsigned long table, int id) {
    return std::any_of(std::begin(kActions), std::end(kActions),
                       [=](const ActionRow& row) { return row.table == table && row.id == id; });
}

void SetAction(unsigned long table, int id, ActionState state) {
    eng_action* action = FindAction(table, id);
    if (!action) return;
    action->stuck = state == ActionState::kStuck;
    if (state != ActionState::kStuck) SetActionChecked(*action, state == ActionState::kOn);
}

void CheckBrush(int id, bool checked) {
    if (eng_button* brush = FindButton(id); brush && IsSculptBrush(*brush))
        SetButtonChecked(*brush, checked);
}

void CheckPaint(int id, bool checked) {
    if (eng_button* brush = FindButton(id); brush && IsPaintBrush(*brush))
        SetButtonChecked(*brush, checked);
}

void RegisterPluginTable(void* table, unsigned long id) {
    g_world.plugin_table = table;
    g_world.plugin_table_id = id;
}

void* PluginTable() {
    return g_world.plugin_table;
}

void* ActionCallback() {
    return g_world.action_callback;
}

}  // namespace world
