#include "standin/scenario/parser.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "standin/scenario/expectation.h"
#include "standin/scenario/lines.h"

namespace scenario {
namespace {

std::optional<long long> Number(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    if (hex) text.remove_prefix(2);
    long long value = 0;
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const auto read = std::from_chars(begin, end, value, hex ? 16 : 10);
    if (text.empty() || read.ec != std::errc() || read.ptr != end || value < 0) return {};
    return negative ? -value : value;
}

// How many letters have to be put in, taken out or changed to make one word of the other.
size_t Distance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = row[0]++;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t changed = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

// The name that was meant, empty where none is near.
std::string Nearest(std::string_view word, const std::vector<std::string>& names) {
    std::string nearest;
    size_t least = std::min<size_t>(word.size(), 12) / 3 + 1;
    for (const std::string& name : names)
        if (const size_t distance = Distance(word.substr(0, 64), name); distance < least) {
            least = distance;
            nearest = name;
        }
    return nearest;
}

const Argument* ArgumentOf(std::string_view name) {
    const auto found = std::find_if(Arguments().begin(), Arguments().end(),
                                    [name](const Argument& row) { return row.name == name; });
    if (found != Arguments().end()) return &*found;
    return name[0] >= 'A' && name[0] <= 'Z' ? &kAnyNumber : nullptr;
}

std::vector<std::string> Values(const Argument& argument) {
    if (argument.check == Check::kOneOf) return Split(argument.help, ' ');
    std::vector<std::string> values;
    if (argument.check == Check::kSubject)
        for (const Subject& subject : Subjects())
            values.emplace_back(subject.word);
    return values;
}

std::string_view VerbOf(const Row& row) {
    return row.form.substr(0, row.form.find(' '));
}

// Holds one line against the rows of the table.
class Matcher {
public:
    Matcher(const Vocabulary& vocabulary, const Line& line)
        : vocabulary_(vocabulary), line_(line) {}

    // The row that the line is written by, null where there is none.
    const Row* Match() {
        if (line_.words[0].quoted) return nullptr;
        for (const Section& section : Sections())
            for (const Row& row : section.rows)
                if (VerbOf(row) == line_.words[0].text && MatchesRow(row)) return &row;
        return nullptr;
    }

    const Command& Read() const { return command_; }

    // What is wrong at the word that no row could go beyond.
    std::string Problem() const {
        if (wanted_.empty()) return UnknownCommand();
        std::vector<std::string> list;
        std::vector<std::string> names;
        for (const std::string& part : wanted_)
            for (const std::string& what : Meanings(part, &names))
                if (std::find(list.begin(), list.end(), what) == list.end()) list.push_back(what);
        std::string text;
        for (size_t i = 0; i < list.size(); ++i)
            text += (i == 0 ? "" : i + 1 == list.size() ? " or " : ", ") + list[i];
        if (farthest_ == line_.words.size())
            return "missing " + text + " after " + Shown(line_.words.back());
        const Word& word = line_.words[farthest_];
        const std::string nearest = Nearest(word.text, names);
        return Shown(word) + " should be " + text +
               (nearest.empty() ? "" : ", most likely " + nearest);
    }

private:
    bool MatchesRow(const Row& row) {
        command_ = Command();
        command_.verb = row.verb;
        takes_rest_ = false;
        size_t next = 0;
        for (std::string part : Split(row.form, ' ')) {
            if (part.starts_with('[')) {
                part.erase(0, 1);
                // Of two words that are left out the first is meant.
                command_.on = command_.on || part.find('|') != std::string::npos;
                if (next == line_.words.size()) return true;
            }
            if (part.ends_with(']')) part.pop_back();
            constexpr std::string_view kMany = "…";
            const bool many = part.ends_with(kMany);
            if (many) part.resize(part.size() - kMany.size());
            do {
                if (next == line_.words.size() || !Take(part, line_.words[next]))
                    return Stop(next, part);
                next = takes_rest_ ? line_.words.size() : next + 1;
            } while (many && next < line_.words.size());
        }
        return next == line_.words.size() || Stop(next, "");
    }

    bool Take(const std::string& part, const Word& word) {
        if (const Argument* const argument = ArgumentOf(part)) return TakeArgument(*argument, word);
        if (part.starts_with('"')) {
            command_.text = word.text;
            return word.quoted;
        }
        const std::vector<std::string> choice = Split(part, '|');
        if (choice.size() == 2) command_.on = word.text == choice[0];
        if (choice.size() > 2) command_.words.push_back(word.text);
        return !word.quoted && std::find(choice.begin(), choice.end(), word.text) != choice.end();
    }

