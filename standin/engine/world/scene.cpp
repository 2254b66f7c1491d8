// Objects, their keys, the selection, time and undo.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "standin/engine/input/input.h"
#include "standin/engine/world/internal.h"

namespace world {

State g_world;
const eng_plugin_calls* g_plugin_calls = nullptr;
const eng_script_calls* g_script_calls = nullptr;
void (*g_notify)(void* procedure, void* own, int code) = nullptr;

namespace {

eng_node* AddNode(const char* name, Shape shape, double size, COLORREF color, Vector position,
                  Vector center, const std::vector<int>& frames) {
    auto node = std::make_unique<eng_node>();
    node->name = name;
    node->shape = shape;
    node->size = size;
    node->color = color;
    node->state.position = position;
    node->state.center = center;
    for (const int frame : frames)
        node->state.keys.push_back({frame, false});
    g_world.nodes.push_back(std::move(node));
    return g_world.nodes.back().get();
}

// Where each key takes the object, from its place at the first key. Successive keys lie on a line
// of the object's own, so that playback shows which object moves.
Vector KeyOffset(const eng_node& node) {
    const std::vector<Key>& keys = node.state.keys;
    if (keys.empty()) return {};
    static constexpr Vector kWays[] = {{0, 0, 12}, {0, 12, 0}, {12, 0, 0}, {-8, 8, 0}};
    const Vector way = kWays[static_cast<int>(node.shape)];
    const double frame = g_world.time / static_cast<double>(kTicksPerFrame);
    std::vector<int> frames;
    frames.reserve(keys.size());
    for (const Key& key : keys)
        frames.push_back(key.frame);
    std::sort(frames.begin(), frames.end());
    double steps = 0;
    for (size_t i = 1; i < frames.size(); ++i) {
        if (frame >= frames[i])
            steps = static_cast<double>(i);
        else if (frame > frames[i - 1])
            steps = static_cast<double>(i - 1) +
                    (frame - frames[i - 1]) / static_cast<double>(frames[i] - frames[i - 1]);
    }
    return way * steps;
}

}  // namespace

void CreateScene() {
    AddNode("Box001", Shape::kBox, 30, RGB(90, 170, 90), {0, 0, 0}, {0, 0, 15}, {0, 20, 60});
    AddNode("Sphere001", Shape::kSphere, 18, RGB(90, 130, 210), {80, 0, 0}, {0, 0, 0}, {0, 30, 90});
    AddNode("Cone001", Shape::kCone, 20, RGB(210, 140, 70), {-80, 0, 0}, {0, 0, 20}, {0, 40});
    AddNode("Torus001", Shape::kTorus, 20, RGB(180, 90, 180), {0, 80, 0}, {0, 0, 0},
            {10, 50, 80, 100});
    for (const auto& node : g_world.nodes) {
        auto track = std::make_unique<Track>();
        track->name = node->name;
        track->node = node.get();
        track->countable = true;
        g_world.tracks.emplace(node->name, std::move(track));
    }
    g_world.spot.name = "Spot001";
}

eng_node* FindNode(std::string_view name) {
    for (const auto& node : g_world.nodes)
        if (node->state.alive && node->name == name) return node.get();
    return nullptr;
}

std::vector<eng_node*> LiveNodes() {
    std::vector<eng_node*> nodes;
    for (const auto& node : g_world.nodes)
        if (node->state.alive) nodes.push_back(node.get());
    return nodes;
}

Vector NodePosition(const eng_node& node) {
    return node.state.position + KeyOffset(node);
}

Vector NodeCenter(const eng_node& node) {
    return NodePosition(node) +
           Rotated(node.state.rotation, Scaled(node.state.center, node.state.scale));
}

void PlaceNodePivot(eng_node& node, Vector pivot) {
    const Vector offset = NodeCenter(node) - pivot;
    const Rotation& r = node.state.rotation;
    const Vector local{Dot(r.x, offset), Dot(r.y, offset), Dot(r.z, offset)};
    node.state.center = {local.x / node.state.scale.x, local.y / node.state.scale.y,
                         local.z / node.state.scale.z};
    node.state.position = pivot - KeyOffset(node);
}

int PositionInSelection(const eng_node* node) {
    const auto at = std::find(g_world.selection.begin(), g_world.selection.end(), node);
    return at == g_world.selection.end() ? -1 : static_cast<int>(at - g_world.selection.begin());
}

bool IsSelected(const eng_node* node) {
    return PositionInSelection(node) >= 0;
}

void SetSelection(const std::vector<eng_node*>& nodes) {
    std::vector<eng_node*> unique;
    std::set<const eng_node*> known;
    for (eng_node* node : nodes)
        if (node && node->state.alive && known.insert(node).second) unique.push_back(node);
    g_world.selection = std::move(unique);
    Redraw();
}

eng_node* CloneNode(const eng_node& original) {
    // The next free number after the name's own letters: Box001 becomes Box002.
    std::string letters = original.name;
    while (!letters.empty() && letters.back() >= '0' && letters.back() <= '9')
        letters.pop_back();
    std::string name;
    for (int number = 1;; ++number) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%03d", number);
        name = letters + digits;
        if (!FindNode(name)) break;
    }
    auto clone = std::make_unique<eng_node>();
    clone->name = name;
    clone->shape = original.shape;
    clone->size = original.size;
    clone->color = original.color;
    clone->state = original.state;
    eng_node* made = clone.get();
    g_world.nodes.push_back(std::move(clone));
    if (!g_world.tracks.contains(name)) {
        auto track = std::make_unique<Track>();
        track->name = name;
        track->countable = true;
        g_world.tracks.emplace(name, std::move(track));
    }
    g_world.tracks.find(name)->second->node = made;
    return made;
}

