// Commands of the plug-in, and the host's own shortcuts.
#include "benchmarks/user_actions.h"
#include "benchmarks/situations.h"

namespace situations {
namespace {

using namespace user_actions;

constexpr int kHotkey = 'K';

// Each shortcut over a viewport that was not the last one makes that one active.
void ShortcutElsewhere() {
    stage::MoveTo(stage::PlaceIn("viewport.user"));
    entry_points::Shortcut();
    stage::MoveTo(stage::PlaceIn(kView));
}

constexpr Situation kCommands[] = {
    {.id = "nudge",
     .title = "nudge, first step",
     .window = kView,
     .begin = TakeMoveTool,
     .prepare = Hold<kHotkey>,
     .act = Command<kNudgeRight>,
     .finish = LetGo<kHotkey>,
     .end = PutMoveToolAway,
     .confirmed_by = "g_nudgeActive"},
    {.id = "nudge_again",
     .title = "nudge, key held",
     .window = kView,
     .begin = Sequence<TakeMoveTool, Hold<kHotkey>, Command<kNudgeRight>>,
     .act = Command<kNudgeRight>,
     .end = Sequence<LetGo<kHotkey>, PutMoveToolAway>,
     .confirmed_by = "g_nudgeActive"},
    {.id = "nudge_end",
     .title = "nudge, key released",
     .window = kView,
     .begin = TakeMoveTool,
     .prepare = Sequence<Hold<kHotkey>, Command<kNudgeRight>>,
     .act = LetGo<kHotkey>,
     .end = PutMoveToolAway,
     .confirmed_by = "g_nudgeActive"},
    {.id = "frame_all", .title = "Frame All", .window = kView, .act = Command<kFrameAll>},
    {.id = "frame_selected",
     .title = "Frame Selected",
     .window = kView,
     .begin = SelectSomething,
     .act = Command<kFrameSelected>,
     .end = DeselectIt},
    {.id = "auto_focus",
     .title = "shortcut over another viewport",
     .window = kView,
     .prepare = ShortcutElsewhere,
     .act = entry_points::Shortcut,
     .confirmed_by = "g_lastFocusedViewport"},
    {.id = "lock",
     .title = "Selection Lock, key pressed",
     .window = kView,
     .prepare = Hold<kHotkey>,
     .act = Command<kSelectionLock>,
     .finish = LetGo<kHotkey>,
     .confirmed_by = "g_selectionLockRequests"},
    {.id = "lock_end",
     .title = "Selection Lock, key released",
     .window = kView,
     .prepare = Sequence<Hold<kHotkey>, Command<kSelectionLock>>,
     .act = LetGo<kHotkey>,
     .confirmed_by = "g_selectionLockRequests"},
    {.id = "snap",
     .title = "Snap to Grids, key pressed",
     .window = kView,
     .prepare = Hold<kHotkey>,
     .act = Command<kSnapToGrids>,
     .finish = LetGo<kHotkey>,
     .confirmed_by = "g_heldSnapSticky"},
    {.id = "snap_end",
     .title = "Snap to Grids, key released",
     .window = kView,
     .prepare = Sequence<Hold<kHotkey>, Command<kSnapToGrids>>,
     .act = LetGo<kHotkey>,
     .confirmed_by = "g_heldSnapSticky"},
};

}  // namespace

std::span<const Situation> Commands() {
    return kCommands;
}

}  // namespace situations