    bool TakeArgument(const Argument& argument, const Word& word) {
        const std::string& text = word.text;
        switch (argument.check) {
            case Check::kOneOf:
            case Check::kSubject: return TakeValue(Values(argument), text);
            case Check::kName: return TakeName(text, true);
            case Check::kWindow: return TakeName(text, vocabulary_.is_window(text));
            case Check::kFault: return TakeName(text, vocabulary_.is_fault(text));
            case Check::kGlobal: return TakeName(text, vocabulary_.is_global(text));
            case Check::kObject: return TakeName(text, IsObject(text));
            case Check::kKey:
                command_.numbers.push_back(KeyByName(text));
                return TakeName(text, command_.numbers.back() != 0);
            case Check::kSize: return TakePair(argument, text, 'x');
            case Check::kOrigin: return TakePair(argument, text, ',');
            case Check::kNumber: return TakeNumber(argument, text);
            case Check::kSpan: return text.starts_with('+') && TakeNumber(argument, text);
            case Check::kAction:
                return TakeNumber(argument, text) &&
                       vocabulary_.is_action(static_cast<unsigned long>(command_.numbers[0]),
                                             static_cast<int>(command_.numbers[1]));
            case Check::kSetting:
            case Check::kLine: break;
        }
        takes_rest_ = true;
        command_.text = line_.source.substr(word.begin);
        const size_t equals = command_.text.find('=');
        return argument.check == Check::kLine || (equals > 0 && equals != std::string::npos);
    }

    bool TakeName(const std::string& text, bool known) {
        command_.words.push_back(text);
        return known;
    }

    bool TakeNumber(const Argument& argument, std::string_view text) {
        const std::optional<long long> number = Number(text);
        command_.numbers.push_back(number.value_or(0));
        return number && *number >= argument.lowest && *number <= argument.highest;
    }

    bool TakePair(const Argument& argument, std::string_view text, char mark) {
        const size_t at = text.find(mark);
        return at != std::string_view::npos && TakeNumber(argument, text.substr(0, at)) &&
               TakeNumber(argument, text.substr(at + 1));
    }

    bool TakeValue(const std::vector<std::string>& values, const std::string& text) {
        for (const std::string& value : values) {
            const std::optional<long long> number = Number(value);
            if (number ? number != Number(text) : value != text) continue;
            if (number) command_.numbers.push_back(*number);
            if (!number) command_.words.push_back(value);
            return true;
        }
        return false;
    }

    // Copies get the name of their original with a higher number, so any number will do.
    bool IsObject(const std::string& text) const {
        const size_t digits = text.find_last_not_of("0123456789") + 1;
        return vocabulary_.is_object(text) ||
               (digits > 0 && digits < text.size() &&
                vocabulary_.is_object(text.substr(0, digits) + "001"));
    }

    // Notes what the row wants at a word, unless another row went further; false.
    bool Stop(size_t at, const std::string& part) {
        if (at > farthest_) wanted_.clear();
        farthest_ = std::max(at, farthest_);
        if (at == farthest_) wanted_.push_back(part);
        return false;
    }

    std::string UnknownCommand() const {
        std::vector<std::string> verbs;
        for (const Section& section : Sections())
            for (const Row& row : section.rows)
                verbs.emplace_back(VerbOf(row));
        const std::string nearest = Nearest(line_.words[0].text, verbs);
        return "unknown command " + Shown(line_.words[0]) + ", write " +
               (nearest.empty() ? "one" : nearest + " or another") +
               " of those in docs/scenarios.md";
    }

    // What may stand for a part of a form; names that may be meant are added to *names.
    std::vector<std::string> Meanings(const std::string& part,
                                      std::vector<std::string>* names) const {
        if (part.empty()) return {"the end of the line"};
        if (part.starts_with('"')) return {"a text in double quotes"};
        const Argument* const argument = ArgumentOf(part);
        std::vector<std::string> values = argument ? Values(*argument) : Split(part, '|');
        if (!values.empty()) {
            // Of numbers none is nearer than another.
            if (!Number(values[0])) names->insert(names->end(), values.begin(), values.end());
            return values;
        }
        if (vocabulary_.names) {
            const std::vector<std::string> known = vocabulary_.names(argument->check);
            names->insert(names->end(), known.begin(), known.end());
        }
        if (!argument->help.empty()) return {std::string(argument->help)};
        return {"a number " + part +
                (argument->lowest == kAnyNumber.lowest
                     ? " (32 bits, decimal or 0x...)"
                     : " from " + std::to_string(argument->lowest) + " to " +
                           std::to_string(argument->highest))};
    }

