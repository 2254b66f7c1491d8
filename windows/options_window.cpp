#include "windows/options_window.h"

#include <commctrl.h>
#include <prsht.h>

#include "host/host.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "windows/welcome_window.h"
#include "windows/about.h"
#include "resources/module.h"

HWND g_optionsWindow = nullptr;

// Set from the page's initialisation to its destruction: either may be asked for twice.
bool g_optionsOpen = false;

namespace {

constexpr char kCaption[] = "Karvel Options";
constexpr char kTabTitle[] = "Flinder";
constexpr UINT kCloseRequest = WM_USER + 1;
constexpr int kOkButton = IDOK;
constexpr int kSaveButton = 1008;
constexpr int kUnusedBox = 1028;  // no control has it, but it is handled like the boxes

// Frames of the page that are enabled with the boxes in them.
constexpr int kGroups[] = {IDC_GROUP_ZOOM, IDC_GROUP_ROTATE, IDC_GROUP_MISC, IDC_GROUP_NAVIGATION};

HWND Page() {
    if (!g_optionsWindow) return nullptr;
    return reinterpret_cast<HWND>(SendMessageA(g_optionsWindow, PSM_INDEXTOHWND, 0, 0));
}

// Null: the control is no box of a setting.
const SettingDescription* SettingOfBox(int control) {
    for (const SettingDescription& setting : kSettings) {
        if (setting.control == control) return &setting;
    }
    return nullptr;
}

// Only a plain check counts; the third state of a box, which these do not have, would not.
void ReadBox(HWND page, const SettingDescription& setting) {
    g_settings.*setting.field = IsDlgButtonChecked(page, setting.control) == BST_CHECKED ? 1 : 0;
}

void ReadBoxes(HWND page, Reading reading) {
    for (const SettingDescription& setting : kSettings) {
        if (setting.reading == reading) ReadBox(page, setting);
    }
}

void ReadBoxesTogether(HWND page) {
    ReadBoxes(page, Reading::kTogetherFirst);
    ReadBoxes(page, Reading::kTogether);
    ApplyOptionsEnableRules(true);
    host::RefreshMacroButtons();
}

void HandleBox(HWND page, const SettingDescription& setting) {
    switch (setting.reading) {
        case Reading::kAloneUnmarked: ReadBox(page, setting); break;
        case Reading::kAlone:
            ReadBox(page, setting);
            ApplyOptionsEnableRules(true);
            break;
        case Reading::kTogetherFirst:
        case Reading::kTogether: ReadBoxesTogether(page); break;
    }
}

void EnableControl(HWND page, int control) {
    EnableWindow(GetDlgItem(page, control), g_settings.useMayaStyle);
}

void EnableBoxes(HWND page, Enabling enabling) {
    for (const SettingDescription& setting : kSettings) {
        if (setting.enabling == enabling) EnableControl(page, setting.control);
    }
}

void InitialisePage(HWND page) {
    if (g_optionsOpen) return;
    g_optionsOpen = true;
    g_optionsWindow = GetParent(page);

    SendMessageA(
        g_optionsWindow, WM_SETICON, ICON_SMALL,
        reinterpret_cast<LPARAM>(LoadIconA(g_module, MAKEINTRESOURCEA(IDI_OPTIONS_WINDOW))));
    SetMenu(g_optionsWindow, LoadMenuA(g_module, MAKEINTRESOURCEA(IDR_OPTIONS_MENU)));

    OptionsWindowPosition position;
    LoadOptionsWindowPosition(position);
    RECT frame = {};
    // A size that is not known stays as it is.
    const UINT keep = GetWindowRect(g_optionsWindow, &frame) ? 0 : SWP_NOSIZE;
    // The sheet was laid out before it had a menu bar; the bar takes its height from the client
    // area, so the window grows by as much.
    SetWindowPos(g_optionsWindow, nullptr, position.left, position.top, frame.right - frame.left,
                 frame.bottom - frame.top + GetSystemMetrics(SM_CYMENU), SWP_NOZORDER | keep);

    // Without the flag for property titles this replaces the "Properties for" that the sheet adds.
    SendMessageA(g_optionsWindow, PSM_SETTITLEA, 0, reinterpret_cast<LPARAM>(kCaption));
    SetDlgItemTextA(g_optionsWindow, kOkButton, "Save && Close");
    host::RegisterDialogWindow(g_optionsWindow);
    LoadSettings();
}

void DestroyPage() {
    if (!g_optionsOpen) return;
    g_optionsOpen = false;
    LoadSettings();
    RECT frame = {};
    // A place that is not known leaves the one in the file.
    if (GetWindowRect(g_optionsWindow, &frame)) SaveOptionsWindowPosition({frame.left, frame.top});
    host::WithdrawDialogWindow(g_optionsWindow);
    g_optionsWindow = nullptr;
    host::RefreshMacroButtons();
}

INT_PTR HandleCommand(HWND page, int id) {
    if (const SettingDescription* setting = SettingOfBox(id)) {
        HandleBox(page, *setting);
        return TRUE;
    }
    switch (id) {
        case kUnusedBox: ReadBoxesTogether(page); return TRUE;
        case ID_REVERT_TO_DEFAULTS:
            ResetSettingsToDefaults();
            RefreshOptionsPage();
            return FALSE;
        case ID_REVERT_TO_SAVED:
            LoadSettings();
            RefreshOptionsPage();
            return FALSE;
        case ID_ABOUT: ShowAboutBox(page); return FALSE;
        case ID_USING_FLINDER:
            // An instance that is open already is not looked for.
            OpenWelcomeDialog();
            return FALSE;
        default: return FALSE;
    }
}

INT_PTR HandleNotification(HWND page, const NMHDR* header) {
    switch (header->code) {
        case PSN_APPLY: {
            SaveOptions();
            SetWindowLongPtrA(page, DWLP_MSGRESULT, PSNRET_NOERROR);
            const auto* notification = reinterpret_cast<const PSHNOTIFY*>(header);
            if (notification->lParam) PostMessageA(page, kCloseRequest, 0, 0);
            return TRUE;
        }
        case PSN_RESET: PostMessageA(page, kCloseRequest, 0, 0); return TRUE;
        case PSN_KILLACTIVE: SetWindowLongPtrA(page, DWLP_MSGRESULT, FALSE); return TRUE;
        default: return FALSE;
    }
}

void CloseFinishedSheet(HWND page) {
    if (!g_optionsOpen) return;
    // A sheet that was not found when its page began is looked for once more, or nobody could ever
    // close it.
    HWND sheet = g_optionsWindow ? g_optionsWindow : GetParent(page);
    // While the sheet still has a current page it is not done with its own closing.
    if (SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0)) return;
    DestroyWindow(sheet);
}

