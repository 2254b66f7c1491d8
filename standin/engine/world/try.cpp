#include "standin/engine/world/try.h"

#include <optional>

#include "standin/engine/input/control.h"
#include "standin/engine/world/internal.h"

namespace world {

const TryRow kTryRows[kTryCount] = {
    {"Orbit", "Alt + left drag, in Perspective"},
    {"Pan", "Alt + middle drag"},
    {"Zoom", "Alt + right drag"},
    {"Change in the drag", "press another button as well"},
    {"Refused orbit", "Alt + left drag, in Top or Front"},
    {"Quick transform", "pick, W, drag the middle button"},
    {"Clone", "the same with Shift"},
    {"Deselect, toggle, add", "Ctrl, Shift, both: click"},
    {"Scrub the time", "hold K and drag anywhere"},
    {"Snap while held", "hold V, C, X or J"},
    {"Nudge by a pixel", "pick, W, arrow keys"},
    {"Frame", "F the selection, A all"},
    {"Options", "F2, or the menu Flinder"},
};

namespace {

std::optional<Try> g_drag_before;
bool g_scrub_key = false;

bool AnyButtonDown() {
    return input::AsyncDown(VK_LBUTTON) || input::AsyncDown(VK_MBUTTON) ||
           input::AsyncDown(VK_RBUTTON);
}

class Watcher : public input::HookObserver {
public:
    void BeforeHook(const input::HookCall&) override {}
    void AfterHook(const input::HookCall& call, bool swallowed) override {
        if (!call.mouse && call.up) HoldScrubKey(false);
        if (call.mouse && call.message == WM_LBUTTONDOWN && swallowed && ViewOf(call.window) &&
            input::AsyncDown(VK_MENU) && !DragRuns())
            NoteTry(Try::kRefusedOrbit);
    }
};

}  // namespace

void NoteTry(Try done) {
    if (!g_world.options.practice || IsTried(done)) return;
    g_world.tried.insert(done);
    if (g_world.try_panel) InvalidateRect(g_world.try_panel, nullptr, FALSE);
}

bool IsTried(Try what) {
    return g_world.tried.count(what) != 0;
}

void NoteViewDrag(Try kind) {
    NoteTry(kind);
    if (g_drag_before && *g_drag_before != kind) NoteTry(Try::kChord);
    if (AnyButtonDown())
        g_drag_before = kind;
    else
        g_drag_before.reset();
}

void WatchHooks() {
    static Watcher watcher;
    input::Observe(&watcher);
}

void HoldScrubKey(bool down) {
    g_scrub_key = down;
}

bool IsScrubKeyHeld() {
    return g_scrub_key;
}

}  // namespace world
