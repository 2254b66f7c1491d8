#include "standin/engine/world/report.h"

#include <algorithm>
#include <charconv>

namespace report {
namespace {

constexpr int kVersion = 1;
constexpr std::string_view kFirst = "Karvel report ";

// `flyout` and a mode's `id` may be the word `none` as well.
enum class Value { kNumber, kNumberOrNone, kPoint, kSize, kText };

struct Key {
    std::string_view noun;
    std::string_view name;
    Value value;
    bool needed;
};
constexpr Key kKeys[] = {
    {"host", "release", Value::kNumber, true},
    {"screen", "at", Value::kPoint, true},
    {"screen", "size", Value::kSize, true},
    {"window", "parent", Value::kNumber, true},
    {"window", "owner", Value::kNumber, true},
    {"window", "class", Value::kText, true},
    {"window", "id", Value::kNumber, true},
    {"window", "title", Value::kText, true},
    {"window", "style", Value::kNumber, true},
    {"window", "exstyle", Value::kNumber, true},
    {"window", "at", Value::kPoint, true},
    {"window", "size", Value::kSize, true},
    {"window", "double", Value::kNumber, true},
    {"window", "visible", Value::kNumber, true},
    {"window", "enabled", Value::kNumber, true},
    {"window", "kind", Value::kText, true},
    {"viewport", "type", Value::kNumber, true},
    {"viewport", "perspective", Value::kNumber, true},
    {"viewport", "user", Value::kNumber, true},
    {"viewport", "active", Value::kNumber, true},
    {"action", "checked", Value::kNumber, false},
    {"button", "window", Value::kNumber, false},
    {"button", "checked", Value::kNumber, false},
    {"button", "flyout", Value::kNumberOrNone, false},
    {"toolbar", "present", Value::kNumber, true},
    {"mode", "id", Value::kNumberOrNone, true},
    {"mode", "class", Value::kNumber, false},
    {"mode", "stack", Value::kNumber, false},
    {"state", "level", Value::kNumber, false},
    {"state", "axis", Value::kNumber, false},
    {"state", "coordinates", Value::kNumber, false},
    {"polytools", "present", Value::kNumber, true},
    {"setting", "value", Value::kText, true},
};

// How many numbers stand behind a noun; -1: a word.
struct Noun {
    std::string_view name;
    int numbers;
};
constexpr Noun kNouns[] = {{"host", 0},   {"screen", 0},   {"window", 1},   {"viewport", 1},
                           {"action", 2}, {"button", 1},   {"toolbar", 1},  {"mode", 0},
                           {"state", 0},  {"setting", -1}, {"polytools", 0}};

std::optional<long long> ReadNumber(std::string_view text) {
    const bool bits = text.starts_with("0x");
    if (bits) text.remove_prefix(2);
    long long value = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value, bits ? 16 : 10);
    constexpr long long kMost = 0xFFFFFFFF;
    if (text.empty() || read.ec != std::errc() || read.ptr != end || (bits && text[0] == '-') ||
        value < -kMost || value > kMost)
        return {};
    return value;
}

std::optional<Pair> ReadPair(std::string_view text, char between, int lowest) {
    constexpr int kHighest = 32767;
    const size_t middle = text.find(between);
    if (middle == std::string_view::npos) return {};
    const auto x = ReadNumber(text.substr(0, middle));
    const auto y = ReadNumber(text.substr(middle + 1));
    if (!x || !y || std::min(*x, *y) < lowest || std::max(*x, *y) > kHighest) return {};
    return Pair{static_cast<int>(*x), static_cast<int>(*y)};
}
std::optional<Pair> ReadPoint(std::string_view text) {
    return ReadPair(text, ',', -32768);
}
std::optional<Pair> ReadSize(std::string_view text) {
    return ReadPair(text, 'x', 0);
}

// What is wrong with a value; empty: nothing.
std::string ProblemOf(Value value, std::string_view text) {
    switch (value) {
        case Value::kNumber: return ReadNumber(text) ? "" : "a number";
        case Value::kNumberOrNone: return ReadNumber(text) || text == "none" ? "" : "a number";
        case Value::kPoint: return ReadPoint(text) ? "" : "a point X,Y";
        case Value::kSize: return ReadSize(text) ? "" : "a size WxH";
        case Value::kText: break;
    }
    return {};
}

char Unescaped(char c) {
    return c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
}

// Takes the next word off a line, with escapes in its quoted part resolved. False: the quotes do
// not close.
bool TakeWord(std::string_view* line, std::string* word) {
    word->clear();
    bool quoted = false;
    size_t i = 0;
    for (; i < line->size() && (quoted || (*line)[i] != ' '); ++i) {
        const char c = (*line)[i];
        if (c == '"')
            quoted = !quoted;
        else if (quoted && c == '\\' && i + 1 < line->size())
            *word += Unescaped((*line)[++i]);
        else
            *word += c;
    }
    line->remove_prefix(std::min(line->size(), line->find_first_not_of(' ', i)));
    return !quoted;
}

class Reader {
public:
    Reader(std::string_view text, Report* result, Mistake* mistake)
        : text_(text), result_(*result), mistake_(*mistake) {}

