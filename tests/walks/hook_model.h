// The two hooks as steps and a few flags: what the plug-in's state must be after an event, and
// whether the event is kept from the host. Written apart from the plug-in, so that a random walk
// has something to hold the plug-in against. Needs no Windows.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/walks/chords.h"

namespace hook_model {

// With the system's numbers: of each button the press, the release, and the second press of a
// double click, where the window is told of it.
enum class Message {
    kOther = 0,  // of a caption, border or menu bar
    kMove = 0x200,
    kLeftDown,
    kLeftUp,
    kLeftAgain,
    kRightDown,
    kRightUp,
    kRightAgain,
    kMiddleDown,
    kMiddleUp,
    kMiddleAgain,
};

enum WindowKind {
    kOtherWindow = 0,
    kViewport = 1,
    kLockedViewport = 2,
    kUnwrap = 3,
    kSchematic = 4,
    kTrackView = 5,
    kTrackBar = 7,
};

enum Bits { kLeftBit = 1, kRightBit = 2, kMiddleBit = 16 };

// The button that goes down or comes up with a message; 0: none.
int PressedBy(Message message);
int ReleasedBy(Message message);

struct Options {
    bool navigation = false;
    bool left_orbit = false;
    bool right_zoom = false;
    bool quick = false;
    bool clone = false;
    bool cursors = false;
    bool slow_zoom = false;
};

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// The world just before an event, as the host and the system would answer the plug-in.
struct Facts {
    Options options;
    int kind = kOtherWindow;  // of the window under the mouse
    bool alt = false;
    bool ctrl = false;
    bool shift = false;
    std::optional<int> mode;
    bool subobject = false;
    std::optional<bool> select_button;  // enabled; nothing: it is not there
};

struct MouseFacts : Facts {
    Message message = Message::kOther;
    bool right_down = false;
    bool on_menu = false;
    Point at;      // of the event
    Point cursor;  // where the mouse is by now
    Point screen;  // its size
    bool thumb = false;
    int selected = 0;
    bool orbit_allowed = false;
    bool brush = false;      // a sculpt or paint tool of the PolyTools is in use
    bool edit_mode = false;  // the editor under the mouse is in a mode for quick transforms
    bool cursors_load = true;
    bool left_ctrl = false;  // the sides of what `ctrl` tells
    bool right_ctrl = false;
    bool alt_before = false;      // Alt as the event itself saw it, whatever waits behind
    bool swapped = false;         // the user's left button is the right one of the mouse
    bool input_is_taken = true;   // the system takes what is injected
    bool peeked = false;          // the host has peeked at this event before, and nobody kept it
    bool border_release = false;  // a button came up over a caption, border or menu bar
};

struct KeyFacts : Facts {
    enum class Key { kOther, kAlt, kCtrl, kShift };
    Key key = Key::kOther;
    bool up = false;
    bool any_button = false;
};

struct State {
    int orbit = 0, zoom = 0, pan = 0, locked = 0, kind = 0, held = 0;
    int quick = 0, clone = 0;
    int sel_ctrl = 0, sel_shift = 0, sel_ctrl_shift = 0, not_pushed = 0;
    int waits = 0;  // how many events may still be put behind the press of a Ctrl click
    int redirect = 0;
    int scrub = 0, scrub_wrapped = 0;
    int alt_owed = 0;
    int requests = 0;
    int snap = 0;
    int nudge = 0;
    int zoom_warp = 0;
    Point zoom_last, zoom_virtual;

