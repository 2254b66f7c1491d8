// The two hook procedures themselves: whom the mouse hook asks, in which order, what either makes
// of the hook code, and the records of input that are prepared for them. All that they ask is
// played here.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "assists/gizmo_and_lock.h"
#include "assists/pixel_nudge.h"
#include "assists/sticky_snap.h"
#include "hooks/keyboard_hook.h"
#include "hooks/mouse_hook.h"
#include "host/host.h"
#include "host/interaction_mode.h"
#include "input/input_records.h"
#include "navigation/gesture_moves.h"
#include "navigation/gesture_rules.h"
#include "navigation/gesture_state.h"
#include "navigation/modifier_cursor.h"
#include "navigation/quick_transform.h"
#include "navigation/sculpt_redirect.h"
#include "navigation/selection_clicks.h"
#include "navigation/selection_moves.h"
#include "navigation/time_scrub.h"
#include "resources/module.h"
#include "settings/plugin_settings.h"

namespace {

using Names = std::vector<std::string>;

Names g_asked;
std::string g_taker;  // the one that takes the message
WindowKind g_kind = kWindowViewport;
Answer g_redirect = Answer::kNotMine;
WindowKind g_kind_after_redirect = kWindowViewport;
Answer g_press = Answer::kNotMine;
bool g_scrub_on = false;
bool g_may_move_select = true;
bool g_shift = false;
bool g_alt = false;
bool g_host_answers_alt = false;

struct PassedOn {
    int code;
    WPARAM first;
    LPARAM second;
    friend bool operator==(const PassedOn&, const PassedOn&) = default;
};
std::vector<PassedOn> g_passed_on;
constexpr LRESULT kAnswerOfTheNext = 77;
LPARAM g_extra_info = 0;
const HWND kWindow = reinterpret_cast<HWND>(0x1234);

Answer Takes(const char* name) {
    g_asked.push_back(name);
    return g_taker == name ? Answer::kConsumed : Answer::kNotMine;
}

LRESULT WINAPI PlayedCallNextHook(HHOOK hook, int code, WPARAM first, LPARAM second) {
    EXPECT_EQ(hook, nullptr);
    g_passed_on.push_back({code, first, second});
    return kAnswerOfTheNext;
}

SHORT WINAPI PlayedKeyState(int key) {
    const bool down = (g_alt && key == VK_MENU) || (g_shift && key == VK_SHIFT);
    return down ? static_cast<SHORT>(0x8000) : SHORT{0};
}

BOOL WINAPI PlayedScreenToClient(HWND window, POINT* point) {
    EXPECT_EQ(window, kWindow);
    point->x /= 10;
    point->y /= 10;
    return TRUE;
}

// Another answer each time, so that it shows which record asked when.
LPARAM WINAPI PlayedExtraInfo() {
    return g_extra_info++;
}

}  // namespace

// The import slots of the Win32 calls that are played.
extern "C" {
void* __imp_CallNextHookEx = reinterpret_cast<void*>(PlayedCallNextHook);
void* __imp_GetAsyncKeyState = reinterpret_cast<void*>(PlayedKeyState);
void* __imp_ScreenToClient = reinterpret_cast<void*>(PlayedScreenToClient);
void* __imp_GetMessageExtraInfo = reinterpret_cast<void*>(PlayedExtraInfo);
}

PluginSettings g_settings;
int g_heldSnapSticky = 0;
int g_selectionLockRequests = 0;

WindowKind ClassifyWindow(HWND window) {
    EXPECT_EQ(window, kWindow);
    g_asked.push_back("kind");
    return g_kind;
}
int g_quickXform = 0;
int g_sculptRedirect = 0;

