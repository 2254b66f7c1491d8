// What the operators of the language do with values.
#pragma once

#include <string_view>
#include <vector>

#include "standin/script/interpreter.h"
#include "standin/script/syntax.h"

namespace script {

Value ApplyOperation(Operation operation, const Value& left, const Value& right,
                     Interpreter& interpreter);
Value Negate(const Value& value, Interpreter& interpreter);
bool AreEqual(const Value& left, const Value& right);
// Below, equal, above: -1, 0, 1. Throws for values that have no order.
int CompareOrder(const Value& left, const Value& right, std::string_view symbol,
                 Interpreter& interpreter);

// `value as Class`
Value ConvertTo(const Value& value, ClassId target, Interpreter& interpreter);
// `Class arguments`, such as `(integer) time` or `interval 0 10`
Value CallClass(ClassId id, const Arguments& arguments, Interpreter& interpreter);

}  // namespace script
