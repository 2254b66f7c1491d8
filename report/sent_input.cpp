#include "report/sent_input.h"

#include <windows.h>

#include <cstring>

namespace report {
namespace {

using recording::Button;
using recording::Input;

recording::Recorder* g_noted = nullptr;

// --- what a record will come as ---

struct ButtonFlags {
    DWORD down;
    DWORD up;
    Button button;
};
constexpr ButtonFlags kButtonFlags[] = {
    {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, Button::kLeft},
    {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP, Button::kRight},
    {MOUSEEVENTF_MIDDLEDOWN, MOUSEEVENTF_MIDDLEUP, Button::kMiddle},
};

int GeneralKey(int key) {
    switch (key) {
        case VK_LMENU:
        case VK_RMENU: return VK_MENU;
        case VK_LCONTROL:
        case VK_RCONTROL: return VK_CONTROL;
        case VK_LSHIFT:
        case VK_RSHIFT: return VK_SHIFT;
        default: return key;
    }
}

// Records are about the mouse's own buttons, messages about what the user's system makes of them.
int ButtonOfMessage(Button button) {
    if (button != Button::kMiddle && GetSystemMetrics(SM_SWAPBUTTON)) {
        button = button == Button::kLeft ? Button::kRight : Button::kLeft;
    }
    return static_cast<int>(button);
}

void Note(const INPUT& record) {
    const DWORD now = GetTickCount();
    if (record.type == INPUT_KEYBOARD) {
        const bool up = (record.ki.dwFlags & KEYEVENTF_KEYUP) != 0;
        g_noted->NoteInjected({up ? Input::kKeyUp : Input::kKeyDown, GeneralKey(record.ki.wVk)},
                              now);
        return;
    }
    if (record.type != INPUT_MOUSE) return;
    for (const ButtonFlags& flags : kButtonFlags) {
        const int button = ButtonOfMessage(flags.button);
        if (record.mi.dwFlags & flags.down) g_noted->NoteInjected({Input::kDown, button}, now);
        if (record.mi.dwFlags & flags.up) g_noted->NoteInjected({Input::kUp, button}, now);
    }
}

// --- in the place of the plug-in's imports ---

decltype(&SendInput) g_send_input = nullptr;
decltype(&SetCursorPos) g_set_cursor_pos = nullptr;

UINT WINAPI SendAndNote(UINT count, INPUT* records, int size) {
    const UINT sent = g_send_input(count, records, size);
    if (g_noted) g_noted->NoteBatch();
    for (UINT i = 0; g_noted && i < sent; ++i)
        Note(records[i]);
    return sent;
}

BOOL WINAPI MoveAndNote(int x, int y) {
    POINT before = {};
    POINT after = {};
    GetCursorPos(&before);
    const BOOL moved = g_set_cursor_pos(x, y);
    GetCursorPos(&after);
    if (g_noted && (before.x != after.x || before.y != after.y)) {
        g_noted->NoteBatch();
        g_noted->NoteInjected(
            {Input::kMove, 0, false, static_cast<int>(after.x), static_cast<int>(after.y)},
            GetTickCount());
    }
    return moved;
}

struct Import {
    const char* name;
    ULONG_PTR ours;
    void (*keep)(ULONG_PTR former);
    ULONG_PTR* entry;  // of the plug-in's table of imports, while it is ours
    ULONG_PTR former;
};
Import g_imports[] = {
    {"SendInput", reinterpret_cast<ULONG_PTR>(&SendAndNote),
     [](ULONG_PTR former) { g_send_input = reinterpret_cast<decltype(g_send_input)>(former); },
     nullptr, 0},
    {"SetCursorPos", reinterpret_cast<ULONG_PTR>(&MoveAndNote),
     [](ULONG_PTR former) {
         g_set_cursor_pos = reinterpret_cast<decltype(g_set_cursor_pos)>(former);
     },
     nullptr, 0},
};

bool Write(ULONG_PTR* entry, ULONG_PTR value) {
    DWORD before = 0;
    if (!VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before)) return false;
    *entry = value;
    VirtualProtect(entry, sizeof *entry, before, &before);
    return true;
}

void TakePlace(const char* name, ULONG_PTR* entry) {
    for (Import& import : g_imports) {
        if (import.entry || std::strcmp(import.name, name) != 0) continue;
        if (*entry != import.ours) {
            import.former = *entry;
            import.keep(*entry);
        }
        if (Write(entry, import.ours)) import.entry = entry;
    }
}

template <typename Part>
Part* At(BYTE* module, DWORD offset) {
    return reinterpret_cast<Part*>(module + offset);
}

// The system keeps the names beside the places that it has filled in.
void TakePlacesIn(BYTE* module) {
    const auto* header = At<IMAGE_DOS_HEADER>(module, 0);
    const auto* file = At<IMAGE_NT_HEADERS64>(module, static_cast<DWORD>(header->e_lfanew));
    const DWORD table =
        file->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    if (!table) return;
    for (auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(module, table); from->Name; ++from) {
        if (!from->OriginalFirstThunk) continue;
        const auto* names = At<ULONG_PTR>(module, from->OriginalFirstThunk);
        auto* entries = At<ULONG_PTR>(module, from->FirstThunk);
        for (; *names; ++names, ++entries) {
            if (IMAGE_SNAP_BY_ORDINAL64(*names)) continue;
            const auto* import = At<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(*names));
            TakePlace(reinterpret_cast<const char*>(import->Name), entries);
        }
    }
}

}  // namespace

void NoteSentInput(recording::Recorder& recorder) {
    g_noted = &recorder;
    if (HMODULE plugin = GetModuleHandleA("KarvelMax.gup")) {
        TakePlacesIn(reinterpret_cast<BYTE*>(plugin));
    }
}

void ForgetSentInput() {
    g_noted = nullptr;
    for (Import& import : g_imports) {
        // Somebody else may have come between; then ours stays, and only passes the calls on.
        if (import.entry && *import.entry == import.ours) Write(import.entry, import.former);
        import.entry = nullptr;
    }
}

}  // namespace report
