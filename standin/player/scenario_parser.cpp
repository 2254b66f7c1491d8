#include "standin/player/scenario_parser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

namespace scenario {
namespace {

struct Word {
    std::string text;
    bool quoted = false;
    size_t begin = 0;  // where it stands in the line
};

struct Line {
    int number = 0;
    std::string source;
    std::vector<Word> words;
    std::string problem;  // an open quote
};

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

std::string Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return std::string(text);
}

// Cuts the comment off: a `#` outside of quotes at the start of a word.
std::string_view WithoutComment(std::string_view line) {
    bool in_quotes = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (in_quotes && c == '\\') {
            ++i;
        } else if (c == '"') {
            in_quotes = !in_quotes;
        } else if (c == '#' && !in_quotes && (i == 0 || IsBlank(line[i - 1]))) {
            return line.substr(0, i);
        }
    }
    return line;
}

char Unescaped(char c) {
    switch (c) {
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        default: return c;
    }
}

Line SplitLine(std::string_view text, int number) {
    Line line;
    line.number = number;
    line.source = Trimmed(WithoutComment(text));
    const std::string& s = line.source;
    size_t i = 0;
    while (i < s.size()) {
        if (IsBlank(s[i])) {
            ++i;
            continue;
        }
        Word word;
        word.begin = i;
        if (s[i] == '"') {
            word.quoted = true;
            ++i;
            while (i < s.size() && s[i] != '"') {
                if (s[i] == '\\' && i + 1 < s.size())
                    ++i, word.text += Unescaped(s[i]);
                else
                    word.text += s[i];
                ++i;
            }
            if (i == s.size()) {
                line.problem = "the quoted text is not closed, end it with \"";
                return line;
            }
            ++i;
        } else {
            while (i < s.size() && !IsBlank(s[i]))
                word.text += s[i++];
        }
        line.words.push_back(word);
    }
    return line;
}

std::optional<long long> Number(std::string_view text) {
    bool negative = false;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    long long value = 0;
    const char* const start = text.data();
    const char* const end = start + text.size();
    const auto read = std::from_chars(start, end, value, base);
    if (text.empty() || read.ec != std::errc() || read.ptr != end || value < 0) return {};
    return negative ? -value : value;
}

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsNumberOf(long long value, std::initializer_list<long long> numbers) {
    return std::find(numbers.begin(), numbers.end(), value) != numbers.end();
}

constexpr std::string_view kViewports =
    "viewport.top, viewport.front, viewport.user, viewport.persp";

bool IsViewport(std::string_view word) {
    return IsOneOf(word, {"viewport.top", "viewport.front", "viewport.user", "viewport.persp"});
}

// What the player can show; camera takes a viewport.
bool IsShown(std::string_view word) {
    return IsOneOf(word, {"camera",  "objects",  "selection", "modes",   "time",        "range",
                          "actions", "keys",     "plugin",    "all",     "menu",        "dialogs",
                          "undo",    "sets",     "buttons",   "capture", "allocations", "settings",
                          "clock",   "windows",  "points",    "views",   "editors",     "tracks",
                          "state",   "controls", "calls",     "leaks",   "commands"});
}

class Reader {
public:
    Reader(const Vocabulary& vocabulary, Scenario* result)
        : vocabulary_(vocabulary), result_(result) {}

    // Empty when the line is sound, else what is wrong with it.
    std::string Read(const Line& line) {
        line_ = &line;
        next_ = 1;
        command_ = Command();
        command_.line = line.number;
        command_.source = line.source;
        std::string problem = line.words[0].quoted ? Unknown() : ReadVerb(line.words[0].text);
        if (problem.empty() && next_ < line.words.size() && !takes_rest_)
            problem = "\"" + line.words[next_].text + "\" is too much, end the line before it";
        takes_rest_ = false;
        if (problem.empty()) {
            if (IsEvent(command_.verb)) had_event_ = true;
            result_->commands.push_back(command_);
        }
        return problem;
    }

private:
    using ReadOne = std::string (Reader::*)();
    struct VerbRow {
        std::string_view word;
        ReadOne read;
    };

