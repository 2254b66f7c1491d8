#include "navigation/view_drag.h"

#include "assists/brushes.h"
#include "host/host.h"
#include "navigation/gesture_state.h"

void SuspendToolForView(const MouseEvent& event, int view_mode) {
    SuspendBrush();
    host::PushStandardMode(view_mode);
    SendMouse(event, WM_LBUTTONDOWN, MK_CONTROL);
}

void ResumeToolAfterView(const MouseEvent& event) {
    g_orbitActive = 0;
    g_zoomActive = 0;
    g_panActive = 0;
    SendMouse(event, WM_LBUTTONUP, 0);
    host::PopModeIfStacked();
    ResumeBrush();
}

void PressViewButton(HWND window, int view_mode, bool checked) {
    // The caption is stored for readers of the search state; this search goes by id and class.
    if (view_mode == host::kModeZoomView) {
        SetButtonSearch(2, "Zoom");
    } else {
        SetButtonSearch(1, "Pan");
    }
    HWND panel = GetParent(GetParent(window));
    if (!panel) return;
    HWND button = nullptr;
    EnumChildWindows(panel, FindCustButtonById, reinterpret_cast<LPARAM>(&button));
    const auto is_checked = host::IsButtonChecked(button);
    if (!is_checked || *is_checked == checked) return;
    ForgetBrush();
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, 0);
    SendMessageA(button, WM_LBUTTONUP, MK_LBUTTON, 0);
}
