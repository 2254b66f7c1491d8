#include "standin/script/parser.h"

#include <algorithm>
#include <utility>

#include "standin/script/lexer.h"

namespace script {

namespace {

// Bounds the parser's own recursion.
constexpr int kMaximumNesting = 64;
// Bounds the recursion of whatever walks the tree: `1+1+1+...` is a tree as deep as it is long.
constexpr int kMaximumTreeDepth = 250;

struct BinaryOperator {
    std::string_view symbol;
    int precedence;
};

constexpr int kNotPrecedence = 3;

constexpr BinaryOperator kBinaryOperators[] = {
    {"or", 1}, {"and", 2}, {"==", 4}, {"!=", 4}, {"<", 4},  {"<=", 4},
    {">", 4},  {">=", 4},  {"+", 5},  {"-", 5},  {"as", 6},
};

const BinaryOperator* FindBinaryOperator(const Token& token) {
    if (token.kind != TokenKind::kSymbol && token.kind != TokenKind::kKeyword) return nullptr;
    for (const BinaryOperator& entry : kBinaryOperators) {
        if (entry.symbol == token.text) return &entry;
    }
    return nullptr;
}

void Add(Syntax& parent, SyntaxPointer part) {
    parent.depth = std::max(parent.depth, part->depth + 1);
    if (parent.depth > kMaximumTreeDepth)
        throw Error("the expression is nested too deeply", parent.position);
    parent.parts.push_back(std::move(part));
}

template <typename... Parts>
SyntaxPointer Make(SyntaxKind kind, Position position, std::string text, Parts... parts) {
    auto node = std::make_unique<Syntax>();
    node->kind = kind;
    node->position = position;
    node->text = std::move(text);
    (Add(*node, std::move(parts)), ...);
    return node;
}

// `-a` is `0 - a`.
SyntaxPointer Negated(Position position, SyntaxPointer operand) {
    SyntaxPointer zero = Make(SyntaxKind::kLiteral, position, "");
    zero->value = 0;
    return Make(SyntaxKind::kOperator, position, "-", std::move(zero), std::move(operand));
}

bool IsCallable(SyntaxKind kind) {
    return kind == SyntaxKind::kVariable || kind == SyntaxKind::kProperty ||
           kind == SyntaxKind::kIndex || kind == SyntaxKind::kBlock;
}

class TextParser final : public Parser {
public:
    explicit TextParser(std::string_view text) : lexer_(text) {}

    SyntaxPointer Next() override {
        if (!begun_) Advance();
        begun_ = true;
        while (AtSymbol(";"))
            Advance();
        if (AtEnd()) return nullptr;
        SyntaxPointer expression = ParseExpression();
        if (!AtEnd() && !AtSymbol(";") && !token_.after_line_break)
            FailUnexpected("a new line or ; between two expressions");
        return expression;
    }

private:
    // ---- tokens

    bool AtSymbol(std::string_view symbol) const {
        return token_.kind == TokenKind::kSymbol && token_.text == symbol;
    }

    bool AtKeyword(std::string_view word) const {
        return token_.kind == TokenKind::kKeyword && token_.text == word;
    }

    bool AtStatementEnd() const {
        return AtEnd() || token_.after_line_break || AtSymbol(";") || AtSymbol(")");
    }

    // An argument begins on the same line. A minus begins one when it leans towards what follows it
    // (`f a -b`); evenly spaced (`f a - b`, `f a-b`) it subtracts.
    bool AtArgument() const {
        if (token_.after_line_break) return false;
        if (AtSymbol("-")) return token_.after_blank && !token_.before_blank;
        return token_.kind == TokenKind::kLiteral || token_.kind == TokenKind::kIdentifier ||
               token_.kind == TokenKind::kObjectPath || AtSymbol("(") || AtSymbol("#(");
    }

    bool AcceptKeyword(std::string_view word) {
        if (!AtKeyword(word)) return false;
        Advance();
        return true;
    }

    [[noreturn]] void FailUnexpected(std::string_view expected) const {
        const std::string sign = token_.kind == TokenKind::kObjectPath ? "$" : "";
        throw Error("unexpected " + (AtEnd() ? "the end of the text" : sign + token_.text) +
                        ", expected " + std::string(expected),
                    token_.position);
    }

    void ExpectSymbol(std::string_view symbol, std::string_view where) {
        if (!AtSymbol(symbol)) FailUnexpected(std::string(symbol) + " " + std::string(where));
        Advance();
    }

    void ExpectKeyword(std::string_view word, std::string_view where) {
        if (!AcceptKeyword(word)) FailUnexpected(std::string(word) + " " + std::string(where));
    }

    std::string ExpectIdentifier(std::string_view what) {
        if (token_.kind != TokenKind::kIdentifier) FailUnexpected(what);
        std::string name = token_.text;
        Advance();
        return name;
    }

    // A node at a token that says no more than its kind.
    SyntaxPointer Begin(SyntaxKind kind) {
        SyntaxPointer node = Make(kind, token_.position, "");
        Advance();
        return node;
    }