    std::string Unknown() const {
        return "unknown command \"" + line_->words[0].text +
               "\", write one of those in docs/scenarios.md";
    }

    std::string ReadVerb(std::string_view word) {
        static constexpr VerbRow kRows[] = {
            {"ini", &Reader::ReadIni},
            {"start", &Reader::ReadStart},
            {"release", &Reader::ReadRelease},
            {"screen", &Reader::ReadScreen},
            {"configdir", &Reader::ReadConfigDir},
            {"mode", &Reader::ReadMode},
            {"select", &Reader::ReadSelect},
            {"subobject", &Reader::ReadSubobject},
            {"view", &Reader::ReadView},
            {"lock", &Reader::ReadLock},
            {"button", &Reader::ReadButton},
            {"action", &Reader::ReadAction},
            {"brush", &Reader::ReadBrush},
            {"paint", &Reader::ReadPaint},
            {"polytools", &Reader::ReadPolyTools},
            {"open", &Reader::ReadOpen},
            {"close", &Reader::ReadClose},
            {"destroy", &Reader::ReadDestroy},
            {"set", &Reader::ReadSet},
            {"hide", &Reader::ReadHide},
            {"show", &Reader::ReadShow},
            {"tracks", &Reader::ReadTracks},
            {"keys", &Reader::ReadKeys},
            {"selectkeys", &Reader::ReadSelectKeys},
            {"foreground", &Reader::ReadForeground},
            {"clock", &Reader::ReadClock},
            {"key", &Reader::ReadKey},
            {"move", &Reader::ReadMove},
            {"down", &Reader::ReadDown},
            {"up", &Reader::ReadUp},
            {"doubleclick", &Reader::ReadDoubleClick},
            {"busy", &Reader::ReadBusy},
            {"peek", &Reader::ReadPeek},
            {"code", &Reader::ReadCode},
            {"reenter", &Reader::ReadReenter},
            {"swap", &Reader::ReadSwap},
            {"rebuild", &Reader::ReadRebuild},
            {"scripts", &Reader::ReadScripts},
            {"command", &Reader::ReadCommand},
            {"accelerator", &Reader::ReadAccelerator},
            {"click", &Reader::ReadClick},
            {"menu", &Reader::ReadMenu},
            {"closebox", &Reader::ReadCloseBox},
            {"place", &Reader::ReadPlace},
            {"query", &Reader::ReadQuery},
            {"script", &Reader::ReadScript},
            {"play", &Reader::ReadPlay},
            {"fail", &Reader::ReadFail},
            {"expect", &Reader::ReadExpect},
            {"poke", &Reader::ReadPoke},
        };
        for (const VerbRow& row : kRows)
            if (row.word == word) return (this->*row.read)();
        return Unknown();
    }

    // --- words of a line ---

    bool More() const { return next_ < line_->words.size(); }

    std::string Word(std::string* word, std::string_view what) {
        if (!More()) return "missing " + std::string(what) + " after \"" + LastWord() + "\"";
        *word = line_->words[next_++].text;
        return {};
    }

    std::string LastWord() const { return line_->words[next_ - 1].text; }

    std::string NumberWord(std::string_view what) {
        std::string word;
        if (std::string problem = Word(&word, what); !problem.empty()) return problem;
        const std::optional<long long> value = Number(word);
        if (!value)
            return "\"" + word + "\" is no number, write " + std::string(what) +
                   " in decimal or as 0x...";
        if (*value < INT32_MIN || *value > UINT32_MAX)
            return "\"" + word + "\" is too large, numbers have 32 bits";
        command_.numbers.push_back(*value);
        return {};
    }

    std::string OneNumberOf(std::string_view what, std::initializer_list<long long> allowed) {
        if (std::string problem = NumberWord(what); !problem.empty()) return problem;
        if (IsNumberOf(command_.numbers.back(), allowed)) return {};
        std::string list;
        for (long long number : allowed)
            list += (list.empty() ? "" : ", ") + std::to_string(number);
        return "there is no " + std::string(what) + " " + std::to_string(command_.numbers.back()) +
               ", write one of " + list;
    }