Answer RedirectToSculpt(MouseEvent& event) {
    g_asked.push_back("redirect");
    EXPECT_EQ(event.kind, g_kind);
    event.kind = g_kind_after_redirect;
    return g_redirect;
}
void ExpectTheMessage(const MouseMessage& message) {
    EXPECT_EQ(message.screen.x, 30);
    EXPECT_EQ(message.screen.y, 40);
    EXPECT_EQ(message.hit_test, 5u);
    EXPECT_EQ(message.window, kWindow);
}
void ExpectTheEvent(const MouseEvent& event) {
    ExpectTheMessage(event);
    EXPECT_EQ(event.client.x, 3);
    EXPECT_EQ(event.client.y, 4);
}
Answer ScrubTime(const MouseMessage& message) {
    ExpectTheMessage(message);
    return Takes("scrub");
}
bool IsTimeScrubOn() {
    return g_scrub_on;
}
bool MayMoveSelect(UINT hit_test) {
    EXPECT_EQ(hit_test, 5u);
    return g_may_move_select;
}
void ReleaseTimeScrub() {}
Answer ApplyPressRules(const MouseEvent&) {
    g_asked.push_back("press rules");
    return g_press;
}
Answer QuickTransform(const MouseEvent& event) {
    ExpectTheEvent(event);
    return Takes("quick transform");
}
Answer ApplyReleaseRules(const MouseEvent&) {
    return Takes("release rules");
}
Answer MoveGesture(const MouseMessage& move) {
    ExpectTheMessage(move);
    return Takes("gesture move");
}
Answer EmulateSelectingClick(const MouseEvent&) {
    return Takes("click");
}
Answer EmulateSelectingMove(const MouseEvent& event) {
    ExpectTheEvent(event);
    return Takes("move");
}
void SetSelectionLock(bool, int, bool) {}
void EndNudgeSeries() {}
void SetStickySnap(int, bool) {
    g_heldSnapSticky = 0;
}
HCURSOR ChooseModifierCursor() {
    return nullptr;
}
void ShowArrowCursor() {}

namespace host {
std::optional<int> CurrentModeId() {
    return std::nullopt;
}
bool IsSubObjectEditing() {
    return false;
}
std::optional<bool> IsSelectEnabled() {
    return std::nullopt;
}
bool AnswersAltInViewports() {
    return g_host_answers_alt;
}
}  // namespace host

namespace {

class HookProcedures : public testing::Test {
protected:
    void SetUp() override {
        g_asked.clear();
        g_passed_on.clear();
        g_taker.clear();
        g_kind = kWindowViewport;
        g_kind_after_redirect = kWindowViewport;
        g_redirect = Answer::kNotMine;
        g_press = Answer::kNotMine;
        g_alt = false;
        g_host_answers_alt = false;
        g_shift = false;
        g_scrub_on = false;
        g_may_move_select = true;
        g_sculptRedirect = 0;
        g_settings = {};
        g_settings.useMayaStyle = 1;
        g_heldSnapSticky = 0;
        g_selectionLockRequests = 0;
        g_quickXform = 0;
        g_orbitActive = 0;
        g_zoomActive = 0;
        g_panActive = 0;
        g_navLocked = 0;
    }

    Names AskedAfterRedirectTo(WindowKind kind, UINT message) {
        g_kind_after_redirect = kind;
        redirect_changes_kind_ = true;
        return Asked(message);
    }

