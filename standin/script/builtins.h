// The functions, system variables, classes and interfaces that scripts find by name.
#pragma once

#include <string>

#include "standin/script/interpreter.h"

namespace script {

// Looks a lower-case name up among everything that the language itself defines.
bool IsBuiltinName(const std::string& name);
bool ReadBuiltin(const std::string& name, Interpreter& interpreter, Value& result);
// Sets a system variable; throws for everything else that is built in. False: not built in.
bool WriteBuiltin(const std::string& name, const Value& value, Interpreter& interpreter);

bool GetInterfaceMember(InterfaceId owner, const std::string& name, Interpreter& interpreter,
                        Value& result);

}  // namespace script