    std::string OnOff() { return Choice("on", "off"); }

    // One of two words; the first one sets `on`.
    std::string Choice(std::string_view yes, std::string_view no) {
        const std::string both = std::string(yes) + " or " + std::string(no);
        std::string word;
        if (std::string problem = Word(&word, both); !problem.empty()) return problem;
        if (word != yes && word != no) return "\"" + word + "\" should be " + both;
        command_.on = word == yes;
        return {};
    }

    std::string WindowWord() {
        std::string word;
        if (std::string problem = Word(&word, "a window's name"); !problem.empty()) return problem;
        if (!vocabulary_.is_window(word))
            return "there is no window \"" + word +
                   "\", write main, viewpanel, viewport.persp, trackbar, other or another name";
        command_.words.push_back(word);
        return {};
    }

    std::string ViewportWord() {
        std::string word;
        if (std::string problem = Word(&word, "a viewport"); !problem.empty()) return problem;
        if (!IsViewport(word))
            return "there is no viewport \"" + word + "\", write one of " + std::string(kViewports);
        command_.words.push_back(word);
        return {};
    }

    // Copies get the name of their original with a higher number, so any number will do.
    bool IsObject(const std::string& word) const {
        if (vocabulary_.is_object(word)) return true;
        const size_t digits = word.find_last_not_of("0123456789") + 1;
        return digits > 0 && digits < word.size() &&
               vocabulary_.is_object(word.substr(0, digits) + "001");
    }

    std::string ObjectWord() {
        std::string word;
        if (std::string problem = Word(&word, "an object's name"); !problem.empty()) return problem;
        if (!IsObject(word))
            return "there is no object \"" + word +
                   "\", write Box001, Sphere001, Cone001 or Torus001";
        command_.words.push_back(word);
        return {};
    }

    std::string ObjectWords(bool or_none) {
        if (or_none && line_->words.size() == 2 && line_->words[1].text == "none") {
            ++next_;
            return {};
        }
        do {
            if (std::string problem = ObjectWord(); !problem.empty()) return problem;
        } while (More());
        return {};
    }

    std::string QuotedWord(std::string_view what) {
        if (!More() || !line_->words[next_].quoted)
            return "missing " + std::string(what) + ", write it in double quotes";
        command_.text = line_->words[next_++].text;
        return {};
    }

    std::string BeforeStart() const {
        if (started_)
            return "\"" + line_->words[0].text + "\" comes too late, write it before start";
        return {};
    }

    std::string AfterStart() const {
        if (!started_)
            return "\"" + line_->words[0].text + "\" needs the plug-in, write start before it";
        return {};
    }

    // --- one function a command ---

    std::string ReadIni() {
        command_.verb = Verb::kIni;
        takes_rest_ = true;
        if (std::string problem = BeforeStart(); !problem.empty()) return problem;
        // Everything behind the word and one blank belongs to the value, blanks included.
        const std::string rest =
            line_->words.size() > 1 ? line_->source.substr(line_->words[1].begin) : std::string();
        const size_t equals = rest.find('=');
        if (equals == std::string::npos || equals == 0)
            return "missing KEY=TEXT after \"ini\", an empty value is KEY= alone";
        result_->has_ini = true;
        result_->ini.push_back(rest);
        command_.text = rest;
        return {};
    }

    std::string ReadStart() {
        command_.verb = Verb::kStart;
        if (More()) {
            std::string word;
            Word(&word, "again");
            if (word != "again") return "\"" + word + "\" should be again, or nothing";
            if (!started_) return "\"start again\" needs a start before it";
            command_.verb = Verb::kStartAgain;
            return {};
        }
        if (started_) return "the plug-in is started already, write start again for a second time";
        started_ = true;
        return {};
    }

    std::string ReadRelease() {
        command_.verb = Verb::kRelease;
        if (std::string problem = BeforeStart(); !problem.empty()) return problem;
        if (std::string problem = NumberWord("the host's release"); !problem.empty())
            return problem;
        if (command_.numbers[0] < 1 || command_.numbers[0] > 65535)
            return "a release lies between 1 and 65535";
        result_->release = static_cast<int>(command_.numbers[0]);
        return {};
    }

