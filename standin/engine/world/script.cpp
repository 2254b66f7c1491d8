// MAXScript: the interpreter's view of the world, and the way into the plug-in's primitives.
#include <algorithm>
#include <map>

#include "standin/engine/input/control.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/internal.h"
#include "standin/script/interpreter.h"

namespace world {

namespace {

struct Primitive {
    std::string name;  // as registered
    void* function = nullptr;
};
// Registrations come from the plug-in's static objects; they stand as long as its file is loaded,
// whatever world there is.
std::map<std::string, Primitive> g_primitives;

// A primitive that is running. An error out of it jumps back to here over the frames of the
// plug-in, which hold nothing that would have to be undone.
struct RunningCall {
    void* point[5];
    const char* message = nullptr;
    RunningCall* outer = nullptr;
};
RunningCall* g_running_call = nullptr;
std::string g_call_error;

__attribute__((noinline)) bool CallGuarded(void* function, const eng_value* arguments, int count,
                                           eng_value* result) {
    RunningCall call;
    call.outer = g_running_call;
    g_running_call = &call;
    if (__builtin_setjmp(call.point) == 0) {
        g_script_calls->call_primitive(function, arguments, count, result);
        g_running_call = g_running_call->outer;
        return true;
    }
    // Locals may have been in registers that the jump did not bring back; the global has not.
    g_running_call = g_running_call->outer;
    return false;
}

// Kinds without a place in `eng_value` reach the primitive as something else.
struct EngineConversion {
    eng_value& result;
    std::string& text;

    void operator()(const script::Undefined&) const { result.kind = ENG_UNDEFINED; }
    void operator()(const script::Ok&) const { result.kind = ENG_OK; }
    void operator()(bool value) const { Set(ENG_BOOLEAN, value ? 1 : 0, 0); }
    void operator()(std::int32_t value) const { Set(ENG_INTEGER, value, value); }
    void operator()(float value) const { Set(ENG_FLOAT, script::TruncateToInteger(value), value); }
    // Times convert like the number of their ticks.
    void operator()(const script::Time& time) const { Set(ENG_INTEGER, time.ticks, time.ticks); }
    void operator()(const std::string& string) const {
        result.kind = ENG_STRING;
        text = string;
    }
    void operator()(const script::Name& name) const {
        result.kind = ENG_NAME;
        text = name.text;
    }
    template <typename T>
    void operator()(const T&) const {}

    void Set(eng_value_kind kind, int integer, double number) const {
        result.kind = kind;
        result.integer = integer;
        result.number = number;
    }
};

script::Value FromEngine(const eng_value& value) {
    switch (value.kind) {
        case ENG_OK: return script::Ok{};
        case ENG_BOOLEAN: return value.integer != 0;
        case ENG_INTEGER: return value.integer;
        case ENG_FLOAT: return static_cast<float>(value.number);
        case ENG_STRING: return std::string(value.text ? value.text : "");
        case ENG_NAME: return script::Name{value.text ? value.text : ""};
        default: return {};
    }
}

script::Point3 ToPoint(Vector v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}
Vector FromPoint(script::Point3 p) {
    return {p.x, p.y, p.z};
}

template <typename Id>
Id IdOf(const void* object) {
    return static_cast<Id>(reinterpret_cast<std::uintptr_t>(object));
}

class WorldHost final : public script::Host {
public:
    std::vector<script::NodeId> Nodes() override { return Ids(LiveNodes()); }
    std::string NodeName(script::NodeId node) override { return Node(node).name; }
    // A node's place is its pivot's.
    script::Point3 NodePivot(script::NodeId node) override {
        return ToPoint(NodePosition(Node(node)));
    }
    void SetNodePivot(script::NodeId node, script::Point3 pivot) override {
        PlaceNodePivot(Node(node), FromPoint(pivot));
        Redraw();
    }
    script::Point3 NodeCenter(script::NodeId node) override {
        return ToPoint(world::NodeCenter(Node(node)));
    }

    std::vector<script::NodeId> Selection() override { return Ids(g_world.selection); }
    void SetSelection(const std::vector<script::NodeId>& nodes) override {
        std::vector<eng_node*> selection;
        selection.reserve(nodes.size());
        for (const script::NodeId node : nodes)
            selection.push_back(&Node(node));
        world::SetSelection(selection);
    }

    int SelectedTrackCount() override { return static_cast<int>(g_world.selected_tracks.size()); }
    script::TrackId SelectedTrack(int index) override {
        if (index < 1 || index > SelectedTrackCount()) return script::TrackId::kNone;
        const Track* track = g_world.selected_tracks[index - 1];
        // Rows of the track view that hold no controller answer undefined.
        return track->name == "undefined" ? script::TrackId::kNone : IdOf<script::TrackId>(track);
    }
    int KeyCount(script::TrackId track) override {
        Track& found = TrackOf(track);
        if (!found.countable) throw script::Error("No keys for track: " + found.name);
        return static_cast<int>(KeysOf(found).size());
    }
    script::Time KeyTime(script::TrackId track, int key) override {
        return {KeyOf(track, key).frame * kTicksPerFrame};
    }
    bool IsKeySelected(script::TrackId track, int key) override {
        return KeyOf(track, key).selected;
    }

    script::Interval AnimationRange() override {
        return {{g_world.range_start}, {g_world.range_end}};
    }
    void SetAnimationRange(script::Interval range) override {
        if (range.end.ticks <= range.start.ticks)
            throw script::Error("Animation range must have a length");
        g_world.range_start = range.start.ticks;
        g_world.range_end = range.end.ticks;
        PlaceThumb();
        Redraw();
    }

