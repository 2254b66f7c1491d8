// A message of the mouse, what its uses answer about it, and sending mouse messages to the host's
// windows.
#pragma once

#include <windows.h>

#include "host/window_kind.h"

// The message that the mouse hook is asked about. It is all that a drag needs, which goes by where
// it began.
struct MouseMessage {
    UINT message;
    HWND window;
    POINT screen;
    UINT hit_test;
};

// The same with what it is over; complete when it is made.
struct MouseEvent : MouseMessage {
    POINT client;  // `screen` in client coordinates of the window
    WindowKind kind;
};

// What a use of the mouse answers about a message.
enum class Answer {
    kNotMine,   // it means nothing here: the next use is asked
    kConsumed,  // the hook swallows it
    kPassed,    // it has its meaning here, and the window gets it as well
};

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

// A press or release of the left, right or middle button over a window's client area.
constexpr bool IsButtonMessage(UINT message) {
    return message >= WM_LBUTTONDOWN && message <= WM_MBUTTONDBLCLK;
}

// A press of the left, right or middle button, the second one of a double click included.
constexpr bool IsButtonPress(UINT message) {
    const UINT press = PressOf(message);
    return press == WM_LBUTTONDOWN || press == WM_RBUTTONDOWN || press == WM_MBUTTONDOWN;
}

// Sends a mouse message at a point in client coordinates; `keys` are its MK_ flags.
inline void SendMouse(HWND window, UINT message, WPARAM keys, POINT point) {
    SendMessageA(window, message, keys, MAKELPARAM(point.x, point.y));
}

// The same, to the window and at the point of an event.
inline void SendMouse(const MouseEvent& event, UINT message, WPARAM keys) {
    SendMouse(event.window, message, keys, event.client);
}

// A screen point in client coordinates of the window; unchanged when the window is gone.
inline POINT ToClient(HWND window, POINT point) {
    ScreenToClient(window, &point);
    return point;
}

// To the window and at the point of a message.
inline void SendMouse(const MouseMessage& at, UINT message, WPARAM keys) {
    SendMouse(at.window, message, keys, ToClient(at.window, at.screen));
}