    void CheckNesting() const {
        if (nesting_ > kMaximumNesting)
            throw Error("the expression is nested too deeply", token_.position);
    }

    // ---- expressions

    SyntaxPointer ParseExpression() {
        const CountGuard guard(nesting_);
        CheckNesting();
        if (AtKeyword("if")) return ParseIf();
        if (AtKeyword("for")) return ParseFor();
        if (AtKeyword("try")) return ParseTry();
        if (AtKeyword("fn")) return ParseFunction();
        if (AtKeyword("continue")) {
            if (loops_ == 0) throw Error("continue outside of a loop", token_.position);
            return Begin(SyntaxKind::kContinue);
        }
        if (AtKeyword("max")) return ParseMaxCommand();
        SyntaxPointer expression = ParseBinary(1);
        const bool assigns = AtSymbol("=") || AtSymbol("+=") || AtSymbol("-=");
        return assigns && !token_.after_line_break ? ParseAssignment(std::move(expression))
                                                   : std::move(expression);
    }

    // `a += b` is `a = a + b`.
    SyntaxPointer ParseAssignment(SyntaxPointer target) {
        const Position position = token_.position;
        const bool is_variable = target->kind == SyntaxKind::kVariable;
        const bool is_plain = AtSymbol("=");
        const bool is_assignable =
            is_variable || (is_plain && (target->kind == SyntaxKind::kProperty ||
                                         target->kind == SyntaxKind::kIndex));
        if (!is_assignable) throw Error("this cannot be assigned to", target->position);
        const std::string symbol = token_.text.substr(0, 1);
        Advance();
        SyntaxPointer value = ParseExpression();
        if (!is_plain) {
            SyntaxPointer old = Make(SyntaxKind::kVariable, target->position, target->text);
            value = Make(SyntaxKind::kOperator, position, symbol, std::move(old), std::move(value));
        }
        return Make(SyntaxKind::kAssign, position, "", std::move(target), std::move(value));
    }

    SyntaxPointer ParseBinary(int minimum_precedence) {
        SyntaxPointer left = ParseUnary();
        for (;;) {
            const BinaryOperator* entry = FindBinaryOperator(token_);
            if (!entry || token_.after_line_break || entry->precedence < minimum_precedence)
                return left;
            const Position position = token_.position;
            Advance();
            if (entry->symbol == "as") {
                const std::string name = ExpectIdentifier("a class name after as");
                left = Make(SyntaxKind::kConvert, position, name, std::move(left));
            } else {
                SyntaxPointer right = ParseBinary(entry->precedence + 1);
                left = Make(SyntaxKind::kOperator, position, std::string(entry->symbol),
                            std::move(left), std::move(right));
            }
        }
    }

    SyntaxPointer ParseUnary() {
        const CountGuard guard(nesting_);
        CheckNesting();
        const Position position = token_.position;
        if (AcceptKeyword("not"))
            return Make(SyntaxKind::kNot, position, "", ParseBinary(kNotPrecedence + 1));
        if (AtSymbol("-")) {
            Advance();
            return Negated(position, ParseUnary());
        }
        return ParseCall();
    }

    SyntaxPointer ParseCall() {
        SyntaxPointer called = ParsePostfix(ParsePrimary());
        if (!IsCallable(called->kind) || !AtArgument()) return called;
        const Position position = called->position;
        SyntaxPointer call = Make(SyntaxKind::kCall, position, "", std::move(called));
        while (AtArgument()) {
            const Position minus = token_.position;
            const bool is_negative = AtSymbol("-");
            if (is_negative) Advance();
            SyntaxPointer argument = ParsePrimary();
            // `f()` calls without arguments, and nothing else can follow as an argument.
            if (argument->kind == SyntaxKind::kBlock && argument->parts.empty()) {
                if (AtArgument() || call->parts.size() > 1)
                    FailUnexpected(
                        "no argument beside (); write (f()) to pass the result of a call");
                return ParsePostfix(std::move(call));
            }
            argument = ParsePostfix(std::move(argument));
            if (is_negative) argument = Negated(minus, std::move(argument));
            Add(*call, std::move(argument));
        }
        return call;
    }

    // A bracket that touches what stands before it is an index.
    SyntaxPointer ParsePostfix(SyntaxPointer operand) {
        while (!token_.after_line_break) {
            const bool is_index = AtSymbol("[") && !token_.after_blank;
            if (!is_index && !AtSymbol(".")) break;
            const Position bracket = token_.position;
            Advance();
            const Position position = token_.position;
            if (is_index) {
                operand =
                    Make(SyntaxKind::kIndex, bracket, "", std::move(operand), ParseExpression());
                ExpectSymbol("]", "after the index");
            } else {
                std::string name = ExpectIdentifier("a property name after .");
                operand =
                    Make(SyntaxKind::kProperty, position, std::move(name), std::move(operand));
            }
        }
        return operand;
    }

