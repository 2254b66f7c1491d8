// What scripts can read and change in the host, and texts that run within other texts.
#include <gtest/gtest.h>

#include "tests/standin/script/fake_host.h"

namespace script_test {
namespace {

using Journal = std::vector<std::string>;

class HostAccess : public testing::Test {
protected:
    HostAccess() {
        host.AddNode("Box001", {1, 2, 3});
        host.AddNode("Box002", {4, 5, 6});
        host.AddNode("Cone001");
    }
    std::string Evaluate(std::string_view text) { return RunText(interpreter, text); }

    FakeHost host;
    script::Interpreter interpreter{host};
};

TEST_F(HostAccess, NodeProperties) {
    EXPECT_EQ(Evaluate("$Box001.name"), "\"Box001\"");
    EXPECT_EQ(Evaluate("$Box001.center"), "[1,2,3]");
    EXPECT_EQ(Evaluate("$Box001.pos = [7,8,9]; $Box001.position"), "[7,8,9]");
    EXPECT_EQ(Evaluate("$Box001.pos += [1,1,1]; $Box001.pos.x"), "8.0");
    EXPECT_EQ(Evaluate("$Box001.pivot = $Box001.center; $Box001.pivot"), "[1,2,3]");
    EXPECT_EQ(Evaluate("$Box001.center = [0,0,1]; $Box001.center"), "[0,0,1]");
    EXPECT_EQ(Evaluate("$Box001.isHidden"), "false");
    EXPECT_EQ(Evaluate("$Box001.isHidden = true; $Box001.isHidden"), "true");
}

TEST_F(HostAccess, ObjectSetsAreLive) {
    EXPECT_EQ(Evaluate("s = selection; s.count"), "0");
    EXPECT_EQ(Evaluate("select $Box*; s.count"), "2");
    EXPECT_EQ(Evaluate("s as array"), "#($Box001, $Box002)");
    EXPECT_EQ(Evaluate("$"), "$selection");
    EXPECT_EQ(Evaluate("select $Cone001; $"), "$Cone001");
    EXPECT_EQ(Evaluate("$box00?.isHidden = true; for o in objects collect o.isHidden"),
              "#(true, true, false)");
    EXPECT_EQ(Evaluate("$selection[1]"), "$Cone001");
    EXPECT_EQ(Evaluate("$objects.count"), "3");
}

TEST_F(HostAccess, SelectionFunctions) {
    Evaluate("select #($Cone001, $Box001)");
    EXPECT_EQ(host.selection, (std::vector<script::NodeId>{3, 1}));
    Evaluate("selectMore $Box*");
    EXPECT_EQ(host.selection, (std::vector<script::NodeId>{3, 1, 2}));
    Evaluate("deselect $Box001");
    EXPECT_EQ(host.selection, (std::vector<script::NodeId>{3, 2}));
    EXPECT_EQ(Evaluate("clearSelection()"), "OK");
    EXPECT_TRUE(host.selection.empty());
    Evaluate("hide $*; unhide $Cone001");
    EXPECT_TRUE(host.nodes[0].hidden);
    EXPECT_TRUE(host.nodes[1].hidden);
    EXPECT_FALSE(host.nodes[2].hidden);
}

TEST_F(HostAccess, Times) {
    EXPECT_EQ(Evaluate("animationRange"), "(interval 0f 100f)");
    EXPECT_EQ(Evaluate("animationRange = interval 5 10; animationRange.end"), "10f");
    EXPECT_EQ(Evaluate("sliderTime = 12; sliderTime"), "12f");
    EXPECT_EQ(Evaluate("sliderTime += 5f; currentTime"), "17f");
    EXPECT_EQ(host.TakeJournal(), (Journal{"range (interval 5f 10f)", "time 12f", "time 17f"}));
}

TEST_F(HostAccess, TracksAndKeys) {
    host.tracks = {{"Position", {{160, true}, {1680, false}}}, {"Gone", {}, true, false}};
    EXPECT_EQ(Evaluate("trackviews.current.numSelTracks()"), "2");
    EXPECT_EQ(Evaluate("t = trackviews.current.getSelected 1"), "SubAnim:Position");
    EXPECT_EQ(Evaluate("trackviews.current.getSelected 2"), "undefined");
    EXPECT_EQ(Evaluate("trackviews.current.getSelected(3)"), "undefined");
    EXPECT_EQ(Evaluate("numKeys t"), "2");
    EXPECT_EQ(Evaluate("getKeyTime t 2"), "10.5f");
    EXPECT_EQ(Evaluate("(integer) (getKeyTime t 2)"), "10");
    EXPECT_EQ(Evaluate("#(isKeySelected t 1, isKeySelected t 2)"), "#(true, false)");
    EXPECT_EQ(Evaluate("getKeyTime t 3"), "1:1: Key index out of range: 3");
}

TEST_F(HostAccess, ActionsAndCommands) {
    EXPECT_EQ(Evaluate("actionMan.executeAction 0 \"50020\""), "true");
    EXPECT_EQ(Evaluate("actionMan.executeAction -5 \"missing\""), "false");
    EXPECT_EQ(Evaluate("ActionMan.ExecuteAction(0) \"7\""), "true");
    EXPECT_EQ(Evaluate("max Key  MODE"), "OK");
    EXPECT_EQ(Evaluate("(max key mode)"), "OK");
    EXPECT_EQ(Evaluate("if true then max key mode -- and no more\n"), "OK");
    EXPECT_EQ(host.TakeJournal(), (Journal{"action 0 50020", "action -5 missing", "action 0 7",
                                           "max key mode", "max key mode", "max key mode"}));
}

TEST_F(HostAccess, PolyTools) {
    host.sculpt_tool = 3;
    host.paint_deform_tool = 4;
    EXPECT_EQ(Evaluate("PolyToolsUI.SculptTool"), "3");
    EXPECT_EQ(Evaluate("polytoolsui.pdtool"), "4");
    EXPECT_EQ(Evaluate("PolyToolsUI.PolyShiftActive"), "false");
    EXPECT_EQ(Evaluate("PolyToolsUI.SculptButtons[4]"), "false");
    EXPECT_EQ(Evaluate("PolyToolsUI.SculptButtons[4] = true; PolyToolsUI.SculptButtons[4]"),
              "true");
    EXPECT_EQ(Evaluate("b = PolyToolsUI.SculptButtons; b[4]"), "true");
    EXPECT_EQ(Evaluate("PolyBoost.ToolToggle 2 4 false"), "OK");
    EXPECT_EQ(host.TakeJournal(), (Journal{"sculpt button 4 on", "tool 2 4 off"}));
}

TEST_F(HostAccess, Listener) {
    EXPECT_EQ(Evaluate("print \"a\"; print 5; print #(1, #b)"), "#(1, #b)");
    EXPECT_EQ(host.listener, "\"a\"\n5\n#(1, #b)\n");
    host.listener.clear();
    EXPECT_EQ(Evaluate("format \"% and %: %\\n\" 1 \"two\" #three"), "OK");
    EXPECT_EQ(host.listener, "1 and two: #three\n");
    host.listener.clear();
    Evaluate("format \"plain\"");
    EXPECT_EQ(host.listener, "plain");
}

TEST_F(HostAccess, PrimitivesGetTheirArguments) {
    script::Arguments seen;
    host.primitives["kv_probe"] = [&seen](const script::Arguments& arguments) {
        seen = arguments;
        return script::Value::Boolean(true);
    };
    EXPECT_EQ(Evaluate("kv_probe()"), "true");
    EXPECT_EQ(seen.size(), 0u);
    EXPECT_EQ(Evaluate("KV_Probe 1 \"x\" #y"), "true");
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(script::ToInteger(seen[0]), 1);
    EXPECT_EQ(script::ToString(seen[1]), "x");
    EXPECT_EQ(Evaluate("kv_probe"), "kv_probe()");
    EXPECT_EQ(Evaluate("f = kv_probe; f 0"), "true");
    EXPECT_EQ(Evaluate("(fn inner = kv_probe 7; inner())"), "true");
}

TEST_F(HostAccess, PrimitivesRefuseWrongArguments) {
    host.primitives["kv_number"] = [](const script::Arguments& arguments) {
        script::ToInteger(arguments.at(0));
        return script::Value::Boolean(true);
    };
    host.primitives["kv_flag"] = [](const script::Arguments& arguments) {
        script::ToBoolean(arguments.at(0));
        return script::Value::Boolean(true);
    };
    EXPECT_EQ(Evaluate("kv_number 3"), "true");
    EXPECT_EQ(Evaluate("kv_number 3.7"), "true");
    EXPECT_EQ(Evaluate("1; kv_number \"x\""), "1:4: Unable to convert: \"x\" to type: Integer");
    EXPECT_EQ(Evaluate("kv_number undefined"),
              "1:1: Unable to convert: undefined to type: Integer");
    EXPECT_EQ(Evaluate("kv_number true"), "1:1: Unable to convert: true to type: Integer");
    EXPECT_EQ(Evaluate("kv_flag on"), "true");
    EXPECT_EQ(Evaluate("kv_flag 1"), "1:1: Unable to convert: 1 to type: Boolean");
    EXPECT_EQ(Evaluate("try kv_flag 1 catch \"caught\""), "\"caught\"");
}

TEST_F(HostAccess, TextsRunWithinTexts) {
    host.primitives["kv_evaluate"] = [this](const script::Arguments& arguments) {
        return script::Value::Text(Evaluate(script::ToString(arguments.at(0))));
    };
    EXPECT_EQ(Evaluate("x = 1; kv_evaluate \"x = x + 1\""), "\"2\"");
    EXPECT_EQ(Evaluate("x"), "2");
    EXPECT_EQ(Evaluate("(y = 5; kv_evaluate \"y = 6\"; y)"), "5");
    // An error inside ends the inner text only.
    EXPECT_EQ(Evaluate("kv_evaluate \"\\nthrow \\\"no\\\"\""), "\"2:1: no\"");
    // A function that is replaced while it runs goes on to its end.
    EXPECT_EQ(Evaluate("fn f = (kv_evaluate \"fn f = 2\"; 1); #(f(), f())"), "#(1, 2)");
    // `exit` and `continue` do not leave a text.
    EXPECT_EQ(Evaluate("for i = 1 to 2 collect kv_evaluate \"exit\""),
              "#(\"1:1: exit outside of a loop\", \"1:1: exit outside of a loop\")");
}

TEST_F(HostAccess, AnErrorInsideDoesNotDisturbTheTextAround) {
    host.on_action = [this] {
        EXPECT_EQ(Evaluate("throw \"inner\""), "1:1: inner");
        EXPECT_EQ(Evaluate("(fn deep n = deep (n + 1); try deep 1 catch 0)").substr(0, 2), "1:");
    };
    EXPECT_EQ(Evaluate("try throw \"outer\" catch (actionMan.executeAction 0 \"1\"; "
                       "getCurrentException())"),
              "\"outer\"");
}

// What the host throws of its own passes through and leaves the interpreter usable.
TEST_F(HostAccess, ForeignExceptionsPassThrough) {
    struct Foreign {};
    host.on_action = [] { throw Foreign{}; };
    EXPECT_THROW(Evaluate("for i = 1 to 3 do (try actionMan.executeAction 0 \"1\" catch 0)"),
                 Foreign);
    host.on_action = nullptr;
    EXPECT_EQ(Evaluate("x = 0; while x < 100000 do x += 1; x"), "100000");
    EXPECT_EQ(Evaluate("fn down n = if n > 0 then down (n - 1) else n; down 30"), "0");
}

TEST_F(HostAccess, ValuesPrintWithoutAHost) {
    EXPECT_EQ(script::ToText(script::Value::Node(7)), "$node:7");
    EXPECT_EQ(script::ToText(script::Value::Track(3)), "SubAnim:3");
    EXPECT_EQ(script::ToText(script::Value::Text("x")), "\"x\"");
}

}  // namespace
}  // namespace script_test
