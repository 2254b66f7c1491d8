#include "windows/welcome_window.h"

#include <shellapi.h>

#include "host/host.h"
#include "karvel_version.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "resources/module.h"

HWND g_welcomeWindow = nullptr;

namespace {

constexpr char kVideoPage[] = KARVEL_WEBSITE "/flinder_max";

void CloseWelcome(HWND dialog) {
    DestroyWindow(dialog);
    g_welcomeWindow = nullptr;
}

INT_PTR HandleWelcomeCommand(HWND dialog, int id) {
    switch (id) {
        case IDC_GET_STARTED: CloseWelcome(dialog); return TRUE;
        case IDC_WATCH_VIDEOS:
            ShellExecuteA(dialog, "open", kVideoPage, nullptr, nullptr, SW_SHOW);
            return TRUE;
        case IDC_DO_NOT_SHOW:
            SetWelcomePopupEnabled(IsDlgButtonChecked(dialog, IDC_DO_NOT_SHOW) != BST_CHECKED);
            return TRUE;
        default: return FALSE;
    }
}

INT_PTR CALLBACK WelcomeDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            g_welcomeWindow = dialog;
            if (!IsWelcomePopupEnabled()) CheckDlgButton(dialog, IDC_DO_NOT_SHOW, BST_CHECKED);
            return TRUE;
        case WM_COMMAND: return HandleWelcomeCommand(dialog, LOWORD(wParam));
        case WM_CLOSE: CloseWelcome(dialog); return FALSE;
        default: return FALSE;
    }
}

}  // namespace

void OpenWelcomeDialog() {
    CreateDialogParamA(g_module, MAKEINTRESOURCEA(IDD_WELCOME), host::MainWindow(),
                       WelcomeDialogProc, 0);
}
