#include "standin/script/value.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "standin/script/host.h"
#include "standin/script/syntax.h"

namespace script {

namespace {

constexpr int kMaximumPrintDepth = 20;

char LowerCaseLetter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string NumberText(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.6g", value);
    return buffer;
}

std::string FloatText(float value) {
    std::string text = NumberText(value);
    const bool is_plain = text.find_first_not_of("-0123456789") == std::string::npos;
    return is_plain ? text + ".0" : text;
}

std::string TimeText(Time time) {
    return NumberText(static_cast<double>(time.ticks) / kTicksPerFrame) + "f";
}

std::string QuotedText(const std::string& text) {
    std::string quoted = "\"";
    quoted += text;
    return quoted + "\"";
}

struct Printer {
    Host* host;
    int depth;

    std::string operator()(const Undefined&) const { return "undefined"; }
    std::string operator()(const Ok&) const { return "OK"; }
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(std::int32_t value) const { return std::to_string(value); }
    std::string operator()(float value) const { return FloatText(value); }
    std::string operator()(const Time& time) const { return TimeText(time); }
    std::string operator()(const Interval& interval) const {
        return "(interval " + TimeText(interval.start) + " " + TimeText(interval.end) + ")";
    }
    std::string operator()(const Point3& point) const {
        return "[" + NumberText(point.x) + "," + NumberText(point.y) + "," + NumberText(point.z) +
               "]";
    }
    std::string operator()(const Name& name) const { return "#" + name.text; }
    std::string operator()(const String& text) const { return QuotedText(*text); }
    std::string operator()(const ArrayReference& array) const {
        // An array can hold itself.
        if (depth >= kMaximumPrintDepth) return "...";
        std::string text = "#(";
        for (const Value& item : array->items) {
            if (text.size() > 2) text += ", ";
            text += std::visit(Printer{host, depth + 1}, item.data());
        }
        return text + ")";
    }
    std::string operator()(const NodeReference& node) const {
        return "$" + (host ? host->NodeName(node.id) : "node:" + std::to_string(node.id));
    }
    std::string operator()(const TrackReference& track) const {
        return "SubAnim:" + (host ? host->TrackName(track.id) : std::to_string(track.id));
    }
    std::string operator()(const ObjectSet& set) const {
        switch (set.kind) {
            case ObjectSet::Kind::kSelection: return "$selection";
            case ObjectSet::Kind::kObjects: return "$objects";
            case ObjectSet::Kind::kPattern: break;
        }
        return "$" + set.pattern;
    }
    std::string operator()(const UserFunction& function) const {
        return function.definition->name + "()";
    }
    std::string operator()(const BuiltinFunction& function) const {
        return std::string(function.entry->name) + "()";
    }
    std::string operator()(const PrimitiveFunction& function) const { return function.name + "()"; }
    std::string operator()(ClassId id) const { return std::string(ClassText(id)); }
    std::string operator()(InterfaceId id) const {
        return "<Interface:" + std::string(InterfaceText(id)) + ">";
    }
};

struct ClassFinder {
    ClassId operator()(const Undefined&) const { return ClassId::kUndefinedClass; }
    ClassId operator()(const Ok&) const { return ClassId::kOkClass; }
    ClassId operator()(bool) const { return ClassId::kBooleanClass; }
    ClassId operator()(std::int32_t) const { return ClassId::kInteger; }
    ClassId operator()(float) const { return ClassId::kFloat; }
    ClassId operator()(const Time&) const { return ClassId::kTime; }
    ClassId operator()(const Interval&) const { return ClassId::kInterval; }
    ClassId operator()(const Point3&) const { return ClassId::kPoint3; }
    ClassId operator()(const Name&) const { return ClassId::kName; }
    ClassId operator()(const String&) const { return ClassId::kString; }
    ClassId operator()(const ArrayReference&) const { return ClassId::kArray; }
    ClassId operator()(const NodeReference&) const { return ClassId::kNode; }
    ClassId operator()(const TrackReference&) const { return ClassId::kSubAnim; }
    ClassId operator()(const ObjectSet&) const { return ClassId::kObjectSet; }
    ClassId operator()(const UserFunction&) const { return ClassId::kFunction; }
    ClassId operator()(const BuiltinFunction&) const { return ClassId::kFunction; }
    ClassId operator()(const PrimitiveFunction&) const { return ClassId::kFunction; }
    ClassId operator()(ClassId) const { return ClassId::kClass; }
    ClassId operator()(InterfaceId) const { return ClassId::kInterface; }
};

}  // namespace

Value Value::Text(std::string text) {
    return Value(Data(String(std::make_shared<const std::string>(std::move(text)))));
}

Value Value::MakeArray(std::vector<Value> items) {
    return Value(Data(std::make_shared<Array>(std::move(items))));
}

// Arrays that only this one holds are taken apart in a loop: nested a hundred thousand deep they
// would otherwise use up the stack.
Array::~Array() {
    std::vector<ArrayReference> pending;
    const auto collect = [&pending](std::vector<Value>& held) {
        for (const Value& item : held) {
            if (const ArrayReference* array = item.If<ArrayReference>()) pending.push_back(*array);
        }
        held.clear();
    };
    collect(items);
    while (!pending.empty()) {
        ArrayReference array = std::move(pending.back());
        pending.pop_back();
        if (array.use_count() == 1) collect(array->items);
    }
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), LowerCaseLetter);
    return lower;
}

