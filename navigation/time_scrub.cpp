#include "navigation/time_scrub.h"

#include "host/host.h"
#include "navigation/navigation_state.h"
#include "resources/resource_ids.h"
#include "shell/module.h"
#include "shell/playback.h"

// The isolated-playback flag as it was when a right-button scrub began.
int g_savedIsolatedPlayback = 0;

namespace {

constexpr int kMargin = 9;

HWND FindThumb() {
    HWND main_window = host::MainWindow();
    if (!main_window) return nullptr;
    HWND slider = FindWindowExA(main_window, nullptr, "TimeSlider", nullptr);
    return slider ? FindWindowExA(slider, nullptr, "TimeSliderThumb", nullptr) : nullptr;
}

void ShowScrubCursor() {
    SetCursor(LoadModuleCursor(IDC_CURSOR_TIME_SCRUB));
}

// At an edge of the screen the cursor is put to the other one; the move that this causes only tells
// where it is now.
bool WrapAtEdge(POINT cursor) {
    const int width = GetSystemMetrics(SM_CXVIRTUALSCREEN);
    if (cursor.x <= kMargin) {
        g_scrubWrapped = 1;
        SetCursorPos(width - kMargin - 1, cursor.y);
        return true;
    }
    if (cursor.x >= width - kMargin) {
        g_scrubWrapped = 1;
        SetCursorPos(kMargin + 1, cursor.y);
        return true;
    }
    if (g_scrubWrapped) {
        g_scrubWrapped = 0;
        g_scrubLast = cursor;
        return true;
    }
    return false;
}

void LeaveDragState() {
    g_scrubState = g_scrubState == kScrubDraggingReleased ? kScrubOff : kScrubArmed;
}

POINT CentreOf(HWND window) {
    RECT frame = {};
    GetWindowRect(window, &frame);
    return {(frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2};
}

bool IsDragMessage(UINT message) {
    return message == WM_MOUSEMOVE || message == WM_LBUTTONUP || message == WM_RBUTTONUP ||
           message == WM_MBUTTONUP;
}

}  // namespace

bool DragTimeScrub(const MouseEvent& event) {
    if (g_scrubState < kScrubDragging || !IsDragMessage(event.message)) return false;
    HWND thumb = FindThumb();
    if (!thumb) return false;
    if (WrapAtEdge(event.screen)) return true;

    g_thumbPos.x += event.screen.x - g_scrubLast.x;
    g_scrubLast = event.screen;
    const POINT point = ToClient(thumb, g_thumbPos);
    switch (event.message) {
        case WM_MOUSEMOVE:
            SendMouse(thumb, WM_MOUSEMOVE, MK_LBUTTON, point);
            ShowScrubCursor();
            return true;
        case WM_RBUTTONUP:
            LeaveDragState();
            SendMouse(thumb, WM_RBUTTONUP, 0, point);
            g_isolatedPlayback = g_savedIsolatedPlayback;
            host::RefreshMacroButtons();
            return true;
        default:
            // The middle button drives the thumb as a left one.
            LeaveDragState();
            SendMouse(thumb, WM_LBUTTONUP, 0, point);
            return true;
    }
}

bool StartTimeScrub(const MouseEvent& event) {
    if (g_scrubState == kScrubOff || !IsButtonPress(event.message)) return false;
    HWND thumb = FindThumb();
    if (!thumb) return false;
    g_thumbPos = CentreOf(thumb);
    g_scrubLast = event.screen;
    g_scrubState = kScrubDragging;
    const POINT point = ToClient(thumb, g_thumbPos);
    switch (PressOf(event.message)) {
        case WM_RBUTTONDOWN:
            g_savedIsolatedPlayback = g_isolatedPlayback;
            g_isolatedPlayback = 0;
            host::RefreshMacroButtons();
            SendMouse(thumb, WM_RBUTTONDOWN, MK_RBUTTON, point);
            return true;
        case WM_MBUTTONDOWN:
            host::RefreshMacroButtons();
            SendMouse(thumb, WM_LBUTTONDOWN, MK_LBUTTON, point);
            return true;
        default: SendMouse(thumb, WM_LBUTTONDOWN, MK_LBUTTON, point); return true;
    }
}

bool HoverTimeScrub(const MouseEvent& event) {
    if (g_scrubState != kScrubArmed || event.message != WM_MOUSEMOVE) return false;
    SendMouse(event.window, WM_MOUSEMOVE, 0, event.client);
    ShowScrubCursor();
    return true;
}
