// Every error names what is wrong and where; nothing that is not understood is passed over.
#include <gtest/gtest.h>

#include <random>

#include "script/script_texts.h"
#include "tests/standin/script/fake_host.h"

namespace script_test {
namespace {

TEST(Errors, Characters) {
    const Case cases[] = {
        {"1 + @", "1:5: unexpected character '@'"},
        {"a = 1\n  b = {", "2:7: unexpected character '{'"},
        {"a = 1\r\n  b = ~", "2:7: unexpected character '~'"},
        {"\xc3\xa4", "1:1: unexpected character 0xC3"},
        {"1 \\ 2", "1:3: unexpected character '\\'"},
        {"'x'", "1:1: unexpected character '''"},
        {"\t\"abc", "1:2: the text is not closed"},
        {"\"abc\\", "1:1: the text is not closed"},
        {"\"a\\q\"", "1:3: unknown escape \\'q' in a text"},
        {"\"a\\xg\"", "1:3: \\x in a text needs hexadecimal digits"},
        {"1 /* 2", "1:3: the comment is not closed"},
        {"#", "1:1: # needs a name or ( behind it"},
        {"#{1}", "1:1: bit arrays are not supported"},
        {"$'abc", "1:1: the object name is not closed"},
        {"$a/b", "1:1: object paths through the hierarchy are not supported"},
        {"$...*", "1:1: object paths through the hierarchy are not supported"},
    };
    ExpectAll(cases);
}

TEST(Errors, Numbers) {
    const Case cases[] = {
        {"12abc", "1:3: the number ends in 'a'"},
        {"12L", "1:3: the number ends in 'L'"},
        {"1m30s", "1:2: the number ends in 'm'"},
        {"2147483648", "1:1: the number does not fit into an integer"},
        {"0x", "1:1: a hexadecimal number needs digits"},
        {"0x1ffffffff", "1:1: the number does not fit into an integer"},
    };
    ExpectAll(cases);
}

TEST(Errors, Syntax) {
    const Case cases[] = {
        {"1 2", "1:3: unexpected 2, expected a new line or ; between two expressions"},
        {"(1 2)", "1:4: unexpected 2, expected a new line, ; or )"},
        {"(1", "1:1: ( is not closed"},
        {"1)", "1:2: unexpected ), expected a new line or ; between two expressions"},
        {"1 +", "1:4: unexpected the end of the text, expected an expression"},
        {"* 2", "1:1: unexpected *, expected an expression"},
        {"a = ", "1:5: unexpected the end of the text, expected an expression"},
        {"1 = 2", "1:1: this cannot be assigned to"},
        {"(a) = 2", "1:1: this cannot be assigned to"},
        {"a + b = 2", "1:3: this cannot be assigned to"},
        {"f 1 = 2", "1:1: this cannot be assigned to"},
        {"$Box001 = 2", "1:1: this cannot be assigned to"},
        {"#(1, 2", "1:7: unexpected the end of the text, expected ) after the items of an array"},
        {"#(1,)", "1:5: unexpected ), expected an expression"},
        {"[1,2]", "1:5: unexpected ], expected , between the three parts of a point"},
        {"a[1", "1:4: unexpected the end of the text, expected ] after the index"},
        {"a.5", "1:3: unexpected 5, expected a property name after ."},
        {"if 1 == 1 2", "1:11: unexpected 2, expected then (or do) after the condition of if"},
        {"if true then 1; else 2", "1:17: unexpected else, expected an expression"},
        {"if true do 1 else 2",
         "1:14: unexpected else, expected a new line or ; between two expressions"},
        {"for 1 to 2 do 3", "1:5: unexpected 1, expected a variable after for"},
        {"for i to 2 do 3", "1:7: unexpected to, expected = (or in) after the variable of for"},
        {"for i = 1 to 2",
         "1:15: unexpected the end of the text, expected do (or collect) before "
         "the body of for"},
        {"for i = 1 to 2 where true where true do 1",
         "1:27: unexpected where, expected do or collect; this part of for is there already"},
        {"while true 1", "1:12: unexpected 1, expected do after the condition of while"},
        {"do 1", "1:5: unexpected the end of the text, expected while after the body of do"},
        {"try 1",
         "1:6: unexpected the end of the text, expected catch after the expression of "
         "try"},
        {"fn", "1:3: unexpected the end of the text, expected a function name"},
        {"fn f a 1", "1:8: unexpected 1, expected = after the parameters of a function"},
        {"fn f a A = 1", "1:8: the parameter A is there twice"},
        {"local a = 1", "1:1: local variables need a block around them"},
        {"(local 1)", "1:8: unexpected 1, expected a variable name"},
        {"continue", "1:1: continue outside of a loop"},
        {"exit", "1:1: exit outside of a loop"},
        {"return 1", "1:1: return outside of a function"},
        {"for i = 1 to 2 do (fn f = continue)", "1:27: continue outside of a loop"},
        {"fn f = (return\n1)", "2:1: unexpected 1, expected a value on the same line as return"},
        {"max", "1:4: unexpected the end of the text, expected the words of a max command"},
        {"max key 5", "1:9: unexpected 5, expected a word of a max command"},
        {"1 as 2", "1:6: unexpected 2, expected a class name after as"},
        {"(local x; fn f = x)", "1:18: no outer local variable references permitted here: x"},
        {"fn f a = (fn g = a)", "1:18: no outer local variable references permitted here: a"},
    };
    ExpectAll(cases);
}

TEST(Errors, CallsWithoutArguments) {
    const Case cases[] = {
        {"f a ()", "1:5: () cannot be an argument; write (f()) to pass the result of a call"},
        {"f () a", "1:6: unexpected a, expected an operator or the end of the expression after ()"},
        {"f a key:1", "1:8: keyword arguments are not supported"},
        {"fn f key:1 = 2", "1:9: keyword parameters are not supported"},
    };
    ExpectAll(cases);
}

TEST(Errors, UnsupportedConstructs) {
    for (const char* word :
         {"about",       "animate", "at",     "attributes", "case",       "coordsys", "from",
          "macroscript", "mapped",  "of",     "parameters", "persistent", "plugin",   "rcmenu",
          "rollout",     "set",     "struct", "tool",       "undo",       "utility",  "when"}) {
        EXPECT_EQ(RunText("a = 1\n " + std::string(word) + " x"),
                  "2:2: '" + std::string(word) + "' is not supported");
    }
}

TEST(Errors, Values) {
    const Case cases[] = {
        {"1 + \"a\"", "1:3: Unable to convert: \"a\" to type: Integer"},
        {"\"a\" + 1", "1:5: Unable to convert: 1 to type: String"},
        {"undefined + 1", "1:11: No \"+\" function for undefined"},
        {"1 + undefined", "1:3: Unable to convert: undefined to type: Integer"},
        {"\"a\" - \"b\"", "1:5: No \"-\" function for \"a\""},
        {"#(1) + 1", "1:6: Unable to convert: 1 to type: Array"},
        {"1 < \"a\"", "1:3: Unable to convert: \"a\" to type: Integer"},
        {"\"a\" < 1", "1:5: Unable to convert: 1 to type: String"},
        {"undefined < 1", "1:11: No \"<\" function for undefined"},
        {"#(1) >= #(2)", "1:6: No \">=\" function for #(1)"},
        {"-\"a\"", "1:1: No \"-\" function for \"a\""},
        {"5f * 5f", "1:4: No \"*\" function for 5f"},
        {"2 / 5f", "1:3: No \"/\" function for 2"},
        {"1 / 0", "1:3: Division by zero"},
        {"5f / 0", "1:4: Division by zero"},
        {"not 1", "1:5: not needs true or false, got: 1"},
        {"1 and true", "1:1: and needs true or false, got: 1"},
        {"false or undefined", "1:10: or needs true or false, got: undefined"},
        {"if 1 then 2", "1:4: if needs true or false, got: 1"},
        {"while undefined do 1", "1:7: while needs true or false, got: undefined"},
        {"do 1 while 5", "1:12: while needs true or false, got: 5"},
        {"for i = 1 to 2 where i do i", "1:22: where needs true or false, got: 1"},
        {"for i in 5 do i", "1:1: Unable to convert: 5 to type: Array"},
        {"for i = \"a\" to 2 do i", "1:1: Unable to convert: \"a\" to type: Integer"},
        {"for i = 1 to 5f do i", "1:1: Unable to convert: 5f to type: Integer"},
        {"for i = 1 to 2 by 0 do i", "1:19: by must not be 0"},
        {"[1,\"a\",3]", "1:1: Unable to convert: \"a\" to type: Float"},
        {"[1,2,3] + 1", "1:9: Unable to convert: 1 to type: Point3"},
        {"undefined as integer", "1:11: Unable to convert: undefined to type: Integer"},
        {"5 as interval", "1:3: Unable to convert: 5 to type: Interval"},
        {"5 as append", "1:6: as needs a class, got: append()"},
        {"5 as foo", "1:6: as needs a class, got: undefined"},
        {"string 5", "1:1: Values of String cannot be created by a call"},
        {"integer 5 6", "1:1: Integer wants 1 arguments, got 2"},
        {"interval 5", "1:1: Interval wants 2 arguments, got 1"},
        {"interval \"a\" 1", "1:1: Unable to convert: \"a\" to type: Time"},
    };
    ExpectAll(cases);
}

TEST(Errors, NamesThatNobodyKnows) {
    const Case cases[] = {
        {"nothing()", "1:1: Call needs function or class, got: undefined"},
        {"a = 1\n\n  nothing 5", "3:3: Call needs function or class, got: undefined"},
        {"x = 5; x 1", "1:8: Call needs function or class, got: 5"},
        {"nothing.x", "1:9: Unknown property: \"x\" in undefined"},
        {"nothing.x = 1", "1:11: Unknown property: \"x\" in undefined"},
        {"nothing[1]", "1:8: No \"get\" function for undefined"},
        {"nothing[1] = 2", "1:12: No \"put\" function for undefined"},
        {"actionMan.nothing", "1:11: Unknown property: \"nothing\" in <Interface:actionMan>"},
        {"trackviews.current.nothing 1",
         "1:20: Unknown property: \"nothing\" in <Interface:trackviews.current>"},
        {"$Box001.nothing", "1:9: Unknown property: \"nothing\" in $Box001"},
        {"$Box001.nothing = 1", "1:17: Unknown property: \"nothing\" in $Box001"},
        {"$Missing.pos", "1:10: Unknown property: \"pos\" in undefined"},
        {"selection.pos", "1:11: Unknown property: \"pos\" in $selection"},
        {"5.5.count", "1:5: Unknown property: \"count\" in 5.5"},
        {"max nothing", "1:1: unknown max command: nothing"},
    };
    ExpectAll(cases);
}

TEST(Errors, WhatCannotBeSet) {
    const Case cases[] = {
        {"select = 5", "1:8: Cannot assign to read-only variable: select"},
        {"selection = 5", "1:11: Cannot assign to read-only variable: selection"},
        {"Integer = 5", "1:9: Cannot assign to read-only variable: integer"},
        {"fn append a = a", "1:1: Cannot assign to read-only variable: append"},
        {"animationRange = 5", "1:16: Unable to convert: 5 to type: Interval"},
        {"sliderTime = \"a\"", "1:12: Unable to convert: \"a\" to type: Time"},
        {"$Box001.name = \"x\"", "1:14: Property cannot be set: \"name\" in $Box001"},
        {"$Box001.pos = 5", "1:13: Unable to convert: 5 to type: Point3"},
        {"$Box001.isHidden = 1", "1:18: Unable to convert: 1 to type: Boolean"},
        {"#(1).count = 2", "1:12: Property cannot be set: \"count\" in #(1)"},
        {"(interval 1 2).start = 2", "1:22: Property cannot be set: \"start\" in (interval 1f 2f)"},
        {"PolyToolsUI.SculptTool = 2",
         "1:24: Property cannot be set: \"SculptTool\" in <Interface:PolyToolsUI>"},
        {"PolyToolsUI.SculptButtons[1] = 2", "1:30: Unable to convert: 2 to type: Boolean"},
        {"a = \"abc\"; a[1] = \"x\"", "1:17: No \"put\" function for \"abc\""},
    };
    ExpectAll(cases);
}

TEST(Errors, Arguments) {
    const Case cases[] = {
        {"append #(1)", "1:1: Argument count error: append wanted 2, got 1"},
        {"append 1 2", "1:1: Unable to convert: 1 to type: Array"},
        {"amin()", "1:1: Argument count error: amin wanted 1 or more, got 0"},
        {"amax #(1, \"a\")", "1:1: Unable to convert: 1 to type: String"},
        {"throw 1 2", "1:1: Argument count error: throw wanted 0 to 1, got 2"},
        {"throw()", "1:1: throw() outside of catch"},
        {"throw 5", "1:1: 5"},
        {"select 5", "1:1: Unable to convert: 5 to type: Node"},
        {"select undefined", "1:1: Unable to convert: undefined to type: Node"},
        {"select #(1)", "1:1: Unable to convert: 1 to type: Node"},
        {"numKeys undefined", "1:1: Unable to convert: undefined to type: SubAnim"},
        {"actionMan.executeAction 1",
         "1:11: Argument count error: actionMan.executeAction wanted 2, got 1"},
        {"actionMan.executeAction \"1\" \"1040\"",
         "1:11: Unable to convert: \"1\" to type: Integer"},
        {"actionMan.executeAction 1 1040", "1:11: Unable to convert: 1040 to type: String"},
        {"completeRedraw 1", "1:1: Argument count error: completeredraw wanted 0, got 1"},
        {"PolyBoost.ToolToggle 2 1 1", "1:11: Unable to convert: 1 to type: Boolean"},
        {"format \"%\"", "1:1: format has more % than values"},
        {"format 5", "1:1: Unable to convert: 5 to type: String"},
        {"#(1)[0]", "1:5: Index must be a positive number, got: 0"},
        {"#(1)[\"a\"]", "1:5: Unable to convert: \"a\" to type: Integer"},
        {"a = #(1); a[-1] = 2", "1:17: Index must be a positive number, got: -1"},
        {"fn f a b = 1; f 1", "1:15: Argument count error: f wanted 2, got 1"},
    };
    ExpectAll(cases);
}

TEST(Errors, InsideFunctionsTheyNameThePlaceInTheFunction) {
    EXPECT_EQ(RunText("fn f x = (\n  x.nothing\n)\nf 5"),
              "2:5: Unknown property: \"nothing\" in 5");
}

TEST(Errors, Limits) {
    const Case cases[] = {
        {"while true do 1", "1:7: the script runs too long"},
        {"fn f = f()\nf()", "1:8: the script calls itself too deeply"},
        // A limit cannot be caught.
        {"while true do try (while true do 1) catch 0", "1:26: the script runs too long"},
        {"fn f = try f() catch 0\nf()", "1:12: the script calls itself too deeply"},
        {"a = #(); a[2000000] = 1", "1:21: a value grows too large"},
        {"s = \"0123456789\"; while true do s += s", "1:35: a value grows too large"},
    };
    for (const Case& each : cases) {
        const std::string text = RunText(each.text);
        const std::string expected = each.expected;
        // Where exactly a runaway script is stopped does not matter.
        EXPECT_EQ(text.substr(text.find(' ')), expected.substr(expected.find(' '))) << each.text;
        EXPECT_GT(std::atoi(text.c_str()), 0) << text;
    }
}

TEST(Errors, LimitsCanBeSet) {
    FakeHost host;
    script::Limits limits;
    limits.steps = 1000;
    limits.depth = 20;
    limits.size = 10;
    script::Interpreter interpreter(host, limits);
    EXPECT_EQ(RunText(interpreter, "for i = 1 to 100 collect i").substr(0, 2), "#(");
    EXPECT_NE(RunText(interpreter, "for i = 1 to 1000 do i").find("runs too long"),
              std::string::npos);
    EXPECT_NE(RunText(interpreter, "fn f n = if n > 0 then f (n - 1); f 10").find("too deeply"),
              std::string::npos);
    EXPECT_NE(RunText(interpreter, "\"123456\" + \"78901\"").find("too large"), std::string::npos);
    EXPECT_EQ(RunText(interpreter, "1 + 1"), "2");
}

std::string Repeat(const std::string& text, int count) {
    std::string all;
    for (int index = 0; index < count; ++index)
        all += text;
    return all;
}

TEST(Errors, DeepTextsAreRefused) {
    const std::string deep[] = {
        Repeat("(", 100000),
        Repeat("#(", 100000),
        Repeat("- ", 100000) + "1",
        Repeat("not ", 100000),
        "1" + Repeat("+1", 100000),
        "a" + Repeat(".b", 100000),
        "a" + Repeat("[1]", 100000),
        Repeat("a[", 100000),
        Repeat("if true then ", 100000),
        Repeat("fn f = ", 100000),
        Repeat("a = ", 100000),
        Repeat("[", 100000),
        Repeat("try ", 100000),
        Repeat("for i = 1 to 2 do ", 100000),
        "1" + Repeat(" as integer", 100000),
    };
    for (const std::string& text : deep) {
        const std::string result = RunText(text);
        EXPECT_NE(result.find("the expression is nested too deeply"), std::string::npos)
            << text.substr(0, 20) << " gave " << result;
    }
}

// The interpreter evaluates texts while it evaluates texts; the limit counts all of them.
TEST(Errors, TextsWithinTextsShareTheLimits) {
    FakeHost host;
    script::Interpreter interpreter(host);
    int depth = 0;
    std::string deepest;
    host.on_action = [&] {
        ++depth;
        const std::string answer = RunText(interpreter, "actionMan.executeAction 0 \"1\"");
        if (depth == 40 && deepest.empty()) deepest = answer;
    };
    RunText(interpreter, "actionMan.executeAction 0 \"1\"");
    EXPECT_EQ(depth, 40);
    EXPECT_EQ(deepest, "1:1: too many scripts run within each other");
    const script::Result result = interpreter.Evaluate("1 + 1");
    EXPECT_EQ(Describe(result, interpreter), "2");
    host.on_action = [&] { RunText(interpreter, "while true do 1"); };
    EXPECT_NE(
        RunText(interpreter, "while true do actionMan.executeAction 0 \"1\"").find("runs too long"),
        std::string::npos);
}

// Whatever text comes in, there is a value or an error with a position.
TEST(Errors, RandomTextsNeverGoUnanswered) {
    const char* const words[] = {
        "(",      ")",       "#(",    "[",      "]",       ",",      ";",     "\n",
        ".",      "=",       "==",    "+",      "-",       " -",     "*",     "/",
        "^",      "<",       "+=",    "-=",     "a",       "b",      "f",     "1",
        "2.5",    "3f",      "\"s\"", "#n",     "$*",      "$",      "true",  "undefined",
        "if",     "then",    "else",  "do",     "for",     "in",     "to",    "while",
        "where",  "collect", "fn",    "try",    "catch",   "return", "exit",  "continue",
        "and",    "or",      "not",   "as",     "integer", "array",  "local", "global",
        "max",    "append",  "amin",  "select", "objects", "count",  "()",    "name",
        "string", "throw",   "print", "format", "abs",     "time",   "by",    "with",
    };
    const char* const texts[] = {kDefineFrameView, kCenterPivot, kToggleSculptButton};
    // The same texts every time, so that a failure can be looked into.
    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp)
    std::mt19937 random(20240607);
    script::Limits limits;
    limits.steps = 2000;
    limits.size = 1000;
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        if (round % 4 == 0) {
            text = texts[random() % std::size(texts)];
            for (int change = 0; change < 3; ++change) {
                const std::size_t at = random() % text.size();
                if (random() % 2 == 0)
                    text.erase(at, 1 + random() % 6);
                else
                    text.insert(at, words[random() % std::size(words)]);
                if (text.empty()) text = " ";
            }
        } else {
            for (unsigned count = random() % 20; count > 0; --count) {
                text += words[random() % std::size(words)];
                if (random() % 4 != 0) text += ' ';
            }
        }
        FakeHost host;
        host.AddNode("Box001");
        script::Interpreter interpreter(host, limits);
        const script::Result result = interpreter.Evaluate(text);
        if (result.error) {
            EXPECT_FALSE(result.error->message.empty()) << text;
            EXPECT_GT(result.error->position.line, 0) << text;
            EXPECT_GT(result.error->position.column, 0) << text;
        }
        interpreter.ToText(result.value);
    }
}

}  // namespace
}  // namespace script_test
