// What a user does, as the tables of situations name it.
#pragma once

#include <windows.h>

#include "benchmarks/entry_points.h"
#include "benchmarks/stage.h"
#include "standin/engine/world/world.h"

namespace user_actions {

inline constexpr char kView[] = "viewport.persp";
inline constexpr char kForeign[] = "other";
inline constexpr int kScrubKey = 'Q';
inline constexpr int kPlainKey = 'J';

// Users' files name the commands by these numbers, so they never change.
inline constexpr int kSelectionLock = 1;
inline constexpr int kSnapToGrids = 4;
inline constexpr int kTimeScrubber = 7;
inline constexpr int kNudgeRight = 13;
inline constexpr int kFrameSelected = 15;
inline constexpr int kFrameAll = 16;

inline constexpr char kOrbiting[] = "g_orbitActive";
inline constexpr char kPanning[] = "g_panActive";
inline constexpr char kZooming[] = "g_zoomActive";
// What a drag with Alt and this button is.
template <int button>
inline constexpr const char* kGestureOf = button == VK_LBUTTON   ? kOrbiting
                                          : button == VK_MBUTTON ? kPanning
                                                                 : kZooming;

template <int key>
void Hold() {
    stage::Key(key, true);
}

template <int key>
void LetGo() {
    stage::Key(key, false);
}

template <int button>
void Press() {
    stage::Button(button, true);
}

template <int button>
void Release() {
    stage::Button(button, false);
}

template <int button>
void PressAgain() {
    stage::Button(button, true, true);
}

template <int command>
void Command() {
    entry_points::Command(command);
}

template <auto... actions>
void Sequence() {
    (actions(), ...);
}

// To and fro, so that no gesture runs away.
inline void Step() {
    static int distance = -1;
    distance = -distance;
    stage::MoveBy(distance, 0);
}

// Far enough for the host to take it for a drag, and back.
inline void Drag() {
    for (const int distance : {4, -4, 1, -1})
        stage::MoveBy(distance, 0);
}

template <int button>
void PressWithAlt() {
    Sequence<Hold<VK_MENU>, Press<button>, Drag>();
}

template <int button>
void ReleaseWithAlt() {
    Sequence<Release<button>, LetGo<VK_MENU>>();
}

inline void ArmScrub() {
    Sequence<Hold<kScrubKey>, Command<kTimeScrubber>>();
}

// The title of the main window.
inline void GoToCaption() {
    stage::MoveTo({300, 8});
}

inline void LockView() {
    world::LockView(kView, true);
}

inline void UnlockView() {
    world::LockView(kView, false);
}

inline bool g_selected_box = false;

// What is selected already is enough.
inline void SelectSomething() {
    g_selected_box = world::SelectedCount() == 0;
    if (g_selected_box) world::Select({"Box001"});
}

inline void DeselectIt() {
    if (g_selected_box) world::Select({});
}

// The host's move tool with something to move.
inline void TakeMoveTool() {
    SelectSomething();
    world::PushMode(1);
}

inline void PutMoveToolAway() {
    world::PopMode();
    DeselectIt();
}

// Of the editors, one that moves what is selected.
template <unsigned long table, int tool>
void TakeEditTool() {
    world::SetAction(table, tool, world::ActionState::kOn);
}

template <unsigned long table, int tool>
void PutEditToolAway() {
    world::SetAction(table, tool, world::ActionState::kOff);
}

inline constexpr auto kTakeTrackTool = TakeEditTool<1, 230>;
inline constexpr auto kPutTrackToolAway = PutEditToolAway<1, 230>;
inline constexpr auto kTakeUnwrapTool = TakeEditTool<2077580866, 40007>;
inline constexpr auto kPutUnwrapToolAway = PutEditToolAway<2077580866, 40007>;

}  // namespace user_actions
