#include "standin/script/operators.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "standin/script/properties.h"

namespace script {

namespace {

constexpr std::string_view SymbolOf(Operation operation) {
    switch (operation) {
        case Operation::kAdd: return "+";
        case Operation::kSubtract: return "-";
        case Operation::kMultiply: return "*";
        case Operation::kDivide: return "/";
        case Operation::kPower: return "^";
        case Operation::kEqual: return "==";
        case Operation::kNotEqual: return "!=";
        case Operation::kLess: return "<";
        case Operation::kLessOrEqual: return "<=";
        case Operation::kGreater: return ">";
        case Operation::kGreaterOrEqual: return ">=";
        case Operation::kNone: break;
    }
    return "=";
}

bool IsNumber(const Value& value) {
    return value.Is<std::int32_t>() || value.Is<float>();
}

double NumberOf(const Value& value) {
    if (const std::int32_t* number = value.If<std::int32_t>()) return *number;
    return *value.If<float>();
}

Error MakeNoOperationError(std::string_view symbol, const Value& value, Interpreter& interpreter) {
    return Error("No \"" + std::string(symbol) + "\" function for " + interpreter.ToText(value));
}

// Integers wrap around, as on the host.
std::int32_t Wrap(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

Value ApplyToIntegers(Operation operation, std::int32_t left, std::int32_t right) {
    const std::int64_t wide_left = left;
    const std::int64_t wide_right = right;
    switch (operation) {
        case Operation::kAdd: return Value::Integer(Wrap(wide_left + wide_right));
        case Operation::kSubtract: return Value::Integer(Wrap(wide_left - wide_right));
        case Operation::kMultiply: return Value::Integer(Wrap(wide_left * wide_right));
        case Operation::kDivide:
            if (right == 0) throw Error("Division by zero");
            return Value::Integer(Wrap(wide_left / wide_right));
        default: return Value::Integer(TruncateToInteger(std::pow(left, right)));
    }
}

double ApplyToDoubles(Operation operation, double left, double right) {
    switch (operation) {
        case Operation::kAdd: return left + right;
        case Operation::kSubtract: return left - right;
        case Operation::kMultiply: return left * right;
        case Operation::kDivide: return left / right;
        default: return std::pow(left, right);
    }
}

// A double can lie outside of the range of a float.
float Narrow(double value) {
    constexpr double kHighest = std::numeric_limits<float>::max();
    if (value > kHighest) return std::numeric_limits<float>::infinity();
    if (value < -kHighest) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

Point3 ApplyToPoints(Operation operation, Point3 left, Point3 right) {
    const auto apply = [operation](float a, float b) {
        return Narrow(ApplyToDoubles(operation, a, b));
    };
    return {apply(left.x, right.x), apply(left.y, right.y), apply(left.z, right.z)};
}

bool IsTimeOrNumber(const Value& value) {
    return value.Is<Time>() || IsNumber(value);
}

// Times keep their unit under + and -, and under * and / with a number. A number beside a time
// counts frames.
Value ApplyToTimes(Operation operation, const Value& left, const Value& right,
                   Interpreter& interpreter) {
    if (operation == Operation::kAdd || operation == Operation::kSubtract) {
        const double result = ApplyToDoubles(operation, ToTime(left).ticks, ToTime(right).ticks);
        return Value::Ticks(TruncateToInteger(result));
    }
    const bool scales =
        left.Is<Time>() ? IsNumber(right) : operation == Operation::kMultiply && IsNumber(left);
    if (operation == Operation::kPower || !scales)
        throw MakeNoOperationError(SymbolOf(operation), left, interpreter);
    const double first = left.Is<Time>() ? left.If<Time>()->ticks : NumberOf(left);
    const double second = right.Is<Time>() ? right.If<Time>()->ticks : NumberOf(right);
    if (operation == Operation::kDivide && second == 0) throw Error("Division by zero");
    return Value::Ticks(TruncateToInteger(ApplyToDoubles(operation, first, second)));
}

Value Concatenate(const Value& left, const Value& right, Interpreter& interpreter) {
    if (const String* text = left.If<String>()) {
        const String* added = right.If<String>();
        if (!added) throw MakeConversionError(right, "String", &interpreter.host());
        interpreter.CheckSize((*text)->size() + (*added)->size());
        interpreter.CountSteps(((*text)->size() + (*added)->size()) / 16);
        return Value::Text(**text + **added);
    }
    std::vector<Value> items = ItemsOf(left, interpreter);
    const std::vector<Value> added = ItemsOf(right, interpreter);
    interpreter.CheckSize(items.size() + added.size());
    interpreter.CountSteps(items.size() + added.size());
    items.insert(items.end(), added.begin(), added.end());
    return Value::MakeArray(std::move(items));
}

Value ApplyArithmetic(Operation operation, const Value& left, const Value& right,
                      Interpreter& interpreter) {
    const std::int32_t* left_integer = left.If<std::int32_t>();
    const std::int32_t* right_integer = right.If<std::int32_t>();
    if (left_integer && right_integer)
        return ApplyToIntegers(operation, *left_integer, *right_integer);
    if (IsNumber(left) && IsNumber(right))
        return Value::Float(Narrow(ApplyToDoubles(operation, NumberOf(left), NumberOf(right))));
    if ((left.Is<Time>() || right.Is<Time>()) && IsTimeOrNumber(left) && IsTimeOrNumber(right))
        return ApplyToTimes(operation, left, right, interpreter);
    const Point3* left_point = left.If<Point3>();
    const Point3* right_point = right.If<Point3>();
    const bool adds = operation == Operation::kAdd || operation == Operation::kSubtract;
    if (left_point && right_point && adds)
        return Value::Of(ApplyToPoints(operation, *left_point, *right_point));
    const bool scales = operation == Operation::kMultiply || operation == Operation::kDivide;
    if (left_point && IsNumber(right) && scales) {
        const float factor = Narrow(NumberOf(right));
        return Value::Of(ApplyToPoints(operation, *left_point, {factor, factor, factor}));
    }
    if (right_point && IsNumber(left) && operation == Operation::kMultiply)
        return ApplyArithmetic(operation, right, left, interpreter);
    if (operation == Operation::kAdd && (left.Is<String>() || left.Is<ArrayReference>()))
        return Concatenate(left, right, interpreter);
    if (IsNumber(left) || left_point || left.Is<Time>())
        throw MakeConversionError(right, ClassText(ClassOf(left)), &interpreter.host());
    throw MakeNoOperationError(SymbolOf(operation), left, interpreter);
}

Value ConvertToInteger(const Value& value, Interpreter& interpreter) {
    const String* text = value.If<String>();
    if (!text) return Value::Integer(ToInteger(value, &interpreter.host()));
    char* end = nullptr;
    const double number = std::strtod((*text)->c_str(), &end);
    return end == (*text)->c_str() ? Value() : Value::Integer(TruncateToInteger(number));
}

Value ConvertToFloat(const Value& value, Interpreter& interpreter) {
    const String* text = value.If<String>();
    if (!text) return Value::Float(ToFloat(value, &interpreter.host()));
    char* end = nullptr;
    const double number = std::strtod((*text)->c_str(), &end);
    return end == (*text)->c_str() ? Value() : Value::Float(Narrow(number));
}

Value ConvertToString(const Value& value, Interpreter& interpreter) {
    if (value.Is<String>()) return value;
    if (const Name* name = value.If<Name>()) return Value::Text(name->text);
    std::string text = interpreter.ToText(value);
    interpreter.CheckSize(text.size());
    interpreter.CountSteps(text.size() / 16);
    return Value::Text(std::move(text));
}

int Sign(double left, double right) {
    return left < right ? -1 : left > right ? 1 : 0;
}

}  // namespace

bool AreEqual(const Value& left, const Value& right) {
    if (IsNumber(left) && IsNumber(right)) return NumberOf(left) == NumberOf(right);
    if ((left.Is<Time>() || right.Is<Time>()) && IsTimeOrNumber(left) && IsTimeOrNumber(right))
        return ToTime(left).ticks == ToTime(right).ticks;
    if (left.data().index() != right.data().index()) return false;
    struct Comparison {
        const Value& right;
        bool operator()(const Undefined&) const { return true; }
        bool operator()(const Ok&) const { return true; }
        bool operator()(bool value) const { return value == *right.If<bool>(); }
        bool operator()(std::int32_t value) const { return value == *right.If<std::int32_t>(); }
        bool operator()(float value) const { return value == *right.If<float>(); }
        bool operator()(const Time& time) const { return time.ticks == right.If<Time>()->ticks; }
        bool operator()(const Interval& interval) const {
            const Interval& other = *right.If<Interval>();
            return interval.start.ticks == other.start.ticks &&
                   interval.end.ticks == other.end.ticks;
        }
        bool operator()(const Point3& point) const {
            const Point3& other = *right.If<Point3>();
            return point.x == other.x && point.y == other.y && point.z == other.z;
        }
        bool operator()(const Name& name) const {
            return EqualNames(name.text, right.If<Name>()->text);
        }
        bool operator()(const String& text) const { return *text == **right.If<String>(); }
        // Two arrays are equal when they are the same array, whatever they hold.
        bool operator()(const ArrayReference& array) const {
            return array == *right.If<ArrayReference>();
        }
        bool operator()(const NodeReference& node) const {
            return node.id == right.If<NodeReference>()->id;
        }
        bool operator()(const TrackReference& track) const {
            return track.id == right.If<TrackReference>()->id;
        }
        bool operator()(const ObjectSet& set) const {
            const ObjectSet& other = *right.If<ObjectSet>();
            return set.kind == other.kind && EqualNames(set.pattern, other.pattern);
        }
        bool operator()(const UserFunction& function) const {
            return function.definition == right.If<UserFunction>()->definition;
        }
        bool operator()(const BuiltinFunction& function) const {
            return function.entry == right.If<BuiltinFunction>()->entry;
        }
        bool operator()(const PrimitiveFunction& function) const {
            return function.name == right.If<PrimitiveFunction>()->name;
        }
        bool operator()(ClassId id) const { return id == *right.If<ClassId>(); }
        bool operator()(InterfaceId id) const { return id == *right.If<InterfaceId>(); }
    };
    return std::visit(Comparison{right}, left.data());
}

int CompareOrder(const Value& left, const Value& right, std::string_view symbol,
                 Interpreter& interpreter) {
    if (IsNumber(left) && IsNumber(right)) return Sign(NumberOf(left), NumberOf(right));
    if (IsTimeOrNumber(left) && IsTimeOrNumber(right))
        return Sign(ToTime(left).ticks, ToTime(right).ticks);
    const String* left_text = left.If<String>();
    const String* right_text = right.If<String>();
    if (left_text && right_text) return Sign((*left_text)->compare(**right_text), 0);
    if (left_text || IsTimeOrNumber(left))
        throw MakeConversionError(right, ClassText(ClassOf(left)), &interpreter.host());
    throw MakeNoOperationError(symbol, left, interpreter);
}

Value ApplyOperation(Operation operation, const Value& left, const Value& right,
                     Interpreter& interpreter) {
    const auto order = [&] { return CompareOrder(left, right, SymbolOf(operation), interpreter); };
    switch (operation) {
        case Operation::kEqual: return Value::Boolean(AreEqual(left, right));
        case Operation::kNotEqual: return Value::Boolean(!AreEqual(left, right));
        case Operation::kLess: return Value::Boolean(order() < 0);
        case Operation::kLessOrEqual: return Value::Boolean(order() <= 0);
        case Operation::kGreater: return Value::Boolean(order() > 0);
        case Operation::kGreaterOrEqual: return Value::Boolean(order() >= 0);
        default: return ApplyArithmetic(operation, left, right, interpreter);
    }
}

Value Negate(const Value& value, Interpreter& interpreter) {
    if (const std::int32_t* number = value.If<std::int32_t>())
        return Value::Integer(Wrap(-static_cast<std::int64_t>(*number)));
    if (const float* number = value.If<float>()) return Value::Float(-*number);
    if (const Time* time = value.If<Time>())
        return Value::Ticks(Wrap(-static_cast<std::int64_t>(time->ticks)));
    if (const Point3* point = value.If<Point3>())
        return Value::Of(Point3{-point->x, -point->y, -point->z});
    throw MakeNoOperationError("-", value, interpreter);
}

Value ConvertTo(const Value& value, ClassId target, Interpreter& interpreter) {
    Host* host = &interpreter.host();
    switch (target) {
        case ClassId::kInteger: return ConvertToInteger(value, interpreter);
        case ClassId::kFloat: return ConvertToFloat(value, interpreter);
        case ClassId::kString: return ConvertToString(value, interpreter);
        case ClassId::kName: return Value::MakeName(ToString(value, host));
        case ClassId::kArray: {
            std::vector<Value> items = ItemsOf(value, interpreter);
            interpreter.CountSteps(items.size());
            return Value::MakeArray(std::move(items));
        }
        case ClassId::kTime: return Value::Of(ToTime(value, host));
        case ClassId::kBooleanClass: return Value::Boolean(ToBoolean(value, host));
        default:
            if (ClassOf(value) == target) return value;
            throw MakeConversionError(value, ClassText(target), host);
    }
}

Value CallClass(ClassId id, const Arguments& arguments, Interpreter& interpreter) {
    Host* host = &interpreter.host();
    const auto expect_count = [&](std::size_t count) {
        if (arguments.size() != count)
            throw Error(std::string(ClassText(id)) + " wants " + std::to_string(count) +
                        " arguments, got " + std::to_string(arguments.size()));
    };
    switch (id) {
        case ClassId::kInteger:
            expect_count(1);
            // `time as integer` counts ticks, but `(integer) time` counts frames: scripts hand the
            // result on as a plain number where a time is wanted (`interval a b`), and there a
            // plain number means frames. In ticks a range of keys would come out 160 times too
            // long, and widening it by 1 would not be widening it by a frame.
            if (const Time* time = arguments[0].If<Time>())
                return Value::Integer(time->ticks / kTicksPerFrame);
            return ConvertToInteger(arguments[0], interpreter);
        case ClassId::kFloat:
            expect_count(1);
            if (const Time* time = arguments[0].If<Time>())
                return Value::Float(static_cast<float>(time->ticks) / kTicksPerFrame);
            return ConvertToFloat(arguments[0], interpreter);
        case ClassId::kInterval:
            expect_count(2);
            return Value::Of(Interval{ToTime(arguments[0], host), ToTime(arguments[1], host)});
        case ClassId::kPoint3:
            expect_count(3);
            return Value::Of(Point3{ToFloat(arguments[0], host), ToFloat(arguments[1], host),
                                    ToFloat(arguments[2], host)});
        default:
            throw Error("Values of " + std::string(ClassText(id)) + " cannot be created by a call");
    }
}

}  // namespace script
