// The start code of the msvc build: constructors and destructors of static objects, the stack
// probe, the heap, run-time type information. The DLL under test is the program's argument.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

std::string g_probePath;
std::vector<std::string> g_reports;

void Report(const char* what) {
    g_reports.push_back(what);
}

class RuntimeTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_reports.clear();
        module_ = LoadLibraryA(g_probePath.c_str());
        ASSERT_NE(module_, nullptr) << g_probePath << " is missing: ./dev build msvc";
    }
    void TearDown() override {
        if (module_ != nullptr) FreeLibrary(module_);
    }

    template <class Function>
    Function Find(const char* name) {
        void* address = reinterpret_cast<void*>(GetProcAddress(module_, name));
        EXPECT_NE(address, nullptr) << name;
        return reinterpret_cast<Function>(address);
    }

    HMODULE module_ = nullptr;
};

TEST_F(RuntimeTest, StaticObjectsAreConstructedInOrder) {
    EXPECT_EQ(Find<int (*)()>("ConstructionOrder")(), 12);
}

TEST_F(RuntimeTest, StaticObjectsAreDestroyedInReverseOrderWhenUnloaded) {
    Find<void (*)(void (*)(const char*))>("SetReporter")(Report);
    EXPECT_THAT(g_reports, ::testing::IsEmpty());
    FreeLibrary(module_);
    module_ = nullptr;
    EXPECT_THAT(g_reports, ::testing::ElementsAre("second", "first"));
}

TEST_F(RuntimeTest, StaticObjectsStartAnewWhenLoadedAgain) {
    FreeLibrary(module_);
    module_ = LoadLibraryA(g_probePath.c_str());
    ASSERT_NE(module_, nullptr);
    EXPECT_EQ(Find<int (*)()>("ConstructionOrder")(), 12);
}

// A thread of its own: its stack has not been touched beyond the first pages.
TEST_F(RuntimeTest, LargeFrameMeetsTheGuardPagesInOrder) {
    const auto use_large_frame = Find<int (*)(int)>("UseLargeFrame");
    static int (*s_use)(int);
    s_use = use_large_frame;
    HANDLE thread = CreateThread(
        nullptr, 0, [](LPVOID) -> DWORD { return static_cast<DWORD>(s_use(100)); }, nullptr, 0,
        nullptr);
    ASSERT_NE(thread, nullptr);
    ASSERT_EQ(WaitForSingleObject(thread, 20000), WAIT_OBJECT_0);
    DWORD sum = 0;
    ASSERT_TRUE(GetExitCodeThread(thread, &sum));
    CloseHandle(thread);
    EXPECT_EQ(sum, 3000u);
}

TEST_F(RuntimeTest, HeapOperatorsServeTheStandardLibrary) {
    EXPECT_EQ(Find<int (*)(int)>("UseHeap")(1000), 100000);
}

TEST_F(RuntimeTest, FloatingPointWorks) {
    EXPECT_EQ(Find<double (*)(double)>("UseFloatingPoint")(3.0), 4.5);
}

// In the Microsoft layout the word before the function table points to the complete object locator,
// whose first word is 1 in 64-bit files and whose fourth is the place of the type's description
// relative to the module; its name stands behind two pointers, the first to type_info's own table.
TEST_F(RuntimeTest, EveryClassCarriesItsTypeInformation) {
    void* object = Find<void* (*)(int)>("MakeObject")(1);
    void** table = *static_cast<void***>(object);
    const auto* locator = static_cast<const DWORD*>(table[-1]);
    EXPECT_EQ(locator[0], 1u);
    const char* description = reinterpret_cast<const char*>(module_) + locator[3];
    void* type_info_table = nullptr;
    memcpy(&type_info_table, description, sizeof(type_info_table));
    EXPECT_NE(type_info_table, nullptr);
    const std::string name = description + 2 * sizeof(void*);
    EXPECT_EQ(name.substr(0, 11), ".?AVDerived");

    // One destructor slot, the scalar deleting one, then the function.
    const auto answer = reinterpret_cast<int (*)(void*)>(table[1]);
    EXPECT_EQ(answer(object), 2);
    Find<void (*)(void*)>("DestroyObject")(object);
}

}  // namespace

int main(int argument_count, char** arguments) {
    ::testing::InitGoogleMock(&argument_count, arguments);
    if (argument_count != 2) {
        fprintf(stderr, "usage: runtime_test PROBE.dll\n");
        return 2;
    }
    g_probePath = arguments[1];
    return RUN_ALL_TESTS();
}