    const Vocabulary& vocabulary_;
    const Line& line_;
    Command command_;
    bool takes_rest_ = false;
    size_t farthest_ = 0;              // the word that no row could take
    std::vector<std::string> wanted_;  // there, the parts of forms
};

// --- lines in their order ---

// By the place where a command should stand.
constexpr const char* kMisplaced[] = {
    "",
    " comes too late, write it before start",
    " stands there already, write start again for a second one",
    " needs the plug-in, write start before it",
    " comes too early, nothing has happened yet: write it after an event such as start or move",
};

class Reader {
public:
    Reader(const Vocabulary& vocabulary, Scenario* result)
        : vocabulary_(vocabulary), result_(result) {}

    // Empty when the line is sound, else what is wrong with it.
    std::string Read(const Line& line, int number) {
        Matcher matcher(vocabulary_, line);
        const Row* const row = matcher.Match();
        // A line to expect may stop inside a quoted text, with a star.
        if (line.open_quote && !(row && row->verb == Verb::kExpect && line.source.ends_with('*')))
            return "the quoted text is not closed, end it with \"";
        if (!row) return matcher.Problem();
        if (!line.source.starts_with(kWhole)) EndWhole();
        if (IsMisplaced(row->place))
            return Shown(line.words[0]) + kMisplaced[static_cast<size_t>(row->place)];
        started_ = started_ || row->verb == Verb::kStart;
        had_event_ = had_event_ || row->kind == Kind::kEvent;
        Command command = matcher.Read();
        command.line = number;
        command.source = line.source;
        result_->commands.push_back(command);
        return SetUp(command);
    }

    // Behind the last of the lines that tell the whole of an event: there is nothing more.
    void EndWhole() {
        if (result_->commands.empty()) return;
        Command last = result_->commands.back();
        if (last.verb != Verb::kExpect || !last.source.starts_with(kWhole)) return;
        last.verb = Verb::kExpectNothing;
        last.text.clear();
        result_->commands.push_back(last);
    }

private:
    static constexpr std::string_view kWhole = ">";

    bool IsMisplaced(Place place) const {
        return place == Place::kAfterEvent   ? !had_event_
               : place == Place::kAfterStart ? !started_
                                             : place != Place::kAnywhere && started_;
    }

    // What is carried out before the first command.
    std::string SetUp(const Command& command) {
        const auto number = [&command](size_t i) { return static_cast<int>(command.numbers[i]); };
        if (command.verb == Verb::kIni) result_->ini.push_back(command.text);
        if (command.verb == Verb::kRelease) result_->release = number(0);
        if (command.verb == Verb::kConfigDir) result_->config_dir_slash = command.on;
        if (command.verb != Verb::kScreen) return {};
        const size_t size = command.numbers.size() - 2;
        result_->screen_left = size ? number(0) : 0;
        result_->screen_top = size ? number(1) : 0;
        // The main monitor is what lies to the right of 0,0 and below it.
        result_->screen_width = number(size) + result_->screen_left;
        result_->screen_height = number(size + 1) + result_->screen_top;
        result_->screen_line = command.line;
        if (result_->screen_width >= 320 && result_->screen_height >= 200) return {};
        return "the main monitor, which begins at 0,0, gets less than 320x200, write a larger size";
    }

    const Vocabulary& vocabulary_;
    Scenario* result_;
    bool started_ = false;
    bool had_event_ = false;
};

}  // namespace

bool Parse(std::string_view text, const Vocabulary& vocabulary, Scenario* result,
           Mistake* mistake) {
    *result = Scenario();
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        *mistake = {1, "the file is UTF-16, save it as UTF-8"};
        return false;
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    Reader reader(vocabulary, result);
    int number = 0;
    for (const std::string& raw : Split(text, '\n')) {
        ++number;
        const Line line = SplitLine(raw);
        std::string problem = EncodingProblem(raw);
        if (problem.empty() && !line.words.empty()) problem = reader.Read(line, number);
        if (!problem.empty()) {
            *mistake = {number, problem};
            return false;
        }
        if (result->caption.empty() && result->commands.empty())
            if (const std::string_view comment = Trimmed(raw); comment.size() > 1)
                result->caption = Trimmed(comment.substr(1));
    }
    reader.EndWhole();
    return true;
}

std::string MissingIn(const Scenario& scenario) {
    const auto any = [&scenario](auto is) {
        return std::any_of(scenario.commands.begin(), scenario.commands.end(), is);
    };
    std::string missing;
    if (!any([](const Command& command) { return command.verb == Verb::kStart; }))
        missing = "there is no start, so the plug-in is not loaded";
    if (!any([](const Command& command) {
            return command.verb == Verb::kExpectNothing || command.verb == Verb::kExpectAnswer ||
                   (command.verb == Verb::kExpect && !IsAnyLines(command.text));
        }))
        missing += std::string(missing.empty() ? "" : "; ") +
                   "there is no expect, so nothing that happens can be wrong";
    return missing;
}

}  // namespace scenario
