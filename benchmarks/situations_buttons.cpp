// Presses and releases without Alt: plain ones, those that select, and quick transforms.
#include "benchmarks/user_actions.h"
#include "benchmarks/situations.h"

namespace situations {
namespace {

using namespace user_actions;

template <int button>
constexpr Situation PressOf(const char* id, const char* title, const char* window,
                            Action begin = nullptr, Action end = nullptr,
                            const char* confirmed_by = nullptr) {
    return {.id = id,
            .title = title,
            .window = window,
            .begin = begin,
            .act = Press<button>,
            .finish = Release<button>,
            .end = end,
            .confirmed_by = confirmed_by};
}

template <int button>
constexpr Situation ReleaseOf(const char* id, const char* title, const char* window,
                              Action begin = nullptr, Action end = nullptr,
                              const char* confirmed_by = nullptr) {
    return {.id = id,
            .title = title,
            .window = window,
            .begin = begin,
            .prepare = Press<button>,
            .act = Release<button>,
            .end = end,
            .confirmed_by = confirmed_by};
}

constexpr Action kHoldBoth = Sequence<Hold<VK_CONTROL>, Hold<VK_SHIFT>>;
constexpr Action kLetGoBoth = Sequence<LetGo<VK_SHIFT>, LetGo<VK_CONTROL>>;

constexpr Situation kButtons[] = {
    PressOf<VK_LBUTTON>("left_press", "left press over a viewport", kView),
    ReleaseOf<VK_LBUTTON>("left_release", "left release over a viewport", kView),
    {.id = "left_press_again",
     .title = "second press of a double click",
     .window = kView,
     .prepare = Sequence<Press<VK_LBUTTON>, Release<VK_LBUTTON>>,
     .act = PressAgain<VK_LBUTTON>,
     .finish = Release<VK_LBUTTON>},
    PressOf<VK_MBUTTON>("middle_press", "middle press over a viewport", kView),
    ReleaseOf<VK_MBUTTON>("middle_release", "middle release over a viewport", kView),
    PressOf<VK_RBUTTON>("right_press", "right press over a viewport", kView),
    ReleaseOf<VK_RBUTTON>("right_release", "right release over a viewport", kView),
    PressOf<VK_LBUTTON>("left_press_foreign", "left press over a foreign window", kForeign),
    ReleaseOf<VK_LBUTTON>("left_release_foreign", "left release over a foreign window", kForeign),
    PressOf<VK_MBUTTON>("middle_press_foreign", "middle press over a foreign window", kForeign),
    PressOf<VK_LBUTTON>("left_press_unwrap", "left press in the Unwrap editor", "unwrap"),
    ReleaseOf<VK_LBUTTON>("left_release_unwrap", "left release in the Unwrap editor", "unwrap"),
    PressOf<VK_LBUTTON>("left_press_trackview", "left press in the Track View", "trackview"),
    PressOf<VK_LBUTTON>("left_press_schematic", "left press in the Schematic View", "schematic"),
    PressOf<VK_LBUTTON>("press_caption", "left press on the main window's title", "main",
                        GoToCaption),
    ReleaseOf<VK_LBUTTON>("release_caption", "left release on the main window's title", "main",
                          GoToCaption),
    PressOf<VK_LBUTTON>("control_press", "left press, Ctrl held, with all that follows", kView,
                        Hold<VK_CONTROL>, LetGo<VK_CONTROL>, "g_selCtrl"),
    ReleaseOf<VK_LBUTTON>("control_release", "left release, Ctrl held, with all that follows",
                          kView, Hold<VK_CONTROL>, LetGo<VK_CONTROL>, "g_selCtrl"),
    PressOf<VK_LBUTTON>("shift_press", "left press, Shift held", kView, Hold<VK_SHIFT>,
                        LetGo<VK_SHIFT>, "g_selShift"),
    ReleaseOf<VK_LBUTTON>("shift_release", "left release, Shift held", kView, Hold<VK_SHIFT>,
                          LetGo<VK_SHIFT>, "g_selShift"),
    PressOf<VK_LBUTTON>("control_shift_press", "left press, Ctrl and Shift held", kView, kHoldBoth,
                        kLetGoBoth, "g_selCtrlShift"),
    ReleaseOf<VK_LBUTTON>("control_shift_release", "left release, Ctrl and Shift held", kView,
                          kHoldBoth, kLetGoBoth, "g_selCtrlShift"),
    PressOf<VK_LBUTTON>("control_press_unwrap", "left press, Ctrl held, Unwrap editor", "unwrap",
                        Hold<VK_CONTROL>, LetGo<VK_CONTROL>, "g_selCtrl"),
    PressOf<VK_LBUTTON>("shift_press_unwrap", "left press, Shift held, Unwrap editor", "unwrap",
                        Hold<VK_SHIFT>, LetGo<VK_SHIFT>),
    PressOf<VK_MBUTTON>("transform_press", "press of a quick transform", kView, TakeMoveTool,
                        PutMoveToolAway, "g_quickXform"),
    ReleaseOf<VK_MBUTTON>("transform_release", "release of a quick transform", kView, TakeMoveTool,
                          PutMoveToolAway, "g_quickXform"),
    PressOf<VK_MBUTTON>("transform_press_unwrap", "press of a quick transform, Unwrap editor",
                        "unwrap", kTakeUnwrapTool, kPutUnwrapToolAway, "g_quickXform"),
    ReleaseOf<VK_MBUTTON>("transform_release_unwrap", "release of a quick transform, Unwrap editor",
                          "unwrap", kTakeUnwrapTool, kPutUnwrapToolAway, "g_quickXform"),
    PressOf<VK_MBUTTON>("transform_press_trackview", "press of a quick transform, Track View",
                        "trackview", kTakeTrackTool, kPutTrackToolAway, "g_quickXform"),
    ReleaseOf<VK_MBUTTON>("transform_release_trackview", "release of a quick transform, Track View",
                          "trackview", kTakeTrackTool, kPutTrackToolAway, "g_quickXform"),
    {.id = "scrub_press",
     .title = "press of a time scrub",
     .window = kView,
     .prepare = ArmScrub,
     .act = Press<VK_LBUTTON>,
     .finish = Sequence<Release<VK_LBUTTON>, LetGo<kScrubKey>>,
     .confirmed_by = "g_scrubState"},
    {.id = "scrub_release",
     .title = "release of a time scrub",
     .window = kView,
     .prepare = Sequence<ArmScrub, Press<VK_LBUTTON>, Drag>,
     .act = Release<VK_LBUTTON>,
     .finish = LetGo<kScrubKey>,
     .confirmed_by = "g_scrubState"},
};

}  // namespace

std::span<const Situation> Buttons() {
    return kButtons;
}

}  // namespace situations
