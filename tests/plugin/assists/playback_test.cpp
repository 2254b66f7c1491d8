// Isolated playback with a host that has no memory for a list of nodes, and with one that takes
// hidden nodes out of the selection. The host is played: each call that changes something is
// written down.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <max.h>

#include "host/host.h"
#include "assists/isolated_playback.h"

namespace {

std::vector<std::string> g_effects;
CommandModeChangedCallback* g_callback = nullptr;
int g_depth = 1;
bool g_hidden[3] = {};
bool g_has_memory = false;
bool g_deselects = false;
std::vector<int> g_selected;

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

namespace host {

void RunScript(char* text) {
    g_effects.push_back(text);
}

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
    return static_cast<int>(g_selected.size());
}
INode* SelectedNode(int index) {
    return NodeNumber(g_selected.at(static_cast<std::size_t>(index)));
}
void ClearSelection() {
    g_effects.push_back("clear selection");
}
bool IsNodeHidden(INode* node) {
    return g_hidden[NumberOf(node)];
}
void HideNode(INode* node, bool hide) {
    g_hidden[NumberOf(node)] = hide;
    if (hide && g_deselects) std::erase(g_selected, NumberOf(node));
    g_effects.push_back((hide ? "hide " : "show ") + std::to_string(NumberOf(node)));
}
void UpdateNodeDisplay(INode* node) {
    g_effects.push_back("update " + std::to_string(NumberOf(node)));
}

class NodeList {
public:
    std::vector<INode*> nodes;
};
std::vector<int> g_room;  // for how many nodes a list is made when the first one comes
int g_lists = 0;          // made and not given back
NodeList* NewNodeList() {
    if (!g_has_memory) return nullptr;
    ++g_lists;
    return new NodeList;
}
void FreeNodeList(NodeList* list) {
    if (list) --g_lists;
    delete list;
}
void AppendNode(NodeList& list, INode* node, int more) {
    if (list.nodes.empty()) g_room.push_back(1 + more);
    list.nodes.push_back(node);
}
int NodeCount(const NodeList& list) {
    return static_cast<int>(list.nodes.size());
}
INode* NodeAt(const NodeList& list, int index) {
    return list.nodes.at(static_cast<std::size_t>(index));
}
void AddToSelection(NodeList& list) {
    std::string text = "select";
    for (INode* node : list.nodes)
        text += ' ' + std::to_string(NumberOf(node));
    g_effects.push_back(text);
}

}  // namespace host

namespace {

class PlaybackMode : public CommandMode {
public:
    int Class() override { return 10; }
    int ID() override { return host::kModePlayback; }
};

class Playback : public testing::Test {
protected:
    void SetUp() override {
        if (!g_callback) RegisterPlaybackCallback();
        g_isolatedPlayback = 1;
        g_depth = 1;
        g_effects.clear();
        host::g_room.clear();
        g_selected = {0, 1, 2};
        std::fill(std::begin(g_hidden), std::end(g_hidden), false);
        g_has_memory = g_deselects = false;
    }
    void Begin() {
        g_depth = 2;
        g_callback->ModeChanged(nullptr, &mode_);
    }
    void End() {
        g_effects.clear();
        g_depth = 1;
        g_callback->ModeChanged(&mode_, nullptr);
    }

private:
    PlaybackMode mode_;
};

TEST_F(Playback, WithoutMemoryForTheListNodesStayHidden) {
    Begin();
    EXPECT_EQ(g_effects,
              (std::vector<std::string>{"stop", "select everything", "hide 0", "update 0", "hide 1",
                                        "update 1", "hide 2", "update 2", "show 0",
                                        "clear selection", "restart"}));
    End();
    EXPECT_EQ(g_effects, (std::vector<std::string>{"stop", "restart"}));
    EXPECT_TRUE(g_hidden[1]);
    EXPECT_TRUE(g_hidden[2]);
}

TEST_F(Playback, HidesAllNodesWhereTheHostDeselectsThem) {
    g_has_memory = g_deselects = true;
    Begin();
    EXPECT_EQ(g_effects,
              (std::vector<std::string>{"stop", "select everything", "hide 0", "update 0", "hide 1",
                                        "update 1", "hide 2", "update 2", "show 0",
                                        "clear selection", "select 0 1 2", "restart"}));
    EXPECT_EQ(host::g_lists, 1) << "the nodes to show again, no longer the selection";
    End();
    EXPECT_EQ(host::g_lists, 0);
    EXPECT_EQ(g_effects, (std::vector<std::string>{"stop", "show 0", "update 0", "show 1",
                                                   "update 1", "show 2", "update 2", "restart"}));
}

TEST_F(Playback, MakesRoomForAllNodesAtOnce) {
    g_has_memory = true;
    Begin();
    EXPECT_EQ(host::g_room, (std::vector<int>{3, 3}));  // the selection, the nodes to hide
    End();
}

}  // namespace