    SyntaxPointer ParsePrimary() {
        const Token token = token_;
        if (AtSymbol("(")) return ParseBlock();
        if (AtSymbol("#(")) return ParseArray();
        SyntaxKind kind = SyntaxKind::kLiteral;
        switch (token.kind) {
            case TokenKind::kLiteral: break;
            case TokenKind::kIdentifier: kind = SyntaxKind::kVariable; break;
            case TokenKind::kObjectPath: kind = SyntaxKind::kObjectPath; break;
            case TokenKind::kReserved:
                throw Error("'" + token.text + "' is not supported", token.position);
            default: FailUnexpected("an expression");
        }
        Advance();
        const bool is_variable = kind == SyntaxKind::kVariable;
        SyntaxPointer node =
            Make(kind, token.position, is_variable ? LowerCase(token.text) : token.text);
        node->value = token.value;
        return node;
    }

    SyntaxPointer ParseBlock() {
        SyntaxPointer block = Begin(SyntaxKind::kBlock);
        for (;;) {
            while (AtSymbol(";"))
                Advance();
            if (AtEnd()) throw Error("( is not closed", block->position);
            if (AtSymbol(")")) break;
            Add(*block, ParseExpression());
            if (!AtStatementEnd()) FailUnexpected("a new line, ; or )");
        }
        Advance();
        return block;
    }

    SyntaxPointer ParseArray() {
        SyntaxPointer array = Make(SyntaxKind::kArray, token_.position, "");
        do {
            Advance();
            if (array->parts.empty() && AtSymbol(")")) break;
            Add(*array, ParseExpression());
        } while (AtSymbol(","));
        ExpectSymbol(")", "after the items of an array");
        return array;
    }

    // ---- constructs

    SyntaxPointer ParseIf() {
        SyntaxPointer node = Begin(SyntaxKind::kIf);
        Add(*node, ParseExpression());
        ExpectKeyword("then", "after the condition of if");
        Add(*node, ParseExpression());
        // `else` belongs to this `if` from the next line too.
        if (AcceptKeyword("else")) Add(*node, ParseExpression());
        return node;
    }

    SyntaxPointer ParseFor() {
        SyntaxPointer node = Begin(SyntaxKind::kFor);
        node->text = LowerCase(ExpectIdentifier("a variable after for"));
        if (!AcceptKeyword("in")) ExpectSymbol("=", "(or in) after the variable of for");
        Add(*node, ParseExpression());
        if (AcceptKeyword("to")) Add(*node, ParseExpression());
        ExpectKeyword("do", "before the body of for");
        ++loops_;
        Add(*node, ParseExpression());
        --loops_;
        return node;
    }

    SyntaxPointer ParseTry() {
        SyntaxPointer node = Begin(SyntaxKind::kTry);
        Add(*node, ParseExpression());
        ExpectKeyword("catch", "after the expression of try");
        Add(*node, ParseExpression());
        return node;
    }

    SyntaxPointer ParseFunction() {
        const Position position = token_.position;
        Advance();
        const Position name_position = token_.position;
        auto function = std::make_shared<Function>();
        function->name = ExpectIdentifier("a function name");
        while (token_.kind == TokenKind::kIdentifier) {
            function->parameters.push_back(LowerCase(token_.text));
            Advance();
        }
        ExpectSymbol("=", "after the parameters of a function");
        const int loops_around = std::exchange(loops_, 0);
        function->body = ParseExpression();
        loops_ = loops_around;
        SyntaxPointer variable =
            Make(SyntaxKind::kVariable, name_position, LowerCase(function->name));
        SyntaxPointer literal = Make(SyntaxKind::kLiteral, position, "");
        // The body runs in variables of its own, but it is taken apart together with this tree.
        literal->depth = function->body->depth;
        literal->value = UserFunction{std::move(function)};
        return Make(SyntaxKind::kAssign, position, "", std::move(variable), std::move(literal));
    }

    SyntaxPointer ParseMaxCommand() {
        SyntaxPointer node = Begin(SyntaxKind::kMaxCommand);
        while (!AtStatementEnd()) {
            const bool is_word = token_.kind == TokenKind::kIdentifier ||
                                 token_.kind == TokenKind::kKeyword ||
                                 token_.kind == TokenKind::kReserved;
            if (!is_word) FailUnexpected("a word of a max command");
            if (!node->text.empty()) node->text += ' ';
            node->text += LowerCase(token_.text);
            Advance();
        }
        if (node->text.empty()) FailUnexpected("the words of a max command");
        return node;
    }

    void Advance() { token_ = lexer_.Next(); }
    bool AtEnd() const { return token_.kind == TokenKind::kEnd; }

    Lexer lexer_;
    Token token_;
    bool begun_ = false;
    int loops_ = 0;  // around the expression, within its function
    int nesting_ = 0;
};

}  // namespace

std::unique_ptr<Parser> MakeParser(std::string_view text) {
    return std::make_unique<TextParser>(text);
}

}  // namespace script