std::vector<Key>& KeysOf(Track& track) {
    return track.node ? track.node->state.keys : track.keys;
}

Track* FindTrack(std::string_view name) {
    const auto at = g_world.tracks.find(name);
    return at == g_world.tracks.end() ? nullptr : at->second.get();
}

void SetTime(int ticks) {
    if (ticks == g_world.time) return;
    g_world.time = ticks;
    PlaceThumb();
    Redraw();
}

// Playback runs by the input's clock, in the range, over and over. Looked at whenever somebody asks
// for the time, so that nothing has to run in between.
void UpdatePlayback() {
    if (!g_world.playing) return;
    const int length = g_world.range_end - g_world.range_start;
    if (length <= 0) return;
    const unsigned long passed = input::Ticks() - g_world.playing_since;
    const long long frames = static_cast<long long>(passed) * 30 / 1000;
    const long long from = g_world.playing_from - g_world.range_start;
    SetTime(g_world.range_start +
            static_cast<int>((from + frames * kTicksPerFrame) % (length + kTicksPerFrame)));
}

// Without key mode a step is one frame; with it, the next key of what is selected.
void StepKey(bool next) {
    if (!g_world.key_mode) {
        const int ticks = g_world.time + (next ? kTicksPerFrame : -kTicksPerFrame);
        SetTime(std::clamp(ticks, g_world.range_start, g_world.range_end));
        return;
    }
    const int frame = g_world.time / kTicksPerFrame;
    bool found = false;
    int best = 0;
    for (const eng_node* node : g_world.selection) {
        for (const Key& key : node->state.keys) {
            const bool ahead = next ? key.frame > frame : key.frame < frame;
            const bool nearer = next ? key.frame < best : key.frame > best;
            if (ahead && (!found || nearer)) {
                found = true;
                best = key.frame;
            }
        }
    }
    if (found) SetTime(best * kTicksPerFrame);
}

SceneState TakeScene() {
    SceneState scene;
    for (const auto& node : g_world.nodes)
        scene.nodes.push_back(node->state);
    scene.selection = g_world.selection;
    scene.unwrap_vertices = g_world.unwrap_vertices;
    return scene;
}

void RestoreScene(const SceneState& scene) {
    for (size_t i = 0; i < g_world.nodes.size(); ++i) {
        if (i < scene.nodes.size())
            g_world.nodes[i]->state = scene.nodes[i];
        else
            g_world.nodes[i]->state.alive = false;
    }
    g_world.selection = scene.selection;
    g_world.unwrap_vertices = scene.unwrap_vertices;
    Redraw();
}

void HoldBegin() {
    g_world.holds.push_back(TakeScene());
}

void HoldAccept(std::string_view name) {
    if (g_world.holds.empty()) return;
    SceneState before = std::move(g_world.holds.back());
    g_world.holds.pop_back();
    // An inner record belongs to the outer one; one in which nothing happened is dropped, as the
    // host drops a hold without restore objects. New objects only lengthen the list.
    if (!g_world.holds.empty()) return;
    SceneState now = TakeScene();
    if (now == before) return;
    g_world.undo.push_back({std::string(name), std::move(before)});
    if (g_world.undo.size() > 20) g_world.undo.erase(g_world.undo.begin());
}

void HoldCancel() {
    if (g_world.holds.empty()) return;
    const SceneState before = std::move(g_world.holds.back());
    g_world.holds.pop_back();
    RestoreScene(before);
}

