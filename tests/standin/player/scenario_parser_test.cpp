#include "standin/scenario/expectation.h"
#include "standin/scenario/parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <sstream>

namespace {

using namespace std::string_view_literals;
using scenario::Scenario;
using scenario::Verb;
using enum Verb;

scenario::Vocabulary Words() {
    scenario::Vocabulary words;
    words.is_window = [](std::string_view name) {
        return name == "main" || name == "viewport.persp" || name == "trackview" ||
               name == "options.1007";
    };
    words.is_object = [](std::string_view name) { return name == "Box001"; };
    words.is_action = [](unsigned long table, int id) {
        return (table == 0 && id == 40105) || (table == 2077580866UL && id == 40020);
    };
    words.is_fault = [](std::string_view name) { return name == "SendInput"; };
    words.is_global = [](std::string_view name) { return name == "g_navKind"; };
    words.names = [](scenario::Check check) {
        return check == scenario::Check::kWindow
                   ? std::vector<std::string>{"main", "viewport.persp", "trackview"}
                   : std::vector<std::string>{};
    };
    return words;
}

Scenario Sound(std::string_view text) {
    Scenario result;
    scenario::Mistake mistake;
    EXPECT_TRUE(scenario::Parse(text, Words(), &result, &mistake))
        << mistake.line << ": " << mistake.message;
    return result;
}

scenario::Mistake Wrong(std::string_view text) {
    Scenario result;
    scenario::Mistake mistake;
    EXPECT_FALSE(scenario::Parse(text, Words(), &result, &mistake)) << text;
    return mistake;
}

TEST(ScenarioParser, ReadsAGesture) {
    const Scenario read = Sound(
        "# Zoom by Alt and the right button\n"
        "start\n"
        "key down alt\n"
        "move viewport.persp 200 -150   # over the box\n"
        "down right\n"
        "move by 0 0x28\n"
        "up right\n"
        "\n"
        "expect out swallow\n");
    ASSERT_EQ(read.commands.size(), 7u);
    EXPECT_EQ(read.caption, "Zoom by Alt and the right button");
    EXPECT_EQ(read.commands[0].verb, Verb::kStart);
    EXPECT_EQ(read.commands[1].numbers, std::vector<long long>{18});
    EXPECT_TRUE(read.commands[1].on);
    EXPECT_EQ(read.commands[2].verb, Verb::kMoveWindow);
    EXPECT_EQ(read.commands[2].line, 4);
    EXPECT_EQ(read.commands[2].numbers, (std::vector<long long>{200, -150}));
    EXPECT_EQ(read.commands[4].numbers, (std::vector<long long>{0, 40}));
    EXPECT_EQ(read.commands[6].verb, Verb::kExpect);
    EXPECT_EQ(read.commands[6].text, "out swallow");
}

TEST(ScenarioParser, EndsTheWholeOfAnEvent) {
    const Scenario read = Sound(
        "start\n"
        "> out pass\n"
        "\n"
        "> win \"unclosed *\n"
        "key down alt\n"
        "expect out pass\n"
        "key up alt\n"
        "> out pass");
    std::vector<std::pair<Verb, int>> verbs;
    for (const scenario::Command& command : read.commands)
        verbs.emplace_back(command.verb, command.line);
    EXPECT_EQ(verbs, (std::vector<std::pair<Verb, int>>{{kStart, 1},
                                                        {kExpect, 2},
                                                        {kExpect, 4},
                                                        {kExpectNothing, 4},
                                                        {kKey, 5},
                                                        {kExpect, 6},
                                                        {kKey, 7},
                                                        {kExpect, 8},
                                                        {kExpectNothing, 8}}));
    EXPECT_EQ(read.commands[2].text, "win \"unclosed *");
    EXPECT_EQ(Wrong("clock +1\n> out pass").line, 2);
    EXPECT_EQ(Wrong("start\n>\n").line, 2);
}

TEST(ScenarioParser, TellsStartSettings) {
    const Scenario read = Sound(
        "release 6000\nscreen 1600x1200\nconfigdir slash\nini left=abc\nini flinderPopup=\n"
        "start\nstart again\n");
    EXPECT_EQ(read.release, 6000);
    EXPECT_EQ(read.screen_width, 1600);
    EXPECT_EQ(read.screen_height, 1200);
    EXPECT_TRUE(read.config_dir_slash);
    EXPECT_EQ(read.ini, (std::vector<std::string>{"left=abc", "flinderPopup="}));
    EXPECT_EQ(read.commands.back().verb, Verb::kStartAgain);
}

TEST(ScenarioParser, KeepsAHashInsideQuotesAndCutsItElsewhere) {
    const Scenario read = Sound(
        "start\n"
        "script \"kv_frameView #all\" # a comment\n"
        "expect script \"say \\\"#1\\\" # two\" # three\n"
        "expect win SendMessageA <#32770> WM_COMMAND 1 0\n");
    EXPECT_EQ(read.commands[1].text, "kv_frameView #all");
    EXPECT_EQ(read.commands[2].text, "script \"say \\\"#1\\\" # two\"");
    EXPECT_EQ(read.commands[3].text, "win SendMessageA <#32770> WM_COMMAND 1 0");
}

TEST(ScenarioParser, UnescapesQuotedText) {
    const Scenario read = Sound("script \"a\\tb\\n\\\"c\\\\\"\n");
    EXPECT_EQ(read.commands[0].text, "a\tb\n\"c\\");
}

TEST(ScenarioParser, KnowsCopiesOfObjectsByTheirNames) {
    EXPECT_EQ(Sound("select Box001 Box002\n").commands[0].words.size(), 2u);
    EXPECT_EQ(Wrong("select Ball002\n").line, 1);
}

// A line of each form, and what is read from it.
struct Form {
    const char* line;
    Verb verb;
    const char* words = "";
    const char* numbers = "";
    bool on = false;
    const char* text = "";
    // Words that make a line: those behind them may be left out; and whether more may follow.
    size_t least = 0;
    bool more = false;
    // Places that take any word.
    const char* free = "";
    bool before_start = false;
};

constexpr Form kForms[] = {
    {.line = "ini left=abc  d",
     .verb = kIni,
     .text = "left=abc  d",
     .least = 2,
     .more = true,
     .free = "2",
     .before_start = true},
    {.line = "release 6000", .verb = kRelease, .numbers = "6000", .before_start = true},
    {.line = "screen 1600x1200", .verb = kScreen, .numbers = "1600, 1200", .before_start = true},
    {.line = "screen -1280,-10 2560x1034",
     .verb = kScreen,
     .numbers = "-1280, -10, 2560, 1034",
     .before_start = true},
    {.line = "configdir slash", .verb = kConfigDir, .on = true, .before_start = true},
    {.line = "configdir plain", .verb = kConfigDir, .before_start = true},
    {.line = "start", .verb = kStart, .before_start = true},
    {.line = "start again", .verb = kStartAgain, .least = 1},
    {.line = "move screen 640 -4", .verb = kMoveScreen, .numbers = "640, -4"},
    {.line = "move by 0x10 0", .verb = kMoveBy, .numbers = "16, 0"},
    {.line = "move viewport.persp 200 150",
     .verb = kMoveWindow,
     .words = "viewport.persp",
     .numbers = "200, 150"},
    {.line = "down left", .verb = kMouseDown, .words = "left"},
    {.line = "down again left", .verb = kMouseAgain, .words = "left"},
    {.line = "up middle", .verb = kMouseUp, .words = "middle"},
    {.line = "doubleclick right", .verb = kDoubleClick, .words = "right"},
    {.line = "key down lshift", .verb = kKey, .words = "lshift", .numbers = "160", .on = true},
    {.line = "key up f12", .verb = kKey, .words = "f12", .numbers = "123"},
    {.line = "clock +40", .verb = kClock, .numbers = "40"},
    {.line = "command 8", .verb = kCommand, .numbers = "8"},
    {.line = "accelerator 40020", .verb = kAccelerator, .numbers = "40020"},
    {.line = "click options.1007", .verb = kClick, .words = "options.1007"},
    {.line = "menu 40001", .verb = kMenu, .numbers = "40001"},
    {.line = "closebox main", .verb = kCloseBox, .words = "main"},
    {.line = "place main 10 20", .verb = kPlace, .words = "main", .numbers = "10, 20"},
    {.line = "query icon 3", .verb = kQuery, .words = "icon", .numbers = "3"},
    {.line = "script \"1\"", .verb = kScript, .text = "1"},
    {.line = "mode none", .verb = kModeNone},
    {.line = "mode pop", .verb = kModePop},
    {.line = "mode push 300", .verb = kModePush, .numbers = "300"},
    {.line = "mode push 300 class 4", .verb = kModePush, .numbers = "300, 4", .least = 3},
    {.line = "mode stack 6 1 0xC8",
     .verb = kModeStack,
     .numbers = "6, 1, 200",
     .least = 3,
     .more = true},
    {.line = "mode 5", .verb = kModeReplace, .numbers = "5"},
    {.line = "mode 5 class 3", .verb = kModeReplace, .numbers = "5, 3", .least = 2},
    {.line = "select none", .verb = kSelect},
    {.line = "select Box001 Box002", .verb = kSelect, .words = "Box001, Box002", .least = 2},
    {.line = "subobject on", .verb = kSubobject, .on = true},
    {.line = "view viewport.top user", .verb = kView, .words = "viewport.top, user"},
    {.line = "lock viewport.front off", .verb = kLock, .words = "viewport.front"},
    {.line = "open trackview", .verb = kOpen, .words = "trackview"},
    {.line = "close vertexpaint", .verb = kClose, .words = "vertexpaint"},
    {.line = "destroy main", .verb = kDestroy, .words = "main"},
    {.line = "button 50027 on", .verb = kCheckButton, .numbers = "50027", .on = true},
    {.line = "button 50016 disabled", .verb = kEnableButton, .numbers = "50016"},
    {.line = "button 59231 present", .verb = kPlaceButton, .numbers = "59231", .on = true},
    {.line = "button 0xC365 absent", .verb = kPlaceButton, .numbers = "50021"},
    {.line = "action 2077580866 40020 stuck",
     .verb = kAction,
     .words = "stuck",
     .numbers = "2077580866, 40020"},
    {.line = "brush 4186 on", .verb = kBrush, .numbers = "4186", .on = true},
    {.line = "paint 1077 off", .verb = kPaint, .numbers = "1077"},
    {.line = "polytools sculpt 3", .verb = kSculptTool, .numbers = "3"},
    {.line = "polytools pd -1", .verb = kPaintDeformTool, .numbers = "-1"},
    {.line = "polytools shift on", .verb = kPolyShift, .on = true},
    {.line = "polytools absent", .verb = kPolyToolsThere},
    {.line = "polytools present", .verb = kPolyToolsThere, .on = true},
    {.line = "interaction mode \"a b\"", .verb = kInteractionMode, .text = "a b"},
    {.line = "set \"a b\" Box001 Box001",
     .verb = kNamedSet,
     .words = "Box001, Box001",
     .text = "a b",
     .least = 2},
    {.line = "hide Box001", .verb = kHide, .words = "Box001"},
    {.line = "show Box001", .verb = kUnhide, .words = "Box001"},
    {.line = "tracks none", .verb = kTracks, .more = true, .free = "1"},
    {.line = "tracks \"X Position\" Box001",
     .verb = kTracks,
     .words = "X Position, Box001",
     .least = 2,
     .more = true,
     .free = "12"},
    {.line = "keys Box001 0 -5 0x20",
     .verb = kKeys,
     .words = "Box001",
     .numbers = "0, -5, 32",
     .least = 2,
     .free = "1"},
    {.line = "selectkeys Box001 7",
     .verb = kSelectKeys,
     .words = "Box001",
     .numbers = "7",
     .least = 2,
     .free = "1"},
    {.line = "foreground \"Track View\"", .verb = kForeground, .text = "Track View"},
    {.line = "play on", .verb = kPlay, .on = true},
    {.line = "fail SendInput", .verb = kFail, .words = "SendInput", .on = true},
    {.line = "fail SendInput on", .verb = kFail, .words = "SendInput", .on = true, .least = 2},
    {.line = "fail SendInput off", .verb = kFail, .words = "SendInput", .least = 2},
    {.line = "poke g_navKind -1", .verb = kPoke, .words = "g_navKind", .numbers = "-1"},
    {.line = "busy on", .verb = kBusy},
    {.line = "busy off", .verb = kNoLongerBusy},
    {.line = "peek off", .verb = kPeek},
    {.line = "code 3", .verb = kCode, .numbers = "3"},
    {.line = "reenter viewport.persp on", .verb = kReenter, .words = "viewport.persp", .on = true},
    {.line = "swap on", .verb = kSwap, .on = true},
    {.line = "rebuild toolbar", .verb = kRebuildToolbar},
    {.line = "scripts take 25", .verb = kScriptsTake, .numbers = "25"},
    {.line = "show camera viewport.user", .verb = kShowCamera, .words = "viewport.user"},
    {.line = "show plugin", .verb = kShowPlugin},
    {.line = "show modes", .verb = kShow, .words = "modes"},
    {.line = "expect nothing", .verb = kExpectNothing, .more = true, .free = "1"},
    {.line = "expect answer swallow",
     .verb = kExpectAnswer,
     .words = "swallow",
     .least = 2,
     .more = true,
     .free = "12"},
    {.line = "expect out *",
     .verb = kExpect,
     .text = "out *",
     .least = 2,
     .more = true,
     .free = "12"},
};

template <typename Items>
std::string Joined(const Items& items, const char* between) {
    std::ostringstream text;
    for (const auto& item : items)
        text << (text.tellp() > 0 ? between : "") << item;
    return text.str();
}

class Line {
public:
    explicit Line(const Form& form) : form_(form) {
        std::istringstream line(form.line);
        for (std::string word; line >> word;) {
            if (word[0] == '"')  // a text in quotes is one word
                for (std::string more; word.size() < 2 || word.back() != '"'; word += ' ' + more)
                    line >> more;
            words.push_back(word);
        }
    }

