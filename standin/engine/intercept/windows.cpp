// Messages, windows and dialogs as the plug-in calls them: traced, then the system's own.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>
#include <shellapi.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

#include "standin/engine/input/control.h"
#include "standin/engine/intercept/internal.h"
#include "standin/engine/trace/message_names.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"

namespace intercept {
namespace {

// --- messages ---

bool IsMouseMessage(UINT message) {
    return message >= WM_MOUSEFIRST && message <= WM_MOUSELAST;
}

bool TakesText(HWND window, UINT message) {
    // No window takes a message, but the message for the sheet is still known by its text.
    return message == WM_SETTEXT ||
           (message == PSM_SETTITLEA && (!window || world::Of(window) == "options"));
}

std::string MessageText(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    std::string text = world::Of(window) + ' ' + names::MessageTo(window, message) + ' ';
    text += ArgumentText(static_cast<LONG_PTR>(wparam)) + ' ';
    if (IsMouseMessage(message))
        return text +
               PointText(static_cast<short>(LOWORD(lparam)), static_cast<short>(HIWORD(lparam)));
    if (TakesText(window, message) && lparam)
        return text + trace::Quoted(reinterpret_cast<const char*>(lparam));
    return text + ArgumentText(lparam);
}

LRESULT WINAPI OnSendMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    trace::Win("SendMessageA " + MessageText(window, message, wparam, lparam));
    if (Fails("SendMessageA")) return 0;
    const LRESULT answer = ::SendMessageA(window, message, wparam, lparam);
    input::NoteSent(message);
    input::PumpWithin(window, message);
    return answer;
}

BOOL WINAPI OnPostMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    trace::Win("PostMessageA " + MessageText(window, message, wparam, lparam));
    if (Fails("PostMessageA")) return FALSE;
    input::NotePosted();
    return ::PostMessageA(window, message, wparam, lparam);
}

std::string HexText(UINT value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", value);
    return text;
}

std::string ControlText(HWND dialog, int id) {
    const HWND control = ::GetDlgItem(dialog, id);
    return control ? world::Of(control) : world::Of(dialog) + "." + Number(id);
}

LRESULT WINAPI OnSendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wparam,
                                     LPARAM lparam) {
    trace::Win("SendDlgItemMessageA " +
               MessageText(::GetDlgItem(dialog, id), message, wparam, lparam));
    if (Fails("SendDlgItemMessageA")) return 0;
    return ::SendDlgItemMessageA(dialog, id, message, wparam, lparam);
}

// --- subclassed windows ---

std::map<HWND, WNDPROC> g_subclassed;
bool g_went_on = false;  // the procedure that is running called the one before it

// What one of the plug-in's procedures is there for: shortcut commands of the main window, arrow
// keys of viewports. Everything else only travels through.
bool IsListed(HWND window, UINT message, WPARAM wparam) {
    if (message == WM_COMMAND) return world::Of(window) == "main";
    if (message != WM_KEYDOWN && message != WM_KEYUP) return false;
    return wparam >= VK_LEFT && wparam <= VK_DOWN && world::Of(window).starts_with("viewport.");
}

LRESULT CALLBACK SubclassProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto found = g_subclassed.find(window);
    if (found == g_subclassed.end()) return DefWindowProcA(window, message, wparam, lparam);
    const WNDPROC procedure = found->second;
    if (!IsListed(window, message, wparam)) return procedure(window, message, wparam, lparam);
    trace::SetEventWindow(window);
    trace::In("message " + world::Of(window) + ' ' + names::Message(message) + ' ' +
              Number(static_cast<long long>(wparam)) + ' ' + ArgumentText(lparam));
    const bool outer = std::exchange(g_went_on, false);
    const LRESULT answer = procedure(window, message, wparam, lparam);
    // What a filter of keys drops and what it lets through have the same answer.
    const bool filtered = message != WM_COMMAND;
    trace::Out(Number(answer) + (!filtered ? "" : g_went_on ? " passed=yes" : " passed=no"));
    g_went_on = outer;
    return answer;
}

