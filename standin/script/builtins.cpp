#include "standin/script/builtins.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace script {

namespace {

// `$*` stands for all objects, `$Box*` for those whose names begin so.
std::vector<NodeId> NodesOf(const ObjectSet& set, Host& host) {
    if (set.path.empty()) return host.Selection();
    const std::size_t length = set.path.size() - 1;
    std::vector<NodeId> nodes = host.Nodes();
    std::erase_if(nodes, [&](NodeId node) {
        return !EqualNames(host.NodeName(node).substr(0, length), set.path.substr(0, length));
    });
    return nodes;
}

bool IsCollection(const Value& value) {
    return std::holds_alternative<Array*>(value) || std::holds_alternative<ObjectSet>(value);
}

// ---- functions

TrackId ToTrack(const Value& value, Interpreter& interpreter) {
    return Expect<TrackId>(value, "SubAnim", interpreter.host());
}

Value Append(Interpreter& interpreter, const Arguments& arguments) {
    Expect<Array*>(arguments[0], "Array", interpreter.host())->items.push_back(arguments[1]);
    return arguments[0];
}

// Of nothing it is undefined.
Value FindExtreme(Interpreter& interpreter, const Value& collection, std::string_view symbol) {
    const std::vector<Value> items = ItemsOf(collection, interpreter);
    if (items.empty()) return Undefined{};
    Value best = items.front();
    for (const Value& item : items) {
        if (ApplyOperator(symbol, item, best, interpreter.host()) == Value(true)) best = item;
    }
    return best;
}

Value FindMinimum(Interpreter& interpreter, const Arguments& arguments) {
    return FindExtreme(interpreter, arguments[0], "<");
}

Value FindMaximum(Interpreter& interpreter, const Arguments& arguments) {
    return FindExtreme(interpreter, arguments[0], ">");
}

// Called with a time, the class counts frames: scripts hand the result on as a plain number where a
// time is wanted (`interval a b`), and there a plain number means frames. In ticks a range of keys
// would come out 160 times too long, and widening it by 1 would not be widening it by a frame.
Value MakeInteger(Interpreter& interpreter, const Arguments& arguments) {
    if (const Time* time = std::get_if<Time>(&arguments[0])) return time->ticks / kTicksPerFrame;
    return ToInteger(arguments[0], interpreter.host());
}

Value MakeInterval(Interpreter& interpreter, const Arguments& arguments) {
    Host& host = interpreter.host();
    return Interval{ToTime(arguments[0], host), ToTime(arguments[1], host)};
}

Value Select(Interpreter& interpreter, const Arguments& arguments) {
    std::vector<Value> objects{arguments[0]};
    if (!std::holds_alternative<NodeId>(arguments[0])) objects = ItemsOf(arguments[0], interpreter);
    std::vector<NodeId> nodes;
    nodes.reserve(objects.size());
    for (const Value& object : objects)
        nodes.push_back(Expect<NodeId>(object, "Node", interpreter.host()));
    interpreter.host().SetSelection(nodes);
    return Ok{};
}

Value CountKeys(Interpreter& interpreter, const Arguments& arguments) {
    return interpreter.host().KeyCount(ToTrack(arguments[0], interpreter));
}

Value IsKeySelected(Interpreter& interpreter, const Arguments& arguments) {
    const TrackId track = ToTrack(arguments[0], interpreter);
    return interpreter.host().IsKeySelected(track, ToInteger(arguments[1], interpreter.host()));
}

Value GetKeyTime(Interpreter& interpreter, const Arguments& arguments) {
    const TrackId track = ToTrack(arguments[0], interpreter);
    return interpreter.host().KeyTime(track, ToInteger(arguments[1], interpreter.host()));
}

Value GetSelectedTrack(Interpreter& interpreter, const Arguments& arguments) {
    Host& host = interpreter.host();
    const TrackId track = host.SelectedTrack(ToInteger(arguments[0], host));
    return track == TrackId::kNone ? Value() : track;
}

Value ExecuteAction(Interpreter& interpreter, const Arguments& arguments) {
    const int table = ToInteger(arguments[0], interpreter.host());
    const auto& identifier = Expect<std::string>(arguments[1], "String", interpreter.host());
    return interpreter.host().ExecuteAction(table, identifier);
}

Value ToggleTool(Interpreter& interpreter, const Arguments& arguments) {
    Host& host = interpreter.host();
    const int group = ToInteger(arguments[0], host);
    const int index = ToInteger(arguments[1], host);
    host.ToggleTool(group, index, Expect<bool>(arguments[2], "Boolean", host));
    return Ok{};
}

Value AnimationRange(Interpreter& interpreter, const Arguments& arguments) {
    Host& host = interpreter.host();
    if (!arguments.empty())
        host.SetAnimationRange(Expect<Interval>(arguments[0], "Interval", host));
    return host.AnimationRange();
}

// The other functions ask the host or tell it something, and nothing else.
template <auto kMethod>
Value Ask(Interpreter& interpreter, const Arguments&) {
    return (interpreter.host().*kMethod)();
}

template <auto kMethod>
Value Tell(Interpreter& interpreter, const Arguments&) {
    (interpreter.host().*kMethod)();
    return Ok{};
}

std::vector<Value> PropertyNames(const Builtin& owner);

// Of an interface.
Value GetPropNames(Interpreter& interpreter, const Arguments& arguments) {
    const auto* owner = Expect<const Builtin*>(arguments[0], "Interface", interpreter.host());
    return interpreter.MakeArray(PropertyNames(*owner));
}

Value GetPropertyByName(Interpreter& interpreter, const Arguments& arguments) {
    const Name& name = Expect<Name>(arguments[1], "Name", interpreter.host());
    return GetProperty(arguments[0], name.text, interpreter);
}

Value ToLower(Interpreter& interpreter, const Arguments& arguments) {
    return LowerCase(Expect<std::string>(arguments[0], "String", interpreter.host()));
}

Value FindString(Interpreter& interpreter, const Arguments& arguments) {
    const auto& text = Expect<std::string>(arguments[0], "String", interpreter.host());
    const auto& part = Expect<std::string>(arguments[1], "String", interpreter.host());
    const std::size_t at = text.find(part);
    return at == std::string::npos ? Value() : static_cast<std::int32_t>(at) + 1;
}

// Not every property of an interface can be read at any time.
Value RefuseToAnswer(Interpreter&, const Arguments&) {
    throw Error("Property cannot be read now");
}

Value InteractionMode(Interpreter& interpreter, const Arguments&) {
    return interpreter.host().InteractionMode().value_or("");
}

constexpr std::string_view kSculptButtons = "PolyToolsUI.SculptButtons";

using enum BuiltinKind;

// clang-format off
constexpr Builtin kBuiltins[] = {
    {"append", kFunction, Append, 2},
    {"amin", kFunction, FindMinimum, 1},
    {"amax", kFunction, FindMaximum, 1},
    {"integer", kFunction, MakeInteger, 1},
    {"interval", kFunction, MakeInterval, 2},
    {"select", kFunction, Select, 1},
    {"numKeys", kFunction, CountKeys, 1},
    {"isKeySelected", kFunction, IsKeySelected, 2},
    {"getKeyTime", kFunction, GetKeyTime, 2},
    {"getPropNames", kFunction, GetPropNames, 1},
    {"getProperty", kFunction, GetPropertyByName, 2},
    {"toLower", kFunction, ToLower, 1},
    {"findString", kFunction, FindString, 2},
    {"completeRedraw", kFunction, Tell<&Host::CompleteRedraw>},
    {"selection", kVariable, [](Interpreter&, const Arguments&) -> Value { return ObjectSet{}; }},
    {"animationRange", kVariable, AnimationRange, 1},
    {"actionMan", kInterface},
    {"actionMan.executeAction", kFunction, ExecuteAction, 2},
    {"trackviews", kInterface},
    {"trackviews.current", kInterface},
    {"trackviews.current.numSelTracks", kFunction, Ask<&Host::SelectedTrackCount>},
    {"trackviews.current.getSelected", kFunction, GetSelectedTrack, 1},
    {"viewport", kInterface},
    {"viewport.ResetAllViews", kFunction, Tell<&Host::ResetAllViews>},
    {"mouseConfigManager", kModes},
    {"mouseConfigManager.unreadable", kVariable, RefuseToAnswer},
    {"mouseConfigManager.mode", kVariable, InteractionMode},
    {"PolyToolsUI", kPolyTools},
    {"PolyToolsUI.SculptTool", kVariable, Ask<&Host::SculptTool>},
    {"PolyToolsUI.PDTool", kVariable, Ask<&Host::PaintDeformTool>},
    {"PolyToolsUI.PolyShiftActive", kVariable, Ask<&Host::IsPolyShiftActive>},
    {kSculptButtons, kInterface},
    {"PolyBoost", kPolyTools},
    {"PolyBoost.ToolToggle", kFunction, ToggleTool, 3},
};
// clang-format on

std::vector<Value> PropertyNames(const Builtin& owner) {
    const std::string prefix = std::string(owner.name) + ".";
    std::vector<Value> names;
    for (const Builtin& builtin : kBuiltins) {
        if (builtin.kind == kVariable && builtin.name.starts_with(prefix))
            names.emplace_back(Name{std::string(builtin.name.substr(prefix.size()))});
    }
    return names;
}

bool IsSculptButtons(const Value& value) {
    const auto* builtin = std::get_if<const Builtin*>(&value);
    return builtin && (*builtin)->name == kSculptButtons;
}

// ---- operators

bool IsNumber(const Value& value) {
    return std::holds_alternative<std::int32_t>(value) || std::holds_alternative<float>(value);
}

double NumberOf(const Value& value) {
    if (const std::int32_t* number = std::get_if<std::int32_t>(&value)) return *number;
    return std::get<float>(value);
}

// What numbers and times are compared by: a number beside a time counts frames.
std::optional<double> InTicks(const Value& value) {
    if (const Time* time = std::get_if<Time>(&value)) return time->ticks;
    if (IsNumber(value)) return NumberOf(value) * kTicksPerFrame;
    return {};
}

}  // namespace

