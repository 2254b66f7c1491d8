// The classes of the plug-in that the host calls, from the host's side: each slot of their tables,
// and what the plug-in takes from the host by name.

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "shell/commands.h"
#include "tests/abi/raw_host/raw_plugin.h"

namespace raw_host {
namespace {

constexpr unsigned long kKarvelTable = 0x737D5FB8;
constexpr uint64_t kCommandCount = std::size(kCommands);
constexpr uint64_t kLower = 0xFFFFFFFF;
constexpr char kWidgetWithClass[] =
    "ClassDesc2.CreateQtWidget(pointer, pointer, short, pointer, pointer, pointer, pointer)";

// What the pointer of a `Tab` of the host's leads to: two counts and the elements.
struct Head {
    int count;
    int allocated;
    uint64_t elements[8];
};

class DerivedClasses : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        // Made once, as the host makes them at its start.
        if (g_descriptor != 0) return;
        g_descriptor = Invoke(ThePlugin().Symbol("LibClassDesc"), {0});
        Interfaces() = 0;
    }
    // The pointer of a `Tab`, which has a table of its own before it on later hosts.
    static uint64_t HeadOfTab(uint64_t tab) { return tab + TheHost().Number("size INodeTab") - 8; }
    static uint64_t& Interfaces() {
        return Field(HeadOfTab(g_descriptor + TheHost().Number("field ClassDesc interfaces")));
    }
    std::string Text(uint64_t address) const { return m_host.TextAt(address); }
    void TearDown() override { m_host.ExpectNoMore(); }

    uint64_t MakeUtility() {
        const uint64_t size = m_host.Number("size GUP");
        const uint64_t memory = m_host.Memory(size);
        m_host.Expect("new", {size}, memory);
        m_host.Expect("GUP::GUP", {memory}, memory);
        return m_plugin.CallSlot("ClassDesc2.Create", g_descriptor, {0});
    }

    // The table, built as the plug-in wants it by what the host exports.
    uint64_t MakeTable() {
        const uint64_t size = m_host.Number("size ActionTable");
        const uint64_t memory = m_host.Memory(size);
        const uint64_t core = m_host.Object("Interface");
        const uint64_t actions = m_host.Object("IActionManager");
        static uint64_t name = 0;
        m_host.Expect("MSTR::MSTR", {Argument::Any(), Argument::Text("Karvel")},
                      [](const Words& words) { return name = words[0]; });
        m_host.Expect("Get3DSMAXVersion", {}, m_host.Number("word"));
        m_host.Expect("new", {size}, memory);
        m_host.Expect("ActionTable::ActionTable",
                      {memory, kKarvelTable, kKarvelTable, Argument::Any(), 0, kCommandCount,
                       Argument::Any(), Argument::Any()},
                      [](const Words& words) {
                          EXPECT_EQ(words[3], name) << "the name of the table";
                          EXPECT_EQ(reinterpret_cast<const int*>(words[6])[0], 1);
                          EXPECT_EQ(reinterpret_cast<const int*>(words[6])[4], 5);
                          EXPECT_NE(words[7], 0u) << "the module of the texts";
                          Callbacks(words[0]) = 0;
                          return words[0];
                      });
        m_host.Expect("GetCOREInterface", {}, core);
        m_host.Expect("Interface.GetActionManager", {core}, actions);
        m_host.Expect("IActionManager.RegisterActionContext",
                      {actions, kKarvelTable, Argument::Text("Karvel")}, 1);
        m_host.Expect("MSTR::~MSTR", {Argument::Any()}, [](const Words& words) {
            EXPECT_EQ(words[0], name);
            return uint64_t{0};
        });
        return m_plugin.CallSlot("ClassDesc2.GetActionTable", g_descriptor, {0});
    }

    // A pointer to a `Tab`.
    static uint64_t& Callbacks(uint64_t table) {
        return Field(table, TheHost().Number("field FPMixinInterface callbacks"));
    }

