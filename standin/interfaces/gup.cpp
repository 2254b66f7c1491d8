// gup.dll: what the host gives to every utility plug-in.

#include "standin/interfaces/host_dll.h"

#include "host_text.h"

#include <gup.h>

GUP::GUP() = default;
GUP::~GUP() = default;

bool GUP::ExecuteStringScript(MCHAR* string) {
    return eng_execute_script(Narrow(string)) != 0;
}

// clang-format off
HINSTANCE GUP::MaxInst() { return GetModuleHandleA(nullptr); }
HWND GUP::MaxWnd() { return eng_main_window(); }
Interface* GUP::Max() { return GetCOREInterface(); }
DllDir* GUP::MaxDllDir() { return Unexpected("GUP::MaxDllDir"); }
BitmapManager* GUP::Bmi() { return Unexpected("GUP::Bmi"); }
int GUP::EnumTree(ITreeEnumProc*) { return Unexpected("GUP::EnumTree"); }
bool GUP::ExecuteFileScript(MCHAR*) { return Unexpected("GUP::ExecuteFileScript"); }
DWORD_PTR GUP::Control(DWORD) { return 0; }
IOResult GUP::Save(ISave*) { return IO_OK; }
IOResult GUP::Load(ILoad*) { return IO_OK; }
void GUP::DeleteThis() {}
// clang-format on
