// Each function of host/ against the raw host: which member or export it calls, where, and what it
// hands over.

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "tests/abi/raw_host/raw_plugin.h"

namespace raw_host {
namespace {

// Truth as a host may well have it: none of the low 8 bits is set.
constexpr uint64_t kTrue = 0x100;
constexpr uint64_t kWindow = 0xFFFFFFFF80010203;  // a window's number, sign and all
constexpr int kLowest = std::numeric_limits<int>::min();

// In a bool nothing but the lowest byte counts.
bool Truth(uint64_t answer) {
    return (answer & 0xFF) != 0;
}
int Int(uint64_t answer) {
    return static_cast<int>(answer);
}

uint64_t Word(const void* address) {
    return reinterpret_cast<uint64_t>(address);
}

class HostFunctions : public ::testing::Test {
protected:
    void TearDown() override { m_host.ExpectNoMore(); }

    void ExpectCore() { m_host.Expect("GetCOREInterface", {}, m_core); }
    // A call of the core interface, which is looked up first.
    void ExpectOfCore(const std::string& member, std::vector<Argument> arguments,
                      uint64_t answer = 0) {
        ExpectCore();
        arguments.insert(arguments.begin(), m_core);
        m_host.Expect("Interface." + member, std::move(arguments), answer);
    }
    void ExpectActionManager() { ExpectOfCore("GetActionManager", {}, m_actions); }
    void ExpectAction(unsigned long table, int action) {
        ExpectActionManager();
        m_host.Expect("IActionManager.FindTable", {m_actions, table}, m_table);
        m_host.Expect("ActionTable.GetAction", {m_table, action}, m_item);
    }
    void ExpectMenuManager() { ExpectOfCore("GetMenuManager", {}, m_menus); }
    void ExpectRecorder() { ExpectOfCore("GetMacroRecorder", {}, m_recorder); }
    void ExpectSets() {
        m_host.Expect("GetCOREInterfaceOfId", {Argument::At(0x01CF1CC5042A42B3)}, m_sets);
    }
    void ExpectButtonOfWindow() { m_host.Expect("GetICustButton", {kWindow}, m_button); }
    void ExpectRelease() { m_host.Expect("ReleaseICustButton", {m_button}); }

