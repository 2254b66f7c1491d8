// Every handler of the Alt gestures in every kind of window, the one that no window yields today
// included. The host, the windows and the brushes around the handlers are played here: each call is
// written down, and a test compares the whole list.

#include "navigation/gestures.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "input/input_records.h"
#include "host/host.h"
#include "navigation/gesture_state.h"
#include "navigation/held_alt.h"
#include "navigation/view_drag.h"
#include "navigation/zoom_drag.h"
#include "settings/plugin_settings.h"
#include "tests/plugin/plugin_state.h"

namespace {

using Effects = std::vector<std::string>;

Effects g_effects;
Effects g_states;  // of the gesture, at each effect
bool g_perspective = true;
bool g_user_view = false;

const HWND kWindow = reinterpret_cast<HWND>(0x1234);
constexpr POINT kPoint = {200, 150};

std::string State() {
    std::string state = std::to_string(g_navKind);
    if (g_orbitActive) state += " orbit";
    if (g_zoomActive) state += " zoom";
    if (g_panActive) state += " pan";
    if (g_navLocked) state += " locked";
    if (g_altUpPending) state += " owes Alt";
    return state;
}

void Note(const std::string& effect) {
    g_effects.push_back(effect);
    g_states.push_back(State());
}

std::string MessageName(UINT message) {
    switch (message) {
        case WM_LBUTTONDOWN: return "left down";
        case WM_LBUTTONUP: return "left up";
        case WM_MBUTTONDOWN: return "middle down";
        case WM_MBUTTONUP: return "middle up";
        default: return std::to_string(message);
    }
}

LRESULT WINAPI PlayedSendMessage(HWND window, UINT message, WPARAM keys, LPARAM point) {
    EXPECT_EQ(window, kWindow);
    EXPECT_EQ(point, MAKELPARAM(kPoint.x, kPoint.y));
    Note(MessageName(message) + " " + std::to_string(keys));
    return 0;
}

UINT WINAPI PlayedSendInput(UINT count, INPUT*, int) {
    Note("input of " + std::to_string(count));
    return count;
}

}  // namespace

// The import slots of the two Win32 calls, filled by hand.
extern "C" {
void* __imp_SendMessageA = reinterpret_cast<void*>(PlayedSendMessage);
void* __imp_SendInput = reinterpret_cast<void*>(PlayedSendInput);
}

PluginSettings g_settings;
INPUT kInAltDown;
INPUT kInAltUp;

void SuspendToolForView(const MouseEvent&, int mode) {
    Note("suspend for " + std::to_string(mode));
}

void ResumeToolAfterView(const MouseEvent&) {
    Note("resume");
    g_orbitActive = 0;
    g_zoomActive = 0;
    g_panActive = 0;
}

void PressViewButton(HWND window, int mode, bool checked) {
    EXPECT_EQ(window, kWindow);
    Note((checked ? "press for " : "release for ") + std::to_string(mode));
}

namespace host {

Viewport Viewport::OfWindow(HWND) {
    return Viewport(nullptr);
}
Viewport::~Viewport() {}
bool Viewport::IsPerspective() const {
    return g_perspective;
}
bool Viewport::IsUserView() const {
    return g_user_view;
}
void PushStandardMode(int id) {
    Note("push " + std::to_string(id));
}
void PopModeIfStacked() {
    Note("pop");
}

}  // namespace host