    // Starts a utility, whose calls are not what is looked at, and keeps what it registers.
    void StartUtility() {
        if (g_callback != 0) return;
        char folder[MAX_PATH] = "";
        GetTempPathA(MAX_PATH, folder);
        g_folder = folder;
        WritePrivateProfileStringA("main", "flinderPopup", "", (g_folder + "\\Karvel.ini").c_str());
        g_utility = MakeUtility();
        std::map<std::string, Effect> effects;
        const auto answer = [](uint64_t word) { return [word](const Words&) { return word; }; };
        effects["GetCOREInterface"] = answer(m_host.Object("Interface"));
        effects["Interface.GetActionManager"] = answer(m_host.Object("IActionManager"));
        effects["Interface.GetMenuManager"] = answer(m_host.Object("IMenuManager"));
        const uint64_t answered = m_host.Text(g_folder);
        const bool by_value =
            m_host.Facts().Find("Interface.GetDir")->result == Travel::kTextResult;
        effects["Interface.GetDir"] = [=](const Words& words) {
            if (by_value) Field(words[1]) = answered;
            return by_value ? words[1] : answered;
        };
        // No viewport is alive.
        effects["Interface.GetActiveViewExp"] = answer(m_host.Object("ViewExp"));
        effects["GUP.ExecuteStringScript"] = answer(1);
        effects["new"] = [this](const Words& words) { return m_host.Memory(words[0]); };
        effects["ActionCallback::ActionCallback"] = [](const Words& words) { return words[0]; };
        m_host.Record(effects);
        EXPECT_EQ(m_plugin.CallSlot("GUP.Start", g_utility, {}), 0u);
        int menus = 0;
        for (const Call& call : m_host.StopRecording()) {
            if (call.row->name == "IActionManager.ActivateActionTable") {
                g_callback = call.words[1];
                EXPECT_EQ(call.words[2] & kLower, kKarvelTable);
            } else if (call.row->name == "Interface.RegisterCommandModeChangedCallback") {
                g_modeCallback = call.words[1];
            } else if (call.row->name == "GUP.ExecuteStringScript") {
                EXPECT_EQ(call.words[0], g_utility);
                EXPECT_TRUE(call.words.size() == 2 || (call.words[2] & kLower) == 2)
                    << "the script's source";
            } else if (call.row->name == "IMenuManager.RegisterMenuBarContext") {
                EXPECT_EQ(call.words[1] & kLower, 0x3683658Cu);
                EXPECT_EQ(Text(call.words[2]), "Flinder Menu Context");
                ++menus;
            } else if (call.row->name == "RegisterNotification") {
                EXPECT_EQ(call.words[2] & kLower, 0x120u);
                ++menus;
            } else if (call.row->name == "Interface.GetDir") {
                EXPECT_EQ(call.words.back() & kLower, 9u);
            }
        }
        EXPECT_EQ(menus, 1);
        ASSERT_NE(g_callback, 0u);
        EXPECT_EQ(Field(g_callback, m_host.Number("size ActionCallback")), g_utility)
            << "what the plug-in adds stands behind what the host has";
        ASSERT_NE(g_modeCallback, 0u);
    }

    // Every slot of a table that is the host's own member, or inline with one answer.
    void CallPlainSlots(const std::string& class_name, uint64_t object) {
        for (const Row& row : m_host.Facts().rows) {
            if (row.owner != class_name) continue;
            if (!row.decorated.empty()) {
                PassThrough(row, object);
            } else if (row.has_answer) {
                const Words arguments(row.arguments.size(), 1);
                EXPECT_EQ(m_plugin.CallSlot(row.name, object, arguments), row.answer) << row.name;
            }
        }
    }

