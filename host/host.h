// The host, by role. Features call these functions and never an SDK member, so that everything that
// depends on a release of 3ds Max stands in this folder.
//
// All calls belong to the host's user-interface thread. A host object that is missing makes a query
// answer "nothing" (null, 0 or an empty optional, as each says) and a command do nothing.
#pragma once

#include <windows.h>

#include <optional>

class ActionCallback;
class ActionTable;
class CommandModeChangedCallback;
class GUP;
class IMenu;
class IMenuItem;
class INode;
class ViewExp;

// Release number of the running host as the plug-in compares it, 0 until the action table has been
// built.
extern int g_hostRelease;

namespace host {

struct ViewFacts;  // of host/inspection.h

// --- core -------------------------------------------------------------------------------------

// The release number of the running host, such as 13900.
int Release();

// The version word that the plug-in file announces, by which the host takes or refuses it.
unsigned long VersionWord();

// The host's main window; null while there is none.
HWND MainWindow();

// The plug-in configuration directory. The text belongs to the host; never null, may be empty.
const char* ConfigurationDirectory();

// Lets the host's message loop handle dialog keys for a modeless dialog, until it is withdrawn.
// A dialog is withdrawn before its window goes.
void RegisterDialogWindow(HWND dialog);
void WithdrawDialogWindow(HWND dialog);

// --- viewports --------------------------------------------------------------------------------

// A viewport object borrowed from the host; given back when this goes out of scope. Queries of an
// empty one answer no.
class Viewport {
public:
    static Viewport OfWindow(HWND window);  // empty: the window is no viewport
    static Viewport Active();               // empty: no viewport is active
    Viewport(const Viewport&) = delete;
    Viewport& operator=(const Viewport&) = delete;
    ~Viewport();

    explicit operator bool() const { return view_ != nullptr; }
    HWND Window() const;  // null when empty
    bool IsPerspective() const;
    bool IsUserView() const;  // axonometric
    bool IsLocked() const;    // must not be navigated
    std::optional<ViewFacts> Inspect() const;

private:
    explicit Viewport(ViewExp* view) : view_(view) {}
    ViewExp* view_;
};

void SetActiveViewport(HWND window);

// --- command modes ----------------------------------------------------------------------------

// Id and class of the current command mode; empty when there is none. They are different numbers:
// the id names one mode (6: select), the class a family of modes (7: all selecting).
std::optional<int> CurrentModeId();
std::optional<int> CurrentModeClass();
int ModeStackSize();
void PushStandardMode(int id);
void PopMode();
// Pops the top mode unless it is the last one.
void PopModeIfStacked();
// The host keeps the pointer until the process ends.
void RegisterModeCallback(CommandModeChangedCallback* callback);

inline constexpr int kModeMove = 1;
inline constexpr int kModeSelect = 6;
inline constexpr int kModeZoomView = 200;
inline constexpr int kModePanView = 202;
inline constexpr int kModePlayback = 300;

// --- scene ------------------------------------------------------------------------------------

int SelectedNodeCount();
INode* SelectedNode(int index);
void ClearSelection();
// Vertices, edges and the like are edited rather than whole objects.
bool IsSubObjectEditing();

bool IsNodeHidden(INode* node);
void HideNode(INode* node, bool hide);
// Updates what displays the node after it was hidden or shown.
void UpdateNodeDisplay(INode* node);

// A growable list of nodes on the host's heap. The nodes belong to the host.
class NodeList;
NodeList* NewNodeList();
void FreeNodeList(NodeList* list);  // null is allowed
// `more`: how many nodes are going to follow; the list grows for all of them at once.
void AppendNode(NodeList& list, INode* node, int more);
int NodeCount(const NodeList& list);
INode* NodeAt(const NodeList& list, int index);
void AddToSelection(NodeList& list);

// Named selection sets: index of the set of exactly this name, -1 when there is none.
int FindSelectionSet(const char* name);
int SelectionSetNodeCount(int set);
INode* SelectionSetNode(int set, int index);

bool IsSnapOn();

// The axis that transforms are held to, and the coordinate system whose axes are meant.
int AxisConstraint();
void SetAxisConstraint(int constraint);
int CoordinateSystem();
void SetCoordinateSystem(int system);
inline constexpr int kConstrainX = 3;
inline constexpr int kConstrainY = 4;
inline constexpr int kScreenCoordinates = 1;

// Every stop needs one restart.
void StopSceneRedraw();
void RestartSceneRedraw();
void RedrawViewsNow();
void RedrawEverything();
void ZoomExtentsOfActiveView();

// Makes the move tool the one that mouse messages drive, until EndDrag.
void PrepareDrag();
void EndDrag();

// An undo record; each Begin needs one Accept or Cancel.
void BeginUndoRecord();
void AcceptUndoRecord(const char* name);
void CancelUndoRecord();

// The macro recorder. Silence is counted by the host: each one needs one EndSilence.
bool IsMacroRecorderOn();
void SilenceMacroRecorder();
void EndMacroRecorderSilence();

// --- actions ----------------------------------------------------------------------------------

inline constexpr unsigned long kMainTable = 0;
inline constexpr unsigned long kTrackViewTable = 1;
inline constexpr unsigned long kSnapsTable = 1259304063;
inline constexpr unsigned long kUnwrapTable = 2077580866;

// Checked state of an action; empty when the host has no such action.
std::optional<bool> IsActionChecked(unsigned long table, int action);
// False when the action does not exist or the host refused to run it.
bool ExecuteAction(unsigned long table, int action);
// Executes the action once when its checked state differs from the wanted one.
void SetActionChecked(unsigned long table, int action, bool checked);

void RegisterActionContext(unsigned long id, const char* name);
// The host keeps the callback until the process ends.
void ActivateActionCallback(ActionCallback* callback, unsigned long table);

// --- toolbar ----------------------------------------------------------------------------------

// Makes toolbar and menu buttons of the plug-in's actions show their present state.
void RefreshMacroButtons();

// Whether the toolbar button of this control id can be pressed; empty when it does not exist.
std::optional<bool> IsToolbarButtonEnabled(int id);
inline constexpr int kSelectButton = 50027;

// Queries of a custom button by its window; empty for null and for windows of another class.
std::optional<bool> IsButtonChecked(HWND button);
std::optional<int> ButtonFlyout(HWND button);
// Chooses a flyout entry and has the button carry it out.
void ChooseButtonFlyout(HWND button, int entry);

// --- menu, listener ---------------------------------------------------------------------------

// False when the context is known already, that is, when the menu was built in an earlier start.
bool RegisterMenuContext(int id, const char* name);
// A new menu, registered with the host, which owns it from then on; null when it cannot be made.
IMenu* NewMenu(const char* title);
// New entries, owned by nobody until they are appended; null when one cannot be made. An action
// entry shows the action's own menu text; its action must be in the table.
IMenuItem* NewActionEntry(unsigned long table, int action);
IMenuItem* NewSeparatorEntry();
// Null for either leaves the menu as it is.
void AppendEntry(IMenu* menu, IMenuItem* entry);
// Puts the menu before the last top-level menu of the main menu bar and has the bar redrawn.
void InsertIntoMainMenuBar(IMenu* menu);

void PrintToListener(const char* text);

// --- scripts ----------------------------------------------------------------------------------

// The host runs scripts for a utility object: this one, from now on.
void SetScriptRunner(GUP& utility);

// Has MAXScript evaluate a text (writable, because the host's call wants it so; it is not changed).
// Nothing happens before there is a runner. Errors are the script's own.
void RunScript(char* text);

}  // namespace host
