// Splits a script text into tokens.
#pragma once

#include <string>
#include <string_view>

#include "standin/script/value.h"

namespace script {

enum class TokenKind {
    kEnd,
    kLiteral,  // value: a number, a time, a text, a name, or a word that is a value
    kIdentifier,
    kKeyword,   // in lower case
    kReserved,  // a keyword of what is not supported here, in lower case
    kObjectPath,
    kSymbol,
};

struct Token {
    TokenKind kind = TokenKind::kEnd;
    std::string text;
    Value value;
    Position position;
    bool after_line_break = false;
    bool after_blank = false;   // a blank, a comment or a line break lies before it
    bool before_blank = false;  // ... or after it
};

class Lexer {
public:
    explicit Lexer(std::string_view text) : text_(text) {}

    // Throws Error at a character that cannot begin a token.
    Token Next();

private:
    char Peek(std::size_t ahead = 0) const;
    char Advance();
    std::string Take(bool (*belongs)(char));
    void SkipBlanks(Token& token);
    void ReadToken(Token& token);
    void ReadNumber(Token& token);
    void ReadText(Token& token);
    void ReadWord(Token& token);
    void ReadSymbol(Token& token);

    std::string_view text_;
    std::size_t offset_ = 0;
    Position position_{1, 1};
};

}  // namespace script
