// A small world for scripts. It behaves: what a script sets, it reads again; what it asks for and
// does not exist is refused. Everything that a script does to it goes into the journal.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "standin/script/host.h"
#include "standin/script/interpreter.h"

namespace script_test {

struct FakeNode {
    script::NodeId id;
    std::string name;
    script::Point3 pivot;
    script::Point3 center;
};

struct FakeKey {
    int ticks;
    bool selected = false;
};

struct FakeTrack {
    std::string name;
    std::vector<FakeKey> keys;
    bool countable = true;
    bool exists = true;  // false: the list of selected tracks has a gap here
};

class FakeHost : public script::Host {
public:
    using Primitive = std::function<script::Value(const script::Arguments&)>;

    std::vector<script::NodeId> Nodes() override {
        std::vector<script::NodeId> ids;
        ids.reserve(nodes.size());
        for (const FakeNode& node : nodes)
            ids.push_back(node.id);
        return ids;
    }
    std::string NodeName(script::NodeId node) override { return Find(node).name; }
    script::Point3 NodePivot(script::NodeId node) override { return Find(node).pivot; }
    void SetNodePivot(script::NodeId node, script::Point3 pivot) override {
        Find(node).pivot = pivot;
        journal.push_back("pivot " + Find(node).name);
    }
    script::Point3 NodeCenter(script::NodeId node) override { return Find(node).center; }

    std::vector<script::NodeId> Selection() override { return selection; }
    void SetSelection(const std::vector<script::NodeId>& wanted) override {
        selection = wanted;
        std::string line = "select";
        for (const script::NodeId node : wanted)
            line += " " + Find(node).name;
        journal.push_back(line);
    }

    int SelectedTrackCount() override { return static_cast<int>(tracks.size()); }
    script::TrackId SelectedTrack(int index) override {
        if (index < 1 || index > SelectedTrackCount() || !TrackAt(index).exists)
            return script::TrackId::kNone;
        return static_cast<script::TrackId>(index);
    }
    int KeyCount(script::TrackId track) override {
        if (!TrackAt(track).countable) throw script::Error("keys cannot be counted");
        return static_cast<int>(TrackAt(track).keys.size());
    }
    script::Time KeyTime(script::TrackId track, int key) override {
        return {KeyAt(track, key).ticks};
    }
    bool IsKeySelected(script::TrackId track, int key) override {
        return KeyAt(track, key).selected;
    }

    script::Interval AnimationRange() override { return range; }
    void SetAnimationRange(script::Interval wanted) override {
        range = wanted;
        journal.push_back("range " + script::ToText(wanted, *this));
    }

    bool ExecuteAction(int table, const std::string& identifier) override {
        journal.push_back("action " + std::to_string(table) + " " + identifier);
        if (on_action) on_action();
        return identifier != "missing";
    }
    void RunMaxCommand(const std::string& words) override {
        if (words != "key mode" && words != "tool zoomextents all")
            throw script::Error("unknown max command: " + words);
        if (words == "key mode") key_mode = !key_mode;
        journal.push_back("max " + words);
    }
    void ResetAllViews() override { journal.push_back("reset views"); }
    void CompleteRedraw() override { journal.push_back("redraw"); }

    bool HasPolyTools() override { return has_polytools; }
    int SculptTool() override { return sculpt_tool; }
    int PaintDeformTool() override { return paint_deform_tool; }
    bool IsPolyShiftActive() override { return poly_shift; }
    bool IsSculptButtonOn(int index) override { return sculpt_buttons[index]; }
    void SetSculptButton(int index, bool on) override {
        sculpt_buttons[index] = on;
        journal.push_back("sculpt button " + std::to_string(index) + (on ? " on" : " off"));
    }
    void ToggleTool(int group, int index, bool on) override {
        journal.push_back("tool " + std::to_string(group) + " " + std::to_string(index) +
                          (on ? " on" : " off"));
    }

    std::optional<std::string> InteractionMode() override { return interaction_mode; }

    bool HasPrimitive(const std::string& name) override { return primitives.count(name) != 0; }
    script::Value CallPrimitive(const std::string& name,
                                const script::Arguments& arguments) override {
        std::string line = name;
        for (const script::Value& argument : arguments)
            line += " " + script::ToText(argument, *this);
        journal.push_back(line);
        return primitives.at(name)(arguments);
    }

    void AddNode(const std::string& name, script::Point3 center = {}) {
        nodes.push_back({script::NodeId(nodes.size() + 1), name, {}, center});
    }

    // What happened since the last call.
    std::string TakeJournal() {
        std::string text;
        for (const std::string& line : std::exchange(journal, {}))
            text += (text.empty() ? "" : "; ") + line;
        return text;
    }

    std::vector<FakeNode> nodes;
    std::vector<script::NodeId> selection;
    std::vector<FakeTrack> tracks;
    script::Interval range{{0}, {100 * script::kTicksPerFrame}};
    bool key_mode = false;
    bool has_polytools = true;
    std::optional<std::string> interaction_mode;
    int sculpt_tool = 0;
    int paint_deform_tool = 0;
    bool poly_shift = false;
    std::map<int, bool> sculpt_buttons;
    std::map<std::string, Primitive> primitives;
    std::function<void()> on_action;
    std::vector<std::string> journal;

private:
    FakeNode& Find(script::NodeId id) {
        for (FakeNode& node : nodes) {
            if (node.id == id) return node;
        }
        throw script::Error("Attempt to access deleted scene object");
    }
    FakeTrack& TrackAt(script::TrackId track) { return TrackAt(static_cast<int>(track)); }
    FakeTrack& TrackAt(int index) { return tracks.at(static_cast<std::size_t>(index - 1)); }
    const FakeKey& KeyAt(script::TrackId track, int key) {
        const std::vector<FakeKey>& keys = TrackAt(track).keys;
        if (key < 1 || key > static_cast<int>(keys.size()))
            throw script::Error("Key index out of range: " + std::to_string(key));
        return keys[static_cast<std::size_t>(key - 1)];
    }
};

// Evaluates and describes the result: the value as the listener prints it, or
// `LINE:COLUMN: message`.
inline std::string Describe(const script::Result& result, script::Interpreter& interpreter) {
    if (!result.error) return interpreter.ToText(result.value);
    const script::Error& error = *result.error;
    return std::to_string(error.position.line) + ":" + std::to_string(error.position.column) +
           ": " + error.message;
}

inline std::string RunText(script::Interpreter& interpreter, std::string_view text) {
    return Describe(interpreter.Evaluate(text), interpreter);
}

// In a world of its own, with the objects Box001 and Sphere001.
inline std::string RunText(std::string_view text) {
    FakeHost host;
    host.AddNode("Box001", {1, 2, 3});
    host.AddNode("Sphere001");
    script::Interpreter interpreter(host);
    return RunText(interpreter, text);
}

struct Case {
    const char* text;
    const char* expected;
};

// Each text in a world of its own.
inline void ExpectAll(std::span<const Case> cases) {
    for (const Case& each : cases)
        EXPECT_EQ(RunText(each.text), each.expected) << each.text;
}

// One after the other in the same world.
inline void ExpectAll(script::Interpreter& interpreter, std::span<const Case> cases) {
    for (const Case& each : cases)
        EXPECT_EQ(RunText(interpreter, each.text), each.expected) << each.text;
}

}  // namespace script_test
