// What the language defines itself: functions, variables, interfaces, properties, operators.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standin/script/interpreter.h"

namespace script {

enum class BuiltinKind {
    kFunction,
    kVariable,   // called to be read; called with a value to be set, if that is allowed
    kInterface,  // not called; its members are entries of their own: `viewport.ResetAllViews`
    kPolyTools,  // an interface that is there only with the PolyTools
    kModes,      // one that is there only where the host has an Interaction Mode
};

struct Builtin {
    std::string_view name;
    BuiltinKind kind = BuiltinKind::kFunction;
    Value (*call)(Interpreter&, const Arguments&) = nullptr;
    std::size_t arguments = 0;  // of a function; 1 for a variable that can be set
};

const Builtin* FindBuiltin(std::string_view name);
Value ReadBuiltin(const Builtin& builtin, Interpreter& interpreter);
void WriteBuiltin(const Builtin& builtin, const Value& value, Interpreter& interpreter);
Value CallBuiltin(const Builtin& builtin, const Arguments& arguments, Interpreter& interpreter);
void CheckArgumentCount(std::string_view name, std::size_t wanted, std::size_t got);

Value GetProperty(const Value& owner, const std::string& name, Interpreter& interpreter);
void SetProperty(const Value& owner, const std::string& name, const Value& value,
                 Interpreter& interpreter);

// Indexes count from 1.
Value GetIndexed(const Value& owner, const Value& index, Interpreter& interpreter);
void SetIndexed(const Value& owner, const Value& index, const Value& value,
                Interpreter& interpreter);

// The items of an array or the objects of an object set; throws for anything else.
std::vector<Value> ItemsOf(const Value& collection, Interpreter& interpreter);

// Those between two values that are both computed: + - and the comparisons.
Value ApplyOperator(std::string_view symbol, const Value& left, const Value& right, Host& host);

}  // namespace script