    // The member of the host has to get what was handed over, and its answer has to come back.
    void PassThrough(const Row& row, uint64_t object) {
        Words arguments;
        std::vector<Argument> expected = {object};
        if (IsThroughPlace(row.result)) expected.push_back(Argument::Any());
        for (size_t index = 0; index < row.arguments.size(); ++index) {
            arguments.push_back(0x8182838485868788 + 0x0101010101010101 * index);
            expected.push_back(arguments.back());
        }
        constexpr uint64_t kAnswer = 0x9192939495969798;
        if (IsThroughPlace(row.result)) {
            m_host.Expect(row.name, expected, [](const Words& words) {
                Field(words[1], 0) = kAnswer;
                return words[1];
            });
        } else {
            m_host.Expect(row.name, expected, kAnswer);
        }
        EXPECT_EQ(m_plugin.CallSlot(row.name, object, arguments), kAnswer & MaskOf(row.result))
            << row.name;
    }

    // The scalar deleting destructor: told by its argument whether the memory goes too.
    void Destroy(const std::string& class_name, uint64_t object, const std::string& of_host) {
        for (const bool frees : {false, true}) {
            if (!of_host.empty()) m_host.Expect(of_host, {object});
            if (frees) m_host.Expect("delete", {object});
            EXPECT_EQ(m_plugin.CallSlot(class_name + ".~", object, {frees ? 1u : 0u}), object);
        }
    }

    static uint64_t g_descriptor;
    static uint64_t g_utility;
    static uint64_t g_callback;
    static uint64_t g_modeCallback;
    static std::string g_folder;

    Host& m_host = TheHost();
    Plugin& m_plugin = ThePlugin();
};

uint64_t DerivedClasses::g_descriptor = 0;
uint64_t DerivedClasses::g_utility = 0;
uint64_t DerivedClasses::g_callback = 0;
uint64_t DerivedClasses::g_modeCallback = 0;
std::string DerivedClasses::g_folder;

// ---- class descriptor
// ----------------------------------------------------------------------------

TEST_F(DerivedClasses, DescriptorsOwnMembers) {
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.IsPublic", g_descriptor, {}), 1u);
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.SuperClassID", g_descriptor, {}), 0x10E0u);
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.ClassID", g_descriptor, {}), 0x2B7F634C6D43E91D);
    EXPECT_EQ(Text(m_plugin.CallSlot("ClassDesc2.ClassName", g_descriptor, {})), "Karvel");
    EXPECT_EQ(Text(m_plugin.CallSlot("ClassDesc2.Category", g_descriptor, {})), "Options...");
    EXPECT_EQ(Text(m_plugin.CallSlot("ClassDesc2.InternalName", g_descriptor, {})), "KarvelMax");
    if (m_host.Has("ClassDesc2.NonLocalizedClassName")) {
        EXPECT_EQ(Text(m_plugin.CallSlot("ClassDesc2.NonLocalizedClassName", g_descriptor, {})),
                  "Karvel");
    }
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.NumActionTables", g_descriptor, {}), 1u);
    const uint64_t module = m_plugin.CallSlot("ClassDesc2.HInstance", g_descriptor, {});
    EXPECT_EQ(*reinterpret_cast<const char*>(module), 'M');
    MakeUtility();
    MakeTable();
}

TEST_F(DerivedClasses, DescriptorsOtherMembers) {
    CallPlainSlots("ClassDesc2", g_descriptor);
    const uint64_t block = m_host.Memory(8);
    const uint64_t procedure = m_host.Memory(8);
    const bool answers = m_host.Facts().Find("ClassDesc2.SetUserDlgProc")->result == Travel::kBool;
    for (const uint64_t answer : {uint64_t{1}, uint64_t{0}}) {
        m_host.Expect("ClassDesc2::SetUserDlgProc", {g_descriptor, block, 0, procedure}, answer);
        EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.SetUserDlgProc", g_descriptor, {block, procedure}),
                  answers ? answer : 0);
    }
    // It asks the next slot, which answers nothing.
    if (const Row* const row = m_host.Facts().Find(kWidgetWithClass)) {
        EXPECT_EQ(m_plugin.CallSlot(row->name, g_descriptor, Words(row->arguments.size(), 1)), 0u);
    }
}

