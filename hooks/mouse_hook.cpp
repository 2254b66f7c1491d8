#include "hooks/mouse_hook.h"

#include "host/interaction_mode.h"
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

MouseEvent EventOf(const MouseMessage& message) {
    const WindowKind kind = ClassifyWindow(message.window);
    return {message, ToClient(message.window, message.screen), kind};
}

bool MayStartGesture(const MouseEvent& event) {
    return IsButtonPress(event.message) && !g_quickXform && event.kind != kWindowOther &&
           IsAltDown() && !IsCtrlDown();
}

Answer PressWithAlt(const MouseEvent& event) {
    if (!MayStartGesture(event)) return Answer::kNotMine;
    const bool is_hosts =
        IsViewportKind(event.kind) && !IsGestureActive() && host::AnswersAltInViewports();
    return is_hosts ? Answer::kPassed : ApplyPressRules(event);
}

bool MayEmulateSelection(const MouseEvent& event) {
    return !g_quickXform && !IsNavigating() && event.kind != kWindowOther &&
           event.kind != kWindowSchematicGraph;
}

// The uses of presses and releases, in the order in which they are offered the message; the first
// one whose message it is decides.
Answer HandleButton(MouseEvent event) {
    const Answer brush = RedirectToSculpt(event);
    if (brush != Answer::kNotMine) return brush;
    if (ScrubTime(event) == Answer::kConsumed) return Answer::kConsumed;

    const Answer press = PressWithAlt(event);
    if (press == Answer::kConsumed) return press;
    if (press == Answer::kNotMine && QuickTransform(event) == Answer::kConsumed) {
        return Answer::kConsumed;
    }
    if (!g_quickXform && ApplyReleaseRules(event) == Answer::kConsumed) return Answer::kConsumed;
    return MayEmulateSelection(event) ? EmulateSelectingClick(event) : Answer::kNotMine;
}

// What a move is over matters to a quick transform with Shift and to a selecting move alone.
Answer HandleMoveOverWindow(const MouseMessage& move) {
    const MouseEvent event = EventOf(move);
    if (g_quickXform) return QuickTransform(event);
    return MayEmulateSelection(event) ? EmulateSelectingMove(event) : Answer::kNotMine;
}

// The uses of moves, likewise. They come by the hundred a second, and nearly all are a drag's or
// nobody's: these are not asked what they are over.
Answer HandleMove(const MouseMessage& move) {
    if (g_sculptRedirect) return Answer::kPassed;
    if (IsTimeScrubOn() && ScrubTime(move) == Answer::kConsumed) return Answer::kConsumed;
    if (g_quickXform && MayShiftMatter() && HandleMoveOverWindow(move) == Answer::kConsumed) {
        return Answer::kConsumed;
    }
    if (IsGestureActive()) return MoveGesture(move);
    if (g_quickXform || !MayMoveSelect(move.hit_test)) return Answer::kNotMine;
    return HandleMoveOverWindow(move);
}

// The wheel, other buttons and everything outside of client areas mean nothing here.
Answer HandleMessage(const MouseMessage& message) {
    if (message.message == WM_MOUSEMOVE) return HandleMove(message);
    return IsButtonMessage(message.message) ? HandleButton(EventOf(message)) : Answer::kNotMine;
}

}  // namespace

// The hook code is not looked at, not even a negative one: every message is handled alike.
LRESULT CALLBACK MouseHookProc(int code, WPARAM message, LPARAM details) {
    if (!g_settings.useMayaStyle) return CallNextHookEx(nullptr, code, message, details);
    const MOUSEHOOKSTRUCT hook = *reinterpret_cast<const MOUSEHOOKSTRUCT*>(details);
    const UINT id = static_cast<UINT>(message);
    if (HandleMessage({id, hook.hwnd, hook.pt, hook.wHitTestCode}) == Answer::kConsumed) return 1;
    return CallNextHookEx(nullptr, code, message, details);
}