    bool ExecuteAction(int table, const std::string& identifier) override {
        char* end = nullptr;
        const long id = std::strtol(identifier.c_str(), &end, 10);
        if (identifier.empty() || *end) return false;
        if (g_world.plugin_table && static_cast<unsigned long>(table) == g_world.plugin_table_id)
            return RunPluginAction(id) != 0;
        eng_action* action = FindAction(static_cast<unsigned long>(table), id);
        return action && world::ExecuteAction(*action);
    }

    void RunMaxCommand(const std::string& words) override {
        if (words == "key mode") {
            ButtonCommand(*FindButton(50021), BN_CLICKED);
        } else if (words == "tool zoomextents all") {
            for (eng_view& view : g_world.views)
                ZoomExtents(view, false);
        } else {
            throw script::Error("Unknown max command: " + words);
        }
    }
    void ResetAllViews() override { ResetViews(); }
    void CompleteRedraw() override { Redraw(); }

    bool HasPolyTools() override { return g_world.polytools_loaded; }
    int SculptTool() override { return g_world.sculpt_tool; }
    int PaintDeformTool() override { return g_world.paint_deform_tool; }
    bool IsPolyShiftActive() override { return g_world.poly_shift; }
    bool IsSculptButtonOn(int index) override {
        const auto at = g_world.sculpt_buttons.find(index);
        return at != g_world.sculpt_buttons.end() && at->second;
    }
    void SetSculptButton(int index, bool on) override { g_world.sculpt_buttons[index] = on; }
    void ToggleTool(int group, int index, bool on) override {
        constexpr int kSculptGroup = 2;
        if (group == kSculptGroup) g_world.sculpt_tool = on ? index : 0;
        NoteCommand("tool " + std::to_string(index) + (on ? " on" : " off"));
    }

    std::optional<std::string> InteractionMode() override {
        return HasInteractionMode() ? std::optional(g_world.interaction_mode) : std::nullopt;
    }

    bool HasPrimitive(const std::string& name) override { return g_primitives.contains(name); }
    script::Value CallPrimitive(const std::string& name,
                                const script::Arguments& arguments) override;

private:
    static std::vector<script::NodeId> Ids(const std::vector<eng_node*>& nodes) {
        std::vector<script::NodeId> ids;
        ids.reserve(nodes.size());
        for (const eng_node* node : nodes)
            ids.push_back(IdOf<script::NodeId>(node));
        return ids;
    }
    static eng_node& Node(script::NodeId id) {
        for (const auto& node : g_world.nodes)
            if (IdOf<script::NodeId>(node.get()) == id && node->state.alive) return *node;
        throw script::Error("Attempt to access deleted scene object");
    }
    static Track& TrackOf(script::TrackId id) {
        for (const auto& [name, track] : g_world.tracks)
            if (IdOf<script::TrackId>(track.get()) == id) return *track;
        throw script::Error("Attempt to access deleted track");
    }
    static const Key& KeyOf(script::TrackId id, int key) {
        const std::vector<Key>& keys = KeysOf(TrackOf(id));
        if (key < 1 || key > static_cast<int>(keys.size()))
            throw script::Error("Key index out of range: " + std::to_string(key));
        return keys[key - 1];
    }
};

script::Value WorldHost::CallPrimitive(const std::string& name,
                                       const script::Arguments& arguments) {
    const auto at = g_primitives.find(name);
    if (at == g_primitives.end() || !g_script_calls || !g_script_calls->call_primitive)
        throw script::Error("No primitive " + name);
    const Primitive primitive = at->second;
    std::vector<std::string> texts(arguments.size());
    std::vector<eng_value> values;
    std::string line = "primitive " + primitive.name;
    for (size_t i = 0; i < arguments.size(); ++i) {
        eng_value& value = values.emplace_back(eng_value{ENG_OTHER, 0, 0, nullptr});
        std::visit(EngineConversion{value, texts[i]}, arguments[i]);
        value.text = texts[i].c_str();
        line += " " + script::ToText(arguments[i], *this);
    }
    eng_value result{ENG_UNDEFINED, 0, 0, nullptr};
    const int depth = trace::Depth();
    trace::In(line);
    const bool done =
        CallGuarded(primitive.function, values.data(), static_cast<int>(values.size()), &result);
    while (trace::Depth() > depth + 1)
        trace::Out("error");
    if (!done) {
        trace::Out("error");
        throw script::Error(g_call_error);
    }
    const script::Value value = FromEngine(result);
    trace::Out(script::ToText(value, *this));
    return value;
}

struct Scripts {
    WorldHost host;
    script::Interpreter interpreter{host};
};
std::unique_ptr<Scripts> g_scripts;

Scripts& TheScripts() {
    if (!g_scripts) g_scripts = std::make_unique<Scripts>();
    return *g_scripts;
}

}  // namespace

void SetScriptTime(unsigned long milliseconds) {
    g_world.script_time = milliseconds;
}

ScriptResult RunScript(std::string_view text) {
    Scripts& scripts = TheScripts();
    input::AdvanceClock(g_world.script_time);
    const script::Result result = scripts.interpreter.Evaluate(text);
    if (!result.error) return {true, scripts.interpreter.ToText(result.value)};
    const script::Error& error = *result.error;
    return {false, "error: " + error.message + " at " + std::to_string(error.position.line) + ":" +
                       std::to_string(error.position.column)};
}

std::string Evaluate(std::string_view text) {
    return RunScript(text).text;
}

void AddPrimitive(std::string_view name, void* function) {
    g_primitives.insert_or_assign(script::LowerCase(name), Primitive{std::string(name), function});
}

void FailScript(const char* message) {
    if (!g_running_call)
        trace::Die(3, "a script error outside of any script: " + std::string(message));
    g_call_error = message;
    __builtin_longjmp(g_running_call->point, 1);
}

void DestroyScripts() {
    g_scripts.reset();
}

}  // namespace world
