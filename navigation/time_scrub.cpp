#include "navigation/time_scrub.h"

#include "assists/isolated_playback.h"
#include "host/host.h"
#include "input/screen.h"
#include "resources/module.h"
#include "resources/resource_ids.h"

enum ScrubState : int {
    kScrubOff = 0,
    kScrubArmed = 1,             // its key is held
    kScrubDragging = 2,          // a button drags the time slider
    kScrubDraggingReleased = 3,  // the same, the key is up already
};
int g_scrubState = kScrubOff;
int g_scrubWrapped = 0;  // the cursor was just put to the other edge of the screen
POINT g_scrubLast = {};  // last cursor position, screen coordinates
POINT g_thumbPos = {};   // where the thumb is dragged to, screen coordinates
// The isolated-playback flag as it was when a right-button scrub began.
int g_savedIsolatedPlayback = 0;

namespace {

// Found last: the host's main window may have thousands of windows, the slider has a few.
HWND g_slider = nullptr;

HWND ThumbOf(HWND slider) {
    return slider ? FindWindowExA(slider, nullptr, "TimeSliderThumb", nullptr) : nullptr;
}

HWND FindThumb() {
    HWND main_window = host::MainWindow();
    if (!main_window) return nullptr;
    if (HWND thumb = ThumbOf(g_slider)) return thumb;
    g_slider = FindWindowExA(main_window, nullptr, "TimeSlider", nullptr);
    return ThumbOf(g_slider);
}

void ShowScrubCursor() {
    SetCursor(LoadModuleCursor(IDC_CURSOR_TIME_SCRUB));
}

// At an edge of the screen the cursor is put to the other one; the move that this causes only tells
// where it is now.
bool WrapAtEdge(POINT cursor) {
    const int width = ScreenSize().x;
    if (cursor.x <= kScreenMargin) {
        g_scrubWrapped = 1;
        SetCursorPos(width - kScreenMargin - 1, cursor.y);
        return true;
    }
    if (cursor.x >= width - kScreenMargin) {
        g_scrubWrapped = 1;
        SetCursorPos(kScreenMargin + 1, cursor.y);
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

bool StartDrag(const MouseMessage& message) {
    if (g_scrubState == kScrubOff || !IsButtonPress(message.message)) return false;
    HWND thumb = FindThumb();
    if (!thumb) return false;
    g_thumbPos = CentreOf(thumb);
    g_scrubLast = message.screen;
    g_scrubState = kScrubDragging;
    ForgetScreenSize();
    const POINT point = ToClient(thumb, g_thumbPos);
    switch (PressOf(message.message)) {
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

bool DragThumb(const MouseMessage& message) {
    if (g_scrubState < kScrubDragging || !IsDragMessage(message.message)) return false;
    HWND thumb = FindThumb();
    if (!thumb) return false;
    if (WrapAtEdge(message.screen)) return true;

    g_thumbPos.x += message.screen.x - g_scrubLast.x;
    g_scrubLast = message.screen;
    const POINT point = ToClient(thumb, g_thumbPos);
    switch (message.message) {
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

// The key is held, no button is.
bool Hover(const MouseMessage& message) {
    if (g_scrubState != kScrubArmed || message.message != WM_MOUSEMOVE) return false;
    SendMouse(message, WM_MOUSEMOVE, 0);
    ShowScrubCursor();
    return true;
}

}  // namespace

bool IsTimeScrubOn() {
    return g_scrubState != kScrubOff;
}

void ArmTimeScrub() {
    if (IsTimeScrubOn() || GetAsyncKeyState(VK_LBUTTON) < 0) return;
    g_scrubState = kScrubArmed;
    ShowScrubCursor();
}

void ReleaseTimeScrub() {
    g_scrubState = g_scrubState == kScrubDragging ? kScrubDraggingReleased : kScrubOff;
    ShowArrowCursor();
}

Answer ScrubTime(const MouseMessage& message) {
    const bool taken = DragThumb(message) || StartDrag(message) || Hover(message);
    return taken ? Answer::kConsumed : Answer::kNotMine;
}
