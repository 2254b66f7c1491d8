#include "standin/script/properties.h"

#include <algorithm>
#include <string_view>

#include "standin/script/builtins.h"

namespace script {

namespace {

// `*` stands for any letters, `?` for one; letter case does not count.
bool MatchesPattern(std::string_view text, std::string_view pattern) {
    std::size_t text_at = 0;
    std::size_t pattern_at = 0;
    std::size_t star = std::string_view::npos;
    std::size_t retry = 0;
    while (text_at < text.size()) {
        if (pattern_at < pattern.size() && pattern[pattern_at] == '*') {
            star = pattern_at++;
            retry = text_at;
        } else if (pattern_at < pattern.size() &&
                   (pattern[pattern_at] == '?' ||
                    EqualNames(text.substr(text_at, 1), pattern.substr(pattern_at, 1)))) {
            ++text_at;
            ++pattern_at;
        } else if (star != std::string_view::npos) {
            pattern_at = star + 1;
            text_at = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', pattern_at) == std::string_view::npos;
}

struct NodeProperty {
    std::string_view name;
    Value (*get)(Host&, NodeId);
    void (*set)(Host&, NodeId, const Value&);  // null: read only
};

Value GetNodePosition(Host& host, NodeId node) {
    return Value::Of(host.NodePosition(node));
}

void SetNodePosition(Host& host, NodeId node, const Value& value) {
    host.SetNodePosition(node, ToPoint(value, &host));
}

constexpr NodeProperty kNodeProperties[] = {
    {"name", [](Host& host, NodeId node) { return Value::Text(host.NodeName(node)); }, nullptr},
    {"ishidden", [](Host& host, NodeId node) { return Value::Boolean(host.IsNodeHidden(node)); },
     [](Host& host, NodeId node, const Value& value) {
         host.SetNodeHidden(node, ToBoolean(value, &host));
     }},
    {"pos", GetNodePosition, SetNodePosition},
    {"position", GetNodePosition, SetNodePosition},
    {"pivot", [](Host& host, NodeId node) { return Value::Of(host.NodePivot(node)); },
     [](Host& host, NodeId node, const Value& value) {
         host.SetNodePivot(node, ToPoint(value, &host));
     }},
    {"center", [](Host& host, NodeId node) { return Value::Of(host.NodeCenter(node)); },
     [](Host& host, NodeId node, const Value& value) {
         host.SetNodeCenter(node, ToPoint(value, &host));
     }},
};

const NodeProperty* FindNodeProperty(const std::string& name) {
    const auto entry =
        std::find_if(std::begin(kNodeProperties), std::end(kNodeProperties),
                     [&name](const NodeProperty& each) { return EqualNames(each.name, name); });
    return entry == std::end(kNodeProperties) ? nullptr : entry;
}

Error MakeUnknownPropertyError(const std::string& name, const Value& owner,
                               Interpreter& interpreter) {
    return Error("Unknown property: \"" + name + "\" in " + interpreter.ToText(owner));
}

std::size_t ToPosition(const Value& index, Interpreter& interpreter) {
    const std::int32_t position = index.Is<Time>() ? 0 : ToInteger(index, &interpreter.host());
    if (position < 1)
        throw Error("Index must be a positive number, got: " + interpreter.ToText(index));
    return static_cast<std::size_t>(position);
}

bool GetPlainProperty(const Value& owner, const std::string& name, Value& result) {
    if (const Time* time = owner.If<Time>()) {
        if (EqualNames(name, "ticks"))
            result = Value::Float(static_cast<float>(time->ticks));
        else if (EqualNames(name, "frame"))
            result = Value::Float(static_cast<float>(time->ticks) / kTicksPerFrame);
        else
            return false;
        return true;
    }
    if (const Interval* interval = owner.If<Interval>()) {
        if (EqualNames(name, "start"))
            result = Value::Of(interval->start);
        else if (EqualNames(name, "end"))
            result = Value::Of(interval->end);
        else
            return false;
        return true;
    }
    if (const Point3* point = owner.If<Point3>()) {
        if (EqualNames(name, "x"))
            result = Value::Float(point->x);
        else if (EqualNames(name, "y"))
            result = Value::Float(point->y);
        else if (EqualNames(name, "z"))
            result = Value::Float(point->z);
        else
            return false;
        return true;
    }
    return false;
}

bool HasCount(const Value& owner) {
    return owner.Is<ArrayReference>() || owner.Is<ObjectSet>() || owner.Is<String>();
}

Value CountOf(const Value& owner, Interpreter& interpreter) {
    std::size_t count = 0;
    if (const String* text = owner.If<String>())
        count = (*text)->size();
    else if (const ArrayReference* array = owner.If<ArrayReference>())
        count = (*array)->items.size();
    else
        count = ItemsOf(owner, interpreter).size();
    return Value::Integer(static_cast<std::int32_t>(count));
}

}  // namespace

std::vector<NodeId> NodesOfSet(const ObjectSet& set, Host& host) {
    if (set.kind == ObjectSet::Kind::kSelection) return host.Selection();
    std::vector<NodeId> nodes = host.Nodes();
    if (set.kind == ObjectSet::Kind::kPattern) {
        std::erase_if(
            nodes, [&](NodeId node) { return !MatchesPattern(host.NodeName(node), set.pattern); });
    }
    return nodes;
}

std::vector<Value> ItemsOf(const Value& collection, Interpreter& interpreter) {
    if (const ArrayReference* array = collection.If<ArrayReference>()) {
        interpreter.CountSteps((*array)->items.size());
        return (*array)->items;
    }
    std::vector<Value> items;
    if (const ObjectSet* set = collection.If<ObjectSet>()) {
        for (const NodeId node : NodesOfSet(*set, interpreter.host()))
            items.push_back(Value::Node(node));
        interpreter.CountSteps(items.size());
        return items;
    }
    throw MakeConversionError(collection, "Array", &interpreter.host());
}

std::vector<NodeId> NodesOf(const Value& value, Interpreter& interpreter) {
    if (const NodeReference* node = value.If<NodeReference>()) return {node->id};
    if (!value.Is<ArrayReference>() && !value.Is<ObjectSet>())
        throw MakeConversionError(value, "Node", &interpreter.host());
    std::vector<NodeId> nodes;
    for (const Value& item : ItemsOf(value, interpreter)) {
        const NodeReference* node = item.If<NodeReference>();
        if (!node) throw MakeConversionError(item, "Node", &interpreter.host());
        nodes.push_back(node->id);
    }
    return nodes;
}

Value GetProperty(const Value& owner, const std::string& name, Interpreter& interpreter) {
    Value result;
    if (GetPlainProperty(owner, name, result)) return result;
    if (HasCount(owner) && EqualNames(name, "count")) return CountOf(owner, interpreter);
    if (const NodeReference* node = owner.If<NodeReference>()) {
        if (const NodeProperty* property = FindNodeProperty(name))
            return property->get(interpreter.host(), node->id);
    }
    if (const InterfaceId* id = owner.If<InterfaceId>()) {
        if (GetInterfaceMember(*id, name, interpreter, result)) return result;
    }
    throw MakeUnknownPropertyError(name, owner, interpreter);
}

void SetProperty(const Value& owner, const std::string& name, const Value& value,
                 Interpreter& interpreter) {
    const bool has_objects = owner.Is<NodeReference>() || owner.Is<ObjectSet>();
    const NodeProperty* property = has_objects ? FindNodeProperty(name) : nullptr;
    if (property && property->set) {
        // A property of an object set is set on each of its objects.
        for (const NodeId node : NodesOf(owner, interpreter))
            property->set(interpreter.host(), node, value);
        return;
    }
    // Reading it first tells an unknown property from one that cannot be set.
    if (!property) GetProperty(owner, name, interpreter);
    throw Error("Property cannot be set: \"" + name + "\" in " + interpreter.ToText(owner));
}

Value GetIndexed(const Value& owner, const Value& index, Interpreter& interpreter) {
    if (const InterfaceId* id = owner.If<InterfaceId>(); id && *id == InterfaceId::kSculptButtons) {
        const int button = ToInteger(index, &interpreter.host());
        return Value::Boolean(interpreter.host().IsSculptButtonOn(button));
    }
    if (const String* text = owner.If<String>()) {
        const std::size_t position = ToPosition(index, interpreter);
        if (position > (*text)->size()) return Value();
        return Value::Text(std::string(1, (**text)[position - 1]));
    }
    if (const ArrayReference* array = owner.If<ArrayReference>()) {
        const std::size_t position = ToPosition(index, interpreter);
        return position > (*array)->items.size() ? Value() : (*array)->items[position - 1];
    }
    if (owner.Is<ObjectSet>()) {
        const std::size_t position = ToPosition(index, interpreter);
        const std::vector<Value> items = ItemsOf(owner, interpreter);
        return position > items.size() ? Value() : items[position - 1];
    }
    throw Error("No \"get\" function for " + interpreter.ToText(owner));
}

void SetIndexed(const Value& owner, const Value& index, const Value& value,
                Interpreter& interpreter) {
    if (const InterfaceId* id = owner.If<InterfaceId>(); id && *id == InterfaceId::kSculptButtons) {
        const int button = ToInteger(index, &interpreter.host());
        interpreter.host().SetSculptButton(button, ToBoolean(value, &interpreter.host()));
        return;
    }
    const ArrayReference* array = owner.If<ArrayReference>();
    if (!array) throw Error("No \"put\" function for " + interpreter.ToText(owner));
    const std::size_t position = ToPosition(index, interpreter);
    std::vector<Value>& items = (*array)->items;
    if (position > items.size()) {
        interpreter.CheckSize(position);
        interpreter.CountSteps(position - items.size());
        items.resize(position);
    }
    interpreter.NoteNestedArray(*array, value);
    items[position - 1] = value;
}

}  // namespace script
