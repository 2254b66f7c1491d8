#include "standin/script/parser.h"

#include <algorithm>
#include <utility>

namespace script {

namespace {

// Bounds the parser's own recursion.
constexpr int kMaximumNesting = 64;
// Bounds the recursion of whatever walks the tree: `1+1+1+...` is a tree as deep as it is long.
constexpr int kMaximumTreeDepth = 250;

constexpr int kNotPrecedence = 3;
constexpr int kConvertPrecedence = 8;

struct BinaryOperator {
    std::string_view symbol;
    int precedence;
    SyntaxKind kind;
    Operation operation;
};

// clang-format off
constexpr BinaryOperator kBinaryOperators[] = {
    {"or",  1, SyntaxKind::kOr,      Operation::kNone},
    {"and", 2, SyntaxKind::kAnd,     Operation::kNone},
    // 3 is the prefix operator `not`
    {"==",  4, SyntaxKind::kBinary,  Operation::kEqual},
    {"!=",  4, SyntaxKind::kBinary,  Operation::kNotEqual},
    {"<",   4, SyntaxKind::kBinary,  Operation::kLess},
    {"<=",  4, SyntaxKind::kBinary,  Operation::kLessOrEqual},
    {">",   4, SyntaxKind::kBinary,  Operation::kGreater},
    {">=",  4, SyntaxKind::kBinary,  Operation::kGreaterOrEqual},
    {"+",   5, SyntaxKind::kBinary,  Operation::kAdd},
    {"-",   5, SyntaxKind::kBinary,  Operation::kSubtract},
    {"*",   6, SyntaxKind::kBinary,  Operation::kMultiply},
    {"/",   6, SyntaxKind::kBinary,  Operation::kDivide},
    {"^",   7, SyntaxKind::kBinary,  Operation::kPower},
    {"as",  kConvertPrecedence, SyntaxKind::kConvert, Operation::kNone},
};

struct AssignmentOperator {
    std::string_view symbol;
    Operation operation;
};

constexpr AssignmentOperator kAssignmentOperators[] = {
    {"=",  Operation::kNone},
    {"+=", Operation::kAdd},
    {"-=", Operation::kSubtract},
    {"*=", Operation::kMultiply},
    {"/=", Operation::kDivide},
};
// clang-format on

const BinaryOperator* FindBinaryOperator(const Token& token) {
    if (token.kind != TokenKind::kSymbol && token.kind != TokenKind::kKeyword) return nullptr;
    for (const BinaryOperator& entry : kBinaryOperators) {
        if (entry.symbol == token.text) return &entry;
    }
    return nullptr;
}

const AssignmentOperator* FindAssignmentOperator(const Token& token) {
    if (token.kind != TokenKind::kSymbol) return nullptr;
    for (const AssignmentOperator& entry : kAssignmentOperators) {
        if (entry.symbol == token.text) return &entry;
    }
    return nullptr;
}

bool IsLiteralWord(std::string_view word) {
    return word == "true" || word == "false" || word == "on" || word == "off" ||
           word == "undefined" || word == "ok";
}

bool IsAssignable(SyntaxKind kind) {
    return kind == SyntaxKind::kLocal || kind == SyntaxKind::kGlobal ||
           kind == SyntaxKind::kProperty || kind == SyntaxKind::kIndex;
}

bool IsCallable(SyntaxKind kind) {
    return kind == SyntaxKind::kLocal || kind == SyntaxKind::kGlobal || kind == SyntaxKind::kSelf ||
           kind == SyntaxKind::kProperty || kind == SyntaxKind::kIndex ||
           kind == SyntaxKind::kBlock;
}

std::string DescribeToken(const Token& token) {
    switch (token.kind) {
        case TokenKind::kEnd: return "the end of the text";
        case TokenKind::kObjectPath: return "$" + token.text;
        default: return token.text;
    }
}

}  // namespace

class Parser::NestingGuard {
public:
    NestingGuard(Parser& parser) : parser_(parser) {
        if (++parser_.nesting_ > kMaximumNesting) {
            --parser_.nesting_;
            throw Error("the expression is nested too deeply", parser_.token_.position);
        }
    }
    ~NestingGuard() { --parser_.nesting_; }
    NestingGuard(const NestingGuard&) = delete;
    NestingGuard& operator=(const NestingGuard&) = delete;

private:
    Parser& parser_;
};

Parser::Parser(std::string_view text, IsGlobal is_global, DeclareGlobal declare_global)
    : lexer_(text), is_global_(std::move(is_global)), declare_global_(std::move(declare_global)) {
    // Before the first token is read: a text that begins with a bad character is reported when
    // its first expression is asked for.
    token_.kind = TokenKind::kSymbol;
    token_.text = ";";
}

Program Parser::Next() {
    functions_.assign(1, FunctionContext{});
    while (AtSymbol(";"))
        Advance();
    Program program;
    if (AtEnd()) return program;
    program.root = ParseExpression();
    program.slot_count = functions_.front().slot_count;
    if (!AtEnd() && !AtSymbol(";") && !token_.after_line_break)
        FailUnexpected("a new line or ; between two expressions");
    return program;
}

// ---- tokens

void Parser::Advance() {
    token_ = lexer_.Next();
}

bool Parser::AtSymbol(std::string_view symbol) const {
    return token_.kind == TokenKind::kSymbol && token_.text == symbol;
}

bool Parser::AtKeyword(std::string_view word) const {
    return token_.kind == TokenKind::kKeyword && token_.text == word;
}

bool Parser::AtStatementEnd() const {
    return AtEnd() || token_.after_line_break || AtSymbol(";") || AtSymbol(")");
}

bool Parser::AcceptKeyword(std::string_view word) {
    if (!AtKeyword(word)) return false;
    Advance();
    return true;
}

void Parser::FailUnexpected(std::string_view expected) const {
    throw Error("unexpected " + DescribeToken(token_) + ", expected " + std::string(expected),
                token_.position);
}

void Parser::ExpectSymbol(std::string_view symbol, std::string_view where) {
    if (!AtSymbol(symbol)) FailUnexpected(std::string(symbol) + " " + std::string(where));
    Advance();
}

void Parser::ExpectKeyword(std::string_view word, std::string_view where) {
    if (!AcceptKeyword(word)) FailUnexpected(std::string(word) + " " + std::string(where));
}

std::string Parser::ExpectIdentifier(std::string_view what) {
    if (token_.kind != TokenKind::kIdentifier) FailUnexpected(what);
    std::string name = token_.text;
    Advance();
    return name;
}

// ---- nodes

SyntaxPointer Parser::Make(SyntaxKind kind, Position position) const {
    auto node = std::make_unique<Syntax>();
    node->kind = kind;
    node->position = position;
    return node;
}

void Parser::NoteDepth(Syntax& parent, int child_depth) const {
    parent.depth = std::max(parent.depth, child_depth + 1);
    if (parent.depth > kMaximumTreeDepth)
        throw Error("the expression is nested too deeply", parent.position);
}

void Parser::Add(Syntax& parent, SyntaxPointer child) const {
    NoteDepth(parent, child->depth);
    parent.children.push_back(std::move(child));
}

// ---- names

int* Parser::FindLocal(FunctionContext& context, const std::string& name) {
    for (auto scope = context.scopes.rbegin(); scope != context.scopes.rend(); ++scope) {
        for (auto entry = scope->variables.rbegin(); entry != scope->variables.rend(); ++entry) {
            if (entry->name == name) return &entry->slot;
        }
        // A `global` of an inner block hides a local variable of an outer one.
        if (std::find(scope->globals.begin(), scope->globals.end(), name) != scope->globals.end())
            return nullptr;
    }
    return nullptr;
}

bool Parser::IsDeclaredGlobal(const FunctionContext& context, const std::string& name) const {
    return std::any_of(context.scopes.begin(), context.scopes.end(), [&name](const Scope& scope) {
        return std::find(scope.globals.begin(), scope.globals.end(), name) != scope.globals.end();
    });
}

Parser::Scope* Parser::InnermostBlock() {
    std::vector<Scope>& scopes = functions_.back().scopes;
    const auto block = std::find_if(scopes.rbegin(), scopes.rend(),
                                    [](const Scope& scope) { return scope.is_block; });
    return block == scopes.rend() ? nullptr : &*block;
}

int Parser::Declare(Scope& scope, const std::string& name) {
    const int slot = functions_.back().slot_count++;
    scope.variables.push_back({name, slot});
    return slot;
}

SyntaxPointer Parser::MakeLocal(int slot, Position position) const {
    SyntaxPointer node = Make(SyntaxKind::kLocal, position);
    node->slot = slot;
    return node;
}

SyntaxPointer Parser::MakeVariable(const std::string& written_name, Position position) {
    const std::string name = LowerCase(written_name);
    FunctionContext& context = functions_.back();
    if (const int* slot = FindLocal(context, name)) return MakeLocal(*slot, position);
    const bool is_global = IsDeclaredGlobal(context, name);
    if (!is_global && name == context.name) return Make(SyntaxKind::kSelf, position);
    if (!is_global) {
        for (auto outer = functions_.rbegin() + 1; outer != functions_.rend(); ++outer) {
            if (FindLocal(*outer, name))
                throw Error("no outer local variable references permitted here: " + written_name,
                            position);
        }
    }
    if (!is_global && !is_global_(name)) {
        if (Scope* block = InnermostBlock()) return MakeLocal(Declare(*block, name), position);
        declare_global_(name);
    }
    SyntaxPointer node = Make(SyntaxKind::kGlobal, position);
    node->text = name;
    return node;
}

// ---- expressions

SyntaxPointer Parser::ParseExpression() {
    const NestingGuard guard(*this);
    if (token_.kind == TokenKind::kKeyword && !IsLiteralWord(token_.text) && !AtKeyword("not"))
        return ParseKeywordExpression();
    SyntaxPointer node = ParseBinary(1);
    if (!token_.after_line_break && FindAssignmentOperator(token_))
        return ParseAssignment(std::move(node));
    return node;
}

SyntaxPointer Parser::ParseKeywordExpression() {
    const std::string& word = token_.text;
    if (word == "if") return ParseIf();
    if (word == "for") return ParseFor();
    if (word == "while") return ParseWhile();
    if (word == "do") return ParseDoWhile();
    if (word == "try") return ParseTry();
    if (word == "fn" || word == "function") return ParseFunction();
    if (word == "local" || word == "global") return ParseDeclaration(word == "global");
    if (word == "continue" || word == "exit" || word == "return") return ParseJump();
    if (word == "max") return ParseMaxCommand();
    return ParseKeywordPrimary();
}

SyntaxPointer Parser::ParseAssignment(SyntaxPointer target) {
    if (!IsAssignable(target->kind)) throw Error("this cannot be assigned to", target->position);
    SyntaxPointer node = Make(SyntaxKind::kAssign, token_.position);
    node->operation = FindAssignmentOperator(token_)->operation;
    Advance();
    Add(*node, std::move(target));
    Add(*node, ParseExpression());
    return node;
}

SyntaxPointer Parser::ParseBinary(int minimum_precedence) {
    SyntaxPointer left = ParseUnary();
    for (;;) {
        const BinaryOperator* entry = FindBinaryOperator(token_);
        if (!entry || token_.after_line_break || entry->precedence < minimum_precedence)
            return left;
        SyntaxPointer node = Make(entry->kind, token_.position);
        node->operation = entry->operation;
        Advance();
        Add(*node, std::move(left));
        if (entry->kind == SyntaxKind::kConvert) {
            const Position position = token_.position;
            Add(*node, MakeVariable(ExpectIdentifier("a class name after as"), position));
        } else {
            Add(*node, ParseBinary(entry->precedence + 1));
        }
        left = std::move(node);
    }
}

SyntaxPointer Parser::ParseUnary() {
    const NestingGuard guard(*this);
    const Position position = token_.position;
    if (AcceptKeyword("not")) {
        SyntaxPointer node = Make(SyntaxKind::kNot, position);
        Add(*node, ParseBinary(kNotPrecedence + 1));
        return node;
    }
    if (AtSymbol("-")) {
        Advance();
        SyntaxPointer node = Make(SyntaxKind::kNegate, position);
        Add(*node, ParseUnary());
        return node;
    }
    return ParseCall();
}

// An argument begins on the same line. A minus begins one when it leans towards what follows it
// (`f a -b`); evenly spaced (`f a - b`, `f a-b`) it subtracts. A bracket that touches what stands
// before it is an index, not a point.
bool Parser::StartsArgument() const {
    if (token_.after_line_break) return false;
    switch (token_.kind) {
        case TokenKind::kLiteral:
        case TokenKind::kIdentifier:
        case TokenKind::kObjectPath: return true;
        case TokenKind::kKeyword: return IsLiteralWord(token_.text);
        case TokenKind::kSymbol:
            if (token_.text == "-") return token_.after_blank && !token_.before_blank;
            return token_.text == "(" || token_.text == "[" || token_.text == "#(";
        case TokenKind::kEnd: break;
    }
    return false;
}

SyntaxPointer Parser::ParseCall() {
    SyntaxPointer called = ParseOperand();
    if (!IsCallable(called->kind) || !StartsArgument()) return called;
    SyntaxPointer call = Make(SyntaxKind::kCall, called->position);
    Add(*call, std::move(called));
    while (StartsArgument()) {
        const Position position = token_.position;
        SyntaxPointer argument;
        if (AtSymbol("-")) {
            Advance();
            argument = Make(SyntaxKind::kNegate, position);
            Add(*argument, ParseOperand());
        } else {
            argument = ParsePrimary();
        }
        // `f()` calls without arguments, and nothing else can follow as an argument.
        if (argument->kind == SyntaxKind::kBlock && argument->children.empty()) {
            if (call->children.size() > 1)
                throw Error("() cannot be an argument; write (f()) to pass the result of a call",
                            position);
            call = ParsePostfix(std::move(call));
            if (StartsArgument())
                FailUnexpected("an operator or the end of the expression after ()");
            return call;
        }
        Add(*call, ParsePostfix(std::move(argument)));
        if (AtSymbol(":")) throw Error("keyword arguments are not supported", token_.position);
    }
    return call;
}

SyntaxPointer Parser::ParseOperand() {
    return ParsePostfix(ParsePrimary());
}

SyntaxPointer Parser::ParsePostfix(SyntaxPointer operand) {
    for (;;) {
        if (token_.after_line_break) return operand;
        if (AtSymbol(".")) {
            Advance();
            SyntaxPointer node = Make(SyntaxKind::kProperty, token_.position);
            if (token_.kind != TokenKind::kIdentifier && token_.kind != TokenKind::kKeyword)
                FailUnexpected("a property name after .");
            node->text = token_.text;
            Advance();
            Add(*node, std::move(operand));
            operand = std::move(node);
        } else if (AtSymbol("[") && !token_.after_blank) {
            SyntaxPointer node = Make(SyntaxKind::kIndex, token_.position);
            Advance();
            Add(*node, std::move(operand));
            Add(*node, ParseExpression());
            ExpectSymbol("]", "after the index");
            operand = std::move(node);
        } else {
            return operand;
        }
    }
}

SyntaxPointer Parser::ParsePrimary() {
    const Position position = token_.position;
    switch (token_.kind) {
        case TokenKind::kLiteral: {
            SyntaxPointer node = Make(SyntaxKind::kLiteral, position);
            node->value = token_.value;
            Advance();
            return node;
        }
        case TokenKind::kIdentifier: {
            const std::string name = token_.text;
            Advance();
            return MakeVariable(name, position);
        }
        case TokenKind::kObjectPath: {
            SyntaxPointer node = Make(SyntaxKind::kObjectPath, position);
            node->text = token_.text;
            Advance();
            return node;
        }
        case TokenKind::kKeyword: return ParseKeywordPrimary();
        case TokenKind::kSymbol:
            if (token_.text == "(") return ParseBlock();
            if (token_.text == "[") return ParsePoint();
            if (token_.text == "#(") return ParseArray();
            break;
        case TokenKind::kEnd: break;
    }
    FailUnexpected("an expression");
}

SyntaxPointer Parser::ParseKeywordPrimary() {
    const std::string word = token_.text;
    if (!IsLiteralWord(word)) {
        constexpr std::string_view kParts[] = {
            "and", "as",    "by",     "catch",    "collect", "else",   "in",    "or",      "then",
            "to",  "where", "with",   "if",       "for",     "do",     "while", "try",     "fn",
            "not", "local", "global", "continue", "exit",    "return", "max",   "function"};
        if (std::find(std::begin(kParts), std::end(kParts), word) != std::end(kParts))
            FailUnexpected("an expression");
        throw Error("'" + word + "' is not supported", token_.position);
    }
    SyntaxPointer node = Make(SyntaxKind::kLiteral, token_.position);
    if (word == "true" || word == "on")
        node->value = Value::Boolean(true);
    else if (word == "false" || word == "off")
        node->value = Value::Boolean(false);
    else if (word == "ok")
        node->value = Value::MakeOk();
    Advance();
    return node;
}

SyntaxPointer Parser::ParseBlock() {
    SyntaxPointer node = Make(SyntaxKind::kBlock, token_.position);
    Advance();
    functions_.back().scopes.emplace_back();
    while (AtSymbol(";"))
        Advance();
    while (!AtSymbol(")")) {
        if (AtEnd()) throw Error("( is not closed", node->position);
        Add(*node, ParseExpression());
        if (!AtStatementEnd()) FailUnexpected("a new line, ; or )");
        while (AtSymbol(";"))
            Advance();
    }
    for (const Variable& variable : functions_.back().scopes.back().variables)
        node->slots.push_back(variable.slot);
    functions_.back().scopes.pop_back();
    Advance();
    return node;
}

SyntaxPointer Parser::ParsePoint() {
    SyntaxPointer node = Make(SyntaxKind::kPoint, token_.position);
    Advance();
    for (int axis = 0; axis < 3; ++axis) {
        if (axis > 0) ExpectSymbol(",", "between the three parts of a point");
        Add(*node, ParseExpression());
    }
    ExpectSymbol("]", "after the third part of a point");
    return node;
}

SyntaxPointer Parser::ParseArray() {
    SyntaxPointer node = Make(SyntaxKind::kArray, token_.position);
    Advance();
    if (!AtSymbol(")")) {
        Add(*node, ParseExpression());
        while (AtSymbol(",")) {
            Advance();
            Add(*node, ParseExpression());
        }
    }
    ExpectSymbol(")", "after the items of an array");
    return node;
}

SyntaxPointer Parser::ParseIf() {
    SyntaxPointer node = Make(SyntaxKind::kIf, token_.position);
    Advance();
    Add(*node, ParseExpression());
    if (AcceptKeyword("do")) {
        Add(*node, ParseExpression());
        return node;
    }
    ExpectKeyword("then", "(or do) after the condition of if");
    Add(*node, ParseExpression());
    // `else` belongs to this `if` from the next line too.
    if (AcceptKeyword("else")) Add(*node, ParseExpression());
    return node;
}

SyntaxPointer Parser::ParseLoopBody() {
    ++functions_.back().loop_depth;
    SyntaxPointer body = ParseExpression();
    --functions_.back().loop_depth;
    return body;
}

SyntaxPointer Parser::ParseFor() {
    const Position position = token_.position;
    Advance();
    const std::string variable = LowerCase(ExpectIdentifier("a variable after for"));
    if (!AcceptKeyword("in")) ExpectSymbol("=", "(or in) after the variable of for");
    SyntaxPointer node = Make(SyntaxKind::kCollectionLoop, position);
    node->loop = std::make_unique<LoopParts>();
    LoopParts& parts = *node->loop;
    const auto parse_part = [this, &node](SyntaxPointer& part) {
        if (part) FailUnexpected("do or collect; this part of for is there already");
        Advance();
        part = ParseExpression();
        NoteDepth(*node, part->depth);
    };
    Add(*node, ParseExpression());
    if (AcceptKeyword("to")) {
        node->kind = SyntaxKind::kCountingLoop;
        Add(*node, ParseExpression());
        if (AtKeyword("by")) parse_part(parts.step);
    }
    // The variable is not visible to the expressions above that give its values.
    functions_.back().scopes.emplace_back();
    functions_.back().scopes.back().is_block = false;
    node->slot = Declare(functions_.back().scopes.back(), variable);
    while (AtKeyword("where") || AtKeyword("while"))
        parse_part(AtKeyword("where") ? parts.where_test : parts.while_test);
    parts.collects = AtKeyword("collect");
    if (!AcceptKeyword("collect")) ExpectKeyword("do", "(or collect) before the body of for");
    parts.body = ParseLoopBody();
    NoteDepth(*node, parts.body->depth);
    functions_.back().scopes.pop_back();
    return node;
}

SyntaxPointer Parser::ParseWhile() {
    SyntaxPointer node = Make(SyntaxKind::kWhile, token_.position);
    Advance();
    Add(*node, ParseExpression());
    ExpectKeyword("do", "after the condition of while");
    Add(*node, ParseLoopBody());
    return node;
}

SyntaxPointer Parser::ParseDoWhile() {
    SyntaxPointer node = Make(SyntaxKind::kDoWhile, token_.position);
    Advance();
    Add(*node, ParseLoopBody());
    ExpectKeyword("while", "after the body of do");
    Add(*node, ParseExpression());
    return node;
}

SyntaxPointer Parser::ParseTry() {
    SyntaxPointer node = Make(SyntaxKind::kTry, token_.position);
    Advance();
    Add(*node, ParseExpression());
    ExpectKeyword("catch", "after the expression of try");
    Add(*node, ParseExpression());
    return node;
}

SyntaxPointer Parser::ParseFunction() {
    SyntaxPointer node = Make(SyntaxKind::kFunction, token_.position);
    Advance();
    const Position name_position = token_.position;
    auto definition = std::make_shared<FunctionDefinition>();
    definition->name = ExpectIdentifier("a function name");
    const std::string name = LowerCase(definition->name);
    Scope* block = InnermostBlock();
    const bool is_global = block == nullptr;
    Add(*node, is_global ? MakeVariable(definition->name, name_position)
                         : MakeLocal(Declare(*block, name), name_position));

    functions_.emplace_back();
    functions_.back().scopes.emplace_back();
    if (!is_global) functions_.back().name = name;
    while (token_.kind == TokenKind::kIdentifier) {
        const std::string parameter = LowerCase(token_.text);
        if (FindLocal(functions_.back(), parameter))
            throw Error("the parameter " + token_.text + " is there twice", token_.position);
        Declare(functions_.back().scopes.back(), parameter);
        ++definition->parameter_count;
        Advance();
        if (AtSymbol(":")) throw Error("keyword parameters are not supported", token_.position);
    }
    ExpectSymbol("=", "after the parameters of a function");
    definition->body = ParseExpression();
    definition->slot_count = functions_.back().slot_count;
    functions_.pop_back();
    // The body runs in a frame of its own, but it is taken apart together with this tree.
    NoteDepth(*node, definition->body->depth);
    node->function = std::move(definition);
    return node;
}

SyntaxPointer Parser::ParseDeclaration(bool is_global) {
    SyntaxPointer node = Make(SyntaxKind::kDeclare, token_.position);
    if (!is_global && !InnermostBlock())
        throw Error("local variables need a block around them", token_.position);
    do {
        Advance();
        const Position position = token_.position;
        const std::string written_name = ExpectIdentifier("a variable name");
        const std::string name = LowerCase(written_name);
        SyntaxPointer variable;
        if (is_global) {
            if (Scope* block = InnermostBlock()) block->globals.push_back(name);
            if (!is_global_(name)) declare_global_(name);
            variable = Make(SyntaxKind::kGlobal, position);
            variable->text = name;
        } else {
            variable = MakeLocal(Declare(*InnermostBlock(), name), position);
        }
        if (AtSymbol("=") && !token_.after_line_break) {
            Add(*node, ParseAssignment(std::move(variable)));
        } else {
            Add(*node, std::move(variable));
        }
    } while (AtSymbol(","));
    return node;
}

SyntaxPointer Parser::ParseJump() {
    const Position position = token_.position;
    const std::string word = token_.text;
    const FunctionContext& context = functions_.back();
    if (word == "return" ? functions_.size() == 1 : context.loop_depth == 0)
        throw Error(word + " outside of a " + (word == "return" ? "function" : "loop"), position);
    Advance();
    if (word == "continue") return Make(SyntaxKind::kContinue, position);
    if (word == "exit") {
        SyntaxPointer node = Make(SyntaxKind::kExit, position);
        if (!token_.after_line_break && AcceptKeyword("with")) Add(*node, ParseExpression());
        return node;
    }
    if (AtStatementEnd()) FailUnexpected("a value on the same line as return");
    SyntaxPointer node = Make(SyntaxKind::kReturn, position);
    Add(*node, ParseExpression());
    return node;
}

SyntaxPointer Parser::ParseMaxCommand() {
    SyntaxPointer node = Make(SyntaxKind::kMaxCommand, token_.position);
    Advance();
    while (!AtStatementEnd()) {
        if (token_.kind != TokenKind::kIdentifier && token_.kind != TokenKind::kKeyword)
            FailUnexpected("a word of a max command");
        if (!node->text.empty()) node->text += ' ';
        node->text += LowerCase(token_.text);
        Advance();
    }
    if (node->text.empty()) FailUnexpected("the words of a max command");
    return node;
}

}  // namespace script
