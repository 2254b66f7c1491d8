#pragma once

#include <CoreFunctions.h>
#include <GetCOREInterface.h>
#include <actiontable.h>
#include <cmdmode.h>
#include <inode.h>
#include <plugapi.h>

class IMenuManager;
class INodeTab;
class MacroRecorder;

// Axis constraints.
#define AXIS_YZ 0
#define AXIS_ZX 1
#define AXIS_XY 2
#define AXIS_X 3
#define AXIS_Y 4
#define AXIS_Z 5

// Reference coordinate systems.
#define COORDS_HYBRID 0
#define COORDS_SCREEN 1
#define COORDS_WORLD 2
#define COORDS_PARENT 3
#define COORDS_LOCAL 4
#define COORDS_OBJECT 5
#define COORDS_GIMBAL 6
#define COORDS_WORKINGPIVOT 7

// Transform centres.
#define ORIGIN_LOCAL 0
#define ORIGIN_SELECTION 1
#define ORIGIN_SYSTEM 2

#define REDRAW_BEGIN (1 << 0)
#define REDRAW_INTERACTIVE (1 << 1)
#define REDRAW_END (1 << 2)
#define REDRAW_NORMAL (1 << 3)

// The host's folder for the settings of plug-ins, as GetDir takes it.
#define APP_PLUGCFG_DIR 9

// What ViewExp::GetViewType answers.
enum ViewType {
    VIEW_LEFT = 0,
    VIEW_RIGHT = 1,
    VIEW_TOP = 2,
    VIEW_BOTTOM = 3,
    VIEW_FRONT = 4,
    VIEW_BACK = 5,
    VIEW_ISO_USER = 6,
    VIEW_PERSP_USER = 7,
    VIEW_CAMERA = 8,
    VIEW_GRID = 9,
    VIEW_NONE = 10,
    VIEW_TRACK = 11,
    VIEW_SPOT = 12,
    VIEW_SHAPE = 13,
    VIEW_SCHEMATIC = 14,
    VIEW_RENDER = 15,
    VIEW_SCENEEXPLORER = 16,
    VIEW_OTHER = 17,
};

// One viewport. It is handed out by reference and belongs to the host; where there is none, the
// reference leads to an object that is not alive.
class ViewExp : public InterfaceServer {
public:
    virtual bool IsAlive() = 0;
    virtual ViewExp* ToPointer() = 0;
    virtual int GetViewType() = 0;
    virtual BOOL IsPerspView() = 0;
    virtual INode* GetViewCamera() = 0;
    virtual INode* GetViewSpot() = 0;
    virtual HWND GetHWnd() = 0;
    virtual BOOL IsActive() = 0;
    virtual BOOL IsEnabled() = 0;
};

// Hears of every change of the command mode. The host keeps the pointer and never ends the object.
class CommandModeChangedCallback : public MaxHeapOperators {
public:
    virtual ~CommandModeChangedCallback() {}
    virtual void ModeChanged(CommandMode* oldM, CommandMode* newM) = 0;
};

// The host itself.
class Interface : public FPStaticInterface {
public:
    virtual void RedrawViews(TimeValue t, DWORD vpFlags = REDRAW_NORMAL,
                             ReferenceTarget* change = nullptr) = 0;
    virtual BOOL SetActiveViewport(HWND hwnd) = 0;
    virtual ViewExp& GetActiveViewExp() = 0;
    virtual HWND GetMAXHWnd() = 0;
    virtual void ForceCompleteRedraw(BOOL doDisabled = TRUE) = 0;
    virtual void DisableSceneRedraw() = 0;
    virtual void EnableSceneRedraw() = 0;
    virtual void PushCommandMode(CommandMode* m) = 0;
    virtual void SetCommandMode(CommandMode* m) = 0;
    virtual void PopCommandMode() = 0;
    virtual CommandMode* GetCommandMode() = 0;
    virtual void SetStdCommandMode(int cid) = 0;
    virtual void PushStdCommandMode(int cid) = 0;
    virtual BOOL GetSnapState() = 0;
    virtual int GetSubObjectLevel() = 0;
    virtual BOOL SelectionFrozen() = 0;
    virtual void FreezeSelection() = 0;
    virtual void ThawSelection() = 0;
    virtual INode* GetSelNode(int i) = 0;
    virtual int GetSelNodeCount() = 0;
    virtual void EnableUndo(BOOL onOff) = 0;
    virtual ViewExp& GetViewExp(HWND hwnd) = 0;
    virtual int GetAxisConstraints() = 0;
    virtual void SetAxisConstraints(int c) = 0;
    virtual void PushAxisConstraints(int c) = 0;
    virtual void PopAxisConstraints() = 0;
    virtual int GetRefCoordSys() = 0;
    virtual void SetRefCoordSys(int c) = 0;
    virtual void RegisterDlgWnd(HWND hDlg) = 0;
    virtual int UnRegisterDlgWnd(HWND hDlg) = 0;
    virtual IActionManager* GetActionManager() = 0;
    virtual IMenuManager* GetMenuManager() = 0;
    virtual TimeValue GetTime() = 0;
    virtual void RegisterCommandModeChangedCallback(CommandModeChangedCallback* cb) = 0;
    virtual void SelectNode(INode* node, int clearSel = 1) = 0;
    virtual void SelectNodeTab(INodeTab& nodes, BOOL sel, BOOL redraw = TRUE) = 0;
    virtual void ClearNodeSelection(BOOL redraw = TRUE) = 0;
    virtual const MCHAR* GetDir(int which) = 0;
    virtual void ViewportZoomExtents(BOOL doAll, BOOL skipPersp = FALSE) = 0;
    virtual int GetCommandStackSize() = 0;
    virtual CommandMode* GetCommandStackEntry(int entry) = 0;
    virtual MacroRecorder* GetMacroRecorder() = 0;
};
