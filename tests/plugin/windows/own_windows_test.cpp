// The plug-in's own windows with the system played around them: with which arguments each is asked
// for, what its messages set off, in which order, and what a second one of them does.

#include <windows.h>

#include <commctrl.h>
#include <prsht.h>
#include <shellapi.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "host/host.h"
#include "windows/options_window.h"
#include "settings/settings_store.h"
#include "windows/welcome_window.h"
#include "windows/about.h"
#include "resources/module.h"

namespace {

using Lines = std::vector<std::string>;

HWND WindowNumber(int number) {
    return reinterpret_cast<HWND>(static_cast<INT_PTR>(number));
}
const HWND kMain = WindowNumber(0x100);
const HWND kSheet = WindowNumber(0x200);
const HWND kPage = WindowNumber(0x300);
const HWND kWelcome = WindowNumber(0x400);
const HINSTANCE kModule = reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(0x500));
constexpr UINT kCloseRequest = WM_USER + 1;
constexpr int kSaveButton = 1008;

Lines g_lines;
DLGPROC g_page_procedure = nullptr;
DLGPROC g_welcome_procedure = nullptr;
std::map<int, UINT> g_boxes;
bool g_has_current_page = false;
bool g_welcome_wanted = true;

std::string NameOf(HWND window) {
    if (!window) return "none";
    if (window == kMain) return "main";
    if (window == kSheet) return "sheet";
    if (window == kPage) return "page";
    if (window == kWelcome) return "welcome";
    return "?";
}

std::string Number(LONG_PTR value) {
    return std::to_string(value);
}

std::string ResourceOrText(const char* name) {
    return IS_INTRESOURCE(name) ? Number(reinterpret_cast<INT_PTR>(name)) : name;
}

// Each effect with what the plug-in's own state is just then.
void Note(const std::string& effect) {
    g_lines.push_back(effect + (g_optionsWindow ? " [open]" : "") +
                      (g_welcomeWindow ? " [greets]" : ""));
}

INT_PTR WINAPI PlayedPropertySheet(LPCPROPSHEETHEADERA sheet) {
    EXPECT_EQ(sheet->dwSize, sizeof(PROPSHEETHEADERA));
    // A page by its description, plain title, no Apply, modeless, no help in the caption.
    EXPECT_EQ(sheet->dwFlags, 0x08u | 0x01u | 0x80u | 0x400u | 0x02000000u);
    EXPECT_EQ(sheet->hwndParent, kMain);
    EXPECT_EQ(sheet->hInstance, kModule);
    EXPECT_STREQ(sheet->pszCaption, "Karvel Options");
    EXPECT_EQ(sheet->nPages, 1u);
    EXPECT_EQ(sheet->nStartPage, 0u);
    const PROPSHEETPAGEA& page = *sheet->ppsp;
    EXPECT_EQ(page.dwSize, sizeof(PROPSHEETPAGEA));
    // Title and icon of its own.
    EXPECT_EQ(page.dwFlags, 0x08u | 0x04u);
    EXPECT_EQ(page.hInstance, kModule);
    EXPECT_EQ(ResourceOrText(page.pszTemplate), "107");
    EXPECT_EQ(ResourceOrText(page.pszIcon), "136");
    EXPECT_STREQ(page.pszTitle, "Flinder");
    g_page_procedure = page.pfnDlgProc;
    Note("sheet");
    return 1;
}

HWND WINAPI PlayedCreateDialog(HINSTANCE module, LPCSTR name, HWND owner, DLGPROC procedure,
                               LPARAM parameter) {
    EXPECT_EQ(module, kModule);
    g_welcome_procedure = procedure;
    Note("dialog " + ResourceOrText(name) + " of " + NameOf(owner) + " with " + Number(parameter));
    return nullptr;
}

int WINAPI PlayedMessageBox(HWND owner, LPCSTR text, LPCSTR caption, UINT type) {
    Note("box of " + NameOf(owner) + ", " + Number(type) + ", " + caption + ": " + text);
    return IDOK;
}

HINSTANCE WINAPI PlayedShellExecute(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters,
                                    LPCSTR folder, INT show) {
    EXPECT_EQ(parameters, nullptr);
    EXPECT_EQ(folder, nullptr);
    const std::string page = file;
    Note("execute of " + NameOf(owner) + ", " + verb + " ..." + page.substr(page.rfind('/')) + " " +
         Number(show));
    return nullptr;
}

