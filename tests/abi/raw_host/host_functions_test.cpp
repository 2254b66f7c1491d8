// Each function of host/ against the raw host: which member or export it calls, where, and what it
// hands over.

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <set>
#include <string>

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

class HostFunctions : public ::testing::Test {
protected:
    void TearDown() override {
        m_host.ExpectNoMore();
        EXPECT_TRUE(m_texts.empty()) << "a text of the host's was not ended";
    }

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
        m_host.Expect("GetCOREInterfaceOfId", {uint64_t{0x01CF1CC5042A42B3}}, m_sets);
    }
    void ExpectToolbarButton() {
        m_host.Expect("GetCUIFrameMgr", {}, m_toolbars);
        m_host.Expect("CUIFrameMgr::GetICustButton", {m_toolbars, 50027}, m_button);
    }
    void ExpectButtonOfWindow() { m_host.Expect("GetICustButton", {kWindow}, m_button); }
    void ExpectRelease() { m_host.Expect("ReleaseICustButton", {m_button}); }

    // A viewport is asked for. From 2013 on a reference comes, which need not be alive.
    void ExpectView(const std::string& before_2013, const std::string& from_2013,
                    std::vector<Argument> arguments, bool alive = true) {
        const bool pointers = m_host.Year() < 2013;
        ExpectOfCore(pointers ? before_2013 : from_2013, std::move(arguments),
                     pointers ? m_view : m_reference);
        if (pointers) return;
        m_host.Expect("ViewExp.IsAlive", {m_reference}, alive ? 1 : 0);
        if (alive) m_host.Expect("ViewExp.ToPointer", {m_reference}, m_view);
    }
    void ExpectViewOfWindow() { ExpectView("GetViewport", "GetViewExp", {kWindow}); }
    void ExpectEndOfView() {
        if (m_host.Year() < 2013) ExpectOfCore("ReleaseViewport", {m_view});
    }

    // A text of the host's is made, and ended by who made it.
    void ExpectNewText(const std::string& text) {
        m_host.Expect("MSTR::MSTR", {Argument::Any(), Argument::Text(text)},
                      [this](const Words& words) {
                          m_texts.insert(words[0]);
                          Field(words[0]) = words[1];
                          return words[0];
                      });
    }
    void ExpectEndOfText() {
        m_host.Expect("MSTR::~MSTR", {Argument::Any()}, [this](const Words& words) {
            EXPECT_EQ(m_texts.erase(words[0]), 1u) << "no text of the host's";
            return uint64_t{0};
        });
    }

    void PutListener(uint64_t stream) {
        const uint64_t listener = m_host.Memory(160);
        Field(listener, m_host.Number("field Listener edit_stream")) = stream;
        Field(m_host.DataAt("the_listener")) = listener;
    }

    void PlayKeptMenus();
    void PlayMenusInANotification();
    void ExpectMenuGuid(const std::string& text, uint64_t value);

    Host& m_host = TheHost();
    Plugin& m_plugin = ThePlugin();
    const uint64_t m_core = m_host.Object("Interface");
    const uint64_t m_view = m_host.Object("ViewExp");
    const uint64_t m_reference = m_host.Object("ViewExp", 1);
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
    std::set<uint64_t> m_texts;
};

// ---- core
// ----------------------------------------------------------------------------------------

TEST_F(HostFunctions, Core) {
    const uint64_t version = m_host.Number("word");
    m_host.Expect("Get3DSMAXVersion", {}, version);
    EXPECT_EQ(m_plugin.Call("Release", {}) & 0xFFFFFFFF, version >> 16);
    EXPECT_EQ(m_plugin.Call("VersionWord", {}) & 0xFFFFFFFF, version);
    ExpectCore();
    EXPECT_EQ(m_plugin.Call("Core", {}), m_core);
    ExpectOfCore("GetMAXHWnd", {}, kWindow);
    EXPECT_EQ(m_plugin.Call("MainWindow", {}), kWindow);
    ExpectOfCore("RegisterDlgWnd", {kWindow});
    m_plugin.Call("RegisterDialogWindow", {kWindow});
    ExpectOfCore("UnRegisterDlgWnd", {kWindow}, 1);
    m_plugin.Call("WithdrawDialogWindow", {kWindow});
}

