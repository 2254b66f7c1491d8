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

uint64_t Word(const void* address) {
    return reinterpret_cast<uint64_t>(address);
}
std::string Text(uint64_t address) {
    return IsReadable(address, 1) ? reinterpret_cast<const char*>(address) : "(no text)";
}
uint64_t& Field(uint64_t object, size_t offset) {
    return *reinterpret_cast<uint64_t*>(object + offset);
}

// A `Tab` of the host's: a pointer to two counts and the elements.
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
        Field(g_descriptor, 8) = 0;
    }
    void TearDown() override { m_host.ExpectNoMore(); }

    uint64_t MakeUtility() {
        const uint64_t memory = m_host.Memory(8);
        m_host.Expect("new", {8}, memory);
        m_host.Expect("GUP::GUP", {memory}, memory);
        return m_plugin.CallSlot("ClassDesc2.Create", g_descriptor, {0});
    }

    // The table, built as the plug-in wants it by what the host exports.
    uint64_t MakeTable() {
        const uint64_t memory = m_host.Memory(80);
        const uint64_t core = m_host.Object("Interface");
        const uint64_t actions = m_host.Object("IActionManager");
        static uint64_t name = 0;
        m_host.Expect("CStr::CStr", {Argument::Any(), Argument::Text("Karvel")},
                      [](const Words& words) { return name = words[0]; });
        m_host.Expect("Get3DSMAXVersion", {}, 0x364C2500);
        m_host.Expect("new", {80}, memory);
        m_host.Expect("ActionTable::ActionTable",
                      {memory, kKarvelTable, kKarvelTable, Argument::Any(), 0, kCommandCount,
                       Argument::Any(), Argument::Any()},
                      [](const Words& words) {
                          EXPECT_EQ(words[3], name) << "the name of the table";
                          EXPECT_EQ(reinterpret_cast<const int*>(words[6])[0], 1);
                          EXPECT_EQ(reinterpret_cast<const int*>(words[6])[4], 5);
                          EXPECT_NE(words[7], 0u) << "the module of the texts";
                          Field(words[0], 16) = 0;
                          return words[0];
                      });
        m_host.Expect("GetCOREInterface", {}, core);
        m_host.Expect("Interface.GetActionManager", {core}, actions);
        m_host.Expect("IActionManager.RegisterActionContext",
                      {actions, kKarvelTable, Argument::Text("Karvel")}, 1);
        m_host.Expect("CStr::~CStr", {Argument::Any()}, [](const Words& words) {
            EXPECT_EQ(words[0], name);
            return uint64_t{0};
        });
        return m_plugin.CallSlot("ClassDesc2.GetActionTable", g_descriptor, {0});
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
        effects["Interface.GetDir"] = answer(Word(g_folder.c_str()));
        effects["GUP.ExecuteStringScript"] = answer(1);
        effects["new"] = [this](const Words& words) { return m_host.Memory(words[0]); };
        effects["ActionCallback::ActionCallback"] = [](const Words& words) { return words[0]; };
        m_host.Record(effects);
        EXPECT_EQ(m_plugin.CallSlot("GUP.Start", g_utility, {}), 0u);
        for (const Call& call : m_host.StopRecording()) {
            if (call.row->name == "IActionManager.ActivateActionTable") {
                g_callback = call.words[1];
                EXPECT_EQ(call.words[2] & kLower, kKarvelTable);
            } else if (call.row->name == "Interface.RegisterCommandModeChangedCallback") {
                g_modeCallback = call.words[1];
            } else if (call.row->name == "GUP.ExecuteStringScript") {
                EXPECT_EQ(call.words[0], g_utility);
            } else if (call.row->name == "IMenuManager.RegisterMenuBarContext") {
                EXPECT_EQ(call.words[1] & kLower, 0x3683658Cu);
                EXPECT_EQ(Text(call.words[2]), "Flinder Menu Context");
            } else if (call.row->name == "Interface.GetDir") {
                EXPECT_EQ(call.words[1] & kLower, 9u);
            }
        }
        ASSERT_NE(g_callback, 0u);
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
        if (row.result == Travel::kIdResult) expected.push_back(Argument::Any());
        for (size_t index = 0; index < row.arguments.size(); ++index) {
            arguments.push_back(0x8182838485868788 + 0x0101010101010101 * index);
            expected.push_back(arguments.back());
        }
        constexpr uint64_t kAnswer = 0x9192939495969798;
        if (row.result == Travel::kIdResult) {
            m_host.Expect(row.name, expected, [](const Words& words) {
                Field(words[1], 0) = kAnswer;
                return words[1];
            });
        } else {
            m_host.Expect(row.name, expected, kAnswer);
        }
        const uint64_t mask = row.result == Travel::kIdResult ? ~uint64_t{0} : MaskOf(row.result);
        EXPECT_EQ(m_plugin.CallSlot(row.name, object, arguments), kAnswer & mask) << row.name;
    }

    // The scalar deleting destructor: told by its argument whether the memory goes too.
    void Destroy(const std::string& class_name, uint64_t object, const std::string& of_host) {
        for (const bool frees : {false, true}) {
            if (!of_host.empty()) m_host.Expect(of_host, {object});
            if (frees) m_host.Expect("delete", {object});
            EXPECT_EQ(m_plugin.CallSlot(class_name + ".destructor", object, {frees ? 1u : 0u}),
                      object);
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
    m_host.Expect("ClassDesc2::SetUserDlgProcOfMap", {g_descriptor, block, 0, procedure});
    m_plugin.CallSlot("ClassDesc2.SetUserDlgProc", g_descriptor, {block, procedure});
}

TEST_F(DerivedClasses, DescriptorsTableOfInterfaces) {
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.NumInterfaces", g_descriptor, {}), 0u);
    m_plugin.CallSlot("ClassDesc2.ClearInterfaces", g_descriptor, {});
    EXPECT_EQ(Field(g_descriptor, 8), 0u);
    Head head = {3, 8, {0x100000001, 0x200000002, 0x300000003}};
    Field(g_descriptor, 8) = Word(&head);
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.NumInterfaces", g_descriptor, {}), 3u);
    EXPECT_EQ(m_plugin.CallSlot("ClassDesc2.GetInterfaceAt", g_descriptor, {2}), 0x300000003u);
    m_plugin.CallSlot("ClassDesc2.ClearInterfaces", g_descriptor, {});
    EXPECT_EQ(head.count, 0);
    EXPECT_EQ(head.allocated, 8);
    EXPECT_EQ(Field(g_descriptor, 8), Word(&head));
    Field(g_descriptor, 8) = 0;
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
}

// ---- action callback
// -----------------------------------------------------------------------------

TEST_F(DerivedClasses, Callback) {
    StartUtility();
    CallPlainSlots("ActionCallback", g_callback);
    EXPECT_EQ(m_plugin.CallSlot("ActionCallback.ExecuteAction", g_callback, {999}), 0u);
    m_host.Expect("GUP.ExecuteStringScript", {g_utility, Argument::Any()}, [](const Words& words) {
        EXPECT_NE(Text(words[1]).find("key"), std::string::npos) << Text(words[1]);
        return 1;
    });
    constexpr unsigned kNextKey = 18;
    EXPECT_EQ(m_plugin.CallSlot("ActionCallback.ExecuteAction", g_callback, {kNextKey}), 1u);
    const uint64_t copy = m_host.Memory(32);
    std::memcpy(reinterpret_cast<void*>(copy), reinterpret_cast<void*>(g_callback), 32);
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
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.IsChecked", table, {999}), 0u);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.IsItemVisible", table, {5}), 1u);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.IsItemVisible", table, {1}), 0u);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.IsEnabled", table, {5}), 1u);
    const uint64_t icon = m_host.Memory(32);
    m_host.Expect("new", {32}, icon);
    m_host.Expect("MaxBmpFileIcon::MaxBmpFileIcon", {icon, Argument::Text("Karvel"), 16}, icon);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.GetIcon", table, {5}), icon);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.GetIcon", table, {5}), icon);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.GetIcon", table, {21}), 0u);
    Destroy("OurActionTable", table, "ActionTable::~ActionTable");
}