    std::string ReadScreen() {
        command_.verb = Verb::kScreen;
        if (std::string problem = BeforeStart(); !problem.empty()) return problem;
        std::string word;
        if (std::string problem = Word(&word, "WIDTHxHEIGHT"); !problem.empty()) return problem;
        result_->screen_line = line_->number;
        if (word.find(',') != std::string::npos) {
            if (std::string problem = ReadOrigin(word); !problem.empty()) return problem;
            if (std::string problem = Word(&word, "WIDTHxHEIGHT"); !problem.empty()) return problem;
        }
        const size_t x = word.find('x');
        const std::optional<long long> width = Number(word.substr(0, x));
        const std::optional<long long> height =
            x == std::string::npos ? std::nullopt : Number(word.substr(x + 1));
        if (!width || !height || *width < 320 || *height < 200 || *width > 16384 || *height > 16384)
            return "\"" + word + "\" is no screen size, write WIDTHxHEIGHT as in 1280x1024";
        // The main monitor is what lies to the right of 0,0 and below it.
        result_->screen_width = static_cast<int>(*width) + result_->screen_left;
        result_->screen_height = static_cast<int>(*height) + result_->screen_top;
        if (result_->screen_width < 320 || result_->screen_height < 200)
            return "\"" + word + "\" leaves too little for the main monitor, which begins at 0,0";
        return {};
    }

    std::string ReadOrigin(const std::string& word) {
        const size_t comma = word.find(',');
        const std::optional<long long> left = Number(word.substr(0, comma));
        const std::optional<long long> top = Number(word.substr(comma + 1));
        if (!left || !top || *left > 0 || *top > 0 || *left < -16384 || *top < -16384)
            return "\"" + word +
                   "\" is no beginning of a screen, write X,Y as in -1280,0; neither is above 0";
        result_->screen_left = static_cast<int>(*left);
        result_->screen_top = static_cast<int>(*top);
        return {};
    }

    std::string ReadConfigDir() {
        command_.verb = Verb::kConfigDir;
        if (std::string problem = BeforeStart(); !problem.empty()) return problem;
        if (std::string problem = Choice("slash", "plain"); !problem.empty()) return problem;
        result_->config_dir_slash = command_.on;
        return {};
    }

    std::string ReadMode() {
        if (More() && line_->words[next_].text == "none") {
            ++next_;
            command_.verb = Verb::kModeNone;
            return {};
        }
        if (More() && line_->words[next_].text == "pop") {
            ++next_;
            command_.verb = Verb::kModePop;
            return {};
        }
        command_.verb = Verb::kModeReplace;
        if (More() && line_->words[next_].text == "push") {
            ++next_;
            command_.verb = Verb::kModePush;
        }
        if (std::string problem = NumberWord("a mode's number"); !problem.empty()) return problem;
        if (!More()) return {};
        std::string word;
        Word(&word, "class");
        if (word != "class") return "\"" + word + "\" should be class and its number";
        return NumberWord("a class number");
    }

    std::string ReadSelect() {
        command_.verb = Verb::kSelect;
        return ObjectWords(true);
    }

    std::string ReadSubobject() {
        command_.verb = Verb::kSubobject;
        return OnOff();
    }

    std::string ReadView() {
        command_.verb = Verb::kView;
        if (std::string problem = ViewportWord(); !problem.empty()) return problem;
        std::string word;
        if (std::string problem = Word(&word, "persp, ortho or user"); !problem.empty())
            return problem;
        if (!IsOneOf(word, {"persp", "ortho", "user"}))
            return "\"" + word + "\" should be persp, ortho or user";
        command_.words.push_back(word);
        return {};
    }

    std::string ReadLock() {
        command_.verb = Verb::kLock;
        if (std::string problem = ViewportWord(); !problem.empty()) return problem;
        return OnOff();
    }