    bool Run() {
        result_ = {};
        if (!ReadFirst()) return false;
        std::string_view line;
        while (TakeLine(&line)) {
            if (line == "end") return HasAll() && NameViewports();
            if (line.empty() || line.starts_with('#')) continue;
            if (!ReadLine(line)) return false;
        }
        return Fail("the report was cut short, its last line is not \"end\": have it made anew");
    }

private:
    bool Fail(const std::string& message) {
        mistake_ = {at_, message};
        return false;
    }

    bool TakeLine(std::string_view* line) {
        if (text_.empty()) return false;
        const size_t end = std::min(text_.find('\n'), text_.size());
        *line = text_.substr(0, end);
        text_.remove_prefix(std::min(text_.size(), end + 1));
        while (line->ends_with('\r') || line->ends_with(' '))
            line->remove_suffix(1);
        ++at_;
        return true;
    }

    bool ReadFirst() {
        std::string_view line;
        TakeLine(&line);
        at_ = 1;
        const bool is_report = line.starts_with(kFirst);
        const auto version = ReadNumber(is_report ? line.substr(kFirst.size()) : "");
        if (!version)
            return Fail("this is no report, its first line is not \"" + std::string(kFirst) +
                        std::to_string(kVersion) + "\": name a KarvelReport.txt");
        return *version == kVersion ||
               Fail("a report of version " + std::to_string(*version) + ", and only version " +
                    std::to_string(kVersion) +
                    " can be read here: play it with the sources that its writer was built from");
    }

    bool ReadLine(std::string_view text) {
        Line line;
        if (!TakeWord(&text, &line.noun)) return Fail(kOpenQuote);
        const auto* const noun =
            std::find_if(std::begin(kNouns), std::end(kNouns),
                         [&line](const Noun& known) { return known.name == line.noun; });
        if (noun == std::end(kNouns)) return true;
        if (!ReadNumbers(*noun, &text, &line)) return false;
        for (std::string word; !text.empty();) {
            if (!TakeWord(&text, &word)) return Fail(kOpenQuote);
            const size_t equals = word.find('=');
            if (equals == 0 || equals == std::string::npos)
                return Fail('"' + word + "\" is not of the form KEY=VALUE: mend the line");
            line.values.insert_or_assign(word.substr(0, equals), word.substr(equals + 1));
        }
        return CheckValues(line) && Keep(line);
    }

    bool ReadNumbers(const Noun& noun, std::string_view* text, Line* line) {
        std::string word;
        if (noun.numbers < 0)
            return TakeWord(text, &line->word) && line->word.find('=') == std::string::npos
                       ? true
                       : Fail("a setting's name belongs behind \"setting\": mend the line");
        for (int i = 0; i < noun.numbers; ++i) {
            TakeWord(text, &word);
            const auto number = ReadNumber(word);
            if (!number)
                return Fail("a number belongs behind \"" + line->noun + "\", \"" + word +
                            "\" is none: mend the line");
            line->numbers.push_back(*number);
        }
        return true;
    }

    bool CheckValues(const Line& line) {
        for (const Key& key : kKeys) {
            if (key.noun != line.noun) continue;
            const auto found = line.values.find(key.name);
            const std::string name(key.name);
            if (found == line.values.end()) {
                if (!key.needed) continue;
                return Fail(("this " + line.noun + " has no ").append(name) +
                            "=: have the report made anew");
            }
            const std::string problem = ProblemOf(key.value, found->second);
            if (!problem.empty())
                return Fail((name + '=' + found->second)
                                .append(" is not ")
                                .append(problem)
                                .append(": mend the line"));
        }
        return true;
    }

    bool Keep(const Line& line) {
        if (line.noun == "window") return KeepWindow(line);
        if (line.noun == "viewport") return KeepViewport(line);
        if (line.noun == "host") {
            result_.release = static_cast<int>(line.Number("release").value_or(0));
        } else if (line.noun == "screen") {
            result_.screen_at = ReadPoint(line.Text("at")).value_or(Pair{});
            result_.screen_size = ReadSize(line.Text("size")).value_or(Pair{});
        } else {
            result_.lines.push_back(line);
        }
        return true;
    }

