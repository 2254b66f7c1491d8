// The values that scripts compute with.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "standin/script/error.h"

namespace script {

class Host;
class Interpreter;
class Value;
struct FunctionDefinition;

// 4800 ticks a second at 30 frames a second.
constexpr int kTicksPerFrame = 160;
constexpr int kTicksPerSecond = 4800;

// Handles that the host gives out and understands; 0 is none.
using NodeId = std::uintptr_t;
using TrackId = std::uintptr_t;

struct Undefined {};
struct Ok {};

struct Time {
    std::int32_t ticks = 0;
};

struct Interval {
    Time start;
    Time end;
};

struct Point3 {
    float x = 0;
    float y = 0;
    float z = 0;
};

// `#selected`; keeps its spelling, compares without regard to case.
struct Name {
    std::string text;
};

using String = std::shared_ptr<const std::string>;

struct Array;
using ArrayReference = std::shared_ptr<Array>;

struct NodeReference {
    NodeId id = 0;
};

struct TrackReference {
    TrackId id = 0;
};

// A live view of scene objects: it is looked up again whenever it is used.
struct ObjectSet {
    enum class Kind { kSelection, kObjects, kPattern };
    Kind kind = Kind::kSelection;
    std::string pattern;  // for kPattern, without the leading `$`
};

struct UserFunction {
    std::shared_ptr<const FunctionDefinition> definition;
};

using Arguments = std::vector<Value>;

// A function of the language itself or a method of one of its interfaces.
struct Builtin {
    std::string_view name;
    Value (*call)(Interpreter&, const Arguments&);
    int minimum;  // number of arguments
    int maximum;  // -1: any number
};

struct BuiltinFunction {
    const Builtin* entry = nullptr;
};

// A function that a plug-in registered with the host.
struct PrimitiveFunction {
    std::string name;
};

enum class ClassId {
    kUndefinedClass,
    kOkClass,
    kBooleanClass,
    kInteger,
    kFloat,
    kString,
    kName,
    kArray,
    kPoint3,
    kTime,
    kInterval,
    kFunction,
    kNode,
    kSubAnim,
    kObjectSet,
    kInterface,
    kClass,
};

enum class InterfaceId {
    kActionMan,
    kTrackViews,
    kCurrentTrackView,
    kPolyToolsUi,
    kSculptButtons,
    kPolyBoost,
    kViewport,
};

class Value {
public:
    using Data =
        std::variant<Undefined, Ok, bool, std::int32_t, float, Time, Interval, Point3, Name, String,
                     ArrayReference, NodeReference, TrackReference, ObjectSet, UserFunction,
                     BuiltinFunction, PrimitiveFunction, ClassId, InterfaceId>;

    Value() = default;
    // Explicit makers instead of converting constructors: a text must never become a boolean, nor
    // a boolean a number, by accident.
    static Value MakeOk() { return Value(Data(Ok{})); }
    static Value Boolean(bool value) { return Value(Data(std::in_place_type<bool>, value)); }
    static Value Integer(std::int32_t value) {
        return Value(Data(std::in_place_type<std::int32_t>, value));
    }
    static Value Float(float value) { return Value(Data(std::in_place_type<float>, value)); }
    static Value Ticks(std::int32_t ticks) { return Value(Data(Time{ticks})); }
    static Value Text(std::string text);
    static Value MakeName(std::string text) { return Value(Data(Name{std::move(text)})); }
    static Value MakeArray(std::vector<Value> items);
    static Value Node(NodeId id) { return Value(Data(NodeReference{id})); }
    static Value Track(TrackId id) { return Value(Data(TrackReference{id})); }
    template <typename T>
    static Value Of(T value) {
        return Value(Data(std::in_place_type<T>, std::move(value)));
    }

    template <typename T>
    bool Is() const {
        return std::holds_alternative<T>(data_);
    }
    template <typename T>
    const T* If() const {
        return std::get_if<T>(&data_);
    }
    const Data& data() const { return data_; }

private:
    explicit Value(Data data) : data_(std::move(data)) {}

    Data data_;
};

struct Array {
    Array() = default;
    explicit Array(std::vector<Value> initial) : items(std::move(initial)) {}
    ~Array();
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;

    std::vector<Value> items;
};

// Lower-case copy (ASCII): the language's identifiers and names do not regard case.
std::string LowerCase(std::string_view text);
bool EqualNames(std::string_view left, std::string_view right);

ClassId ClassOf(const Value& value);
std::string_view ClassText(ClassId id);
std::string_view InterfaceText(InterfaceId id);

// As the listener prints a value. Objects are printed with the names that the host has for them;
// without a host, with their handles.
std::string ToText(const Value& value, Host* host = nullptr);

// Conversions that functions apply to their arguments; they throw Error where MAXScript does.
// Booleans, texts and undefined are not numbers, and a number is not a boolean.
std::int32_t ToInteger(const Value& value, Host* host = nullptr);
float ToFloat(const Value& value, Host* host = nullptr);
bool ToBoolean(const Value& value, Host* host = nullptr);
std::string ToString(const Value& value, Host* host = nullptr);
Point3 ToPoint(const Value& value, Host* host = nullptr);
// A plain number stands for frames wherever a time is expected.
Time ToTime(const Value& value, Host* host = nullptr);
Interval ToInterval(const Value& value, Host* host = nullptr);

// Truncates like a C cast, but answers the nearest integer for what does not fit.
std::int32_t TruncateToInteger(double value);

Error MakeConversionError(const Value& value, std::string_view type, Host* host);

}  // namespace script
