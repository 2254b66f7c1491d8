// The loader's entry and the five functions that the host looks up by name.

#include <max.h>

#include "input/input_records.h"
#include "hooks/keyboard_hook.h"
#include "host/host.h"
#include "host/sdk_text.h"
#include "hooks/mouse_hook.h"
#include "resources/resource_ids.h"
#include "shell/class_descriptor.h"
#include "resources/module.h"

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    g_module = module;
    if (reason != DLL_PROCESS_ATTACH) return TRUE;

    // The host loads plug-ins on its user-interface thread. The hooks belong to that thread and end
    // with it, so nobody needs their handles.
    const DWORD thread = GetCurrentThreadId();
    SetWindowsHookExA(WH_KEYBOARD, KeyboardProc, nullptr, thread);
    SetWindowsHookExA(WH_MOUSE, MouseHookProc, nullptr, thread);
    BuildInputRecords();
    return TRUE;
}

extern "C" {

const MCHAR* LibDescription() {
    return host::TextForHost(LoadText(IDS_LIBRARY_DESCRIPTION));
}

int LibNumberClasses() {
    return 1;
}

ClassDesc* LibClassDesc(int index) {
    return index == 0 ? &KarvelMaxDescriptor() : nullptr;
}

ULONG LibVersion() {
    return host::VersionWord();
}

ULONG CanAutoDefer() {
    // The hooks and the start sequence are wanted from the host's own start on.
    return 0;
}

}  // extern "C"
