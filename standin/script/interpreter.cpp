#include "standin/script/interpreter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "standin/script/builtins.h"
#include "standin/script/operators.h"
#include "standin/script/parser.h"
#include "standin/script/properties.h"

namespace script {

class Interpreter::DepthGuard {
public:
    explicit DepthGuard(Interpreter& interpreter) : interpreter_(interpreter) {
        ++interpreter_.depth_;
    }
    ~DepthGuard() { --interpreter_.depth_; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

private:
    Interpreter& interpreter_;
};

namespace {

// Counts evaluations up for its lifetime.
class CountGuard {
public:
    explicit CountGuard(int& count) : count_(count) { ++count_; }
    ~CountGuard() { --count_; }
    CountGuard(const CountGuard&) = delete;
    CountGuard& operator=(const CountGuard&) = delete;

private:
    int& count_;
};

std::string CountText(std::string_view name, std::string_view wanted, std::size_t got) {
    return "Argument count error: " + std::string(name) + " wanted " + std::string(wanted) +
           ", got " + std::to_string(got);
}

}  // namespace

Interpreter::Interpreter(Host& host, Limits limits) : host_(host), limits_(limits) {}

Interpreter::~Interpreter() {
    for (const std::weak_ptr<Array>& entry : nested_arrays_) {
        if (const ArrayReference array = entry.lock()) array->items.clear();
    }
}

void Interpreter::NoteNestedArray(const ArrayReference& array, const Value& item) {
    if (!item.Is<ArrayReference>()) return;
    if (nested_arrays_.size() >= nested_arrays_cleanup_at_) {
        std::erase_if(nested_arrays_, [](const auto& entry) { return entry.expired(); });
        nested_arrays_cleanup_at_ = std::max<std::size_t>(64, nested_arrays_.size() * 2);
    }
    nested_arrays_.push_back(array);
}

void Interpreter::CountSteps(std::size_t items) {
    steps_left_ -= static_cast<long long>(items);
    if (steps_left_ < 0) throw MakeLimitError("the script runs too long");
}

void Interpreter::CheckSize(std::size_t size) const {
    if (size > limits_.size) throw MakeLimitError("a value grows too large");
}

bool Interpreter::IsGlobal(const std::string& name) {
    return globals_.count(name) != 0 || IsBuiltinName(name) || host_.HasPrimitive(name);
}

Result Interpreter::Evaluate(std::string_view text) {
    if (evaluations_ == 0) steps_left_ = limits_.steps;
    const CountGuard guard(evaluations_);
    Result result;
    try {
        if (evaluations_ > limits_.evaluations)
            throw MakeLimitError("too many scripts run within each other", {1, 1});
        Parser parser(
            text, [this](const std::string& name) { return IsGlobal(name); },
            [this](const std::string& name) { globals_.try_emplace(name); });
        for (;;) {
            const Program program = parser.Next();
            if (!program.root) break;
            Frame frame;
            frame.slots.resize(static_cast<std::size_t>(program.slot_count));
            result.value = Run(*program.root, frame);
        }
    } catch (const Error& error) {
        result.value = Value();
        result.error = error;
    }
    return result;
}

Value Interpreter::Run(const Syntax& node, Frame& frame) {
    const DepthGuard guard(*this);
    try {
        if (depth_ > limits_.depth) throw MakeLimitError("the script calls itself too deeply");
        CountSteps(1);
        return RunNode(node, frame);
    } catch (Error& error) {
        if (error.position.line == 0) error.position = node.position;
        throw;
    }
}

Value Interpreter::RunNode(const Syntax& node, Frame& frame) {
    switch (node.kind) {
        case SyntaxKind::kLiteral: return node.value;
        case SyntaxKind::kLocal: return frame.slots[static_cast<std::size_t>(node.slot)];
        case SyntaxKind::kGlobal: return ReadGlobal(node.text);
        case SyntaxKind::kSelf: return Value::Of(UserFunction{frame.function});
        case SyntaxKind::kObjectPath: return RunObjectPath(node);
        case SyntaxKind::kPoint: {
            const float x = ToFloat(Run(*node.children[0], frame), &host_);
            const float y = ToFloat(Run(*node.children[1], frame), &host_);
            const float z = ToFloat(Run(*node.children[2], frame), &host_);
            return Value::Of(Point3{x, y, z});
        }
        case SyntaxKind::kArray: return RunArray(node, frame);
        case SyntaxKind::kBlock: return RunBlock(node, frame);
        case SyntaxKind::kProperty:
            return GetProperty(Run(*node.children[0], frame), node.text, *this);
        case SyntaxKind::kIndex: {
            const Value owner = Run(*node.children[0], frame);
            return GetIndexed(owner, Run(*node.children[1], frame), *this);
        }
        case SyntaxKind::kCall: return RunCall(node, frame);
        case SyntaxKind::kNegate: return Negate(Run(*node.children[0], frame), *this);
        case SyntaxKind::kNot:
        case SyntaxKind::kAnd:
        case SyntaxKind::kOr: return RunLogic(node, frame);
        case SyntaxKind::kBinary: {
            const Value left = Run(*node.children[0], frame);
            return ApplyOperation(node.operation, left, Run(*node.children[1], frame), *this);
        }
        case SyntaxKind::kConvert: {
            const Value value = Run(*node.children[0], frame);
            const Value target = Run(*node.children[1], frame);
            const ClassId* id = target.If<ClassId>();
            if (!id)
                throw Error("as needs a class, got: " + ToText(target), node.children[1]->position);
            return ConvertTo(value, *id, *this);
        }
        case SyntaxKind::kAssign: return RunAssignment(node, frame);
        case SyntaxKind::kIf: return RunIf(node, frame);
        case SyntaxKind::kCountingLoop: return RunCountingLoop(node, frame);
        case SyntaxKind::kCollectionLoop: return RunCollectionLoop(node, frame);
        case SyntaxKind::kWhile: return RunWhile(node, frame);
        case SyntaxKind::kDoWhile: return RunDoWhile(node, frame);
        case SyntaxKind::kContinue: throw ContinueSignal{};
        case SyntaxKind::kExit:
            throw ExitSignal{node.children.empty() ? Value() : Run(*node.children[0], frame)};
        case SyntaxKind::kReturn: throw ReturnSignal{Run(*node.children[0], frame)};
        case SyntaxKind::kTry: return RunTry(node, frame);
        case SyntaxKind::kFunction: {
            const Syntax& target = *node.children[0];
            const Value function = Value::Of(UserFunction{node.function});
            if (target.kind == SyntaxKind::kLocal)
                frame.slots[static_cast<std::size_t>(target.slot)] = function;
            else
                WriteGlobal(target.text, function);
            return function;
        }
        case SyntaxKind::kDeclare: {
            Value last;
            for (const SyntaxPointer& child : node.children)
                last = Run(*child, frame);
            return last;
        }
        case SyntaxKind::kMaxCommand: host_.RunMaxCommand(node.text); return Value::MakeOk();
    }
    return Value();
}

Value Interpreter::RunArray(const Syntax& node, Frame& frame) {
    std::vector<Value> items;
    items.reserve(node.children.size());
    for (const SyntaxPointer& child : node.children)
        items.push_back(Run(*child, frame));
    return Value::MakeArray(std::move(items));
}

Value Interpreter::RunBlock(const Syntax& node, Frame& frame) {
    for (const int slot : node.slots)
        frame.slots[static_cast<std::size_t>(slot)] = Value();
    Value last;
    for (const SyntaxPointer& child : node.children)
        last = Run(*child, frame);
    return last;
}

// `$` alone is the selected object, or the selection when there are several; a path with `*` or
// `?` stands for all objects that match.
Value Interpreter::RunObjectPath(const Syntax& node) {
    if (node.text.empty()) {
        const std::vector<NodeId> selection = host_.Selection();
        if (selection.size() == 1) return Value::Node(selection.front());
        return selection.empty() ? Value() : Value::Of(ObjectSet{ObjectSet::Kind::kSelection, {}});
    }
    if (node.text.find_first_of("*?") != std::string::npos)
        return Value::Of(ObjectSet{ObjectSet::Kind::kPattern, node.text});
    if (EqualNames(node.text, "selection"))
        return Value::Of(ObjectSet{ObjectSet::Kind::kSelection, {}});
    if (EqualNames(node.text, "objects"))
        return Value::Of(ObjectSet{ObjectSet::Kind::kObjects, {}});
    for (const NodeId candidate : host_.Nodes()) {
        if (EqualNames(host_.NodeName(candidate), node.text)) return Value::Node(candidate);
    }
    return Value();
}

// ---- calls

Value Interpreter::RunCall(const Syntax& node, Frame& frame) {
    const Value called = Run(*node.children[0], frame);
    Arguments arguments;
    arguments.reserve(node.children.size() - 1);
    for (std::size_t index = 1; index < node.children.size(); ++index)
        arguments.push_back(Run(*node.children[index], frame));
    return Call(called, arguments);
}

Value Interpreter::Call(const Value& called, const Arguments& arguments) {
    if (const UserFunction* function = called.If<UserFunction>())
        return CallUser(*function, arguments);
    if (const BuiltinFunction* function = called.If<BuiltinFunction>())
        return CallBuiltin(*function->entry, arguments);
    if (const PrimitiveFunction* function = called.If<PrimitiveFunction>())
        return host_.CallPrimitive(function->name, arguments);
    if (const ClassId* id = called.If<ClassId>()) return CallClass(*id, arguments, *this);
    throw Error("Call needs function or class, got: " + ToText(called));
}

Value Interpreter::CallUser(const UserFunction& function, const Arguments& arguments) {
    // A copy, because the function may redefine itself while it runs.
    const std::shared_ptr<const FunctionDefinition> definition = function.definition;
    if (arguments.size() != static_cast<std::size_t>(definition->parameter_count)) {
        throw Error(CountText(definition->name, std::to_string(definition->parameter_count),
                              arguments.size()));
    }
    Frame frame;
    frame.slots.resize(static_cast<std::size_t>(definition->slot_count));
    std::copy(arguments.begin(), arguments.end(), frame.slots.begin());
    frame.function = definition;
    try {
        return Run(*definition->body, frame);
    } catch (const ReturnSignal& signal) {
        return signal.value;
    }
}

Value Interpreter::CallBuiltin(const Builtin& entry, const Arguments& arguments) {
    const int count = static_cast<int>(arguments.size());
    if (count < entry.minimum || (entry.maximum >= 0 && count > entry.maximum)) {
        std::string wanted = std::to_string(entry.minimum);
        if (entry.maximum < 0)
            wanted += " or more";
        else if (entry.maximum != entry.minimum)
            wanted += " to " + std::to_string(entry.maximum);
        throw Error(CountText(entry.name, wanted, arguments.size()));
    }
    return entry.call(*this, arguments);
}

// ---- variables

Value Interpreter::ReadGlobal(const std::string& name) {
    Value value;
    if (ReadBuiltin(name, *this, value)) return value;
    if (host_.HasPrimitive(name)) return Value::Of(PrimitiveFunction{name});
    const auto entry = globals_.find(name);
    return entry == globals_.end() ? Value() : entry->second;
}

void Interpreter::WriteGlobal(const std::string& name, const Value& value) {
    if (WriteBuiltin(name, value, *this)) return;
    if (host_.HasPrimitive(name)) throw Error("Cannot assign to read-only variable: " + name);
    globals_[name] = value;
}

Value Interpreter::RunAssignment(const Syntax& node, Frame& frame) {
    const Syntax& target = *node.children[0];
    const Syntax& source = *node.children[1];
    const bool has_operation = node.operation != Operation::kNone;
    const auto combine = [&](const Value& old) {
        const Value added = Run(source, frame);
        return has_operation ? ApplyOperation(node.operation, old, added, *this) : added;
    };
    if (target.kind == SyntaxKind::kLocal) {
        const auto slot = static_cast<std::size_t>(target.slot);
        const Value value = combine(frame.slots[slot]);
        frame.slots[slot] = value;
        return value;
    }
    if (target.kind == SyntaxKind::kGlobal) {
        const Value value = combine(has_operation ? ReadGlobal(target.text) : Value());
        WriteGlobal(target.text, value);
        return value;
    }
    const Value owner = Run(*target.children[0], frame);
    if (target.kind == SyntaxKind::kProperty) {
        const Value value =
            combine(has_operation ? GetProperty(owner, target.text, *this) : Value());
        SetProperty(owner, target.text, value, *this);
        return value;
    }
    const Value index = Run(*target.children[1], frame);
    const Value value = combine(has_operation ? GetIndexed(owner, index, *this) : Value());
    SetIndexed(owner, index, value, *this);
    return value;
}

// ---- conditions

bool Interpreter::Test(const Syntax& node, Frame& frame, std::string_view construct) {
    const Value value = Run(node, frame);
    if (const bool* flag = value.If<bool>()) return *flag;
    throw Error(std::string(construct) + " needs true or false, got: " + ToText(value),
                node.position);
}

Value Interpreter::RunLogic(const Syntax& node, Frame& frame) {
    switch (node.kind) {
        case SyntaxKind::kNot: return Value::Boolean(!Test(*node.children[0], frame, "not"));
        case SyntaxKind::kAnd:
            return Value::Boolean(Test(*node.children[0], frame, "and") &&
                                  Test(*node.children[1], frame, "and"));
        default:
            return Value::Boolean(Test(*node.children[0], frame, "or") ||
                                  Test(*node.children[1], frame, "or"));
    }
}

Value Interpreter::RunIf(const Syntax& node, Frame& frame) {
    if (Test(*node.children[0], frame, "if")) return Run(*node.children[1], frame);
    return node.children.size() > 2 ? Run(*node.children[2], frame) : Value();
}

Value Interpreter::RunTry(const Syntax& node, Frame& frame) {
    std::string message;
    try {
        return Run(*node.children[0], frame);
    } catch (const Error& error) {
        if (error.is_limit) throw;
        message = error.message;
    }
    // The handler runs outside of the C++ handler: a deep chain of handlers needs no more stack
    // than other expressions do.
    std::swap(caught_message_, message);
    struct Restore {
        std::string& place;
        std::string& previous;
        ~Restore() { std::swap(place, previous); }
    } const restore{caught_message_, message};
    return Run(*node.children[1], frame);
}

// ---- loops

// The body of any loop, once; false when `continue` cut it short.
bool Interpreter::RunBody(const Syntax& body, Frame& frame, Value& value) {
    try {
        value = Run(body, frame);
        return true;
    } catch (const ContinueSignal&) {
        return false;
    }
}

// One iteration of a `for`; false ends the loop.
bool Interpreter::RunIteration(const Syntax& node, Frame& frame, std::vector<Value>& collected) {
    const LoopParts& parts = *node.loop;
    CountSteps(1);
    if (parts.while_test && !Test(*parts.while_test, frame, "while")) return false;
    if (parts.where_test && !Test(*parts.where_test, frame, "where")) return true;
    // `continue` in `collect` collects nothing for this iteration.
    Value value;
    if (RunBody(*parts.body, frame, value) && parts.collects) collected.push_back(std::move(value));
    return true;
}

Value Interpreter::RunCountingLoop(const Syntax& node, Frame& frame) {
    const Value first = Run(*node.children[0], frame);
    const Value last = Run(*node.children[1], frame);
    const Value step = node.loop->step ? Run(*node.loop->step, frame) : Value::Integer(1);
    const bool is_time = first.Is<Time>();
    const bool is_float = first.Is<float>() || step.Is<float>();
    const auto to_number = [&](const Value& value) -> double {
        if (is_time) return ToTime(value, &host_).ticks;
        if (value.Is<Time>()) throw MakeConversionError(value, "Integer", &host_);
        if (is_float) return ToFloat(value, &host_);
        return ToInteger(value, &host_);
    };
    const double begin = to_number(first);
    const double end = to_number(last);
    const double increment = to_number(step);
    if (increment == 0 || std::isnan(increment))
        throw Error("by must not be 0", node.loop->step->position);
    std::vector<Value> collected;
    Value& variable = frame.slots[static_cast<std::size_t>(node.slot)];
    try {
        for (long long iteration = 0;; ++iteration) {
            const double count = begin + increment * static_cast<double>(iteration);
            if (increment > 0 ? !(count <= end) : !(count >= end)) break;
            if (is_time)
                variable = Value::Ticks(TruncateToInteger(count));
            else if (is_float)
                variable = Value::Float(static_cast<float>(count));
            else
                variable = Value::Integer(TruncateToInteger(count));
            if (!RunIteration(node, frame, collected)) break;
        }
    } catch (const ExitSignal& signal) {
        if (!node.loop->collects) return signal.value;
    }
    return node.loop->collects ? Value::MakeArray(std::move(collected)) : Value::MakeOk();
}

Value Interpreter::RunCollectionLoop(const Syntax& node, Frame& frame) {
    // A snapshot: the body may change the selection or the array that it goes through.
    const Value source = Run(*node.children[0], frame);
    const std::vector<Value> items = ItemsOf(source, *this);
    std::vector<Value> collected;
    try {
        for (const Value& item : items) {
            frame.slots[static_cast<std::size_t>(node.slot)] = item;
            if (!RunIteration(node, frame, collected)) break;
        }
    } catch (const ExitSignal& signal) {
        if (!node.loop->collects) return signal.value;
    }
    return node.loop->collects ? Value::MakeArray(std::move(collected)) : Value::MakeOk();
}

Value Interpreter::RunWhile(const Syntax& node, Frame& frame) {
    try {
        Value ignored;
        while (Test(*node.children[0], frame, "while"))
            RunBody(*node.children[1], frame, ignored);
    } catch (const ExitSignal& signal) {
        return signal.value;
    }
    return Value::MakeOk();
}

Value Interpreter::RunDoWhile(const Syntax& node, Frame& frame) {
    try {
        Value ignored;
        do {
            RunBody(*node.children[0], frame, ignored);
        } while (Test(*node.children[1], frame, "while"));
    } catch (const ExitSignal& signal) {
        return signal.value;
    }
    return Value::MakeOk();
}

}  // namespace script
