#include "assists/brushes.h"

#include <span>

#include "host/host.h"
#include "navigation/messages.h"
#include "navigation/navigation_state.h"
#include "navigation/window_kind.h"
#include "script/poly_tools.h"
#include "script/script_texts.h"
#include "shell/module.h"
#include "shell/script_runner.h"

HWND g_activeToolButton = nullptr;
int g_pendingSculptButton = 0;

namespace {

// The mode of the host's painter interface: any tool that paints through it runs in it, so only the
// buttons tell which one does.
constexpr int kPainterMode = 0x4F298C8B;
constexpr int kFirstReleaseWithPolyTools = 12000;

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

void SetSearch(int control, const char* caption) {
    g_searchCtrlId = control;
    lstrcpynA(g_searchText, caption, static_cast<int>(sizeof g_searchText));
}

HWND FindCheckedBrush(const char* panel_title, std::span<const BrushButton> brushes) {
    HWND main_window = host::MainWindow();
    HWND panel = main_window ? FindWindowExA(main_window, nullptr, nullptr, panel_title) : nullptr;
    if (!panel) return nullptr;
    for (const BrushButton& brush : brushes) {
        SetSearch(brush.control, brush.caption);
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

void ClickBrushButton(HWND button) {
    if (!IsWindow(button)) return;
    SendMessageA(GetParent(button), WM_COMMAND, static_cast<WPARAM>(GetDlgCtrlID(button)),
                 reinterpret_cast<LPARAM>(button));
}

void ToggleSculptButton(int index) {
    char text[256];
    wsprintfA(text, kToggleSculptButton, index, index, index, index);
    RunScript(text);
}

}  // namespace

void SuspendToolForView(int view_mode, POINT point, HWND window) {
    SuspendBrush();
    host::PushStandardMode(view_mode);
    SendMouse(window, WM_LBUTTONDOWN, MK_CONTROL, point);
}

void ResumeToolAfterView(POINT point, HWND window) {
    g_orbitActive = 0;
    g_zoomActive = 0;
    g_panActive = 0;
    SendMouse(window, WM_LBUTTONUP, 0, point);
    host::PopModeIfStacked();
    if (g_activeToolButton) {
        ClickBrushButton(g_activeToolButton);
        g_activeToolButton = nullptr;
    } else if (g_pendingSculptButton) {
        if (g_hostRelease >= kFirstReleaseWithPolyTools) ToggleSculptButton(g_pendingSculptButton);
        g_pendingSculptButton = 0;
    }
}

void PressViewButton(HWND window, int view_mode, bool checked) {
    // The caption is stored for readers of the search state; this search goes by id and class.
    if (view_mode == host::kModeZoomView) {
        SetSearch(2, "Zoom");
    } else {
        SetSearch(1, "Pan");
    }
    HWND panel = GetParent(GetParent(window));
    if (!panel) return;
    HWND button = nullptr;
    EnumChildWindows(panel, FindCustButtonById, reinterpret_cast<LPARAM>(&button));
    const auto is_checked = host::IsButtonChecked(button);
    if (!is_checked || *is_checked == checked) return;
    g_activeToolButton = nullptr;
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, 0);
    SendMessageA(button, WM_LBUTTONUP, MK_LBUTTON, 0);
}

void RefreshSculptState() {
    if (g_hostRelease >= kFirstReleaseWithPolyTools) RunScript(kQueryPolyTools);
}

bool IsSculptBrushActive() {
    return g_graphiteSculptTool != 0 || g_graphitePdTool != 0 || g_polyShiftActive;
}
