// What a recording writes: which lines, in which order, and what it never writes.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

#include <string>
#include <utility>
#include <vector>

#include "report/recording.h"
#include "standin/scenario/language.h"
#include "standin/scenario/parser.h"

namespace {

using namespace recording;
using testing::HasSubstr;

std::string g_text;
size_t g_room;

bool Take(const char* text, size_t length) {
    if (length > g_room) return false;
    g_room -= length;
    g_text.append(text, length);
    return true;
}

constexpr std::string_view kAnswer = "expect answer ";
constexpr int kShift = 16, kCtrl = 17, kAlt = 18, kF1 = 112;

class Recordings : public testing::Test {
protected:
    Recordings() {
        g_text.clear();
        g_room = 100'000'000;
        recorder_.Begin(Take, now_);
        recorder_.Start(0, 0, state_);
        g_text.clear();
    }

    // The lines since the last time, without the times behind them; what an answer to a line is
    // expected to be stands behind an arrow.
    const char* Lines() {
        lines_.clear();
        for (size_t at = 0; at < g_text.size();) {
            const size_t end = g_text.find("\r\n", at);
            EXPECT_NE(end, std::string::npos) << "a line without an end";
            std::string line = g_text.substr(at, end - at);
            line.resize(std::min(line.size(), line.find("  # ")));
            if (line.starts_with(kAnswer))
                line.replace(0, kAnswer.size(), " -> ");
            else if (at > 0)
                lines_ += "; ";
            lines_ += line;
            at = end + 2;
        }
        g_text.clear();
        return lines_.c_str();
    }

    void Event(const Input& input, bool swallowed = false) {
        const Seen seen = recorder_.Before(input, state_, now_);
        if (const auto during = std::exchange(during_, nullptr)) during();
        recorder_.After(seen, input, swallowed, state_, now_);
    }
    void Key(int key, bool up, bool swallowed = false, bool right = false) {
        Event({up ? Input::kKeyUp : Input::kKeyDown, key, right, 0, 0}, swallowed);
    }
    void Type(int key) {
        Key(key, false);
        Key(key, true);
    }
    void Mouse(Input::Kind kind, Button button, int x, int y, bool swallowed = false) {
        Event({kind, static_cast<int>(button), false, x, y}, swallowed);
    }
    void Move(int x, int y, bool swallowed = false) {
        Mouse(Input::kMove, Button::kLeft, x, y, swallowed);
    }
    void Command(int id, int answer = 1) {
        const Seen seen = recorder_.BeforeCommand(id, state_, now_);
        if (const auto during = std::exchange(during_, nullptr)) during();
        recorder_.AfterCommand(seen, answer, state_, now_);
    }
    void Sends(std::initializer_list<Input> inputs) {
        recorder_.NoteBatch();
        for (const Input& input : inputs)
            recorder_.NoteInjected(input, now_);
    }
    signed char& Row(const std::string& begin) {
        for (size_t i = 0; i < kRows; ++i)
            if (kStateRows[i].before + std::string("*") + kStateRows[i].after == begin)
                return state_.rows[i];
        ADD_FAILURE() << begin;
        return state_.rows[0];
    }