TEST_F(DerivedClasses, DescriptorsTableOfInterfaces) {
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.NumInterfaces", g_descriptor, {}), 0u);
    m_plugin.CallSlot("ClassDesc2.ClearInterfaces", g_descriptor, {});
    EXPECT_EQ(Interfaces(), 0u);
    Head head = {3, 8, {0x100000001, 0x200000002, 0x300000003}};
    Interfaces() = Word(&head);
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.NumInterfaces", g_descriptor, {}), 3u);
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.GetInterfaceAt", g_descriptor, {2}), 0x300000003u);
    m_plugin.CallSlot("ClassDesc2.ClearInterfaces", g_descriptor, {});
    EXPECT_EQ(head.count, 0);
    EXPECT_EQ(head.allocated, 8);
    EXPECT_EQ(Interfaces(), Word(&head));
    Interfaces() = 0;
}

TEST_F(DerivedClasses, DescriptorEnds) {
    // It lies in the file, so the table that stood before is put back for who comes next.
    const uint64_t table = Field(g_descriptor, 0);
    Destroy("ClassDesc2", g_descriptor, "ClassDesc2::~ClassDesc2");
    Field(g_descriptor, 0) = table;
}

// ---- utility object
// ------------------------------------------------------------------------------

TEST_F(DerivedClasses, Utility) {
    StartUtility();
    CallPlainSlots("GUP", g_utility);
    EXPECT_EQ(m_plugin.CallSlot("GUP.Control", g_utility, {3}), 0u);
    EXPECT_EQ(m_plugin.CallSlot("GUP.Save", g_utility, {m_host.Memory(8)}), 0u);
    EXPECT_EQ(m_plugin.CallSlot("GUP.Load", g_utility, {m_host.Memory(8)}), 0u);
    m_plugin.CallSlot("GUP.Stop", g_utility, {});
    Destroy("GUP", MakeUtility(), "GUP::~GUP");
    // Up to 2012 this is the host's own member.
    if (m_host.Facts().Find("GUP.DeleteThis")->decorated.empty()) {
        const uint64_t utility = MakeUtility();
        m_host.Expect("GUP::~GUP", {utility});
        m_host.Expect("delete", {utility});
        m_plugin.CallSlot("GUP.DeleteThis", utility, {});
    }
}

// ---- action callback
// -----------------------------------------------------------------------------

TEST_F(DerivedClasses, Callback) {
    StartUtility();
    CallPlainSlots("ActionCallback", g_callback);
    EXPECT_EQ(m_plugin.CallSlot("ActionCallback.ExecuteAction", g_callback, {999}), 0u);
    m_host.Expect("GUP.ExecuteStringScript",
                  m_host.WithMore("GUP.ExecuteStringScript", {g_utility, Argument::Any()}, 2),
                  [this](const Words& words) {
                      EXPECT_NE(Text(words[1]).find("key"), std::string::npos) << Text(words[1]);
                      return 1;
                  });
    constexpr unsigned kNextKey = 18;
    EXPECT_EQ(m_plugin.CallSlot("ActionCallback.ExecuteAction", g_callback, {kNextKey}), 1u);
    const uint64_t size = m_host.Number("size ActionCallback");
    const uint64_t copy = m_host.Memory(size);
    std::memcpy(reinterpret_cast<void*>(copy), reinterpret_cast<void*>(g_callback), size);
    Destroy("ActionCallback", copy, "ActionCallback::~ActionCallback");
}

// ---- callback of the command modes
// ---------------------------------------------------------------

TEST_F(DerivedClasses, ModeCallback) {
    StartUtility();
    const uint64_t core = m_host.Object("Interface");
    const uint64_t play = m_host.Object("CommandMode", 300);
    const uint64_t other = m_host.Object("CommandMode", 1);
    m_host.Expect("GetCOREInterface", {}, core);
    m_host.Expect("Interface.GetCommandStackSize", {core}, 1);
    m_host.Expect("CommandMode.ID", {other}, 1);
    m_plugin.CallSlot("CommandModeChangedCallback.ModeChanged", g_modeCallback, {play, other});
    const uint64_t copy = m_host.Memory(8);
    Field(copy, 0) = Field(g_modeCallback, 0);
    Destroy("CommandModeChangedCallback", copy, "");
}

