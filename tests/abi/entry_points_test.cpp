// The plug-in file as the host's loader uses it: its entry points and what its class says of
// itself.

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include <max.h>

#include <gup.h>
#include <iparamb2.h>

#include "shell/commands.h"

namespace {

// Beside the host DLLs of the same build, so that the plug-in's imports find them.
std::string PluginFile() {
    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    const std::string path = program;
    return path.substr(0, path.find_last_of('\\')) + "\\..\\plugin\\KarvelMax.gup";
}

class PluginEntry : public testing::Test {
protected:
    // Loaded once and kept: the hooks that loading installs lie in it.
    static void SetUpTestSuite() { g_plugin = LoadLibraryA(PluginFile().c_str()); }

    void SetUp() override {
        ASSERT_NE(g_plugin, nullptr) << PluginFile() << ": error " << GetLastError();
    }

    template <class Function>
    static Function* Find(const char* name) {
        void* address = reinterpret_cast<void*>(GetProcAddress(g_plugin, name));
        EXPECT_NE(address, nullptr) << name;
        return reinterpret_cast<Function*>(address);
    }

    static ClassDesc2& Descriptor() {
        return *static_cast<ClassDesc2*>(Find<ClassDesc*(int)>("LibClassDesc")(0));
    }

    static HMODULE g_plugin;
};

HMODULE PluginEntry::g_plugin = nullptr;

TEST_F(PluginEntry, ThereIsOneClassAndNoOther) {
    EXPECT_EQ(Find<int()>("LibNumberClasses")(), 1);
    const auto class_at = Find<ClassDesc*(int)>("LibClassDesc");
    EXPECT_NE(class_at(0), nullptr);
    EXPECT_EQ(class_at(0), class_at(0));
    EXPECT_EQ(class_at(1), nullptr);
    EXPECT_EQ(class_at(-1), nullptr);
}

TEST_F(PluginEntry, VersionAndLoadingAreAnnounced) {
    EXPECT_EQ(Find<ULONG()>("LibVersion")(), 0x364C2500u);
    EXPECT_EQ(Find<ULONG()>("CanAutoDefer")(), 0u);
}

TEST_F(PluginEntry, TheDescriptionNamesThePluginAndAPlaceInTheWeb) {
    const std::string text = Find<const char*()>("LibDescription")();
    EXPECT_EQ(text.rfind("KarvelMax (", 0), 0u) << text;
    EXPECT_EQ(text.back(), ')') << text;
}

TEST_F(PluginEntry, OtherReasonsOfTheLoaderAreAnsweredAtOnce) {
    const auto* const header = reinterpret_cast<const IMAGE_DOS_HEADER*>(g_plugin);
    const auto* const image = reinterpret_cast<const IMAGE_NT_HEADERS*>(
        reinterpret_cast<const char*>(g_plugin) + header->e_lfanew);
    const auto entry = reinterpret_cast<BOOL(WINAPI*)(HINSTANCE, DWORD, void*)>(
        reinterpret_cast<char*>(g_plugin) + image->OptionalHeader.AddressOfEntryPoint);
    EXPECT_EQ(entry(g_plugin, DLL_THREAD_ATTACH, nullptr), TRUE);
    EXPECT_EQ(entry(g_plugin, DLL_THREAD_DETACH, nullptr), TRUE);
    EXPECT_EQ(Descriptor().HInstance(), g_plugin);
}

TEST_F(PluginEntry, TheClassSaysWhatItIs) {
    ClassDesc2& descriptor = Descriptor();
    EXPECT_EQ(descriptor.IsPublic(), 1);
    EXPECT_EQ(descriptor.SuperClassID(), 4320u);
    EXPECT_EQ(descriptor.ClassID(), Class_ID(0x6D43E91D, 0x2B7F634C));
    EXPECT_STREQ(descriptor.InternalName(), "KarvelMax");
    EXPECT_EQ(descriptor.HInstance(), g_plugin);
    EXPECT_EQ(descriptor.NumActionTables(), 1);
    // Two texts in the same place: each is there when it is asked for.
    EXPECT_STREQ(descriptor.ClassName(), "Karvel");
    EXPECT_STREQ(descriptor.Category(), "Options...");
    EXPECT_STREQ(descriptor.ClassName(), "Karvel");
}

TEST_F(PluginEntry, EachCallMakesAnObjectThatSavesNothing) {
    GUP* const first = static_cast<GUP*>(Descriptor().Create(FALSE));
    GUP* const second = static_cast<GUP*>(Descriptor().Create(TRUE));
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, second);
    for (const DWORD parameter : {0u, 1u, 0xFFFFFFFFu})
        EXPECT_EQ(first->Control(parameter), 0u);
    EXPECT_EQ(first->Save(nullptr), IO_OK);
    EXPECT_EQ(first->Load(nullptr), IO_OK);
    first->Stop();
    EXPECT_EQ(first->Control(0), 0u);
    delete first;
    delete second;
}

TEST_F(PluginEntry, EachCallMakesAnActionTable) {
    ActionTable* const first = Descriptor().GetActionTable(0);
    ActionTable* const second = Descriptor().GetActionTable(7);
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(first->GetId(), 0x737D5FB8u);
    EXPECT_EQ(first->GetContextId(), 0x737D5FB8u);
    EXPECT_STREQ(first->GetName().data(), "Karvel");
}

TEST_F(PluginEntry, ScriptsReadTheActionTableByNumber) {
    ActionTable* const table = Descriptor().GetActionTable(0);
    ASSERT_NE(table, nullptr);
    // Nobody but the host can make a value, so two stand in plain memory.
    alignas(FPValue) unsigned char words[2][sizeof(FPValue)] = {};
    FPValue& answer = *reinterpret_cast<FPValue*>(words[0]);
    FPValue& index = *reinterpret_cast<FPValue*>(words[1]);
    const auto call = [&](int number, FPParams* parameters) {
        return table->_dispatch_fn(static_cast<FunctionID>(number), 0, answer, parameters);
    };
    EXPECT_EQ(call(0, nullptr), 1);
    EXPECT_EQ(answer.dw, 0x737D5FB8u);
    EXPECT_EQ(call(1, nullptr), 1);
    EXPECT_STREQ(answer.s, "Karvel");
    EXPECT_EQ(call(2, nullptr), 1);
    EXPECT_EQ(answer.dw, 0x737D5FB8u);
    EXPECT_EQ(call(3, nullptr), 1);
    EXPECT_STREQ(answer.s, table->fpGetContextName());
    EXPECT_EQ(call(4, nullptr), 1);
    EXPECT_EQ(answer.i, static_cast<int>(std::size(kCommands)));
    FPParams parameters;
    index.type = TYPE_INT;
    index.i = 1;
    parameters.params.Append(1, &index);
    EXPECT_EQ(call(5, &parameters), 1);
    EXPECT_EQ(static_cast<ActionItem*>(answer.fi)->GetId(), 5);
    EXPECT_EQ(call(6, nullptr), -1);
}

}  // namespace