namespace {

struct Flags {
    int orbit = 0, zoom = 0, pan = 0, locked = 0;
    friend bool operator==(const Flags&, const Flags&) = default;
};

void PrintTo(const Flags& flags, std::ostream* out) {
    *out << "orbit " << flags.orbit << " zoom " << flags.zoom << " pan " << flags.pan << " locked "
         << flags.locked;
}

Flags CurrentFlags() {
    return {g_orbitActive, g_zoomActive, g_panActive, g_navLocked};
}

constexpr Flags kIdle = {};
constexpr Flags kOrbit = {.orbit = 1};
constexpr Flags kZoom = {.zoom = 1};
constexpr Flags kPan = {.pan = 1};
constexpr Flags kLocked = {.locked = 1};

using Handler = Answer (*)(const MouseEvent&);
constexpr Answer kNotMine = Answer::kNotMine;
constexpr Answer kConsumed = Answer::kConsumed;
constexpr Answer kPassed = Answer::kPassed;

struct Cell {
    Handler handler;
    int kind;  // of the window for the starters, of the gesture for the others
    Flags before;
    Effects effects;
    Answer answer;
    Flags after;
};

constexpr bool IsStarter(Handler handler) {
    return handler == StartOrbit || handler == StartPan || handler == StartZoom;
}

// In a window of the kind, or in one that is none where the gesture began elsewhere.
MouseEvent EventOf(Handler handler, int kind) {
    MouseEvent event = {};
    event.window = kWindow;
    event.client = kPoint;
    event.kind = IsStarter(handler) ? static_cast<WindowKind>(kind) : kWindowOther;
    return event;
}

void Arrange(const Cell& cell) {
    g_effects.clear();
    g_states.clear();
    g_settings = {};
    g_perspective = true;
    g_user_view = false;
    g_navKind = IsStarter(cell.handler) ? kWindowOther : static_cast<WindowKind>(cell.kind);
    g_orbitActive = cell.before.orbit;
    g_zoomActive = cell.before.zoom;
    g_panActive = cell.before.pan;
    g_navLocked = cell.before.locked;
    g_altUpPending = 1;
}

void Check(
    const char* name, const std::vector<Cell>& cells,
    const std::function<void()>& arrange = [] {}) {
    for (const Cell& cell : cells) {
        SCOPED_TRACE(std::string(name) + " in kind " + std::to_string(cell.kind));
        Arrange(cell);
        arrange();
        EXPECT_EQ(cell.handler(EventOf(cell.handler, cell.kind)), cell.answer);
        EXPECT_EQ(g_effects, cell.effects);
        EXPECT_EQ(CurrentFlags(), cell.after);
    }
}

const std::vector<int> kEditors = {kWindowUnwrapView, kWindowSchematicGraph, kWindowTrackView, 6,
                                   kWindowTrackBar};

std::vector<Cell> ForEditors(Cell cell) {
    std::vector<Cell> cells;
    for (int kind : kEditors) {
        cell.kind = kind;
        cells.push_back(cell);
    }
    return cells;
}

void ForbidOrbit() {
    g_perspective = false;
    g_settings.lockArcRotateOrtho = 1;
    g_settings.lockArcRotateUser = 1;
}

TEST(StartOrbit, EachKind) {
    Check("start orbit", {{StartOrbit, 1, kIdle, {"middle down 0"}, kConsumed, kOrbit},
                          {StartOrbit, 2, kIdle, {}, kConsumed, kLocked},
                          {StartOrbit, 8, kIdle, {}, kNotMine, kIdle},
                          {StartOrbit, 0, kIdle, {}, kNotMine, kIdle}});
    EXPECT_EQ(g_navKind, 0);
    Check("start orbit", ForEditors({StartOrbit, 0, kIdle, {}, kNotMine, kIdle}));
}

TEST(StartOrbit, RefusedInAViewport) {
    Check("refused orbit", {{StartOrbit, 1, kIdle, {}, kConsumed, kLocked}}, ForbidOrbit);
    EXPECT_EQ(g_navKind, 1);
}

TEST(StartOrbit, AllowedByViewKindAndSettings) {
    struct Case {
        bool perspective, user_view, lock_ortho, lock_user, allowed;
    };
    const Case cases[] = {
        // A perspective view orbits whatever the settings say.
        {true, false, true, true, true},
        {true, false, false, false, true},
        // Other views orbit while the lock for orthographic views is off.
        {false, false, false, true, true},
        {false, false, false, false, true},
        {false, true, false, true, true},
        // With that lock on, User views orbit while their own lock is off.
        {false, true, true, false, true},
        {false, true, true, true, false},
        {false, false, true, false, false},
        {false, false, true, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "perspective " << c.perspective << " user "
                                        << c.user_view << " locks " << c.lock_ortho << c.lock_user);
        Check("orbit",
              {{StartOrbit, 1, kIdle, c.allowed ? Effects{"middle down 0"} : Effects{}, kConsumed,
                c.allowed ? kOrbit : kLocked}},
              [&c] {
                  g_perspective = c.perspective;
                  g_user_view = c.user_view;
                  g_settings.lockArcRotateOrtho = c.lock_ortho;
                  g_settings.lockArcRotateUser = c.lock_user;
              });
    }
}

TEST(StartPan, EachKind) {
    Check("start pan", {{StartPan, 1, kIdle, {"suspend for 202"}, kConsumed, kPan},
                        {StartPan, 2, kIdle, {}, kConsumed, kLocked},
                        {StartPan, 8, kIdle, {}, kPassed, kPan}});
    EXPECT_EQ(g_navKind, 8);
    Check("start pan", ForEditors({StartPan, 0, kIdle, {}, kPassed, kPan}));
    EXPECT_EQ(g_navKind, 7);
}

TEST(StartZoom, EachKind) {
    Check("start zoom",
          {{StartZoom, 1, kIdle, {"suspend for 200"}, kConsumed, kZoom},
           {StartZoom, 2, kIdle, {}, kConsumed, kLocked},
           {StartZoom, 8, kIdle, {"press for 200", "left down 0"}, kConsumed, kZoom}});
    EXPECT_EQ(g_navKind, 8);
    Check("start zoom", ForEditors({StartZoom, 0, kIdle, {"middle down 8"}, kConsumed, kZoom}));
    EXPECT_EQ(g_navKind, 7);
}

TEST(StartZoom, ForgetsTheLastDrag) {
    g_zoomVirtual = {5, 6};
    g_zoomLast = {7, 8};
    g_zoomWarp = 1;
    Check("start zoom", {{StartZoom, 1, kIdle, {"suspend for 200"}, kConsumed, kZoom}});
    EXPECT_EQ(g_zoomVirtual.x, -1);
    EXPECT_EQ(g_zoomVirtual.y, -1);
    EXPECT_EQ(g_zoomLast.x, 0);
    EXPECT_EQ(g_zoomLast.y, 0);
    EXPECT_EQ(g_zoomWarp, 0);
}

TEST(OrbitToZoom, EachKind) {
    const Flags both = {.orbit = 1, .locked = 1};
    Check("orbit to zoom",
          {{OrbitToZoom, 1, both, {"middle up 0", "suspend for 200"}, kConsumed, kZoom},
           {OrbitToZoom, 2, kLocked, {}, kConsumed, kLocked},
           {OrbitToZoom, 8, both, {"middle up 0", "middle down 8"}, kConsumed, kZoom}});
    Check("orbit to zoom",
          ForEditors({OrbitToZoom, 0, both, {"middle up 0", "middle down 8"}, kConsumed, kZoom}));
}

TEST(PanToZoom, EachKind) {
    Check("pan to zoom",
          {{PanToZoom, 1, kPan, {"left up 0", "push 200", "left down 0"}, kConsumed, kZoom},
           {PanToZoom, 2, kPan, {}, kNotMine, kPan},
           // Without beginning a zoom, so that nothing is active then.
           {PanToZoom, 8, kPan, {"left up 0", "press for 200", "left down 0"}, kConsumed, kIdle}});
    Check("pan to zoom",
          ForEditors({PanToZoom, 0, kPan, {"middle up 0", "middle down 8"}, kConsumed, kZoom}));
}

TEST(ZoomToPan, EachKind) {
    Check("zoom to pan",
          {{ZoomToPan, 1, kZoom, {"left up 0", "pop", "push 202", "left down 0"}, kConsumed, kPan},
           {ZoomToPan, 2, kZoom, {}, kNotMine, kZoom},
           {ZoomToPan,
            8,
            kZoom,
            {"left up 0", "press for 202", "middle up 0", "middle down 0"},
            kConsumed,
            kPan}});
    Check("zoom to pan",
          ForEditors({ZoomToPan, 0, kZoom, {"middle up 0", "middle down 0"}, kConsumed, kPan}));
}

TEST(ZoomToOrbit, EachKind) {
    Check("zoom to orbit", {{ZoomToOrbit, 1, kZoom, {"resume", "middle down 0"}, kConsumed, kOrbit},
                            {ZoomToOrbit, 2, kZoom, {}, kNotMine, kZoom},
                            {ZoomToOrbit, 8, kZoom, {"middle up 8"}, kConsumed, kIdle}});
    Check("zoom to orbit", ForEditors({ZoomToOrbit, 0, kZoom, {"middle up 8"}, kConsumed, kIdle}));
}

TEST(ZoomToOrbit, RefusedInAViewport) {
    Check("refused zoom to orbit",
          {{ZoomToOrbit, 1, kZoom, {"left up 0", "resume"}, kConsumed, kLocked}}, ForbidOrbit);
}

TEST(EndZoom, EachKind) {
    Check("end zoom", {{EndZoom, 1, kZoom, {"resume", "input of 1"}, kConsumed, kIdle},
                       {EndZoom, 2, kLocked, {}, kConsumed, kIdle},
                       {EndZoom, 8, kZoom, {"resume", "release for 200"}, kNotMine, kIdle}});
    EXPECT_EQ(g_altUpPending, 1);
    Check("end zoom",
          ForEditors({EndZoom, 0, kZoom, {"middle up 8", "input of 1"}, kConsumed, kIdle}));
    EXPECT_EQ(g_altUpPending, 0);
}

TEST(EndPan, EachKind) {
    Check("end pan", {{EndPan, 1, kPan, {"resume", "input of 1"}, kConsumed, kIdle},
                      {EndPan, 2, kLocked, {}, kConsumed, kIdle},
                      {EndPan, 8, kPan, {"input of 1"}, kPassed, kIdle}});
    Check("end pan", ForEditors({EndPan, 0, kPan, {"input of 1"}, kPassed, kIdle}));
}

TEST(EndOrbit, EachKind) {
    Check("end orbit", {{EndOrbit, 1, kOrbit, {"middle up 0", "input of 1"}, kConsumed, kIdle},
                        {EndOrbit, 2, kLocked, {}, kConsumed, kIdle},
                        {EndOrbit, 8, kOrbit, {}, kNotMine, kOrbit}});
    Check("end orbit", ForEditors({EndOrbit, 0, kOrbit, {}, kNotMine, kOrbit}));
}

TEST(EndOrbit, OfARefusedOne) {
    Check("end of a refused orbit", {{EndOrbit, 1, kLocked, {}, kConsumed, kIdle}}, ForbidOrbit);
    EXPECT_EQ(g_altUpPending, 1);
}

TEST(WindowOfNoKind, IsLeftAloneByEveryHandler) {
    Check("no kind", {{StartOrbit, 0, kIdle, {}, kNotMine, kIdle},
                      {StartPan, 0, kIdle, {}, kNotMine, kIdle},
                      {StartZoom, 0, kIdle, {}, kNotMine, kIdle},
                      {OrbitToZoom, 0, kOrbit, {}, kNotMine, kOrbit},
                      {PanToZoom, 0, kPan, {}, kNotMine, kPan},
                      {ZoomToPan, 0, kZoom, {}, kNotMine, kZoom},
                      {ZoomToOrbit, 0, kZoom, {}, kNotMine, kZoom},
                      {EndOrbit, 0, kOrbit, {}, kNotMine, kOrbit},
                      {EndPan, 0, kPan, {}, kNotMine, kPan},
                      {EndZoom, 0, kZoom, {}, kNotMine, kZoom}});
    EXPECT_EQ(g_navKind, 0);
}

TEST(PendingAlt, IsReleasedOnce) {
    g_effects.clear();
    g_altUpPending = 1;
    ReleasePendingAlt();
    ReleasePendingAlt();
    EXPECT_EQ(g_effects, Effects{"input of 1"});
}

// A window may let further events in while it handles a message, and these must find the gesture as
// it is from that message on.
TEST(State, AtEachEffectOfAHandler) {
    struct Case {
        Handler handler;
        int kind;
        Flags before;
        Effects states;
        bool refused = false;
    };
    const Flags refused = {.orbit = 1, .locked = 1};
    const Case cases[] = {
        {StartOrbit, 1, kIdle, {"1 orbit owes Alt"}},
        {StartPan, 1, kIdle, {"1 pan owes Alt"}},
        {StartZoom, 1, kIdle, {"1 zoom owes Alt"}},
        {StartZoom, 5, kIdle, {"5 zoom owes Alt"}},
        {StartZoom, 8, kIdle, {"8 owes Alt", "8 zoom owes Alt"}},
        {OrbitToZoom, 1, refused, {"1 zoom owes Alt", "1 zoom owes Alt"}},
        {OrbitToZoom, 5, refused, {"5 zoom owes Alt", "5 zoom owes Alt"}},
        {PanToZoom, 1, kPan, {"1 pan owes Alt", "1 zoom owes Alt", "1 zoom owes Alt"}},
        {PanToZoom, 5, kPan, {"5 zoom owes Alt", "5 zoom owes Alt"}},
        {PanToZoom, 8, kPan, {"8 pan owes Alt", "8 owes Alt", "8 owes Alt"}},
        {ZoomToPan, 1, kZoom, Effects(4, "1 pan owes Alt")},
        {ZoomToPan, 5, kZoom, Effects(2, "5 pan owes Alt")},
        {ZoomToPan, 8, kZoom, Effects(4, "8 pan owes Alt")},
        {ZoomToOrbit, 1, kZoom, {"1 owes Alt", "1 orbit owes Alt"}},
        {ZoomToOrbit, 1, kZoom, {"1 owes Alt", "1 owes Alt"}, true},
        {ZoomToOrbit, 5, kZoom, {"5 owes Alt"}},
        {EndZoom, 1, kZoom, {"1 owes Alt", "1 owes Alt"}},
        {EndZoom, 5, kZoom, {"5 owes Alt", "5 owes Alt"}},
        {EndZoom, 8, kZoom, {"8 zoom owes Alt", "8 owes Alt"}},
        {EndPan, 1, kPan, {"1 owes Alt", "1 owes Alt"}},
        {EndPan, 5, kPan, {"5 owes Alt"}},
        {EndOrbit, 1, kOrbit, {"1 owes Alt", "1 owes Alt"}},
    };
    for (const Case& c : cases) {
        Arrange(Cell{c.handler, c.kind, c.before, {}, kNotMine, kIdle});
        if (c.refused) ForbidOrbit();
        c.handler(EventOf(c.handler, c.kind));
        EXPECT_EQ(g_states, c.states) << "case " << &c - cases << ", kind " << c.kind;
    }
}

}  // namespace
