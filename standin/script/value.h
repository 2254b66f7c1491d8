// The values that scripts compute with, and the error that ends a script.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace script {

class Host;
struct Array;
struct Builtin;
struct Function;

// 4800 ticks a second at 30 frames a second.
constexpr int kTicksPerFrame = 160;

// Line and column count from 1; line 0 means that the place is not known (yet).
struct Position {
    int line = 0;
    int column = 0;
};

// Thrown for everything that can go wrong while a script is read or run. The host throws it
// without a position; the interpreter adds the position of the construct that called the host.
class Error : public std::exception {
public:
    explicit Error(std::string text, Position where = {})
        : message(std::move(text)), position(where) {}

    const char* what() const noexcept override { return message.c_str(); }

    std::string message;
    Position position;
};

// Not a condition that a script may catch: scripts that catch each other's endless loops would
// never come back.
class LimitError : public Error {
    using Error::Error;
};

// Handles that the host gives out and understands.
enum class NodeId : std::uintptr_t {};
enum class TrackId : std::uintptr_t { kNone };

using Undefined = std::monostate;

struct Ok {
    bool operator==(const Ok&) const = default;
};

struct Time {
    std::int32_t ticks = 0;
    bool operator==(const Time&) const = default;
};

struct Interval {
    Time start;
    Time end;
    bool operator==(const Interval&) const = default;
};

struct Point3 {
    float x = 0;
    float y = 0;
    float z = 0;
    bool operator==(const Point3&) const = default;
};

// `#selected`; keeps its spelling, compares without regard to case.
struct Name {
    std::string text;
    bool operator==(const Name& other) const;
};

// A live view of scene objects: it is looked up again whenever it is used.
struct ObjectSet {
    std::string path;  // what follows `$`; empty: the selection
    bool operator==(const ObjectSet&) const = default;
};

struct UserFunction {
    std::shared_ptr<const Function> function;
    bool operator==(const UserFunction&) const = default;
};

// A function that a plug-in registered with the host.
struct PrimitiveFunction {
    std::string name;
    bool operator==(const PrimitiveFunction&) const = default;
};

using AnyValue = std::variant<Undefined, Ok, bool, std::int32_t, float, Time, Interval, Point3,
                              Name, std::string, Array*, NodeId, TrackId, ObjectSet, UserFunction,
                              PrimitiveFunction, const Builtin*>;

// Each of these for each of the types is too much for every source that has a value to do it anew.
struct Value : AnyValue {
    using AnyValue::variant;
    Value();
    Value(const Value& other);
    Value(Value&& other) noexcept;
    Value& operator=(const Value& other);
    Value& operator=(Value&& other) noexcept;
    ~Value();
    friend bool operator==(const Value& left, const Value& right);
};
using Arguments = std::vector<Value>;

// Owned by the interpreter that made it, because an array may hold itself; two names can share one.
struct Array {
    std::vector<Value> items;
};

// One counted step deeper, for its lifetime.
class CountGuard {
public:
    explicit CountGuard(int& count) : count_(count) { ++count_; }
    ~CountGuard() { --count_; }
    CountGuard(const CountGuard&) = delete;
    CountGuard& operator=(const CountGuard&) = delete;

private:
    int& count_;
};

// The language's identifiers and names do not regard case (ASCII).
std::string LowerCase(std::string_view text);
bool EqualNames(std::string_view left, std::string_view right);

// As the listener prints a value; long arrays end in `...`.
std::string ToText(const Value& value, Host& host);

// Conversions that functions apply to their arguments; they throw Error where MAXScript does.
// Booleans, texts and undefined are not numbers, and a number is not a boolean.
std::int32_t ToInteger(const Value& value, Host& host);
// A plain number stands for frames wherever a time is expected.
Time ToTime(const Value& value, Host& host);

// Truncates like a C cast, but answers the nearest integer for what does not fit.
std::int32_t TruncateToInteger(double value);

Error MakeConversionError(const Value& value, std::string_view type, Host& host);

// The value, which has to be of this type; the name of the type is for the error.
template <typename T>
const T& Expect(const Value& value, std::string_view type, Host& host) {
    if (const T* expected = std::get_if<T>(&value)) return *expected;
    throw MakeConversionError(value, type, host);
}

}  // namespace script
