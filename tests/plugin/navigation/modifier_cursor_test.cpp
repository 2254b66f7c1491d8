// Which of the plug-in's cursors is shown, for every state of the keys, of the gestures and of the
// click that is being replayed; in which modes it announces a selection; and what the questions
// about the keys keep for each other.

#include "navigation/modifier_cursor.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>

#include "host/selecting_mode.h"
#include "input/keys.h"
#include "navigation/gesture_state.h"
#include "navigation/selection_clicks.h"
#include "resources/module.h"

int g_selCtrl = 0;
int g_selShift = 0;
int g_selCtrlShift = 0;

namespace {

constexpr SHORT kDown = static_cast<SHORT>(0x8000);
constexpr SHORT kPressedBefore = 1;

bool g_edits_sub_objects = false;
std::optional<bool> g_button_enabled;

SHORT g_alt = 0;
SHORT g_ctrl = 0;
SHORT g_shift = 0;
bool g_loads = true;

std::string g_asked;

SHORT WINAPI PlayedKeyState(int key) {
    g_asked += key == VK_MENU ? 'a' : key == VK_CONTROL ? 'c' : 's';
    switch (key) {
        case VK_MENU: return g_alt;
        case VK_CONTROL: return g_ctrl;
        case VK_SHIFT: return g_shift;
        default: ADD_FAILURE() << "asked for key " << key; return 0;
    }
}

int NumberOf(HCURSOR cursor) {
    return static_cast<int>(reinterpret_cast<INT_PTR>(cursor));
}

}  // namespace

extern "C" {
void* __imp_GetAsyncKeyState = reinterpret_cast<void*>(PlayedKeyState);
}

namespace host {

bool IsSubObjectEditing() {
    return g_edits_sub_objects;
}
std::optional<bool> IsSelectEnabled() {
    return g_button_enabled;
}

}  // namespace host

// Before any test has run.
const bool g_was_still = !IsGestureActive() && g_navKind == kWindowOther && g_heldButtons == 0;
const bool g_no_key_was_seen = CtrlState() == 0 && ShiftState() == 0;

HCURSOR LoadModuleCursor(int id) {
    EXPECT_NE(id, 0);
    return g_loads ? reinterpret_cast<HCURSOR>(static_cast<INT_PTR>(id)) : nullptr;
}

namespace {

struct State {
    bool alt, ctrl, shift;
    bool click_ctrl, click_shift, click_both;
    bool orbit, zoom, pan, refused;

    explicit State(unsigned bits)
        : alt(bits & 1),
          ctrl(bits & 2),
          shift(bits & 4),
          click_ctrl(bits & 8),
          click_shift(bits & 16),
          click_both(bits & 32),
          orbit(bits & 64),
          zoom(bits & 128),
          pan(bits & 256),
          refused(bits & 512) {}

    void Set() const {
        g_alt = alt ? kDown : SHORT{0};
        g_ctrl = ctrl ? kDown : SHORT{0};
        g_shift = shift ? kDown : SHORT{0};
        g_selCtrl = click_ctrl;
        g_selShift = click_shift;
        g_selCtrlShift = click_both;
        g_orbitActive = orbit;
        g_zoomActive = zoom;
        g_panActive = pan;
        g_navLocked = refused;
    }