bool EqualNames(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return LowerCaseLetter(a) == LowerCaseLetter(b); });
}

ClassId ClassOf(const Value& value) {
    return std::visit(ClassFinder{}, value.data());
}

std::string_view ClassText(ClassId id) {
    switch (id) {
        case ClassId::kUndefinedClass: return "UndefinedClass";
        case ClassId::kOkClass: return "OkClass";
        case ClassId::kBooleanClass: return "BooleanClass";
        case ClassId::kInteger: return "Integer";
        case ClassId::kFloat: return "Float";
        case ClassId::kString: return "String";
        case ClassId::kName: return "Name";
        case ClassId::kArray: return "Array";
        case ClassId::kPoint3: return "Point3";
        case ClassId::kTime: return "Time";
        case ClassId::kInterval: return "Interval";
        case ClassId::kFunction: return "Function";
        case ClassId::kNode: return "Node";
        case ClassId::kSubAnim: return "SubAnim";
        case ClassId::kObjectSet: return "ObjectSet";
        case ClassId::kInterface: return "Interface";
        case ClassId::kClass: break;
    }
    return "Class";
}

std::string_view InterfaceText(InterfaceId id) {
    switch (id) {
        case InterfaceId::kActionMan: return "actionMan";
        case InterfaceId::kTrackViews: return "trackviews";
        case InterfaceId::kCurrentTrackView: return "trackviews.current";
        case InterfaceId::kPolyToolsUi: return "PolyToolsUI";
        case InterfaceId::kSculptButtons: return "PolyToolsUI.SculptButtons";
        case InterfaceId::kPolyBoost: return "PolyBoost";
        case InterfaceId::kViewport: break;
    }
    return "viewport";
}

std::string ToText(const Value& value, Host* host) {
    return std::visit(Printer{host, 0}, value.data());
}

std::int32_t TruncateToInteger(double value) {
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value)) return 0;
    return static_cast<std::int32_t>(std::clamp(value, kLowest, kHighest));
}

Error MakeConversionError(const Value& value, std::string_view type, Host* host) {
    return Error("Unable to convert: " + ToText(value, host) + " to type: " + std::string(type));
}

std::int32_t ToInteger(const Value& value, Host* host) {
    if (const std::int32_t* number = value.If<std::int32_t>()) return *number;
    if (const float* number = value.If<float>()) return TruncateToInteger(*number);
    if (const Time* time = value.If<Time>()) return time->ticks;
    throw MakeConversionError(value, "Integer", host);
}

float ToFloat(const Value& value, Host* host) {
    if (const std::int32_t* number = value.If<std::int32_t>()) return static_cast<float>(*number);
    if (const float* number = value.If<float>()) return *number;
    if (const Time* time = value.If<Time>()) return static_cast<float>(time->ticks);
    throw MakeConversionError(value, "Float", host);
}

bool ToBoolean(const Value& value, Host* host) {
    if (const bool* flag = value.If<bool>()) return *flag;
    throw MakeConversionError(value, "Boolean", host);
}

std::string ToString(const Value& value, Host* host) {
    if (const String* text = value.If<String>()) return **text;
    if (const Name* name = value.If<Name>()) return name->text;
    throw MakeConversionError(value, "String", host);
}

Point3 ToPoint(const Value& value, Host* host) {
    if (const Point3* point = value.If<Point3>()) return *point;
    throw MakeConversionError(value, "Point3", host);
}

Time ToTime(const Value& value, Host* host) {
    if (const Time* time = value.If<Time>()) return *time;
    if (const std::int32_t* frames = value.If<std::int32_t>())
        return Time{TruncateToInteger(static_cast<double>(*frames) * kTicksPerFrame)};
    if (const float* frames = value.If<float>())
        return Time{TruncateToInteger(static_cast<double>(*frames) * kTicksPerFrame)};
    throw MakeConversionError(value, "Time", host);
}

Interval ToInterval(const Value& value, Host* host) {
    if (const Interval* interval = value.If<Interval>()) return *interval;
    throw MakeConversionError(value, "Interval", host);
}

}  // namespace script