// ---- action table
// --------------------------------------------------------------------------------

TEST_F(DerivedClasses, TablesOwnMembers) {
    const uint64_t table = MakeTable();
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.IsChecked(int)", table, {999}), 0u);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.IsItemVisible", table, {5}), 1u);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.IsItemVisible", table, {1}), 0u);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.IsEnabled(int)", table, {5}), 1u);
    const uint64_t size = m_host.Number("size MaxBmpFileIcon");
    const uint64_t icon = m_host.Memory(size);
    m_host.Expect("new", {size}, icon);
    m_host.Expect("MaxBmpFileIcon::MaxBmpFileIcon", {icon, Argument::Text("Karvel"), 16}, icon);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.GetIcon", table, {5}), icon);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.GetIcon", table, {5}), icon);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.GetIcon", table, {21}), 0u);
    Destroy("ActionTable", table, "ActionTable::~ActionTable");
}

TEST_F(DerivedClasses, TablesOtherMembers) {
    const uint64_t table = MakeTable();
    CallPlainSlots("ActionTable", table);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.AcquireInterface", table, {}), table);
    const uint64_t result = m_host.Memory(16);
    const uint64_t parameters = m_host.Memory(8);
    m_host.Expect("ActionTable.Invoke(short, int, pointer, pointer)",
                  {table, -5, 0, result, parameters}, 1);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.Invoke(short, pointer, pointer)", table,
                                {static_cast<uint16_t>(-5), result, parameters}),
              1u);
    m_host.Expect("ActionTable.Invoke(short, int, pointer)", {table, 5, 0, parameters}, 0);
    EXPECT_EQ(m_plugin.CallSlot("ActionTable.Invoke(short, pointer)", table, {5, parameters}), 0u);
    // 2024 alone has two of these, of which one calls the other.
    constexpr char kForChanging[] = "ActionTable.ReadPersistentActionId(pointer) 50";
    if (m_host.Has(kForChanging)) {
        m_host.Expect("ActionTable.ReadPersistentActionId(pointer) 51", {table, parameters}, 7);
        EXPECT_EQ(m_plugin.CallSlot(kForChanging, table, {parameters}), 7u);
    }
}

TEST_F(DerivedClasses, TableForgetsACallback) {
    const uint64_t table = MakeTable();
    m_plugin.CallSlot("ActionTable.UnRegisterNotifyCallback", table, {7});
    Head head = {4, 8, {7, 8, 0x100000007, 7}};
    const uint64_t callbacks = m_host.Memory(m_host.Number("size INodeTab"));
    const uint64_t tab = HeadOfTab(callbacks);
    Field(tab) = Word(&head);
    Callbacks(table) = callbacks;
    std::vector<int> removed;
    const Effect remove = [&](const Words& words) {
        const int place = static_cast<int>(words[1]);
        removed.push_back(place);
        std::copy(head.elements + place + 1, head.elements + head.count, head.elements + place);
        return static_cast<uint64_t>(--head.count);
    };
    m_host.Expect("TBDelete", {tab, 3, 1, 8}, remove);
    m_host.Expect("TBDelete", {tab, 0, 1, 8}, remove);
    m_plugin.CallSlot("ActionTable.UnRegisterNotifyCallback", table, {7});
    EXPECT_EQ(head.count, 2);
    Callbacks(table) = 0;
}

