// What a report of a running host tells (docs/report.md), as far as a world is made of it. Needs no
// Windows.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace report {

// `noun NUMBER... key=value...`; `setting` has a word where others have a number.
struct Line {
    std::string noun;
    std::string word;
    std::vector<long long> numbers;
    std::map<std::string, std::string, std::less<>> values;

    // Empty for a key that is not there, and for a value that is no number.
    std::optional<long long> Number(std::string_view key) const;
    bool Is(std::string_view key) const { return Number(key).value_or(0) != 0; }
    std::string Text(std::string_view key) const;
};

struct Pair {
    int x = 0, y = 0;
    friend bool operator==(const Pair&, const Pair&) = default;
};

struct Window {
    int number = 0;
    int parent = 0;  // numbers of windows before it; 0: none
    int owner = 0;
    std::string class_name;
    std::string title;
    int id = 0;
    unsigned style = 0;
    unsigned exstyle = 0;
    Pair at;  // of the screen
    Pair size;
    bool double_clicks = false;
    bool visible = false;
    bool enabled = false;
    std::string kind;
};

struct Viewport {
    int window = 0;
    int type = 0;
    bool perspective = false;
    bool user = false;
    bool active = false;
    std::string name;  // viewport.top, .front, .user, .persp, and viewport.5 on
};

struct Report {
    int release = 0;
    Pair screen_at;
    Pair screen_size;
    std::vector<Window> windows;  // each behind its parent, and before its owner or behind it
    std::vector<Viewport> viewports;
    std::vector<Line> lines;  // all others of nouns that are known
};

struct Mistake {
    int line = 0;
    std::string message;
};

// False: the report can not be used, and *mistake tells why and what to do.
bool Read(std::string_view text, Report* result, Mistake* mistake);

}  // namespace report
