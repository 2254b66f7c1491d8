#include "script/script_texts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ScriptTexts, CommandsByteForByte) {
    EXPECT_STREQ(kFrameSelected, "kv_frameView #selected");
    EXPECT_STREQ(kFrameAll, "kv_frameView #all");
    EXPECT_STREQ(kPreviousKey, R"(max key mode; actionMan.executeAction 0 "50020"; max key mode)");
    EXPECT_STREQ(kNextKey, R"(max key mode; actionMan.executeAction 0 "50022"; max key mode)");
    EXPECT_STREQ(kCenterPivot,
                 "if selection != undefined then ( for obj in (selection as array) do obj.pivot = "
                 "obj.center )");
    EXPECT_STREQ(kResetViews,
                 "viewport.ResetAllViews(); completeRedraw(); max tool zoomextents all");
    EXPECT_STREQ(kSelectEverything, "select $*");
    EXPECT_STREQ(kQueryPolyTools,
                 "kv_graphiteSculptTool PolyToolsUI.SculptTool; kv_graphitePdTool "
                 "PolyToolsUI.PDTool; kv_polyShiftActive PolyToolsUI.PolyShiftActive;");
    EXPECT_STREQ(kToggleSculptButton,
                 "PolyToolsUI.SculptButtons[%i] = not "
                 "PolyToolsUI.SculptButtons[%i];PolyBoost.ToolToggle 2 %i "
                 "PolyToolsUI.SculptButtons[%i]");
}

// Written as lines with visible tabs, put together here: line feeds between them, a blank before
// every line but the first, and one behind every line but the last.
TEST(ScriptTexts, FrameViewByteForByte) {
    const char* const lines[] = {
        "fn kv_frameView selType =",
        "(",
        ">if trackview_isFocused() or trackbar_isFocused() then",
        ">(",
        ">>keyTimes = #()",
        ">>keyCount = 0",
        ">>for a=1 to (trackviews.current.numSelTracks()) do",
        ">>(",
        ">>>thisTrack = trackviews.current.getSelected(a)",
        ">>>if(thisTrack!=undefined) then",
        ">>>(",
        ">>>>try ( keyCount = numKeys thisTrack )",
        ">>>>catch ( keyCount = 0 )",
        ">>>>for key=1 to keyCount do",
        ">>>>(",
        ">>>>>if ( selType == #selected and not isKeySelected thisTrack key ) then continue",
        ">>>>>append keytimes ((integer) (getKeyTime thisTrack key))",
        ">>>>)",
        ">>>)",
        ">>)",
        ">>",
        ">>if(keytimes.count == 0) then",
        ">>(",
        ">>>if(selType == #selected) then",
        ">>>>kv_frameView(#all)",
        ">>)",
        ">>else",
        ">>(",
        ">>>maxtime = (amax keytimes)",
        ">>>mintime = (amin keytimes)",
        ">>>if ( maxtime == mintime ) then",
        ">>>(",
        ">>>>mintime-=1",
        ">>>>maxtime+=1",
        ">>>)",
        ">>>origRange = animationRange",
        ">>>animationRange = interval mintime maxtime",
        ">>>actionMan.executeAction 1 \"1040\"",
        ">>>actionMan.executeAction 1 \"2180\"",
        ">>>animationRange = origRange",
        ">>)",
        ">)",
        ">else",
        ">(",
        ">>if selType == #selected then",
        ">>>kv_zoomExtents 1",
        ">>else",
        ">>>kv_zoomExtents()",
        ">)",
        ")",
    };
    std::string expected;
    for (const char* line : lines) {
        if (!expected.empty()) expected += " \n ";
        for (const char* c = line; *c; ++c)
            expected += *c == '>' ? '\t' : *c;
    }
    EXPECT_EQ(std::string(kDefineFrameView), expected);
}

}  // namespace