    bool IsWindow(long long number) const {
        return std::any_of(result_.windows.begin(), result_.windows.end(),
                           [number](const Window& window) { return window.number == number; });
    }

    bool KeepWindow(const Line& line) {
        const auto int_of = [&line](std::string_view key) {
            return static_cast<int>(line.Number(key).value_or(0));
        };
        const std::string number = std::to_string(line.numbers[0]);
        if (result_.windows.empty() && (line.numbers[0] != 1 || int_of("parent") != 0))
            return Fail(
                "the first window is not the main window, number 1 without a parent: have "
                "the report made anew");
        if (IsWindow(line.numbers[0]))
            return Fail("there are two windows " + number + ": take one line out");
        if (const int parent = int_of("parent"); parent != 0 && !IsWindow(parent))
            return Fail("the parent of window " + number + ", window " + std::to_string(parent) +
                        ", stands on no line before it: mend the order");
        if (line.Text("class").empty())
            return Fail("window " + number + " has an empty class: have the report made anew");
        result_.windows.push_back({static_cast<int>(line.numbers[0]), int_of("parent"),
                                   int_of("owner"), line.Text("class"), line.Text("title"),
                                   int_of("id"),
                                   static_cast<unsigned>(line.Number("style").value_or(0)),
                                   static_cast<unsigned>(line.Number("exstyle").value_or(0)),
                                   ReadPoint(line.Text("at")).value_or(Pair{}),
                                   ReadSize(line.Text("size")).value_or(Pair{}), line.Is("double"),
                                   line.Is("visible"), line.Is("enabled"), line.Text("kind")});
        return true;
    }

    bool KeepViewport(const Line& line) {
        if (!IsWindow(line.numbers[0]))
            return Fail("window " + std::to_string(line.numbers[0]) +
                        " of the viewport stands on no line before it: mend the order");
        result_.viewports.push_back(
            {static_cast<int>(line.numbers[0]), static_cast<int>(line.Number("type").value_or(0)),
             line.Is("perspective"), line.Is("user"), line.Is("active"), ""});
        return true;
    }

    bool HasAll() {
        if (result_.windows.empty())
            return Fail("the report tells of no window: have it made when the host has started");
        if (result_.release < 1 || result_.release > 65535)
            return Fail(
                "the report does not tell a release from 1 to 65535: add a line \"host "
                "release=13900\"");
        for (const Window& window : result_.windows)
            if (window.owner != 0 && !IsWindow(window.owner))
                return Fail("the owner of window " + std::to_string(window.number) + ", window " +
                            std::to_string(window.owner) + ", stands on no line: add one");
        // The main monitor begins at 0,0.
        const Pair at = result_.screen_at;
        const Pair size = result_.screen_size;
        if (at.x > 0 || at.y > 0 || at.x + size.x < 320 || at.y + size.y < 200)
            return Fail(
                "the report does not tell a screen with room from 0,0 to 320,200 at least: "
                "add a line \"screen at=0,0 size=1280x1024\"");
        return true;
    }

    // Each of the four names goes to the first view of its kind that has none; the others are
    // counted on.
    bool NameViewports() {
        enum { kTop = 2, kFront = 4 };
        const auto is_flat = [](const Viewport& view) { return !view.perspective && !view.user; };
        Name("viewport.persp", [](const Viewport& view) { return view.perspective; });
        Name("viewport.user", [](const Viewport& view) { return view.user; });
        const auto name_flat = [&](const char* name, int type) {
            return Name(name, [&](const Viewport& v) { return is_flat(v) && v.type == type; });
        };
        const bool has_top = name_flat("viewport.top", kTop);
        const bool has_front = name_flat("viewport.front", kFront);
        if (!has_top) Name("viewport.top", is_flat);
        if (!has_front) Name("viewport.front", is_flat);
        int number = 5;
        for (Viewport& view : result_.viewports)
            if (view.name.empty()) view.name = "viewport." + std::to_string(number++);
        return true;
    }
    template <typename Fits>
    bool Name(const char* name, Fits fits) {
        for (Viewport& view : result_.viewports)
            if (view.name.empty() && fits(view)) {
                view.name = name;
                return true;
            }
        return false;
    }

    static constexpr const char* kOpenQuote = "a text has no closing quote: mend the line";

    std::string_view text_;
    Report& result_;
    Mistake& mistake_;
    int at_ = 0;
};

}  // namespace

std::optional<long long> Line::Number(std::string_view key) const {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : ReadNumber(found->second);
}

std::string Line::Text(std::string_view key) const {
    const auto found = values.find(key);
    return found == values.end() ? std::string() : found->second;
}

bool Read(std::string_view text, Report* result, Mistake* mistake) {
    return Reader(text, result, mistake).Run();
}

}  // namespace report
