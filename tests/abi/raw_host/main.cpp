// usage: raw_host_test PLUGIN.dll PLUGIN.map raw_host.txt host-calls.md [HOST]

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "tests/abi/raw_host/raw_plugin.h"

namespace raw_host {
namespace {

std::string g_hostCalls;
std::string g_host = "2012";
std::vector<Call> g_loading;  // what was called while the plug-in was loaded

TEST(Loading, MakesTheDescriptorAndRegistersTheScriptFunctions) {
    std::vector<std::string> names;
    for (const auto& [name, function] : ThePlugin().ScriptFunctions())
        names.push_back(name);
    std::vector<std::string> expected = {"trackview_isFocused",   "trackbar_isFocused",
                                         "kv_graphiteSculptTool", "kv_graphitePdTool",
                                         "kv_polyShiftActive",    "kv_zoomExtents"};
    // What answers the question that later hosts are asked about their Interaction Mode.
    if (TheHost().Year() >= 2013) expected.push_back("kv_hostAnswersAlt");
    // They are in different files, whose order is the linker's.
    std::sort(names.begin(), names.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(names, expected);
    size_t others = 0;
    for (const Call& call : g_loading) {
        if (call.row->name == "Primitive::Primitive") {
            EXPECT_EQ(call.words[3] & 0xFFFF, 0u) << "the flags of a script function";
        } else {
            EXPECT_EQ(call.row->name, "ClassDesc2::ClassDesc2");
            ++others;
        }
    }
    EXPECT_EQ(others, 1u);
}

// The static objects end with the file: the functions of MAXScript and the descriptor.
void ExpectThatUnloadingEndsThem() {
    TheHost().Record({});
    ThePlugin().Enter(DLL_PROCESS_DETACH);
    std::map<std::string, int> ended;
    for (const Call& call : TheHost().StopRecording())
        ++ended[call.row->name];
    const std::map<std::string, int> expected = {
        {"Function::~Function", static_cast<int>(ThePlugin().ScriptFunctions().size())},
        {"ClassDesc2::~ClassDesc2", 1}};
    EXPECT_EQ(ended, expected);
}

void ExpectThatEveryRowWasCalled() {
    for (const Row& row : TheHost().Facts().rows)
        EXPECT_TRUE(row.used) << row.name << " was called by no test";
}

void ExpectThatEveryNameOfTheHostIsImported() {
    for (const Row& row : TheHost().Facts().rows) {
        if (row.decorated.empty()) continue;
        EXPECT_EQ(ThePlugin().ImportedNames().count(row.decorated), 1u) << row.decorated;
    }
}

void ExpectThatEveryFunctionWasCalled() {
    EXPECT_GT(ThePlugin().CalledFunctions().size(), 90u);
    for (const std::string& function : ThePlugin().Functions())
        EXPECT_EQ(ThePlugin().CalledFunctions().count(function), 1u) << function;
}

// The document names in each row what the plug-in calls the role and the members of 2012 behind it.
void ExpectThatTheDocumentIsRight() {
    std::set<std::string> known;
    for (const Row& row : TheHost().Facts().rows)
        known.insert(std::regex_replace(row.name, std::regex("^.*[.:]|\\(.*"), ""));
    // Two exports of one name, told apart by what they are given.
    ASSERT_EQ(known.erase("GetCOREInterfaceOfId"), 1u);
    std::istringstream lines(g_hostCalls);
    std::string line;
    int functions = 0;
    int members = 0;
    static const std::regex kRow(R"(\|([^|]*)\|([^|]*)\|([^|]*)\|([^|]*)\|)");
    static const std::regex kFunction(R"(host::((?:Viewport::)?[A-Z]\w*))");
    while (std::getline(lines, line)) {
        std::smatch row;
        if (!std::regex_search(line, row, kRow)) continue;
        const std::string named = row[2];
        const std::string behind = row[3];
        for (std::sregex_iterator it(named.begin(), named.end(), kFunction), end; it != end; ++it) {
            ++functions;
            EXPECT_NE(ThePlugin().FindFunction((*it)[1]), "") << (*it)[0];
        }
        if (named.find("host::") == std::string::npos) continue;
        static const std::regex kCode("`([^`]*)`");
        for (std::sregex_iterator it(behind.begin(), behind.end(), kCode), end; it != end; ++it) {
            const std::string code = (*it)[1];
            static const std::regex kCalled(
                R"((?:->|theHold\.|utility\.|::|^)((?:Get|Release|puts|flush|[A-Z])\w*[a-z]\w*))");
            for (std::sregex_iterator call(code.begin(), code.end(), kCalled), last; call != last;
                 ++call) {
                const std::string member = (*call)[1];
                if (code.find(member + "::") != std::string::npos) continue;  // a class
                if (member == "INodeTab" || member == "INamedSelectionSetManager") continue;
                ++members;
                EXPECT_EQ(known.count(member), 1u) << member << " in: " << code;
            }
        }
    }
    EXPECT_GT(functions, 60);
    EXPECT_GT(members, 70);
}

// After the last test: what a whole run has to have seen.
class WholeRun : public ::testing::Environment {
public:
    void TearDown() override {
        ExpectThatUnloadingEndsThem();
        if (::testing::GTEST_FLAG(filter) != "*") return;
        ExpectThatEveryRowWasCalled();
        ExpectThatEveryNameOfTheHostIsImported();
        ExpectThatEveryFunctionWasCalled();
        if (g_host == "2012") ExpectThatTheDocumentIsRight();
    }
};

std::string Text(const char* path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// Loads the plug-in as the host's loader does.
bool LoadPlugin(char** arguments) {
    std::string problem;
    if (!TheHost().Read(arguments[3], g_host, problem) ||
        !(problem = ThePlugin().Load(arguments[1], arguments[2])).empty()) {
        std::fprintf(stderr, "raw_host_test: %s\n", problem.c_str());
        return false;
    }
    // The static objects: the descriptor, and the functions that MAXScript gets.
    const Effect made = [](const Words& words) { return words[0]; };
    const Effect registered = [](const Words& words) {
        ThePlugin().AddScriptFunction(TheHost().TextAt(words[1]), words[2]);
        return words[0];
    };
    TheHost().Record({{"ClassDesc2::ClassDesc2", made}, {"Primitive::Primitive", registered}});
    const bool entered = ThePlugin().Enter(DLL_PROCESS_ATTACH);
    g_loading = TheHost().StopRecording();
    return entered;
}

}  // namespace
}  // namespace raw_host

int main(int argument_count, char** arguments) {
    ::testing::InitGoogleTest(&argument_count, arguments);
    if (argument_count != 5 && argument_count != 6) {
        std::fprintf(stderr,
                     "usage: raw_host_test PLUGIN.dll PLUGIN.map raw_host.txt "
                     "host-calls.md [HOST]\n");
        return 2;
    }
    if (argument_count == 6) raw_host::g_host = arguments[5];
    if (!raw_host::LoadPlugin(arguments)) return 2;
    raw_host::g_hostCalls = raw_host::Text(arguments[4]);
    ::testing::AddGlobalTestEnvironment(new raw_host::WholeRun);
    return RUN_ALL_TESTS();
}
