// A scenario's text, cut into lines and words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace scenario {

struct Word {
    std::string text;
    bool quoted = false;
    size_t begin = 0;  // where it stands in the line
};

struct Line {
    std::string source;
    std::vector<Word> words;
    bool open_quote = false;
};

// Escapes are resolved in quoted words; the comment is cut off.
Line SplitLine(std::string_view text);

std::vector<std::string> Split(std::string_view text, char separator);

// Without the blanks around it.
std::string_view Trimmed(std::string_view text);

// What is no text in a line, empty when all of it is.
std::string EncodingProblem(std::string_view line);

// A word as messages show it: one line, of bearable length.
std::string Shown(const Word& word);

}  // namespace scenario
