// The two hook procedures themselves: whom the mouse hook asks, in which order, what either makes
// of the hook code, and the records of input that are prepared for them. All that they ask is
// played here.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "assists/gizmo_and_lock.h"
#include "assists/input_records.h"
#include "assists/keyboard_hook.h"
#include "assists/modifier_cursor.h"
#include "assists/nudge_series.h"
#include "assists/sticky_snap.h"
#include "host/host.h"
#include "navigation/gestures.h"
#include "navigation/mouse_hook.h"
#include "navigation/navigation_state.h"
#include "navigation/quick_transform.h"
#include "navigation/sculpt_redirect.h"
#include "navigation/selection_clicks.h"
#include "navigation/time_scrub.h"
#include "navigation/window_kind.h"
#include "settings/plugin_settings.h"
#include "shell/module.h"

namespace {

using Names = std::vector<std::string>;

Names g_asked;
std::string g_taker;  // the one that takes the message
WindowKind g_kind = kWindowViewport;
SculptRedirect g_redirect = SculptRedirect::kUntouched;
PressResult g_press = PressResult::kNoRule;
bool g_gesture_runs = false;
bool g_alt = false;

struct PassedOn {
    int code;
    WPARAM first;
    LPARAM second;
    friend bool operator==(const PassedOn&, const PassedOn&) = default;
};
std::vector<PassedOn> g_passed_on;
constexpr LRESULT kAnswerOfTheNext = 77;
LPARAM g_extra_info = 0;

bool Takes(const char* name) {
    g_asked.push_back(name);
    return g_taker == name;
}

LRESULT WINAPI PlayedCallNextHook(HHOOK hook, int code, WPARAM first, LPARAM second) {
    EXPECT_EQ(hook, nullptr);
    g_passed_on.push_back({code, first, second});
    return kAnswerOfTheNext;
}

SHORT WINAPI PlayedKeyState(int key) {
    return g_alt && key == VK_MENU ? static_cast<SHORT>(0x8000) : SHORT{0};
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
void* __imp_GetMessageExtraInfo = reinterpret_cast<void*>(PlayedExtraInfo);
}

PluginSettings g_settings;
int g_heldSnapSticky = 0;
int g_selectionLockRequests = 0;

WindowKind ClassifyWindow(HWND) {
    return g_kind;
}
SculptRedirect RedirectToSculpt(const MouseEvent&, int) {
    g_asked.push_back("redirect");
    return g_redirect;
}
bool DragTimeScrub(const MouseEvent&) {
    return Takes("scrub drag");
}
bool StartTimeScrub(const MouseEvent&) {
    return Takes("scrub start");
}
bool HoverTimeScrub(const MouseEvent&) {
    return Takes("armed scrub");
}
PressResult ApplyPressRules(const MouseEvent&) {
    g_asked.push_back("press rules");
    return g_press;
}
bool StartQuickTransform(const MouseEvent&, int) {
    return Takes("quick start");
}
bool EndQuickTransform(const MouseEvent&, int) {
    return Takes("quick end");
}
bool MoveQuickTransform(const MouseEvent&, int) {
    return Takes("quick move");
}
bool ApplyReleaseRules(const MouseEvent&) {
    return Takes("release rules");
}
bool IsGestureActive() {
    return g_gesture_runs;
}
bool MoveGesture(const MouseEvent&) {
    return Takes("gesture move");
}
bool EmulateSelection(const MouseEvent&, int) {
    return Takes("selection");
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
std::optional<bool> IsToolbarButtonEnabled(int) {
    return std::nullopt;
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
        g_redirect = SculptRedirect::kUntouched;
        g_press = PressResult::kNoRule;
        g_gesture_runs = false;
        g_alt = false;
        g_settings = {};
        g_settings.useMayaStyle = 1;
        g_heldSnapSticky = 0;
        g_selectionLockRequests = 0;
        g_scrubState = 0;
        g_quickXform = 0;
        g_orbitActive = 0;
        g_zoomActive = 0;
        g_panActive = 0;
    }

    // Whom the mouse hook asked about the message.
    Names Asked(UINT message, int code = HC_ACTION) {
        g_asked.clear();
        g_passed_on.clear();
        hook_.pt = {30, 40};
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
    LRESULT answer_ = 0;
};

const Names kAll = {"redirect",  "scrub drag", "scrub start",   "armed scrub", "quick start",
                    "quick end", "quick move", "release rules", "selection"};

TEST_F(HookProcedures, EveryUseIsAskedInOrderUntilOneTakesTheMessage) {
    EXPECT_EQ(Asked(WM_LBUTTONUP), kAll);
    EXPECT_FALSE(Swallowed());
    for (size_t i = 1; i < kAll.size(); ++i) {
        g_taker = kAll[i];
        EXPECT_EQ(Asked(WM_LBUTTONUP), Names(kAll.begin(), kAll.begin() + static_cast<int>(i) + 1));
        EXPECT_TRUE(Swallowed()) << g_taker;
    }
}

TEST_F(HookProcedures, TheRedirectAnswersForGood) {
    g_redirect = SculptRedirect::kSwallow;
    EXPECT_EQ(Asked(WM_MBUTTONDOWN), Names{"redirect"});
    EXPECT_TRUE(Swallowed());
    g_redirect = SculptRedirect::kPass;
    EXPECT_EQ(Asked(WM_MOUSEMOVE), Names{"redirect"});
    EXPECT_FALSE(Swallowed());
    g_redirect = SculptRedirect::kAsked;
    EXPECT_EQ(Asked(WM_MBUTTONUP), kAll);
}

TEST_F(HookProcedures, PressesWithAltAskTheRulesFirst) {
    g_alt = true;
    Names with_rules = kAll;
    with_rules.insert(with_rules.begin() + 4, "press rules");
    EXPECT_EQ(Asked(WM_RBUTTONDOWN), with_rules);
    g_press = PressResult::kConsumed;
    EXPECT_EQ(Asked(WM_RBUTTONDOWN), Names(with_rules.begin(), with_rules.begin() + 5));
    EXPECT_TRUE(Swallowed());
    // A handler that declined is followed by the release rules at once.
    g_press = PressResult::kStarted;
    EXPECT_EQ(Asked(WM_RBUTTONDOWN), (Names{"redirect", "scrub drag", "scrub start", "armed scrub",
                                            "press rules", "release rules", "selection"}));
    EXPECT_FALSE(Swallowed());
    EXPECT_EQ(Asked(WM_RBUTTONUP), kAll);
    g_kind = kWindowOther;
    EXPECT_EQ(Asked(WM_RBUTTONDOWN), Names(kAll.begin(), kAll.end() - 1));
}

TEST_F(HookProcedures, AQuickTransformShutsTheRulesAndTheSelection) {
    g_alt = true;
    g_quickXform = 1;
    EXPECT_EQ(Asked(WM_LBUTTONDOWN), Names(kAll.begin(), kAll.end() - 2));
}

TEST_F(HookProcedures, MovesOfAGestureGoToTheGestureAlone) {
    g_gesture_runs = true;
    Names moves(kAll.begin(), kAll.end() - 1);
    moves.push_back("gesture move");
    EXPECT_EQ(Asked(WM_MOUSEMOVE), moves);
    EXPECT_FALSE(Swallowed());
    g_taker = "gesture move";
    EXPECT_EQ(Asked(WM_MOUSEMOVE), moves);
    EXPECT_TRUE(Swallowed());
}

TEST_F(HookProcedures, NoSelectionDuringOrbitZoomAndPanNorInTheSchematicView) {
    const Names without_selection(kAll.begin(), kAll.end() - 1);
    for (int* const running : {&g_orbitActive, &g_zoomActive, &g_panActive}) {
        *running = 1;
        EXPECT_EQ(Asked(WM_LBUTTONDOWN), without_selection);
        *running = 0;
    }
    for (const WindowKind kind : {kWindowOther, kWindowSchematicGraph}) {
        g_kind = kind;
        EXPECT_EQ(Asked(WM_LBUTTONDOWN), without_selection);
    }
}

TEST_F(HookProcedures, TheHookCodeIsNotLookedAt) {
    for (const int code : {-1, HC_ACTION, HC_NOREMOVE}) {
        g_taker = "scrub drag";
        EXPECT_EQ(Asked(WM_MOUSEMOVE, code), (Names{"redirect", "scrub drag"})) << code;
        EXPECT_TRUE(Swallowed()) << code;

        g_heldSnapSticky = 2;
        EXPECT_EQ(KeyboardProc(code, 'Q', 0), 1) << code;
        EXPECT_EQ(KeyboardProc(code, 'Q', static_cast<LPARAM>(0x80000000)), 1) << code;
        EXPECT_EQ(g_heldSnapSticky, 0) << code;
    }
}

TEST_F(HookProcedures, WithNavigationOffEverythingIsPassedOnUnasked) {
    g_settings.useMayaStyle = 0;
    g_taker = "scrub drag";
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

// The numbers are those that bug reports and traces of the state show.
TEST_F(HookProcedures, AKeyReleasedDuringAScrubIsKeptInMindOnce) {
    struct Release {
        int before;
        int after;
    };
    for (const Release& release : {Release{1, 0}, Release{2, 3}, Release{3, 0}}) {
        g_scrubState = release.before;
        EXPECT_EQ(KeyboardProc(HC_ACTION, 'Q', static_cast<LPARAM>(0x80000000)), 1);
        EXPECT_EQ(g_scrubState, release.after) << "released in state " << release.before;
    }
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
