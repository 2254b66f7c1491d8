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
#include "standin/engine/trace/control.h"

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
               Text(POINT{static_cast<short>(LOWORD(lparam)), static_cast<short>(HIWORD(lparam))});
    if (TakesText(window, message) && lparam)
        return text + trace::Quoted(reinterpret_cast<const char*>(lparam));
    return text + ArgumentText(lparam);
}

LRESULT SendAndPump(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const LRESULT answer = ::SendMessageA(window, message, wparam, lparam);
    input::NoteSent(message);
    input::PumpWithin(window, message);
    return answer;
}

// clang-format off
EFFECT(LRESULT, SendMessageA, (HWND window, UINT message, WPARAM wparam, LPARAM lparam),
    (MessageText(window, message, wparam, lparam)), SendAndPump(window, message, wparam, lparam))
EFFECT(BOOL, PostMessageA, (HWND window, UINT message, WPARAM wparam, LPARAM lparam),
    (MessageText(window, message, wparam, lparam)),
    (input::NotePosted(), ::PostMessageA(window, message, wparam, lparam)))
EFFECT(LRESULT, SendDlgItemMessageA,
    (HWND dialog, int id, UINT message, WPARAM wparam, LPARAM lparam),
    (MessageText(::GetDlgItem(dialog, id), message, wparam, lparam)),
    ::SendDlgItemMessageA(dialog, id, message, wparam, lparam))
// clang-format on

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
    trace::In("message " + world::Of(window) + ' ' + names::Message(message) + ' ' + Text(wparam) +
              ' ' + ArgumentText(lparam));
    const bool outer = std::exchange(g_went_on, false);
    const LRESULT answer = procedure(window, message, wparam, lparam);
    // What a filter of keys drops and what it lets through have the same answer.
    const bool filtered = message != WM_COMMAND;
    trace::Out(Text(answer) + (!filtered ? "" : g_went_on ? " passed=yes" : " passed=no"));
    g_went_on = outer;
    return answer;
}

LRESULT WINAPI OnCallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wparam,
                                 LPARAM lparam) {
    g_went_on = true;
    return ::CallWindowProcA(procedure, window, message, wparam, lparam);
}
const Wrapper g_CallWindowProcA{"CallWindowProcA", Address(OnCallWindowProcA), false};

LONG_PTR SetLong(HWND window, int index, LONG_PTR value) {
    if (index != GWLP_WNDPROC) return ::SetWindowLongPtrA(window, index, value);
    const WNDPROC procedure = reinterpret_cast<WNDPROC>(value);
    const auto [place, is_first] = g_subclassed.try_emplace(window, procedure);
    if (!is_first) return reinterpret_cast<LONG_PTR>(std::exchange(place->second, procedure));
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
    return Text(static_cast<int>(header.code));
}

// Addresses are nobody's business: they differ from play to play.
std::string DialogMessageText(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NOTIFY)
        return Text(wparam) + ' ' + NotificationText(*reinterpret_cast<const NMHDR*>(lparam));
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
    trace::OutDialogMessage(Text(answer));
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

HWND CreateDialogOf(HINSTANCE module, const char* name, HWND owner, DLGPROC procedure,
                    LPARAM parameter) {
    constexpr ULONG_PTR kWelcomeDialog = 139;
    const bool is_welcome = reinterpret_cast<ULONG_PTR>(name) == kWelcomeDialog;
    g_pending_dialog = {procedure, is_welcome ? "welcome" : nullptr, false};
    return ::CreateDialogParamA(module, name, owner, procedure ? FirstMessage : nullptr, parameter);
}

std::string HexText(UINT value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", value);
    return text;
}

