// Sending mouse messages to the host's windows.
#pragma once

#include <windows.h>

// Sends a mouse message at a point in client coordinates; `keys` are its MK_ flags.
inline void SendMouse(HWND window, UINT message, WPARAM keys, POINT point) {
    SendMessageA(window, message, keys, MAKELPARAM(point.x, point.y));
}

// A screen point in client coordinates of the window; unchanged when the window is gone.
inline POINT ToClient(HWND window, POINT point) {
    ScreenToClient(window, &point);
    return point;
}

// The button press that a message is: the second press of a double click is one as well, for
// windows whose class wants double clicks. Every other message is itself.
constexpr UINT PressOf(UINT message) {
    switch (message) {
        case WM_LBUTTONDBLCLK: return WM_LBUTTONDOWN;
        case WM_RBUTTONDBLCLK: return WM_RBUTTONDOWN;
        case WM_MBUTTONDBLCLK: return WM_MBUTTONDOWN;
        default: return message;
    }
}

// A press of the left, right or middle button, the second one of a double click included.
constexpr bool IsButtonPress(UINT message) {
    const UINT press = PressOf(message);
    return press == WM_LBUTTONDOWN || press == WM_RBUTTONDOWN || press == WM_MBUTTONDOWN;
}

// The message that the mouse hook is asked about.
struct MouseEvent {
    UINT message;
    HWND window;
    POINT screen;
    UINT hit_test;
    POINT client;  // `screen` in client coordinates of the window
};
