#include "hooks/arrow_key_filter.h"

#include <cstdlib>

#include "host/host.h"
#include "settings/plugin_settings.h"

namespace {

// Lives as long as the process: the window's procedure is never put back.
struct SubclassRecord {
    HWND window;
    LONG_PTR previous_procedure;
    SubclassRecord* next;
};

SubclassRecord* g_subclassRecords = nullptr;

constexpr int kFirstReleaseWithoutFilter = 7000;

const SubclassRecord* FindRecord(HWND window) {
    for (const SubclassRecord* record = g_subclassRecords; record; record = record->next) {
        if (record->window == window) return record;
    }
    return nullptr;
}

// Deliberate: 32 bits, as on the hosts that this is for. 0: not subclassed.
int FindOriginalProcedure(HWND window) {
    const SubclassRecord* record = FindRecord(window);
    return record ? static_cast<int>(record->previous_procedure) : 0;
}

bool IsArrowKeyMessage(UINT message, WPARAM key) {
    if (message != WM_KEYDOWN && message != WM_KEYUP) return false;
    return key == VK_DOWN || key == VK_UP || key == VK_LEFT || key == VK_RIGHT;
}

LRESULT CALLBACK ViewportKeyFilterProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (g_settings.useMayaStyle && IsArrowKeyMessage(message, wParam)) return 0;
    const auto original =
        reinterpret_cast<WNDPROC>(static_cast<LONG_PTR>(FindOriginalProcedure(window)));
    return CallWindowProcA(original, window, message, wParam, lParam);
}

bool SubclassWindowForKeys(HWND window) {
    auto* record = static_cast<SubclassRecord*>(std::malloc(sizeof(SubclassRecord)));
    if (!record) return true;
    record->window = window;
    record->previous_procedure =
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ViewportKeyFilterProc));
    record->next = g_subclassRecords;
    g_subclassRecords = record;
    return true;
}

BOOL CALLBACK SubclassViewportChild(HWND window, LPARAM) {
    const host::Viewport viewport = host::Viewport::OfWindow(window);
    if (viewport) {
        HWND handle = viewport.Window();
        if (!FindRecord(handle)) SubclassWindowForKeys(handle);
    }
    return TRUE;
}

}  // namespace

void InstallViewportKeyFilters() {
    if (g_hostRelease >= kFirstReleaseWithoutFilter) return;
    const host::Viewport active = host::Viewport::Active();
    if (!active) return;
    HWND panel = GetParent(active.Window());
    if (panel) EnumChildWindows(panel, SubclassViewportChild, 0);
}