    // Whom the mouse hook asked about the message.
    Names Asked(UINT message, int code = HC_ACTION) {
        g_asked.clear();
        g_passed_on.clear();
        hook_.pt = {30, 40};
        hook_.hwnd = kWindow;
        hook_.wHitTestCode = 5;
        g_kind_after_redirect = redirect_changes_kind_ ? g_kind_after_redirect : g_kind;
        answer_ = MouseHookProc(code, message, reinterpret_cast<LPARAM>(&hook_));
        if (answer_ == kAnswerOfTheNext) {
            EXPECT_EQ(g_passed_on,
                      (std::vector<PassedOn>{{code, message, reinterpret_cast<LPARAM>(&hook_)}}));
        } else {
            EXPECT_EQ(answer_, 1);
            EXPECT_TRUE(g_passed_on.empty());
        }
        return g_asked;
    }
    bool Swallowed() const { return answer_ == 1; }

private:
    MOUSEHOOKSTRUCT hook_ = {};
    bool redirect_changes_kind_ = false;
    LRESULT answer_ = 0;
};

const Names kAll = {"kind", "redirect", "scrub", "quick transform", "release rules", "click"};
const Names kAllButSelection(kAll.begin(), kAll.end() - 1);

TEST_F(HookProcedures, EveryUseIsAskedInOrderUntilOneTakesTheMessage) {
    EXPECT_EQ(Asked(WM_LBUTTONUP), kAll);
    EXPECT_FALSE(Swallowed());
    for (size_t i = 2; i < kAll.size(); ++i) {
        g_taker = kAll[i];
        EXPECT_EQ(Asked(WM_LBUTTONUP), Names(kAll.begin(), kAll.begin() + static_cast<int>(i) + 1));
        EXPECT_TRUE(Swallowed()) << g_taker;
    }
}

// Only presses and releases over client areas and moves have a meaning.
TEST_F(HookProcedures, OtherMessagesArePassedOnUnasked) {
    g_alt = true;
    for (const UINT message : {UINT{WM_NCMOUSEMOVE}, UINT{WM_NCLBUTTONDOWN}, UINT{WM_NCMBUTTONUP},
                               UINT{WM_MOUSEWHEEL}, UINT{WM_XBUTTONDOWN}, UINT{0x20E}}) {
        EXPECT_EQ(Asked(message), Names{}) << message;
        EXPECT_FALSE(Swallowed());
    }
}

TEST_F(HookProcedures, MovesSelectInTheirOwnWay) {
    EXPECT_EQ(Asked(WM_MOUSEMOVE), (Names{"kind", "move"}));
    EXPECT_FALSE(Swallowed());
    g_taker = "move";
    EXPECT_EQ(Asked(WM_MOUSEMOVE), (Names{"kind", "move"}));
    EXPECT_TRUE(Swallowed());
    for (const WindowKind kind : {kWindowOther, kWindowSchematicGraph}) {
        g_kind = kind;
        EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{"kind"});
        EXPECT_FALSE(Swallowed());
    }
    g_may_move_select = false;
    EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{});
}

TEST_F(HookProcedures, AMoveInABrushStrokeIsPassedOnUnasked) {
    g_sculptRedirect = 1;
    g_scrub_on = true;
    g_orbitActive = 1;
    EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{});
    EXPECT_FALSE(Swallowed());
}

TEST_F(HookProcedures, AMoveIsAScrubsBeforeItIsAnybodyElses) {
    g_scrub_on = true;
    g_taker = "scrub";
    EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{"scrub"});
    EXPECT_TRUE(Swallowed());
    // A host without a time slider.
    g_taker = "";
    EXPECT_EQ(Asked(WM_MOUSEMOVE), (Names{"scrub", "kind", "move"}));
    g_orbitActive = 1;
    EXPECT_EQ(Asked(WM_MOUSEMOVE), (Names{"scrub", "gesture move"}));
}

TEST_F(HookProcedures, AMoveInAQuickTransformMattersWithShiftAlone) {
    g_quickXform = 1;
    EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{});
    g_shift = true;
    EXPECT_EQ(Asked(WM_MOUSEMOVE), (Names{"kind", "quick transform"}));
    EXPECT_FALSE(Swallowed());
    g_navLocked = 1;
    EXPECT_EQ(Asked(WM_MOUSEMOVE), (Names{"kind", "quick transform", "gesture move"}));
    g_taker = "quick transform";
    EXPECT_EQ(Asked(WM_MOUSEMOVE), (Names{"kind", "quick transform"}));
    EXPECT_TRUE(Swallowed());
}

TEST_F(HookProcedures, TheRedirectAnswersForGood) {
    g_redirect = Answer::kConsumed;
    EXPECT_EQ(Asked(WM_MBUTTONDOWN), (Names{"kind", "redirect"}));
    EXPECT_TRUE(Swallowed());
    g_redirect = Answer::kPassed;
    EXPECT_EQ(Asked(WM_LBUTTONDOWN), (Names{"kind", "redirect"}));
    EXPECT_FALSE(Swallowed());
}

TEST_F(HookProcedures, AViewThatAScriptChangedHasItsNewKind) {
    EXPECT_EQ(AskedAfterRedirectTo(kWindowOther, WM_MBUTTONUP), kAllButSelection);
    g_kind = kWindowOther;
    EXPECT_EQ(AskedAfterRedirectTo(kWindowViewport, WM_MBUTTONUP), kAll);
}

