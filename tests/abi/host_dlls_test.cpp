// The members that the host DLLs export, called as a plug-in calls them.

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include <max.h>

#include <INodeTab.h>
#include <iparamb2.h>
#include <maxheapdirect.h>
#include <maxicon.h>

namespace {

template <class T>
std::vector<T> Elements(const Tab<T>& table) {
    std::vector<T> elements;
    for (int index = 0; index < table.Count(); ++index)
        elements.push_back(table[index]);
    return elements;
}

using Numbers = std::vector<int>;

TEST(Tab, IsEmptyAtFirst) {
    Tab<int> table;
    EXPECT_EQ(table.Count(), 0);
}

TEST(Tab, AppendsBehindWhatIsThere) {
    Tab<int> table;
    int numbers[] = {1, 2, 3};
    table.Append(3, numbers);
    int last = 4;
    table.Append(1, &last);
    EXPECT_EQ(Elements(table), (Numbers{1, 2, 3, 4}));
}

TEST(Tab, KeepsItsElementsWhenItGrows) {
    Tab<int> table;
    Numbers expected;
    for (int number = 0; number < 1000; ++number) {
        table.Append(1, &number, number % 7);
        expected.push_back(number);
    }
    EXPECT_EQ(Elements(table), expected);
}

TEST(Tab, InsertsBetweenElements) {
    Tab<int> table;
    int outer[] = {1, 4};
    int inner[] = {2, 3};
    table.Append(2, outer);
    table.Insert(1, 2, inner);
    EXPECT_EQ(Elements(table), (Numbers{1, 2, 3, 4}));
}

TEST(Tab, DeletesARangeCutAtTheEnd) {
    Tab<int> table;
    int numbers[] = {1, 2, 3, 4, 5};
    table.Append(5, numbers);
    EXPECT_EQ(table.Delete(1, 2), 3);
    EXPECT_EQ(Elements(table), (Numbers{1, 4, 5}));
    EXPECT_EQ(table.Delete(2, 10), 2);
    EXPECT_EQ(Elements(table), (Numbers{1, 4}));
    EXPECT_EQ(table.Delete(2, 1), 2);
    EXPECT_EQ(table.Delete(-1, 1), 2);
}

TEST(Tab, ZeroedStorageIsEmptyAgain) {
    TabHdr* head = nullptr;
    int number = 1;
    TBInsertAt(&head, 0, 1, &number, sizeof(number), 0);
    ASSERT_NE(head, nullptr);
    zfree(reinterpret_cast<void**>(&head));
    EXPECT_EQ(head, nullptr);
}

TEST(NodeTab, FindsWhatItHolds) {
    INodeTab table;
    INode* one = reinterpret_cast<INode*>(0x1000);
    INode* other = reinterpret_cast<INode*>(0x2000);
    table.Append(1, &one);
    table.Append(1, &other);
    EXPECT_EQ(table.IndexOf(other), 1);
    EXPECT_TRUE(table.Contains(one));
    EXPECT_FALSE(table.Contains(reinterpret_cast<INode*>(0x3000)));
}

TEST(Text, CopiesWhatItIsGiven) {
    char source[] = "Karvel";
    CStr text(source);
    CStr copy(text);
    source[0] = 'X';
    EXPECT_STREQ(text.data(), "Karvel");
    EXPECT_STREQ(copy.data(), "Karvel");
    EXPECT_NE(text.data(), copy.data());
    EXPECT_EQ(copy.Length(), 6);
    EXPECT_FALSE(copy.isNull());
    EXPECT_TRUE(CStr(nullptr).isNull());
}

TEST(Heap, RawMemoryCanBeWritten) {
    char* memory = static_cast<char*>(MAX_new(3));
    ASSERT_NE(memory, nullptr);
    memory[2] = 'x';
    MAX_delete(memory);
    MAX_delete(nullptr);
}

TEST(Interval, KeepsItsEnds) {
    const Interval always = FOREVER;
    EXPECT_EQ(always.Start(), std::numeric_limits<int>::min());
    EXPECT_EQ(always.End(), std::numeric_limits<int>::max());
}

// ---- action tables
// -------------------------------------------------------------------------------

class OurTable : public ActionTable {
public:
    OurTable(MSTR& name, int count, ActionDescription* actions)
        : ActionTable(17, 18, name, nullptr, count, actions, GetModuleHandleA(nullptr)) {}
    using ActionTable::IsChecked;
    BOOL IsChecked(int id) override { return id == 202; }
    using ActionTable::IsEnabled;
    BOOL IsEnabled(int id) override { return id != 303; }
    int CallbackCount() const { return callbacks == nullptr ? 0 : callbacks->Count(); }
};

class ActionTables : public testing::Test {
protected:
    ActionTables() : name("Karvel actions"), table(name, 3, actions) {}