LRESULT WINAPI OnCallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wparam,
                                 LPARAM lparam) {
    g_went_on = true;
    return ::CallWindowProcA(procedure, window, message, wparam, lparam);
}

LONG_PTR WINAPI OnSetWindowLongPtrA(HWND window, int index, LONG_PTR value) {
    trace::Win("SetWindowLongPtrA " + world::Of(window) + ' ' + Number(index));
    if (Fails("SetWindowLongPtrA")) return 0;
    if (index != GWLP_WNDPROC) return ::SetWindowLongPtrA(window, index, value);
    const auto [place, is_first] =
        g_subclassed.try_emplace(window, reinterpret_cast<WNDPROC>(value));
    if (!is_first) {
        const WNDPROC earlier = place->second;
        place->second = reinterpret_cast<WNDPROC>(value);
        return reinterpret_cast<LONG_PTR>(earlier);
    }
    return ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(SubclassProcedure));
}

// --- dialogs ---

// The dialog that is being made: its own procedure, and the name that the world is to know it by.
struct PendingDialog {
    DLGPROC procedure = nullptr;
    const char* name = nullptr;
    bool names_parent = false;  // a page names the sheet around it
};
PendingDialog g_pending_dialog;

struct Dialog {
    DLGPROC procedure = nullptr;
    std::string name;
};
std::map<HWND, Dialog> g_dialogs;

// What the plug-in's dialogs are there for; all else only travels through.
bool IsDialogs(UINT message) {
    switch (message) {
        case WM_INITDIALOG:
        case WM_COMMAND:
        case WM_NOTIFY:
        case WM_CLOSE:
        case WM_DESTROY:
        case WM_USER + 1: return true;
        default: return false;
    }
}

std::string NotificationText(const NMHDR& header) {
    struct Name {
        UINT code;
        const char* text;
    };
    static constexpr Name kNames[] = {
        {PSN_SETACTIVE, "PSN_SETACTIVE"},
        {PSN_KILLACTIVE, "PSN_KILLACTIVE"},
        {PSN_APPLY, "PSN_APPLY"},
        {PSN_RESET, "PSN_RESET"},
        {PSN_QUERYCANCEL, "PSN_QUERYCANCEL"},
        {PSN_QUERYINITIALFOCUS, "PSN_QUERYINITIALFOCUS"},
    };
    for (const Name& name : kNames)
        if (name.code == header.code) return name.text;
    return Number(static_cast<int>(header.code));
}

// Addresses are nobody's business: they differ from play to play.
std::string DialogMessageText(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NOTIFY)
        return Number(static_cast<long long>(wparam)) + ' ' +
               NotificationText(*reinterpret_cast<const NMHDR*>(lparam));
    return ArgumentText(static_cast<LONG_PTR>(wparam)) + ' ' +
           (message == WM_INITDIALOG ? "0" : ArgumentText(lparam));
}

INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto found = g_dialogs.find(window);
    if (found == g_dialogs.end()) return FALSE;
    const Dialog dialog = found->second;
    if (message == WM_NCDESTROY) g_dialogs.erase(found);
    if (!IsDialogs(message)) return dialog.procedure(window, message, wparam, lparam);
    trace::InDialogMessage("message " + dialog.name + ' ' + names::Message(message) + ' ' +
                           DialogMessageText(message, wparam, lparam));
    const INT_PTR answer = dialog.procedure(window, message, wparam, lparam);
    trace::OutDialogMessage(Number(answer));
    return answer;
}

INT_PTR CALLBACK FirstMessage(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
    const PendingDialog pending = g_pending_dialog;
    if (pending.name)
        world::NameDialog(pending.name, pending.names_parent ? GetParent(dialog) : dialog);
    g_dialogs[dialog] = {pending.procedure, pending.name ? pending.name : world::Of(dialog)};
    ::SetWindowLongPtrA(dialog, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(DialogProcedure));
    return DialogProcedure(dialog, message, wparam, lparam);
}