    void IsSound() const { Sound(Start() + Joined(words, " ")); }

    void IsWrong(const char* begin) const {
        const scenario::Mistake mistake = Wrong(Start() + Joined(words, " "));
        EXPECT_EQ(mistake.line, form_.before_start ? 1 : 2);
        EXPECT_TRUE(mistake.message.starts_with(begin)) << mistake.message;
    }

    std::vector<std::string> words;

private:
    std::string Start() const { return form_.before_start ? "" : "start\n"; }

    const Form& form_;
};

TEST(Lines, AreRead) {
    for (const Form& form : kForms) {
        SCOPED_TRACE(form.line);
        const Scenario read = Sound((form.before_start ? "" : "start\n") + std::string(form.line));
        const scenario::Command& command = read.commands.back();
        EXPECT_EQ(command.verb, form.verb);
        EXPECT_EQ(Joined(command.words, ", "), form.words);
        EXPECT_EQ(Joined(command.numbers, ", "), form.numbers);
        EXPECT_EQ(command.on, form.on);
        EXPECT_EQ(command.text, form.text);
        EXPECT_EQ(command.source, form.line);
    }
}

TEST(Lines, WithTooFewWordsLackOne) {
    for (const Form& form : kForms) {
        SCOPED_TRACE(form.line);
        Line line(form);
        const size_t least = form.least ? form.least : line.words.size();
        while (line.words.size() > 1) {
            line.words.pop_back();
            if (line.words.size() < least) line.IsWrong("missing ");
        }
    }
}

TEST(Lines, WithAWordTooManyShouldEndBeforeIt) {
    for (const Form& form : kForms) {
        if (form.more) continue;
        SCOPED_TRACE(form.line);
        Line line(form);
        line.words.push_back("?");
        line.IsWrong("\"?\" should be ");
    }
}

TEST(Lines, WithAWrongWordAreToldWhatItShouldBe) {
    for (const Form& form : kForms) {
        SCOPED_TRACE(form.line);
        for (size_t i = 1; i < Line(form).words.size(); ++i) {
            Line line(form);
            line.words[i] = "?";
            if (std::strchr(form.free, static_cast<char>('0' + i)))
                line.IsSound();
            else
                line.IsWrong("\"?\" should be ");
        }
    }
}

TEST(Language, HasAFormHereForEachOfItsRows) {
    std::set<Verb> read;
    for (const Form& form : kForms)
        read.insert(form.verb);
    size_t rows = 0;
    for (const scenario::Section& section : scenario::Sections())
        for (const scenario::Row& row : section.rows) {
            ++rows;
            EXPECT_TRUE(read.contains(row.verb)) << row.form;
            EXPECT_FALSE(row.help.empty()) << row.form;
        }
    EXPECT_GT(rows, 60u);
}

TEST(Language, TellsEventsFromWhatOnlyPrepares) {
    for (const Verb verb :
         {kStart, kStartAgain, kModePush, kKey, kMoveBy, kMouseUp, kDoubleClick, kNoLongerBusy,
          kCommand, kAccelerator, kClick, kMenu, kCloseBox, kQuery, kScript, kPlay})
        EXPECT_TRUE(scenario::IsEvent(verb)) << static_cast<int>(verb);
    for (const Verb verb :
         {kIni, kSelect, kBusy, kPlace, kClock, kFail, kPoke, kOpen, kShow, kExpect})
        EXPECT_FALSE(scenario::IsEvent(verb)) << static_cast<int>(verb);
}

struct Bad {
    std::string_view text;
    int line;
    const char* says;
};

constexpr Bad kBad[] = {
    {"start\njump\n", 2, "unknown command \"jump\", write one of those in docs/scenarios.md"},
    {"start\nmovee viewport.persp 1 2\n", 2, "unknown command \"movee\", write move or another"},
    {"\"start\"\n", 1, "unknown command \"start\""},
    {"move viewport.rear 1 2\n", 1, "\"viewport.rear\" should be screen, by or a window"},
    {"move viewport.pers 1 2\n", 1, ", most likely viewport.persp"},
    {"move viewport.persp 1 y\n", 1, "\"y\" should be a number Y"},
    {"move viewport.persp 1\n", 1, "missing a number Y (32 bits, decimal or 0x...) after \"1\""},
    {"move viewport.persp 1 2 3\n", 1, "\"3\" should be the end of the line"},
    {"move screen 99999999999 2\n", 1, "32 bits"},
    {"move screen 0x100000000 2\n", 1, "32 bits"},
    {"move screen -2147483649 2\n", 1, "32 bits"},
    {"expect out pass\nstart\n", 1, "nothing has happened yet"},
    {"select Box001\nexpect nothing\n", 2, "nothing has happened yet"},
    {"start\nexpect\n", 2, "missing nothing, answer or a line of the trace"},
    {"mode 5 class\n", 1, "missing a number N"},
    {"command 8\nstart\n", 1, "write start before it"},
    {"poke g_navKind 1\n", 1, "write start before it"},
    {"show plugin\n", 1, "write start before it"},
    {"query checked 8\n", 1, "write start before it"},
    {"menu 40001\n", 1, "write start before it"},
    {"start again\n", 1, "write start before it"},
    {"start\npoke g_nothing 1\n", 2, "\"g_nothing\" should be a variable of the plug-in"},
    {"start\nini left=1\n", 2, "write it before start"},
    {"start\nrelease 7000\n", 2, "write it before start"},
    {"start\nscreen 1280x1024\n", 2, "write it before start"},
    {"start\nconfigdir slash\n", 2, "write it before start"},
    {"start\nstart\n", 2, "write start again"},
    {"ini flinderPopup\n", 1, "KEY=TEXT"},
    {"ini =1\n", 1, "KEY=TEXT"},
    {"screen 1280\n", 1, "WIDTHxHEIGHT"},
    {"screen 319x400\n", 1, "320x200"},
    {"screen 400x199\n", 1, "320x200"},
    {"screen 16385x400\n", 1, "16384x16384"},
    {"screen -1280,0 1500x1024\n", 1, "main monitor"},
    {"screen 1,0 1280x1024\n", 1, "from -16384 to 0"},
    {"release 0\n", 1, "from 1 to 65535"},
    {"release 65536\n", 1, "from 1 to 65535"},
    {"key press alt\n", 1, "should be down or up"},
    {"key down hyper\n", 1, "\"hyper\" should be a key"},
    {"key down f25\n", 1, "\"f25\" should be a key"},
    {"down wheel\n", 1, "should be left, right, middle or again"},
    {"view viewport.side ortho\n", 1,
     "should be viewport.top, viewport.front, viewport.user or viewport.persp"},
    {"view viewport.top flat\n", 1, "should be persp, ortho or user"},
    {"button 50028 on\n", 1, "should be 59231, 40074, 50021, 50016 or 50027"},
    {"button 50027 open\n", 1, "should be on, off, enabled, disabled, present or absent"},
    {"brush 4187 on\n", 1, "should be 4184, 4185 or 4186"},
    {"paint 1010 on\n", 1, "should be 1007, 1008, 1009 or 1077"},
    {"action 0 1 on\n", 1, "\"1\" should be an action of that table"},
    {"action 0 40105 loose\n", 1, "should be on, off or stuck"},
    {"open main\n", 1, "should be trackview, unwrap, schematic or vertexpaint"},
    {"select Teapot001\n", 1, "should be none or an object (Box001,"},
    {"select Box001 none\n", 1, "should be an object"},
    {"fail SendInputs\n", 1, "should be a call that can fail"},
    {"clock 5\n", 1, "milliseconds with a +"},
    {"clock +-5\n", 1, "milliseconds with a +"},
    {"scripts take -1\n", 1, "from 0"},
    {"foreground Track\n", 1, "a text in double quotes"},
    {"foreground \"a\" b\n", 1, "\"b\" should be the end of the line"},
    {"polytools carve 1\n", 1, "should be sculpt, pd, shift, present or absent"},
    {"show everything\n", 1, "should be an object"},
    {"show mode\n", 1, "most likely modes"},
    {"subobject maybe\n", 1, "should be on or off"},
    {"accelerator 70000\n", 1, "from 0 to 65535"},
    {"\n# two\n\nplay loud\n", 4, "should be on or off"},
    // Texts.
    {"script \"open\n", 1, "the quoted text is not closed"},
    {"script \"open\\\"\n", 1, "the quoted text is not closed"},
    {"script \"\n", 1, "the quoted text is not closed"},
    {"start\nexpect script \"open\n", 2, "the quoted text is not closed"},
    // What is no text.
    {"start\n# a\0b\n"sv, 2, "a NUL byte in column 4, save the file as UTF-8"},
    {"s\0t\0a\0"sv, 1, "a NUL byte in column 2, save the file as UTF-8"},
    {"\xFF\xFEs", 1, "UTF-16, save it as UTF-8"},
    {"\xFE\xFFs", 1, "UTF-16, save it as UTF-8"},
    {"start\n# f\xFCr\n", 2, "the byte 0xFC is no UTF-8 in column 4"},
    {"# \xC3", 1, "0xC3 is no UTF-8"},        // the end of a character is missing
    {"# \xC0\xAF\n", 1, "0xC0 is no UTF-8"},  // longer than need be
    {"# \xE0\x80\xAF\n", 1, "0xE0 is no UTF-8"},
    {"# \xED\xA0\x80\n", 1, "0xED is no UTF-8"},      // half of a pair of UTF-16
    {"# \xF4\x90\x80\x80\n", 1, "0xF4 is no UTF-8"},  // beyond the last character
    {"# \x80\n", 1, "0x80 is no UTF-8"},
    {"key down a\x01\n", 1, "\"a\\x01\" should be a key"},
};

TEST(BadLines, AreNamedWithARemedy) {
    for (const Bad& bad : kBad) {
        SCOPED_TRACE(bad.text);
        const scenario::Mistake mistake = Wrong(bad.text);
        EXPECT_EQ(mistake.line, bad.line);
        EXPECT_THAT(mistake.message, testing::HasSubstr(bad.says));
    }
}

TEST(BadLines, ShortenAWord) {
    EXPECT_THAT(Wrong(std::string(500, 'x')).message,
                testing::HasSubstr("unknown command \"" + std::string(40, 'x') + "…\","));
}

TEST(ScenarioParser, ReadsCharactersOfAllLengths) {
    EXPECT_EQ(Sound("\xEF\xBB\xBF# ü…\xF0\x9F\x98\x80\nforeground \"ü…\xF0\x9F\x98\x80\"\n")
                  .commands[0]
                  .text,
              "ü…\xF0\x9F\x98\x80");
}

TEST(ScenarioParser, LetsALineToExpectStopInsideAText) {
    EXPECT_EQ(Sound("start\nexpect script \"kv_frame*\n").commands[1].text, "script \"kv_frame*");
}

TEST(MissingIn, IsWhatAPlayNeedsToShowAFault) {
    const auto missing = [](std::string_view text) { return scenario::MissingIn(Sound(text)); };
    EXPECT_EQ(missing("start\nexpect out *\n"), "");
    EXPECT_EQ(missing("start\nexpect nothing\n"), "");
    EXPECT_THAT(missing("start\n"), testing::StartsWith("there is no expect"));
    // Any lines are not expected.
    EXPECT_THAT(missing("start\nexpect …\n"), testing::StartsWith("there is no expect"));
    EXPECT_THAT(missing("key down alt\nexpect nothing\n"),
                testing::StartsWith("there is no start"));
    EXPECT_THAT(missing("# nothing\n"),
                testing::AllOf(testing::HasSubstr("no start"), testing::HasSubstr("no expect")));
}

TEST(MatchesLine, LeavesOutWhatIsNotAskedFor) {
    const char* const box = "win MessageBoxA \"a\" \"b c=d\" owner=main type=0x40";
    EXPECT_TRUE(scenario::MatchesLine(box, box));
    EXPECT_TRUE(scenario::MatchesLine("win MessageBoxA \"a\" \"b c=d\"", box));
    EXPECT_TRUE(scenario::MatchesLine("win MessageBoxA \"a\" *", box));
    EXPECT_TRUE(scenario::MatchesLine("win MessageBoxA \"a\" \"b c=d\" type=0x40", box));
    EXPECT_TRUE(scenario::MatchesLine("win MessageBoxA \"a\" \"b c=d\" owner=*", box));
    EXPECT_FALSE(scenario::MatchesLine("win MessageBoxA \"a\" \"b c=d\" type=0x30", box));
    EXPECT_FALSE(scenario::MatchesLine("win MessageBoxA \"a\"", box));
    EXPECT_FALSE(scenario::MatchesLine("win MessageBoxA \"a\" \"b c=d\" icon=1", box));
    EXPECT_TRUE(scenario::MatchesLine("win ShellExecuteA open u",
                                      "win ShellExecuteA open u parameters=\"x y=z\" show=5"));
    EXPECT_TRUE(scenario::MatchesLine("out 0", "out 0 passed=yes"));
    EXPECT_FALSE(scenario::MatchesLine("out 0 passed=no", "out 0 passed=yes"));
    EXPECT_FALSE(scenario::MatchesLine("out 1", "out 0 passed=yes"));
    // Everywhere else a word more is another line.
    EXPECT_FALSE(scenario::MatchesLine("win SetKeyboardState", "win SetKeyboardState a=0"));
    EXPECT_FALSE(scenario::MatchesLine("sdk RegisterMenuBarContext 5 \"a\"",
                                       "sdk RegisterMenuBarContext 5 \"a\" flags=0"));
}

TEST(Matches, TakesAStarForAnyText) {
    EXPECT_TRUE(scenario::Matches("out pass", "out pass"));
    EXPECT_FALSE(scenario::Matches("out pass", "out swallow"));
    EXPECT_FALSE(scenario::Matches("out", "out pass"));
    EXPECT_TRUE(
        scenario::Matches("win * WM_LBUTTONUP *", "win SendMessageA main WM_LBUTTONUP 0 1,2"));
    EXPECT_FALSE(scenario::Matches("win *X", "win XY"));
    EXPECT_TRUE(scenario::Matches("a*b*c", "a-b-b-c"));
    EXPECT_TRUE(scenario::Matches("*", ""));
    EXPECT_TRUE(scenario::Matches("script \"select $*\"", "script \"select $*\""));
}

TEST(AnyLines, IsTheEllipsisAlone) {
    EXPECT_TRUE(scenario::IsAnyLines("\xE2\x80\xA6"));
    EXPECT_TRUE(scenario::IsAnyLines("..."));
    EXPECT_FALSE(scenario::IsAnyLines("*"));
}

TEST(KeyByName, KnowsTheKeysOfAScenario) {
    EXPECT_EQ(scenario::KeyByName("alt"), 18);
    EXPECT_EQ(scenario::KeyByName("rshift"), 161);
    EXPECT_EQ(scenario::KeyByName("q"), 'Q');
    EXPECT_EQ(scenario::KeyByName("7"), '7');
    EXPECT_EQ(scenario::KeyByName("f12"), 123);
    EXPECT_EQ(scenario::KeyByName("up"), 38);
    EXPECT_EQ(scenario::KeyByName("f0"), 0);
    EXPECT_EQ(scenario::KeyByName("f1x"), 0);
    EXPECT_EQ(scenario::KeyByName("?"), 0);
}

}  // namespace
