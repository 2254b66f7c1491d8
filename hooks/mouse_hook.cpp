#include "hooks/mouse_hook.h"

#include "input/keys.h"
#include "input/mouse_event.h"
#include "navigation/gesture_moves.h"
#include "navigation/gesture_rules.h"
#include "navigation/gesture_state.h"
#include "navigation/quick_transform.h"
#include "navigation/sculpt_redirect.h"
#include "navigation/selection_clicks.h"
#include "navigation/selection_moves.h"
#include "navigation/time_scrub.h"
#include "settings/plugin_settings.h"

namespace {

MouseEvent EventOf(UINT message, const MOUSEHOOKSTRUCT& hook) {
    const WindowKind kind = ClassifyWindow(hook.hwnd);
    return {message, hook.hwnd, hook.pt, ToClient(hook.hwnd, hook.pt), hook.wHitTestCode, kind};
}

bool MayStartGesture(const MouseEvent& event) {
    return IsButtonPress(event.message) && !g_quickXform && event.kind != kWindowOther &&
           IsAltDown() && !IsCtrlDown();
}

bool MayEmulateSelection(const MouseEvent& event) {
    return !g_quickXform && !IsNavigating() && event.kind != kWindowOther &&
           event.kind != kWindowSchematicGraph;
}

Answer EmulateSelection(const MouseEvent& event) {
    if (!MayEmulateSelection(event)) return Answer::kNotMine;
    return event.message == WM_MOUSEMOVE ? EmulateSelectingMove(event)
                                         : EmulateSelectingClick(event);
}

// The uses of the mouse, in the order in which they are offered the message; the first one whose
// message it is decides.
Answer HandleMouse(MouseEvent event) {
    const Answer brush = RedirectToSculpt(event);
    if (brush != Answer::kNotMine) return brush;
    if (ScrubTime(event) == Answer::kConsumed) return Answer::kConsumed;

    const Answer press = MayStartGesture(event) ? ApplyPressRules(event) : Answer::kNotMine;
    if (press == Answer::kConsumed) return press;
    if (press == Answer::kNotMine && QuickTransform(event) == Answer::kConsumed) {
        return Answer::kConsumed;
    }
    if (!g_quickXform && ApplyReleaseRules(event) == Answer::kConsumed) return Answer::kConsumed;
    if (event.message == WM_MOUSEMOVE && IsGestureActive()) return MoveGesture(event);
    return EmulateSelection(event);
}

}  // namespace

// The hook code is not looked at, not even a negative one: every message is handled alike.
LRESULT CALLBACK MouseHookProc(int code, WPARAM message, LPARAM details) {
    if (!g_settings.useMayaStyle) return CallNextHookEx(nullptr, code, message, details);
    const MOUSEHOOKSTRUCT hook = *reinterpret_cast<const MOUSEHOOKSTRUCT*>(details);
    if (HandleMouse(EventOf(static_cast<UINT>(message), hook)) == Answer::kConsumed) return 1;
    return CallNextHookEx(nullptr, code, message, details);
}
