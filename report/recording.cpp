#include "report/recording.h"

#include <cstring>

namespace recording {

// A line under way; what does not fit is cut.
class Line {
public:
    Line& Text(const char* text) {
        while (*text && length_ < kRoom)
            text_[length_++] = *text++;
        return *this;
    }
    Line& Number(long long value) {
        char digits[24];
        size_t count = 0;
        const bool negative = value < 0;
        unsigned long long rest = negative ? 0ull - static_cast<unsigned long long>(value)
                                           : static_cast<unsigned long long>(value);
        do {
            digits[count++] = static_cast<char>('0' + rest % 10);
            rest /= 10;
        } while (rest);
        if (negative) digits[count++] = '-';
        while (count && length_ < kRoom)
            text_[length_++] = digits[--count];
        return *this;
    }
    void End() {
        text_[length_++] = '\r';
        text_[length_++] = '\n';
    }
    const char* Begin() const { return text_; }
    size_t Length() const { return length_; }

private:
    static constexpr size_t kRoom = 1000;
    char text_[kRoom + 2];
    size_t length_ = 0;
};

namespace {

// The virtual keys that have a meaning here, free of the system's header.
enum Key {
    kShift = 16,
    kCtrl = 17,
    kAlt = 18,
    kF1 = 112,
    kF24 = 135,
};

struct NamedKey {
    int key;
    const char* name;
};
constexpr NamedKey kNamedKeys[] = {{kAlt, "alt"}, {kCtrl, "ctrl"}, {kShift, "shift"}, {37, "left"},
                                   {38, "up"},    {39, "right"},   {40, "down"},      {9, "tab"},
                                   {13, "enter"}, {27, "escape"},  {32, "space"}};

// Stands for all keys that are not told. No keyboard in use has it.
constexpr const char* kStandInName = "f24";

// Injected input that has not come after so long went where the hooks do not see it.
constexpr unsigned kStaleMs = 1000;

// What a tool is that lies on the stack unseen: mostly the one for selecting.
constexpr int kUsualMode = 6;

constexpr const char* kButtonNames[] = {"left", "right", "middle"};

bool IsModifier(int key) {
    return key == kShift || key == kCtrl || key == kAlt;
}

bool IsKey(const Input& input) {
    return input.kind == Input::kKeyDown || input.kind == Input::kKeyUp;
}

bool IsTold(int key) {
    return IsModifier(key) || (key >= kF1 && key <= kF24);
}

bool IsPress(const Input& input) {
    return input.kind == Input::kDown || input.kind == Input::kDownAgain;
}

bool AreSame(const Input& sent, const Input& came) {
    if (sent.kind == Input::kMove)
        return came.kind == Input::kMove && sent.x == came.x && sent.y == came.y;
    return (sent.kind == came.kind || (IsPress(sent) && IsPress(came))) && sent.what == came.what;
}

}  // namespace

bool KeyName(int key, bool right, char (&name)[8]) {
    Line line;
    if (key >= kF1 && key <= kF24) line.Text("f").Number(key - kF1 + 1);
    const char letter[2] = {static_cast<char>(key >= 'A' && key <= 'Z' ? key - 'A' + 'a' : key), 0};
    if ((key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9')) line.Text(letter);
    for (const NamedKey& row : kNamedKeys)
        if (row.key == key) line.Text(right && IsModifier(key) ? "r" : "").Text(row.name);
    std::memcpy(name, line.Begin(), line.Length());
    name[line.Length()] = 0;
    return line.Length() > 0;
}

State UsualState() {
    State state;
    for (size_t i = 0; i < kRows; ++i)
        state.rows[i] = static_cast<signed char>(kStateRows[i].usual);
    return state;
}

// --- lines ---

bool Recorder::PutLine(Line& line) {
    if (end_ != End::kNone) return false;
    line.End();
    // Room stays for the line that tells the end.
    constexpr size_t kLastLine = 64;
    if (written_ + line.Length() + kLastLine > kLargest) {
        Stop(End::kSize);
        return false;
    }
    if (!put_(line.Begin(), line.Length())) {
        end_ = End::kDisk;
        return false;
    }
    written_ += line.Length();
    return true;
}

// The time since the beginning stands behind what was done.
void Recorder::PutTimed(Line& line) {
    const unsigned since = now_ - began_;
    const unsigned part = since % 1000;
    line.Text("  # ").Number(since / 1000).Text(part < 10 ? ".00" : part < 100 ? ".0" : ".");
    line.Number(part);
    PutLine(line);
}

// What the plug-in answered to the event itself. An event in the middle of it has come between.
void Recorder::Expect(const Seen& seen, const char* answer) {
    if (!seen.written || seen.serial != serial_ || peeks_) return;
    Line line;
    line.Text("expect answer ").Text(answer);
    PutLine(line);
}

void Recorder::Stop(End why) {
    if (end_ != End::kNone) return;
    end_ = why;
    Line line;
    line.Text(why == End::kTime   ? "# ended after ten minutes"
              : why == End::kSize ? "# ended after ten megabytes"
                                  : "# ended");
    line.End();
    if (put_ && put_(line.Begin(), line.Length())) written_ += line.Length();
}

void Recorder::Finish(const State& state, unsigned now) {
    Enter(now);
    NoteChanges(state);
    PutChanges();
    Stop(End::kAsked);
}

// --- the set-up ---

void Recorder::Begin(Put put, unsigned now) {
    *this = Recorder();
    put_ = put;
    began_ = now_ = left_ = now;
    state_ = UsualState();
    stack_[0] = kUsualMode;
    depth_of_modes_ = 1;
    Line title;
    title.Text("# A recording of KarvelMax");
    PutLine(title);
}

void Recorder::Release(int release) {
    Line line;
    line.Text("release ").Number(release);
    PutLine(line);
}

void Recorder::Screen(int x, int y, int width, int height) {
    Line line;
    line.Text("screen ");
    if (x || y) line.Number(x).Text(",").Number(y).Text(" ");
    line.Number(width).Text("x").Number(height);
    PutLine(line);
}

void Recorder::SwappedButtons() {
    Line line;
    line.Text("swap on");
    PutLine(line);
}

void Recorder::KeptSetting(const Setting& setting) {
    Line line;
    line.Text("ini ").Text(setting.key).Text(setting.on ? "=1" : "=");
    PutLine(line);
}

void Recorder::HeldKey(int key, bool right) {
    char name[8];
    if (!KeyName(key, right, name)) return;
    Line line;
    line.Text("key down ").Text(name);
    PutLine(line);
    if (IsModifier(key)) modifiers_[static_cast<size_t>(key - kShift)] = true;
}

void Recorder::Start(int x, int y, const State& state) {
    x_ = x;
    y_ = y;
    if (x || y) {
        Line line;
        line.Text("move screen ").Number(x).Text(" ").Number(y);
        PutLine(line);
    }
    NoteChanges(state);
    PutChanges();
    Line start;
    start.Text("start");
    PutLine(start);
}

// --- what the plug-in injects ---

void Recorder::NoteInjected(const Input& input, unsigned now) {
    if (sent_count_ == kMostSent) return;
    sent_[sent_count_++] = {input, now, batch_};
}

// What was injected comes behind all that waited before it, and in one piece: until the first of a
// call has come, what comes is the user's, and of a call that has begun to come some may be lost. A
// move is lost when the mouse moves on before it is taken.
bool Recorder::TakeInjected(const Input& input, unsigned now) {
    size_t first = 0;
    while (first < sent_count_ && now - sent_[first].at > kStaleMs)
        ++first;
    size_t taken = first;
    bool found = false;
    for (size_t i = first; i < sent_count_ && !found; ++i) {
        const bool may_be_lost = i == first || sent_[i - 1].input.kind == Input::kMove;
        if (!may_be_lost && sent_[i].batch != begun_batch_) break;
        found = AreSame(sent_[i].input, input);
        if (found) {
            begun_batch_ = sent_[i].batch;
            taken = i + 1;
        }
    }
    if (taken == 0) return found;
    for (size_t i = taken; i < sent_count_; ++i)
        sent_[i - taken] = sent_[i];
    sent_count_ -= taken;
    return found;
}

// --- the state of the host ---

// The host tells the tool that is on and how many there are: those below are remembered.
void Recorder::FollowModes(const State& state) {
    const int depth = state.modes < 0 ? 0 : state.modes < kDeepest ? state.modes : kDeepest;
    while (depth_of_modes_ < depth)
        stack_[static_cast<size_t>(depth_of_modes_++)] = kUsualMode;
    depth_of_modes_ = depth;
    if (depth) stack_[static_cast<size_t>(depth - 1)] = state.mode;
}

// What the host did itself since the plug-in was last asked, because of the user or of what the
// plug-in had sent. It stands before the next event of the user's.
void Recorder::NoteChanges(const State& state) {
    for (size_t i = 0; i < kRows; ++i)
        changed_[i] = changed_[i] || (state.rows[i] != kNotTold && state.rows[i] != state_.rows[i]);
    modes_changed_ = modes_changed_ || state.mode != state_.mode || state.modes != state_.modes;
    selection_changed_ = selection_changed_ || state.selected != state_.selected ||
                         std::memcmp(state.objects, state_.objects, sizeof state.objects) != 0;
    FollowModes(state);
    state_ = state;
}

void Recorder::PutModes() {
    Line line;
    line.Text(depth_of_modes_ ? "mode stack" : "mode none");
    for (int i = 0; i < depth_of_modes_; ++i)
        line.Text(" ").Number(stack_[static_cast<size_t>(i)]);
    PutLine(line);
}

bool Recorder::IsNamed(const void* object) const {
    for (const void* named : named_)
        if (named == object) return true;
    return false;
}

void Recorder::Name(const void* object, size_t name) {
    if (!named_[name]) named_[name] = object;
}

void Recorder::PutSelection() {
    Line line;
    line.Text("select");
    int told = 0;
    for (const void* object : state_.objects) {
        if (!object) continue;
        for (size_t i = 0; i < kObjects && !IsNamed(object); ++i)
            Name(object, i);
        for (size_t i = 0; i < kObjects; ++i)
            if (named_[i] == object) {
                line.Text(" ").Text(kObjectNames[i]);
                ++told;
            }
    }
    if (!told) line.Text(state_.selected ? " Box001" : " none");
    if (told < state_.selected) line.Text("  # of ").Number(state_.selected);
    PutLine(line);
}

void Recorder::PutChanges() {
    if (modes_changed_) PutModes();
    if (selection_changed_) PutSelection();
    for (size_t i = 0; i < kRows; ++i) {
        const StateRow& row = kStateRows[i];
        if (!changed_[i] || state_.rows[i] == kNotTold) continue;
        Line line;
        line.Text(row.before).Text(row.words[state_.rows[i]]).Text(row.after);
        PutLine(line);
    }
    changed_ = {};
    modes_changed_ = selection_changed_ = false;
}

// --- events ---

void Recorder::Enter(unsigned now) {
    now_ = now;
    if (depth_++ == 0) idle_ += now - left_;
    if (now - began_ > kLongestMs) Stop(End::kTime);
}

// What changed meanwhile was the plug-in's doing, and will be again.
void Recorder::Leave(const State& state, unsigned now) {
    FollowModes(state);
    state_ = state;
    if (--depth_ == 0) left_ = now;
}

// Alt or Ctrl with a key makes no text.
bool Recorder::IsShortcut() const {
    return modifiers_[kAlt - kShift] || modifiers_[kCtrl - kShift];
}

void Recorder::PutMove(const Input& input) {
    // Windows that move under a resting cursor are told of it, which no hand does.
    if (input.x == x_ && input.y == y_) return;
    x_ = input.x;
    y_ = input.y;
    Line line;
    line.Text("move screen ").Number(x_).Text(" ").Number(y_);
    PutTimed(line);
}

Seen Recorder::PutKey(bool up, const char* name) {
    PutChanges();
    Line line;
    line.Text(up ? "key up " : "key down ").Text(name);
    PutTimed(line);
    return {false, true, ++serial_};
}

Seen Recorder::PutInput(const Input& input) {
    if (IsKey(input)) {
        char name[8];
        const bool named = KeyName(input.what, input.right, name);
        return PutKey(input.kind == Input::kKeyUp, named ? name : kStandInName);
    }
    const bool moves = input.x != x_ || input.y != y_;
    if (input.kind == Input::kMove && !moves) return {};
    PutChanges();
    PutMove(input);
    if (input.kind != Input::kMove) {
        Line line;
        line.Text(input.kind == Input::kUp          ? "up "
                  : input.kind == Input::kDownAgain ? "down again "
                                                    : "down ");
        line.Text(kButtonNames[input.what]);
        PutTimed(line);
    }
    return {false, true, ++serial_};
}

Seen Recorder::Take(const Input& input, unsigned now) {
    const bool own = TakeInjected(input, now);
    if (IsKey(input) && IsModifier(input.what))
        modifiers_[static_cast<size_t>(input.what - kShift)] = input.kind == Input::kKeyDown;
    if (own) {
        if (input.kind == Input::kMove) {
            x_ = input.x;
            y_ = input.y;
        }
        return {true, false, 0};
    }
    if (IsKey(input) && !IsTold(input.what) && held_[input.what & 255] != Held::kNamed) return {};
    return PutInput(input);
}

Seen Recorder::Before(const Input& input, const State& state, unsigned now) {
    Enter(now);
    NoteChanges(state);
    return Take(input, now);
}

// A key that is not told. Down it matters to the plug-in only when that keeps it. Up it may end
// what a command began, until one has come up that the plug-in let go on: nothing waits then.
void Recorder::FollowKey(const Input& input, bool swallowed) {
    Held& held = held_[input.what & 255];
    const bool up = input.kind == Input::kKeyUp;
    const bool matters = swallowed || (up ? armed_ || held == Held::kStandIn : IsShortcut());
    if (matters) Expect(PutKey(up, kStandInName), swallowed ? "swallow" : "pass");
    if (up) return;
    held = matters || held == Held::kStandIn ? Held::kStandIn : Held::kBack;
    last_down_ = input.what & 255;
}

void Recorder::Answered(const Seen& seen, const Input& input, bool swallowed) {
    if (seen.own) return;
    const char* const answer = swallowed ? "swallow" : "pass";
    if (!IsKey(input)) return Expect(seen, answer);
    if (seen.written)
        Expect(seen, answer);
    else
        FollowKey(input, swallowed);
    if (input.kind != Input::kKeyUp) return;
    held_[input.what & 255] = Held::kUp;
    if (!swallowed) armed_ = false;
}

void Recorder::After(const Seen& seen, const Input& input, bool swallowed, const State& state,
                     unsigned now) {
    Answered(seen, input, swallowed);
    Leave(state, now);
}

void Recorder::BeforePeek(const State& state, unsigned now) {
    Enter(now);
    NoteChanges(state);
}

// A message that is kept when it is looked at is gone, so this was all of it.
void Recorder::AfterPeek(const Input& input, bool swallowed, const State& state, unsigned now) {
    if (!peeks_) {
        peeks_ = true;
        Line line;
        line.Text("peek on");
        PutLine(line);
    }
    if (swallowed) Answered(Take(input, now), input, true);
    Leave(state, now);
}

Seen Recorder::BeforeCommand(int id, const State& state, unsigned now) {
    Enter(now);
    NoteChanges(state);
    PutChanges();
    Held& key = held_[static_cast<size_t>(last_down_)];
    if (key == Held::kBack) {
        // So this is what the key is for.
        char name[8];
        const bool named = KeyName(last_down_, false, name);
        Expect(PutKey(false, named ? name : kStandInName), "pass");
        key = Held::kNamed;
    }
    if (idle_) {
        Line clock;
        clock.Text("clock +").Number(idle_);
        PutLine(clock);
        idle_ = 0;
    }
    Line line;
    line.Text("command ").Number(id);
    PutTimed(line);
    armed_ = true;
    return {false, true, ++serial_};
}

void Recorder::AfterCommand(const Seen& seen, int answer, const State& state, unsigned now) {
    Line number;
    number.Number(answer);
    char text[16] = "";
    std::memcpy(text, number.Begin(), number.Length());
    Expect(seen, text);
    Leave(state, now);
}

}  // namespace recording