const Builtin* FindBuiltin(std::string_view name) {
    for (const Builtin& builtin : kBuiltins) {
        if (EqualNames(builtin.name, name)) return &builtin;
    }
    return nullptr;
}

Value ReadBuiltin(const Builtin& builtin, Interpreter& interpreter) {
    if (builtin.kind == BuiltinKind::kVariable) return builtin.call(interpreter, {});
    Host& host = interpreter.host();
    if (builtin.kind == BuiltinKind::kPolyTools && !host.HasPolyTools()) return Undefined{};
    if (builtin.kind == BuiltinKind::kModes && !host.InteractionMode()) return Undefined{};
    return &builtin;
}

void WriteBuiltin(const Builtin& builtin, const Value& value, Interpreter& interpreter) {
    if (builtin.kind != BuiltinKind::kVariable || builtin.arguments == 0)
        throw Error("Cannot assign to read-only variable: " + std::string(builtin.name));
    builtin.call(interpreter, {value});
}

Value CallBuiltin(const Builtin& builtin, const Arguments& arguments, Interpreter& interpreter) {
    CheckArgumentCount(builtin.name, builtin.arguments, arguments.size());
    return builtin.call(interpreter, arguments);
}

void CheckArgumentCount(std::string_view name, std::size_t wanted, std::size_t got) {
    if (wanted == got) return;
    throw Error("Argument count error: " + std::string(name) + " wanted " + std::to_string(wanted) +
                ", got " + std::to_string(got));
}

