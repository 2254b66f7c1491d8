#include "navigation/selection_clicks.h"

#include <algorithm>

#include "assists/brushes.h"
#include "assists/input_records.h"
#include "assists/modifier_cursor.h"
#include "host/host.h"
#include "navigation/keys.h"
#include "navigation/mode_groups.h"
#include "navigation/navigation_state.h"
#include "navigation/selecting_mode.h"
#include "navigation/window_kind.h"
#include "settings/plugin_settings.h"
#include "shell/module.h"

namespace {

constexpr int kKeyCount = 256;

bool IsEmulating() {
    return g_selCtrl || g_selShift || g_selCtrlShift;
}

bool ModeAllowsEmulation() {
    const auto mode = host::CurrentModeId();
    return mode && *mode != kSculptMode && IsSelectingMode(*mode);
}

bool IsClickEmulated() {
    RefreshSculptState();
    return ModeAllowsEmulation() && !IsSculptBrushActive();
}

// The answer about brushes costs a script, too much for every move: only when all else is settled.
bool IsMoveEmulated() {
    return ModeAllowsEmulation() && IsClickEmulated();
}

// Runs an undo record around a click that adds nodes, kept only when the click added some.
class AddingRecord {
public:
    explicit AddingRecord(bool wanted) : wanted_(wanted) {
        if (!wanted_) return;
        count_ = host::SelectedNodeCount();
        host::BeginUndoRecord();
    }
    AddingRecord(const AddingRecord&) = delete;
    AddingRecord& operator=(const AddingRecord&) = delete;
    ~AddingRecord() {
        if (!wanted_) return;
        // Deliberate: a selection that shrank is taken back like one that stayed.
        if (host::SelectedNodeCount() > count_) {
            host::AcceptUndoRecord("Select");
        } else {
            host::CancelUndoRecord();
        }
    }

private:
    bool wanted_;
    int count_ = 0;
};

void EnterSelectMode() {
    if (host::IsToolbarButtonEnabled(host::kSelectButton).value_or(true)) {
        host::PushStandardMode(host::kModeSelect);
    } else {
        g_selectNotPushed = 1;
    }
}

// The host reads Shift from the thread's key state, so a click without it needs it out of there.
void SendSelectingClick(const MouseEvent& event) {
    BYTE saved[kKeyCount];
    const bool is_saved = GetKeyboardState(saved) != FALSE;
    if (is_saved && !g_selShift) {
        BYTE without_shift[kKeyCount];
        std::copy(saved, saved + kKeyCount, without_shift);
        without_shift[VK_SHIFT] = 0;
        without_shift[VK_LSHIFT] = 0;
        without_shift[VK_RSHIFT] = 0;
        SetKeyboardState(without_shift);
    }
    const WPARAM keys = g_selShift ? MK_CONTROL | MK_SHIFT : MK_CONTROL;
    SendMouse(event.window, WM_LBUTTONDOWN, keys, event.client);
    if (is_saved) SetKeyboardState(saved);
}

// Presses and releases of a user who is faster than the host. More would only come if the replayed
// press were lost on its way.
constexpr int kMostPutBehind = 4;

// The Ctrl that is down is released for the length of the press. A general Ctrl is the left one.
bool SendAltClick() {
    const bool right = GetAsyncKeyState(VK_RCONTROL) < 0;
    if (!right) return SendRecords(kInAltDown, kInCtrlUp, ClickDown(), kInCtrlDown);
    if (GetAsyncKeyState(VK_LCONTROL) >= 0) {
        return SendRecords(kInAltDown, kInRCtrlUp, ClickDown(), kInRCtrlDown);
    }
    return SendRecords(kInAltDown, kInCtrlUp, kInRCtrlUp, ClickDown(), kInCtrlDown, kInRCtrlDown);
}

// A Ctrl click becomes an Alt click, which deselects. The order matters: the records change the key
// state at once but are delivered later, so the click passes this hook again with Alt and Ctrl down
// and is let through for its Alt; the window, which sees the keys as its message does, finds Alt
// down and Ctrl up.
void ReplayAsAltClick() {
    g_selCtrl = 1;
    g_replayWaits = SendAltClick() ? kMostPutBehind : 0;
}

// In a busy host the user's own release, and the next click, wait ahead of the replayed press. They
// are put behind it: swallowed and injected again.
bool PutBehindReplay(const INPUT& record) {
    --g_replayWaits;
    return SendRecords(record);
}

// The replayed press is the first one with the injected Alt: what comes before it is the user's.
void NoteReplayedPress() {
    if (g_replayWaits && WasAltDown()) g_replayWaits = 0;
}

bool PressLeft(const MouseEvent& event, int kind) {
    NoteReplayedPress();
    if (g_replayWaits && PutBehindReplay(ClickDown())) return true;
    if (IsAltDown()) return false;
    const bool ctrl = IsCtrlDown();
    if (!IsShiftDown()) {
        if (!ctrl || g_selCtrl) return false;
        ReplayAsAltClick();
        return true;
    }
    (ctrl ? g_selCtrlShift : g_selShift) = 1;
    if (IsEditorKind(kind) && g_selShift) {
        g_selShift = 0;
        return false;
    }
    const bool in_viewport = IsViewportKind(kind);
    if (in_viewport) EnterSelectMode();
    const AddingRecord record(in_viewport && g_selCtrlShift && !host::IsSubObjectEditing());
    SendSelectingClick(event);
    return true;
}

bool ReleaseLeft(const MouseEvent& event) {
    if (g_selCtrl) {
        if (g_replayWaits && PutBehindReplay(ClickUp())) return true;
        g_replayWaits = 0;
        g_selCtrl = 0;
        SendMouse(event.window, WM_LBUTTONUP, 0, event.client);
        SendRecords(kInAltUp);
        return true;
    }
    if (!g_selShift && !g_selCtrlShift) return false;
    SendMouse(event.window, WM_LBUTTONUP, g_selCtrlShift ? MK_CONTROL : MK_SHIFT, event.client);
    g_selShift = 0;
    g_selCtrlShift = 0;
    if (g_selectNotPushed) {
        g_selectNotPushed = 0;
    } else {
        host::PopModeIfStacked();
    }
    return true;
}

// Shift alone means nothing here: the host has its own use for it.
bool LeavesShiftToHost(int kind) {
    if (!IsShiftAlone()) return false;
    return IsEditorKind(kind) || !host::IsToolbarButtonEnabled(host::kSelectButton).value_or(true);
}

WPARAM SelectingMoveKeys() {
    WPARAM keys = IsEmulating() ? MK_LBUTTON : 0;
    // Deliberate: the whole answer counts, not its sign, so a key pressed and released since the
    // last question counts too.
    if (GetAsyncKeyState(VK_CONTROL)) keys |= MK_CONTROL;
    if (GetAsyncKeyState(VK_SHIFT)) keys |= MK_SHIFT;
    return keys;
}

bool Move(const MouseEvent& event, int kind) {
    if (event.hit_test == HTMENU || !g_settings.customSelectionCursors ||
        GetAsyncKeyState(VK_RBUTTON) < 0) {
        return false;
    }
    HCURSOR cursor = ChooseModifierCursor();
    if (!cursor && !IsAltDown()) return false;
    if (LeavesShiftToHost(kind) || !IsMoveEmulated()) return false;

    SendMouse(event.window, WM_MOUSEMOVE, SelectingMoveKeys(), event.client);
    if (cursor && (IsEmulating() || GetAsyncKeyState(VK_LBUTTON) >= 0)) {
        SetCursor(cursor);
    } else {
        ShowArrowCursor();
    }
    return true;
}

}  // namespace

bool EmulateSelection(const MouseEvent& event, int kind) {
    switch (event.message) {
        case WM_LBUTTONDOWN: return IsClickEmulated() && PressLeft(event, kind);
        // The replayed press comes as the second one of a double click where the system counts the
        // swallowed one.
        case WM_LBUTTONDBLCLK: NoteReplayedPress(); return false;
        case WM_LBUTTONUP: return IsClickEmulated() && ReleaseLeft(event);
        case WM_MOUSEMOVE: return Move(event, kind);
        default: return false;
    }
}
