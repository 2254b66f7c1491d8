#include "standin/script/builtins.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "standin/script/operators.h"
#include "standin/script/properties.h"

namespace script {

namespace {

TrackId ToTrack(const Value& value, Interpreter& interpreter) {
    if (const TrackReference* track = value.If<TrackReference>()) return track->id;
    throw MakeConversionError(value, "SubAnim", &interpreter.host());
}

Value Append(Interpreter& interpreter, const Arguments& arguments) {
    const ArrayReference* array = arguments[0].If<ArrayReference>();
    if (!array) throw MakeConversionError(arguments[0], "Array", &interpreter.host());
    interpreter.CheckSize((*array)->items.size() + 1);
    interpreter.NoteNestedArray(*array, arguments[1]);
    (*array)->items.push_back(arguments[1]);
    return arguments[0];
}

// `amin #(3, 1)` and `amin 3 1` are the same; of nothing it is undefined.
Value FindExtreme(Interpreter& interpreter, const Arguments& arguments, int sign) {
    const bool is_collection = arguments.size() == 1 &&
                               (arguments[0].Is<ArrayReference>() || arguments[0].Is<ObjectSet>());
    const Arguments items = is_collection ? ItemsOf(arguments[0], interpreter) : arguments;
    Value best;
    bool has_best = false;
    for (const Value& item : items) {
        if (!has_best || CompareOrder(item, best, sign < 0 ? "<" : ">", interpreter) == sign)
            best = item;
        has_best = true;
    }
    return best;
}

Value FindMinimum(Interpreter& interpreter, const Arguments& arguments) {
    return FindExtreme(interpreter, arguments, -1);
}

Value FindMaximum(Interpreter& interpreter, const Arguments& arguments) {
    return FindExtreme(interpreter, arguments, 1);
}

Value Absolute(Interpreter& interpreter, const Arguments& arguments) {
    const Value zero = arguments[0].Is<Time>() ? Value::Ticks(0) : Value::Integer(0);
    const bool is_negative = CompareOrder(arguments[0], zero, "abs", interpreter) < 0;
    return is_negative ? Negate(arguments[0], interpreter) : arguments[0];
}

Value FindClass(Interpreter&, const Arguments& arguments) {
    return Value::Of(ClassOf(arguments[0]));
}

Value GetNodeByName(Interpreter& interpreter, const Arguments& arguments) {
    const std::string wanted = ToString(arguments[0], &interpreter.host());
    for (const NodeId node : interpreter.host().Nodes()) {
        if (EqualNames(interpreter.host().NodeName(node), wanted)) return Value::Node(node);
    }
    return Value();
}

Value Select(Interpreter& interpreter, const Arguments& arguments) {
    interpreter.host().SetSelection(NodesOf(arguments[0], interpreter));
    return Value::MakeOk();
}

Value SelectMore(Interpreter& interpreter, const Arguments& arguments) {
    std::vector<NodeId> selection = interpreter.host().Selection();
    for (const NodeId node : NodesOf(arguments[0], interpreter)) {
        if (std::find(selection.begin(), selection.end(), node) == selection.end())
            selection.push_back(node);
    }
    interpreter.host().SetSelection(selection);
    return Value::MakeOk();
}

Value Deselect(Interpreter& interpreter, const Arguments& arguments) {
    std::vector<NodeId> selection = interpreter.host().Selection();
    const std::vector<NodeId> removed = NodesOf(arguments[0], interpreter);
    std::erase_if(selection, [&removed](NodeId node) {
        return std::find(removed.begin(), removed.end(), node) != removed.end();
    });
    interpreter.host().SetSelection(selection);
    return Value::MakeOk();
}

Value ClearSelection(Interpreter& interpreter, const Arguments&) {
    interpreter.host().SetSelection({});
    return Value::MakeOk();
}

Value SetHidden(Interpreter& interpreter, const Value& objects, bool hidden) {
    for (const NodeId node : NodesOf(objects, interpreter))
        interpreter.host().SetNodeHidden(node, hidden);
    return Value::MakeOk();
}

Value Hide(Interpreter& interpreter, const Arguments& arguments) {
    return SetHidden(interpreter, arguments[0], true);
}

Value Unhide(Interpreter& interpreter, const Arguments& arguments) {
    return SetHidden(interpreter, arguments[0], false);
}

Value CountKeys(Interpreter& interpreter, const Arguments& arguments) {
    const TrackId track = ToTrack(arguments[0], interpreter);
    return Value::Integer(interpreter.host().KeyCount(track));
}

Value IsKeySelected(Interpreter& interpreter, const Arguments& arguments) {
    const TrackId track = ToTrack(arguments[0], interpreter);
    const int key = ToInteger(arguments[1], &interpreter.host());
    return Value::Boolean(interpreter.host().IsKeySelected(track, key));
}

Value GetKeyTime(Interpreter& interpreter, const Arguments& arguments) {
    const TrackId track = ToTrack(arguments[0], interpreter);
    const int key = ToInteger(arguments[1], &interpreter.host());
    return Value::Of(interpreter.host().KeyTime(track, key));
}

Value CompleteRedraw(Interpreter& interpreter, const Arguments&) {
    interpreter.host().CompleteRedraw();
    return Value::MakeOk();
}

Value Print(Interpreter& interpreter, const Arguments& arguments) {
    const std::string text = interpreter.ToText(arguments[0]);
    interpreter.CountSteps(text.size() / 16);
    interpreter.host().WriteListener(text + "\n");
    return arguments[0];
}

// Each `%` of the first argument is replaced by the next of the others; texts without quotes.
Value Format(Interpreter& interpreter, const Arguments& arguments) {
    const std::string pattern = ToString(arguments[0], &interpreter.host());
    std::string output;
    std::size_t next = 1;
    for (const char letter : pattern) {
        if (letter != '%') {
            output += letter;
            continue;
        }
        if (next == arguments.size()) throw Error("format has more % than values");
        const Value& value = arguments[next++];
        const String* text = value.If<String>();
        output += text ? **text : interpreter.ToText(value);
        interpreter.CheckSize(output.size());
    }
    interpreter.CountSteps(output.size() / 16);
    interpreter.host().WriteListener(output);
    return Value::MakeOk();
}

Value Throw(Interpreter& interpreter, const Arguments& arguments) {
    if (arguments.empty())
        throw Error(interpreter.caught_message().empty() ? "throw() outside of catch"
                                                         : interpreter.caught_message());
    const String* text = arguments[0].If<String>();
    throw Error(text ? **text : interpreter.ToText(arguments[0]));
}

Value GetCurrentException(Interpreter& interpreter, const Arguments&) {
    return Value::Text(interpreter.caught_message());
}

constexpr Builtin kFunctions[] = {
    {"append", Append, 2, 2},
    {"amin", FindMinimum, 1, -1},
    {"amax", FindMaximum, 1, -1},
    {"abs", Absolute, 1, 1},
    {"classof", FindClass, 1, 1},
    {"getnodebyname", GetNodeByName, 1, 1},
    {"select", Select, 1, 1},
    {"selectmore", SelectMore, 1, 1},
    {"deselect", Deselect, 1, 1},
    {"clearselection", ClearSelection, 0, 0},
    {"hide", Hide, 1, 1},
    {"unhide", Unhide, 1, 1},
    {"numkeys", CountKeys, 1, 1},
    {"iskeyselected", IsKeySelected, 2, 2},
    {"getkeytime", GetKeyTime, 2, 2},
    {"completeredraw", CompleteRedraw, 0, 0},
    {"print", Print, 1, 1},
    {"format", Format, 1, -1},
    {"throw", Throw, 0, 1},
    {"getcurrentexception", GetCurrentException, 0, 0},
};

// ---- interfaces

Value ExecuteAction(Interpreter& interpreter, const Arguments& arguments) {
    const int table = ToInteger(arguments[0], &interpreter.host());
    if (!arguments[1].Is<String>())
        throw MakeConversionError(arguments[1], "String", &interpreter.host());
    return Value::Boolean(interpreter.host().ExecuteAction(table, **arguments[1].If<String>()));
}

Value CountSelectedTracks(Interpreter& interpreter, const Arguments&) {
    return Value::Integer(interpreter.host().SelectedTrackCount());
}

Value GetSelectedTrack(Interpreter& interpreter, const Arguments& arguments) {
    const int index = ToInteger(arguments[0], &interpreter.host());
    const TrackId track = interpreter.host().SelectedTrack(index);
    return track == 0 ? Value() : Value::Track(track);
}

Value ResetAllViews(Interpreter& interpreter, const Arguments&) {
    interpreter.host().ResetAllViews();
    return Value::MakeOk();
}

Value ToggleTool(Interpreter& interpreter, const Arguments& arguments) {
    Host* host = &interpreter.host();
    const int group = ToInteger(arguments[0], host);
    const int index = ToInteger(arguments[1], host);
    host->ToggleTool(group, index, ToBoolean(arguments[2], host));
    return Value::MakeOk();
}

constexpr Builtin kExecuteAction = {"actionMan.executeAction", ExecuteAction, 2, 2};
constexpr Builtin kCountSelectedTracks = {"trackviews.current.numSelTracks", CountSelectedTracks, 0,
                                          0};
constexpr Builtin kGetSelectedTrack = {"trackviews.current.getSelected", GetSelectedTrack, 1, 1};
constexpr Builtin kResetAllViews = {"viewport.ResetAllViews", ResetAllViews, 0, 0};
constexpr Builtin kToggleTool = {"PolyBoost.ToolToggle", ToggleTool, 3, 3};

struct InterfaceMember {
    InterfaceId owner;
    std::string_view name;
    Value (*get)(Interpreter&);
};

template <const Builtin& kMethod>
Value GetMethod(Interpreter&) {
    return Value::Of(BuiltinFunction{&kMethod});
}

template <InterfaceId kId>
Value GetInterface(Interpreter&) {
    return Value::Of(kId);
}

template <InterfaceId kId>
Value GetPolyTools(Interpreter& interpreter) {
    return interpreter.host().HasPolyTools() ? Value::Of(kId) : Value();
}

constexpr InterfaceMember kInterfaceMembers[] = {
    {InterfaceId::kActionMan, "executeaction", GetMethod<kExecuteAction>},
    {InterfaceId::kTrackViews, "current", GetInterface<InterfaceId::kCurrentTrackView>},
    {InterfaceId::kCurrentTrackView, "numseltracks", GetMethod<kCountSelectedTracks>},
    {InterfaceId::kCurrentTrackView, "getselected", GetMethod<kGetSelectedTrack>},
    {InterfaceId::kPolyToolsUi, "sculpttool",
     [](Interpreter& interpreter) { return Value::Integer(interpreter.host().SculptTool()); }},
    {InterfaceId::kPolyToolsUi, "pdtool",
     [](Interpreter& interpreter) { return Value::Integer(interpreter.host().PaintDeformTool()); }},
    {InterfaceId::kPolyToolsUi, "polyshiftactive",
     [](Interpreter& interpreter) {
         return Value::Boolean(interpreter.host().IsPolyShiftActive());
     }},
    {InterfaceId::kPolyToolsUi, "sculptbuttons", GetInterface<InterfaceId::kSculptButtons>},
    {InterfaceId::kPolyBoost, "tooltoggle", GetMethod<kToggleTool>},
    {InterfaceId::kViewport, "resetallviews", GetMethod<kResetAllViews>},
};

// ---- variables

struct SystemVariable {
    std::string_view name;
    Value (*get)(Interpreter&);
    void (*set)(Interpreter&, const Value&);  // null: read only
};

template <ObjectSet::Kind kKind>
Value GetObjectSet(Interpreter&) {
    return Value::Of(ObjectSet{kKind, {}});
}

template <ClassId kId>
Value GetClass(Interpreter&) {
    return Value::Of(kId);
}

Value GetCurrentTime(Interpreter& interpreter) {
    return Value::Of(interpreter.host().CurrentTime());
}

void SetCurrentTime(Interpreter& interpreter, const Value& value) {
    interpreter.host().SetCurrentTime(ToTime(value, &interpreter.host()));
}

constexpr SystemVariable kVariables[] = {
    {"selection", GetObjectSet<ObjectSet::Kind::kSelection>, nullptr},
    {"objects", GetObjectSet<ObjectSet::Kind::kObjects>, nullptr},
    {"animationrange",
     [](Interpreter& interpreter) { return Value::Of(interpreter.host().AnimationRange()); },
     [](Interpreter& interpreter, const Value& value) {
         interpreter.host().SetAnimationRange(ToInterval(value, &interpreter.host()));
     }},
    {"slidertime", GetCurrentTime, SetCurrentTime},
    {"currenttime", GetCurrentTime, nullptr},
    {"actionman", GetInterface<InterfaceId::kActionMan>, nullptr},
    {"trackviews", GetInterface<InterfaceId::kTrackViews>, nullptr},
    {"polytoolsui", GetPolyTools<InterfaceId::kPolyToolsUi>, nullptr},
    {"polyboost", GetPolyTools<InterfaceId::kPolyBoost>, nullptr},
    {"viewport", GetInterface<InterfaceId::kViewport>, nullptr},
    {"integer", GetClass<ClassId::kInteger>, nullptr},
    {"float", GetClass<ClassId::kFloat>, nullptr},
    {"string", GetClass<ClassId::kString>, nullptr},
    {"name", GetClass<ClassId::kName>, nullptr},
    {"array", GetClass<ClassId::kArray>, nullptr},
    {"time", GetClass<ClassId::kTime>, nullptr},
    {"interval", GetClass<ClassId::kInterval>, nullptr},
    {"point3", GetClass<ClassId::kPoint3>, nullptr},
    {"booleanclass", GetClass<ClassId::kBooleanClass>, nullptr},
    {"undefinedclass", GetClass<ClassId::kUndefinedClass>, nullptr},
};

template <typename Table>
auto FindEntry(const Table& table, const std::string& name) -> decltype(&table[0]) {
    for (const auto& entry : table) {
        if (entry.name == name) return &entry;
    }
    return nullptr;
}

}  // namespace

bool IsBuiltinName(const std::string& name) {
    return FindEntry(kFunctions, name) || FindEntry(kVariables, name);
}

bool ReadBuiltin(const std::string& name, Interpreter& interpreter, Value& result) {
    if (const Builtin* function = FindEntry(kFunctions, name)) {
        result = Value::Of(BuiltinFunction{function});
        return true;
    }
    if (const SystemVariable* variable = FindEntry(kVariables, name)) {
        result = variable->get(interpreter);
        return true;
    }
    return false;
}

bool WriteBuiltin(const std::string& name, const Value& value, Interpreter& interpreter) {
    if (!IsBuiltinName(name)) return false;
    const SystemVariable* variable = FindEntry(kVariables, name);
    if (!variable || !variable->set) throw Error("Cannot assign to read-only variable: " + name);
    variable->set(interpreter, value);
    return true;
}

bool GetInterfaceMember(InterfaceId owner, const std::string& name, Interpreter& interpreter,
                        Value& result) {
    for (const InterfaceMember& member : kInterfaceMembers) {
        if (member.owner == owner && EqualNames(member.name, name)) {
            result = member.get(interpreter);
            return true;
        }
    }
    return false;
}

}  // namespace script