HWND WINAPI OnCreateDialogParamA(HINSTANCE module, const char* name, HWND owner, DLGPROC procedure,
                                 LPARAM parameter) {
    constexpr ULONG_PTR kWelcomeDialog = 139;
    const ULONG_PTR id = reinterpret_cast<ULONG_PTR>(name);
    trace::Win("CreateDialogParamA " +
               (IS_INTRESOURCE(name) ? Number(static_cast<long long>(id)) : trace::Quoted(name)));
    if (Fails("CreateDialogParamA")) return nullptr;
    g_pending_dialog = {procedure, id == kWelcomeDialog ? "welcome" : nullptr, false};
    return ::CreateDialogParamA(module, name, owner, procedure ? FirstMessage : nullptr, parameter);
}

INT_PTR WINAPI OnPropertySheetA(const PROPSHEETHEADERA* header) {
    trace::Win("PropertySheetA " +
               (IS_INTRESOURCE(header->pszCaption) ? std::string("none")
                                                   : trace::Quoted(header->pszCaption)) +
               " flags=" + HexText(header->dwFlags));
    if (Fails("PropertySheetA")) return -1;
    if ((header->dwFlags & PSH_PROPSHEETPAGE) == 0 || header->nPages != 1)
        return ::PropertySheetA(header);
    std::vector<BYTE> page_bytes(header->ppsp->dwSize);
    std::memcpy(page_bytes.data(), header->ppsp, page_bytes.size());
    auto* const page = reinterpret_cast<PROPSHEETPAGEA*>(page_bytes.data());
    g_pending_dialog = {page->pfnDlgProc, "options", true};
    page->pfnDlgProc = FirstMessage;
    std::vector<BYTE> header_bytes(header->dwSize);
    std::memcpy(header_bytes.data(), header, header_bytes.size());
    auto* const copy = reinterpret_cast<PROPSHEETHEADERA*>(header_bytes.data());
    copy->ppsp = page;
    return ::PropertySheetA(copy);
}

int WINAPI OnMessageBoxA(HWND owner, const char* text, const char* caption, UINT type) {
    trace::Win("MessageBoxA " + trace::Quoted(caption ? caption : "") + ' ' +
               trace::Quoted(text ? text : "") + " owner=" + world::Of(owner) +
               " type=" + HexText(type));
    if (Fails("MessageBoxA")) return 0;
    // It would wait for its answer; a scenario has nobody to give one.
    if (!input::IsInteractive()) return IDOK;
    trace::Flush();
    return ::MessageBoxA(owner, text, caption, type);
}

std::string TextOrNone(const char* text) {
    if (!text) return "none";
    return IS_INTRESOURCE(text) ? Number(LOWORD(reinterpret_cast<ULONG_PTR>(text)))
                                : trace::Quoted(text);
}

HINSTANCE WINAPI OnShellExecuteA(HWND owner, const char* verb, const char* file,
                                 const char* parameters, const char* directory, int show) {
    trace::Win(std::string("ShellExecuteA ") + (verb ? verb : "none") + ' ' + (file ? file : "") +
               " owner=" + world::Of(owner) + " parameters=" + TextOrNone(parameters) +
               " directory=" + TextOrNone(directory) + " show=" + Number(show));
    constexpr LONG_PTR kDone = 33;
    constexpr LONG_PTR kNoFile = 2;
    return reinterpret_cast<HINSTANCE>(Fails("ShellExecuteA") ? kNoFile : kDone);
}

// --- windows ---

BOOL WINAPI OnSetWindowPos(HWND window, HWND after, int x, int y, int width, int height,
                           UINT flags) {
    trace::Win("SetWindowPos " + world::Of(window) + ' ' + PointText(x, y) + ' ' + Number(width) +
               "x" + Number(height) + ' ' + Number(flags));
    if (Fails("SetWindowPos")) return FALSE;
    return ::SetWindowPos(window, after, x, y, width, height, flags);
}

BOOL WINAPI OnShowWindow(HWND window, int how) {
    trace::Win("ShowWindow " + world::Of(window) + ' ' + Number(how));
    if (Fails("ShowWindow")) return FALSE;
    return ::ShowWindow(window, how);
}

BOOL WINAPI OnDestroyWindow(HWND window) {
    trace::Win("DestroyWindow " + world::Of(window));
    if (Fails("DestroyWindow")) return FALSE;
    return ::DestroyWindow(window);
}

