// Moves of the mouse while a gesture runs.
#include "benchmarks/user_actions.h"
#include "benchmarks/situations.h"

namespace situations {
namespace {

using namespace user_actions;

template <int button>
constexpr Situation Gesture(const char* id, const char* title, const char* window,
                            Message message = Message::kNone) {
    return {.id = id,
            .title = title,
            .window = window,
            .begin = PressWithAlt<button>,
            .act = Step,
            .end = ReleaseWithAlt<button>,
            .confirmed_by = kGestureOf<button>,
            .message = message};
}

template <auto take_tool, auto put_tool_away>
constexpr Situation Transform(const char* id, const char* title, const char* window) {
    return {.id = id,
            .title = title,
            .window = window,
            .begin = Sequence<take_tool, Press<VK_MBUTTON>, Drag>,
            .act = Step,
            .end = Sequence<Release<VK_MBUTTON>, put_tool_away>,
            .confirmed_by = "g_quickXform"};
}

constexpr Situation kGestures[] = {
    Gesture<VK_LBUTTON>("orbit", "move during orbit", kView, Message::kMove),
    Gesture<VK_MBUTTON>("pan", "move during pan", kView, Message::kMove),
    Gesture<VK_RBUTTON>("zoom", "move during zoom", kView, Message::kMove),
    {.id = "scrub",
     .title = "move during a time scrub",
     .window = kView,
     .begin = Sequence<ArmScrub, Press<VK_LBUTTON>, Drag>,
     .act = Step,
     .end = Sequence<Release<VK_LBUTTON>, LetGo<kScrubKey>>,
     .confirmed_by = "g_scrubState",
     .message = Message::kMove},
    {.id = "scrub_armed",
     .title = "move with the Time Scrubber key held",
     .window = kView,
     .begin = ArmScrub,
     .act = Step,
     .end = LetGo<kScrubKey>,
     .confirmed_by = "g_scrubState"},
    {.id = "refused",
     .title = "move during a refused orbit",
     .window = kView,
     .begin = Sequence<LockView, PressWithAlt<VK_LBUTTON>>,
     .act = Step,
     .end = Sequence<ReleaseWithAlt<VK_LBUTTON>, UnlockView>,
     .confirmed_by = "g_navLocked"},
    Gesture<VK_MBUTTON>("pan_unwrap", "move during pan in the Unwrap editor", "unwrap"),
    Gesture<VK_RBUTTON>("zoom_unwrap", "move during zoom in the Unwrap editor", "unwrap"),
    Gesture<VK_MBUTTON>("pan_trackview", "move during pan in the Track View", "trackview"),
    Gesture<VK_RBUTTON>("zoom_trackview", "move during zoom in the Track View", "trackview"),
    Gesture<VK_MBUTTON>("pan_schematic", "move during pan in the Schematic View", "schematic"),
    Gesture<VK_RBUTTON>("zoom_schematic", "move during zoom in the Schematic View", "schematic"),
    Transform<TakeMoveTool, PutMoveToolAway>("transform", "move during a quick transform", kView),
    Transform<kTakeUnwrapTool, kPutUnwrapToolAway>(
        "transform_unwrap", "move during a quick transform, Unwrap editor", "unwrap"),
    Transform<kTakeTrackTool, kPutTrackToolAway>(
        "transform_trackview", "move during a quick transform, Track View", "trackview"),
    Transform<Sequence<kTakeTrackTool, Hold<VK_SHIFT>>,
              Sequence<LetGo<VK_SHIFT>, kPutTrackToolAway>>(
        "transform_trackview_shift", "the same with Shift held", "trackview"),
};

}  // namespace

std::span<const Situation> Gestures() {
    return kGestures;
}

}  // namespace situations
