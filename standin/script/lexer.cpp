#include "standin/script/lexer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace script {

namespace {

// Every reserved word of the language, also those whose constructs are not supported: they must
// not pass as variables.
constexpr std::string_view kReservedWords[] = {
    "about",  "and",    "animate", "as",          "at",        "attributes", "by",
    "case",   "catch",  "collect", "continue",    "coordsys",  "do",         "else",
    "exit",   "false",  "fn",      "for",         "from",      "function",   "global",
    "if",     "in",     "local",   "macroscript", "mapped",    "max",        "not",
    "of",     "off",    "ok",      "on",          "or",        "parameters", "persistent",
    "plugin", "rcmenu", "return",  "rollout",     "set",       "struct",     "then",
    "to",     "tool",   "true",    "try",         "undefined", "undo",       "utility",
    "when",   "where",  "while",   "with",
};

// Longer symbols first.
constexpr std::string_view kSymbols[] = {
    "#(", "==", "!=", "<=", ">=", "+=", "-=", "*=", "/=", "(", ")", "[", "]",
    ",",  ";",  ".",  ":",  "+",  "-",  "*",  "/",  "^",  "=", "<", ">",
};

bool IsDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool IsHexadecimalDigit(char letter) {
    return IsDigit(letter) || (letter >= 'a' && letter <= 'f') || (letter >= 'A' && letter <= 'F');
}

bool IsWordStart(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
}

bool IsWordPart(char letter) {
    return IsWordStart(letter) || IsDigit(letter);
}

bool IsLineBreak(char letter) {
    return letter == '\n' || letter == '\r';
}

bool IsBlank(char letter) {
    return letter == ' ' || letter == '\t' || letter == '\v' || letter == '\f' ||
           IsLineBreak(letter);
}

int HexadecimalValue(char digit) {
    if (IsDigit(digit)) return digit - '0';
    return (digit | 0x20) - 'a' + 10;
}

std::string DescribeCharacter(char letter) {
    if (letter >= 0x20 && letter < 0x7f) return std::string("'") + letter + "'";
    constexpr char kDigits[] = "0123456789ABCDEF";
    const unsigned code = static_cast<unsigned char>(letter);
    return std::string("0x") + kDigits[code >> 4] + kDigits[code & 15];
}

}  // namespace

char Lexer::Peek(std::size_t ahead) const {
    return offset_ + ahead < text_.size() ? text_[offset_ + ahead] : '\0';
}

char Lexer::Advance() {
    const char letter = text_[offset_++];
    // A carriage return and line feed count as one line break.
    if (letter == '\n' || (letter == '\r' && Peek() != '\n')) {
        ++position_.line;
        position_.column = 1;
    } else if (letter != '\r') {
        ++position_.column;
    }
    return letter;
}

void Lexer::SkipBlockComment() {
    const Position start = position_;
    Advance();
    Advance();
    while (!(Peek() == '*' && Peek(1) == '/')) {
        if (offset_ >= text_.size()) throw Error("the comment is not closed", start);
        Advance();
    }
    Advance();
    Advance();
}

bool Lexer::SkipBlanks() {
    const std::size_t start = offset_;
    while (offset_ < text_.size()) {
        const char letter = Peek();
        if (IsBlank(letter)) {
            line_break_seen_ = line_break_seen_ || IsLineBreak(letter);
            Advance();
        } else if (letter == '-' && Peek(1) == '-') {
            while (offset_ < text_.size() && !IsLineBreak(Peek()))
                Advance();
        } else if (letter == '/' && Peek(1) == '*') {
            SkipBlockComment();
        } else if (letter == '\\') {
            // A backslash at the end of a line joins the next one to it.
            std::size_t ahead = 1;
            while (IsBlank(Peek(ahead)) && !IsLineBreak(Peek(ahead)))
                ++ahead;
            if (!IsLineBreak(Peek(ahead))) break;
            const int line = position_.line;
            while (position_.line == line)
                Advance();
        } else {
            break;
        }
    }
    return offset_ != start;
}

Token Lexer::Next() {
    line_break_seen_ = false;
    Token token;
    token.after_blank = SkipBlanks();
    token.after_line_break = line_break_seen_;
    token.position = position_;
    if (offset_ < text_.size()) ReadToken(token);
    token.before_blank = offset_ >= text_.size() || IsBlank(Peek());
    after_operand_ = token.kind != TokenKind::kSymbol || token.text == ")" || token.text == "]";
    return token;
}

bool Lexer::CanBeginFraction() const {
    return Peek() == '.' && IsDigit(Peek(1)) &&
           (!after_operand_ || (offset_ > 0 && IsBlank(text_[offset_ - 1])));
}

void Lexer::ReadToken(Token& token) {
    const char letter = Peek();
    if (IsDigit(letter) || CanBeginFraction())
        ReadNumber(token);
    else if (IsWordStart(letter))
        ReadWord(token);
    else if (letter == '"')
        ReadText(token);
    else if (letter == '$')
        ReadObjectPath(token);
    else if (letter == '#' && Peek(1) != '(')
        ReadName(token);
    else
        ReadSymbol(token);
}

