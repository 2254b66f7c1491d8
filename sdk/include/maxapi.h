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

// One viewport. Whoever was handed one gives it back with Interface::ReleaseViewport. Hosts from
// 2013 on hand out references, which nobody gives back; where there is no viewport, one leads to an
// object that is not alive.
class ViewExp : public InterfaceServer {
public:
    SDK_SLOTS_8(ViewExp, 2, 3, 4, 5, 6, 7, 8, 9)
    SDK_SLOTS_5(ViewExp, 10, 11, 12, 13, 14)
    virtual int GetViewType() = 0;
    virtual BOOL IsPerspView() = 0;
    SDK_SLOTS_3(ViewExp, 17, 18, 19)
    SDK_SLOTS_9(ViewExp, 20, 21, 22, 23, 24, 25, 26, 27, 28)
    virtual INode* GetViewCamera() = 0;
    SDK_SLOTS_2(ViewExp, 30, 31)
    virtual INode* GetViewSpot() = 0;
    SDK_SLOTS_7(ViewExp, 33, 34, 35, 36, 37, 38, 39)
    SDK_TEN_SLOTS(ViewExp, 4)
    virtual HWND GetHWnd() = 0;
    virtual BOOL IsActive() = 0;
    virtual BOOL IsEnabled() = 0;
    SDK_SLOTS_5(ViewExp, 53, 54, 55, 56, 57)
#ifdef UNICODE
    virtual bool IsAlive() = 0;
    virtual ViewExp* ToPointer() = 0;
#endif
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
    SDK_SLOT(Interface, 28)
    virtual void RedrawViews(TimeValue t, DWORD vpFlags = REDRAW_NORMAL,
                             ReferenceTarget* change = nullptr) = 0;
    virtual BOOL SetActiveViewport(HWND hwnd) = 0;
#ifdef UNICODE
    virtual ViewExp& GetActiveViewExp() = 0;
#else
    virtual ViewExp* GetActiveViewport() = 0;
#endif
    SDK_SLOTS_2(Interface, 32, 33)
    virtual HWND GetMAXHWnd() = 0;
    virtual void ForceCompleteRedraw(BOOL doDisabled = TRUE) = 0;
    SDK_SLOTS_2(Interface, 36, 37)
    virtual void DisableSceneRedraw() = 0;
    virtual void EnableSceneRedraw() = 0;
    SDK_TEN_SLOTS(Interface, 4)
    SDK_SLOTS_2(Interface, 50, 51)
    virtual void PushCommandMode(CommandMode* m) = 0;
    virtual void SetCommandMode(CommandMode* m) = 0;
    virtual void PopCommandMode() = 0;
    virtual CommandMode* GetCommandMode() = 0;
    virtual void SetStdCommandMode(int cid) = 0;
    virtual void PushStdCommandMode(int cid) = 0;
    SDK_SLOTS_2(Interface, 58, 59)
    SDK_TEN_SLOTS(Interface, 6)
    SDK_TEN_SLOTS(Interface, 7)
    SDK_TEN_SLOTS(Interface, 8)
    SDK_SLOTS_6(Interface, 90, 91, 92, 93, 94, 95)
    virtual BOOL GetSnapState() = 0;
    SDK_SLOTS_3(Interface, 97, 98, 99)
    SDK_SLOTS_9(Interface, 100, 101, 102, 103, 104, 105, 106, 107, 108)
    virtual int GetSubObjectLevel() = 0;
    SDK_SLOTS_9(Interface, 110, 111, 112, 113, 114, 115, 116, 117, 118)
    virtual BOOL SelectionFrozen() = 0;
    virtual void FreezeSelection() = 0;
    virtual void ThawSelection() = 0;
    virtual INode* GetSelNode(int i) = 0;
    virtual int GetSelNodeCount() = 0;
    SDK_SLOTS_7(Interface, 124, 125, 126, 127, 128, 129, 130)
    virtual void EnableUndo(BOOL onOff) = 0;
    SDK_SLOTS_2(Interface, 132, 133)
#ifdef UNICODE
    virtual ViewExp& GetViewExp(HWND hwnd) = 0;
#else
    virtual ViewExp* GetViewport(HWND hwnd) = 0;
    virtual void ReleaseViewport(ViewExp* vpt) = 0;
#endif
    SDK_SLOTS_8(Interface, 136, 137, 138, 139, 140, 141, 142, 143)
    virtual int GetAxisConstraints() = 0;
    virtual void SetAxisConstraints(int c) = 0;
    SDK_SLOT(Interface, 146)
    virtual void PushAxisConstraints(int c) = 0;
    virtual void PopAxisConstraints() = 0;
    SDK_SLOTS_3(Interface, 149, 150, 151)
    virtual int GetRefCoordSys() = 0;
    virtual void SetRefCoordSys(int c) = 0;
    SDK_SLOTS_6(Interface, 154, 155, 156, 157, 158, 159)
    SDK_SLOTS_8(Interface, 160, 161, 162, 163, 164, 165, 166, 167)
    virtual void RegisterDlgWnd(HWND hDlg) = 0;
    virtual int UnRegisterDlgWnd(HWND hDlg) = 0;
    SDK_SLOTS_2(Interface, 170, 171)
    virtual IActionManager* GetActionManager() = 0;
    virtual IMenuManager* GetMenuManager() = 0;
    SDK_SLOTS_7(Interface, 174, 175, 176, 177, 178, 179, 180)
    virtual TimeValue GetTime() = 0;
    SDK_SLOTS_5(Interface, 182, 183, 184, 185, 186)
    virtual void RegisterCommandModeChangedCallback(CommandModeChangedCallback* cb) = 0;
    SDK_SLOTS_2(Interface, 188, 189)
    SDK_TEN_SLOTS(Interface, 19)
    SDK_SLOTS_7(Interface, 200, 201, 202, 203, 204, 205, 206)
    virtual void SelectNode(INode* node, int clearSel = 1) = 0;
    SDK_SLOT(Interface, 208)
    virtual void SelectNodeTab(INodeTab& nodes, BOOL sel, BOOL redraw = TRUE) = 0;
    virtual void ClearNodeSelection(BOOL redraw = TRUE) = 0;
    SDK_SLOTS_8(Interface, 211, 212, 213, 214, 215, 216, 217, 218)
    virtual const MCHAR* GetDir(int which) = 0;
    SDK_TEN_SLOTS(Interface, 22)
    SDK_TEN_SLOTS(Interface, 23)
    SDK_TEN_SLOTS(Interface, 24)
    SDK_TEN_SLOTS(Interface, 25)
    SDK_TEN_SLOTS(Interface, 26)
    SDK_TEN_SLOTS(Interface, 27)
    SDK_TEN_SLOTS(Interface, 28)
    SDK_TEN_SLOTS(Interface, 29)
    SDK_HUNDRED_SLOTS(Interface, 3)
    SDK_TEN_SLOTS(Interface, 40)
    SDK_SLOTS_5(Interface, 410, 411, 412, 413, 414)
    virtual void ViewportZoomExtents(BOOL doAll, BOOL skipPersp = FALSE) = 0;
    SDK_SLOTS_4(Interface, 416, 417, 418, 419)
    SDK_TEN_SLOTS(Interface, 42)
    SDK_TEN_SLOTS(Interface, 43)
    SDK_TEN_SLOTS(Interface, 44)
    SDK_TEN_SLOTS(Interface, 45)
    SDK_TEN_SLOTS(Interface, 46)
    SDK_TEN_SLOTS(Interface, 47)
    SDK_TEN_SLOTS(Interface, 48)
    SDK_TEN_SLOTS(Interface, 49)
    SDK_SLOTS_3(Interface, 500, 501, 502)
    virtual int GetCommandStackSize() = 0;
    virtual CommandMode* GetCommandStackEntry(int entry) = 0;
    SDK_SLOTS_5(Interface, 505, 506, 507, 508, 509)
    SDK_TEN_SLOTS(Interface, 51)
    SDK_SLOTS_6(Interface, 520, 521, 522, 523, 524, 525)
    virtual MacroRecorder* GetMacroRecorder() = 0;
    SDK_SLOTS_3(Interface, 527, 528, 529)
    SDK_TEN_SLOTS(Interface, 53)
    SDK_TEN_SLOTS(Interface, 54)
    SDK_SLOTS_8(Interface, 550, 551, 552, 553, 554, 555, 556, 557)
};
