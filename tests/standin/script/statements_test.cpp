// Conditions, loops, blocks and their variables, functions, errors that scripts catch.
#include <gtest/gtest.h>

#include "tests/standin/script/fake_host.h"

namespace script_test {
namespace {

TEST(Statements, Conditions) {
    const Case cases[] = {
        {"if 1 == 1 then 2", "2"},
        {"if 1 == 2 then 2", "undefined"},
        {"if 1 == 2 then 2 else 3", "3"},
        {"if true do 4", "4"},
        {"if false do 4", "undefined"},
        {"if(true)then(5)else(6)", "5"},
        {"if false then 1 else if false then 2 else 3", "3"},
        {"if true then if false then 1 else 2", "2"},
        {"x = if true then 1 else 2; x", "1"},
        {"if true then (x = 1; x + 1) else 0", "2"},
    };
    ExpectAll(cases);
}

TEST(Statements, CountingLoops) {
    const Case cases[] = {
        {"s = 0; for i = 1 to 4 do s += i; s", "10"},
        {"for i = 1 to 3 do i", "OK"},
        {"for i = 1 to 3 collect i * 2", "#(2, 4, 6)"},
        {"for i = 1 to 0 collect i", "#()"},
        {"for i = 5 to 1 by -2 collect i", "#(5, 3, 1)"},
        {"for i = 1 to 10 by 4 collect i", "#(1, 5, 9)"},
        {"for i = 0.0 to 1 by 0.5 collect i", "#(0.0, 0.5, 1.0)"},
        {"for i = 1f to 3f collect i", "#(1f, 2f, 3f)"},
        {"for i = 1 to 6 where i > 3 collect i", "#(4, 5, 6)"},
        {"for i = 1 to 6 while i < 3 collect i", "#(1, 2)"},
        {"for i = 1 to 6 while i < 5 where i > 2 collect i", "#(3, 4)"},
        {"for i = 1 to 5 do if i == 3 then exit", "undefined"},
        {"n = 0; for i = 1 to 5 do (if i == 3 then exit; n = i); n", "2"},
        {"for i = 1 to 5 do if i == 3 then exit with i * 10", "30"},
        {"s = 0; for i = 1 to 5 do (if i == 3 then continue; s += i); s", "12"},
        {"for i = 1 to 5 collect (if i == 3 then continue; i)", "#(1, 2, 4, 5)"},
        {"s = 0; for i = 1 to 3 do for j = 1 to 3 do (if j == 2 then exit; s += 1); s", "3"},
        {"i = 9; for i = 1 to 3 do i; i", "9"},
        {"n = 3; s = 0; for i = 1 to n do (n = 10; s += 1); s", "3"},
        {"for i = 1 to 3 do x = i; x", "3"},
        {"i = 4; for i = 1 to i collect i", "#(1, 2, 3, 4)"},
        {"for i = 2147483647 to 2147483647 collect i", "#(2147483647)"},
    };
    ExpectAll(cases);
}

TEST(Statements, CollectionLoops) {
    const Case cases[] = {
        {"for x in #(3, 1) collect x + 1", "#(4, 2)"},
        {"for x = #(3, 1) collect x", "#(3, 1)"},
        {"for o in objects collect o.name", "#(\"Box001\", \"Sphere001\")"},
        {"for o in $Sph* collect o.name", "#(\"Sphere001\")"},
        {"for o in selection do undefined.x", "OK"},
        {"a = #(1, 2); for x in a do append a x; a", "#(1, 2, 1, 2)"},
        {"for x in #(1, 2, 3) where x != 2 collect x", "#(1, 3)"},
        {"for x in #(1, 2, 3) do if x == 2 do exit with \"two\"", "\"two\""},
    };
    ExpectAll(cases);
}

TEST(Statements, WhileLoops) {
    const Case cases[] = {
        {"n = 0; while n < 5 do n += 2; n", "6"},
        {"n = 0; while true do (n += 1; if n == 4 then exit); n", "4"},
        {"n = 0; s = 0; while n < 5 do (n += 1; if n == 2 then continue; s += n); s", "13"},
        {"while false do 1", "OK"},
        {"while true do exit with 3", "3"},
        {"n = 0; do n += 1 while n < 5; n", "5"},
        {"n = 10; do n += 1 while n < 5; n", "11"},
        {"n = 0; do (n += 1; if n < 3 then continue) while n < 5; n", "5"},
        {"do exit with 7 while true", "7"},
    };
    ExpectAll(cases);
}

TEST(Statements, Variables) {
    const Case cases[] = {
        {"x", "undefined"},
        {"x = 5; x", "5"},
        {"x = y = 3; x + y", "6"},
        {"x = 5; (x = 6); x", "6"},
        // What is first used in a block belongs to the block.
        {"(x = 6); x", "undefined"},
        {"(x = 6; (x = 7); x)", "7"},
        {"((x = 6); x)", "undefined"},
        {"(local x = 1, y, z = x + 1; #(x, y, z))", "#(1, undefined, 2)"},
        {"x = 1; (local x = 2; x = 3); x", "1"},
        {"(global x = 4); x", "4"},
        {"global x = 4, y; (x + 1)", "5"},
        {"(local a = 1; (global a; a = 2); a)", "1"},
        {"(local a = 1; (local a = 2); a)", "1"},
        // A block starts with new variables every time.
        {"for i = 1 to 2 collect (local seen; old = seen; seen = i; old)",
         "#(undefined, undefined)"},
        {"x = 8; x += 2; x -= 1; x *= 4; x /= 6; x", "6"},
        {"s = \"a\"; s += \"b\"; s", "\"ab\""},
        {"a = 5; (a-=1); a", "4"},
        {"(local select = 3; select)", "3"},
    };
    ExpectAll(cases);
}

TEST(Statements, FunctionsHaveVariablesOfTheirOwn) {
    const Case cases[] = {
        {"fn f = (x = 5); f(); x", "undefined"},
        {"fn f = x = 5; f(); x", "undefined"},
        {"x = 1; fn f = (x = 5); f(); x", "5"},
        {"fn down n = (here = n; if n > 0 then down (n - 1); here); down 3", "3"},
        {"fn f x = (if x > 1 then return \"big\"; \"small\"); #(f 1, f 2)",
         "#(\"small\", \"big\")"},
        {"fn f = for i = 1 to 9 do if i == 4 then return i; f()", "4"},
        {"fn f = try return 1 catch 2; f()", "1"},
        {"(fn inner x = x * 3; inner 4)", "12"},
        {"(fn fact n = if n < 2 then 1 else n * fact (n - 1); fact 5)", "120"},
        {"(fn inner x = x); inner", "undefined"},
        {"fn f = (fn g = 3; g()); f()", "3"},
        {"fn f = 1; fn f = 2; f()", "2"},
        {"fn f = (global f; fn g = 5; f = 7; 6); f()", "6"},
    };
    ExpectAll(cases);
}

// A name that is not known yet when a function is read belongs to that function.
TEST(Statements, FunctionsDoNotSeeGlobalsThatComeLater) {
    const Case cases[] = {
        {"fn f = later; later = 5; f()", "undefined"},
        {"global later; fn f = later; later = 5; f()", "5"},
        {"fn f = g 1; fn g x = x; f()", "1:8: Call needs function or class, got: undefined"},
    };
    ExpectAll(cases);
}

TEST(Statements, ErrorsCanBeCaught) {
    const Case cases[] = {
        {"try 5 catch 6", "5"},
        {"try undefined.x catch 6", "6"},
        {"try ( throw \"no\" ) catch ( getCurrentException() )", "\"no\""},
        {"try ( try throw \"a\" catch throw() ) catch getCurrentException()", "\"a\""},
        {"try ( try throw \"a\" catch throw \"b\" ) catch getCurrentException()", "\"b\""},
        {"try ( 1 / 0 ) catch ( \"caught\" )", "\"caught\""},
        {"x = 1; try ( x = 2; nothing(); x = 3 ) catch (); x", "2"},
        {"fn bad = throw \"deep\"; try bad() catch \"ok\"", "\"ok\""},
        {"for i = 1 to 3 collect (try (if i == 2 then throw \"x\"; i) catch -1)", "#(1, -1, 3)"},
        {"for i = 1 to 3 do try exit with i catch 0", "1"},
        {"try throw \"a\" catch 1; getCurrentException()", "\"\""},
    };
    ExpectAll(cases);
}

TEST(Statements, ExpressionsBeforeAnErrorHaveRun) {
    FakeHost host;
    script::Interpreter interpreter(host);
    EXPECT_EQ(RunText(interpreter, "a = 1; a = 2; a = ]"),
              "1:19: unexpected ], expected an expression");
    EXPECT_EQ(RunText(interpreter, "a"), "2");
}

TEST(Statements, GlobalsLiveOnAndLocalsDoNot) {
    FakeHost host;
    script::Interpreter interpreter(host);
    EXPECT_EQ(RunText(interpreter, "total = 4; fn triple x = x * 3; (hidden = 1)"), "1");
    EXPECT_EQ(RunText(interpreter, "triple total"), "12");
    EXPECT_EQ(RunText(interpreter, "hidden"), "undefined");
}

}  // namespace
}  // namespace script_test
