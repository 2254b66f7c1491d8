#include <max.h>

#include <INamedSelectionSetManager.h>
#include <INodeTab.h>
#include <macrorec.h>

#include "host/core_interface.h"
#include "host/host.h"
#include "host/sdk_text.h"

namespace host {
namespace {

constexpr int kUndoNameSize = 64;

// How often the macro recorder was silenced and not given back yet.
int g_recorderSilences = 0;

INamedSelectionSetManager* SelectionSets() {
    return static_cast<INamedSelectionSetManager*>(
        GetCOREInterface(IID_NAMED_SELECTION_SET_MANAGER));
}

MacroRecorder* Recorder() {
    Interface* core = Core();
    return core ? core->GetMacroRecorder() : nullptr;
}

}  // namespace

class NodeList : public INodeTab {};

int SelectedNodeCount() {
    Interface* core = Core();
    return core ? core->GetSelNodeCount() : 0;
}

INode* SelectedNode(int index) {
    Interface* core = Core();
    return core ? core->GetSelNode(index) : nullptr;
}

void ClearSelection() {
    if (Interface* core = Core()) core->ClearNodeSelection(TRUE);
}

bool IsSubObjectEditing() {
    Interface* core = Core();
    return core && core->GetSubObjectLevel() != 0;
}

bool IsNodeHidden(INode* node) {
    return node && node->IsHidden() != 0;
}

void HideNode(INode* node, bool hide) {
    if (node) node->Hide(hide ? TRUE : FALSE);
}

void UpdateNodeDisplay(INode* node) {
    if (node) node->NotifyDependents(FOREVER, PART_DISPLAY, REFMSG_CHANGE);
}

NodeList* NewNodeList() {
    return new NodeList;
}

void FreeNodeList(NodeList* list) {
    delete list;
}

void AppendNode(NodeList& list, INode* node, int more) {
    list.Append(1, &node, more);
}

int NodeCount(const NodeList& list) {
    return list.Count();
}

INode* NodeAt(const NodeList& list, int index) {
    return list[index];
}

void AddToSelection(NodeList& list) {
    if (Interface* core = Core()) core->SelectNodeTab(list, TRUE, TRUE);
}

int FindSelectionSet(const char* name) {
    INamedSelectionSetManager* sets = SelectionSets();
    if (!sets) return -1;
    const int count = sets->GetNumNamedSelSets();
    for (int set = 0; set < count; ++set) {
        if (IsHostText(sets->GetNamedSelSetName(set), name)) return set;
    }
    return -1;
}

int SelectionSetNodeCount(int set) {
    INamedSelectionSetManager* sets = SelectionSets();
    return sets ? sets->GetNamedSelSetItemCount(set) : 0;
}

INode* SelectionSetNode(int set, int index) {
    INamedSelectionSetManager* sets = SelectionSets();
    return sets ? sets->GetNamedSelSetItem(set, index) : nullptr;
}

bool IsSnapOn() {
    Interface* core = Core();
    return core && core->GetSnapState();
}

int AxisConstraint() {
    Interface* core = Core();
    return core ? core->GetAxisConstraints() : 0;
}

void SetAxisConstraint(int constraint) {
    if (Interface* core = Core()) core->SetAxisConstraints(constraint);
}

int CoordinateSystem() {
    Interface* core = Core();
    return core ? core->GetRefCoordSys() : 0;
}

void SetCoordinateSystem(int system) {
    if (Interface* core = Core()) core->SetRefCoordSys(system);
}

void StopSceneRedraw() {
    if (Interface* core = Core()) core->DisableSceneRedraw();
}

void RestartSceneRedraw() {
    if (Interface* core = Core()) core->EnableSceneRedraw();
}

void RedrawViewsNow() {
    if (Interface* core = Core()) core->RedrawViews(core->GetTime(), REDRAW_NORMAL);
}

void RedrawEverything() {
    if (Interface* core = Core()) core->ForceCompleteRedraw(TRUE);
}

void ZoomExtentsOfActiveView() {
    if (Interface* core = Core()) core->ViewportZoomExtents(FALSE, FALSE);
}

void BeginUndoRecord() {
    theHold.Begin();
}

void AcceptUndoRecord(const char* name) {
    // The SDK of 2012 takes a writable text, and 0 could mean a string id: so a copy, on the stack.
    MCHAR text[kUndoNameSize];
    CopyTextForHost(text, kUndoNameSize, name);
    theHold.Accept(text);
}

void CancelUndoRecord() {
    theHold.Cancel();
}

bool IsMacroRecorderOn() {
    MacroRecorder* recorder = Recorder();
    return recorder && recorder->Enabled();
}

void SilenceMacroRecorder() {
    MacroRecorder* recorder = Recorder();
    if (!recorder) return;
    recorder->Disable();
    ++g_recorderSilences;
}

void EndMacroRecorderSilence() {
    // Enable undoes one Disable and brings back whichever state stood before it, so it is not made
    // to depend on that state: a Disable without its Enable would keep the recorder silent for
    // good. An Enable without its Disable would undo somebody else's, so silences that never began
    // are not ended, and one that could not be ended when its time came is ended with the next.
    MacroRecorder* recorder = Recorder();
    if (!recorder) return;
    for (; g_recorderSilences > 0; --g_recorderSilences)
        recorder->Enable();
}

}  // namespace host