    Host& m_host = TheHost();
    Plugin& m_plugin = ThePlugin();
    const uint64_t m_core = m_host.Object("Interface");
    const uint64_t m_view = m_host.Object("ViewExp");
    const uint64_t m_mode = m_host.Object("CommandMode");
    const uint64_t m_actions = m_host.Object("IActionManager");
    const uint64_t m_table = m_host.Object("ActionTable");
    const uint64_t m_item = m_host.Object("ActionItem");
    const uint64_t m_menus = m_host.Object("IMenuManager");
    const uint64_t m_menu = m_host.Object("IMenu");
    const uint64_t m_entry = m_host.Object("IMenuItem");
    const uint64_t m_button = m_host.Object("ICustButton");
    const uint64_t m_node = m_host.Object("INode");
    const uint64_t m_recorder = m_host.Object("MacroRecorder");
    const uint64_t m_sets = m_host.Object("INamedSelectionSetManager");
    const uint64_t m_toolbars = m_host.Memory(64);
};

// ---- core
// ----------------------------------------------------------------------------------------

TEST_F(HostFunctions, Core) {
    m_host.Expect("Get3DSMAXVersion", {}, 0x364C2500);
    EXPECT_EQ(Int(m_plugin.Call("Release", {})), 13900);
    EXPECT_EQ(m_plugin.Call("VersionWord", {}) & 0xFFFFFFFF, 0x364C2500u);
    ExpectOfCore("GetMAXHWnd", {}, kWindow);
    EXPECT_EQ(m_plugin.Call("MainWindow", {}), kWindow);
    const char kFolder[] = "C:\\plugcfg";
    ExpectOfCore("GetDir", {9}, Word(kFolder));
    EXPECT_EQ(m_plugin.Call("ConfigurationDirectory", {}), Word(kFolder));
    ExpectOfCore("RegisterDlgWnd", {kWindow});
    m_plugin.Call("RegisterDialogWindow", {kWindow});
    ExpectOfCore("UnRegisterDlgWnd", {kWindow}, 1);
    m_plugin.Call("WithdrawDialogWindow", {kWindow});
}

TEST_F(HostFunctions, Listener) {
    const uint64_t stream = m_host.Object("WindowStream");
    const uint64_t listener = m_host.Memory(160);
    std::memcpy(reinterpret_cast<void*>(listener + 104), &stream, sizeof(stream));
    std::memcpy(reinterpret_cast<void*>(m_host.DataAt("the_listener")), &listener,
                sizeof(listener));
    const char kText[] = "some text";
    m_host.Expect("WindowStream.puts", {stream, Argument::Text(kText)}, Word(kText));
    m_host.Expect("WindowStream.flush", {stream});
    m_plugin.Call("PrintToListener", {Word(kText)});
}

// ---- viewports
// -----------------------------------------------------------------------------------

TEST_F(HostFunctions, Viewports) {
    uint64_t view = 0;
    ExpectOfCore("GetViewport", {kWindow}, m_view);
    m_plugin.Call("Viewport::OfWindow", {Word(&view), kWindow});
    EXPECT_EQ(view, m_view);
    view = 0;
    ExpectOfCore("GetActiveViewport", {}, m_view);
    m_plugin.Call("Viewport::Active", {Word(&view)});
    EXPECT_EQ(view, m_view);
    m_host.Expect("ViewExp.GetHWnd", {m_view}, kWindow);
    EXPECT_EQ(m_plugin.Call("Viewport::Window", {Word(&view)}), kWindow);
    for (const uint64_t answer : {kTrue, uint64_t{0}}) {
        m_host.Expect("ViewExp.IsPerspView", {m_view}, answer);
        EXPECT_EQ(Truth(m_plugin.Call("Viewport::IsPerspective", {Word(&view)})), answer != 0);
    }
    for (const int type : {6, 7, 0x106}) {
        m_host.Expect("ViewExp.GetViewType", {m_view}, static_cast<uint64_t>(type));
        EXPECT_EQ(Truth(m_plugin.Call("Viewport::IsUserView", {Word(&view)})), type == 6);
    }
    for (const uint64_t spot : {m_node, uint64_t{0x100000000}, uint64_t{0}}) {
        m_host.Expect("ViewExp.GetViewSpot", {m_view}, spot);
        EXPECT_EQ(Truth(m_plugin.Call("Viewport::IsLocked", {Word(&view)})), spot != 0);
    }
    ExpectOfCore("ReleaseViewport", {m_view});
    m_plugin.Call("Viewport::~Viewport", {Word(&view)});
    ExpectOfCore("SetActiveViewport", {kWindow}, 1);
    m_plugin.Call("SetActiveViewport", {kWindow});
}

// ---- command modes
// -------------------------------------------------------------------------------

TEST_F(HostFunctions, CommandModes) {
    ExpectOfCore("GetCommandMode", {}, m_mode);
    m_host.Expect("CommandMode.ID", {m_mode}, 202);
    EXPECT_EQ(m_plugin.CallForInt("CurrentModeId", {}), 202);
    ExpectOfCore("GetCommandMode", {}, m_mode);
    m_host.Expect("CommandMode.Class", {m_mode}, 7);
    EXPECT_EQ(m_plugin.CallForInt("CurrentModeClass", {}), 7);
    ExpectOfCore("GetCommandStackSize", {}, 3);
    EXPECT_EQ(Int(m_plugin.Call("ModeStackSize", {})), 3);
    ExpectOfCore("PushStdCommandMode", {0xFFFF});
    m_plugin.Call("PushStandardMode", {WithRubbish(Travel::kInt, 0xFFFF)});
    ExpectOfCore("PopCommandMode", {});
    m_plugin.Call("PopMode", {});
    ExpectOfCore("GetCommandStackSize", {}, 2);
    ExpectOfCore("PopCommandMode", {});
    m_plugin.Call("PopModeIfStacked", {});
    ExpectOfCore("GetCommandStackSize", {}, 1);
    m_plugin.Call("PopModeIfStacked", {});
    const uint64_t callback = m_host.Memory(8);
    ExpectOfCore("RegisterCommandModeChangedCallback", {callback});
    m_plugin.Call("RegisterModeCallback", {callback});
    ExpectOfCore("PushStdCommandMode", {1});
    m_plugin.Call("PrepareDrag", {});
    ExpectOfCore("PopCommandMode", {});
    m_plugin.Call("EndDrag", {});
}

// ---- scene
// ---------------------------------------------------------------------------------------

TEST_F(HostFunctions, Selection) {
    ExpectOfCore("GetSelNodeCount", {}, 70000);
    EXPECT_EQ(Int(m_plugin.Call("SelectedNodeCount", {})), 70000);
    ExpectOfCore("GetSelNode", {69999}, m_node);
    EXPECT_EQ(m_plugin.Call("SelectedNode", {69999}), m_node);
    ExpectOfCore("ClearNodeSelection", {1});
    m_plugin.Call("ClearSelection", {});
    for (const uint64_t level : {uint64_t{0x100}, uint64_t{0}}) {
        ExpectOfCore("GetSubObjectLevel", {}, level);
        EXPECT_EQ(Truth(m_plugin.Call("IsSubObjectEditing", {})), level != 0);
    }
}

TEST_F(HostFunctions, Nodes) {
    for (const uint64_t hidden : {kTrue, uint64_t{0}}) {
        m_host.Expect("INode.IsHidden", {m_node, 0, 0}, hidden);
        EXPECT_EQ(Truth(m_plugin.Call("IsNodeHidden", {m_node})), hidden != 0);
    }
    m_host.Expect("INode.Hide", {m_node, 1});
    m_plugin.Call("HideNode", {m_node, WithRubbish(Travel::kBool, 1)});
    m_host.Expect("INode.Hide", {m_node, 0});
    m_plugin.Call("HideNode", {m_node, WithRubbish(Travel::kBool, 0)});
    m_host.Expect("Interval::Interval", {Argument::Any(), kLowest, 0x7FFFFFFF},
                  [](const Words& words) {
                      auto* const ends = reinterpret_cast<uint32_t*>(words[0]);
                      ends[0] = static_cast<uint32_t>(words[1]);
                      ends[1] = static_cast<uint32_t>(words[2]);
                      return words[0];
                  });
    m_host.Expect("INode.NotifyDependents",
                  {m_node, uint64_t{0x7FFFFFFF80000000}, 0x40, 0x50, 0xFFFFFFF0u, 1, 0}, 1);
    m_plugin.Call("UpdateNodeDisplay", {m_node});
}

TEST_F(HostFunctions, ListsOfNodes) {
    const uint64_t list = m_host.Memory(8);
    m_host.Expect("new", {8}, list);
    EXPECT_EQ(m_plugin.Call("NewNodeList", {}), list);
    EXPECT_EQ(*reinterpret_cast<const uint64_t*>(list), 0u);
    EXPECT_EQ(Int(m_plugin.Call("NodeCount", {list})), 0);

    // The head that the host makes: two counts, then the elements.
    struct {
        int count, allocated;
        uint64_t elements[4];
    } head = {2, 4, {m_host.Object("INode", 1), m_host.Object("INode", 2), 0, 0}};
    *reinterpret_cast<uint64_t*>(list) = Word(&head);
    EXPECT_EQ(Int(m_plugin.Call("NodeCount", {list})), 2);
    EXPECT_EQ(m_plugin.Call("NodeAt", {list, 1}), head.elements[1]);
    m_host.Expect("TBInsertAt", {list, 2, 1, Argument::At(m_node), 8, 70001}, 3);
    m_plugin.Call("AppendNode", {list, m_node, WithRubbish(Travel::kInt, 70001)});
    ExpectOfCore("SelectNodeTab", {list, 1, 1});
    m_plugin.Call("AddToSelection", {list});
    m_host.Expect("zfree", {list});
    m_host.Expect("delete", {list});
    m_plugin.Call("FreeNodeList", {list});
}

TEST_F(HostFunctions, SelectionSets) {
    const char kOther[] = "another";
    const char kWanted[] = "wanted";
    ExpectSets();
    m_host.Expect("INamedSelectionSetManager.GetNumNamedSelSets", {m_sets}, 3);
    m_host.Expect("INamedSelectionSetManager.GetNamedSelSetName", {m_sets, 0}, Word(kOther));
    m_host.Expect("INamedSelectionSetManager.GetNamedSelSetName", {m_sets, 1}, Word(kWanted));
    EXPECT_EQ(Int(m_plugin.Call("FindSelectionSet", {Word("wanted")})), 1);
    ExpectSets();
    m_host.Expect("INamedSelectionSetManager.GetNamedSelSetItemCount", {m_sets, 70001}, 5);
    EXPECT_EQ(Int(m_plugin.Call("SelectionSetNodeCount", {70001})), 5);
    ExpectSets();
    m_host.Expect("INamedSelectionSetManager.GetNamedSelSetItem", {m_sets, 70001, 4}, m_node);
    EXPECT_EQ(m_plugin.Call("SelectionSetNode", {70001, 4}), m_node);
}

TEST_F(HostFunctions, SnapAxisAndCoordinates) {
    for (const uint64_t snap : {kTrue, uint64_t{0}}) {
        ExpectOfCore("GetSnapState", {}, snap);
        EXPECT_EQ(Truth(m_plugin.Call("IsSnapOn", {})), snap != 0);
    }
    ExpectOfCore("GetAxisConstraints", {}, 5);
    EXPECT_EQ(Int(m_plugin.Call("AxisConstraint", {})), 5);
    ExpectOfCore("SetAxisConstraints", {4});
    m_plugin.Call("SetAxisConstraint", {4});
    ExpectOfCore("GetRefCoordSys", {}, 7);
    EXPECT_EQ(Int(m_plugin.Call("CoordinateSystem", {})), 7);
    ExpectOfCore("SetRefCoordSys", {1});
    m_plugin.Call("SetCoordinateSystem", {1});
}

TEST_F(HostFunctions, Redraws) {
    ExpectOfCore("DisableSceneRedraw", {});
    m_plugin.Call("StopSceneRedraw", {});
    ExpectOfCore("EnableSceneRedraw", {});
    m_plugin.Call("RestartSceneRedraw", {});
    ExpectOfCore("GetTime", {}, static_cast<uint32_t>(-4800));
    m_host.Expect("Interface.RedrawViews", {m_core, -4800, 8, 0});
    m_plugin.Call("RedrawViewsNow", {});
    ExpectOfCore("ForceCompleteRedraw", {1});
    m_plugin.Call("RedrawEverything", {});
    ExpectOfCore("ViewportZoomExtents", {0, 0});
    m_plugin.Call("ZoomExtentsOfActiveView", {});
}

TEST_F(HostFunctions, Undo) {
    const uint64_t hold = m_host.DataAt("theHold");
    m_host.Expect("Hold::Begin", {hold});
    m_plugin.Call("BeginUndoRecord", {});
    m_host.Expect("Hold::Accept", {hold, Argument::Text("Select")});
    m_plugin.Call("AcceptUndoRecord", {Word("Select")});
    m_host.Expect("Hold::Cancel", {hold});
    m_plugin.Call("CancelUndoRecord", {});
}

TEST_F(HostFunctions, Recorder) {
    for (const uint64_t on : {kTrue, uint64_t{0}}) {
        ExpectRecorder();
        m_host.Expect("MacroRecorder.Enabled", {m_recorder}, on);
        EXPECT_EQ(Truth(m_plugin.Call("IsMacroRecorderOn", {})), on != 0);
    }
    ExpectRecorder();
    m_host.Expect("MacroRecorder.Disable", {m_recorder});
    m_plugin.Call("SilenceMacroRecorder", {});
    ExpectRecorder();
    m_host.Expect("MacroRecorder.Enable", {m_recorder});
    m_plugin.Call("EndMacroRecorderSilence", {});
}

// ---- actions and toolbars
// ------------------------------------------------------------------------

TEST_F(HostFunctions, Actions) {
    constexpr unsigned long kTable = 2077580866;
    for (const uint64_t checked : {kTrue, uint64_t{0}}) {
        ExpectAction(kTable, 40020);
        m_host.Expect("ActionItem.IsChecked", {m_item}, checked);
        EXPECT_EQ(m_plugin.CallForBool("IsActionChecked", {kTable, 40020}), checked != 0);
    }
    for (const uint64_t done : {kTrue, uint64_t{0}}) {
        ExpectAction(kTable, 40020);
        m_host.Expect("ActionItem.ExecuteAction", {m_item}, done);
        EXPECT_EQ(Truth(m_plugin.Call("ExecuteAction", {kTable, 40020})), done != 0);
    }
    ExpectAction(0xFFFFFFFE, -7);
    m_host.Expect("ActionItem.IsChecked", {m_item}, kTrue);
    m_host.Expect("ActionItem.ExecuteAction", {m_item}, 1);
    m_plugin.Call("SetActionChecked", {0xFFFFFFFE, static_cast<uint32_t>(-7), 0});
    ExpectActionManager();
    m_host.Expect("IActionManager.RegisterActionContext",
                  {m_actions, 0x837D5FB8u, Argument::Text("Karvel")}, 1);
    m_plugin.Call("RegisterActionContext", {0x837D5FB8, Word("Karvel")});
    const uint64_t callback = m_host.Memory(24);
    ExpectActionManager();
    m_host.Expect("IActionManager.ActivateActionTable", {m_actions, callback, 0x837D5FB8u}, 1);
    m_plugin.Call("ActivateActionCallback", {callback, 0x837D5FB8});
}

TEST_F(HostFunctions, Toolbars) {
    m_host.Expect("GetCUIFrameMgr", {}, m_toolbars);
    m_host.Expect("CUIFrameMgr::SetMacroButtonStates", {m_toolbars, 0});
    m_plugin.Call("RefreshMacroButtons", {});
    for (const uint64_t enabled : {kTrue, uint64_t{0}}) {
        m_host.Expect("GetCUIFrameMgr", {}, m_toolbars);
        m_host.Expect("CUIFrameMgr::GetICustButton", {m_toolbars, 50027}, m_button);
        m_host.Expect("ICustButton.IsEnabled", {m_button}, enabled);
        ExpectRelease();
        EXPECT_EQ(m_plugin.CallForBool("IsToolbarButtonEnabled", {50027}), enabled != 0);
        ExpectButtonOfWindow();
        m_host.Expect("ICustButton.IsChecked", {m_button}, enabled);
        ExpectRelease();
        EXPECT_EQ(m_plugin.CallForBool("IsButtonChecked", {kWindow}), enabled != 0);
    }
    ExpectButtonOfWindow();
    m_host.Expect("ICustButton.GetCurFlyOff", {m_button}, 1);
    ExpectRelease();
    EXPECT_EQ(m_plugin.CallForInt("ButtonFlyout", {kWindow}), 1);
    ExpectButtonOfWindow();
    m_host.Expect("ICustButton.SetCurFlyOff", {m_button, 2, 1});
    ExpectRelease();
    m_plugin.Call("ChooseButtonFlyout", {kWindow, 2});
}

// ---- asked for a report
// ------------------------------------------------------------------------

TEST_F(HostFunctions, OfAReport) {
    m_host.Expect("Get3DSMAXVersion", {}, 0x364C2500);
    EXPECT_EQ(m_plugin.Call("ReleaseWord", {}) & 0xFFFFFFFF, 0x364C2500u);
    ExpectOfCore("GetSubObjectLevel", {}, 4);
    EXPECT_EQ(Int(m_plugin.Call("SubObjectLevel", {})), 4);
    for (const uint64_t enabled : {kTrue, uint64_t{0}}) {
        ExpectButtonOfWindow();
        m_host.Expect("ICustButton.IsChecked", {m_button}, 0);
        ExpectRelease();
        ExpectButtonOfWindow();
        m_host.Expect("ICustButton.IsEnabled", {m_button}, enabled);
        ExpectRelease();
        EXPECT_EQ(m_plugin.CallForBool("IsButtonEnabled", {kWindow}), enabled != 0);
    }
}

TEST_F(HostFunctions, ViewOfAReport) {
    struct {
        int type;
        bool perspective, user, active, enabled, spot, camera;
        alignas(int) bool is_there;
    } view = {};
    ExpectOfCore("GetViewport", {kWindow}, m_view);
    m_host.Expect("ViewExp.GetViewType", {m_view}, 6);
    m_host.Expect("ViewExp.IsPerspView", {m_view}, 0);
    m_host.Expect("ViewExp.GetViewType", {m_view}, 6);
    m_host.Expect("ViewExp.IsActive", {m_view}, kTrue);
    m_host.Expect("ViewExp.IsEnabled", {m_view}, 0);
    m_host.Expect("ViewExp.GetViewSpot", {m_view}, 0);
    m_host.Expect("ViewExp.GetViewCamera", {m_view}, m_node);
    ExpectOfCore("ReleaseViewport", {m_view});
    m_plugin.Call("InspectView", {Word(&view), kWindow});
    EXPECT_TRUE(view.is_there && view.type == 6 && !view.perspective && view.user && view.active &&
                !view.enabled && !view.spot && view.camera);
}

TEST_F(HostFunctions, ActionsOfAReport) {
    constexpr unsigned long kTable = 2077580866;
    const auto expect_table = [this] {
        ExpectActionManager();
        m_host.Expect("IActionManager.FindTable", {m_actions, kTable}, m_table);
    };
    struct {
        char name[128];
        uint32_t context;
        int items;
        bool is_there;
    } table = {};
    const char* name = "Unwrap UVW";  // a text of the host is a pointer to its characters
    expect_table();
    m_host.Expect("ActionTable.GetName", {m_table}, Word(&name));
    m_host.Expect("ActionTable.GetContextId", {m_table}, 0x87654321);
    m_host.Expect("ActionTable.Count", {m_table}, 140);
    m_plugin.Call("InspectTable", {Word(&table), kTable});
    EXPECT_TRUE(table.is_there);
    EXPECT_STREQ(table.name, name);
    EXPECT_EQ(table.context, 0x87654321);
    EXPECT_EQ(table.items, 140);

    struct {
        char name[128];
        bool checked, enabled, visible, is_there;
    } action = {};
    const auto make_text = [](const Words& words) {
        *reinterpret_cast<uint64_t*>(words[0]) = words[1];
        return words[0];
    };
    const auto fill_text = [](const Words& words) {
        *reinterpret_cast<const char**>(words[2]) = "Lock Selected Vertices";
        return uint64_t{1};
    };
    expect_table();
    m_host.Expect("ActionTable.GetAction", {m_table, 40020}, m_item);
    m_host.Expect("CStr::CStr", {Argument::Any(), Argument::Text("")}, make_text);
    m_host.Expect("ActionTable.GetMenuText", {m_table, 40020, Argument::Any()}, fill_text);
    m_host.Expect("ActionItem.IsChecked", {m_item}, kTrue);
    m_host.Expect("ActionItem.IsEnabled", {m_item}, 0);
    m_host.Expect("ActionItem.IsItemVisible", {m_item}, kTrue);
    m_host.Expect("CStr::~CStr", {Argument::Any()});
    m_plugin.Call("InspectAction", {Word(&action), kTable, 40020});
    EXPECT_TRUE(action.is_there && action.checked && !action.enabled && action.visible);
    EXPECT_STREQ(action.name, "Lock Selected Vertices");
}

TEST_F(HostFunctions, WhatARecordingAsks) {
    constexpr unsigned long kTable = 0x837D5FB8;
    constexpr uint64_t kCallback = 0x12345678900;
    const auto expect_table = [this] {
        ExpectActionManager();
        m_host.Expect("IActionManager.FindTable", {m_actions, kTable}, m_table);
    };
    expect_table();
    m_host.Expect("ActionTable.GetCallback", {m_table}, kCallback);
    EXPECT_EQ(m_plugin.Call("CallbackOfTable", {kTable}), kCallback);
    expect_table();
    m_host.Expect("ActionTable.SetCallback", {m_table, kCallback});
    m_plugin.Call("SetCallbackOfTable", {kTable, kCallback});
    struct Row {
        const char* name;
        bool is_it;
    };
    for (const Row& row :
         {Row{"Box001", true}, {"Box0011", false}, {"Box00", false}, {"", false}}) {
        m_host.Expect("INode.GetName", {m_node}, Word(row.name));
        EXPECT_EQ(Truth(m_plugin.Call("IsNodeNamed", {m_node, Word("Box001")})), row.is_it);
    }
}

// ---- scripts
// -------------------------------------------------------------------------------------

TEST_F(HostFunctions, Scripts) {
    const uint64_t utility = m_host.Object("GUP");
    m_plugin.Call("SetScriptRunner", {utility});
    m_host.Expect("GUP.ExecuteStringScript", {utility, Argument::Text("max zoomext")}, 1);
    m_plugin.Call("RunScript", {Word("max zoomext")});
}

// ---- menus
// ---------------------------------------------------------------------------------------

TEST_F(HostFunctions, Menus) {
    constexpr uint64_t kSecondBase = 32;
    for (const uint64_t is_new : {uint64_t{1}, uint64_t{0}}) {
        ExpectMenuManager();
        m_host.Expect("IMenuManager.RegisterMenuBarContext",
                      {m_menus, 0x7683658C, Argument::Text("Context")}, is_new);
        EXPECT_EQ(Truth(m_plugin.Call("RegisterMenuContext", {0x7683658C, Word("Context")})),
                  is_new != 0);
    }
    ExpectMenuManager();
    m_host.Expect("GetIMenu", {}, m_menu);
    m_host.Expect("IMenuElement.SetTitle", {m_menu + kSecondBase, Argument::Text("Flinder")});
    m_host.Expect("IMenuManager.RegisterMenu", {m_menus, m_menu, 0}, 1);
    EXPECT_EQ(m_plugin.Call("NewMenu", {Word("Flinder")}), m_menu);
    ExpectAction(0x837D5FB8, 21);
    m_host.Expect("GetIMenuItem", {}, m_entry);
    m_host.Expect("IMenuItem.SetActionItem", {m_entry, m_item});
    EXPECT_EQ(m_plugin.Call("NewActionEntry", {0x837D5FB8, 21}), m_entry);
    m_host.Expect("GetIMenuItem", {}, m_entry);
    m_host.Expect("IMenuItem.ActAsSeparator", {m_entry});
    EXPECT_EQ(m_plugin.Call("NewSeparatorEntry", {}), m_entry);
    m_host.Expect("IMenu.AddItem", {m_menu, m_entry, -1});
    m_plugin.Call("AppendEntry", {m_menu, m_entry});

    const uint64_t bar = m_host.Object("IMenu", 1);
    ExpectMenuManager();
    m_host.Expect("IMenuManager.GetMainMenuBar", {m_menus}, bar);
    m_host.Expect("GetIMenuItem", {}, m_entry);
    m_host.Expect("IMenuItem.SetSubMenu", {m_entry, m_menu});
    m_host.Expect("IMenu.NumItems", {bar}, 12);
    m_host.Expect("IMenu.AddItem", {bar, m_entry, 11});
    m_host.Expect("IMenuManager.UpdateMenuBar", {m_menus});
    m_plugin.Call("InsertIntoMainMenuBar", {m_menu});
}

}  // namespace
}  // namespace raw_host
