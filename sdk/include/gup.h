#pragma once

#include <max.h>

// What GUP::Start answers.
#define GUPRESULT_KEEP 0
#define GUPRESULT_NOKEEP 1
#define GUPRESULT_ABORT 3

// A utility plug-in without a user interface in the host's panels: started once, lives to the end.
class GUP : public InterfaceServer {
public:
    SDK_GUP_API GUP();
    SDK_GUP_API ~GUP() override;

    SDK_GUP_API virtual HINSTANCE MaxInst();
    SDK_GUP_API virtual HWND MaxWnd();
    SDK_GUP_API virtual DllDir* MaxDllDir();
    SDK_GUP_API virtual Interface* Max();
    SDK_GUP_API virtual BitmapManager* Bmi();
    SDK_GUP_API virtual int EnumTree(ITreeEnumProc* procedure);
    SDK_GUP_API virtual bool ExecuteStringScript(MCHAR* string);
    SDK_GUP_API virtual bool ExecuteFileScript(MCHAR* file);
    virtual DWORD Start() = 0;
    virtual void Stop() = 0;
    SDK_GUP_API virtual DWORD_PTR Control(DWORD parameter);
    SDK_GUP_API virtual IOResult Save(ISave* isave);
    SDK_GUP_API virtual IOResult Load(ILoad* iload);
    SDK_GUP_API virtual void DeleteThis();
};