std::vector<Value> ItemsOf(const Value& collection, Interpreter& interpreter) {
    std::vector<Value> items;
    if (const ObjectSet* set = std::get_if<ObjectSet>(&collection)) {
        for (const NodeId node : NodesOf(*set, interpreter.host()))
            items.emplace_back(node);
    } else {
        items = Expect<Array*>(collection, "Array", interpreter.host())->items;
    }
    interpreter.CountSteps(items.size());
    return items;
}

Value GetProperty(const Value& owner, const std::string& name, Interpreter& interpreter) {
    Host& host = interpreter.host();
    if (const NodeId* node = std::get_if<NodeId>(&owner)) {
        if (EqualNames(name, "name")) return host.NodeName(*node);
        if (EqualNames(name, "center")) return host.NodeCenter(*node);
        if (EqualNames(name, "pivot")) return host.NodePivot(*node);
    }
    if (const Interval* interval = std::get_if<Interval>(&owner)) {
        if (EqualNames(name, "start")) return interval->start;
        if (EqualNames(name, "end")) return interval->end;
    }
    if (IsCollection(owner) && EqualNames(name, "count"))
        return static_cast<std::int32_t>(ItemsOf(owner, interpreter).size());
    if (const auto* builtin = std::get_if<const Builtin*>(&owner)) {
        const Builtin* member = FindBuiltin(std::string((*builtin)->name) + "." + name);
        if (member) return ReadBuiltin(*member, interpreter);
    }
    throw Error("Unknown property: \"" + name + "\" in " + interpreter.ToText(owner));
}

