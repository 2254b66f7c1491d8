#include <max.h>

#include "host/core_interface.h"
#include "host/host.h"
#include "host/sdk_text.h"

int g_hostRelease = 0;

namespace host {

Interface* Core() {
    return GetCOREInterface();
}

int Release() {
    return static_cast<int>(Get3DSMAXVersion() >> 16);
}

HWND MainWindow() {
    Interface* core = Core();
    return core ? core->GetMAXHWnd() : nullptr;
}

const char* ConfigurationDirectory() {
    Interface* core = Core();
    if (!core) return PathFromHost(nullptr);
    return PathFromHost(core->GetDir(APP_PLUGCFG_DIR));
}

void RegisterDialogWindow(HWND dialog) {
    if (Interface* core = Core()) core->RegisterDlgWnd(dialog);
}

void WithdrawDialogWindow(HWND dialog) {
    if (Interface* core = Core()) core->UnRegisterDlgWnd(dialog);
}

}  // namespace host
