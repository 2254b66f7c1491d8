// A recording of the session's input: what the user did as lines of the language of scenarios, with
// what the plug-in answered as what to expect. Free of Win32, so that it can be tested anywhere,
// and free of the heap, because a hook is no place for it.
//
// Nothing that is typed gets into it. Of the keyboard it tells the modifiers, the function keys and
// the keys that carry out a command of the plug-in. Of any other key it tells that one came down or
// up, by a name that stands for all of them, and that only where the plug-in could take notice.
#pragma once

#include <array>
#include <iterator>

namespace recording {

enum class Button { kLeft, kRight, kMiddle };

struct Input {
    enum Kind { kMove, kDown, kDownAgain, kUp, kKeyDown, kKeyUp };
    Kind kind = kMove;
    int what = 0;        // a Button, or the general virtual key
    bool right = false;  // the right one of two keys that have one name
    int x = 0;           // mouse: on the screen
    int y = 0;
};

// --- the state of the host, as far as the plug-in asks for it ---

enum class Asked {
    kSubObject,
    kViewKind,    // `number` counts the viewports by their places
    kViewLocked,  // likewise
    kEditor,      // `number` is the kind of window
    kSnap,
    kAction,  // `table`, `number`
    kToolbarButtonThere,
    kToolbarButtonEnabled,
    kPaintPanel,
    kSculptBrush,
    kPaintBrush,
};

// One row a thing that is on or off, or one of a few. A value is an index into `words`.
struct StateRow {
    Asked asked;
    unsigned long table;
    int number;
    const char* before;  // the line, around the word for the value
    const char* words[3];
    const char* after;
    int usual;  // what a scenario begins with
};

inline constexpr unsigned long kSnaps = 1259304063;
inline constexpr unsigned long kUnwrap = 2077580866;

inline constexpr StateRow kStateRows[] = {
    // clang-format off
    {Asked::kSubObject,  0, 0, "subobject ",            {"off", "on"},             "", 0},
    {Asked::kViewKind,   0, 0, "view viewport.top ",    {"ortho", "persp", "user"}, "", 0},
    {Asked::kViewKind,   0, 1, "view viewport.front ",  {"ortho", "persp", "user"}, "", 0},
    {Asked::kViewKind,   0, 2, "view viewport.user ",   {"ortho", "persp", "user"}, "", 2},
    {Asked::kViewKind,   0, 3, "view viewport.persp ",  {"ortho", "persp", "user"}, "", 1},
    {Asked::kViewLocked, 0, 0, "lock viewport.top ",    {"off", "on"},             "", 0},
    {Asked::kViewLocked, 0, 1, "lock viewport.front ",  {"off", "on"},             "", 0},
    {Asked::kViewLocked, 0, 2, "lock viewport.user ",   {"off", "on"},             "", 0},
    {Asked::kViewLocked, 0, 3, "lock viewport.persp ",  {"off", "on"},             "", 0},
    {Asked::kEditor,     0, 5, "",                      {"close", "open"},         " trackview", 0},
    {Asked::kEditor,     0, 3, "",                      {"close", "open"},         " unwrap", 0},
    {Asked::kEditor,     0, 4, "",                      {"close", "open"},         " schematic", 0},
    {Asked::kSnap,       0, 0, "action 0 40072 ",       {"off", "on"},             "", 0},
    {Asked::kAction,     0, 40074, "action 0 40074 ",   {"off", "on"},             "", 0},
    {Asked::kAction,     0, 40105, "action 0 40105 ",   {"off", "on"},             "", 1},
    {Asked::kAction,     0, 59231, "action 0 59231 ",   {"off", "on"},             "", 0},
    {Asked::kAction,     1, 230,   "action 1 230 ",     {"off", "on"},             "", 0},
    {Asked::kAction,     1, 380,   "action 1 380 ",     {"off", "on"},             "", 0},
    {Asked::kAction,     1, 480,   "action 1 480 ",     {"off", "on"},             "", 0},
    {Asked::kAction,     1, 2020,  "action 1 2020 ",    {"off", "on"},             "", 0},
    {Asked::kAction,     1, 2030,  "action 1 2030 ",    {"off", "on"},             "", 0},
    {Asked::kAction,     1, 2040,  "action 1 2040 ",    {"off", "on"},             "", 0},
    {Asked::kAction,     1, 40328, "action 1 40328 ",   {"off", "on"},             "", 0},
    {Asked::kAction, kSnaps, 50067, "action 1259304063 50067 ", {"off", "on"},     "", 0},
    {Asked::kAction, kSnaps, 50069, "action 1259304063 50069 ", {"off", "on"},     "", 0},
    {Asked::kAction, kSnaps, 50073, "action 1259304063 50073 ", {"off", "on"},     "", 0},
    {Asked::kAction, kSnaps, 50075, "action 1259304063 50075 ", {"off", "on"},     "", 0},
    {Asked::kAction, kSnaps, 80000, "action 1259304063 80000 ", {"off", "on"},     "", 0},
    {Asked::kAction, kSnaps, 80001, "action 1259304063 80001 ", {"off", "on"},     "", 0},
    {Asked::kAction, kSnaps, 80002, "action 1259304063 80002 ", {"off", "on"},     "", 0},
    {Asked::kAction, kSnaps, 80005, "action 1259304063 80005 ", {"off", "on"},     "", 0},
    {Asked::kAction, kUnwrap, 40007, "action 2077580866 40007 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40008, "action 2077580866 40008 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40009, "action 2077580866 40009 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40020, "action 2077580866 40020 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40033, "action 2077580866 40033 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40034, "action 2077580866 40034 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40035, "action 2077580866 40035 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40036, "action 2077580866 40036 ", {"off", "on"},    "", 0},
    {Asked::kAction, kUnwrap, 40087, "action 2077580866 40087 ", {"off", "on"},    "", 0},
    {Asked::kToolbarButtonThere,   0, 50027, "button 50027 ", {"absent", "present"},   "", 1},
    {Asked::kToolbarButtonEnabled, 0, 50027, "button 50027 ", {"disabled", "enabled"}, "", 1},
    {Asked::kPaintPanel,  0, 0, "",                     {"close", "open"},         " vertexpaint", 0},
    {Asked::kSculptBrush, 0, 4184, "brush 4184 ",       {"off", "on"},             "", 0},
    {Asked::kSculptBrush, 0, 4185, "brush 4185 ",       {"off", "on"},             "", 0},
    {Asked::kSculptBrush, 0, 4186, "brush 4186 ",       {"off", "on"},             "", 0},
    {Asked::kPaintBrush,  0, 1007, "paint 1007 ",       {"off", "on"},             "", 0},
    {Asked::kPaintBrush,  0, 1008, "paint 1008 ",       {"off", "on"},             "", 0},
    {Asked::kPaintBrush,  0, 1009, "paint 1009 ",       {"off", "on"},             "", 0},
    {Asked::kPaintBrush,  0, 1077, "paint 1077 ",       {"off", "on"},             "", 0},
    // clang-format on
};
inline constexpr size_t kRows = std::size(kStateRows);
inline constexpr signed char kNotTold = -1;  // nobody can say: nothing is written about it

// A scenario knows four objects. The others of a scene get one of their names when they are first
// selected: a recording tells no name of the user's.
inline constexpr size_t kObjects = 4;
inline constexpr const char* kObjectNames[kObjects] = {"Box001", "Sphere001", "Cone001",
                                                       "Torus001"};

struct State {
    int mode = 6;   // the tool that is on
    int modes = 1;  // how many lie on the stack, with it; 0: none is on
    int selected = 0;
    const void* objects[kObjects] = {};  // the first ones that are selected
    signed char rows[kRows] = {};
};

// What a scenario begins with.
State UsualState();

struct Setting {
    const char* key;
    bool on;
};

// --- the recording ---

enum class End { kNone, kAsked, kTime, kSize, kDisk, kRefused };

inline constexpr unsigned kLongestMs = 10 * 60 * 1000;
inline constexpr size_t kLargest = 10 * 1000 * 1000;

// What Before found out about an event, for its After.
struct Seen {
    bool own = false;  // injected by the plug-in
    bool written = false;
    unsigned serial = 0;
};

class Recorder {
public:
    // Takes one line or more. False: there is no more room.
    using Put = bool (*)(const char* text, size_t length);

    // Times are milliseconds of a clock that may run over. The set-up stands before the start.
    void Begin(Put put, unsigned now);
    void Release(int release);
    void Screen(int x, int y, int width, int height);
    void SwappedButtons();
    void KeptSetting(const Setting& setting);
    // The last of the set-up: where the cursor is, what the host is like; then the start.
    void Start(int x, int y, const State& state);
    // Before the start: a modifier is held.
    void HeldKey(int key, bool right);

    // The plug-in sends input, which will come as events: records of one call follow each other.
    void NoteBatch() { ++batch_; }
    void NoteInjected(const Input& input, unsigned now);

    // Around each event that the plug-in is asked about.
    Seen Before(const Input& input, const State& state, unsigned now);
    void After(const Seen& seen, const Input& input, bool swallowed, const State& state,
               unsigned now);
    // The same while the host only looks at a message. It comes once more, unless it was kept.
    void BeforePeek(const State& state, unsigned now);
    void AfterPeek(const Input& input, bool swallowed, const State& state, unsigned now);

    // Around a command of the plug-in.
    Seen BeforeCommand(int id, const State& state, unsigned now);
    void AfterCommand(const Seen& seen, int answer, const State& state, unsigned now);

    // Names an object by one of the four names, from now on, unless another one has it.
    void Name(const void* object, size_t name);
    bool IsNamed(const void* object) const;

    // The end, and before it what the host became since the last event.
    void Finish(const State& state, unsigned now);
    void Stop(End why);
    End Ended() const { return end_; }
    size_t Written() const { return written_; }

private:
    // What is known of a key that is down.
    enum class Held : unsigned char { kUp, kBack, kStandIn, kNamed };
    struct Sent {
        Input input;
        unsigned at;
        unsigned batch;
    };
    static constexpr size_t kMostSent = 64;
    static constexpr int kDeepest = 64;

    bool PutLine(class Line& line);
    void PutTimed(class Line& line);
    void Expect(const Seen& seen, const char* answer);
    void Enter(unsigned now);
    void Leave(const State& state, unsigned now);
    bool TakeInjected(const Input& input, unsigned now);
    void FollowModes(const State& state);
    void NoteChanges(const State& state);
    void PutChanges();
    void PutModes();
    void PutSelection();
    void PutMove(const Input& input);
    Seen PutInput(const Input& input);
    Seen PutKey(bool up, const char* name);
    Seen Take(const Input& input, unsigned now);
    void Answered(const Seen& seen, const Input& input, bool swallowed);
    void FollowKey(const Input& input, bool swallowed);
    bool IsShortcut() const;

    Put put_ = nullptr;
    End end_ = End::kNone;
    size_t written_ = 0;
    unsigned began_ = 0;
    unsigned now_ = 0;
    unsigned left_ = 0;  // when the plug-in was last done
    unsigned idle_ = 0;  // time that went by without it since the last `clock`
    int depth_ = 0;      // events in the middle of others
    unsigned serial_ = 0;
    bool peeks_ = false;
    int x_ = 0;
    int y_ = 0;
    std::array<Sent, kMostSent> sent_ = {};
    size_t sent_count_ = 0;
    unsigned batch_ = 0;
    unsigned begun_batch_ = 0;
    std::array<Held, 256> held_ = {};
    int last_down_ = 0;   // of the keys that are held back
    bool armed_ = false;  // a command may wait for a key to come up
    std::array<bool, 3> modifiers_ = {};
    State state_;  // as the replay has it
    std::array<bool, kRows> changed_ = {};
    bool modes_changed_ = false;
    bool selection_changed_ = false;
    std::array<int, kDeepest> stack_ = {};
    int depth_of_modes_ = 0;
    std::array<const void*, kObjects> named_ = {};
};

// The name of a key in scenarios; false: it has none.
bool KeyName(int key, bool right, char (&name)[8]);

}  // namespace recording