TEST_F(HookProcedures, PressesWithAltAskTheRulesFirst) {
    g_alt = true;
    Names with_rules = kAll;
    with_rules.insert(with_rules.begin() + 3, "press rules");
    EXPECT_EQ(Asked(WM_RBUTTONDOWN), with_rules);
    g_press = Answer::kConsumed;
    EXPECT_EQ(Asked(WM_RBUTTONDOWN), Names(with_rules.begin(), with_rules.begin() + 4));
    EXPECT_TRUE(Swallowed());
    // A handler that declined is followed by the release rules at once.
    g_press = Answer::kPassed;
    EXPECT_EQ(Asked(WM_RBUTTONDOWN),
              (Names{"kind", "redirect", "scrub", "press rules", "release rules", "click"}));
    EXPECT_FALSE(Swallowed());
    EXPECT_EQ(Asked(WM_RBUTTONUP), kAll);
    g_kind = kWindowOther;
    EXPECT_EQ(Asked(WM_RBUTTONDOWN), kAllButSelection);
}

// A press that is the host's begins neither a gesture nor a quick transform. One within a gesture,
// and one in an editor, is ours as ever.
TEST_F(HookProcedures, PressesWithAltInViewportsMayBeTheHosts) {
    g_alt = true;
    g_host_answers_alt = true;
    g_press = Answer::kConsumed;
    const Names left_alone = {"kind", "redirect", "scrub", "release rules", "click"};
    const Names answered = {"kind", "redirect", "scrub", "press rules"};
    for (const WindowKind kind : {kWindowViewport, kWindowViewportLocked}) {
        g_kind = kind;
        for (const UINT press : {WM_LBUTTONDOWN, WM_MBUTTONDOWN, WM_RBUTTONDBLCLK}) {
            EXPECT_EQ(Asked(press), left_alone) << press;
            EXPECT_FALSE(Swallowed());
        }
        for (int* const running : {&g_orbitActive, &g_zoomActive, &g_panActive, &g_navLocked}) {
            *running = 1;
            EXPECT_EQ(Asked(WM_LBUTTONDOWN), answered);
            *running = 0;
        }
        EXPECT_EQ(Asked(WM_MBUTTONUP), kAll);
    }
    for (const WindowKind kind : {kWindowUnwrapView, kWindowTrackBar, kWindowSchematicGraph}) {
        g_kind = kind;
        EXPECT_EQ(Asked(WM_MBUTTONDOWN), answered);
    }
    g_alt = false;
    g_kind = kWindowViewport;
    EXPECT_EQ(Asked(WM_MBUTTONDOWN), kAll);
}

TEST_F(HookProcedures, AQuickTransformShutsTheRulesAndTheSelection) {
    g_alt = true;
    g_quickXform = 1;
    EXPECT_EQ(Asked(WM_LBUTTONDOWN), Names(kAll.begin(), kAll.end() - 2));
}

TEST_F(HookProcedures, MovesOfAGestureGoToTheGestureAlone) {
    for (int* const running : {&g_orbitActive, &g_zoomActive, &g_panActive, &g_navLocked}) {
        *running = 1;
        g_taker.clear();
        EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{"gesture move"});
        EXPECT_FALSE(Swallowed());
        *running = 0;
    }
    g_navLocked = 1;
    g_taker = "gesture move";
    EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{"gesture move"});
    EXPECT_TRUE(Swallowed());
}

TEST_F(HookProcedures, NoSelectionDuringOrbitZoomAndPanNorInTheSchematicView) {
    for (int* const running : {&g_orbitActive, &g_zoomActive, &g_panActive}) {
        *running = 1;
        EXPECT_EQ(Asked(WM_LBUTTONDOWN), kAllButSelection);
        *running = 0;
    }
    for (const WindowKind kind : {kWindowOther, kWindowSchematicGraph}) {
        g_kind = kind;
        EXPECT_EQ(Asked(WM_LBUTTONDOWN), kAllButSelection);
    }
}

TEST_F(HookProcedures, TheHookCodeIsNotLookedAt) {
    for (const int code : {-1, HC_ACTION, HC_NOREMOVE}) {
        g_taker = "scrub";
        EXPECT_EQ(Asked(WM_LBUTTONUP, code), (Names{"kind", "redirect", "scrub"})) << code;
        EXPECT_TRUE(Swallowed()) << code;

        g_heldSnapSticky = 2;
        EXPECT_EQ(KeyboardProc(code, 'Q', 0), 1) << code;
        EXPECT_EQ(KeyboardProc(code, 'Q', static_cast<LPARAM>(0x80000000)), 1) << code;
        EXPECT_EQ(g_heldSnapSticky, 0) << code;
    }
}