void Lexer::ReadHexadecimal(Token& token) {
    Advance();
    Advance();
    std::uint64_t number = 0;
    if (!IsHexadecimalDigit(Peek()))
        throw Error("a hexadecimal number needs digits", token.position);
    while (IsHexadecimalDigit(Peek())) {
        number = number * 16 + static_cast<unsigned>(HexadecimalValue(Advance()));
        if (number > std::numeric_limits<std::uint32_t>::max())
            throw Error("the number does not fit into an integer", token.position);
    }
    token.value = Value::Integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(number)));
}

void Lexer::ReadNumber(Token& token) {
    token.kind = TokenKind::kLiteral;
    const std::size_t start = offset_;
    bool is_float = false;
    if (Peek() == '0' && (Peek(1) == 'x' || Peek(1) == 'X')) {
        ReadHexadecimal(token);
    } else {
        while (IsDigit(Peek()))
            Advance();
        if (Peek() == '.' && !IsWordStart(Peek(1)) && Peek(1) != '.') {
            is_float = true;
            Advance();
            while (IsDigit(Peek()))
                Advance();
        }
        const std::size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 1 : 0;
        if ((Peek() == 'e' || Peek() == 'E') && IsDigit(Peek(1 + sign))) {
            is_float = true;
            for (std::size_t count = 0; count < 1 + sign; ++count)
                Advance();
            while (IsDigit(Peek()))
                Advance();
        }
        const std::string digits(text_.substr(start, offset_ - start));
        const double number = std::strtod(digits.c_str(), nullptr);
        const char unit = IsWordPart(Peek(1)) ? '\0' : Peek();
        if (unit == 'f' || unit == 's' || unit == 't') {
            Advance();
            const double scale = unit == 'f' ? kTicksPerFrame : unit == 's' ? kTicksPerSecond : 1;
            token.value = Value::Ticks(TruncateToInteger(number * scale));
        } else if (is_float) {
            token.value = Value::Float(
                static_cast<float>(std::min<double>(number, std::numeric_limits<float>::max())));
        } else if (number > std::numeric_limits<std::int32_t>::max()) {
            throw Error("the number does not fit into an integer", token.position);
        } else {
            token.value = Value::Integer(static_cast<std::int32_t>(number));
        }
    }
    if (IsWordPart(Peek()))
        throw Error("the number ends in " + DescribeCharacter(Peek()), position_);
    token.text = std::string(text_.substr(start, offset_ - start));
}

char Lexer::ReadEscape(Position start) {
    const Position escape = position_;
    Advance();
    const char letter = offset_ < text_.size() ? Advance() : '\0';
    switch (letter) {
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        case '"':
        case '\\':
        case '*':
        case '?':
        case '%': return letter;
        case 'x': {
            if (!IsHexadecimalDigit(Peek()))
                throw Error("\\x in a text needs hexadecimal digits", escape);
            int code = HexadecimalValue(Advance());
            if (IsHexadecimalDigit(Peek())) code = code * 16 + HexadecimalValue(Advance());
            return static_cast<char>(code);
        }
        case '\0':
            if (offset_ >= text_.size()) throw Error("the text is not closed", start);
            break;
        default: break;
    }
    throw Error("unknown escape \\" + DescribeCharacter(letter) + " in a text", escape);
}

void Lexer::ReadText(Token& token) {
    token.kind = TokenKind::kLiteral;
    Advance();
    std::string content;
    while (Peek() != '"') {
        if (offset_ >= text_.size()) throw Error("the text is not closed", token.position);
        content += Peek() == '\\' ? ReadEscape(token.position) : Advance();
    }
    Advance();
    token.text = "\"" + content + "\"";
    token.value = Value::Text(std::move(content));
}

void Lexer::ReadName(Token& token) {
    token.kind = TokenKind::kLiteral;
    Advance();
    if (Peek() == '{') throw Error("bit arrays are not supported", token.position);
    std::string name;
    while (IsWordPart(Peek()))
        name += Advance();
    if (name.empty()) throw Error("# needs a name or ( behind it", token.position);
    token.text = "#" + name;
    token.value = Value::MakeName(std::move(name));
}

void Lexer::ReadObjectPath(Token& token) {
    token.kind = TokenKind::kObjectPath;
    Advance();
    if (Peek() == '\'') {
        Advance();
        while (Peek() != '\'') {
            if (offset_ >= text_.size() || IsLineBreak(Peek()))
                throw Error("the object name is not closed", token.position);
            token.text += Advance();
        }
        Advance();
    } else {
        while (IsWordPart(Peek()) || Peek() == '*' || Peek() == '?')
            token.text += Advance();
    }
    if (Peek() == '/' || (Peek() == '.' && Peek(1) == '.'))
        throw Error("object paths through the hierarchy are not supported", token.position);
}

void Lexer::ReadWord(Token& token) {
    while (IsWordPart(Peek()))
        token.text += Advance();
    const std::string lower = LowerCase(token.text);
    const bool reserved = std::find(std::begin(kReservedWords), std::end(kReservedWords), lower) !=
                          std::end(kReservedWords);
    token.kind = reserved ? TokenKind::kKeyword : TokenKind::kIdentifier;
    if (reserved) token.text = lower;
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