BOOL WINAPI OnEnableWindow(HWND window, BOOL enable) {
    trace::Win("EnableWindow " + world::Of(window) + ' ' + Number(enable));
    if (Fails("EnableWindow")) return FALSE;
    return ::EnableWindow(window, enable);
}

BOOL WINAPI OnCheckDlgButton(HWND dialog, int id, UINT check) {
    trace::Win("CheckDlgButton " + ControlText(dialog, id) + ' ' + Number(check));
    if (Fails("CheckDlgButton")) return FALSE;
    return ::CheckDlgButton(dialog, id, check);
}

BOOL WINAPI OnSetMenu(HWND window, HMENU menu) {
    trace::Win("SetMenu " + world::Of(window) + ' ' + ResourceText(menu));
    if (Fails("SetMenu")) return FALSE;
    return ::SetMenu(window, menu);
}

BOOL WINAPI OnSetDlgItemTextA(HWND dialog, int id, const char* text) {
    trace::Win("SetDlgItemTextA " + ControlText(dialog, id) + ' ' + trace::Quoted(text));
    if (Fails("SetDlgItemTextA")) return FALSE;
    return ::SetDlgItemTextA(dialog, id, text);
}

BOOL WINAPI OnSetWindowTextA(HWND window, const char* text) {
    trace::Win("SetWindowTextA " + world::Of(window) + ' ' + trace::Quoted(text));
    if (Fails("SetWindowTextA")) return FALSE;
    return ::SetWindowTextA(window, text);
}

// --- readers ---

int WINAPI OnGetWindowTextA(HWND window, char* text, int size) {
    int length = 0;
    if (Fails("GetWindowTextA")) {
        if (size > 0) text[0] = 0;
    } else {
        length = ::GetWindowTextA(window, text, size);
    }
    if (trace::AsksWanted())
        trace::Ask("GetWindowTextA " + world::Of(window), trace::Quoted(size > 0 ? text : ""));
    return length;
}

int WINAPI OnGetClassNameA(HWND window, char* text, int size) {
    int length = 0;
    if (!Fails("GetClassNameA")) length = ::GetClassNameA(window, text, size);
    if (trace::AsksWanted())
        trace::Ask("GetClassNameA " + world::Of(window), trace::Quoted(length > 0 ? text : ""));
    return length;
}

HWND WINAPI OnGetParent(HWND window) {
    const HWND parent = Fails("GetParent") ? nullptr : ::GetParent(window);
    if (trace::AsksWanted()) trace::Ask("GetParent " + world::Of(window), world::Of(parent));
    return parent;
}

BOOL WINAPI OnGetWindowRect(HWND window, RECT* rect) {
    const BOOL done = Fails("GetWindowRect") ? FALSE : ::GetWindowRect(window, rect);
    if (trace::AsksWanted())
        trace::Ask(
            "GetWindowRect " + world::Of(window),
            done ? PointText(rect->left, rect->top) + ' ' + PointText(rect->right, rect->bottom)
                 : "0");
    return done;
}

BOOL WINAPI OnScreenToClient(HWND window, POINT* point) {
    const POINT before = *point;
    const BOOL done = Fails("ScreenToClient") ? FALSE : ::ScreenToClient(window, point);
    if (trace::AsksWanted())
        trace::Ask("ScreenToClient " + world::Of(window) + ' ' + PointText(before.x, before.y),
                   done ? PointText(point->x, point->y) : "0");
    return done;
}

BOOL WINAPI OnClientToScreen(HWND window, POINT* point) {
    const POINT before = *point;
    const BOOL done = Fails("ClientToScreen") ? FALSE : ::ClientToScreen(window, point);
    if (trace::AsksWanted())
        trace::Ask("ClientToScreen " + world::Of(window) + ' ' + PointText(before.x, before.y),
                   done ? PointText(point->x, point->y) : "0");
    return done;
}

HWND WINAPI OnFindWindowExA(HWND parent, HWND after, const char* class_name, const char* title) {
    const HWND window =
        Fails("FindWindowExA") ? nullptr : ::FindWindowExA(parent, after, class_name, title);
    if (trace::AsksWanted())
        trace::Ask("FindWindowExA " + world::Of(parent) + ' ' + world::Of(after) + ' ' +
                       TextOrNone(class_name) + ' ' + TextOrNone(title),
                   world::Of(window));
    return window;
}

