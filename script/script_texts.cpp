#include "script/script_texts.h"

// Frames the keys of the selected tracks while a track view or the track bar has the focus: the
// animation range is set to their times for the length of two commands of the track view. Otherwise
// the viewports frame the selection or everything.
char kDefineFrameView[] =
    "fn kv_frameView selType = \n"
    " ( \n"
    " \tif trackview_isFocused() or trackbar_isFocused() then \n"
    " \t( \n"
    " \t\tkeyTimes = #() \n"
    " \t\tkeyCount = 0 \n"
    " \t\tfor a=1 to (trackviews.current.numSelTracks()) do \n"
    " \t\t( \n"
    " \t\t\tthisTrack = trackviews.current.getSelected(a) \n"
    " \t\t\tif(thisTrack!=undefined) then \n"
    " \t\t\t( \n"
    " \t\t\t\ttry ( keyCount = numKeys thisTrack ) \n"
    " \t\t\t\tcatch ( keyCount = 0 ) \n"
    " \t\t\t\tfor key=1 to keyCount do \n"
    " \t\t\t\t( \n"
    " \t\t\t\t\tif ( selType == #selected and not isKeySelected thisTrack key ) then continue \n"
    " \t\t\t\t\tappend keytimes ((integer) (getKeyTime thisTrack key)) \n"
    " \t\t\t\t) \n"
    " \t\t\t) \n"
    " \t\t) \n"
    " \t\t \n"
    " \t\tif(keytimes.count == 0) then \n"
    " \t\t( \n"
    " \t\t\tif(selType == #selected) then \n"
    " \t\t\t\tkv_frameView(#all) \n"
    " \t\t) \n"
    " \t\telse \n"
    " \t\t( \n"
    " \t\t\tmaxtime = (amax keytimes) \n"
    " \t\t\tmintime = (amin keytimes) \n"
    " \t\t\tif ( maxtime == mintime ) then \n"
    " \t\t\t( \n"
    " \t\t\t\tmintime-=1 \n"
    " \t\t\t\tmaxtime+=1 \n"
    " \t\t\t) \n"
    " \t\t\torigRange = animationRange \n"
    " \t\t\tanimationRange = interval mintime maxtime \n"
    " \t\t\tactionMan.executeAction 1 \"1040\" \n"
    " \t\t\tactionMan.executeAction 1 \"2180\" \n"
    " \t\t\tanimationRange = origRange \n"
    " \t\t) \n"
    " \t) \n"
    " \telse \n"
    " \t( \n"
    " \t\tif selType == #selected then \n"
    " \t\t\tkv_zoomExtents 1 \n"
    " \t\telse \n"
    " \t\t\tkv_zoomExtents() \n"
    " \t) \n"
    " )";

char kFrameSelected[] = "kv_frameView #selected";
char kFrameAll[] = "kv_frameView #all";
char kPreviousKey[] = "max key mode; actionMan.executeAction 0 \"50020\"; max key mode";
char kNextKey[] = "max key mode; actionMan.executeAction 0 \"50022\"; max key mode";
char kCenterPivot[] =
    "if selection != undefined then ( for obj in (selection as array) do obj.pivot = obj.center )";
char kResetViews[] = "viewport.ResetAllViews(); completeRedraw(); max tool zoomextents all";
char kSelectEverything[] = "select $*";
char kQueryPolyTools[] =
    "kv_graphiteSculptTool PolyToolsUI.SculptTool; kv_graphitePdTool PolyToolsUI.PDTool; "
    "kv_polyShiftActive PolyToolsUI.PolyShiftActive;";

const char kToggleSculptButton[] =
    "PolyToolsUI.SculptButtons[%i] = not PolyToolsUI.SculptButtons[%i];"
    "PolyBoost.ToolToggle 2 %i PolyToolsUI.SculptButtons[%i]";