WRAPPER(INT_PTR, PropertySheetA, (const PROPSHEETHEADERA* header)) {
    trace::Win("PropertySheetA " +
               (IS_INTRESOURCE(header->pszCaption) ? "none" : trace::Quoted(header->pszCaption)) +
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

int ShowMessageBox(HWND owner, const char* text, const char* caption, UINT type) {
    // It would wait for its answer; a scenario has nobody to give one.
    if (!input::IsInteractive()) return IDOK;
    trace::Flush();
    return ::MessageBoxA(owner, text, caption, type);
}

WRAPPER(HINSTANCE, ShellExecuteA,
        (HWND owner, const char* verb, const char* file, const char* parameters,
         const char* directory, int show)) {
    trace::Win(std::string("ShellExecuteA ") + (verb ? verb : "none") + ' ' + (file ? file : "") +
               " owner=" + Text(owner) + " parameters=" + Text(parameters) +
               " directory=" + Text(directory) + " show=" + Text(show));
    constexpr LONG_PTR kDone = 33;
    constexpr LONG_PTR kNoFile = 2;
    return reinterpret_cast<HINSTANCE>(Fails("ShellExecuteA") ? kNoFile : kDone);
}

// --- windows ---

std::string ControlText(HWND dialog, int id) {
    const HWND control = ::GetDlgItem(dialog, id);
    return control ? Text(control) : Text(dialog) + "." + Text(id);
}

std::string CornersText(const RECT& rect) {
    return Text(POINT{rect.left, rect.top}) + ' ' + Text(POINT{rect.right, rect.bottom});
}

// What the system does to a point, with the line that tells both points.
BOOL MapPoint(const char* name, BOOL(WINAPI* map)(HWND, POINT*), HWND window, POINT* point) {
    const POINT before = *point;
    const BOOL done = Fails(name) ? FALSE : map(window, point);
    if (trace::AsksWanted())
        trace::Ask(name + calls::Listed(window, before), done ? Text(*point) : "0");
    return done;
}
WRAPPER(BOOL, ScreenToClient, (HWND window, POINT* point)) {
    return MapPoint("ScreenToClient", ::ScreenToClient, window, point);
}
WRAPPER(BOOL, ClientToScreen, (HWND window, POINT* point)) {
    return MapPoint("ClientToScreen", ::ClientToScreen, window, point);
}

WRAPPER(int, GetWindowTextA, (HWND window, char* text, int size)) {
    if (size > 0) text[0] = 0;
    const int length = Fails("GetWindowTextA") ? 0 : ::GetWindowTextA(window, text, size);
    if (trace::AsksWanted())
        trace::Ask("GetWindowTextA " + Text(window), trace::Quoted(size > 0 ? text : ""));
    return length;
}

// clang-format off
EFFECT(LONG_PTR, SetWindowLongPtrA, (HWND window, int index, LONG_PTR value), (window, index),
    SetLong(window, index, value))
EFFECT(HWND, CreateDialogParamA,
    (HINSTANCE module, const char* name, HWND owner, DLGPROC procedure, LPARAM parameter), (name),
    CreateDialogOf(module, name, owner, procedure, parameter))
EFFECT(int, MessageBoxA, (HWND owner, const char* text, const char* caption, UINT type),
    (caption, text, "owner=" + Text(owner), "type=" + HexText(type)),
    ShowMessageBox(owner, text, caption, type))
EFFECT(BOOL, SetWindowPos,
    (HWND window, HWND after, int x, int y, int width, int height, UINT flags),
    (window, POINT{x, y}, Text(width) + "x" + Text(height), flags),
    ::SetWindowPos(window, after, x, y, width, height, flags))
EFFECT(BOOL, ShowWindow, (HWND window, int how), (window, how), ::ShowWindow(window, how))
EFFECT(BOOL, DestroyWindow, (HWND window), (window), ::DestroyWindow(window))
EFFECT(BOOL, EnableWindow, (HWND window, BOOL enable), (window, enable),
    ::EnableWindow(window, enable))
EFFECT(BOOL, CheckDlgButton, (HWND dialog, int id, UINT check), (ControlText(dialog, id), check),
    ::CheckDlgButton(dialog, id, check))
EFFECT(BOOL, SetMenu, (HWND window, HMENU menu), (window, ResourceText(menu)),
    ::SetMenu(window, menu))
EFFECT(BOOL, SetDlgItemTextA, (HWND dialog, int id, const char* text),
    (ControlText(dialog, id), text), ::SetDlgItemTextA(dialog, id, text))
EFFECT(BOOL, SetWindowTextA, (HWND window, const char* text), (window, text),
    ::SetWindowTextA(window, text))
READER_AS(int, GetClassNameA, (HWND window, char* text, int size), (window),
    trace::Quoted(answer > 0 ? text : ""), ::GetClassNameA(window, text, size))
READER(HWND, GetParent, (HWND window), (window), ::GetParent(window))
READER_AS(BOOL, GetWindowRect, (HWND window, RECT* rect), (window),
    answer ? CornersText(*rect) : "0",
    ::GetWindowRect(window, rect))
READER(HWND, FindWindowExA, (HWND parent, HWND after, const char* class_name, const char* title),
    (parent, after, class_name, title), ::FindWindowExA(parent, after, class_name, title))
READER(BOOL, EnumChildWindows, (HWND parent, WNDENUMPROC procedure, LPARAM parameter), (parent),
    ::EnumChildWindows(parent, procedure, parameter))
READER(HWND, GetDlgItem, (HWND dialog, int id), (dialog, id), ::GetDlgItem(dialog, id))
READER(int, GetDlgCtrlID, (HWND window), (window), ::GetDlgCtrlID(window))
READER(BOOL, IsWindow, (HWND window), (window), ::IsWindow(window))
READER(UINT, IsDlgButtonChecked, (HWND dialog, int id), (ControlText(dialog, id)),
    ::IsDlgButtonChecked(dialog, id))
// clang-format on

}  // namespace

void ForgetSubclasses() {
    g_subclassed.clear();
    g_dialogs.clear();
}

}  // namespace intercept
