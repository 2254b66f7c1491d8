#include "assists/isolated_playback.h"

#include <max.h>

#include "host/host.h"
#include "script/script_texts.h"

int g_isolatedPlayback = 0;

// Depth of the command mode stack when playback started; 0: not playing.
int g_playbackDepth = 0;

namespace {

constexpr char kPlaybackSet[] = "kv Playback";

// The nodes that isolation hid and that the end of playback shows again; null: none.
host::NodeList* g_hiddenNodes = nullptr;

void ShowHiddenNodes() {
    if (!g_hiddenNodes) return;
    const int count = host::NodeCount(*g_hiddenNodes);
    for (int i = 0; i < count; ++i) {
        INode* node = host::NodeAt(*g_hiddenNodes, i);
        host::HideNode(node, false);
        host::UpdateNodeDisplay(node);
    }
    host::FreeNodeList(g_hiddenNodes);
    g_hiddenNodes = nullptr;
}

host::NodeList* CopySelection() {
    host::NodeList* list = host::NewNodeList();
    const int count = host::SelectedNodeCount();
    for (int i = 0; list && i < count; ++i)
        host::AppendNode(*list, host::SelectedNode(i), count - i - 1);
    return list;
}

bool CanBeHidden(INode* node) {
    return node && !host::IsNodeHidden(node);
}

// Copies the selected nodes that will be hidden. False: there is no memory for all of them. Nodes
// that were hidden before stay out, so the end of playback leaves them hidden.
bool ListNodesToHide() {
    g_hiddenNodes = host::NewNodeList();
    const int count = host::SelectedNodeCount();
    int wanted = 0;
    for (int i = 0; i < count; ++i) {
        INode* node = host::SelectedNode(i);
        if (!CanBeHidden(node)) continue;
        ++wanted;
        if (g_hiddenNodes) host::AppendNode(*g_hiddenNodes, node, count - i - 1);
    }
    return g_hiddenNodes && host::NodeCount(*g_hiddenNodes) == wanted;
}

// All are listed before the first one is hidden: a host may deselect what it hides. Without a list
// they are hidden for good.
void HideSelectedNodes() {
    const bool listed = ListNodesToHide();
    const int count = listed ? host::NodeCount(*g_hiddenNodes) : host::SelectedNodeCount();
    for (int i = 0; i < count; ++i) {
        INode* node = listed ? host::NodeAt(*g_hiddenNodes, i) : host::SelectedNode(i);
        if (!CanBeHidden(node)) continue;
        host::HideNode(node, true);
        host::UpdateNodeDisplay(node);
    }
}

void ShowNodesOfSet(int set) {
    const int count = host::SelectionSetNodeCount(set);
    for (int i = 0; i < count; ++i)
        host::HideNode(host::SelectionSetNode(set, i), false);
}

void IsolatePlaybackSet() {
    const int set = host::FindSelectionSet(kPlaybackSet);
    if (set < 0) return;
    host::NodeList* selection = CopySelection();
    host::RunScript(kSelectEverything);
    HideSelectedNodes();
    ShowNodesOfSet(set);
    host::ClearSelection();
    if (selection) host::AddToSelection(*selection);
    host::FreeNodeList(selection);
}

void IsolateOrRestore(bool restore) {
    if (g_playbackDepth == 0) return;
    host::StopSceneRedraw();
    if (restore || !g_isolatedPlayback) {
        ShowHiddenNodes();
    } else {
        IsolatePlaybackSet();
    }
    host::RestartSceneRedraw();
}

}  // namespace

// Not in the unnamed namespace: the name in its type information would depend on the folder of the
// build.
class ModeChangeCallback : public CommandModeChangedCallback {
public:
    void ModeChanged(CommandMode*, CommandMode* new_mode) override {
        const int depth = host::ModeStackSize();
        if (depth < g_playbackDepth) {
            IsolateOrRestore(true);
            g_playbackDepth = 0;
            return;
        }
        if (new_mode && new_mode->ID() == host::kModePlayback && g_playbackDepth == 0) {
            g_playbackDepth = depth;
            IsolateOrRestore(false);
        }
    }
};

void RegisterPlaybackCallback() {
    host::RegisterModeCallback(new ModeChangeCallback);
}