    std::string ReadButton() {
        command_.verb = Verb::kButton;
        if (std::string problem = OneNumberOf("button", {59231, 40074, 50021, 50016, 50027});
            !problem.empty())
            return problem;
        std::string word;
        constexpr std::string_view kStates = "on, off, enabled, disabled, absent or present";
        if (std::string problem = Word(&word, kStates); !problem.empty()) return problem;
        if (!IsOneOf(word, {"on", "off", "enabled", "disabled", "absent", "present"}))
            return "\"" + word + "\" should be " + std::string(kStates);
        command_.words.push_back(word);
        return {};
    }

    std::string ReadAction() {
        command_.verb = Verb::kAction;
        if (std::string problem = NumberWord("an action table"); !problem.empty()) return problem;
        if (std::string problem = NumberWord("an action"); !problem.empty()) return problem;
        if (!vocabulary_.is_action(static_cast<unsigned long>(command_.numbers[0]),
                                   static_cast<int>(command_.numbers[1])))
            return "there is no action " + std::to_string(command_.numbers[0]) + " " +
                   std::to_string(command_.numbers[1]) + ", show actions lists them";
        std::string word;
        if (std::string problem = Word(&word, "on, off or stuck"); !problem.empty()) return problem;
        if (!IsOneOf(word, {"on", "off", "stuck"}))
            return "\"" + word + "\" should be on, off or stuck";
        command_.words.push_back(word);
        return {};
    }

    std::string ReadBrush() {
        command_.verb = Verb::kBrush;
        if (std::string problem = OneNumberOf("brush", {4184, 4185, 4186}); !problem.empty())
            return problem;
        return OnOff();
    }

    std::string ReadPaint() {
        command_.verb = Verb::kPaint;
        if (std::string problem = OneNumberOf("paint button", {1007, 1008, 1009, 1077});
            !problem.empty())
            return problem;
        return OnOff();
    }

    std::string ReadPolyTools() {
        command_.verb = Verb::kPolyTools;
        std::string word;
        constexpr std::string_view kWhat = "sculpt, pd, shift, absent or present";
        if (std::string problem = Word(&word, kWhat); !problem.empty()) return problem;
        command_.words.push_back(word);
        if (word == "shift") return OnOff();
        if (word == "sculpt" || word == "pd") return NumberWord("a tool's number");
        command_.verb = Verb::kPolyToolsThere;
        command_.on = word == "present";
        if (command_.on || word == "absent") return {};
        return "\"" + word + "\" should be " + std::string(kWhat);
    }

    std::string OpenableWord() {
        if (std::string problem = WindowWord(); !problem.empty()) return problem;
        if (IsOneOf(command_.words[0], {"trackview", "unwrap", "schematic", "vertexpaint"}))
            return {};
        return "\"" + command_.words[0] +
               "\" is always there, write trackview, unwrap, schematic or vertexpaint";
    }

    std::string ReadOpen() {
        command_.verb = Verb::kOpen;
        return OpenableWord();
    }

    std::string ReadClose() {
        command_.verb = Verb::kClose;
        return OpenableWord();
    }

    std::string ReadDestroy() {
        command_.verb = Verb::kDestroy;
        return WindowWord();
    }

    std::string ReadSet() {
        command_.verb = Verb::kNamedSet;
        if (std::string problem = QuotedWord("the set's name"); !problem.empty()) return problem;
        if (!More()) return {};
        return ObjectWords(false);
    }

    std::string ReadHide() {
        command_.verb = Verb::kHide;
        return ObjectWord();
    }

    std::string ReadShow() {
        std::string word;
        if (std::string problem = Word(&word, "what to show"); !problem.empty()) return problem;
        if (IsObject(word)) {
            command_.verb = Verb::kUnhide;
            command_.words.push_back(word);
            return {};
        }
        command_.verb = Verb::kShow;
        if (!IsShown(word))
            return "\"" + word +
                   "\" can not be shown, write an object or one of camera VIEWPORT, "
                   "objects, selection, modes, time, range, actions, keys, plugin, all";
        command_.words.push_back(word);
        if (word == "plugin") return AfterStart();
        if (word == "camera") return ViewportWord();
        return {};
    }

