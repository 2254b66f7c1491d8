#include "assists/brushes.h"

#include <windows.h>

#include <span>

#include "host/host.h"
#include "host/window_kind.h"
#include "script/poly_tools.h"

// The brush button that was checked when a drag began and is clicked again at its end; null: none.
HWND g_activeToolButton = nullptr;
// The PolyTools sculpt button to be toggled back at the end of a drag; 0: none.
int g_pendingSculptButton = 0;

namespace {

// The mode of the host's painter interface: any tool that paints through it runs in it, so only the
// buttons tell which one does.
constexpr int kPainterMode = 0x4F298C8B;

struct BrushButton {
    int control;
    const char* caption;  // empty: whatever it says
};
// In ascending order of their ids: the first one that is checked is the brush that runs.
constexpr BrushButton kSculptBrushes[] = {
    {4184, "Push/Pull"},
    {4185, "Relax"},
    {4186, "Revert"},
};
constexpr BrushButton kPaintBrushes[] = {
    {1007, "Paint"},
    {1008, "Erase"},
    {1009, ""},
    {1077, ""},
};

HWND FindCheckedBrush(const char* panel_title, std::span<const BrushButton> brushes) {
    HWND main_window = host::MainWindow();
    HWND panel = main_window ? FindWindowExA(main_window, nullptr, nullptr, panel_title) : nullptr;
    if (!panel) return nullptr;
    for (const BrushButton& brush : brushes) {
        SetButtonSearch(brush.control, brush.caption);
        HWND found = nullptr;
        EnumChildWindows(panel, FindButtonByIdAndText, reinterpret_cast<LPARAM>(&found));
        if (host::IsButtonChecked(found).value_or(false)) return found;
    }
    return nullptr;
}

// Leaves a running brush of the panel and remembers its button.
void SuspendBrushOf(const char* panel_title, std::span<const BrushButton> brushes) {
    HWND button = FindCheckedBrush(panel_title, brushes);
    if (!button) return;
    g_activeToolButton = button;
    host::PopModeIfStacked();
}

void ClickBrushButton(HWND button) {
    if (!IsWindow(button)) return;
    SendMessageA(GetParent(button), WM_COMMAND, static_cast<WPARAM>(GetDlgCtrlID(button)),
                 reinterpret_cast<LPARAM>(button));
}

}  // namespace

void SuspendBrush() {
    if (host::CurrentModeId() == kPainterMode) {
        SuspendBrushOf("Command Panel", kSculptBrushes);
        if (g_activeToolButton) return;
    } else {
        g_activeToolButton = nullptr;
    }
    SuspendBrushOf("VertexPaint", kPaintBrushes);
    if (g_activeToolButton) return;
    RefreshSculptState();
    g_pendingSculptButton = g_graphiteSculptTool;
}

void ResumeBrush() {
    if (g_activeToolButton) {
        ClickBrushButton(g_activeToolButton);
        g_activeToolButton = nullptr;
    } else if (g_pendingSculptButton) {
        ToggleSculptButton(g_pendingSculptButton);
        g_pendingSculptButton = 0;
    }
}

void ForgetBrush() {
    g_activeToolButton = nullptr;
}
