#include "navigation/zoom_drag.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const ScreenPoint& point, std::ostream* out) {
    *out << '(' << point.x << ", " << point.y << ')';
}

void PrintTo(const ZoomDrag& drag, std::ostream* out) {
    *out << "last " << ::testing::PrintToString(drag.last) << ", virtual "
         << ::testing::PrintToString(drag.virtual_pos) << (drag.warp ? ", warp" : "");
}

namespace {

constexpr ScreenPoint kScreen = {1280, 1024};
constexpr ZoomDrag kFresh = {{0, 0}, kZoomNotSet, false};

struct Move {
    const char* name;
    ZoomDrag before;
    ScreenPoint cursor;
    ZoomWindow window;
    ZoomStep step;
    ZoomDrag after;
};

const Move kMoves[] = {
    // The first move sets the two positions and is the window's own.
    {"the first move starts the drag",
     kFresh,
     {600, 400},
     ZoomWindow::kViewport,
     ZoomStep::kPass,
     {{600, 400}, {600, 400}, false}},
    {"a first move at the left margin waits",
     kFresh,
     {9, 400},
     ZoomWindow::kViewport,
     ZoomStep::kPass,
     kFresh},
    {"a first move just inside the left margin starts",
     kFresh,
     {10, 400},
     ZoomWindow::kViewport,
     ZoomStep::kPass,
     {{10, 400}, {10, 400}, false}},
    {"a first move at the right margin waits",
     kFresh,
     {1271, 400},
     ZoomWindow::kViewport,
     ZoomStep::kPass,
     kFresh},
    {"a first move just inside the right margin starts",
     kFresh,
     {1270, 400},
     ZoomWindow::kViewport,
     ZoomStep::kPass,
     {{1270, 400}, {1270, 400}, false}},
    {"a first move at the top margin waits",
     kFresh,
     {600, 9},
     ZoomWindow::kEditor,
     ZoomStep::kPass,
     kFresh},
    {"a first move at the bottom margin waits",
     kFresh,
     {600, 1015},
     ZoomWindow::kEditor,
     ZoomStep::kPass,
     kFresh},
    {"a first move just inside the bottom margin starts",
     kFresh,
     {600, 1014},
     ZoomWindow::kEditor,
     ZoomStep::kPass,
     {{600, 1014}, {600, 1014}, false}},

    // Both axes count.
    {"up raises the virtual position",
     {{600, 400}, {600, 400}, false},
     {600, 390},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{600, 390}, {600, 410}, false}},
    {"left raises it too",
     {{600, 400}, {600, 400}, false},
     {585, 400},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{585, 400}, {585, 415}, false}},
    {"right and down add up",
     {{600, 400}, {600, 400}, false},
     {607, 405},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{607, 405}, {607, 388}, false}},
    {"right and up cancel",
     {{600, 400}, {600, 500}, false},
     {610, 390},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{610, 390}, {610, 500}, false}},

    // Wrap-around at the top and bottom of the screen, in viewports alone.
    {"above y 3 a viewport's drag goes on from the bottom",
     {{600, 5}, {600, 700}, false},
     {600, 2},
     ZoomWindow::kViewport,
     ZoomStep::kSetCursor,
     {{600, 1004}, {600, 700}, false}},
    {"at y 3 it does not",
     {{600, 5}, {600, 700}, false},
     {600, 3},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{600, 3}, {600, 702}, false}},
    {"two lines above the bottom it goes on from the top",
     {{600, 1020}, {600, 300}, false},
     {600, 1022},
     ZoomWindow::kViewport,
     ZoomStep::kSetCursor,
     {{600, 20}, {600, 300}, false}},
    {"three lines above the bottom it does not",
     {{600, 1020}, {600, 300}, false},
     {600, 1021},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{600, 1021}, {600, 299}, false}},
    {"an editor's drag does not wrap at the top",
     {{600, 5}, {600, 700}, false},
     {600, 2},
     ZoomWindow::kEditor,
     ZoomStep::kSendMove,
     {{600, 2}, {600, 703}, false}},

    // What the window is told runs out of screen: the next move puts the cursor back.
    {"x 9 asks for a warp",
     {{12, 400}, {12, 400}, false},
     {9, 400},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{9, 400}, {9, 403}, true}},
    {"x 10 does not",
     {{12, 400}, {12, 400}, false},
     {10, 400},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{10, 400}, {10, 402}, false}},
    {"x of the right margin asks for a warp",
     {{1270, 400}, {1270, 400}, false},
     {1271, 400},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{1271, 400}, {1271, 399}, true}},
    {"virtual y 9 asks for a warp",
     {{600, 400}, {600, 12}, false},
     {600, 403},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{600, 403}, {600, 9}, true}},
    {"virtual y 10 does not",
     {{600, 400}, {600, 12}, false},
     {600, 402},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{600, 402}, {600, 10}, false}},
    {"virtual y of the bottom margin asks for a warp",
     {{600, 400}, {600, 1010}, false},
     {600, 395},
     ZoomWindow::kViewport,
     ZoomStep::kSendMove,
     {{600, 395}, {600, 1015}, true}},
    {"an editor never asks for one",
     {{12, 400}, {12, 400}, false},
     {9, 400},
     ZoomWindow::kEditor,
     ZoomStep::kSendMove,
     {{9, 400}, {9, 403}, false}},
    {"a warp puts the cursor back where it was",
     {{600, 500}, {600, 9}, true},
     {600, 505},
     ZoomWindow::kViewport,
     ZoomStep::kSetCursor,
     {{600, 500}, {600, 505}, false}},
    {"outside the margins only its line is kept",
     {{5, 500}, {5, 300}, true},
     {40, 510},
     ZoomWindow::kViewport,
     ZoomStep::kSetCursor,
     {{40, 500}, {40, 510}, false}},
    {"a last position on the margin counts as outside",
     {{600, 9}, {600, 300}, true},
     {40, 510},
     ZoomWindow::kViewport,
     ZoomStep::kSetCursor,
     {{40, 9}, {40, 510}, false}},
    {"a warp comes before the wrap",
     {{600, 500}, {600, 9}, true},
     {600, 1},
     ZoomWindow::kViewport,
     ZoomStep::kSetCursor,
     {{600, 500}, {600, 1}, false}},

    // An editor's drag starts again from the middle of the screen.
    {"virtual y 0 restarts an editor's drag",
     {{600, 400}, {600, 10}, false},
     {600, 410},
     ZoomWindow::kEditor,
     ZoomStep::kRestartEditor,
     {{600, 410}, {600, 512}, false}},
    {"virtual y 1 does not",
     {{600, 400}, {600, 10}, false},
     {600, 409},
     ZoomWindow::kEditor,
     ZoomStep::kSendMove,
     {{600, 409}, {600, 1}, false}},
    {"virtual y of the screen's height restarts it",
     {{600, 400}, {600, 1020}, false},
     {600, 396},
     ZoomWindow::kEditor,
     ZoomStep::kRestartEditor,
     {{600, 396}, {600, 512}, false}},
    {"virtual y one line less does not",
     {{600, 400}, {600, 1020}, false},
     {600, 397},
     ZoomWindow::kEditor,
     ZoomStep::kSendMove,
     {{600, 397}, {600, 1023}, false}},

    // A window that is neither is followed and told nothing.
    {"nothing is sent to a window that is neither",
     {{600, 400}, {600, 400}, false},
     {600, 390},
     ZoomWindow::kNone,
     ZoomStep::kSwallow,
     {{600, 390}, {600, 410}, false}},
};

TEST(ZoomDrag, EachMove) {
    for (const Move& move : kMoves) {
        SCOPED_TRACE(move.name);
        ZoomDrag drag = move.before;
        EXPECT_EQ(AdvanceZoomDrag(drag, move.cursor, kScreen, move.window), move.step);
        EXPECT_EQ(drag, move.after);
    }
}

}  // namespace