BOOL WINAPI OnEnumChildWindows(HWND parent, WNDENUMPROC procedure, LPARAM parameter) {
    const BOOL done =
        Fails("EnumChildWindows") ? FALSE : ::EnumChildWindows(parent, procedure, parameter);
    if (trace::AsksWanted()) trace::Ask("EnumChildWindows " + world::Of(parent), Number(done));
    return done;
}

HWND WINAPI OnGetDlgItem(HWND dialog, int id) {
    const HWND item = Fails("GetDlgItem") ? nullptr : ::GetDlgItem(dialog, id);
    if (trace::AsksWanted())
        trace::Ask("GetDlgItem " + world::Of(dialog) + ' ' + Number(id), world::Of(item));
    return item;
}

int WINAPI OnGetDlgCtrlID(HWND window) {
    const int id = Fails("GetDlgCtrlID") ? 0 : ::GetDlgCtrlID(window);
    if (trace::AsksWanted()) trace::Ask("GetDlgCtrlID " + world::Of(window), Number(id));
    return id;
}

BOOL WINAPI OnIsWindow(HWND window) {
    const BOOL there = Fails("IsWindow") ? FALSE : ::IsWindow(window);
    if (trace::AsksWanted()) trace::Ask("IsWindow " + world::Of(window), Number(there));
    return there;
}

UINT WINAPI OnIsDlgButtonChecked(HWND dialog, int id) {
    const UINT check = Fails("IsDlgButtonChecked") ? 0 : ::IsDlgButtonChecked(dialog, id);
    if (trace::AsksWanted())
        trace::Ask("IsDlgButtonChecked " + ControlText(dialog, id), Number(check));
    return check;
}

const Row kRows[] = {
    {"SendMessageA", Address(OnSendMessageA)},
    {"PostMessageA", Address(OnPostMessageA)},
    {"SendDlgItemMessageA", Address(OnSendDlgItemMessageA)},
    {"CallWindowProcA", Address(OnCallWindowProcA), false},
    {"SetWindowLongPtrA", Address(OnSetWindowLongPtrA)},
    {"CreateDialogParamA", Address(OnCreateDialogParamA)},
    {"PropertySheetA", Address(OnPropertySheetA)},
    {"MessageBoxA", Address(OnMessageBoxA)},
    {"ShellExecuteA", Address(OnShellExecuteA)},
    {"SetWindowPos", Address(OnSetWindowPos)},
    {"ShowWindow", Address(OnShowWindow)},
    {"DestroyWindow", Address(OnDestroyWindow)},
    {"EnableWindow", Address(OnEnableWindow)},
    {"CheckDlgButton", Address(OnCheckDlgButton)},
    {"SetMenu", Address(OnSetMenu)},
    {"SetDlgItemTextA", Address(OnSetDlgItemTextA)},
    {"SetWindowTextA", Address(OnSetWindowTextA)},
    {"GetWindowTextA", Address(OnGetWindowTextA)},
    {"GetClassNameA", Address(OnGetClassNameA)},
    {"GetParent", Address(OnGetParent)},
    {"GetWindowRect", Address(OnGetWindowRect)},
    {"ScreenToClient", Address(OnScreenToClient)},
    {"ClientToScreen", Address(OnClientToScreen)},
    {"FindWindowExA", Address(OnFindWindowExA)},
    {"EnumChildWindows", Address(OnEnumChildWindows)},
    {"GetDlgItem", Address(OnGetDlgItem)},
    {"GetDlgCtrlID", Address(OnGetDlgCtrlID)},
    {"IsWindow", Address(OnIsWindow)},
    {"IsDlgButtonChecked", Address(OnIsDlgButtonChecked)},
};

}  // namespace

std::span<const Row> WindowCalls() {
    return kRows;
}

void ForgetSubclasses() {
    g_subclassed.clear();
    g_dialogs.clear();
}

}  // namespace intercept
