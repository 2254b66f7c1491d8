#include "standin/script/value.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "standin/script/builtins.h"
#include "standin/script/host.h"
#include "standin/script/parser.h"

namespace script {

namespace {

// Also bounds how deep the printing of an array that holds itself goes.
constexpr std::size_t kLongestArrayText = 1000;

char LowerCaseLetter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string NumberText(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.6g", value);
    return buffer;
}

// Appends what it prints to `text`.
struct Printer {
    std::string& text;
    Host& host;

    void operator()(const Undefined&) const { text += "undefined"; }
    void operator()(const Ok&) const { text += "OK"; }
    void operator()(bool value) const { text += value ? "true" : "false"; }
    void operator()(std::int32_t value) const { text += std::to_string(value); }
    void operator()(float value) const {
        const std::string number = NumberText(value);
        const bool is_whole = number.find_first_not_of("-0123456789") == std::string::npos;
        text += is_whole ? number + ".0" : number;
    }
    void operator()(const Time& time) const {
        text += NumberText(static_cast<double>(time.ticks) / kTicksPerFrame) + "f";
    }
    void operator()(const Interval& interval) const {
        text += "(interval ";
        (*this)(interval.start);
        text += " ";
        (*this)(interval.end);
        text += ")";
    }
    void operator()(const Point3& point) const {
        text +=
            "[" + NumberText(point.x) + "," + NumberText(point.y) + "," + NumberText(point.z) + "]";
    }
    void operator()(const Name& name) const { text += "#" + name.text; }
    void operator()(const std::string& string) const { text += "\"" + string + "\""; }
    void operator()(const Array* array) const {
        text += "#(";
        for (std::size_t index = 0; index < array->items.size(); ++index) {
            if (index > 0) text += ", ";
            if (text.size() > kLongestArrayText) {
                text += "...";
                break;
            }
            std::visit(*this, array->items[index]);
        }
        text += ")";
    }
    void operator()(NodeId node) const { text += "$" + host.NodeName(node); }
    void operator()(TrackId) const { text += "SubAnim"; }
    void operator()(const ObjectSet& set) const {
        text += "$" + (set.path.empty() ? "selection" : set.path);
    }
    void operator()(const UserFunction& user) const { text += user.function->name + "()"; }
    void operator()(const PrimitiveFunction& primitive) const { text += primitive.name + "()"; }
    void operator()(const Builtin* builtin) const {
        const std::string name(builtin->name);
        text += builtin->call ? name + "()" : "<Interface:" + name + ">";
    }
};

}  // namespace

Value::Value() = default;
Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

bool operator==(const Value& left, const Value& right) {
    return static_cast<const AnyValue&>(left) == static_cast<const AnyValue&>(right);
}

bool Name::operator==(const Name& other) const {
    return EqualNames(text, other.text);
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), LowerCaseLetter);
    return lower;
}

bool EqualNames(std::string_view left, std::string_view right) {
    // cppcheck-suppress danglingTemporaryLifetime // the texts outlive the call
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return LowerCaseLetter(a) == LowerCaseLetter(b); });
}

std::string ToText(const Value& value, Host& host) {
    std::string text;
    std::visit(Printer{text, host}, value);
    return text;
}

std::int32_t TruncateToInteger(double value) {
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value)) return 0;
    return static_cast<std::int32_t>(std::clamp(value, kLowest, kHighest));
}

Error MakeConversionError(const Value& value, std::string_view type, Host& host) {
    return Error("Unable to convert: " + ToText(value, host) + " to type: " + std::string(type));
}

std::int32_t ToInteger(const Value& value, Host& host) {
    if (const float* number = std::get_if<float>(&value)) return TruncateToInteger(*number);
    if (const Time* time = std::get_if<Time>(&value)) return time->ticks;
    return Expect<std::int32_t>(value, "Integer", host);
}

Time ToTime(const Value& value, Host& host) {
    if (const std::int32_t* frames = std::get_if<std::int32_t>(&value))
        return {TruncateToInteger(static_cast<double>(*frames) * kTicksPerFrame)};
    if (const float* frames = std::get_if<float>(&value))
        return {TruncateToInteger(static_cast<double>(*frames) * kTicksPerFrame)};
    return Expect<Time>(value, "Time", host);
}

}  // namespace script
