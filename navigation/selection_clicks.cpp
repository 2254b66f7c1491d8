#include "navigation/selection_clicks.h"

#include <algorithm>

#include "host/host.h"
#include "host/selecting_mode.h"
#include "input/input_records.h"
#include "input/keys.h"
#include "script/poly_tools.h"

int g_selCtrl = 0;
int g_selShift = 0;
int g_selCtrlShift = 0;
int g_selectNotPushed = 0;  // no select mode to pop at the end of the click
// Above 0 while the press that a Ctrl click was replaced by waits in the queue: how many events may
// still be put behind it.
int g_replayWaits = 0;

namespace {

constexpr int kKeyCount = 256;

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
    if (IsSelectToolAvailable()) {
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
    SendMouse(event, WM_LBUTTONDOWN, keys);
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

bool PressLeft(const MouseEvent& event) {
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
    if (IsEditorKind(event.kind) && g_selShift) {
        g_selShift = 0;
        return false;
    }
    const bool in_viewport = IsViewportKind(event.kind);
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
        SendMouse(event, WM_LBUTTONUP, 0);
        SendRecords(kInAltUp);
        return true;
    }
    if (!g_selShift && !g_selCtrlShift) return false;
    SendMouse(event, WM_LBUTTONUP, g_selCtrlShift ? MK_CONTROL : MK_SHIFT);
    g_selShift = 0;
    g_selCtrlShift = 0;
    if (g_selectNotPushed) {
        g_selectNotPushed = 0;
    } else {
        host::PopModeIfStacked();
    }
    return true;
}

}  // namespace

bool DoesModeSelect() {
    const auto mode = host::CurrentModeId();
    return mode && *mode != kSculptMode && IsSelectingMode(*mode);
}

bool MayEmulateClick() {
    RefreshSculptState();
    return DoesModeSelect() && !IsSculptBrushActive();
}

Answer EmulateSelectingClick(const MouseEvent& event) {
    bool taken = false;
    switch (event.message) {
        case WM_LBUTTONDOWN: taken = MayEmulateClick() && PressLeft(event); break;
        // The replayed press comes as the second one of a double click where the system counts the
        // swallowed one.
        case WM_LBUTTONDBLCLK: NoteReplayedPress(); break;
        case WM_LBUTTONUP: taken = MayEmulateClick() && ReleaseLeft(event); break;
        default: break;
    }
    return taken ? Answer::kConsumed : Answer::kNotMine;
}
