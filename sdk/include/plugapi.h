#pragma once

#include <ifnpub.h>
#include <strclass.h>

#if !defined(__GXX_RTTI) && !defined(_CPPRTTI)
#error "the host reads run-time type information; build with it"
#endif

#define MAX_RELEASE_R12 12000
#define MAX_RELEASE_R13 13000
#define MAX_RELEASE_R14_ALPHA 13900
#define MAX_RELEASE_R14 14000
#define MAX_RELEASE_R18 18000
#define MAX_API_NUM_R120 33
#define MAX_API_NUM_R130 35
#define MAX_API_NUM_R140_ALPHA1 36
#define MAX_API_NUM_R140_BETA2 37
#define MAX_API_NUM_R140 38
#define MAX_API_NUM_R180 42

#ifdef UNICODE
#define MAX_RELEASE MAX_RELEASE_R18
#define MAX_API_NUM MAX_API_NUM_R180
#else
// The second beta of release 2012: every build from then on accepts this word.
#define MAX_RELEASE MAX_RELEASE_R14_ALPHA
#define MAX_API_NUM MAX_API_NUM_R140_BETA2
#endif
#define MAX_SDK_REV 0
#define VERSION_3DSMAX ((MAX_RELEASE << 16) + (MAX_API_NUM << 8) + MAX_SDK_REV)

#define GET_MAX_RELEASE(word) (((word) >> 16) & 0xffff)
#define GET_MAX_API_NUM(word) (((word) >> 8) & 0xff)
#define GET_MAX_SDK_REV(word) ((word) & 0xff)

#define GUP_CLASS_ID 0x10E0

class ActionTable;
class Animatable;
class BitmapManager;
class Box2;
class DllDir;
class ILoad;
class INode;
class IObjParam;
class IParamMap2;
class ISave;
class ITreeEnumProc;
class Interface;
class Manipulator;
class ParamBlockDesc2;
class ParamMap2UserDlgProc;
class ReferenceMaker;
class ReferenceTarget;

typedef short BlockID;
typedef short MapID;

// Describes one class of a plug-in to the host. The table of the plug-in's own descriptor repeats
// all of it, therefore every slot is named. Adjacent overloads are declared in the order that gives
// the host's slots under the Microsoft rule, which turns them round.
class ClassDesc : public MaxHeapOperators {
public:
    virtual ~ClassDesc() {}
    virtual int IsPublic() = 0;
    virtual void* Create(BOOL loading = FALSE) = 0;
    virtual int BeginCreate(Interface*) { return 0; }
    virtual int EndCreate(Interface*) { return 0; }
    virtual const MCHAR* ClassName() = 0;
    virtual SClass_ID SuperClassID() = 0;
    virtual Class_ID ClassID() = 0;
    virtual const MCHAR* Category() = 0;
    virtual BOOL OkToCreate(Interface*) { return TRUE; }
    virtual BOOL HasClassParams() { return FALSE; }
    virtual void EditClassParams(HWND) {}
    virtual void ResetClassParams(BOOL = FALSE) {}
    virtual int NumActionTables() { return 0; }
    virtual ActionTable* GetActionTable(int) { return nullptr; }
    virtual BOOL IsManipulator() { return FALSE; }
    virtual BOOL CanManipulate(ReferenceTarget*) { return FALSE; }
    virtual BOOL CanManipulateNode(INode*) { return FALSE; }
    virtual Manipulator* CreateManipulator(ReferenceTarget*, INode*) { return nullptr; }
    virtual Manipulator* CreateManipulator(INode*) { return nullptr; }
    virtual BOOL NeedsToSave() { return FALSE; }
    virtual IOResult Save(ISave*) { return IO_OK; }
    virtual IOResult Load(ILoad*) { return IO_OK; }
    virtual DWORD InitialRollupPageState() { return 0x7fffffff; }
    virtual const MCHAR* InternalName() { return nullptr; }
    virtual HINSTANCE HInstance() { return nullptr; }
    virtual int NumParamBlockDescs() { return 0; }
    virtual ParamBlockDesc2* GetParamBlockDesc(int) { return nullptr; }
    virtual ParamBlockDesc2* GetParamBlockDescByID(BlockID) { return nullptr; }
    virtual void AddParamBlockDesc(ParamBlockDesc2*) {}
    virtual void BeginEditParams(IObjParam*, ReferenceMaker*, ULONG, Animatable*) {}
    virtual void EndEditParams(IObjParam*, ReferenceMaker*, ULONG, Animatable*) {}
    virtual void InvalidateUI(ParamBlockDesc2*) {}
    SDK_CORE_API virtual MCHAR* GetRsrcString(INT_PTR id);
    virtual void MakeAutoParamBlocks(ReferenceMaker*) {}
    virtual int NumParamMaps() { return 0; }
    virtual IParamMap2* GetParamMap(int) { return nullptr; }
    virtual IParamMap2* GetParamMap(ParamBlockDesc2*) { return nullptr; }
    virtual void SetUserDlgProc(ParamBlockDesc2*, ParamMap2UserDlgProc* = nullptr) {}
    virtual ParamMap2UserDlgProc* GetUserDlgProc(ParamBlockDesc2*) { return nullptr; }
    virtual bool DrawRepresentation(COLORREF, HDC, Box2&) { return false; }
    virtual int NumInterfaces() { return interfaces.Count(); }
    virtual FPInterface* GetInterfaceAt(int index) { return interfaces[index]; }
    SDK_CORE_API virtual FPInterface* GetInterface(Interface_ID id);
    SDK_CORE_API virtual FPInterface* GetInterface(MCHAR* name);
    SDK_CORE_API virtual void AddInterface(FPInterface* publisher);
    virtual void ClearInterfaces() { interfaces.ZeroCount(); }
    virtual Class_ID SubClassID() { return Class_ID(); }
    virtual INT_PTR Execute(int, ULONG_PTR = 0, ULONG_PTR = 0, ULONG_PTR = 0) { return 0; }

private:
    Tab<FPInterface*> interfaces;
};