TEST_F(DerivedClasses, TablesOtherMembers) {
    const uint64_t table = MakeTable();
    CallPlainSlots("OurActionTable", table);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.AcquireInterface", table, {}), table);
    const uint64_t result = m_host.Memory(16);
    const uint64_t parameters = m_host.Memory(8);
    m_host.Expect("OurActionTable.Invoke", {table, -5, 0, result, parameters}, 1);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.InvokeNow", table,
                                {static_cast<uint16_t>(-5), result, parameters}),
              1u);
    m_host.Expect("OurActionTable.InvokeWithoutResult", {table, 5, 0, parameters}, 0);
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable.InvokeNowWithoutResult", table, {5, parameters}),
              0u);
}

TEST_F(DerivedClasses, TableForgetsACallback) {
    const uint64_t table = MakeTable();
    m_plugin.CallSlot("OurActionTable.UnRegisterNotifyCallback", table, {7});
    // A pointer to a table, which is a pointer to counts and elements.
    Head head = {4, 8, {7, 8, 0x100000007, 7}};
    const uint64_t callbacks = m_host.Memory(8);
    Field(callbacks, 0) = Word(&head);
    Field(table, 16) = callbacks;
    std::vector<int> removed;
    const Effect remove = [&](const Words& words) {
        const int place = static_cast<int>(words[1]);
        removed.push_back(place);
        std::copy(head.elements + place + 1, head.elements + head.count, head.elements + place);
        return static_cast<uint64_t>(--head.count);
    };
    m_host.Expect("TBDelete", {callbacks, 3, 1, 8}, remove);
    m_host.Expect("TBDelete", {callbacks, 0, 1, 8}, remove);
    m_plugin.CallSlot("OurActionTable.UnRegisterNotifyCallback", table, {7});
    EXPECT_EQ(head.count, 2);
    Field(table, 16) = 0;
}

