// Moves of the mouse and keys while no gesture runs.
#include "benchmarks/user_actions.h"
#include "benchmarks/situations.h"

namespace situations {
namespace {

using namespace user_actions;

void SwitchOff() {
    plugin::Poke("useMayaStyle", 0);
}

void SwitchOn() {
    plugin::Poke("useMayaStyle", 1);
}

constexpr Situation MoveOver(const char* id, const char* title, const char* window,
                             Action begin = nullptr, Action end = nullptr) {
    return {.id = id, .title = title, .window = window, .begin = begin, .act = Step, .end = end};
}

template <int key>
constexpr Situation MoveWith(const char* id, const char* title, const char* window) {
    return MoveOver(id, title, window, Hold<key>, LetGo<key>);
}

// One of those that are sent again and again.
constexpr Situation RepeatedMove(Situation move, bool clicks) {
    move.message = Message::kMove;
    move.clicks = clicks;
    return move;
}

template <int key>
constexpr Situation KeyOver(const char* id, const char* title, const char* window,
                            Message message = Message::kNone) {
    return {.id = id,
            .title = title,
            .window = window,
            .act = Hold<key>,
            .finish = LetGo<key>,
            .message = message};
}

constexpr Situation kMoves[] = {
    RepeatedMove(
        MoveOver("off", "navigation off, move over a viewport", kView, SwitchOff, SwitchOn), false),
    RepeatedMove(MoveOver("move_foreign", "move over a foreign window", kForeign), true),
    RepeatedMove(MoveOver("move_viewport", "move over a viewport", kView), true),
    MoveOver("move_locked", "move over a viewport that is not navigated", kView, LockView,
             UnlockView),
    MoveOver("move_unwrap", "move over the Unwrap editor", "unwrap"),
    MoveOver("move_trackview", "move over the Track View", "trackview"),
    MoveOver("move_schematic", "move over the Schematic View", "schematic"),
    MoveOver("move_trackbar", "move over the track bar", "trackbar"),
    MoveOver("move_button", "move over a toolbar button", "button.40074"),
    MoveOver("move_caption", "move over the main window's title", "main", GoToCaption),
    MoveOver("move_left", "move over a viewport, left button held", kView, Press<VK_LBUTTON>,
             Release<VK_LBUTTON>),
    {.id = "move_control",
     .title = "move over a viewport, Ctrl held",
     .window = kView,
     .begin = Hold<VK_CONTROL>,
     .act = Step,
     .end = LetGo<VK_CONTROL>,
     .message = Message::kMove,
     .runs_script = true,
     .clicks = true},
    MoveWith<VK_SHIFT>("move_shift", "move over a viewport, Shift held", kView),
    MoveOver("move_control_shift", "move over a viewport, Ctrl and Shift held", kView,
             Sequence<Hold<VK_CONTROL>, Hold<VK_SHIFT>>,
             Sequence<LetGo<VK_SHIFT>, LetGo<VK_CONTROL>>),
    MoveWith<VK_MENU>("move_alt", "move over a viewport, Alt held", kView),
    MoveWith<VK_CONTROL>("move_control_foreign", "move over a foreign window, Ctrl held", kForeign),
    MoveWith<VK_CONTROL>("move_control_unwrap", "move over the Unwrap editor, Ctrl held", "unwrap"),
    {.id = "wheel", .title = "wheel over a viewport", .window = kView, .act = entry_points::Wheel},
    KeyOver<kPlainKey>("key", "plain key", kView, Message::kKey),
    KeyOver<VK_CONTROL>("modifier", "Ctrl key over a viewport", kView, Message::kModifier),
    {.id = "modifier_up",
     .title = "Ctrl key over a viewport, released",
     .window = kView,
     .prepare = Hold<VK_CONTROL>,
     .act = LetGo<VK_CONTROL>},
    KeyOver<VK_SHIFT>("shift_key", "Shift key over a viewport", kView),
    KeyOver<VK_MENU>("alt_key", "Alt key over a viewport", kView),
    KeyOver<VK_CONTROL>("modifier_foreign", "Ctrl key over a foreign window", kForeign),
};

}  // namespace

std::span<const Situation> Moves() {
    return kMoves;
}

}  // namespace situations
