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

// The message that the mouse hook is asked about.
struct MouseEvent {
    UINT message;
    HWND window;
    POINT screen;
    UINT hit_test;
    POINT client;  // `screen` in client coordinates of the window
};