    // A track view also shows tracks that are no object's.
    std::string TrackWord() {
        std::string word;
        if (std::string problem = Word(&word, "a track's name"); !problem.empty()) return problem;
        command_.words.push_back(word);
        return {};
    }

    std::string ReadTracks() {
        command_.verb = Verb::kTracks;
        if (line_->words.size() == 2 && line_->words[1].text == "none") {
            ++next_;
            return {};
        }
        do {
            if (std::string problem = TrackWord(); !problem.empty()) return problem;
        } while (More());
        return {};
    }

    std::string Frames() {
        if (std::string problem = TrackWord(); !problem.empty()) return problem;
        while (More())
            if (std::string problem = NumberWord("a frame"); !problem.empty()) return problem;
        return {};
    }

    std::string ReadKeys() {
        command_.verb = Verb::kKeys;
        return Frames();
    }

    std::string ReadSelectKeys() {
        command_.verb = Verb::kSelectKeys;
        return Frames();
    }

    std::string ReadForeground() {
        command_.verb = Verb::kForeground;
        return QuotedWord("a window's title");
    }

    std::string ReadClock() {
        command_.verb = Verb::kClock;
        if (!More() || line_->words[next_].text[0] != '+')
            return "missing +MILLISECONDS after \"clock\"";
        return NumberWord("milliseconds");
    }

    std::string ReadKey() {
        command_.verb = Verb::kKey;
        if (std::string problem = Choice("down", "up"); !problem.empty()) return problem;
        std::string word;
        if (std::string problem = Word(&word, "a key's name"); !problem.empty()) return problem;
        const int key = KeyByName(word);
        if (key == 0)
            return "there is no key \"" + word +
                   "\", write alt, ctrl, shift, one of these with l or r before it, a letter, a "
                   "digit, f1 to f24, left, right, up, down, tab, enter, escape or space";
        command_.words.push_back(word);
        command_.numbers.push_back(key);
        return {};
    }

    std::string ReadMove() {
        if (!More()) return "missing a window, screen or by after \"move\"";
        const std::string& word = line_->words[next_].text;
        if (word == "screen" || word == "by") {
            ++next_;
            command_.verb = word == "by" ? Verb::kMoveBy : Verb::kMoveScreen;
        } else {
            command_.verb = Verb::kMoveWindow;
            if (std::string problem = WindowWord(); !problem.empty()) return problem;
        }
        if (std::string problem = NumberWord("x"); !problem.empty()) return problem;
        return NumberWord("y");
    }

    std::string MouseButton() {
        std::string word;
        if (std::string problem = Word(&word, "left, right or middle"); !problem.empty())
            return problem;
        if (!IsOneOf(word, {"left", "right", "middle"}))
            return "there is no mouse button \"" + word + "\", write left, right or middle";
        command_.words.push_back(word);
        return {};
    }

    std::string ReadDown() {
        command_.verb = Verb::kMouseDown;
        return MouseButton();
    }

    std::string ReadUp() {
        command_.verb = Verb::kMouseUp;
        return MouseButton();
    }

    std::string ReadDoubleClick() {
        command_.verb = Verb::kDoubleClick;
        return MouseButton();
    }

    std::string ReadBusy() {
        const std::string problem = OnOff();
        command_.verb = command_.on ? Verb::kBusy : Verb::kNoLongerBusy;
        return problem;
    }

    std::string ReadPeek() {
        command_.verb = Verb::kPeek;
        return OnOff();
    }

    std::string ReadCode() {
        command_.verb = Verb::kCode;
        return NumberWord("a hook code");
    }

    std::string ReadReenter() {
        command_.verb = Verb::kReenter;
        if (std::string problem = WindowWord(); !problem.empty()) return problem;
        return OnOff();
    }

    std::string ReadSwap() {
        command_.verb = Verb::kSwap;
        return OnOff();
    }

    std::string ReadRebuild() {
        command_.verb = Verb::kRebuildToolbar;
        std::string word;
        if (std::string problem = Word(&word, "toolbar"); !problem.empty()) return problem;
        return word == "toolbar" ? "" : "\"" + word + "\" can not be rebuilt, write toolbar";
    }

