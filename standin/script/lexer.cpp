#include "standin/script/lexer.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace script {

namespace {

constexpr std::string_view kKeywords[] = {
    "and", "as", "catch", "continue", "do", "else", "fn", "for",
    "if",  "in", "max",   "not",      "or", "then", "to", "try",
};

// The language's other reserved words: they must not pass as variables.
constexpr std::string_view kReservedWords[] = {
    "about",    "animate", "at",         "attributes", "by",     "case",    "collect",
    "coordsys", "exit",    "from",       "function",   "global", "local",   "macroscript",
    "mapped",   "of",      "parameters", "persistent", "plugin", "rcmenu",  "return",
    "rollout",  "set",     "struct",     "tool",       "undo",   "utility", "when",
    "where",    "while",   "with",
};

// Longer symbols first.
constexpr std::string_view kSymbols[] = {
    "#(", "==", "!=", "<=", ">=", "+=", "-=", "(", ")", "[",
    "]",  ",",  ";",  ".",  "+",  "-",  "=",  "<", ">",
};

template <typename Words>
bool Contains(const Words& words, std::string_view word) {
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

bool IsDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool IsWordStart(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
}

bool IsWordPart(char letter) {
    return IsWordStart(letter) || IsDigit(letter);
}

bool IsBlank(char letter) {
    return letter == ' ' || (letter >= '\t' && letter <= '\r');
}

std::string DescribeCharacter(char letter) {
    if (letter >= 0x20 && letter < 0x7f) return std::string("'") + letter + "'";
    return "number " + std::to_string(static_cast<unsigned char>(letter));
}

}  // namespace

char Lexer::Peek(std::size_t ahead) const {
    return offset_ + ahead < text_.size() ? text_[offset_ + ahead] : '\0';
}

char Lexer::Advance() {
    const char letter = text_[offset_++];
    ++position_.column;
    if (letter == '\n') position_ = {position_.line + 1, 1};
    return letter;
}

std::string Lexer::Take(bool (*belongs)(char)) {
    std::string taken;
    while (belongs(Peek()))
        taken += Advance();
    return taken;
}

void Lexer::SkipBlanks(Token& token) {
    while (offset_ < text_.size()) {
        if (Peek() == '-' && Peek(1) == '-') {
            while (offset_ < text_.size() && Peek() != '\n')
                Advance();
        } else if (IsBlank(Peek())) {
            if (Advance() == '\n') token.after_line_break = true;
        } else {
            return;
        }
        token.after_blank = true;
    }
}

Token Lexer::Next() {
    Token token;
    SkipBlanks(token);
    token.position = position_;
    if (offset_ < text_.size()) ReadToken(token);
    token.before_blank = offset_ >= text_.size() || IsBlank(Peek());
    return token;
}

void Lexer::ReadToken(Token& token) {
    const char letter = Peek();
    if (IsDigit(letter)) {
        ReadNumber(token);
    } else if (IsWordStart(letter)) {
        ReadWord(token);
    } else if (letter == '"') {
        ReadText(token);
    } else if (letter == '$') {
        Advance();
        token.kind = TokenKind::kObjectPath;
        token.text = Take(IsWordPart);
        if (Peek() == '*') token.text += Advance();
        if (token.text.empty()) throw Error("$ needs a name behind it", token.position);
    } else if (letter == '#' && Peek(1) != '(') {
        Advance();
        token.kind = TokenKind::kLiteral;
        token.text = Take(IsWordPart);
        if (token.text.empty()) throw Error("# needs a name or ( behind it", token.position);
        token.value = Name{token.text};
    } else {
        ReadSymbol(token);
    }
}

void Lexer::ReadNumber(Token& token) {
    token.kind = TokenKind::kLiteral;
    token.text = Take(IsDigit);
    const bool is_float = Peek() == '.' && IsDigit(Peek(1));
    if (is_float) {
        token.text += Advance();
        token.text += Take(IsDigit);
    }
    const double number = std::strtod(token.text.c_str(), nullptr);
    if (Peek() == 'f') {
        token.text += Advance();
        token.value = Time{TruncateToInteger(number * kTicksPerFrame)};
    } else if (is_float) {
        token.value =
            static_cast<float>(std::min<double>(number, std::numeric_limits<float>::max()));
    } else if (number > std::numeric_limits<std::int32_t>::max()) {
        throw Error("the number does not fit into an integer", token.position);
    } else {
        token.value = static_cast<std::int32_t>(number);
    }
    if (IsWordPart(Peek()))
        throw Error("the number ends in " + DescribeCharacter(Peek()), position_);
}

void Lexer::ReadText(Token& token) {
    token.kind = TokenKind::kLiteral;
    Advance();
    std::string content;
    while (Peek() != '"') {
        if (offset_ >= text_.size()) throw Error("the text is not closed", token.position);
        if (Peek() == '\\') throw Error("\\ in a text is not supported", position_);
        content += Advance();
    }
    Advance();
    token.text = "\"" + content + "\"";
    token.value = std::move(content);
}

void Lexer::ReadWord(Token& token) {
    token.text = Take(IsWordPart);
    const std::string lower = LowerCase(token.text);
    token.kind = TokenKind::kLiteral;
    if (lower == "true" || lower == "on") {
        token.value = true;
    } else if (lower == "false" || lower == "off") {
        token.value = false;
    } else if (lower != "undefined") {
        token.kind = Contains(kKeywords, lower)        ? TokenKind::kKeyword
                     : Contains(kReservedWords, lower) ? TokenKind::kReserved
                                                       : TokenKind::kIdentifier;
        if (token.kind != TokenKind::kIdentifier) token.text = lower;
    }
}

void Lexer::ReadSymbol(Token& token) {
    token.kind = TokenKind::kSymbol;
    for (const std::string_view symbol : kSymbols) {
        if (text_.substr(offset_, symbol.size()) != symbol) continue;
        token.text = symbol;
        for (std::size_t count = 0; count < symbol.size(); ++count)
            Advance();
        return;
    }
    throw Error("unexpected character " + DescribeCharacter(Peek()), position_);
}

}  // namespace script