    Recorder recorder_;
    State state_ = UsualState();
    std::string lines_;
    unsigned now_ = 4'294'967'000u;  // the system's clock runs over
    std::function<void()> during_;
};

// --- the mouse ---

TEST_F(Recordings, TellHandsAndAnswers) {
    Move(250, 200);
    Mouse(Input::kDown, Button::kRight, 250, 200, true);
    Move(255, 200, true);
    Mouse(Input::kUp, Button::kRight, 255, 200, true);
    Mouse(Input::kDown, Button::kMiddle, 255, 200);
    Mouse(Input::kUp, Button::kMiddle, 255, 200);
    Mouse(Input::kDown, Button::kLeft, 255, 200);
    EXPECT_STREQ(Lines(),
                 "move screen 250 200 -> pass; down right -> swallow; "
                 "move screen 255 200 -> swallow; up right -> swallow; "
                 "down middle -> pass; up middle -> pass; down left -> pass");
}

TEST_F(Recordings, TellASecondPressWithoutItsRelease) {
    Mouse(Input::kDownAgain, Button::kLeft, 0, 0);
    Move(1, 0);
    Mouse(Input::kUp, Button::kLeft, 1, 0);
    EXPECT_STREQ(Lines(), "down again left -> pass; move screen 1 0 -> pass; up left -> pass");
}

TEST_F(Recordings, BringTheCursorToWhereAPressIs) {
    Mouse(Input::kDown, Button::kLeft, -7, 9);
    EXPECT_STREQ(Lines(), "move screen -7 9; down left -> pass");
}

TEST_F(Recordings, LeaveOutMovesToWhereTheCursorIs) {
    Move(5, 5);
    Lines();
    Move(5, 5);
    EXPECT_STREQ(Lines(), "");
}

TEST_F(Recordings, TellTheTimeBehindWhatIsDone) {
    now_ += 12'034;
    Move(1, 1);
    now_ += 9;
    Move(2, 1);
    EXPECT_THAT(g_text, HasSubstr("move screen 1 1  # 12.034\r\n"));
    EXPECT_THAT(g_text, HasSubstr("move screen 2 1  # 12.043\r\n"));
}

// --- what the plug-in sends ---

TEST_F(Recordings, LeaveOutWhatThePlugInSends) {
    during_ = [this] {
        Sends({{Input::kKeyDown, kAlt}, {Input::kDown, 0}, {Input::kKeyUp, kAlt}});
    };
    Mouse(Input::kDown, Button::kLeft, 0, 0, true);
    Lines();
    Key(kAlt, false);
    Mouse(Input::kDownAgain, Button::kLeft, 0, 0);  // the second press of two, by chance
    Key(kAlt, true);
    EXPECT_STREQ(Lines(), "");
    Key(kAlt, true);
    EXPECT_STREQ(Lines(), "key up alt -> pass");
}

TEST_F(Recordings, LeaveOutWhereThePlugInPutsTheCursor) {
    Sends({{Input::kMove, 0, false, 30, 40}});
    Move(30, 40);
    EXPECT_STREQ(Lines(), "");
    Mouse(Input::kDown, Button::kLeft, 30, 40);
    EXPECT_STREQ(Lines(), "down left -> pass");
}

TEST_F(Recordings, TellWhatWaitedBeforeTheInjected) {
    Sends({{Input::kKeyDown, kAlt}, {Input::kDown, 0}});
    Mouse(Input::kDown, Button::kLeft, 0, 0);  // the user's, before the first of those
    EXPECT_STREQ(Lines(), "down left -> pass");
    Key(kAlt, false);
    Mouse(Input::kDown, Button::kLeft, 0, 0);
    EXPECT_STREQ(Lines(), "");
}

TEST_F(Recordings, DropWhatWentElsewhere) {
    Sends({{Input::kKeyDown, kAlt}, {Input::kDown, 0}, {Input::kKeyUp, kAlt}});
    Key(kAlt, false);
    Key(kAlt, true);  // the press went to another program's window
    EXPECT_STREQ(Lines(), "");
    Mouse(Input::kDown, Button::kLeft, 0, 0);
    EXPECT_STREQ(Lines(), "down left -> pass");
}

TEST_F(Recordings, ForgetWhatNeverCame) {
    Sends({{Input::kKeyDown, kAlt}});
    now_ += 1001;
    Key(kAlt, false);
    EXPECT_STREQ(Lines(), "key down alt -> pass");
}

// --- keys ---

TEST_F(Recordings, TellModifiersAndFunctionKeys) {
    Key(kAlt, false);
    Key(kAlt, true, true);
    Key(kCtrl, false, false, true);
    Key(kShift, false, false, true);
    Key(kF1 + 11, false);
    EXPECT_STREQ(Lines(),
                 "key down alt -> pass; key up alt -> swallow; key down rctrl -> pass; "
                 "key down rshift -> pass; key down f12 -> pass");
}

TEST_F(Recordings, KeepNothingOfAText) {
    for (const char letter : std::string("SECRET 42"))
        Type(letter);
    Key(kShift, false);
    Type('X');
    Key(kShift, true);
    EXPECT_STREQ(Lines(), "key down shift -> pass; key up shift -> pass");
}

TEST_F(Recordings, TellAKeyWithAltOrCtrlByTheNameOfNone) {
    Key(kCtrl, false);
    Type('Z');
    Key(kCtrl, true);
    EXPECT_STREQ(Lines(),
                 "key down ctrl -> pass; key down f24 -> pass; key up f24 -> pass; "
                 "key up ctrl -> pass");
}

TEST_F(Recordings, TellAHotkey) {
    Key('Q', false);
    EXPECT_STREQ(Lines(), "");
    Command(7);
    Key('Q', false, true);  // it repeats
    Key('Q', true, true);
    EXPECT_STREQ(Lines(),
                 "key down q -> pass; command 7 -> 1; key down q -> swallow; "
                 "key up q -> swallow");
    Type('Q');  // in a text, the next time
    Type('W');
    EXPECT_STREQ(Lines(), "key up f24 -> pass");
}

TEST_F(Recordings, TellOneHotkeyOnceForManyCommands) {
    Key(39, false);
    Command(13);
    now_ += 40;
    Command(13, 0);
    EXPECT_STREQ(Lines(), "key down right -> pass; command 13 -> 1; clock +40; command 13 -> 0");
}

// Any key that comes up ends what a command began, and this one was not what began it.
TEST_F(Recordings, TellThatSomeKeyCameUpAfterACommand) {
    Key('W', false);
    Key('Q', false);
    Command(1);
    Key('E', false, true);
    Key('W', true);
    Key('E', true);
    Key('Q', true);
    EXPECT_STREQ(Lines(),
                 "key down q -> pass; command 1 -> 1; key down f24 -> swallow; "
                 "key up f24 -> pass; key up f24 -> pass; key up q -> pass");
    Type('W');
    EXPECT_STREQ(Lines(), "");
}

TEST_F(Recordings, WaitOnWhileKeysThatComeUpAreKept) {
    Key('Q', false);
    Command(2);
    Command(7);
    Key('W', true, true);
    Key('W', true, true);
    Key('W', true);
    Key('W', true);
    EXPECT_STREQ(Lines(),
                 "key down q -> pass; command 2 -> 1; command 7 -> 1; "
                 "key up f24 -> swallow; key up f24 -> swallow; key up f24 -> pass");
}

TEST(KeyNames, AreThoseOfTheLanguage) {
    int named = 0;
    for (int key = 0; key < 256; ++key) {
        char name[8];
        if (!KeyName(key, false, name)) continue;
        ++named;
        EXPECT_EQ(scenario::KeyByName(name), key) << name;
    }
    EXPECT_EQ(named, 26 + 10 + 24 + 3 + 4 + 4);
    char name[8];
    EXPECT_TRUE(KeyName(kAlt, true, name));
    EXPECT_STREQ(name, "ralt");
    EXPECT_TRUE(KeyName(39, true, name));
    EXPECT_STREQ(name, "right");
}

// --- commands, time ---

// The time that the plug-in takes itself, it takes in a replay as well.
TEST_F(Recordings, TellHowMuchTimeWentByBetweenCommands) {
    now_ += 30;
    during_ = [this] { now_ += 500; };
    Move(1, 1);
    now_ += 20;
    Command(10);
    now_ += 7;
    during_ = [this] { now_ += 100; };
    Command(10);
    EXPECT_STREQ(Lines(),
                 "move screen 1 1 -> pass; clock +50; command 10 -> 1; clock +7; "
                 "command 10 -> 1");
    during_ = [this] {
        now_ += 200;
        Move(2, 1);
    };
    Command(21);
    now_ += 3;
    Command(10);
    EXPECT_THAT(Lines(), HasSubstr("; clock +3; "));
}

TEST_F(Recordings, ExpectNothingOfAnEventWithOthersInIt) {
    during_ = [this] {
        Move(3, 3);
        Mouse(Input::kDown, Button::kLeft, 3, 3, true);
    };
    Command(21, 0);
    EXPECT_STREQ(Lines(), "command 21; move screen 3 3 -> pass; down left -> swallow");
}

// It asks twice, unless the plug-in keeps what it looks at; which of the answers comes first is not
// what the event came to.
TEST_F(Recordings, TellAHostThatPeeks) {
    const auto peek = [this](const Input& input, bool swallowed) {
        recorder_.BeforePeek(state_, now_);
        state_.mode = 200, state_.modes = 2;
        recorder_.AfterPeek(input, swallowed, state_, now_);
    };
    peek({Input::kMove, 0, false, 3, 3}, false);
    EXPECT_STREQ(Lines(), "peek on");
    Move(3, 3);
    EXPECT_STREQ(Lines(), "move screen 3 3");
    peek({Input::kDown, 0, false, 3, 3}, true);
    EXPECT_STREQ(Lines(), "down left");
    peek({Input::kKeyDown, 'Q'}, true);
    EXPECT_STREQ(Lines(), "key down f24");
    Sends({{Input::kUp, 0}});
    peek({Input::kUp, 0, false, 3, 3}, true);
    EXPECT_STREQ(Lines(), "");
}

TEST_F(Recordings, LoseAMoveOfThePlugInsThatTheMouseMovesOn) {
    Sends({{Input::kMove, 0, false, 30, 40}});
    Sends({{Input::kKeyUp, kAlt}});
    Key(kAlt, true);
    EXPECT_STREQ(Lines(), "");
}

// --- the state of the host ---

TEST_F(Recordings, TellWhatTheHostBecameBeforeTheNextEvent) {
    Row("view viewport.user *") = 1;
    Row("* trackview") = 1;
    Row("action 0 40105 *") = 0;
    Row("button 50027 *") = 1;
    state_.mode = 1;
    Move(1, 1);
    EXPECT_STREQ(Lines(),
                 "mode stack 1; view viewport.user persp; open trackview; "
                 "action 0 40105 off; move screen 1 1 -> pass");
    Move(2, 1);
    EXPECT_STREQ(Lines(), "move screen 2 1 -> pass");
}

TEST_F(Recordings, DoNotTellWhatThePlugInDid) {
    during_ = [this] {
        state_.mode = 200;
        state_.modes = 2;
        Row("action 0 40105 *") = 0;
    };
    Mouse(Input::kDown, Button::kRight, 0, 0, true);
    Lines();
    Move(1, 1);
    EXPECT_STREQ(Lines(), "move screen 1 1 -> pass");
    state_.mode = 300;
    state_.modes = 3;
    Move(2, 2);
    EXPECT_STREQ(Lines(), "mode stack 6 200 300; move screen 2 2 -> pass");
}

// What the host made of input that the plug-in sent is told with the user's next event, as it is
// then.
TEST_F(Recordings, TellLaterWhatCameOfInjectedInput) {
    Sends({{Input::kDown, 0}, {Input::kUp, 0}});
    Mouse(Input::kDown, Button::kLeft, 0, 0);
    Row("subobject *") = 1;
    state_.mode = 2;
    during_ = [this] { state_.mode = 3; };
    Mouse(Input::kUp, Button::kLeft, 0, 0);
    EXPECT_STREQ(Lines(), "");
    Move(1, 1);
    EXPECT_STREQ(Lines(), "mode stack 3; subobject on; move screen 1 1 -> pass");
}

TEST_F(Recordings, TellTheStateBeforeAKeyThatWasKeptAndNotWhatItDid) {
    Row("subobject *") = 1;
    during_ = [this] { Row("action 0 40074 *") = 1; };
    Key('W', false, true);
    EXPECT_STREQ(Lines(), "subobject on; key down f24 -> swallow");
    Move(1, 1);
    EXPECT_STREQ(Lines(), "move screen 1 1 -> pass");
}

TEST_F(Recordings, SayNothingAboutWhatNobodyKnows) {
    Row("action 0 40105 *") = kNotTold;
    Move(1, 1);
    EXPECT_STREQ(Lines(), "move screen 1 1 -> pass");
    Row("action 0 40105 *") = 1;
    Move(2, 1);
    EXPECT_STREQ(Lines(), "action 0 40105 on; move screen 2 1 -> pass");
}

TEST_F(Recordings, SayNothingAboutWhatNobodyKnowsAnyMore) {
    Sends({{Input::kDown, 0}});
    Row("action 0 40105 *") = 0;
    Mouse(Input::kDown, Button::kLeft, 0, 0);
    Row("action 0 40105 *") = kNotTold;
    Move(1, 1);
    EXPECT_STREQ(Lines(), "move screen 1 1 -> pass");
}

TEST_F(Recordings, FollowTheStackOfTools) {
    state_ = UsualState();
    state_.mode = 1, state_.modes = 3;  // what lies below is not seen
    Move(1, 0);
    state_.mode = 1, state_.modes = 2;
    Move(2, 0);
    state_.mode = -1, state_.modes = 0;
    Move(3, 0);
    EXPECT_STREQ(Lines(),
                 "mode stack 6 6 1; move screen 1 0 -> pass; mode stack 6 1; "
                 "move screen 2 0 -> pass; mode none; move screen 3 0 -> pass");
}

TEST_F(Recordings, NameObjectsInTheOrderOfTheirSelection) {
    const char objects[6] = {};
    recorder_.Name(&objects[5], 2);  // its own name is Cone001
    const auto select = [&](std::vector<int> which, int all) {
        state_.selected = all;
        std::fill(std::begin(state_.objects), std::end(state_.objects), nullptr);
        for (size_t i = 0; i < which.size(); ++i)
            state_.objects[i] = &objects[which[i]];
        Move(state_.selected + 10 * all + which.front(), 1);
        const std::string lines = Lines();
        return lines.substr(0, lines.find(';'));
    };
    EXPECT_EQ(select({3, 1}, 2), "select Box001 Sphere001");
    EXPECT_EQ(select({1}, 1), "select Sphere001");
    EXPECT_EQ(select({5, 4}, 2), "select Cone001 Torus001");
    EXPECT_EQ(select({3, 0}, 2), "select Box001");
    EXPECT_EQ(select({0}, 7), "select Box001") << "something is selected";
    state_.selected = 0;
    std::fill(std::begin(state_.objects), std::end(state_.objects), nullptr);
    Move(0, 0);
    EXPECT_STREQ(Lines(), "select none; move screen 0 0 -> pass");
}

// --- the beginning and the end ---

TEST_F(Recordings, BeginWithWhatTheScenarioNeeds) {
    Row("lock viewport.front *") = 1;
    g_text.clear();
    recorder_.Begin(Take, 0);
    recorder_.Release(13900);
    recorder_.Screen(0, 0, 1920, 1080);
    recorder_.Screen(-1280, 0, 2560, 1024);
    recorder_.KeptSetting({"useMayaStyle", true});
    recorder_.KeptSetting({"slowZooming", false});
    recorder_.SwappedButtons();
    recorder_.HeldKey(kShift, true);
    recorder_.Start(12, -3, state_);
    EXPECT_STREQ(Lines(),
                 "# A recording of KarvelMax; release 13900; screen 1920x1080; "
                 "screen -1280,0 2560x1024; ini useMayaStyle=1; ini slowZooming=; "
                 "swap on; key down rshift; move screen 12 -3; lock viewport.front on; "
                 "start");
}

TEST_F(Recordings, EndAfterTenMinutes) {
    now_ += kLongestMs;
    Move(1, 1);
    EXPECT_EQ(recorder_.Ended(), End::kNone);
    now_ += 1;
    Lines();
    Move(2, 1);
    EXPECT_EQ(recorder_.Ended(), End::kTime);
    Move(3, 1);
    Command(7);
    EXPECT_STREQ(Lines(), "# ended after ten minutes");
}

TEST_F(Recordings, EndBeforeTenMegabytesAreFull) {
    size_t written = 0;
    for (int i = 1; recorder_.Ended() == End::kNone; ++i) {
        Move(i, 1);
        written += g_text.size();
        if (recorder_.Ended() == End::kNone) g_text.clear();
    }
    EXPECT_EQ(recorder_.Ended(), End::kSize);
    EXPECT_LE(recorder_.Written(), kLargest);
    EXPECT_GT(recorder_.Written(), kLargest - 200);
    EXPECT_THAT(g_text, testing::EndsWith("# ended after ten megabytes\r\n"));
}

TEST_F(Recordings, EndWhenTheDiskIsFull) {
    g_room = 60;
    for (int i = 1; i < 10; ++i)
        Move(i, 1);
    EXPECT_EQ(recorder_.Ended(), End::kDisk);
    EXPECT_STREQ(Lines(), "move screen 1 1 -> pass");
}

TEST_F(Recordings, EndWhenTheUserWantsIt) {
    Row("subobject *") = 1;
    recorder_.Finish(state_, now_);
    recorder_.Stop(End::kTime);
    Move(1, 1);
    EXPECT_EQ(recorder_.Ended(), End::kAsked);
    EXPECT_STREQ(Lines(), "subobject on; # ended");
}

// Every line that can come is one of the language.
TEST_F(Recordings, AreScenarios) {
    g_text.clear();
    now_ = 0;
    recorder_.Begin(Take, now_);
    recorder_.Release(13900);
    recorder_.Screen(-10, 0, 2560, 1024);
    recorder_.KeptSetting({"slowZooming", false});
    recorder_.SwappedButtons();
    recorder_.HeldKey(kAlt, false);
    recorder_.Start(7, 8, state_);
    const char objects[kObjects] = {};
    for (int value : {1, 0, 2}) {
        for (size_t i = 0; i < kRows; ++i)
            if (kStateRows[i].words[value]) state_.rows[i] = static_cast<signed char>(value);
        state_.mode = state_.modes = value;
        state_.selected = value;
        state_.objects[value] = &objects[value];
        for (int button = 0; button < 3; ++button)
            for (const auto kind : {Input::kDown, Input::kDownAgain, Input::kUp})
                Event({kind, button, false, button, -value});
        for (int key = 1; key < 256; ++key) {
            Key(key, false);
            now_ += 1;
            Command(key & 31);
            Key(key, true, true);
            Key(key, false, true, true);
        }
    }
    recorder_.BeforePeek(state_, now_);
    recorder_.AfterPeek({}, false, state_, now_);
    recorder_.Stop(End::kAsked);
    scenario::Vocabulary all;
    all.is_window = all.is_object = all.is_fault =
        all.is_global = [](std::string_view) { return true; };
    all.is_action = [](unsigned long, int) { return true; };
    scenario::Scenario read;
    scenario::Mistake mistake;
    EXPECT_TRUE(scenario::Parse(g_text, all, &read, &mistake)) << mistake.message;
    EXPECT_GT(read.commands.size(), 2000u);
    EXPECT_EQ(read.caption, "A recording of KarvelMax");
    EXPECT_EQ(scenario::MissingIn(read), "");
}

}  // namespace
