#include "standin/scenario/lines.h"

namespace scenario {
namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// Cuts the comment off: a `#` outside of quotes at the start of a word.
std::string_view WithoutComment(std::string_view line) {
    bool in_quotes = false;
    for (size_t i = 0; i < line.size(); ++i) {
        if (in_quotes && line[i] == '\\')
            ++i;
        else if (line[i] == '"')
            in_quotes = !in_quotes;
        else if (line[i] == '#' && !in_quotes && (i == 0 || IsBlank(line[i - 1])))
            return line.substr(0, i);
    }
    return line;
}

// How many bytes the first character takes, 0 when it is no UTF-8.
size_t CharacterSize(std::string_view text) {
    const auto byte = [text](size_t i) { return static_cast<unsigned char>(text[i]); };
    const size_t size = byte(0) < 0x80   ? 1
                        : byte(0) < 0xC0 ? 0
                        : byte(0) < 0xE0 ? 2
                        : byte(0) < 0xF0 ? 3
                        : byte(0) < 0xF8 ? 4
                                         : 0;
    if (size < 2 || size > text.size()) return size == 1;
    unsigned long value = byte(0) & (0x7Fu >> size);
    for (size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
        value = value << 6 | (byte(i) & 0x3F);
    }
    constexpr unsigned long kLowest[] = {0x80, 0x800, 0x10000};
    const bool surrogate = value >= 0xD800 && value < 0xE000;
    return value < kLowest[size - 2] || value > 0x10FFFF || surrogate ? 0 : size;
}

std::string Hex(char byte) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    return {kDigits[(byte >> 4) & 15], kDigits[byte & 15]};
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (size_t end = 0; end != std::string_view::npos;) {
        end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        if (end != std::string_view::npos) text.remove_prefix(end + 1);
    }
    return parts;
}

Line SplitLine(std::string_view text) {
    Line line;
    line.source = Trimmed(WithoutComment(text));
    const std::string& s = line.source;
    for (size_t i = 0; i < s.size();) {
        if (IsBlank(s[i])) {
            ++i;
            continue;
        }
        Word word{"", s[i] == '"', i};
        i += word.quoted;
        for (; i < s.size() && (word.quoted ? s[i] != '"' : !IsBlank(s[i])); ++i) {
            const bool escaped = word.quoted && s[i] == '\\' && i + 1 < s.size();
            if (escaped) ++i;
            word.text += !escaped      ? s[i]
                         : s[i] == 'n' ? '\n'
                         : s[i] == 'r' ? '\r'
                         : s[i] == 't' ? '\t'
                                       : s[i];
        }
        line.open_quote = word.quoted && i == s.size();
        i += word.quoted;
        line.words.push_back(word);
    }
    return line;
}

std::string EncodingProblem(std::string_view line) {
    for (size_t i = 0; i < line.size();) {
        const size_t size = line[i] ? CharacterSize(line.substr(i)) : 0;
        if (size == 0)
            return (line[i] ? "the byte 0x" + Hex(line[i]) + " is no UTF-8"
                            : "there is a NUL byte") +
                   " in column " + std::to_string(i + 1) + ", save the file as UTF-8";
        i += size;
    }
    return {};
}

std::string Shown(const Word& word) {
    constexpr size_t kLongest = 40;
    std::string shown = "\"";
    for (size_t i = 0; i < word.text.size();) {
        if (i >= kLongest) return shown + "…\"";
        const size_t size = CharacterSize(std::string_view(word.text).substr(i));
        const bool control = static_cast<unsigned char>(word.text[i]) < ' ' || word.text[i] == 127;
        shown += control ? "\\x" + Hex(word.text[i]) : word.text.substr(i, size);
        i += size;
    }
    return shown + '"';
}

}  // namespace scenario
