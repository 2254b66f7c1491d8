#include "standin/scenario/expectation.h"

#include <algorithm>
#include <string>
#include <vector>

namespace scenario {
namespace {

// The blanks inside of quotes do not part words.
std::vector<std::string_view> WordsOf(std::string_view line) {
    constexpr std::string_view kBlanks = " \t\r";
    std::vector<std::string_view> words;
    size_t begin = 0;
    bool in_quotes = false;
    for (size_t i = 0; i <= line.size(); ++i) {
        if (i < line.size() && in_quotes && line[i] == '\\' && i + 1 < line.size()) {
            ++i;
            continue;
        }
        if (i < line.size() && line[i] == '"') in_quotes = !in_quotes;
        if (i < line.size() && (in_quotes || kBlanks.find(line[i]) == kBlanks.npos)) continue;
        if (i > begin) words.push_back(line.substr(begin, i - begin));
        begin = i + 1;
    }
    return words;
}

// The NAME of a word NAME=VALUE, else empty.
std::string_view NameIn(std::string_view word) {
    const size_t equals = word.find('=');
    const bool is_name = equals != std::string_view::npos &&
                         std::all_of(word.begin(), word.begin() + static_cast<long>(equals),
                                     [](char c) { return c >= 'a' && c <= 'z'; });
    return is_name ? word.substr(0, equals) : std::string_view();
}

}  // namespace

bool Matches(std::string_view expected, std::string_view got) {
    // The usual walk with one point to come back to: the last star.
    size_t e = 0;
    size_t g = 0;
    size_t star = std::string_view::npos;
    size_t after_star = 0;
    while (g < got.size()) {
        if (e < expected.size() && expected[e] == '*') {
            star = e++;
            after_star = g;
        } else if (e < expected.size() && expected[e] == got[g]) {
            ++e;
            ++g;
        } else if (star != std::string_view::npos) {
            e = star + 1;
            g = ++after_star;
        } else {
            return false;
        }
    }
    while (e < expected.size() && expected[e] == '*')
        ++e;
    return e == expected.size();
}

bool MatchesLine(std::string_view expected, std::string_view got) {
    if (Matches(expected, got)) return true;
    constexpr std::string_view kWithMore[] = {"win MessageBoxA ",    "win ShellExecuteA ",
                                              "win PropertySheetA ", "win SetWindowsHookExA ",
                                              "sdk RegisterMenu ",   "out "};
    if (std::none_of(std::begin(kWithMore), std::end(kWithMore),
                     [got](std::string_view begin) { return got.starts_with(begin); }))
        return false;
    const std::vector<std::string_view> wanted = WordsOf(expected);
    std::vector<std::string_view> words = WordsOf(got);
    std::string more;
    while (!words.empty() && !NameIn(words.back()).empty()) {
        const std::string_view word = words.back();
        words.pop_back();
        got = got.substr(0, static_cast<size_t>(word.data() - got.data()) - 1);
        if (std::any_of(wanted.begin(), wanted.end(),
                        [word](std::string_view asked) { return NameIn(asked) == NameIn(word); }))
            more.insert(0, ' ' + std::string(word));
    }
    return Matches(expected, std::string(got) + more);
}

bool IsAnyLines(std::string_view expected) {
    return expected == "\xE2\x80\xA6" || expected == "...";
}

}  // namespace scenario
