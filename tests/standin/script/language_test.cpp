// What of the language the interpreter knows, and that it names whatever is wrong, and where.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "script/script_texts.h"
#include "tests/standin/script/fake_host.h"

namespace script_test {
namespace {

TEST(Language, PrintsValuesAsTheListenerDoes) {
    static constexpr Case kCases[] = {
        {"", "undefined"},
        {"   \n -- nothing\n ;; ", "undefined"},
        {"true", "true"},
        {"OFF", "false"},
        {"on", "true"},
        {"undefined", "undefined"},
        {"12", "12"},
        {"1.5", "1.5"},
        {"2.0", "2.0"},
        {"12f", "12f"},
        {"0.5f", "0.5f"},
        {"\"text\"", "\"text\""},
        {"#Selected", "#Selected"},
        {"#()", "#()"},
        {"#(1, #(\"a\", #b),\n 2.5)", "#(1, #(\"a\", #b), 2.5)"},
        {"interval 5 7.5", "(interval 5f 7.5f)"},
        {"animationRange", "(interval 0f 100f)"},
        {"$sphere001", "$Sphere001"},
        {"$Missing", "undefined"},
        {"$Box*", "$Box*"},
        {"$Box001.center", "[1,2,3]"},
        {"selection", "$selection"},
        {"append", "append()"},
        {"fn Twice x = x + x", "Twice()"},
        {"trackviews.current", "<Interface:trackviews.current>"},
        {"max key mode", "OK"},
    };
    ExpectAll(kCases);
}

TEST(Language, Operators) {
    static constexpr const char* kTruths[] = {
        "7 + 2 == 9", "7 - 2 == 5", "7.5 - 2 == 5.5", "1 + 0.5 == 1.5", "- -2.5 == 2.5",
        "2147483647 + 1 == -2147483647 - 1", "1 == 1.0", "1 != 2", "not (1 < 1)", "1 <= 1",
        "not (1 > 1)", "1 >= 1", "1 < 2", "not (1 >= 2)", "5f == 5", "4 < 5f", "\"a\" == \"a\"",
        "\"a\" != \"A\"", "#One == #oNE", "#one != \"one\"", "undefined != 0",
        "(interval 1 2) == (interval 1f 2f)", "#(1) != #(1)", "$Box001 == $box001",
        "$Box001 != $Sphere001", "actionMan != viewport", "select == select",
        // From loose to tight: or, and, not, comparison, + -, as, minus, call.
        "true or false and false", "not (not false and false)", "not 1 == 2", "true == not false",
        "1 + 1 == 2 and 2 < 3", "10 - 4 - 3 == 3", "2 == 2--3 is a comment\n",
        "(selection as array).count + 1 == 1",
        // Logic stops at the first certain answer.
        "not (false and nothing())", "true or nothing()"};
    for (const char* const text : kTruths)
        EXPECT_EQ(RunText(text), "true") << text;
}

// A minus that leans towards its operand begins an argument.
TEST(Language, CallsBindTightly) {
    static constexpr const char* kTruths[] = {
        "next 3 + 1 == 5",      "-next 3 == -4", "not next 3 == 5",
        "next #(4, 5)[2] == 6", "next -3 == -2", "next 3 - 1 == 3",
        "next 3-1 == 3",        "next(3) == 4",  "next (next 3) == 5"};
    for (const char* const text : kTruths)
        EXPECT_EQ(RunText(std::string("fn next x = x + 1; ") + text), "true") << text;
}

TEST(Language, CallsAndLines) {
    static constexpr Case kCases[] = {
        {"fn seven = 7\nseven()", "7"},
        {"fn seven = 7\n1 + seven ()", "8"},
        {"fn items = #(1, 2)\nitems().count", "2"},
        {"fn items = #(1, 2)\nitems()[2]", "2"},
        {"fn same x = x\nsame (same $Box001)", "$Box001"},
        {"FN pair a b = #(a, b)\nPAIR (1 + 1) \"x\"", "#(2, \"x\")"},
        {"f = append\nf #(1) 2", "#(1, 2)"},
        {"fn sum n = if n < 2 then n else n + sum (n - 1)\nsum 10", "55"},
        {"fn f = 1; fn f = 2; f()", "2"},
        {"1 +\n2", "3"},
        {"1\r\n2\r\n", "2"},
        {"x = 5\n-3", "-3"},
        {"x = 5\n(3)", "3"},
        {"x = #(1)\n(x)[1]", "1"},
        {"if false then 1\n\n else\n 2", "2"},
        {"if false then 1\n 3", "3"},
        {"(\n1\n\n2\n)", "2"},
        {"()", "undefined"},
    };
    ExpectAll(kCases);
}

TEST(Language, Statements) {
    static constexpr Case kCases[] = {
        {"if 1 == 2 then 2", "undefined"},
        {"if(true)then(5)else(6)", "5"},
        {"s = 0; for i = 1 to 4 do s += i; s", "10"},
        {"for i = 1 to 0 do nothing()", "OK"},
        {"for i = 2147483647 to 2147483647 do i", "OK"},
        {"s = 0; for i = 1 to 5 do (if i == 3 then continue; s += i); s", "12"},
        {"i = 9; for i = 1 to 3 do i; i", "9"},
        {"a = #(); for x in #(3, 1) do append a (x + 1); a", "#(4, 2)"},
        {"a = #(1, 2); for x = a do append a x; a", "#(1, 2, 1, 2)"},
        {"a = #(); for o in $* do append a o.name; a", "#(\"Box001\", \"Sphere001\")"},
        {"try undefined.x catch 6", "6"},
        {"try ( x = 2; nothing(); x = 3 ) catch ()", "undefined"},
        {"fn bad = nothing(); try bad() catch \"ok\"", "\"ok\""},
    };
    ExpectAll(kCases);
}

TEST(Language, Variables) {
    static constexpr Case kCases[] = {
        {"x", "undefined"},
        {"x = y = 3; x + Y", "6"},
        {"x = 5; (x = 6); x", "6"},
        // What is first set in a block belongs to the block.
        {"(x = 6); x", "undefined"},
        {"(x = 6; (x = 7); x)", "7"},
        {"x = 8; x += 2; x -= 1; x", "9"},
        {"x = 5; (x-=1); x", "4"},
        {"(append = 3; append)", "1:9: Cannot assign to read-only variable: append"},
        // A function sees what it sets and the global variables.
        {"fn f = (x = 5); f(); x", "undefined"},
        {"x = 1; fn f = (x = 5); f(); x", "5"},
        {"fn f = x; (x = 5; f())", "undefined"},
        {"fn f append = append + 1; f 2", "3"},
        {"fn down n = (here = n; if n > 0 then down (n - 1); here); down 3", "3"},
    };
    ExpectAll(kCases);
}

TEST(Language, CollectionsAndProperties) {
    static constexpr Case kCases[] = {
        {"a = #(1, 2, 3); a[2]", "2"},
        {"a = #(1, 2); a[a[1]]", "1"},
        {"#(1)[2]", "undefined"},
        {"$*[2]", "$Sphere001"},
        {"$sph*.count", "1"},
        {"selection.count", "0"},
        {"select $*; selection[2]", "$Sphere001"},
        {"select $Sphere001; selection as array", "#($Sphere001)"},
        {"select #($Sphere001, $Box001); selection[1]", "$Sphere001"},
        {"amin #(3, 1, 2)", "1"},
        {"amax #(3, 1.5, 3.5)", "3.5"},
        {"amin #()", "undefined"},
        {"append #(1) #(2)", "#(1, #(2))"},
        {"a = #(1); append a a; a.count", "2"},
        {"(interval 3 9).start", "3f"},
        {"animationRange = interval 5 10; animationRange.end", "10f"},
        {"$Box001.pivot = $Box001.center; $Box001.pivot", "[1,2,3]"},
        {"(integer) (10.5f)", "10"},
        {"(Integer) 2.9", "2"},
    };
    ExpectAll(kCases);
}

TEST(Language, TracksActionsAndPolyTools) {
    FakeHost host;
    script::Interpreter interpreter(host);
    host.tracks = {{"Position", {{160, true}, {1680, false}}}, {"Gone", {}, true, false}};
    static constexpr Case kDone[] = {
        {"trackviews.current.numSelTracks()", "2"},
        {"t = trackviews.current.getSelected 1", "SubAnim"},
        {"trackviews.current.getSelected(2)", "undefined"},
        {"trackviews.current.getSelected 3", "undefined"},
        {"numKeys t", "2"},
        {"getKeyTime t 2", "10.5f"},
        {"#(isKeySelected t 1, isKeySelected t 2)", "#(true, false)"},
        {"getKeyTime t 3", "1:1: Key index out of range: 3"},
        {"ActionMan.ExecuteAction 0 \"7\"", "true"},
        {"actionMan.executeAction -5 \"missing\"", "false"},
        {"if true then max Key  MODE -- and no more\n", "OK"},
        {"max tool zoomextents all", "OK"},
        {"b = PolyToolsUI.SculptButtons; b[4] = true; b[4]", "true"},
        {"PolyBoost.ToolToggle 2 4 false", "OK"},
    };
    ExpectAll(interpreter, kDone);
    EXPECT_EQ(host.TakeJournal(),
              "action 0 7; action -5 missing; max key mode; max tool zoomextents all; sculpt "
              "button 4 on; tool 2 4 off");
    host.has_polytools = false;
    EXPECT_EQ(RunText(interpreter, "PolyToolsUI.SculptTool"),
              "1:13: Unknown property: \"SculptTool\" in undefined");
    EXPECT_EQ(RunText(interpreter, "PolyBoost"), "undefined");
}

TEST(Language, InterfacesAndTexts) {
    FakeHost host;
    script::Interpreter interpreter(host);
    EXPECT_EQ(RunText(interpreter, "mouseConfigManager"), "undefined");
    host.interaction_mode = "Some Mode";
    static constexpr Case kAsked[] = {
        {"getPropNames mouseConfigManager", "#(#unreadable, #mode)"},
        {"getProperty mouseConfigManager #mode", "\"Some Mode\""},
        {"getProperty mouseConfigManager #unreadable", "1:1: Property cannot be read now"},
        {"getProperty mouseConfigManager #other",
         "1:1: Unknown property: \"other\" in <Interface:mouseConfigManager>"},
        {"getPropNames 5", "1:1: Unable to convert: 5 to type: Interface"},
        {"toLower \"Some MODE 1\"", "\"some mode 1\""},
        {"findString \"some mode\" \"mode\"", "6"},
        {"findString \"some mode\" \"Mode\"", "undefined"},
        {"\"text\" as string", "\"text\""},
        {"(1 + 1) as string", "\"2\""},
    };
    ExpectAll(interpreter, kAsked);
}

// ---- errors

TEST(Errors, Texts) {
    static constexpr Case kCases[] = {
        {"1 + @", "1:5: unexpected character '@'"},
        {"a = 1\r\n  b = ~", "2:7: unexpected character '~'"},
        {"\xc3\xa4", "1:1: unexpected character number 195"},
        {"\t\"abc", "1:2: the text is not closed"},
        {"\"a\\n\"", "1:3: \\ in a text is not supported"},
        {"#", "1:1: # needs a name or ( behind it"},
        {"$", "1:1: $ needs a name behind it"},
        {"12abc", "1:3: the number ends in 'a'"},
        {"2147483648", "1:1: the number does not fit into an integer"},
        {"1 2", "1:3: unexpected 2, expected a new line or ; between two expressions"},
        {"(1 2)", "1:4: unexpected 2, expected a new line, ; or )"},
        {"(1", "1:1: ( is not closed"},
        {"1 +", "1:4: unexpected the end of the text, expected an expression"},
        {"1 + $a $b", "1:8: unexpected $b, expected a new line or ; between two expressions"},
        {"1 = 2", "1:1: this cannot be assigned to"},
        {"(a) = 2", "1:1: this cannot be assigned to"},
        {"a.b += 2", "1:3: this cannot be assigned to"},
        {"#(1,)", "1:5: unexpected ), expected an expression"},
        {"#(1, 2", "1:7: unexpected the end of the text, expected ) after the items of an array"},
        {"a [1]", "1:3: unexpected [, expected a new line or ; between two expressions"},
        {"a[1", "1:4: unexpected the end of the text, expected ] after the index"},
        {"a.5", "1:3: unexpected 5, expected a property name after ."},
        {"if 1 == 1 2", "1:11: unexpected 2, expected then after the condition of if"},
        {"if true then 1; else 2", "1:17: unexpected else, expected an expression"},
        {"for 1 to 2 do 3", "1:5: unexpected 1, expected a variable after for"},
        {"for i to 2 do 3", "1:7: unexpected to, expected = (or in) after the variable of for"},
        {"for i = 1 to 2 collect i",
         "1:16: unexpected collect, expected do before the body of for"},
        {"try 1\n 2", "2:2: unexpected 2, expected catch after the expression of try"},
        {"fn f a 1", "1:8: unexpected 1, expected = after the parameters of a function"},
        {"continue", "1:1: continue outside of a loop"},
        {"for i = 1 to 2 do (fn f = continue)", "1:27: continue outside of a loop"},
        {"max key 5", "1:9: unexpected 5, expected a word of a max command"},
        {"max", "1:4: unexpected the end of the text, expected the words of a max command"},
        {"1 as 2", "1:6: unexpected 2, expected a class name after as"},
        {"f a ()",
         "1:7: unexpected the end of the text, expected no argument beside (); write "
         "(f()) to pass the result of a call"},
        {"a = 1\n while true do 1", "2:2: 'while' is not supported"},
        {"(local a = 1)", "1:2: 'local' is not supported"},
    };
    ExpectAll(kCases);
}

TEST(Errors, Values) {
    static constexpr Case kCases[] = {
        {"1 + \"a\"", "1:3: Unable to convert: \"a\" to type: Integer"},
        {"1.5 < undefined", "1:5: Unable to convert: undefined to type: Float"},
        {"\"a\" + 1", "1:5: No \"+\" function for \"a\""},
        {"undefined < 1", "1:11: No \"<\" function for undefined"},
        {"5f + 1", "1:4: No \"+\" function for 5f"},
        {"not 1", "1:5: not needs true or false, got: 1"},
        {"1 and true", "1:1: and needs true or false, got: 1"},
        {"false or undefined", "1:10: or needs true or false, got: undefined"},
        {"if 1 then 2", "1:4: if needs true or false, got: 1"},
        {"for i in 5 do i", "1:1: Unable to convert: 5 to type: Array"},
        {"for i = 1 to 5f do i", "1:1: Unable to convert: 5f to type: Integer"},
        {"5 as integer", "1:3: 'as integer' is not supported"},
        {"interval \"a\" 1", "1:1: Unable to convert: \"a\" to type: Time"},
        {"interval 5", "1:1: Argument count error: interval wanted 2, got 1"},
        {"fn f a b = 1; f 1", "1:15: Argument count error: f wanted 2, got 1"},
        {"append 1 2", "1:1: Unable to convert: 1 to type: Array"},
        {"select undefined", "1:1: Unable to convert: undefined to type: Array"},
        {"select #(1)", "1:1: Unable to convert: 1 to type: Node"},
        {"numKeys undefined", "1:1: Unable to convert: undefined to type: SubAnim"},
        {"actionMan.executeAction \"1\" \"2\"", "1:11: Unable to convert: \"1\" to type: Integer"},
        {"actionMan.executeAction 1 2", "1:11: Unable to convert: 2 to type: String"},
        {"PolyBoost.ToolToggle 2 1 1", "1:11: Unable to convert: 1 to type: Boolean"},
        {"PolyToolsUI.SculptButtons[1] = 2", "1:30: Unable to convert: 2 to type: Boolean"},
        {"a = 1\n\n  nothing 5", "3:3: Call needs function or class, got: undefined"},
        {"viewport()", "1:1: Call needs function or class, got: <Interface:viewport>"},
        {"fn f x = (\n  x.nothing\n)\nf 5", "2:5: Unknown property: \"nothing\" in 5"},
        {"actionMan.nothing", "1:11: Unknown property: \"nothing\" in <Interface:actionMan>"},
        {"$Missing.pivot", "1:10: Unknown property: \"pivot\" in undefined"},
        {"$Box001.nothing = 1", "1:17: Unknown property: \"nothing\" in $Box001"},
        {"$Box001.name = \"x\"", "1:14: Property cannot be set: \"name\" in $Box001"},
        {"$Box001.pivot = 5", "1:15: Unable to convert: 5 to type: Point3"},
        {"selection = 5", "1:11: Cannot assign to read-only variable: selection"},
        {"fn append a = a", "1:1: Cannot assign to read-only variable: append"},
        {"animationRange = 5", "1:16: Unable to convert: 5 to type: Interval"},
        {"nothing[1]", "1:8: No \"get\" function for undefined"},
        {"#(1)[0]", "1:5: Index must be a positive number, got: 0"},
        {"#(1)[1] = 2", "1:9: No \"put\" function for #(1)"},
        {"max nothing", "1:1: unknown max command: nothing"},
    };
    ExpectAll(kCases);
}

TEST(Errors, WhatStoodBeforeOneHasRun) {
    FakeHost host;
    script::Interpreter interpreter(host);
    EXPECT_EQ(RunText(interpreter, "a = 1; a = 2; a = ]"),
              "1:19: unexpected ], expected an expression");
    EXPECT_EQ(RunText(interpreter, "a"), "2");
}

// Where exactly a runaway script is stopped does not matter. A limit cannot be caught.
TEST(Errors, Limits) {
    static constexpr Case kCases[] = {
        {"for i = 1 to 2000000 do 1", "the script runs too long"},
        {"for i = 1 to 2000 do try (for j = 1 to 2000000 do 1) catch 0", "runs too long"},
        {"fn f = f()\nf()", "the script calls itself too deeply"},
        {"fn f = try f() catch 0\nf()", "the script calls itself too deeply"}};
    for (const Case& each : kCases) {
        const std::string text = RunText(each.text);
        EXPECT_NE(text.find(each.expected), std::string::npos) << each.text << ": " << text;
        EXPECT_GT(std::atoi(text.c_str()), 0) << text;
    }
}

TEST(Errors, DeepTextsAreRefused) {
    static constexpr const char* kParts[] = {"(",
                                             "#(",
                                             "- ",
                                             "not ",
                                             "1+",
                                             ".b",
                                             "[1]",
                                             "a[",
                                             "a = ",
                                             "if true then ",
                                             "try ",
                                             "fn f = ",
                                             "for i = 1 to 2 do ",
                                             " as array"};
    for (const std::string part : kParts) {
        std::string text = "a";
        if (part.find_first_of(".[ ") != 0) text.clear();
        for (int count = 0; count < 100000; ++count)
            text += part;
        const std::string result = RunText(text);
        EXPECT_NE(result.find("the expression is nested too deeply"), std::string::npos)
            << part << " gave " << result;
    }
}

// A function's body hangs below the text around it when both are taken apart.
TEST(Errors, DeepFunctionsInDeepTextsAreRefused) {
    std::string members;
    while (members.size() < 300)
        members += ".b";
    const std::string function = "fn g = a" + members;
    EXPECT_EQ(RunText(function), "g()");
    EXPECT_EQ(RunText("fn f = (" + function + ")" + members),
              "1:513: the expression is nested too deeply");
}

TEST(Errors, ArraysThatHoldThemselvesPrint) {
    const std::string text = RunText("a = #(1); append a a; append a a; append a a; a");
    EXPECT_EQ(text.substr(0, 14), "#(1, #(1, #(1,");
    EXPECT_NE(text.find("..."), std::string::npos);
    EXPECT_LT(text.size(), 5000u);
    EXPECT_EQ(RunText("a = #(); for i = 1 to 100000 do a = #(a); a = 1"), "1");
}

// ---- primitives, and texts within texts

TEST(Primitives, GetTheirArguments) {
    FakeHost host;
    script::Interpreter interpreter(host);
    host.primitives["kv_probe"] = [&](const script::Arguments& arguments) {
        return script::Value(script::ToInteger(arguments.at(0), host) > 0);
    };
    EXPECT_EQ(RunText(interpreter, "KV_Probe 1 \"x\" #y"), "true");
    EXPECT_EQ(host.TakeJournal(), "kv_probe 1 \"x\" #y");
    static constexpr Case kMore[] = {
        {"f = kv_probe; f -0.5", "false"},
        {"kv_probe", "kv_probe()"},
        {"kv_probe 1f", "true"},
        {"1; kv_probe \"x\"", "1:4: Unable to convert: \"x\" to type: Integer"},
        {"kv_probe true", "1:1: Unable to convert: true to type: Integer"},
        {"try (kv_probe undefined) catch \"caught\"", "\"caught\""},
        {"kv_probe = 1", "1:10: Cannot assign to read-only variable: kv_probe"},
    };
    ExpectAll(interpreter, kMore);
}

TEST(Primitives, TextsRunWithinTexts) {
    FakeHost host;
    script::Interpreter interpreter(host);
    std::string inner;
    host.primitives["kv_inner"] = [&](const script::Arguments&) {
        return script::Value(RunText(interpreter, inner));
    };
    inner = "x += 1";
    EXPECT_EQ(RunText(interpreter, "x = 1; kv_inner(); x"), "2");
    EXPECT_EQ(RunText(interpreter, "(y = 5; kv_inner(); y)"), "5");
    // An error inside ends the inner text only.
    inner = "\nnothing()";
    EXPECT_EQ(RunText(interpreter, "kv_inner()"),
              "\"2:1: Call needs function or class, got: undefined\"");
    // A function that is replaced while it runs goes on to its end.
    inner = "fn f = 2";
    EXPECT_EQ(RunText(interpreter, "fn f = (kv_inner(); 1); #(f(), f())"), "#(1, 2)");
    inner = "continue";
    EXPECT_EQ(RunText(interpreter, "for i = 1 to 2 do kv_inner()"), "OK");
}

// The limit counts all texts that run within one.
TEST(Primitives, TextsWithinTextsShareTheLimits) {
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
    EXPECT_EQ(RunText(interpreter, "1 + 1"), "2");
    host.on_action = [&] { RunText(interpreter, "for i = 1 to 900000 do 1"); };
    EXPECT_NE(RunText(interpreter, "for i = 1 to 9 do actionMan.executeAction 0 \"1\"")
                  .find("runs too long"),
              std::string::npos);
}

// What the host throws of its own passes through and leaves the interpreter usable.
TEST(Primitives, ForeignExceptionsPassThrough) {
    struct Foreign {};
    FakeHost host;
    script::Interpreter interpreter(host);
    host.on_action = [] { throw Foreign{}; };
    EXPECT_THROW(RunText(interpreter, "try actionMan.executeAction 0 \"1\" catch 0"), Foreign);
    EXPECT_EQ(RunText(interpreter, "s = 0; for i = 1 to 100000 do s += 1; s"), "100000");
}

// Whatever text comes in, there is a value or an error with a position.
TEST(Errors, RandomTextsNeverGoUnanswered) {
    std::istringstream source(
        "( ) #( [ ] , ; . = == + - -x < += -= a b f 1 2.5 3f \"s\" #n $* $B true undefined if then "
        "else do for in to fn try catch continue and or not as array while max append amin select "
        "selection count () name integer interval");
    const std::vector<std::string> words{std::istream_iterator<std::string>(source), {}};
    const char* const texts[] = {kDefineFrameView, kCenterPivot, kToggleSculptButton};
    // The same texts every time, so that a failure can be looked into.
    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp)
    std::mt19937 random(20240607);
    const auto any_word = [&] { return words[random() % words.size()]; };
    script::Limits limits;
    limits.steps = 2000;
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        if (round % 4 == 0) {
            text = texts[random() % std::size(texts)];
            for (int change = 0; change < 3; ++change)
                text.replace(random() % text.size(), random() % 6, any_word());
        } else {
            for (unsigned count = random() % 20; count > 0; --count)
                text += any_word() + (random() % 4 == 0 ? "\n" : " ");
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
