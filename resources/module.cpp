#include "resources/module.h"

HINSTANCE g_module = nullptr;

namespace {

constexpr int kTextSize = 256;
char g_text[kTextSize];

}  // namespace

char* LoadText(int id) {
    if (!g_module) return nullptr;
    return LoadStringA(g_module, static_cast<UINT>(id), g_text, kTextSize) > 0 ? g_text : nullptr;
}

HCURSOR LoadModuleCursor(int id) {
    return LoadCursorA(g_module, MAKEINTRESOURCEA(id));
}

void ShowArrowCursor() {
    SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW)));
}
