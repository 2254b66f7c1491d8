#include "resources/module.h"

#include "resources/resource_ids.h"

HINSTANCE g_module = nullptr;

namespace {

constexpr int kTextSize = 256;
char g_text[kTextSize];

struct ModuleCursor {
    int id;
    HCURSOR cursor;  // null: not loaded yet
};
ModuleCursor g_cursors[] = {
    {IDC_CURSOR_SELECT_CONTROL, nullptr},
    {IDC_CURSOR_SELECT_CONTROL_SHIFT, nullptr},
    {IDC_CURSOR_SELECT_SHIFT, nullptr},
    {IDC_CURSOR_ORBIT, nullptr},
    {IDC_CURSOR_PAN, nullptr},
    {IDC_CURSOR_ZOOM, nullptr},
    {IDC_CURSOR_REFUSED, nullptr},
    {IDC_CURSOR_TIME_SCRUB, nullptr},
};

}  // namespace

char* LoadText(int id) {
    if (!g_module) return nullptr;
    return LoadStringA(g_module, static_cast<UINT>(id), g_text, kTextSize) > 0 ? g_text : nullptr;
}

HCURSOR LoadModuleCursor(int id) {
    for (ModuleCursor& kept : g_cursors) {
        if (kept.id != id) continue;
        if (!kept.cursor) kept.cursor = LoadCursorA(g_module, MAKEINTRESOURCEA(id));
        return kept.cursor;
    }
    return nullptr;
}

void ShowArrowCursor() {
    SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW)));
}
