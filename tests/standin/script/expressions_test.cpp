// Values, operators and their precedence, calls, and how a text is split into expressions.
#include <gtest/gtest.h>

#include "tests/standin/script/fake_host.h"

namespace script_test {
namespace {

TEST(Expressions, PrintsValuesAsTheListenerDoes) {
    const Case cases[] = {
        {"", "undefined"},
        {"   \n -- nothing\n ;; ", "undefined"},
        {"true", "true"},
        {"false", "false"},
        {"on", "true"},
        {"off", "false"},
        {"undefined", "undefined"},
        {"ok", "OK"},
        {"12", "12"},
        {"0x1F", "31"},
        {"0xffffffff", "-1"},
        {"1.5", "1.5"},
        {"1.", "1.0"},
        {".25", "0.25"},
        {"2e3", "2000.0"},
        {"1.5e-2", "0.015"},
        {"1e+30", "1e+30"},
        {"12f", "12f"},
        {"0.5f", "0.5f"},
        {"1s", "30f"},
        {"80t", "0.5f"},
        {"\"text\"", "\"text\""},
        {"\"a\\\"b\\\\c\\td\\n\\x41\"", "\"a\"b\\c\td\nA\""},
        {"#selected", "#selected"},
        {"#()", "#()"},
        {"#(1, 2)", "#(1, 2)"},
        {"#(1, #(\"a\", #b),\n 2.5)", "#(1, #(\"a\", #b), 2.5)"},
        {"[1,2.5,-3]", "[1,2.5,-3]"},
        {"interval 0 100", "(interval 0f 100f)"},
        {"interval 5f 4800t", "(interval 5f 30f)"},
        {"Integer", "Integer"},
        {"append", "append()"},
        {"fn Twice x = x * 2", "Twice()"},
        {"$Box001", "$Box001"},
        {"$sphere001", "$Sphere001"},
        {"$'Box001'", "$Box001"},
        {"$Missing", "undefined"},
        {"$", "undefined"},
        {"$*", "$*"},
        {"selection", "$selection"},
        {"objects", "$objects"},
        {"actionMan", "<Interface:actionMan>"},
        {"trackviews.current", "<Interface:trackviews.current>"},
    };
    ExpectAll(cases);
}

TEST(Expressions, OperatorsOnNumbers) {
    const Case cases[] = {
        {"7 + 2", "9"},
        {"7 - 2", "5"},
        {"7 * 2", "14"},
        {"7 / 2", "3"},
        {"-7 / 2", "-3"},
        {"7.0 / 2", "3.5"},
        {"7 / 2.0", "3.5"},
        {"2 ^ 10", "1024"},
        {"2 ^ 0.5 > 1.41", "true"},
        {"2.0 ^ 2", "4.0"},
        {"-5", "-5"},
        {"- -5", "5"},
        {"-2.5", "-2.5"},
        {"2147483647 + 1", "-2147483648"},
        {"(-2147483647 - 1) / -1", "-2147483648"},
        {"1 == 1.0", "true"},
        {"1 != 2", "true"},
        {"1 < 2", "true"},
        {"2 <= 2", "true"},
        {"1 > 2", "false"},
        {"2 >= 3", "false"},
        {"1 < 1.5", "true"},
    };
    ExpectAll(cases);
}

TEST(Expressions, OperatorsOnOtherValues) {
    const Case cases[] = {
        {"\"a\" + \"b\"", "\"ab\""},
        {"\"a\" == \"a\"", "true"},
        {"\"a\" == \"A\"", "false"},
        {"\"a\" < \"b\"", "true"},
        {"#One == #oNE", "true"},
        {"#one == #two", "false"},
        {"#one == \"one\"", "false"},
        {"undefined == undefined", "true"},
        {"undefined != 0", "true"},
        {"ok == ok", "true"},
        {"true != false", "true"},
        {"#(1) + #(2, 3)", "#(1, 2, 3)"},
        {"#(1) == #(1)", "false"},
        {"a = #(1); b = a; a == b", "true"},
        {"[1,2,3] + [1,1,1]", "[2,3,4]"},
        {"[1,2,3] - [1,1,1]", "[0,1,2]"},
        {"[1,2,3] * 2", "[2,4,6]"},
        {"2 * [1,2,3]", "[2,4,6]"},
        {"[2,4,6] / 2", "[1,2,3]"},
        {"-[1,-2,3]", "[-1,2,-3]"},
        {"[1,2,3] == [1,2,3]", "true"},
        {"[1,2,3].x", "1.0"},
        {"[1,2,3].Y", "2.0"},
        {"[1,2,3].z", "3.0"},
        {"5f + 1", "6f"},
        {"1 + 5f", "6f"},
        {"5f - 7f", "-2f"},
        {"5f * 2", "10f"},
        {"2 * 5f", "10f"},
        {"5f / 2", "2.5f"},
        {"-5f", "-5f"},
        {"5f == 5", "true"},
        {"5f < 6", "true"},
        {"4 < 5f", "true"},
        {"5f.frame", "5.0"},
        {"5f.ticks", "800.0"},
        {"(interval 3 9).start", "3f"},
        {"(interval 3 9).end", "9f"},
        {"(interval 1 2) == (interval 1f 2f)", "true"},
        {"$Box001 == $box001", "true"},
        {"$Box001 == $Sphere001", "false"},
        {"actionMan == actionMan", "true"},
        {"Integer == Float", "false"},
        {"append == append", "true"},
    };
    ExpectAll(cases);
}

TEST(Expressions, Conversions) {
    const Case cases[] = {
        {"2.9 as integer", "2"},
        {"-2.9 as integer", "-2"},
        {"\"12\" as integer", "12"},
        {"\"x\" as integer", "undefined"},
        {"3 as float", "3.0"},
        {"\"2.5\" as float", "2.5"},
        {"12 as string", "\"12\""},
        {"1.5 as string", "\"1.5\""},
        {"#abc as string", "\"abc\""},
        {"\"abc\" as name", "#abc"},
        {"#(1, \"a\") as string", "\"#(1, \"a\")\""},
        {"undefined as string", "\"undefined\""},
        {"10 as time", "10f"},
        {"10f as integer", "1600"},
        {"10f as float", "1600.0"},
        {"objects as array", "#($Box001, $Sphere001)"},
        {"selection as array", "#()"},
        {"#(1) as array", "#(1)"},
        {"true as booleanClass", "true"},
        {"1e30 as integer", "2147483647"},
        // A class that is called counts frames, a conversion counts ticks.
        {"integer 10f", "10"},
        {"(integer) (10f)", "10"},
        {"(integer) 2.9", "2"},
        {"(Integer) (12)", "12"},
        {"(float) 80t", "0.5"},
        {"float 3", "3.0"},
        {"point3 1 2 3", "[1,2,3]"},
        {"classOf 1", "Integer"},
        {"classOf 1.0", "Float"},
        {"classOf \"\"", "String"},
        {"classOf undefined", "UndefinedClass"},
        {"classOf true == booleanClass", "true"},
    };
    ExpectAll(cases);
}

TEST(Expressions, Precedence) {
    const Case cases[] = {
        // from loose to tight: or, and, not, comparison, + -, * /, ^, as, unary minus, call
        {"true or false and false", "true"},
        {"false and true or true", "true"},
        {"not false and false", "false"},
        {"not true or true", "true"},
        {"not 1 == 2", "true"},
        {"not not true", "true"},
        {"true == not false", "true"},
        {"1 + 1 == 2 and 2 < 3", "true"},
        {"1 < 2 == true", "true"},
        {"1 + 2 * 3", "7"},
        {"(1 + 2) * 3", "9"},
        {"10 - 4 - 3", "3"},
        {"16 / 4 / 2", "2"},
        {"2 * 3 ^ 2", "18"},
        {"2 ^ 3 ^ 2", "64"},
        {"-2 ^ 2", "4"},
        {"2 * -3", "-6"},
        {"2 - -3", "5"},
        {"2--3 is a comment\n", "2"},
        {"\"n\" + 5 as string", "\"n5\""},
        {"-5 as string", "\"-5\""},
        {"7 / 2 as float", "3.5"},
        {"fn double x = x * 2; double 3 + 1", "7"},
        {"fn double x = x * 2; 1 + double 3", "7"},
        {"fn double x = x * 2; double 3 as string", "\"6\""},
        {"fn double x = x * 2; -double 3", "-6"},
        {"fn double x = x * 2; double 3 ^ 2", "36"},
        {"fn double x = x * 2; not double 3 == 6", "false"},
        {"fn double x = x * 2; double #(4, 5)[2]", "10"},
        {"fn double x = x * 2; double [1,2,3].y", "4.0"},
        // A minus that leans towards its operand begins an argument.
        {"fn pair a b = #(a, b); pair 1 -2", "#(1, -2)"},
        {"fn double x = x * 2; double -3", "-6"},
        {"fn double x = x * 2; double 3 - 1", "5"},
        {"fn double x = x * 2; double 3-1", "5"},
        {"a = 5; a - 1", "4"},
        {"a = 5; a-1", "4"},
        {"5 -1", "4"},
    };
    ExpectAll(cases);
}

TEST(Expressions, LogicStopsAtTheFirstCertainAnswer) {
    const Case cases[] = {
        {"n = 0; fn hit = (n += 1; true); false and hit(); n", "0"},
        {"n = 0; fn hit = (n += 1; true); true or hit(); n", "0"},
        {"n = 0; fn hit = (n += 1; true); true and hit(); n", "1"},
        {"n = 0; fn hit = (n += 1; true); false or hit(); n", "1"},
    };
    ExpectAll(cases);
}

TEST(Expressions, Calls) {
    const Case cases[] = {
        {"fn seven = 7\nseven()", "7"},
        {"fn seven = 7\nseven ()", "7"},
        {"fn seven = 7\n1 + seven()", "8"},
        {"fn seven = 7\n(seven())", "7"},
        {"fn same x = x\nsame(3)", "3"},
        {"fn same x = x\nsame (3)", "3"},
        {"fn same x = x\nsame #a", "#a"},
        {"fn same x = x\nsame true", "true"},
        {"fn same x = x\nsame undefined", "undefined"},
        {"fn same x = x\nsame [1,2,3]", "[1,2,3]"},
        {"fn same x = x\nsame $Box001", "$Box001"},
        {"fn same x = x\nsame (same (same 4))", "4"},
        {"fn pair a b = #(a, b)\npair (1 + 1) \"x\"", "#(2, \"x\")"},
        {"fn pair a b = #(a, b)\npair 1 \\\n 2", "#(1, 2)"},
        {"fn items = #(1, 2)\nitems().count", "2"},
        {"fn items = #(1, 2)\n(items())[2]", "2"},
        {"f = append\nf #(1) 2", "#(1, 2)"},
        {"fs = #(append)\nfs[1] #(1) 2", "#(1, 2)"},
        {"fn fact n = if n < 2 then 1 else n * fact (n - 1)\nfact 10", "3628800"},
        {"function add a b = a + b\nADD 1 2", "3"},
        {"fn f a = ( a = a + 1; a )\nx = 1; f x; x", "1"},
    };
    ExpectAll(cases);
}

TEST(Expressions, LineBreaksEndOnlyCompleteExpressions) {
    const Case cases[] = {
        {"1 +\n2", "3"},
        {"1\n2", "2"},
        {"1; 2", "2"},
        {"1\r\n2\r\n", "2"},
        {"a =\n 5", "5"},
        {"not\n true", "false"},
        {"if true\n then 1\n else 2", "1"},
        {"if false then 1\n\n else\n 2", "2"},
        {"if false then 1\n 3", "3"},
        {"for i in\n #(1)\n do\n i", "OK"},
        {"try throw \"x\"\n catch\n 5", "5"},
        {"do 1\n while false", "OK"},
        {"fn f\n a =\n a", "f()"},
        {"x = 5\n-3", "-3"},
        {"x = #(1)\n[1,2,3]", "[1,2,3]"},
        {"x = 5\n(3)", "3"},
        {"1 + \\\n 2", "3"},
        {"1 \\\n + 2", "3"},
        // A comment is a blank, even when it holds a line break.
        {"1 /* two\n lines */ + 2", "3"},
        {"1 + /* two\n lines */ 2", "3"},
        {"1 -- one\n", "1"},
        {"(1; 2;)", "2"},
        {"(\n1\n\n2\n)", "2"},
        {"()", "undefined"},
    };
    ExpectAll(cases);
}

TEST(Expressions, NamesDoNotRegardCase) {
    const Case cases[] = {
        {"KeyTimes = 5; keytimes", "5"}, {"TRUE AND Not FALSE", "true"}, {"FN F A = a\nf 3", "3"},
        {"#(1,2).COUNT", "2"},           {"AMAX #(1, 3, 2)", "3"},
    };
    ExpectAll(cases);
}

TEST(Expressions, Indexes) {
    const Case cases[] = {
        {"a = #(1, 2, 3); a[2]", "2"},
        {"a = #(1, 2, 3); a[4]", "undefined"},
        {"a = #(1); a[3] = 7; a", "#(1, undefined, 7)"},
        {"a = #(1, 2); a[1] += 5; a", "#(6, 2)"},
        {"a = #(#(1, 2)); a[1][2] = 9; a", "#(#(1, 9))"},
        {"a = #(1, 2); a[a[1]]", "1"},
        {"\"abc\"[2]", "\"b\""},
        {"\"abc\"[4]", "undefined"},
        {"\"abc\".count", "3"},
        {"objects[2]", "$Sphere001"},
        {"objects[3]", "undefined"},
        {"objects.count", "2"},
        {"$*[1]", "$Box001"},
        {"$sph*.count", "1"},
        {"$*00?.count", "2"},
    };
    ExpectAll(cases);
}

TEST(Expressions, CollectionFunctions) {
    const Case cases[] = {
        {"a = #(); append a 1; append a 2; a", "#(1, 2)"},
        {"append #(1) #(2)", "#(1, #(2))"},
        {"a = #(); b = a; append b 1; a", "#(1)"},
        {"amin #(3, 1, 2)", "1"},
        {"amax #(3, 1, 2)", "3"},
        {"amin 3 1 2", "1"},
        {"amax 3 1.5", "3"},
        {"amin #()", "undefined"},
        {"amax #(\"a\", \"c\", \"b\")", "\"c\""},
        {"amax #(1f, 3f)", "3f"},
        {"abs -5", "5"},
        {"abs -5f", "5f"},
        {"abs 2.5", "2.5"},
        {"getNodeByName \"box001\"", "$Box001"},
        {"getNodeByName \"none\"", "undefined"},
        {"a = #(1); append a a; a.count", "2"},
    };
    ExpectAll(cases);
}

TEST(Expressions, AnArrayThatHoldsItselfPrints) {
    const std::string text = RunText("a = #(1); append a a; a");
    EXPECT_EQ(text.substr(0, 14), "#(1, #(1, #(1,");
    EXPECT_NE(text.find("..."), std::string::npos);
}

TEST(Expressions, DeeplyNestedArraysAreTakenApart) {
    EXPECT_EQ(RunText("a = #(); for i = 1 to 100000 do a = #(a); a = 1"), "1");
}

}  // namespace
}  // namespace script_test