bool IsObject(std::string_view name) {
    static constexpr std::string_view kObjects[] = {"Box001", "Sphere001", "Cone001", "Torus001"};
    return std::find(std::begin(kObjects), std::end(kObjects), name) != std::end(kObjects) ||
           FindNode(name) != nullptr;
}

void Select(const std::vector<std::string>& names) {
    std::vector<eng_node*> nodes;
    nodes.reserve(names.size());
    for (const std::string& name : names)
        nodes.push_back(FindNode(name));
    SetSelection(nodes);
}

int SelectedCount() {
    return static_cast<int>(g_world.selection.size());
}

void SetSubobjectLevel(int level) {
    g_world.subobject_level = level;
    Redraw();
}

int SubobjectLevel() {
    return g_world.subobject_level;
}

void LoadPolyTools(bool loaded) {
    g_world.polytools_loaded = loaded;
}

void SetInteractionMode(std::string_view name) {
    g_world.interaction_mode = name;
}

void SetSculptTool(int value) {
    g_world.sculpt_tool = value;
    g_world.sculpt_buttons.clear();
    if (value != 0) g_world.sculpt_buttons[value] = true;
}

void SetPaintDeformTool(int value) {
    g_world.paint_deform_tool = value;
}

void SetPolyShift(bool active) {
    g_world.poly_shift = active;
}

void SetNamedSet(std::string_view name, const std::vector<std::string>& objects) {
    NamedSet set{std::string(name), {}};
    for (const std::string& object : objects)
        if (eng_node* node = FindNode(object)) set.nodes.push_back(node);
    for (NamedSet& known : g_world.sets) {
        if (known.name == name) {
            known = std::move(set);
            return;
        }
    }
    g_world.sets.push_back(std::move(set));
}

void HideObject(std::string_view name, bool hide) {
    if (eng_node* node = FindNode(name)) node->state.hidden = hide;
    Redraw();
}

// A name that is no object's stands for a track whose keys cannot be counted, until `keys` gives it
// some; the name `undefined` stands for a track that the view cannot answer.
void SetSelectedTracks(const std::vector<std::string>& names) {
    g_world.selected_tracks.clear();
    for (const std::string& name : names) {
        if (!FindTrack(name)) {
            auto track = std::make_unique<Track>();
            track->name = name;
            g_world.tracks.emplace(name, std::move(track));
        }
        g_world.selected_tracks.push_back(FindTrack(name));
    }
    Redraw();
}

void SetKeys(std::string_view name, const std::vector<int>& frames) {
    Track* track = FindTrack(name);
    if (!track) {
        auto made = std::make_unique<Track>();
        made->name = name;
        track = made.get();
        g_world.tracks.emplace(std::string(name), std::move(made));
    }
    track->countable = true;
    std::vector<Key>& keys = KeysOf(*track);
    keys.clear();
    for (const int frame : frames)
        keys.push_back({frame, false});
    std::sort(keys.begin(), keys.end(),
              [](const Key& a, const Key& b) { return a.frame < b.frame; });
    Redraw();
}

void SelectKeys(std::string_view name, const std::vector<int>& frames) {
    Track* track = FindTrack(name);
    if (!track) return;
    for (Key& key : KeysOf(*track))
        key.selected = std::find(frames.begin(), frames.end(), key.frame) != frames.end();
    Redraw();
}

void SetPlaying(bool playing) {
    if (playing) {
        PushMode(300);
        return;
    }
    const auto at = std::find_if(g_world.modes.begin(), g_world.modes.end(),
                                 [](const eng_mode* mode) { return mode->id == 300; });
    if (at == g_world.modes.end()) return;
    while (CurrentMode() && CurrentMode()->id != 300)
        PopMode();
    PopMode();
}

bool Undo() {
    if (g_world.undo.empty() || !g_world.holds.empty()) return false;
    const UndoRecord record = std::move(g_world.undo.back());
    g_world.undo.pop_back();
    NoteCommand("undo " + record.name);
    RestoreScene(record.before);
    return true;
}

std::string NumberText(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", value);
    std::string number = text;
    while (number.back() == '0')
        number.pop_back();
    if (number.back() == '.') number.pop_back();
    return number == "-0" ? "0" : number;
}

std::string VectorText(Vector v) {
    return NumberText(v.x) + "," + NumberText(v.y) + "," + NumberText(v.z);
}

std::string TripleText(Vector v) {
    const std::string x = NumberText(v.x);
    return x == NumberText(v.y) && x == NumberText(v.z) ? x : VectorText(v);
}

}  // namespace world
