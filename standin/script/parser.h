// Builds the tree of one top-level expression after the other.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "standin/script/lexer.h"
#include "standin/script/syntax.h"

namespace script {

// One expression of the outermost level and the number of variable slots that it needs.
struct Program {
    SyntaxPointer root;
    int slot_count = 0;
};

class Parser {
public:
    // A name that is neither declared in an enclosing block nor known as a global belongs to the
    // block where it is first used; outside of all blocks it becomes a global.
    using IsGlobal = std::function<bool(const std::string& lower_name)>;
    using DeclareGlobal = std::function<void(const std::string& lower_name)>;

    Parser(std::string_view text, IsGlobal is_global, DeclareGlobal declare_global);

    // The next expression; root is null at the end of the text. Expressions are read one at a
    // time because each is run before the next is read, as the host does.
    Program Next();

private:
    struct Variable {
        std::string name;
        int slot;
    };
    // The variables of a block, a loop or a function's parameters.
    struct Scope {
        // A loop's scope holds only its own variable; new variables go to the block around it.
        bool is_block = true;
        std::vector<Variable> variables;
        std::vector<std::string> globals;  // declared by `global` in this block
    };
    struct FunctionContext {
        std::string name;  // lower case; empty outside of functions
        std::vector<Scope> scopes;
        int slot_count = 0;
        int loop_depth = 0;
    };
    class NestingGuard;

    // Tokens
    void Advance();
    bool AtSymbol(std::string_view symbol) const;
    bool AtKeyword(std::string_view word) const;
    bool AtEnd() const { return token_.kind == TokenKind::kEnd; }
    bool AtStatementEnd() const;
    bool AcceptKeyword(std::string_view word);
    void ExpectSymbol(std::string_view symbol, std::string_view where);
    void ExpectKeyword(std::string_view word, std::string_view where);
    [[noreturn]] void FailUnexpected(std::string_view expected) const;

    // Nodes
    SyntaxPointer Make(SyntaxKind kind, Position position) const;
    void Add(Syntax& parent, SyntaxPointer child) const;
    void NoteDepth(Syntax& parent, int child_depth) const;
    SyntaxPointer MakeVariable(const std::string& name, Position position);
    SyntaxPointer MakeLocal(int slot, Position position) const;

    // Names
    int* FindLocal(FunctionContext& context, const std::string& name);
    bool IsDeclaredGlobal(const FunctionContext& context, const std::string& name) const;
    Scope* InnermostBlock();
    int Declare(Scope& scope, const std::string& name);
    std::string ExpectIdentifier(std::string_view what);

    // Expressions
    SyntaxPointer ParseExpression();
    SyntaxPointer ParseKeywordExpression();
    SyntaxPointer ParseAssignment(SyntaxPointer target);
    SyntaxPointer ParseBinary(int minimum_precedence);
    SyntaxPointer ParseUnary();
    SyntaxPointer ParseCall();
    SyntaxPointer ParseOperand();
    SyntaxPointer ParsePostfix(SyntaxPointer operand);
    SyntaxPointer ParsePrimary();
    SyntaxPointer ParseKeywordPrimary();
    SyntaxPointer ParseBlock();
    SyntaxPointer ParsePoint();
    SyntaxPointer ParseArray();
    SyntaxPointer ParseIf();
    SyntaxPointer ParseFor();
    SyntaxPointer ParseLoopBody();
    SyntaxPointer ParseWhile();
    SyntaxPointer ParseDoWhile();
    SyntaxPointer ParseTry();
    SyntaxPointer ParseFunction();
    SyntaxPointer ParseDeclaration(bool is_global);
    SyntaxPointer ParseJump();
    SyntaxPointer ParseMaxCommand();
    bool StartsArgument() const;

    Lexer lexer_;
    Token token_;
    IsGlobal is_global_;
    DeclareGlobal declare_global_;
    std::vector<FunctionContext> functions_;
    int nesting_ = 0;
};

}  // namespace script