// What a script reads of the table by number.
TEST_F(DerivedClasses, TableAnswersByNumber) {
    const uint64_t table = MakeTable();
    const uint64_t result = m_host.Memory(16);
    const char kText[] = "Karvel";
    const char kContext[] = "context";
    const auto text_at = Word(kText);
    struct Case {
        int number;
        const char* member;
        uint64_t answer;
        int type;
        uint64_t value;
        Travel travel;
    };
    // The name is a `CStr`: a pointer to its text.
    const Case kCases[] = {
        {0, "OurActionTable.GetId", 0x837D5FB8, 45, 0x837D5FB8, Travel::kDword},
        {1, "OurActionTable.GetName", Word(&text_at), 8, Word(kText), Travel::kPointer},
        {2, "OurActionTable.GetContextId", 0x937D5FB8, 45, 0x937D5FB8, Travel::kDword},
        {3, "ActionTable::fpGetContextName", Word(kContext), 8, Word(kContext), Travel::kPointer},
        {4, "OurActionTable.Count", kCommandCount, 1, kCommandCount, Travel::kInt},
    };
    for (const Case& each : kCases) {
        m_host.Expect(each.member, {table}, each.answer);
        m_host.Expect("FPValue::Loadva", {result, each.type, Argument::Any(), 1},
                      [&](const Words& words) {
                          const uint64_t mask = MaskOf(each.travel);
                          EXPECT_EQ(Field(words[2], 0) & mask, each.value) << each.number;
                          return words[2] + 8;
                      });
        EXPECT_EQ(m_plugin.CallSlot("OurActionTable._dispatch_fn", table,
                                    {static_cast<uint64_t>(each.number), 4800, result, 0}),
                  1u);
    }
    // The index is the first parameter: the values stand behind the two counts, 16 bytes each, the
    // value itself 8 bytes into them.
    struct {
        int counts[2] = {1, 1};
        int type = 1;
        int unused = -1;
        uint64_t value = WithRubbish(Travel::kInt, 70001);
    } const head;
    const uint64_t parameters = m_host.Memory(8);
    Field(parameters, 0) = Word(&head);
    const uint64_t item = m_host.Object("ActionItem");
    m_host.Expect("OurActionTable.GetActionByIndex", {table, 70001}, item);
    m_host.Expect("FPValue::Loadva", {result, 39, Argument::At(item), 1},
                  [](const Words& words) { return words[2] + 8; });
    EXPECT_EQ(m_plugin.CallSlot("OurActionTable._dispatch_fn", table, {5, 0, result, parameters}),
              1u);
    for (const int unknown : {6, -1, -32768, 32767}) {
        EXPECT_EQ(m_plugin.CallSlot("OurActionTable._dispatch_fn", table,
                                    {static_cast<uint16_t>(unknown), 0, result, 0}),
                  kLower);
    }
}

// ---- MAXScript
// -----------------------------------------------------------------------------------

TEST_F(DerivedClasses, ScriptFunctions) {
    const uint64_t value = m_host.Object("Value");
    uint64_t arguments[] = {value};
    const auto function = [](const std::string& name) {
        for (const auto& [symbol, address] : ThePlugin().ScriptFunctions())
            if (symbol == name) return address;
        ADD_FAILURE() << "no script function " << name;
        return uint64_t{0};
    };
    EXPECT_EQ(ThePlugin().ScriptFunctions().size(), 6u);
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
