#include "standin/script/interpreter.h"

#include <utility>

#include "standin/script/builtins.h"

namespace script {

void Interpreter::CountSteps(std::size_t items) {
    steps_left_ -= static_cast<long long>(items);
    if (steps_left_ < 0) throw LimitError("the script runs too long");
}

Value Interpreter::MakeArray(std::vector<Value> items) {
    arrays_.push_back(Array{std::move(items)});
    return &arrays_.back();
}

Result Interpreter::Evaluate(std::string_view text) {
    if (evaluations_ == 0) steps_left_ = limits_.steps;
    const CountGuard guard(evaluations_);
    Result result;
    try {
        if (evaluations_ > limits_.evaluations)
            throw LimitError("too many scripts run within each other", {1, 1});
        const auto parser = MakeParser(text);
        while (const SyntaxPointer expression = parser->Next())
            result.value = Run(*expression, nullptr);
    } catch (const Error& error) {
        result.value = Undefined{};
        result.error = error;
    }
    return result;
}

Value Interpreter::Run(const Syntax& node, Scope* scope) {
    const CountGuard guard(depth_);
    try {
        if (depth_ > limits_.depth) throw LimitError("the script calls itself too deeply");
        CountSteps(1);
        return RunNode(node, scope);
    } catch (Error& error) {
        if (error.position.line == 0) error.position = node.position;
        throw;
    }
}

Value Interpreter::RunNode(const Syntax& node, Scope* scope) {
    const auto part = [&](std::size_t index) { return Run(*node.parts[index], scope); };
    switch (node.kind) {
        case SyntaxKind::kLiteral: return node.value;
        case SyntaxKind::kVariable: return Read(node.text, scope);
        case SyntaxKind::kObjectPath: return RunObjectPath(node.text);
        case SyntaxKind::kArray: return MakeArray(RunParts(node, 0, scope));
        case SyntaxKind::kBlock: return RunBlock(node, scope);
        case SyntaxKind::kProperty: return GetProperty(part(0), node.text, *this);
        case SyntaxKind::kIndex: {
            const Value owner = part(0);
            return GetIndexed(owner, part(1), *this);
        }
        case SyntaxKind::kCall: return RunCall(node, scope);
        case SyntaxKind::kNot: return !Test(*node.parts[0], scope, "not");
        case SyntaxKind::kOperator: return RunOperator(node, scope);
        case SyntaxKind::kConvert:
            if (EqualNames(node.text, "array")) return MakeArray(ItemsOf(part(0), *this));
            if (EqualNames(node.text, "string")) {
                Value value = part(0);
                return std::holds_alternative<std::string>(value) ? value : ToText(value);
            }
            throw Error("'as " + node.text + "' is not supported");
        case SyntaxKind::kAssign: return RunAssignment(node, scope);
        case SyntaxKind::kIf:
            if (Test(*node.parts[0], scope, "if")) return part(1);
            return node.parts.size() > 2 ? part(2) : Undefined{};
        case SyntaxKind::kFor: return RunFor(node, scope);
        case SyntaxKind::kContinue: throw ContinueSignal{};
        case SyntaxKind::kTry: return RunTry(node, scope);
        case SyntaxKind::kMaxCommand: host_.RunMaxCommand(node.text); return Ok{};
    }
    return Undefined{};
}

Value Interpreter::RunBlock(const Syntax& node, Scope* scope) {
    Scope own{scope, {}};
    Value last;
    for (const SyntaxPointer& part : node.parts)
        last = Run(*part, &own);
    return last;
}

std::vector<Value> Interpreter::RunParts(const Syntax& node, std::size_t first, Scope* scope) {
    std::vector<Value> values;
    for (std::size_t index = first; index < node.parts.size(); ++index)
        values.push_back(Run(*node.parts[index], scope));
    return values;
}

Value Interpreter::RunObjectPath(const std::string& path) {
    if (path.ends_with('*')) return ObjectSet{path};
    for (const NodeId node : host_.Nodes()) {
        if (EqualNames(host_.NodeName(node), path)) return node;
    }
    return Undefined{};
}

Value Interpreter::RunCall(const Syntax& node, Scope* scope) {
    const Value called = Run(*node.parts[0], scope);
    const Arguments arguments = RunParts(node, 1, scope);
    if (const auto* user = std::get_if<UserFunction>(&called)) return CallUser(*user, arguments);
    if (const auto* primitive = std::get_if<PrimitiveFunction>(&called))
        return host_.CallPrimitive(primitive->name, arguments);
    if (const auto* builtin = std::get_if<const Builtin*>(&called); builtin && (*builtin)->call)
        return CallBuiltin(**builtin, arguments, *this);
    throw Error("Call needs function or class, got: " + ToText(called));
}

Value Interpreter::CallUser(const UserFunction& called, const Arguments& arguments) {
    const Function& function = *called.function;
    CheckArgumentCount(function.name, function.parameters.size(), arguments.size());
    Scope own;
    for (std::size_t index = 0; index < arguments.size(); ++index)
        own.variables[function.parameters[index]] = arguments[index];
    return Run(*function.body, &own);
}

Value Interpreter::RunOperator(const Syntax& node, Scope* scope) {
    const Syntax& left = *node.parts[0];
    const Syntax& right = *node.parts[1];
    if (node.text == "and") return Test(left, scope, "and") && Test(right, scope, "and");
    if (node.text == "or") return Test(left, scope, "or") || Test(right, scope, "or");
    const Value first = Run(left, scope);
    return ApplyOperator(node.text, first, Run(right, scope), host_);
}

Value Interpreter::RunFor(const Syntax& node, Scope* scope) {
    Scope own{scope, {}};
    const Syntax& body = *node.parts.back();
    const auto run_body = [&](const Value& value) {
        own.variables[node.text] = value;
        try {
            Run(body, &own);
        } catch (const ContinueSignal&) {
        }
    };
    const Value first = Run(*node.parts[0], scope);
    if (node.parts.size() == 2) {
        // A copy: the body may change the selection or the array that it goes through.
        for (const Value& item : ItemsOf(first, *this))
            run_body(item);
        return Ok{};
    }
    const Value last = Run(*node.parts[1], scope);
    for (const Value& limit : {first, last}) {
        if (!std::holds_alternative<std::int32_t>(limit))
            throw MakeConversionError(limit, "Integer", host_);
    }
    const std::int64_t end = std::get<std::int32_t>(last);
    for (std::int64_t count = std::get<std::int32_t>(first); count <= end; ++count)
        run_body(static_cast<std::int32_t>(count));
    return Ok{};
}

Value Interpreter::RunTry(const Syntax& node, Scope* scope) {
    try {
        return Run(*node.parts[0], scope);
    } catch (const LimitError&) {
        throw;
    } catch (const Error&) {
    }
    // Outside of the C++ handler: a deep chain of handlers needs no more stack than other
    // expressions do.
    return Run(*node.parts[1], scope);
}

bool Interpreter::Test(const Syntax& node, Scope* scope, std::string_view construct) {
    const Value value = Run(node, scope);
    if (const bool* flag = std::get_if<bool>(&value)) return *flag;
    throw Error(std::string(construct) + " needs true or false, got: " + ToText(value),
                node.position);
}

// ---- variables

Value* Interpreter::FindLocal(const std::string& name, Scope* scope) {
    for (; scope; scope = scope->outer) {
        if (const auto entry = scope->variables.find(name); entry != scope->variables.end())
            return &entry->second;
    }
    return nullptr;
}

Value Interpreter::Read(const std::string& name, Scope* scope) {
    if (const Value* local = FindLocal(name, scope)) return *local;
    if (const Builtin* builtin = FindBuiltin(name)) return ReadBuiltin(*builtin, *this);
    if (host_.HasPrimitive(name)) return PrimitiveFunction{name};
    const auto entry = globals_.find(name);
    return entry == globals_.end() ? Undefined{} : entry->second;
}

void Interpreter::Write(const std::string& name, const Value& value, Scope* scope) {
    if (Value* local = FindLocal(name, scope)) {
        *local = value;
        return;
    }
    if (const Builtin* builtin = FindBuiltin(name)) return WriteBuiltin(*builtin, value, *this);
    if (host_.HasPrimitive(name)) throw Error("Cannot assign to read-only variable: " + name);
    const bool is_global = !scope || globals_.contains(name);
    (is_global ? globals_ : scope->variables)[name] = value;
}

Value Interpreter::RunAssignment(const Syntax& node, Scope* scope) {
    const Syntax& target = *node.parts[0];
    const Syntax& source = *node.parts[1];
    Value value;
    if (target.kind == SyntaxKind::kVariable) {
        value = Run(source, scope);
        Write(target.text, value, scope);
        return value;
    }
    const Value owner = Run(*target.parts[0], scope);
    if (target.kind == SyntaxKind::kProperty) {
        value = Run(source, scope);
        SetProperty(owner, target.text, value, *this);
        return value;
    }
    const Value index = Run(*target.parts[1], scope);
    value = Run(source, scope);
    SetIndexed(owner, index, value, *this);
    return value;
}

}  // namespace script