    ActionDescription actions[3] = {{101, 1, 2, 3}, {202, 4, 5, 6}, {303, 7, 8, 9}};
    MSTR name;
    OurTable table;
};

TEST_F(ActionTables, KeepWhatTheyWereBuiltFrom) {
    EXPECT_EQ(table.GetId(), 17u);
    EXPECT_EQ(table.GetContextId(), 18u);
    EXPECT_STREQ(table.GetName().data(), "Karvel actions");
    EXPECT_EQ(table.GetCallback(), nullptr);
    ASSERT_EQ(table.Count(), 3);
    EXPECT_EQ(table[0]->GetId(), 101);
    EXPECT_EQ(table.GetActionByIndex(2)->GetId(), 303);
    EXPECT_EQ(table.GetActionByIndex(3), nullptr);
    EXPECT_EQ(table.GetActionByIndex(-1), nullptr);
}

TEST_F(ActionTables, FindActionsByTheirId) {
    EXPECT_EQ(table.GetAction(202), table[1]);
    EXPECT_EQ(table.GetAction(1), nullptr);
}

TEST_F(ActionTables, AskThePluginForTheStateOfAnAction) {
    EXPECT_FALSE(table.GetAction(101)->IsChecked());
    EXPECT_TRUE(table.GetAction(202)->IsChecked());
    EXPECT_TRUE(table.GetAction(202)->IsEnabled());
    EXPECT_FALSE(table.GetAction(303)->IsEnabled());
    EXPECT_TRUE(table.GetAction(303)->IsItemVisible());
    EXPECT_EQ(table.GetIcon(101), nullptr);
}

TEST_F(ActionTables, WriteAndReadActionIds) {
    MSTR text("");
    table.WritePersistentActionId(202, text);
    EXPECT_STREQ(text.data(), "202");
    EXPECT_EQ(table.ReadPersistentActionId(text), 202);
    MSTR wrong("two");
    EXPECT_EQ(table.ReadPersistentActionId(wrong), -1);
    MSTR half("20x");
    EXPECT_EQ(table.ReadPersistentActionId(half), -1);
    MSTR nothing("");
    EXPECT_EQ(table.ReadPersistentActionId(nothing), -1);
}

TEST_F(ActionTables, RememberAndForgetCallbacks) {
    auto* one = reinterpret_cast<InterfaceNotifyCallback*>(0x1000);
    auto* other = reinterpret_cast<InterfaceNotifyCallback*>(0x2000);
    table.RegisterNotifyCallback(one);
    table.RegisterNotifyCallback(other);
    EXPECT_EQ(table.CallbackCount(), 2);
    table.UnRegisterNotifyCallback(one);
    EXPECT_EQ(table.CallbackCount(), 1);
    table.UnRegisterNotifyCallback(one);
    EXPECT_EQ(table.CallbackCount(), 1);
}

TEST_F(ActionTables, ForgetEveryEqualCallback) {
    auto* one = reinterpret_cast<InterfaceNotifyCallback*>(0x1000);
    auto* other = reinterpret_cast<InterfaceNotifyCallback*>(0x2000);
    table.UnRegisterNotifyCallback(one);
    for (auto* callback : {one, one, other, one})
        table.RegisterNotifyCallback(callback);
    table.UnRegisterNotifyCallback(one);
    EXPECT_EQ(table.CallbackCount(), 1);
    table.UnRegisterNotifyCallback(other);
    EXPECT_EQ(table.CallbackCount(), 0);
}

// A value as a script has it: nobody but the host can make one.
class ScriptValue {
public:
    FPValue& operator*() { return *reinterpret_cast<FPValue*>(m_words); }
    FPValue* operator->() { return &**this; }

private:
    alignas(FPValue) unsigned char m_words[sizeof(FPValue)] = {};
};

TEST_F(ActionTables, TellScriptsWhatTheyHoldByNumber) {
    FPParams parameters;
    ScriptValue index;
    index->type = TYPE_INT;
    index->i = 2;
    parameters.params.Append(1, &*index);
    FPInterface& published = table;

    ScriptValue answer;
    EXPECT_EQ(published._dispatch_fn(0, 4800, *answer, nullptr), FPS_OK);
    EXPECT_EQ(answer->type, 45);
    EXPECT_EQ(answer->dw, 17u);
    EXPECT_EQ(published._dispatch_fn(1, 4800, *answer, nullptr), FPS_OK);
    EXPECT_EQ(answer->type, 8);
    EXPECT_STREQ(answer->s, "Karvel actions");
    EXPECT_EQ(answer->s, table.GetName().data());
    EXPECT_EQ(published._dispatch_fn(2, 4800, *answer, nullptr), FPS_OK);
    EXPECT_EQ(answer->type, 45);
    EXPECT_EQ(answer->dw, 18u);
    EXPECT_EQ(published._dispatch_fn(3, 4800, *answer, nullptr), FPS_OK);
    EXPECT_EQ(answer->type, 8);
    EXPECT_STREQ(answer->s, table.fpGetContextName());
    EXPECT_EQ(published._dispatch_fn(4, 4800, *answer, nullptr), FPS_OK);
    EXPECT_EQ(answer->type, 1);
    EXPECT_EQ(answer->i, 3);
    EXPECT_EQ(published._dispatch_fn(5, 4800, *answer, &parameters), FPS_OK);
    EXPECT_EQ(answer->type, 39);
    EXPECT_EQ(answer->fi, table.GetActionByIndex(2));
}

TEST_F(ActionTables, LeaveANumberThatTheyDoNotPublish) {
    for (const FunctionID unknown : {-32768, -1, 6, 7, 32767}) {
        ScriptValue answer;
        answer->type = 1;
        answer->i = 1234;
        EXPECT_EQ(table._dispatch_fn(unknown, 0, *answer, nullptr), -1) << unknown;
        EXPECT_EQ(answer->type, 1);
        EXPECT_EQ(answer->i, 1234);
    }
}

TEST_F(ActionTables, AreTheInterfaceThatIsAcquired) {
    EXPECT_EQ(table.AcquireInterface(), static_cast<BaseInterface*>(&table));
    EXPECT_EQ(table.CloneInterface(), nullptr);
    EXPECT_EQ(static_cast<int>(table.LifetimeControl()), 3);
}

TEST_F(ActionTables, AnswerToTheirOwnInterfaceIdOnly) {
    EXPECT_EQ(table.GetInterface(table.GetID()), static_cast<BaseInterface*>(&table));
    EXPECT_EQ(table.GetInterface(Interface_ID(1, 2)), nullptr);
}

// ---- class descriptors
// ---------------------------------------------------------------------------

class OurDescriptor : public ClassDesc2 {
public:
    int IsPublic() override { return TRUE; }
    void* Create(BOOL) override { return nullptr; }
    const MCHAR* ClassName() override { return "ours"; }
    SClass_ID SuperClassID() override { return GUP_CLASS_ID; }
    Class_ID ClassID() override { return Class_ID(1, 2); }
    const MCHAR* Category() override { return "test"; }
};

TEST(ClassDescriptor, HasTheDefaultsOfTheHost) {
    OurDescriptor descriptor;
    ClassDesc& asHost = descriptor;
    EXPECT_TRUE(asHost.OkToCreate(nullptr));
    EXPECT_FALSE(asHost.HasClassParams());
    EXPECT_EQ(asHost.NumActionTables(), 0);
    EXPECT_EQ(asHost.GetActionTable(0), nullptr);
    EXPECT_EQ(asHost.InitialRollupPageState(), 0x7fffffffu);
    EXPECT_EQ(asHost.InternalName(), nullptr);
    EXPECT_EQ(asHost.HInstance(), nullptr);
    EXPECT_EQ(asHost.NumParamBlockDescs(), 0);
    EXPECT_EQ(asHost.NumInterfaces(), 0);
    EXPECT_EQ(asHost.SubClassID(), Class_ID(0xFFFFFFFF, 0xFFFFFFFF));
    EXPECT_EQ(asHost.Save(nullptr), IO_OK);
    EXPECT_EQ(asHost.Load(nullptr), IO_OK);
    EXPECT_EQ(asHost.Execute(0), 0);
}

TEST(ClassDescriptor, KeepsTheInterfacesThatAreAddedToIt) {
    OurDescriptor descriptor;
    MSTR name("Karvel actions");
    OurTable table(name, 0, nullptr);
    descriptor.AddInterface(&table);
    EXPECT_EQ(descriptor.NumInterfaces(), 1);
    EXPECT_EQ(descriptor.GetInterfaceAt(0), &table);
    EXPECT_EQ(descriptor.GetInterface(table.GetID()), &table);
    EXPECT_EQ(descriptor.GetInterface(Interface_ID(8, 9)), nullptr);
    // The storage of the table stays: an empty one and no longer none.
    TabHdr* const& storage = reinterpret_cast<TabHdr* const*>(&descriptor)[1];
    TabHdr* const before = storage;
    descriptor.ClearInterfaces();
    EXPECT_EQ(descriptor.NumInterfaces(), 0);
    EXPECT_EQ(storage, before);
    EXPECT_EQ(storage->n, 0);
}

}  // namespace