void SetProperty(const Value& owner, const std::string& name, const Value& value,
                 Interpreter& interpreter) {
    Host& host = interpreter.host();
    // Reading it first tells an unknown property from one that cannot be set.
    GetProperty(owner, name, interpreter);
    if (!std::holds_alternative<NodeId>(owner) || !EqualNames(name, "pivot"))
        throw Error("Property cannot be set: \"" + name + "\" in " + interpreter.ToText(owner));
    host.SetNodePivot(std::get<NodeId>(owner), Expect<Point3>(value, "Point3", host));
}

Value GetIndexed(const Value& owner, const Value& index, Interpreter& interpreter) {
    const std::int32_t position = ToInteger(index, interpreter.host());
    if (IsSculptButtons(owner)) return interpreter.host().IsSculptButtonOn(position);
    if (!IsCollection(owner)) throw Error("No \"get\" function for " + interpreter.ToText(owner));
    if (position < 1)
        throw Error("Index must be a positive number, got: " + std::to_string(position));
    const std::vector<Value> items = ItemsOf(owner, interpreter);
    const auto at = static_cast<std::size_t>(position) - 1;
    return at < items.size() ? items[at] : Undefined{};
}

void SetIndexed(const Value& owner, const Value& index, const Value& value,
                Interpreter& interpreter) {
    Host& host = interpreter.host();
    if (!IsSculptButtons(owner))
        throw Error("No \"put\" function for " + interpreter.ToText(owner));
    host.SetSculptButton(ToInteger(index, host), Expect<bool>(value, "Boolean", host));
}

Value ApplyOperator(std::string_view symbol, const Value& left, const Value& right, Host& host) {
    const std::optional<double> first = InTicks(left);
    const std::optional<double> second = InTicks(right);
    const bool comparable = first && second;
    if (symbol == "==" || symbol == "!=") {
        const bool equal = comparable ? *first == *second : left == right;
        return equal == (symbol == "==");
    }
    if (comparable && symbol == "<") return *first < *second;
    if (comparable && symbol == "<=") return *first <= *second;
    if (comparable && symbol == ">") return *first > *second;
    if (comparable && symbol == ">=") return *first >= *second;
    const bool subtracts = symbol == "-";
    const auto* left_integer = std::get_if<std::int32_t>(&left);
    const auto* right_integer = std::get_if<std::int32_t>(&right);
    if (left_integer && right_integer) {
        // Unsigned, because integers wrap around on the host.
        const auto first_bits = static_cast<std::uint32_t>(*left_integer);
        const auto second_bits = static_cast<std::uint32_t>(*right_integer);
        return static_cast<std::int32_t>(subtracts ? first_bits - second_bits
                                                   : first_bits + second_bits);
    }
    if (IsNumber(left) && IsNumber(right)) {
        const auto augend = static_cast<float>(NumberOf(left));
        const auto addend = static_cast<float>(NumberOf(right));
        return subtracts ? augend - addend : augend + addend;
    }
    if (IsNumber(left)) throw MakeConversionError(right, left_integer ? "Integer" : "Float", host);
    throw Error("No \"" + std::string(symbol) + "\" function for " + ToText(left, host));
}

}  // namespace script