TEST_F(HostFunctions, Folder) {
    const uint64_t folder = m_host.Text("C:\\plugcfg");
    if (m_host.Facts().Find("Interface.GetDir")->result == Travel::kTextResult) {
        ExpectCore();
        m_host.Expect("Interface.GetDir", {m_core, Argument::Any(), 9}, [&](const Words& words) {
            m_texts.insert(words[1]);
            Field(words[1]) = folder;
            return words[1];
        });
        ExpectEndOfText();
    } else {
        ExpectOfCore("GetDir", {9}, folder);
    }
    const uint64_t answer = m_plugin.Call("ConfigurationDirectory", {});
    EXPECT_STREQ(reinterpret_cast<const char*>(answer), "C:\\plugcfg");
}

TEST_F(HostFunctions, Texts) {
    EXPECT_EQ(m_host.TextAt(m_plugin.Call("TextForHost", {Word("some text")})), "some text");
    EXPECT_EQ(m_plugin.Call("TextForHost", {0}), 0u);
    const uint64_t copy = m_host.Memory(16);
    m_plugin.Call("CopyTextForHost", {copy, 5, Word("some text")});
    EXPECT_EQ(m_host.TextAt(copy), "some");
    const uint64_t text = m_host.Text("some text");
    EXPECT_TRUE(Truth(m_plugin.Call("IsHostText", {text, Word("some text")})));
    EXPECT_FALSE(Truth(m_plugin.Call("IsHostText", {text, Word("some")})));
    EXPECT_FALSE(Truth(m_plugin.Call("IsHostText", {0, Word("some")})));
    const uint64_t path = m_plugin.Call("PathFromHost", {text});
    EXPECT_STREQ(reinterpret_cast<const char*>(path), "some text");
}

// Functions that take narrow texts reach a folder even when the code page lacks letters of its
// name.
TEST_F(HostFunctions, FolderOutsideTheCodePage) {
    if (m_host.Year() < 2013) return;  // its own texts are narrow
    wchar_t folder[MAX_PATH];
    ASSERT_NE(GetTempPathW(MAX_PATH, folder), 0u);
    std::wstring path = folder;
    path += L"karvel \u0416\u0443\u043A \u6F22 " + std::to_wstring(GetCurrentProcessId());
    ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    const uint64_t narrow = m_plugin.Call("PathFromHost", {Word(path.c_str())});
    const std::string file = std::string(reinterpret_cast<const char*>(narrow)) + "\\Karvel.ini";
    EXPECT_TRUE(WritePrivateProfileStringA("main", "key", "value", file.c_str())) << file;
    EXPECT_NE(GetFileAttributesW((path + L"\\Karvel.ini").c_str()), INVALID_FILE_ATTRIBUTES);
    DeleteFileW((path + L"\\Karvel.ini").c_str());
    EXPECT_TRUE(RemoveDirectoryW(path.c_str()));
    // Where nothing is, there is no other name either.
    const uint64_t none = m_plugin.Call("PathFromHost", {Word(path.c_str())});
    EXPECT_STREQ(reinterpret_cast<const char*>(none), "");
}

TEST_F(HostFunctions, Listener) {
    const uint64_t stream = m_host.Object("WindowStream");
    PutListener(stream);
    m_host.Expect("WindowStream.puts", {stream, Argument::Text("some text")}, 1);
    m_host.Expect("WindowStream.flush", {stream});
    m_plugin.Call("PrintToListener", {Word("some text")});
}

// ---- viewports
// -----------------------------------------------------------------------------------

TEST_F(HostFunctions, Viewports) {
    uint64_t view = 0;
    ExpectViewOfWindow();
    m_plugin.Call("Viewport::OfWindow", {Word(&view), kWindow});
    EXPECT_EQ(view, m_view);
    view = 0;
    ExpectView("GetActiveViewport", "GetActiveViewExp", {});
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
    ExpectEndOfView();
    m_plugin.Call("Viewport::~Viewport", {Word(&view)});
    ExpectOfCore("SetActiveViewport", {kWindow}, 1);
    m_plugin.Call("SetActiveViewport", {kWindow});
}