INT_PTR CALLBACK OptionsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG: InitialisePage(page); return TRUE;
        case WM_COMMAND: return HandleCommand(page, LOWORD(wParam));
        case WM_NOTIFY: return HandleNotification(page, reinterpret_cast<const NMHDR*>(lParam));
        case kCloseRequest: CloseFinishedSheet(page); return TRUE;
        case WM_DESTROY: DestroyPage(); return TRUE;
        default: return FALSE;
    }
}

}  // namespace

void ShowOptionsDialog() {
    PROPSHEETPAGEA page = {};
    page.dwSize = sizeof page;
    page.dwFlags = PSP_USETITLE | PSP_USEICONID;
    page.hInstance = g_module;
    page.pszTemplate = MAKEINTRESOURCEA(IDD_OPTIONS_PAGE);
    page.pszIcon = MAKEINTRESOURCEA(IDI_OPTIONS_PAGE);
    page.pszTitle = kTabTitle;
    page.pfnDlgProc = OptionsPageProc;

    PROPSHEETHEADERA sheet = {};
    sheet.dwSize = sizeof sheet;
    sheet.dwFlags =
        PSH_PROPSHEETPAGE | PSH_PROPTITLE | PSH_NOAPPLYNOW | PSH_MODELESS | PSH_NOCONTEXTHELP;
    sheet.hwndParent = host::MainWindow();
    sheet.hInstance = g_module;
    sheet.pszCaption = kCaption;
    sheet.nPages = 1;
    sheet.nStartPage = 0;
    sheet.ppsp = &page;
    PropertySheetA(&sheet);

    RefreshOptionsPage();
    host::RefreshMacroButtons();
}

void SaveOptions() {
    SaveSettings();
    if (g_optionsWindow) EnableWindow(GetDlgItem(g_optionsWindow, kSaveButton), FALSE);
}

void RefreshOptionsPage() {
    HWND page = Page();
    if (!page) return;
    for (const SettingDescription& setting : kSettings) {
        const bool is_on = g_settings.*setting.field != 0;
        CheckDlgButton(page, setting.control, is_on ? BST_CHECKED : BST_UNCHECKED);
    }
    ApplyOptionsEnableRules(false);
}

void ApplyOptionsEnableRules(bool markChanged) {
    HWND page = Page();
    if (page) {
        EnableBoxes(page, Enabling::kFollows);
        for (int group : kGroups)
            EnableControl(page, group);
        EnableBoxes(page, Enabling::kFollowsLast);
        if (!g_settings.mClickXForms) EnableWindow(GetDlgItem(page, IDC_HIDE_GIZMO), FALSE);
    }
    if (markChanged && g_optionsWindow) {
        SendMessageA(g_optionsWindow, PSM_CHANGED, reinterpret_cast<WPARAM>(page), 0);
    }
}
