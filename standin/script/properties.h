// Properties, indexes and the items of collections.
#pragma once

#include <string>
#include <vector>

#include "standin/script/interpreter.h"

namespace script {

Value GetProperty(const Value& owner, const std::string& name, Interpreter& interpreter);
void SetProperty(const Value& owner, const std::string& name, const Value& value,
                 Interpreter& interpreter);

// Indexes count from 1.
Value GetIndexed(const Value& owner, const Value& index, Interpreter& interpreter);
void SetIndexed(const Value& owner, const Value& index, const Value& value,
                Interpreter& interpreter);

// The items of an array or the objects of an object set; throws for anything else.
std::vector<Value> ItemsOf(const Value& collection, Interpreter& interpreter);
// The objects of an object, an object set or an array of objects.
std::vector<NodeId> NodesOf(const Value& value, Interpreter& interpreter);
std::vector<NodeId> NodesOfSet(const ObjectSet& set, Host& host);

}  // namespace script