TEST_F(HostFunctions, DeadViewports) {
    uint64_t view = m_view;
    if (m_host.Year() < 2013) {
        ExpectOfCore("GetViewport", {kWindow}, 0);
    } else {
        ExpectView("", "GetViewExp", {kWindow}, false);
    }
    m_plugin.Call("Viewport::OfWindow", {Word(&view), kWindow});
    EXPECT_EQ(view, 0u);
    m_plugin.Call("Viewport::~Viewport", {Word(&view)});
}

TEST_F(HostFunctions, WhereViewportsLie) {
    const bool anywhere = m_host.Year() >= 2013;
    EXPECT_EQ(Truth(m_plugin.Call("MayHoldViewports", {kWindow})), anywhere);
    if (anywhere) ExpectViewOfWindow();
    EXPECT_EQ(Truth(m_plugin.Call("IsViewToFocus", {kWindow, kWindow})), anywhere);
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
    const std::vector<Argument> arguments = {
        m_node, uint64_t{0x7FFFFFFF80000000}, 0x40, 0x50, 0xFFFFFFF0u, 1, 0};
    m_host.Expect("INode.NotifyDependents", m_host.WithMore("INode.NotifyDependents", arguments, 0),
                  1);
    m_plugin.Call("UpdateNodeDisplay", {m_node});
}

TEST_F(HostFunctions, ListsOfNodes) {
    // Later hosts give it a table of its own, before the pointer to its head.
    const uint64_t size = m_host.Number("size INodeTab");
    const uint64_t list = m_host.Memory(size);
    const uint64_t place = list + size - 8;
    m_host.Expect("new", {size}, list);
    EXPECT_EQ(m_plugin.Call("NewNodeList", {}), list);
    EXPECT_EQ(Field(place), 0u);
    EXPECT_EQ(Int(m_plugin.Call("NodeCount", {list})), 0);

    // The head that the host makes: two counts, then the elements.
    struct {
        int count, allocated;
        uint64_t elements[4];
    } head = {2, 4, {m_host.Object("INode", 1), m_host.Object("INode", 2), 0, 0}};
    Field(place) = Word(&head);
    EXPECT_EQ(Int(m_plugin.Call("NodeCount", {list})), 2);
    EXPECT_EQ(m_plugin.Call("NodeAt", {list, 1}), head.elements[1]);
    m_host.Expect("TBInsertAt", {place, 2, 1, Argument::At(m_node), 8, 70001}, 3);
    m_plugin.Call("AppendNode", {list, m_node, WithRubbish(Travel::kInt, 70001)});
    ExpectOfCore("SelectNodeTab", {list, 1, 1});
    m_plugin.Call("AddToSelection", {list});
    if (place != list) {
        m_host.Expect("zfree", {place});
        EXPECT_EQ(Invoke(Field(Field(list)), {list, 0}), list);
        m_host.ExpectNoMore();
    }
    m_host.Expect("zfree", {place});
    m_host.Expect("delete", {list});
    m_plugin.Call("FreeNodeList", {list});
}

