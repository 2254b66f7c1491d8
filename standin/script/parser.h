// The tree of an expression.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "standin/script/value.h"

namespace script {

enum class SyntaxKind {
    kLiteral,     // value
    kVariable,    // text: the name in lower case
    kObjectPath,  // text: what follows `$`
    kArray,       // parts: items
    kBlock,       // parts: statements
    kProperty,    // owner; text: member name as written
    kIndex,       // owner, index
    kCall,        // called value, arguments
    kNot,         // operand
    kOperator,    // left, right; text: the operator
    kConvert,     // value; text: the class behind `as`
    kAssign,      // target, value
    kIf,          // condition, then, [else]
    kFor,         // collection, body; or from, to, body; text: the variable
    kContinue,
    kTry,         // body, handler
    kMaxCommand,  // text: the words
};

struct Syntax;
using SyntaxPointer = std::unique_ptr<Syntax>;

struct Syntax {
    SyntaxKind kind = SyntaxKind::kLiteral;
    Position position;
    std::string text;
    Value value;
    std::vector<SyntaxPointer> parts;
    int depth = 1;
};

struct Function {
    std::string name;
    std::vector<std::string> parameters;
    SyntaxPointer body;
};

// Reads the expressions of a text one at a time, because each is run before the next is read, as
// the host does.
class Parser {
public:
    virtual ~Parser() = default;
    virtual SyntaxPointer Next() = 0;  // null at the end of the text
};
std::unique_ptr<Parser> MakeParser(std::string_view text);

}  // namespace script
