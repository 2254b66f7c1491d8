// Isolated playback with a host that has no memory for a list of nodes. The host is played: each
// call that changes something is written down.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include <max.h>

#include "host/host.h"
#include "shell/playback.h"
#include "shell/script_runner.h"

namespace {

std::vector<std::string> g_effects;
CommandModeChangedCallback* g_callback = nullptr;
int g_depth = 1;
bool g_hidden[3] = {};

INode* NodeNumber(int index) {
    return reinterpret_cast<INode*>(static_cast<ULONG_PTR>(index + 1));
}
int NumberOf(INode* node) {
    return static_cast<int>(reinterpret_cast<ULONG_PTR>(node)) - 1;
}

void* PlayedNew(std::size_t size) {
    return std::malloc(size);
}
void PlayedDelete(void* memory) {
    std::free(memory);
}

}  // namespace

// The import slots of the host's heap operators.
extern "C" {
void* __imp__ZN16MaxHeapOperatorsnwEy = reinterpret_cast<void*>(PlayedNew);
void* __imp__ZN16MaxHeapOperatorsdlEPv = reinterpret_cast<void*>(PlayedDelete);
}

char kSelectEverything[] = "select everything";

void RunScript(char* text) {
    g_effects.push_back(text);
}

namespace host {

int ModeStackSize() {
    return g_depth;
}
void RegisterModeCallback(CommandModeChangedCallback* callback) {
    g_callback = callback;
}
void StopSceneRedraw() {
    g_effects.push_back("stop");
}
void RestartSceneRedraw() {
    g_effects.push_back("restart");
}
int FindSelectionSet(const char*) {
    return 0;
}
int SelectionSetNodeCount(int) {
    return 1;
}
INode* SelectionSetNode(int, int) {
    return NodeNumber(0);
}
int SelectedNodeCount() {
    return 3;
}
INode* SelectedNode(int index) {
    return NodeNumber(index);
}
void ClearSelection() {
    g_effects.push_back("clear selection");
}
bool IsNodeHidden(INode* node) {
    return g_hidden[NumberOf(node)];
}
void HideNode(INode* node, bool hide) {
    g_hidden[NumberOf(node)] = hide;
    g_effects.push_back((hide ? "hide " : "show ") + std::to_string(NumberOf(node)));
}
void UpdateNodeDisplay(INode* node) {
    g_effects.push_back("update " + std::to_string(NumberOf(node)));
}

class NodeList {};
NodeList* NewNodeList() {
    return nullptr;
}
void FreeNodeList(NodeList* list) {
    EXPECT_EQ(list, nullptr);
}
void AppendNode(NodeList&, INode*) {
    ADD_FAILURE() << "there is no list to append to";
}
int NodeCount(const NodeList&) {
    return 0;
}
INode* NodeAt(const NodeList&, int) {
    return nullptr;
}
void AddToSelection(NodeList&) {
    ADD_FAILURE() << "there is no list to select";
}

}  // namespace host

namespace {

class PlaybackMode : public CommandMode {
public:
    int Class() override { return 10; }
    int ID() override { return host::kModePlayback; }
};

TEST(Playback, WithoutMemoryForTheListNodesStayHidden) {
    RegisterPlaybackCallback();
    ASSERT_NE(g_callback, nullptr);
    g_isolatedPlayback = 1;
    PlaybackMode mode;
    g_depth = 2;
    g_callback->ModeChanged(nullptr, &mode);
    EXPECT_EQ(g_effects,
              (std::vector<std::string>{"stop", "select everything", "hide 0", "update 0", "hide 1",
                                        "update 1", "hide 2", "update 2", "show 0",
                                        "clear selection", "restart"}));
    g_effects.clear();
    g_depth = 1;
    g_callback->ModeChanged(&mode, nullptr);
    EXPECT_EQ(g_effects, (std::vector<std::string>{"stop", "restart"}));
    EXPECT_TRUE(g_hidden[1]);
    EXPECT_TRUE(g_hidden[2]);
}

}  // namespace
