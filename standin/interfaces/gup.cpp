// gup.dll: what the host gives to every utility plug-in.

#include "standin/interfaces/host_dll.h"

#include "host_text.h"

#include <gup.h>

GUP::GUP() = default;
GUP::~GUP() = default;

#if SDK_GENERATION >= 2024
bool GUP::ExecuteStringScript(const MCHAR* string, MAXScript::ScriptSource source) {
    // From elsewhere the host's script security may refuse what a script does.
    if (source != MAXScript::ScriptSource::NonEmbedded) {
        return Unexpected("GUP::ExecuteStringScript of another source");
    }
    return eng_execute_script(Narrow(string)) != 0;
}
bool GUP::ExecuteFileScript(const MCHAR*, MSTR*) {
    return Unexpected("GUP::ExecuteFileScript");
}
bool GUP::ExecuteScriptAsset(const MaxSDK::AssetManagement::AssetUser&, MSTR*) {
    return Unexpected("GUP::ExecuteScriptAsset");
}
#else
bool GUP::ExecuteStringScript(GivenText string) {
    return eng_execute_script(Narrow(string)) != 0;
}
bool GUP::ExecuteFileScript(GivenText) {
    return Unexpected("GUP::ExecuteFileScript");
}
#endif

// clang-format off
HINSTANCE GUP::MaxInst() { return GetModuleHandleA(nullptr); }
HWND GUP::MaxWnd() { return eng_main_window(); }
Interface* GUP::Max() { return GetCOREInterface(); }
DllDir* GUP::MaxDllDir() { return Unexpected("GUP::MaxDllDir"); }
BitmapManager* GUP::Bmi() { return Unexpected("GUP::Bmi"); }
int GUP::EnumTree(ITreeEnumProc*) { return Unexpected("GUP::EnumTree"); }
#if SDK_GENERATION < 2016
DWORD_PTR GUP::Control(DWORD) { return 0; }
IOResult GUP::Save(ISave*) { return IO_OK; }
IOResult GUP::Load(ILoad*) { return IO_OK; }
void GUP::DeleteThis() {}
#endif
// clang-format on