LRESULT WINAPI PlayedSendMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const bool has_object = message == WM_SETICON || message == PSM_SETTITLEA;
    EXPECT_EQ(has_object, lparam != 0);
    switch (message) {
        case PSM_GETCURRENTPAGEHWND:
            EXPECT_EQ(wparam, 0u);
            Note(NameOf(window) + " asked for its page");
            return reinterpret_cast<LRESULT>(g_has_current_page ? kPage : nullptr);
        case PSM_INDEXTOHWND:
            EXPECT_EQ(window, kSheet);
            EXPECT_EQ(wparam, 0u);
            return reinterpret_cast<LRESULT>(kPage);
        case PSM_CHANGED:
            Note(NameOf(window) + " changed by " + NameOf(reinterpret_cast<HWND>(wparam)));
            return 0;
        case PSM_SETTITLEA:
            Note(NameOf(window) + " title " + Number(static_cast<LONG_PTR>(wparam)) + " " +
                 reinterpret_cast<const char*>(lparam));
            return 0;
        case WM_SETICON:
            Note(NameOf(window) + " icon " + Number(static_cast<LONG_PTR>(wparam)) + " " +
                 Number(lparam));
            return 0;
        default: Note(NameOf(window) + " message " + Number(message)); return 0;
    }
}

BOOL WINAPI PlayedPostMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    EXPECT_EQ(message, kCloseRequest);
    EXPECT_EQ(wparam, 0u);
    EXPECT_EQ(lparam, 0);
    Note(NameOf(window) + " asked to close");
    return TRUE;
}

HWND WINAPI PlayedParent(HWND window) {
    EXPECT_EQ(window, kPage);
    return kSheet;
}

// Resources are their numbers here.
HICON WINAPI PlayedLoadIcon(HINSTANCE module, LPCSTR name) {
    EXPECT_EQ(module, kModule);
    return reinterpret_cast<HICON>(const_cast<char*>(name));
}
HMENU WINAPI PlayedLoadMenu(HINSTANCE module, LPCSTR name) {
    EXPECT_EQ(module, kModule);
    return reinterpret_cast<HMENU>(const_cast<char*>(name));
}

BOOL WINAPI PlayedSetMenu(HWND window, HMENU menu) {
    Note(NameOf(window) + " menu " + Number(reinterpret_cast<INT_PTR>(menu)));
    return TRUE;
}

BOOL WINAPI PlayedWindowRect(HWND window, RECT* frame) {
    EXPECT_EQ(window, kSheet);
    *frame = {20, 30, 320, 430};
    return TRUE;
}

int WINAPI PlayedMetrics(int index) {
    return index == SM_CYMENU ? 19 : 1000;
}

BOOL WINAPI PlayedSetWindowPos(HWND window, HWND after, int x, int y, int cx, int cy, UINT flags) {
    EXPECT_EQ(after, nullptr);
    Note(NameOf(window) + " to " + Number(x) + "," + Number(y) + " " + Number(cx) + "x" +
         Number(cy) + " " + Number(flags));
    return TRUE;
}

BOOL WINAPI PlayedSetItemText(HWND window, int item, LPCSTR text) {
    Note(NameOf(window) + " item " + Number(item) + " " + text);
    return TRUE;
}

LONG_PTR WINAPI PlayedSetLong(HWND window, int index, LONG_PTR value) {
    Note(NameOf(window) + " long " + Number(index) + " " + Number(value));
    return 0;
}

BOOL WINAPI PlayedDestroyWindow(HWND window) {
    Note(NameOf(window) + " destroyed");
    return TRUE;
}

UINT WINAPI PlayedBoxState(HWND, int item) {
    return g_boxes[item];
}

BOOL WINAPI PlayedCheckBox(HWND window, int item, UINT state) {
    Note(NameOf(window) + " box " + Number(item) + " " + Number(static_cast<LONG_PTR>(state)));
    return TRUE;
}

HWND WINAPI PlayedItem(HWND window, int item) {
    EXPECT_EQ(window, item == kSaveButton ? kSheet : kPage);
    return WindowNumber(item);
}