// What a script reads of the table by number.
TEST_F(DerivedClasses, TableAnswersByNumber) {
    const uint64_t table = MakeTable();
    const uint64_t result = m_host.Memory(16);
    const uint64_t text = m_host.Text("Karvel");
    const uint64_t context = m_host.Text("context");
    const int type_of_dword = static_cast<int>(m_host.Number("number type of a dword"));
    struct Case {
        int number;
        const char* member;
        uint64_t answer;
        int type;
        uint64_t value;
        Travel travel;
    };
    // The name is a `MSTR`: a pointer to its text.
    const Case kCases[] = {
        {0, "ActionTable.GetId", 0x837D5FB8, type_of_dword, 0x837D5FB8, Travel::kDword},
        {1, "ActionTable.GetName", Word(&text), 8, text, Travel::kPointer},
        {2, "ActionTable.GetContextId", 0x937D5FB8, type_of_dword, 0x937D5FB8, Travel::kDword},
        {3, "ActionTable::fpGetContextName", context, 8, context, Travel::kPointer},
        {4, "ActionTable.Count", kCommandCount, 1, kCommandCount, Travel::kInt},
    };
    for (const Case& each : kCases) {
        m_host.Expect(each.member, {table}, each.answer);
        m_host.Expect("FPValue::Loadva", {result, each.type, Argument::Any(), 1},
                      [&](const Words& words) {
                          const uint64_t mask = MaskOf(each.travel);
                          EXPECT_EQ(Field(words[2], 0) & mask, each.value) << each.number;
                          return words[2] + 8;
                      });
        EXPECT_EQ(m_plugin.CallSlot("ActionTable._dispatch_fn", table,
                                    {static_cast<uint64_t>(each.number), 4800, result, 0}),
                  1u);
    }
    // The index is the first parameter, 16 bytes with the value itself 8 bytes into them. Up to
    // 2012 the parameters are a `Tab`, whose two counts stand before it; later they lead to it, and
    // their count stands beside.
    struct {
        int counts[2] = {1, 1};
        int type = 1;
        int unused = -1;
        uint64_t value = WithRubbish(Travel::kInt, 70001);
    } const head;
    const bool tab = m_host.Number("size FPParams") == 8;
    const uint64_t parameters = m_host.Memory(m_host.Number("size FPParams"));
    Field(parameters) = Word(&head) + (tab ? 0 : sizeof(head.counts));
    if (!tab) Field(parameters, m_host.Number("field FPParams used")) = 1;
    const uint64_t item = m_host.Object("ActionItem");
    m_host.Expect("ActionTable.GetActionByIndex", {table, 70001}, item);
    const int type = static_cast<int>(m_host.Number("number type of an interface"));
    m_host.Expect("FPValue::Loadva", {result, type, Argument::At(item), 1},
                  [](const Words& words) { return words[2] + 8; });
    EXPECT_EQ(m_plugin.CallSlot("ActionTable._dispatch_fn", table, {5, 0, result, parameters}), 1u);
    for (const int unknown : {6, -1, -32768, 32767}) {
        EXPECT_EQ(m_plugin.CallSlot("ActionTable._dispatch_fn", table,
                                    {static_cast<uint16_t>(unknown), 0, result, 0}),
                  kLower);
    }
}

// ---- MAXScript
// -----------------------------------------------------------------------------------

TEST_F(DerivedClasses, ScriptFunctions) {
    const uint64_t value = m_host.Object("Value");
    uint64_t arguments[] = {value};
    const auto function = [this](const std::string& name) { return m_plugin.ScriptFunction(name); };
    m_host.Expect("Value.to_int", {value}, 3);
    EXPECT_EQ(Invoke(function("kv_graphiteSculptTool"), {Word(arguments), 1}),
              m_host.DataAt("true_value"));
    m_host.Expect("Value.to_bool", {value}, 0x100);
    EXPECT_EQ(Invoke(function("kv_polyShiftActive"), {Word(arguments), 1}),
              m_host.DataAt("true_value"));
    EXPECT_EQ(Invoke(function("trackview_isFocused"), {Word(arguments), 0}),
              m_host.DataAt("false_value"));
}

}  // namespace
}  // namespace raw_host
