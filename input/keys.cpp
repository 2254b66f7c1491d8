#include "input/keys.h"

namespace {

// Pressed since the last question, as far as the system has told it already.
constexpr SHORT kPressedSince = 1;
bool g_ctrlWasPressed = false;
bool g_shiftWasPressed = false;

SHORT Ask(int key, bool& was_pressed) {
    const SHORT state = GetAsyncKeyState(key);
    const SHORT seen = was_pressed ? kPressedSince : SHORT{0};
    was_pressed = false;
    return static_cast<SHORT>(state | seen);
}

bool LookAt(int key, bool& was_pressed) {
    const SHORT state = GetAsyncKeyState(key);
    if (state & kPressedSince) was_pressed = true;
    return state < 0 || was_pressed;
}

}  // namespace

SHORT CtrlState() {
    return Ask(VK_CONTROL, g_ctrlWasPressed);
}

SHORT ShiftState() {
    return Ask(VK_SHIFT, g_shiftWasPressed);
}

bool MayShiftMatter() {
    return LookAt(VK_SHIFT, g_shiftWasPressed);
}

bool MayShiftOrCtrlMatter() {
    const bool ctrl = LookAt(VK_CONTROL, g_ctrlWasPressed);
    return MayShiftMatter() || ctrl;
}

bool MayModifiersMatter() {
    return MayShiftOrCtrlMatter() || IsAltDown();
}