    std::string ReadScripts() {
        command_.verb = Verb::kScriptsTake;
        std::string word;
        if (std::string problem = Word(&word, "take"); !problem.empty()) return problem;
        if (word != "take") return "\"" + word + "\" should be take and milliseconds";
        if (std::string problem = NumberWord("milliseconds"); !problem.empty()) return problem;
        return command_.numbers[0] >= 0 ? "" : "a script takes no less than 0 milliseconds";
    }

    std::string ReadCommand() {
        command_.verb = Verb::kCommand;
        if (std::string problem = AfterStart(); !problem.empty()) return problem;
        return NumberWord("an action's number");
    }

    std::string ReadAccelerator() {
        command_.verb = Verb::kAccelerator;
        if (std::string problem = NumberWord("a command's number"); !problem.empty())
            return problem;
        if (command_.numbers[0] < 0 || command_.numbers[0] > 65535)
            return "a command's number lies between 0 and 65535";
        return {};
    }

    std::string ReadClick() {
        command_.verb = Verb::kClick;
        return WindowWord();
    }

    std::string ReadMenu() {
        command_.verb = Verb::kMenu;
        if (std::string problem = AfterStart(); !problem.empty()) return problem;
        return NumberWord("a menu entry's number");
    }

    std::string ReadCloseBox() {
        command_.verb = Verb::kCloseBox;
        return WindowWord();
    }

    std::string ReadPlace() {
        command_.verb = Verb::kPlace;
        if (std::string problem = WindowWord(); !problem.empty()) return problem;
        if (std::string problem = NumberWord("x"); !problem.empty()) return problem;
        return NumberWord("y");
    }

    std::string ReadQuery() {
        command_.verb = Verb::kQuery;
        if (std::string problem = AfterStart(); !problem.empty()) return problem;
        std::string word;
        constexpr std::string_view kQueries = "checked, visible, enabled or icon";
        if (std::string problem = Word(&word, kQueries); !problem.empty()) return problem;
        if (!IsOneOf(word, {"checked", "visible", "enabled", "icon"}))
            return "\"" + word + "\" should be " + std::string(kQueries);
        command_.words.push_back(word);
        return NumberWord("an action's number");
    }

    std::string ReadScript() {
        command_.verb = Verb::kScript;
        return QuotedWord("the script's text");
    }

    std::string ReadPlay() {
        command_.verb = Verb::kPlay;
        return OnOff();
    }

    std::string ReadFail() {
        command_.verb = Verb::kFail;
        std::string word;
        if (std::string problem = Word(&word, "the name of a call"); !problem.empty())
            return problem;
        if (!vocabulary_.is_fault(word))
            return "the call \"" + word +
                   "\" can not be made to fail, write a Win32 or host call that the plug-in uses";
        command_.words.push_back(word);
        command_.on = true;
        if (!More()) return {};
        return Choice("on", "off");
    }

    std::string ReadExpect() {
        command_.verb = Verb::kExpect;
        takes_rest_ = true;
        if (line_->words.size() < 2) return "missing the line after \"expect\", or nothing";
        if (!had_event_)
            return "nothing has happened yet, write expect after an event such as start or move";
        command_.text = line_->source.substr(line_->words[1].begin);
        if (command_.text == "nothing") command_.verb = Verb::kExpectNothing;
        return {};
    }

    std::string ReadPoke() {
        command_.verb = Verb::kPoke;
        if (std::string problem = AfterStart(); !problem.empty()) return problem;
        std::string word;
        if (std::string problem = Word(&word, "a global's name"); !problem.empty()) return problem;
        if (!vocabulary_.is_global(word))
            return "the plug-in has no global \"" + word + "\", show plugin lists them";
        command_.words.push_back(word);
        return NumberWord("a value");
    }

    const Vocabulary& vocabulary_;
    Scenario* result_;
    const Line* line_ = nullptr;
    size_t next_ = 1;
    Command command_;
    bool takes_rest_ = false;
    bool started_ = false;
    bool had_event_ = false;
};

}  // namespace

