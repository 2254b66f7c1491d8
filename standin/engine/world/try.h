// What there is to try in interactive mode, ticked off when the world sees it done.
#pragma once

#include <string>
#include <vector>

namespace world {

// In the order of the panel.
enum class Try {
    kOrbit,
    kPan,
    kZoom,
    kChord,
    kRefusedOrbit,
    kQuickTransform,
    kClone,
    kModifierClick,
    kScrub,
    kSnap,
    kNudge,
    kFrame,
    kOptions,
};
constexpr int kTryCount = static_cast<int>(Try::kOptions) + 1;

struct TryRow {
    const char* what;
    const char* how;
};
extern const TryRow kTryRows[kTryCount];

// Interactive mode only; nothing happens otherwise.
void NoteTry(Try done);
bool IsTried(Try what);
// A drag in a view that has changed its camera is over. Two of different kinds before all buttons
// are up are a chord.
void NoteViewDrag(Try kind);
// From now on it is seen when the plug-in keeps a press over a view that begins no drag there.
void WatchHooks();
// The key of a held command went down, or came up.
void HoldScrubKey(bool down);
bool IsScrubKeyHeld();

}  // namespace world