    // The first line that holds decides; 0: no cursor of our own.
    int Cursor() const {
        if (click_both || (shift && ctrl && !alt)) return 111;
        if (click_shift || (shift && !alt)) return 112;
        if (click_ctrl || (ctrl && !alt)) return 110;
        if (orbit) return 115;
        if (zoom) return 118;
        if (pan) return 117;
        return refused ? 120 : 0;
    }
};
constexpr unsigned kStates = 1024;

class ModifierCursor : public testing::Test {
protected:
    void SetUp() override { g_loads = true; }
    void TearDown() override { State(0).Set(); }
};

TEST_F(ModifierCursor, NoGestureRunsFromTheLoadingOn) {
    EXPECT_TRUE(g_was_still);
    EXPECT_TRUE(g_no_key_was_seen);
}

TEST_F(ModifierCursor, AQuestionThatIsNoneLeavesAPressToTheNext) {
    struct Key {
        SHORT* state;
        SHORT (*question)();
        bool (*look)();
    };
    for (const Key& key :
         {Key{&g_shift, ShiftState, MayShiftMatter}, Key{&g_ctrl, CtrlState, MayShiftOrCtrlMatter},
          Key{&g_shift, ShiftState, MayModifiersMatter}}) {
        State(0).Set();
        EXPECT_FALSE(key.look());
        *key.state = kPressedBefore;
        EXPECT_TRUE(key.look());
        *key.state = 0;
        EXPECT_TRUE(key.look());
        EXPECT_EQ(key.question(), kPressedBefore);
        EXPECT_EQ(key.question(), 0);
        EXPECT_FALSE(key.look());
        // One that is down matters, and leaves nothing behind.
        *key.state = kDown;
        EXPECT_TRUE(key.look());
        EXPECT_EQ(key.question(), kDown);
        *key.state = static_cast<SHORT>(kDown | kPressedBefore);
        EXPECT_TRUE(key.look());
        *key.state = kDown;
        EXPECT_EQ(key.question(), static_cast<SHORT>(kDown | kPressedBefore));
        EXPECT_EQ(key.question(), kDown);
        *key.state = 0;
        EXPECT_FALSE(key.look());
        EXPECT_EQ(key.question(), 0);
    }
}

TEST_F(ModifierCursor, ObjectModesSelectAndOthersWhileSubObjectsAreEdited) {
    const std::set<int> never = {0x103CE, 0x11000, 0x11001};
    for (const int mode : {-1, 0, 1, 2, 6, 11, 12, 13, 200, 300, 9247, 65743, 66509, 66511, 69631,
                           69634, 0x103CE, 0x11000, 0x11001}) {
        g_edits_sub_objects = false;
        EXPECT_EQ(IsSelectingMode(mode), mode >= 1 && mode <= 12) << mode;
        g_edits_sub_objects = true;
        EXPECT_EQ(IsSelectingMode(mode), !never.contains(mode)) << mode;
    }
}

TEST_F(ModifierCursor, AButtonThatIsNotThereDoesNotSpeakAgainstTheSelectTool) {
    for (const std::optional<bool> enabled : {std::optional<bool>(), std::optional<bool>(true)}) {
        g_button_enabled = enabled;
        EXPECT_TRUE(IsSelectToolAvailable());
    }
    g_button_enabled = false;
    EXPECT_FALSE(IsSelectToolAvailable());
}

TEST_F(ModifierCursor, AltAndTheOthersAreAskedForInOrder) {
    const auto asked = [](auto question) {
        g_asked.clear();
        question();
        return g_asked;
    };
    State(0).Set();
    EXPECT_EQ(asked(MayShiftMatter), "s");
    EXPECT_EQ(asked(MayShiftOrCtrlMatter), "cs");
    EXPECT_EQ(asked(MayModifiersMatter), "csa");
    EXPECT_FALSE(MayModifiersMatter());
    g_alt = kDown;
    EXPECT_TRUE(MayModifiersMatter());
    EXPECT_FALSE(MayShiftOrCtrlMatter());
    EXPECT_TRUE(IsAltDown());
    g_alt = kPressedBefore;
    EXPECT_FALSE(IsAltDown());
    g_alt = 0;
    for (SHORT* key : {&g_ctrl, &g_shift}) {
        *key = kDown;
        EXPECT_EQ(asked(MayModifiersMatter), "cs");
        EXPECT_EQ(IsCtrlDown(), key == &g_ctrl);
        EXPECT_EQ(IsShiftDown(), key == &g_shift);
        EXPECT_EQ(IsShiftAlone(), key == &g_shift);
        *key = 0;
    }
    g_ctrl = g_shift = kDown;
    EXPECT_FALSE(IsShiftAlone());
}

TEST_F(ModifierCursor, EachStateHasItsOwn) {
    for (unsigned bits = 0; bits < kStates; ++bits) {
        const State state(bits);
        state.Set();
        EXPECT_EQ(NumberOf(ChooseModifierCursor()), state.Cursor()) << bits;
        EXPECT_EQ(NumberOf(ChooseGestureCursor()), state.Cursor()) << bits << " in a gesture";
    }
}

TEST_F(ModifierCursor, AKeyThatIsUpAgainDoesNotCount) {
    for (unsigned bits = 0; bits < kStates; ++bits) {
        const State state(bits);
        state.Set();
        for (SHORT* key : {&g_alt, &g_ctrl, &g_shift})
            *key = static_cast<SHORT>(*key | kPressedBefore);
        EXPECT_EQ(NumberOf(ChooseModifierCursor()), state.Cursor()) << bits;
        EXPECT_EQ(NumberOf(ChooseGestureCursor()), state.Cursor()) << bits << " in a gesture";
    }
}

TEST_F(ModifierCursor, OneThatCannotBeLoadedIsNone) {
    g_loads = false;
    for (const unsigned bits : {2u, 4u, 6u, 64u, 128u, 256u, 512u}) {
        State(bits).Set();
        EXPECT_EQ(ChooseModifierCursor(), nullptr) << bits;
        EXPECT_EQ(ChooseGestureCursor(), nullptr) << bits;
    }
}

}  // namespace
