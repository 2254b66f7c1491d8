// gup.dll: what the host gives to every utility plug-in.

#include "standin/interfaces/host_dll.h"

#include "host_text.h"

#include <gup.h>

#include <string>

GUP::GUP() = default;
GUP::~GUP() = default;

HINSTANCE GUP::MaxInst() {
    return GetModuleHandleA(nullptr);
}
HWND GUP::MaxWnd() {
    return eng_main_window();
}
Interface* GUP::Max() {
    return GetCOREInterface();
}

DllDir* GUP::MaxDllDir() {
    eng_unexpected("GUP::MaxDllDir");
    return nullptr;
}
BitmapManager* GUP::Bmi() {
    eng_unexpected("GUP::Bmi");
    return nullptr;
}
int GUP::EnumTree(ITreeEnumProc*) {
    eng_unexpected("GUP::EnumTree");
    return 0;
}

bool GUP::ExecuteStringScript(MCHAR* string) {
    return eng_execute_script(Narrow(string)) != 0;
}

bool GUP::ExecuteFileScript(MCHAR* file) {
    HANDLE stream = CreateFileA(Narrow(file), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                0, nullptr);
    if (stream == INVALID_HANDLE_VALUE) return false;
    const DWORD size = GetFileSize(stream, nullptr);
    std::string text(size == INVALID_FILE_SIZE ? 0 : size, '\0');
    DWORD got = 0;
    const bool whole =
        ReadFile(stream, text.data(), static_cast<DWORD>(text.size()), &got, nullptr) != 0 &&
        got == size;
    CloseHandle(stream);
    return whole && eng_execute_script(text.c_str()) != 0;
}

DWORD_PTR GUP::Control(DWORD) {
    return 0;
}
IOResult GUP::Save(ISave*) {
    return IO_OK;
}
IOResult GUP::Load(ILoad*) {
    return IO_OK;
}
void GUP::DeleteThis() {}