TEST_F(HookProcedures, WithNavigationOffEverythingIsPassedOnUnasked) {
    g_settings.useMayaStyle = 0;
    g_taker = "scrub";
    g_heldSnapSticky = 2;
    for (const int code : {-1, HC_ACTION}) {
        EXPECT_EQ(Asked(WM_MOUSEMOVE, code), Names{});
        EXPECT_FALSE(Swallowed());
        g_passed_on.clear();
        EXPECT_EQ(KeyboardProc(code, 'Q', 5), kAnswerOfTheNext);
        EXPECT_EQ(g_passed_on, (std::vector<PassedOn>{{code, 'Q', 5}}));
    }
}

TEST_F(HookProcedures, AKeyThatNothingTakesIsPassedOnAsItCame) {
    for (const int code : {-1, HC_ACTION, HC_NOREMOVE}) {
        g_passed_on.clear();
        EXPECT_EQ(KeyboardProc(code, 'Q', 5), kAnswerOfTheNext);
        EXPECT_EQ(g_passed_on, (std::vector<PassedOn>{{code, 'Q', 5}}));
    }
}

TEST_F(HookProcedures, OnlyTheTransitionBitTellsARelease) {
    // A repeat count, the extended-key and previous-state bits; the key is down.
    g_heldSnapSticky = 2;
    EXPECT_EQ(KeyboardProc(HC_ACTION, 'Q', 0x41230007), 1);
    EXPECT_EQ(g_heldSnapSticky, 2);
    EXPECT_EQ(KeyboardProc(HC_ACTION, 'Q', static_cast<LPARAM>(0xC1230007)), 1);
    EXPECT_EQ(g_heldSnapSticky, 0);
}

TEST(InputRecords, AreFilledOnce) {
    // Each asks for the extra information at its own making, one after the other.
    g_extra_info = 0x1234;
    ULONG_PTR extra_info = 0x1234;
    BuildInputRecords();
    struct Key {
        const INPUT& record;
        WORD key;
        DWORD flags;
    };
    for (const Key& expected :
         {Key{kInAltDown, 18, 0}, Key{kInAltUp, 18, 2}, Key{kInCtrlDown, 17, 0},
          Key{kInCtrlUp, 17, 2}, Key{kInRCtrlDown, 163, 1}, Key{kInRCtrlUp, 163, 3},
          Key{kInLShiftDown, 160, 0}, Key{kInLShiftUp, 160, 2}, Key{kInRShiftDown, 161, 0},
          Key{kInRShiftUp, 161, 2}}) {
        EXPECT_EQ(expected.record.type, static_cast<DWORD>(INPUT_KEYBOARD));
        EXPECT_EQ(expected.record.ki.wVk, expected.key);
        EXPECT_EQ(expected.record.ki.wScan, 0);
        EXPECT_EQ(expected.record.ki.dwFlags, expected.flags);
        EXPECT_EQ(expected.record.ki.time, 0u);
        EXPECT_EQ(expected.record.ki.dwExtraInfo, extra_info++);
    }
    struct Button {
        const INPUT& record;
        DWORD flags;
    };
    for (const Button& expected :
         {Button{kInLeftDown, 2}, Button{kInLeftUp, 4}, Button{kInRightDown, 8},
          Button{kInRightUp, 16}, Button{kInMiddleDown, 32}, Button{kInMiddleUp, 64}}) {
        EXPECT_EQ(expected.record.type, static_cast<DWORD>(INPUT_MOUSE));
        EXPECT_EQ(expected.record.mi.dx, 0);
        EXPECT_EQ(expected.record.mi.dy, 0);
        EXPECT_EQ(expected.record.mi.mouseData, 0u);
        EXPECT_EQ(expected.record.mi.dwFlags, expected.flags);
        EXPECT_EQ(expected.record.mi.time, 0u);
        EXPECT_EQ(expected.record.mi.dwExtraInfo, extra_info++);
    }
}

}  // namespace