// The rules of the boxes have scenarios of their own.
BOOL WINAPI PlayedEnable(HWND window, BOOL enable) {
    if (window == WindowNumber(kSaveButton)) Note(enable ? "save enabled" : "save disabled");
    return TRUE;
}

}  // namespace

// The import slots of the Win32 calls, filled by hand.
extern "C" {
void* __imp_PropertySheetA = reinterpret_cast<void*>(PlayedPropertySheet);
void* __imp_CreateDialogParamA = reinterpret_cast<void*>(PlayedCreateDialog);
void* __imp_MessageBoxA = reinterpret_cast<void*>(PlayedMessageBox);
void* __imp_ShellExecuteA = reinterpret_cast<void*>(PlayedShellExecute);
void* __imp_SendMessageA = reinterpret_cast<void*>(PlayedSendMessage);
void* __imp_PostMessageA = reinterpret_cast<void*>(PlayedPostMessage);
void* __imp_GetParent = reinterpret_cast<void*>(PlayedParent);
void* __imp_LoadIconA = reinterpret_cast<void*>(PlayedLoadIcon);
void* __imp_LoadMenuA = reinterpret_cast<void*>(PlayedLoadMenu);
void* __imp_SetMenu = reinterpret_cast<void*>(PlayedSetMenu);
void* __imp_GetWindowRect = reinterpret_cast<void*>(PlayedWindowRect);
void* __imp_GetSystemMetrics = reinterpret_cast<void*>(PlayedMetrics);
void* __imp_SetWindowPos = reinterpret_cast<void*>(PlayedSetWindowPos);
void* __imp_SetDlgItemTextA = reinterpret_cast<void*>(PlayedSetItemText);
void* __imp_SetWindowLongPtrA = reinterpret_cast<void*>(PlayedSetLong);
void* __imp_DestroyWindow = reinterpret_cast<void*>(PlayedDestroyWindow);
void* __imp_IsDlgButtonChecked = reinterpret_cast<void*>(PlayedBoxState);
void* __imp_CheckDlgButton = reinterpret_cast<void*>(PlayedCheckBox);
void* __imp_GetDlgItem = reinterpret_cast<void*>(PlayedItem);
void* __imp_EnableWindow = reinterpret_cast<void*>(PlayedEnable);
}

extern bool g_optionsOpen;
PluginSettings g_settings;
HINSTANCE g_module = kModule;

void LoadSettings() {
    Note("settings loaded");
}
void SaveSettings() {
    Note("settings saved");
}
void ResetSettingsToDefaults() {
    Note("defaults");
}
void LoadOptionsWindowPosition(OptionsWindowPosition& position) {
    position = {70, 80};
}
void SaveOptionsWindowPosition(const OptionsWindowPosition& position) {
    Note("place saved " + Number(position.left) + "," + Number(position.top));
}
bool IsWelcomePopupEnabled() {
    return g_welcome_wanted;
}
void SetWelcomePopupEnabled(bool enabled) {
    Note(enabled ? "welcome on" : "welcome off");
}

namespace host {

HWND MainWindow() {
    return kMain;
}
void RegisterDialogWindow(HWND dialog) {
    Note(NameOf(dialog) + " registered");
}
void WithdrawDialogWindow(HWND dialog) {
    Note(NameOf(dialog) + " withdrawn");
}
void RefreshMacroButtons() {
    Note("refresh");
}

}  // namespace host

namespace {

class OwnWindows : public testing::Test {
protected:
    void SetUp() override {
        g_optionsWindow = nullptr;
        g_optionsOpen = false;
        g_welcomeWindow = nullptr;
        g_settings = {};
        g_boxes.clear();
        g_has_current_page = false;
        g_welcome_wanted = true;
        ShowOptionsDialog();
        OpenWelcomeDialog();
        g_lines.clear();
    }