    bool Drags() const { return orbit || zoom || pan; }
    bool Gesture() const { return Drags() || locked; }
    bool Selecting() const { return sel_ctrl || sel_shift || sel_ctrl_shift; }
    friend bool operator==(const State&, const State&) = default;
};

// The plug-in's globals that a state is read from.
struct Field {
    std::string_view global;
    int State::* value;
    bool at_rest;  // 0 once nothing goes on
};
struct PointField {
    std::string_view global;
    Point State::* value;
};
struct OptionField {
    std::string_view key;
    bool Options::* value;
};
extern const std::span<const Field> kFields;
extern const std::span<const PointField> kPointFields;
extern const std::span<const OptionField> kOptionFields;

// The first difference of two states as a text for a reader; empty when there is none.
std::string Difference(const State& expected, const State& got);

enum class Place : int {
#define PLACE(name, text) name,
#include "tests/walks/places.inc"
#undef PLACE
    kCount,
};
constexpr int kPlaces = static_cast<int>(Place::kCount);
std::string_view NameOf(Place place);

// The number of the arrow among the cursors.
constexpr int kArrow = 32512;

// A message of a button, or a move, that is sent to a window.
struct Sent {
    Message message = Message::kOther;
    int keys = 0;
};
// What a move says that stands for one of the user's: it depends on who asked for keys before.
constexpr int kAnyKeys = -1;
std::string NameOf(Message message);

constexpr bool Starts(NavAction action) {
    return action == NavAction::kStartOrbit || action == NavAction::kStartPan ||
           action == NavAction::kStartZoom;
}

// What became of an event.
struct Outcome {
    bool swallowed = false;
    std::vector<Sent> sent;
    std::vector<std::string_view> injected;  // one text for each call, as a trace has it
    bool came_to_release_rules = false;
    bool scrubbed = false;    // the time slider took it
    bool redirected = false;  // a sculpt or paint tool took it
    bool quick_begins = false;
    bool shift_click = false;          // the press or the release of an emulated one
    std::optional<NavAction> handler;  // the last one that was called
    bool orbit_refused = false;
    int used_bits = 0;  // the held buttons that the rows that applied ask for
    int own_bit = 0;    // of the event's own button
    int cursor = 0;     // that a key shows; 0: none
};

class Model {
public:
    const State& Now() const { return state_; }
    void Set(const State& state) { state_ = state; }
    // `while_sending` is called for each message of a button that the event sends, with its number
    // from 0: a window that pumps the queue meanwhile has other events come in between.
    using WhileSending = std::function<void(int)>;
    Outcome Mouse(const MouseFacts& facts, const WhileSending& while_sending = {});
    Outcome Key(const KeyFacts& facts);
    void Visit(Place place) { ++visits_[static_cast<size_t>(place)]; }

    using Visits = std::array<unsigned long long, kPlaces>;
    const Visits& Visited() const { return visits_; }

private:
    enum class Answer { kConsumed, kOn };

    bool Steps(const MouseFacts& facts);
    std::optional<bool> Redirect(const MouseFacts& facts);
    bool Scrub(const MouseFacts& facts);
    // Nothing: no rule applied.
    std::optional<Answer> Press(const MouseFacts& facts);
    std::optional<bool> Quick(const MouseFacts& facts);
    bool Release(const MouseFacts& facts);
    bool Move(const MouseFacts& facts);
    Point Screen(const MouseFacts& facts);
    bool ZoomMove(const MouseFacts& facts);
    bool Select(const MouseFacts& facts);
    bool SelectPress(const MouseFacts& facts);
    bool SelectRelease(const MouseFacts& facts);
    void ReplayWithAlt(const MouseFacts& facts);
    void NoteReplay(const MouseFacts& facts);
    bool PutBehind(std::string_view record, const MouseFacts& facts);
    void Send(Message message, int keys);
    void Inject(std::string_view records) { outcome_.injected.push_back(records); }
    chords::Situation SituationOf(const MouseFacts& facts) const;
    Answer Call(NavAction action, const MouseFacts& facts);
    Answer Unlock(const MouseFacts& facts);
    int ModifierCursor(const KeyFacts& facts);
    int ChosenCursor(bool alt, bool ctrl, bool shift) const;
    void BeginZoom();
    void EndView();
    void PayAlt();

    State state_;
    Point screen_;  // its size as the drag that runs has learned it; 0: not yet
    Outcome outcome_;
    const WhileSending* while_sending_ = nullptr;
    int buttons_sent_ = 0;
    Visits visits_{};
};

}  // namespace hook_model
