#include "standin/player/scenario_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using scenario::Scenario;
using scenario::Verb;

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

TEST(ScenarioParser, TellsStartSettings) {
    const Scenario read = Sound(
        "release 6000\nscreen 1600x1200\nconfigdir slash\nini left=abc\nini flinderPopup=\n"
        "start\nstart again\n");
    EXPECT_EQ(read.release, 6000);
    EXPECT_EQ(read.screen_width, 1600);
    EXPECT_EQ(read.screen_height, 1200);
    EXPECT_TRUE(read.config_dir_slash);
    EXPECT_TRUE(read.has_ini);
    EXPECT_EQ(read.ini, (std::vector<std::string>{"left=abc", "flinderPopup="}));
    EXPECT_EQ(read.commands.back().verb, Verb::kStartAgain);
    EXPECT_FALSE(Sound("start\n").has_ini);
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

TEST(ScenarioParser, TellsUnhideFromShow) {
    const Scenario read = Sound("show Box001\nshow camera viewport.top\nshow modes\n");
    EXPECT_EQ(read.commands[0].verb, Verb::kUnhide);
    EXPECT_EQ(read.commands[1].verb, Verb::kShow);
    EXPECT_EQ(read.commands[1].words, (std::vector<std::string>{"camera", "viewport.top"}));
    EXPECT_EQ(read.commands[2].verb, Verb::kShow);
}

TEST(ScenarioParser, KnowsCopiesOfObjectsByTheirNames) {
    EXPECT_EQ(Sound("select Box001 Box002\n").commands[0].words.size(), 2u);
    EXPECT_EQ(Wrong("select Ball002\n").line, 1);
}

TEST(ScenarioParser, ReadsModes) {
    const Scenario read = Sound("mode 5 class 3\nmode none\nmode push 300\nmode pop\n");
    EXPECT_EQ(read.commands[0].numbers, (std::vector<long long>{5, 3}));
    EXPECT_EQ(read.commands[1].verb, Verb::kModeNone);
    EXPECT_EQ(read.commands[2].verb, Verb::kModePush);
    EXPECT_EQ(read.commands[3].verb, Verb::kModePop);
}

TEST(ScenarioParser, AcceptsAFaultAndItsEnd) {
    const Scenario read = Sound("fail SendInput\nfail SendInput off\n");
    EXPECT_TRUE(read.commands[0].on);
    EXPECT_FALSE(read.commands[1].on);
}

struct Bad {
    const char* text;
    int line;
    const char* says;
};

class BadLines : public testing::TestWithParam<Bad> {};

TEST_P(BadLines, AreNamedWithARemedy) {
    const scenario::Mistake mistake = Wrong(GetParam().text);
    EXPECT_EQ(mistake.line, GetParam().line);
    EXPECT_THAT(mistake.message, testing::HasSubstr(GetParam().says));
}

constexpr Bad kBad[] = {
    {"start\njump\n", 2, "unknown command \"jump\""},
    {"move viewport.rear 1 2\n", 1, "no window \"viewport.rear\""},
    {"move viewport.persp 1 y\n", 1, "\"y\" is no number"},
    {"move viewport.persp 1\n", 1, "missing y"},
    {"move viewport.persp 1 2 3\n", 1, "\"3\" is too much"},
    {"move screen 99999999999 2\n", 1, "32 bits"},
    {"expect out pass\nstart\n", 1, "nothing has happened yet"},
    {"select Box001\nexpect nothing\n", 2, "nothing has happened yet"},
    {"start\nexpect\n", 2, "missing the line"},
    {"command 8\nstart\n", 1, "write start before it"},
    {"poke g_navKind 1\n", 1, "write start before it"},
    {"show plugin\n", 1, "write start before it"},
    {"query checked 8\n", 1, "write start before it"},
    {"start\npoke g_nothing 1\n", 2, "no global \"g_nothing\""},
    {"start\nini left=1\n", 2, "before start"},
    {"start\nrelease 7000\n", 2, "before start"},
    {"start\nstart\n", 2, "start again"},
    {"start again\n", 1, "needs a start"},
    {"ini flinderPopup\n", 1, "KEY=TEXT"},
    {"screen 1280\n", 1, "WIDTHxHEIGHT"},
    {"release 0\n", 1, "between 1 and 65535"},
    {"key press alt\n", 1, "down or up"},
    {"key down hyper\n", 1, "no key \"hyper\""},
    {"key down f25\n", 1, "no key \"f25\""},
    {"down wheel\n", 1, "no mouse button"},
    {"view viewport.side ortho\n", 1, "no viewport"},
    {"view viewport.top flat\n", 1, "persp, ortho or user"},
    {"button 50028 on\n", 1, "no button 50028"},
    {"button 50027 open\n", 1, "absent or present"},
    {"brush 4187 on\n", 1, "no brush 4187"},
    {"action 0 1 on\n", 1, "no action 0 1"},
    {"action 0 40105 loose\n", 1, "on, off or stuck"},
    {"open main\n", 1, "always there"},
    {"select Teapot001\n", 1, "no object"},
    {"fail GetNothing\n", 1, "can not be made to fail"},
    {"clock 5\n", 1, "+MILLISECONDS"},
    {"foreground Track\n", 1, "double quotes"},
    {"script \"open\n", 1, "not closed"},
    {"show everything\n", 1, "can not be shown"},
    {"subobject maybe\n", 1, "on or off"},
    {"accelerator 70000\n", 1, "between 0 and 65535"},
    {"\n# two\n\nplay loud\n", 4, "on or off"},
};
INSTANTIATE_TEST_SUITE_P(All, BadLines, testing::ValuesIn(kBad));

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
