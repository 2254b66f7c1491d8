// The tree that the parser builds and the interpreter walks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "standin/script/value.h"

namespace script {

enum class SyntaxKind {
    kLiteral,         // value
    kLocal,           // slot
    kGlobal,          // text: the name in lower case
    kSelf,            // the function that is running
    kObjectPath,      // text: what follows `$`
    kPoint,           // 3 children
    kArray,           // children: items
    kBlock,           // children: statements; slots: the block's own variables
    kProperty,        // children[0]: owner; text: member name as written
    kIndex,           // children: owner, index
    kCall,            // children: called value, arguments
    kNegate,          // children[0]
    kNot,             // children[0]
    kAnd,             // 2 children
    kOr,              // 2 children
    kBinary,          // operation, 2 children
    kConvert,         // `as`: value, class
    kAssign,          // target, value; operation for `+=` and its like
    kIf,              // condition, then, [else]
    kCountingLoop,    // slot; from, to, [by]; see LoopParts
    kCollectionLoop,  // slot; collection
    kWhile,           // condition, body
    kDoWhile,         // body, condition
    kContinue,
    kExit,       // [value]
    kReturn,     // value
    kTry,        // body, handler
    kFunction,   // function; children[0]: the variable that receives it
    kDeclare,    // children: assignments and variables of `local` and `global`
    kMaxCommand  // text: the words
};

enum class Operation {
    kNone,
    kAdd,
    kSubtract,
    kMultiply,
    kDivide,
    kPower,
    kEqual,
    kNotEqual,
    kLess,
    kLessOrEqual,
    kGreater,
    kGreaterOrEqual,
};

struct Syntax;
using SyntaxPointer = std::unique_ptr<Syntax>;

// The parts that both kinds of `for` share; absent parts are null.
struct LoopParts {
    SyntaxPointer step;        // `by`
    SyntaxPointer while_test;  // `while`, ends the loop
    SyntaxPointer where_test;  // `where`, skips an iteration
    SyntaxPointer body;
    bool collects = false;
};

struct Syntax {
    SyntaxKind kind = SyntaxKind::kLiteral;
    Position position;
    Value value;
    std::string text;
    Operation operation = Operation::kNone;
    int slot = -1;
    int depth = 1;
    std::vector<SyntaxPointer> children;
    std::vector<int> slots;
    std::unique_ptr<LoopParts> loop;
    std::shared_ptr<const FunctionDefinition> function;
};

struct FunctionDefinition {
    std::string name;
    int parameter_count = 0;
    int slot_count = 0;
    SyntaxPointer body;
};

}  // namespace script