bool Parse(std::string_view text, const Vocabulary& vocabulary, Scenario* result,
           Mistake* mistake) {
    *result = Scenario();
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    Reader reader(vocabulary, result);
    int number = 0;
    while (!text.empty()) {
        ++number;
        const size_t end = text.find('\n');
        const std::string_view raw = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const Line line = SplitLine(raw, number);
        if (line.words.empty() && line.problem.empty()) {
            const std::string comment = Trimmed(raw);
            if (result->caption.empty() && result->commands.empty() && comment.size() > 1)
                result->caption = Trimmed(std::string_view(comment).substr(1));
            continue;
        }
        // A line to expect may stop inside a quoted text, with a star.
        const bool quotes_matter = line.words.empty() || line.words[0].text != "expect";
        const std::string problem =
            line.problem.empty() || !quotes_matter ? reader.Read(line) : line.problem;
        if (!problem.empty()) {
            *mistake = {number, problem};
            return false;
        }
    }
    return true;
}

bool IsEvent(Verb verb) {
    switch (verb) {
        case Verb::kStart:
        case Verb::kStartAgain:
        case Verb::kModeReplace:
        case Verb::kModeNone:
        case Verb::kModePush:
        case Verb::kModePop:
        case Verb::kKey:
        case Verb::kMoveWindow:
        case Verb::kMoveScreen:
        case Verb::kMoveBy:
        case Verb::kMouseDown:
        case Verb::kMouseUp:
        case Verb::kDoubleClick:
        case Verb::kNoLongerBusy:
        case Verb::kCommand:
        case Verb::kAccelerator:
        case Verb::kClick:
        case Verb::kMenu:
        case Verb::kCloseBox:
        case Verb::kQuery:
        case Verb::kScript:
        case Verb::kPlay: return true;
        default: return false;
    }
}

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

// The blanks inside of quotes do not part words.
static std::vector<std::string_view> WordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    size_t begin = 0;
    bool in_quotes = false;
    for (size_t i = 0; i <= line.size(); ++i) {
        if (i < line.size() && in_quotes && line[i] == '\\' && i + 1 < line.size()) {
            ++i;
            continue;
        }
        if (i < line.size() && line[i] == '"') in_quotes = !in_quotes;
        if (i < line.size() && (in_quotes || !IsBlank(line[i]))) continue;
        if (i > begin) words.push_back(line.substr(begin, i - begin));
        begin = i + 1;
    }
    return words;
}

// The NAME of a word NAME=VALUE, else empty.
static std::string_view NameIn(std::string_view word) {
    const size_t equals = word.find('=');
    const bool is_name = equals != std::string_view::npos &&
                         std::all_of(word.begin(), word.begin() + static_cast<long>(equals),
                                     [](char c) { return c >= 'a' && c <= 'z'; });
    return is_name ? word.substr(0, equals) : std::string_view();
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
            more = ' ' + std::string(word) + more;
    }
    return Matches(expected, std::string(got) + more);
}

bool IsAnyLines(std::string_view expected) {
    return expected == "\xE2\x80\xA6" || expected == "...";
}

int KeyByName(std::string_view name) {
    struct Row {
        std::string_view name;
        int key;
    };
    static constexpr Row kRows[] = {
        {"alt", 18},    {"ctrl", 17},   {"shift", 16}, {"lshift", 160}, {"rshift", 161},
        {"lctrl", 162}, {"rctrl", 163}, {"lalt", 164}, {"ralt", 165},   {"left", 37},
        {"up", 38},     {"right", 39},  {"down", 40},  {"tab", 9},      {"enter", 13},
        {"escape", 27}, {"space", 32},
    };
    for (const Row& row : kRows)
        if (row.name == name) return row.key;
    if (name.size() == 1) {
        const char c = name[0];
        if (c >= 'a' && c <= 'z') return c - 'a' + 'A';
        if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return c;
        return 0;
    }
    if (name[0] == 'f') {
        const std::optional<long long> number = Number(name.substr(1));
        if (number && *number >= 1 && *number <= 24 && name[1] != '0' && name[1] != '+')
            return 111 + static_cast<int>(*number);
    }
    return 0;
}

}  // namespace scenario