    static Lines Taken() {
        Lines lines;
        lines.swap(g_lines);
        return lines;
    }
    static INT_PTR Page(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
        return g_page_procedure(kPage, message, wparam, lparam);
    }
    static INT_PTR Notify(UINT code, LPARAM closing = 0) {
        PSHNOTIFY notification = {};
        notification.hdr.code = code;
        notification.lParam = closing;
        return Page(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
    }
    static INT_PTR Welcome(UINT message, WPARAM wparam = 0) {
        return g_welcome_procedure(kWelcome, message, wparam, 0);
    }
    static void Open() {
        Page(WM_INITDIALOG);
        Taken();
    }
};

TEST_F(OwnWindows, TheSheetIsAskedForAsDescribed) {
    ShowOptionsDialog();  // its arguments are looked at where the sheet is played
    EXPECT_EQ(Taken(), (Lines{"sheet", "refresh"}));
}

TEST_F(OwnWindows, ThePageBeginsOnce) {
    EXPECT_EQ(Page(WM_INITDIALOG), TRUE);
    EXPECT_EQ(Taken(),
              (Lines{"sheet icon 0 503 [open]", "sheet menu 122 [open]",
                     "sheet to 70,80 300x419 4 [open]", "sheet title 0 Karvel Options [open]",
                     "sheet item 1 Save && Close [open]", "sheet registered [open]",
                     "settings loaded [open]"}));
    EXPECT_EQ(Page(WM_INITDIALOG), TRUE);
    EXPECT_EQ(Taken(), Lines{});
}

TEST_F(OwnWindows, ThePageEndsOnce) {
    Open();
    EXPECT_EQ(Page(WM_DESTROY), TRUE);
    EXPECT_EQ(Taken(), (Lines{"settings loaded [open]", "place saved 20,30 [open]",
                              "sheet withdrawn [open]", "refresh"}));
    EXPECT_EQ(Page(WM_DESTROY), TRUE);
    EXPECT_EQ(Taken(), Lines{});
}

TEST_F(OwnWindows, ASheetThatHasAPageYetIsNotClosed) {
    Open();
    g_has_current_page = true;
    EXPECT_EQ(Page(kCloseRequest), TRUE);
    EXPECT_EQ(Page(kCloseRequest), TRUE);
    EXPECT_EQ(Taken(),
              (Lines{"sheet asked for its page [open]", "sheet asked for its page [open]"}));
    g_has_current_page = false;
    EXPECT_EQ(Page(kCloseRequest), TRUE);
    EXPECT_EQ(Taken(), (Lines{"sheet asked for its page [open]", "sheet destroyed [open]"}));
}

TEST_F(OwnWindows, AWindowThatIsClosedIsNotAskedAnything) {
    EXPECT_EQ(Page(kCloseRequest), TRUE);
    Open();
    Page(WM_DESTROY);
    Taken();
    EXPECT_EQ(Page(kCloseRequest), TRUE);
    EXPECT_EQ(Taken(), Lines{});
}

TEST_F(OwnWindows, ApplyingClosesWhenItSaysSo) {
    Open();
    EXPECT_EQ(Notify(PSN_APPLY, FALSE), TRUE);
    EXPECT_EQ(Taken(),
              (Lines{"settings saved [open]", "save disabled [open]", "page long 0 0 [open]"}));
    EXPECT_EQ(Notify(PSN_APPLY, TRUE), TRUE);
    EXPECT_EQ(Taken(), (Lines{"settings saved [open]", "save disabled [open]",
                              "page long 0 0 [open]", "page asked to close [open]"}));
    EXPECT_EQ(Notify(PSN_RESET), TRUE);
    EXPECT_EQ(Taken(), Lines{"page asked to close [open]"});
    EXPECT_EQ(Notify(PSN_KILLACTIVE), TRUE);
    EXPECT_EQ(Taken(), Lines{"page long 0 0 [open]"});
    EXPECT_EQ(Notify(PSN_SETACTIVE), FALSE);
    EXPECT_EQ(Taken(), Lines{});
}

// Without the window there is nothing but the file.
TEST_F(OwnWindows, SavingDisablesTheButtonOfAnOpenWindowOnly) {
    SaveOptions();
    EXPECT_EQ(Taken(), Lines{"settings saved"});
    Open();
    SaveOptions();
    EXPECT_EQ(Taken(), (Lines{"settings saved [open]", "save disabled [open]"}));
}

TEST_F(OwnWindows, ABoxOfTheThirdStateIsNotChecked) {
    Open();
    struct Box {
        int control;
        int PluginSettings::* setting;
    };
    for (const Box& box :
         {Box{1006, &PluginSettings::useShiftClone}, Box{1027, &PluginSettings::hideMClickXForms},
          Box{1004, &PluginSettings::mClickXForms}, Box{1015, &PluginSettings::useMayaStyle}}) {
        for (const UINT state : {BST_CHECKED, BST_INDETERMINATE, BST_CHECKED, BST_UNCHECKED}) {
            g_boxes[box.control] = state;
            EXPECT_EQ(Page(WM_COMMAND, static_cast<WPARAM>(box.control)), TRUE);
            EXPECT_EQ(g_settings.*box.setting, state == BST_CHECKED ? 1 : 0) << box.control;
        }
    }
}

// Revert and help are menu entries: their answers are no, those of the boxes yes.
TEST_F(OwnWindows, AnswersToCommands) {
    Open();
    for (const int box : {1006, 1027, 1004, 1005, 1007, 1009, 1010, 1011, 1012, 1014, 1015, 1028})
        EXPECT_EQ(Page(WM_COMMAND, static_cast<WPARAM>(box)), TRUE) << box;
    for (const int entry : {40003, 40004, 40006, 40013, 1, 1013, 1016})
        EXPECT_EQ(Page(WM_COMMAND, static_cast<WPARAM>(entry)), FALSE) << entry;
    EXPECT_EQ(Page(WM_PAINT), FALSE);
    EXPECT_EQ(Welcome(WM_COMMAND, 1001), FALSE);
    EXPECT_EQ(Welcome(WM_PAINT), FALSE);
}

TEST_F(OwnWindows, TheAboutBoxBelongsToThePage) {
    Open();
    EXPECT_EQ(Page(WM_COMMAND, 40006), FALSE);
    const Lines lines = Taken();
    ASSERT_EQ(lines.size(), 1u);
    const std::string wanted =
        "box of page, 0, Karvel Tools for 3ds Max: Karvel Tools for 3ds Max\r\nVersion 1.5.0\r\n";
    EXPECT_EQ(lines[0].substr(0, wanted.size()), wanted);
    ShowAboutBox(kMain);
    EXPECT_EQ(Taken()[0].substr(0, 14), "box of main, 0");
}

TEST_F(OwnWindows, AWelcomeIsAskedForAsDescribed) {
    OpenWelcomeDialog();
    EXPECT_EQ(Taken(), Lines{"dialog 139 of main with 0"});
    Open();
    EXPECT_EQ(Page(WM_COMMAND, 40013), FALSE);
    EXPECT_EQ(Taken(), Lines{"dialog 139 of main with 0 [open]"});
}

TEST_F(OwnWindows, AWelcomeKeepsItsHandleUntilItHasGone) {
    EXPECT_EQ(Welcome(WM_INITDIALOG), TRUE);
    EXPECT_EQ(Taken(), Lines{});
    EXPECT_EQ(Welcome(WM_COMMAND, 1), TRUE);
    EXPECT_EQ(Taken(), Lines{"welcome destroyed [greets]"});
    EXPECT_EQ(g_welcomeWindow, nullptr);

    g_welcome_wanted = false;
    EXPECT_EQ(Welcome(WM_INITDIALOG), TRUE);
    EXPECT_EQ(Taken(), Lines{"welcome box 1032 1 [greets]"});
    EXPECT_EQ(Welcome(WM_CLOSE), FALSE);
    EXPECT_EQ(Taken(), Lines{"welcome destroyed [greets]"});
    EXPECT_EQ(g_welcomeWindow, nullptr);
}

TEST_F(OwnWindows, TheVideosAreShownByTheSystem) {
    Welcome(WM_INITDIALOG);
    EXPECT_EQ(Welcome(WM_COMMAND, 2), TRUE);
    // An error of the system's stands above the window that was clicked.
    EXPECT_EQ(Taken(), Lines{"execute of welcome, open .../flinder_max 5 [greets]"});
}

TEST_F(OwnWindows, ABoxOfTheThirdStateKeepsTheWelcomeOn) {
    Welcome(WM_INITDIALOG);
    for (const UINT state : {BST_UNCHECKED, BST_CHECKED, BST_INDETERMINATE}) {
        g_boxes[1032] = state;
        EXPECT_EQ(Welcome(WM_COMMAND, 1032), TRUE);
    }
    EXPECT_EQ(Taken(),
              (Lines{"welcome on [greets]", "welcome off [greets]", "welcome on [greets]"}));
}

}  // namespace
