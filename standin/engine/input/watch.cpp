// What the user of interactive mode sees of scene, menus and dialogs, told whenever it has changed
// and the queue is empty: whoever works the stand-in from outside finds out from it where to click,
// and when what a click set off is over.
#include <string>
#include <vector>

#include "standin/engine/input/internal.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"

namespace input {
namespace {

// Asks the window of an open menu for the menu.
constexpr UINT kGetMenuOfWindow = 0x01E1;

HHOOK g_hook = nullptr;
std::vector<std::string> g_last_look;

std::string PlaceText(const RECT& place) {
    return std::to_string(place.left) + "," + std::to_string(place.top) + " " +
           std::to_string(place.right - place.left) + "x" +
           std::to_string(place.bottom - place.top);
}

// `kind` PLACE WORD... "TEXT" for each entry. Entries of open menus belong to no window of ours.
void AddEntries(const std::string& kind, HWND window, HMENU menu, std::vector<std::string>* lines) {
    const int count = GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position) {
        RECT place{};
        if (!GetMenuItemRect(window, menu, static_cast<UINT>(position), &place)) continue;
        const UINT state = GetMenuState(menu, static_cast<UINT>(position), MF_BYPOSITION);
        char text[256] = "";
        GetMenuStringA(menu, static_cast<UINT>(position), text, sizeof text, MF_BYPOSITION);
        std::string line = kind + " " + PlaceText(place);
        // A submenu keeps the number of its entries where these would be.
        if (!(state & MF_POPUP)) {
            if (state & MF_SEPARATOR) line += " separator";
            if (state & MF_CHECKED) line += " checked";
            if (state & MF_GRAYED) line += " grayed";
        }
        lines->push_back(line + " " + trace::Quoted(text));
    }
}

void Tell(HWND open_menu) {
    std::vector<std::string> lines;
    for (const char* const name : {"main", "options"}) {
        const HWND window = world::Find(name);
        const HMENU bar = window ? GetMenu(window) : nullptr;
        if (bar) AddEntries(std::string("bar ") + name, window, bar, &lines);
    }
    for (const char* const what : {"camera", "objects", "modes", "tried", "controls"})
        for (const std::string& line : world::Show(what, ""))
            lines.push_back(line);
    if (open_menu) {
        RECT place{};
        GetWindowRect(open_menu, &place);
        lines.push_back("popup " + PlaceText(place));
        AddEntries("entry", nullptr,
                   reinterpret_cast<HMENU>(SendMessageA(open_menu, kGetMenuOfWindow, 0, 0)),
                   &lines);
    }
    lines.push_back("focus " + world::Of(::GetFocus()));
    if (lines == g_last_look) return;
    for (const std::string& line : lines)
        trace::State(line);
    trace::State("seen");
    trace::Flush();
    g_last_look = std::move(lines);
}

// An open menu waits for its user in a loop of the system's own, which says so to the window that
// the menu belongs to.
LRESULT CALLBACK WatchMenus(int code, WPARAM wparam, LPARAM lparam) {
    const auto* const call = reinterpret_cast<const CWPSTRUCT*>(lparam);
    if (code == HC_ACTION && call->message == WM_ENTERIDLE && call->wParam == MSGF_MENU)
        Tell(reinterpret_cast<HWND>(call->lParam));
    return CallNextHookEx(g_hook, code, wparam, lparam);
}

}  // namespace

void BeginWatch() {
    g_hook = ::SetWindowsHookExA(WH_CALLWNDPROC, WatchMenus, nullptr, GetCurrentThreadId());
}

void Look() {
    Tell(nullptr);
}

void EndWatch() {
    if (g_hook) UnhookWindowsHookEx(g_hook);
    g_hook = nullptr;
}

}  // namespace input