TEST_F(HostFunctions, SelectionSets) {
    ExpectSets();
    m_host.Expect("INamedSelectionSetManager.GetNumNamedSelSets", {m_sets}, 3);
    m_host.Expect("INamedSelectionSetManager.GetNamedSelSetName", {m_sets, 0},
                  m_host.Text("another"));
    m_host.Expect("INamedSelectionSetManager.GetNamedSelSetName", {m_sets, 1},
                  m_host.Text("wanted"));
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
    const bool by_text = m_host.Facts().Find("Hold::Accept")->arguments[1] == Travel::kTextAt;
    if (by_text) ExpectNewText("Select");
    m_host.Expect("Hold::Accept", {hold, Argument::Text("Select")});
    if (by_text) ExpectEndOfText();
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
        ExpectAction(kTable, 40020);
        m_host.Expect("ActionItem.IsEnabled", {m_item}, checked);
        EXPECT_EQ(m_plugin.CallForBool("IsActionEnabled", {kTable, 40020}), checked != 0);
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

TEST_F(HostFunctions, TableOfActions) {
    ExpectActionManager();
    m_host.Expect("IActionManager.FindTable", {m_actions, 0x837D5FB8u}, m_table);
    EXPECT_EQ(m_plugin.Call("FindActionTable", {0x837D5FB8}), m_table);
}

TEST_F(HostFunctions, Toolbars) {
    m_host.Expect("GetCUIFrameMgr", {}, m_toolbars);
    m_host.Expect("CUIFrameMgr::SetMacroButtonStates", {m_toolbars, 0});
    m_plugin.Call("RefreshMacroButtons", {});
    for (const uint64_t enabled : {kTrue, uint64_t{0}}) {
        ExpectToolbarButton();
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

// From 2018 on no button is a window: the actions are asked.
TEST_F(HostFunctions, ToolbarRoles) {
    const bool windows = m_host.Year() < 2018;
    for (const uint64_t on : {kTrue, uint64_t{0}}) {
        const std::optional<bool> answer = on != 0;
        if (!windows) {
            ExpectAction(0, 59231);
            m_host.Expect("ActionItem.IsChecked", {m_item}, on);
        }
        EXPECT_EQ(m_plugin.CallForBool("IsLockOn", {}), windows ? std::nullopt : answer);
        if (!windows) {
            ExpectAction(0, 40074);
            m_host.Expect("ActionItem.IsChecked", {m_item}, on);
        }
        EXPECT_EQ(Truth(m_plugin.Call("IsAngleSnapOn", {})), !windows && on != 0);
        if (windows) {
            ExpectToolbarButton();
            m_host.Expect("ICustButton.IsEnabled", {m_button}, on);
            ExpectRelease();
        } else {
            ExpectAction(0, 50027);
            m_host.Expect("ActionItem.IsEnabled", {m_item}, on);
        }
        EXPECT_EQ(m_plugin.CallForBool("IsSelectEnabled", {}), answer);
    }
    EXPECT_EQ(m_plugin.CallForInt("ZoomExtentsEntry", {}), std::nullopt);
    m_plugin.Call("ChooseZoomExtentsEntry", {1});
    EXPECT_EQ(m_plugin.CallForBool("IsToolbarButton", {kWindow}),
              windows ? std::optional<bool>(true) : std::nullopt);
}

// ---- asked for a report
// ------------------------------------------------------------------------

TEST_F(HostFunctions, OfAReport) {
    const uint64_t version = m_host.Number("word");
    m_host.Expect("Get3DSMAXVersion", {}, version);
    EXPECT_EQ(m_plugin.Call("ReleaseWord", {}) & 0xFFFFFFFF, version);
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
    for (const bool of_window : {true, false}) {
        view = {};
        if (of_window) ExpectViewOfWindow();
        m_host.Expect("ViewExp.GetViewType", {m_view}, 6);
        m_host.Expect("ViewExp.IsPerspView", {m_view}, 0);
        m_host.Expect("ViewExp.GetViewType", {m_view}, 6);
        m_host.Expect("ViewExp.IsActive", {m_view}, kTrue);
        m_host.Expect("ViewExp.IsEnabled", {m_view}, 0);
        m_host.Expect("ViewExp.GetViewSpot", {m_view}, 0);
        m_host.Expect("ViewExp.GetViewCamera", {m_view}, m_node);
        if (of_window) {
            ExpectEndOfView();
            m_plugin.Call("InspectView", {Word(&view), kWindow});
        } else {
            m_plugin.Call("Viewport::Inspect", {Word(&m_view), Word(&view)});
        }
        EXPECT_TRUE(view.is_there && view.type == 6 && !view.perspective && view.user &&
                    view.active && !view.enabled && !view.spot && view.camera);
    }
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
    const uint64_t name = m_host.Text("Unwrap UVW");  // a text is a pointer to its characters
    expect_table();
    m_host.Expect("ActionTable.GetName", {m_table}, Word(&name));
    m_host.Expect("ActionTable.GetContextId", {m_table}, 0x87654321);
    m_host.Expect("ActionTable.Count", {m_table}, 140);
    m_plugin.Call("InspectTable", {Word(&table), kTable});
    EXPECT_TRUE(table.is_there);
    EXPECT_STREQ(table.name, "Unwrap UVW");
    EXPECT_EQ(table.context, 0x87654321);
    EXPECT_EQ(table.items, 140);

    struct {
        char name[128];
        bool checked, enabled, visible, is_there;
    } action = {};
    const auto fill_text = [this](const Words& words) {
        Field(words[2]) = m_host.Text("Lock Selected Vertices");
        return uint64_t{1};
    };
    expect_table();
    m_host.Expect("ActionTable.GetAction", {m_table, 40020}, m_item);
    ExpectNewText("");
    m_host.Expect("ActionTable.GetMenuText", {m_table, 40020, Argument::Any()}, fill_text);
    m_host.Expect("ActionItem.IsChecked", {m_item}, kTrue);
    m_host.Expect("ActionItem.IsEnabled", {m_item}, 0);
    m_host.Expect("ActionItem.IsItemVisible", {m_item}, kTrue);
    ExpectEndOfText();
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
        m_host.Expect("INode.GetName", {m_node}, m_host.Text(row.name));
        EXPECT_EQ(Truth(m_plugin.Call("IsNodeNamed", {m_node, Word("Box001")})), row.is_it);
    }
}

// ---- scripts
// -------------------------------------------------------------------------------------

TEST_F(HostFunctions, Scripts) {
    const uint64_t utility = m_host.Object("GUP");
    m_plugin.Call("SetScriptRunner", {utility});
    // Later hosts are told its source, too: not embedded, so that their script security lets it
    // run.
    const std::vector<Argument> arguments =
        m_host.WithMore("GUP.ExecuteStringScript", {utility, Argument::Text("max zoomext")}, 2);
    m_host.Expect("GUP.ExecuteStringScript", arguments, 1);
    m_plugin.Call("RunScript", {Word("max zoomext")});
    m_host.Expect("GUP.ExecuteStringScript", arguments, 1);
    m_plugin.Call("ExecuteScript", {utility, Word("max zoomext")});
}

// Later hosts are asked by a script, which calls back when Alt is answered by the host.
TEST_F(HostFunctions, InteractionMode) {
    if (m_host.Year() < 2013) {
        m_plugin.Call("AskInteractionMode", {});
        EXPECT_FALSE(Truth(m_plugin.Call("AnswersAltInViewports", {})));
        return;
    }
    const uint64_t utility = m_host.Object("GUP");
    const uint64_t stream = m_host.Object("WindowStream");
    PutListener(stream);
    m_plugin.Call("SetScriptRunner", {utility});
    for (const bool answers : {true, false}) {
        m_host.Expect("GUP.ExecuteStringScript",
                      m_host.WithMore("GUP.ExecuteStringScript", {utility, Argument::Any()}, 2),
                      [&](const Words& words) {
                          EXPECT_NE(m_host.TextAt(words[1]).find("kv_hostAnswersAlt()"),
                                    std::string::npos);
                          if (answers) Invoke(m_plugin.ScriptFunction("kv_hostAnswersAlt"), {0, 0});
                          return 1;
                      });
        if (answers) {
            m_host.Expect("WindowStream.puts", {stream, Argument::Any()}, 1);
            m_host.Expect("WindowStream.flush", {stream});
        }
        m_plugin.Call("AskInteractionMode", {});
        EXPECT_EQ(Truth(m_plugin.Call("AnswersAltInViewports", {})), answers);
    }
}

// ---- menus
// ---------------------------------------------------------------------------------------

TEST_F(HostFunctions, Menus) {
    if (m_host.Year() < 2025) return PlayKeptMenus();
    // There is one menu for the life of the file, and a utility that was started has it.
    m_plugin.SwapDataWithThoseAtLoad();
    PlayMenusInANotification();
    m_plugin.SwapDataWithThoseAtLoad();
}

void HostFunctions::PlayKeptMenus() {
    constexpr uint64_t kMenuElement = 32;
    for (const uint64_t is_new : {uint64_t{1}, uint64_t{0}}) {
        ExpectMenuManager();
        m_host.Expect("IMenuManager.RegisterMenuBarContext",
                      {m_menus, 0x7683658C, Argument::Text("Context")}, is_new);
        EXPECT_EQ(Truth(m_plugin.Call("RegisterMenuContext", {0x7683658C, Word("Context")})),
                  is_new != 0);
    }
    ExpectMenuManager();
    m_host.Expect("GetIMenu", {}, m_menu);
    m_host.Expect("IMenuElement.SetTitle", {m_menu + kMenuElement, Argument::Text("Flinder")});
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

// An id of a menu or an entry: 16 bytes, told apart here by what they are filled with.
void HostFunctions::ExpectMenuGuid(const std::string& text, uint64_t value) {
    m_host.Expect("MaxGuid::MaxGuid", {Argument::Any(), Argument::Narrow(text)},
                  [value](const Words& words) {
                      Field(words[0], 0) = Field(words[0], 8) = value;
                      return words[0];
                  });
}

// The host calls back while it loads its menus; only then they can be made.
void HostFunctions::PlayMenusInANotification() {
    EXPECT_TRUE(Truth(m_plugin.Call("RegisterMenuContext", {0x7683658C, Word("Context")})));
    const uint64_t menu = m_plugin.Call("NewMenu", {Word("Flinder")});
    ASSERT_NE(menu, 0u);
    ExpectAction(0x837D5FB8, 21);
    const uint64_t action = m_plugin.Call("NewActionEntry", {0x837D5FB8, 21});
    m_plugin.Call("AppendEntry", {menu, m_plugin.Call("NewSeparatorEntry", {})});
    m_plugin.Call("AppendEntry", {menu, action});
    uint64_t procedure = 0;
    uint64_t own = 0;
    m_host.Expect("RegisterNotification", {Argument::Any(), Argument::Any(), 0x120},
                  [&](const Words& words) {
                      procedure = words[0];
                      own = words[1];
                      return 1;
                  });
    m_plugin.Call("InsertIntoMainMenuBar", {menu});

    const uint64_t manager = m_host.Object("ICuiMenuManager");
    const uint64_t bar = m_host.Object("ICuiMenu");
    const uint64_t made = m_host.Object("ICuiMenu", 1);
    const uint64_t info = m_host.Memory(m_host.Number("size NotifyInfo"));
    Field(info, m_host.Number("field NotifyInfo intcode")) = WithRubbish(Travel::kInt, 0x120);
    Field(info, m_host.Number("field NotifyInfo callParam")) = manager;
    const auto told = Argument::At;
    // Without the menu "Help" it comes last. What stays the same for ever, because the changes that
    // users make to menus refer to it: the numbers of ours.
    for (const uint64_t before_help : {made, uint64_t{0}}) {
        m_host.Expect("ICuiMenuManager.GetMainMenuBar", {manager}, bar);
        ExpectNewText("Flinder");
        ExpectMenuGuid("{8d0f6a52-47c1-4e0b-9f3e-6b21c5a4ffff}", 1);
        ExpectMenuGuid("{cee8f758-2199-411b-81e7-d3ff4a80d143}", 2);
        m_host.Expect("ICuiMenu.CreateSubMenu", {bar, told(1), Argument::Text("Flinder"), told(2)},
                      before_help);
        if (before_help == 0) {
            ExpectMenuGuid("{00000000-0000-0000-0000-000000000000}", 3);
            m_host.Expect("ICuiMenu.CreateSubMenu",
                          {bar, told(1), Argument::Text("Flinder"), told(3)}, made);
        }
        ExpectMenuGuid("{00000000-0000-0000-0000-000000000000}", 4);
        ExpectNewText("");
        ExpectMenuGuid("{8d0f6a52-47c1-4e0b-9f3e-6b21c5a4f000}", 5);
        m_host.Expect("ICuiMenu.CreateSeparator", {made, told(5), told(4)}, 1);
        ExpectMenuGuid("{8d0f6a52-47c1-4e0b-9f3e-6b21c5a40015}", 6);
        m_host.Expect("ICuiMenu.CreateAction",
                      {made, told(6), 0x837D5FB8u, 21, Argument::Text(""), told(4)}, 1);
        ExpectEndOfText();
        ExpectEndOfText();
        Invoke(procedure, {own, info});
        m_host.ExpectNoMore();
    }
    m_host.Expect("ICuiMenuManager.GetMainMenuBar", {manager}, 0);
    Invoke(procedure, {own, info});
}

}  // namespace
}  // namespace raw_host
