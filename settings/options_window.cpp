#include "settings/options_window.h"

#include <commctrl.h>
#include <prsht.h>

#include "host/host.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "settings/welcome_window.h"
#include "shell/about.h"
#include "shell/module.h"

HWND g_optionsWindow = nullptr;

// Set from the page's initialisation to its destruction: either may be asked for twice.
bool g_optionsOpen = false;

namespace {

constexpr char kCaption[] = "Karvel Options";
constexpr char kTabTitle[] = "Flinder";
constexpr UINT kCloseRequest = WM_USER + 1;
constexpr int kOkButton = IDOK;
constexpr int kUnusedBox = 1028;  // no control has it, but it is handled like the boxes

// Everything but "Active" and "AutoFocus Viewport on Key Press" follows the master switch.
constexpr int kFollowMasterSwitch[] = {IDC_ALT_RIGHT_ZOOM,   IDC_MIDDLE_CLICK_TRANSFORMS,
                                       IDC_HIDE_GIZMO,       IDC_LOCK_ROTATE_ORTHOGRAPHIC,
                                       IDC_LOCK_ROTATE_USER, IDC_SLOW_ZOOMING,
                                       IDC_ALT_LEFT_ROTATE,  IDC_SELECTION_CURSORS,
                                       IDC_GROUP_ZOOM,       IDC_GROUP_ROTATE,
                                       IDC_GROUP_MISC,       IDC_GROUP_NAVIGATION,
                                       IDC_SHIFT_CLONE};

// The order in which the boxes are set.
constexpr int kRefreshOrder[] = {
    IDC_ALT_RIGHT_ZOOM,  IDC_MIDDLE_CLICK_TRANSFORMS,  IDC_HIDE_GIZMO,       IDC_SHIFT_CLONE,
    IDC_FOCUS_VIEWPORTS, IDC_LOCK_ROTATE_ORTHOGRAPHIC, IDC_LOCK_ROTATE_USER, IDC_SLOW_ZOOMING,
    IDC_ALT_LEFT_ROTATE, IDC_SELECTION_CURSORS,        IDC_MAYA_STYLE_ACTIVE};

// The boxes that a click on any of them reads. IDC_HIDE_GIZMO and IDC_SHIFT_CLONE have commands of
// their own.
constexpr int kReadTogether[] = {
    IDC_MIDDLE_CLICK_TRANSFORMS,  IDC_ALT_RIGHT_ZOOM,    IDC_FOCUS_VIEWPORTS,
    IDC_LOCK_ROTATE_ORTHOGRAPHIC, IDC_LOCK_ROTATE_USER,  IDC_SLOW_ZOOMING,
    IDC_ALT_LEFT_ROTATE,          IDC_SELECTION_CURSORS, IDC_MAYA_STYLE_ACTIVE};

HWND Page() {
    if (!g_optionsWindow) return nullptr;
    return reinterpret_cast<HWND>(SendMessageA(g_optionsWindow, PSM_INDEXTOHWND, 0, 0));
}

constexpr const SettingDescription& SettingOfControl(int control) {
    const SettingDescription* setting = kSettings;
    while (setting->control != control)
        ++setting;
    return *setting;
}
// Each box has its setting: the compiler would not follow the search over the end of the table.
static_assert([] {
    for (int control : kRefreshOrder)
        SettingOfControl(control);
    return true;
}());

// Only a plain check counts; the third state of a box, which these do not have, would not.
int IsBoxChecked(HWND page, int control) {
    return IsDlgButtonChecked(page, control) == BST_CHECKED ? 1 : 0;
}

void ReadBox(HWND page, int control) {
    g_settings.*SettingOfControl(control).field = IsBoxChecked(page, control);
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
    switch (id) {
        case IDC_SHIFT_CLONE:
            // Deliberate: no rules, no change mark.
            ReadBox(page, IDC_SHIFT_CLONE);
            return TRUE;
        case IDC_HIDE_GIZMO:
            ReadBox(page, IDC_HIDE_GIZMO);
            ApplyOptionsEnableRules(true);
            return TRUE;
        case IDC_MIDDLE_CLICK_TRANSFORMS:
        case IDC_SLOW_ZOOMING:
        case IDC_ALT_RIGHT_ZOOM:
        case IDC_LOCK_ROTATE_ORTHOGRAPHIC:
        case IDC_FOCUS_VIEWPORTS:
        case IDC_ALT_LEFT_ROTATE:
        case IDC_SELECTION_CURSORS:
        case IDC_LOCK_ROTATE_USER:
        case IDC_MAYA_STYLE_ACTIVE:
        case kUnusedBox:
            for (int control : kReadTogether)
                ReadBox(page, control);
            ApplyOptionsEnableRules(true);
            host::RefreshMacroButtons();
            return TRUE;
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
            SaveSettings();
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

void RefreshOptionsPage() {
    HWND page = Page();
    if (!page) return;
    for (int control : kRefreshOrder) {
        const bool is_on = g_settings.*SettingOfControl(control).field != 0;
        CheckDlgButton(page, control, is_on ? BST_CHECKED : BST_UNCHECKED);
    }
    ApplyOptionsEnableRules(false);
}

void ApplyOptionsEnableRules(bool markChanged) {
    HWND page = Page();
    if (page) {
        for (int control : kFollowMasterSwitch) {
            EnableWindow(GetDlgItem(page, control), g_settings.useMayaStyle);
        }
        if (!g_settings.mClickXForms) EnableWindow(GetDlgItem(page, IDC_HIDE_GIZMO), FALSE);
    }
    if (markChanged && g_optionsWindow) {
        SendMessageA(g_optionsWindow, PSM_CHANGED, reinterpret_cast<WPARAM>(page), 0);
    }
}
