// The walk's model of the hooks against sentences about them, and its exemptions.
#include "tests/walks/hook_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <set>

#include "tests/walks/exemptions.h"

namespace {

using exemptions::Check;
using exemptions::Exemption;
using hook_model::KeyFacts;
using hook_model::Message;
using hook_model::MouseFacts;
using hook_model::Outcome;
using hook_model::Place;
using hook_model::State;

// A hand over a perspective view of a host with all options on, Alt held.
class Hand {
public:
    Hand() {
        facts.kind = hook_model::kViewport;
        facts.options = {true, true, true, true, true, true};
        facts.alt = true;
        facts.screen = {1280, 1024};
        facts.at = facts.cursor = {300, 300};
        facts.thumb = true;
        facts.mode = 6;
        facts.select_button = true;
        facts.orbit_allowed = true;
    }

    Outcome Do(Message message) {
        const State before = model.Now();
        facts.message = message;
        const Outcome outcome = model.Mouse(facts);
        switch (message) {
            case Message::kLeftAgain:
            case Message::kLeftDown: down |= hook_model::kLeftBit; break;
            case Message::kLeftUp: down &= ~hook_model::kLeftBit; break;
            case Message::kRightAgain:
            case Message::kRightDown: down |= hook_model::kRightBit; break;
            case Message::kRightUp: down &= ~hook_model::kRightBit; break;
            case Message::kMiddleAgain:
            case Message::kMiddleDown: down |= hook_model::kMiddleBit; break;
            case Message::kMiddleUp: down &= ~hook_model::kMiddleBit; break;
            default: break;
        }
        exemptions::NoteMouse(ledger, before, model.Now(), facts, outcome, down);
        return outcome;
    }
    void Do(std::initializer_list<Message> messages) {
        for (const Message message : messages)
            Do(message);
    }
    const State& Now() const { return model.Now(); }

    MouseFacts facts;
    hook_model::Model model;
    exemptions::Ledger ledger;
    int down = 0;
};

TEST(HookModel, AltAndEachButtonStartAGestureOfTheirOwn) {
    for (const auto& [press, release, flag] :
         {std::tuple{Message::kLeftDown, Message::kLeftUp, &State::orbit},
          std::tuple{Message::kRightDown, Message::kRightUp, &State::zoom},
          std::tuple{Message::kMiddleDown, Message::kMiddleUp, &State::pan}}) {
        Hand hand;
        EXPECT_TRUE(hand.Do(press).swallowed);
        EXPECT_EQ(hand.Now().*flag, 1);
        EXPECT_TRUE(hand.Do(release).swallowed);
        EXPECT_FALSE(hand.Now().Gesture());
        EXPECT_EQ(hand.Now().held, 0);
    }
}

TEST(HookModel, ChordsSwitchBackAndForth) {
    Hand hand;
    hand.Do({Message::kLeftDown, Message::kMiddleDown});
    EXPECT_EQ(hand.Now().zoom, 1);
    hand.Do(Message::kMiddleUp);
    EXPECT_EQ(hand.Now().orbit, 1);
    hand.Do(Message::kLeftUp);
    EXPECT_FALSE(hand.Now().Gesture());
}

// What the walk first found: no row looks at the left button's release in a pan.
TEST(HookModel, LeftReleaseInAPanLeavesItsBit) {
    Hand hand;
    hand.Do({Message::kLeftDown, Message::kRightDown, Message::kMiddleDown});
    EXPECT_EQ(hand.Now().pan, 1);
    hand.Do(Message::kLeftUp);
    EXPECT_TRUE(hand.Now().held & hook_model::kLeftBit);
    EXPECT_FALSE(hand.ledger.IsOpen(Check::kGesture)) << "a bit alone exempts nothing";
    hand.Do({Message::kMiddleUp, Message::kRightUp});
    EXPECT_EQ(hand.Now().orbit, 1) << "the stray bit made a zoom's end an orbit";
    EXPECT_EQ(hand.down, 0);
    EXPECT_TRUE(hand.ledger.Exempts(Check::kGesture));
    EXPECT_GT(hand.ledger.Used()[static_cast<size_t>(Exemption::kStrayBit)]
                                [static_cast<size_t>(Check::kGesture)],
              0u);
}

TEST(HookModel, OrdinaryGesturesExemptNothing) {
    Hand hand;
    hand.Do({Message::kLeftDown, Message::kMove, Message::kLeftUp, Message::kRightDown,
             Message::kMove, Message::kMove, Message::kRightUp, Message::kMiddleDown,
             Message::kMove, Message::kMiddleUp});
    hand.Do({Message::kLeftDown, Message::kMiddleDown, Message::kMiddleUp, Message::kLeftUp});
    hand.Do({Message::kRightDown, Message::kLeftDown, Message::kLeftUp, Message::kRightUp});
    for (int check = 0; check < exemptions::kChecks; ++check)
        EXPECT_FALSE(hand.ledger.IsOpen(static_cast<Check>(check))) << check;
}

TEST(HookModel, APanInAnEditorPassesBothEnds) {
    Hand hand;
    hand.facts.kind = hook_model::kTrackView;
    EXPECT_FALSE(hand.Do(Message::kMiddleDown).swallowed);
    EXPECT_EQ(hand.Now().pan, 1);
    EXPECT_FALSE(hand.Do(Message::kMiddleUp).swallowed);
    EXPECT_EQ(hand.Now().pan, 0);
}

TEST(HookModel, ALockedViewRefusesAndTheReleaseEndsThat) {
    Hand hand;
    hand.facts.kind = hook_model::kLockedViewport;
    for (const auto& [press, release] : {std::pair{Message::kLeftDown, Message::kLeftUp},
                                         std::pair{Message::kRightDown, Message::kRightUp},
                                         std::pair{Message::kMiddleDown, Message::kMiddleUp}}) {
        EXPECT_TRUE(hand.Do(press).swallowed);
        EXPECT_EQ(hand.Now().locked, 1);
        EXPECT_FALSE(hand.Now().Drags());
        EXPECT_TRUE(hand.Do(release).swallowed);
        EXPECT_EQ(hand.Now().locked, 0);
    }
}

TEST(HookModel, NavigationOffTouchesNothing) {
    Hand hand;
    hand.facts.options.navigation = false;
    for (const Message message : {Message::kLeftDown, Message::kLeftUp, Message::kMiddleDown,
                                  Message::kMiddleUp, Message::kRightDown, Message::kRightUp})
        EXPECT_FALSE(hand.Do(message).swallowed);
    EXPECT_EQ(hand.Now(), State());
}

TEST(HookModel, AScrubAtTheEdgeIsNotEndedByItsButton) {
    Hand hand;
    hand.facts.alt = false;
    State armed;
    armed.scrub = 1;
    hand.model.Set(armed);
    hand.Do(Message::kLeftDown);
    EXPECT_EQ(hand.Now().scrub, 2);
    hand.facts.at = {9, 300};
    EXPECT_TRUE(hand.Do(Message::kLeftUp).swallowed);
    EXPECT_EQ(hand.Now().scrub, 2);
    EXPECT_EQ(hand.Now().scrub_wrapped, 1);
    EXPECT_TRUE(hand.ledger.IsOpen(Check::kScrub));
    EXPECT_FALSE(hand.ledger.IsOpen(Check::kGesture));
}

TEST(HookModel, AltComingUpDuringAGestureIsOwed) {
    Hand hand;
    hand.Do(Message::kRightDown);
    KeyFacts alt;
    alt.key = KeyFacts::Key::kAlt;
    alt.up = true;
    alt.options.navigation = true;
    EXPECT_TRUE(hand.model.Key(alt).swallowed);
    EXPECT_EQ(hand.Now().alt_owed, 1);
    hand.Do(Message::kRightUp);
    EXPECT_EQ(hand.Now().alt_owed, 0);
}

TEST(HookModel, TheSecondPressOfADoubleClickIsAPress) {
    for (const auto& [press, flag] : {std::pair{Message::kLeftAgain, &State::orbit},
                                      std::pair{Message::kRightAgain, &State::zoom},
                                      std::pair{Message::kMiddleAgain, &State::pan}}) {
        Hand hand;
        EXPECT_TRUE(hand.Do(press).swallowed);
        EXPECT_EQ(hand.Now().*flag, 1);
    }
    Hand quick;
    quick.facts.alt = false;
    quick.facts.selected = 1;
    quick.facts.mode = 1;
    EXPECT_TRUE(quick.Do(Message::kMiddleAgain).swallowed);
    EXPECT_EQ(quick.Now().quick, 1);
    Hand brush;
    brush.facts.alt = false;
    brush.facts.brush = true;
    EXPECT_TRUE(brush.Do(Message::kMiddleAgain).swallowed);
    EXPECT_EQ(brush.Now().redirect, 1);
    Hand scrub;
    State armed;
    armed.scrub = 1;
    scrub.model.Set(armed);
    EXPECT_TRUE(scrub.Do(Message::kLeftAgain).swallowed);
    EXPECT_EQ(scrub.Now().scrub, 2);
}

TEST(HookModel, ADoubleClickSelectsNothing) {
    Hand hand;
    hand.facts.alt = false;
    for (const bool shift : {false, true}) {
        hand.facts.ctrl = true;
        hand.facts.shift = shift;
        EXPECT_FALSE(hand.Do(Message::kLeftAgain).swallowed);
        EXPECT_EQ(hand.Now(), State());
    }
}

class CtrlClick : public testing::Test {
protected:
    CtrlClick() {
        hand.facts.alt = false;
        hand.facts.ctrl = hand.facts.left_ctrl = true;
    }
    Hand hand;
};

TEST_F(CtrlClick, ReleasesTheCtrlThatIsDown) {
    EXPECT_THAT(hand.Do(Message::kLeftDown).injected,
                testing::ElementsAre("alt-down ctrl-up left-down ctrl-down"));
    Hand right;
    right.facts = hand.facts;
    right.facts.left_ctrl = false;
    right.facts.right_ctrl = true;
    right.facts.swapped = true;
    EXPECT_THAT(right.Do(Message::kLeftDown).injected,
                testing::ElementsAre("alt-down rctrl-up right-down rctrl-down"));
    Hand both;
    both.facts = hand.facts;
    both.facts.right_ctrl = true;
    EXPECT_THAT(both.Do(Message::kLeftDown).injected,
                testing::ElementsAre("alt-down ctrl-up rctrl-up left-down ctrl-down rctrl-down"));
}

TEST_F(CtrlClick, IsFollowedByWhatWasAheadOfItsReplay) {
    hand.Do(Message::kLeftDown);
    hand.facts.alt = true;
    for (int left = 4; left > 0; --left) {
        EXPECT_EQ(hand.Now().waits, left);
        const Message message = left % 2 ? Message::kLeftDown : Message::kLeftUp;
        EXPECT_THAT(hand.Do(message).injected,
                    testing::ElementsAre(left % 2 ? "left-down" : "left-up"));
    }
    EXPECT_THAT(hand.Do(Message::kLeftUp).injected, testing::ElementsAre("alt-up"));
    EXPECT_EQ(hand.Now().sel_ctrl, 0);
}

TEST_F(CtrlClick, WaitsUntilAPressHasSeenTheInjectedAlt) {
    for (const Message replay : {Message::kLeftDown, Message::kLeftAgain}) {
        hand.model.Set(State());
        hand.facts.ctrl = true;
        hand.facts.alt = hand.facts.alt_before = false;
        hand.Do(Message::kLeftDown);
        hand.facts.alt = hand.facts.alt_before = true;
        EXPECT_FALSE(hand.Do(replay).swallowed);
        EXPECT_EQ(hand.Now().waits, 0);
        EXPECT_THAT(hand.Do(Message::kLeftUp).injected, testing::ElementsAre("alt-up"));
    }
}

TEST_F(CtrlClick, WaitsForNothingWhereInputIsNotTaken) {
    hand.facts.input_is_taken = false;
    hand.Do(Message::kLeftDown);
    EXPECT_EQ(hand.Now().sel_ctrl, 1);
    EXPECT_EQ(hand.Now().waits, 0);
}

// A locked view keeps the moves, whatever is on from elsewhere.
TEST(HookModel, MovesInALockedView) {
    Hand hand;
    State state;
    state.pan = 1;
    state.locked = 1;
    state.kind = hook_model::kLockedViewport;
    hand.model.Set(state);
    EXPECT_TRUE(hand.Do(Message::kMove).swallowed);
    EXPECT_EQ(hand.Now(), state);
    state.zoom = 1;
    state.zoom_virtual = {-1, -1};
    hand.model.Set(state);
    EXPECT_TRUE(hand.Do(Message::kMove).swallowed);
    EXPECT_EQ(hand.Now().zoom_virtual, hand.facts.cursor) << "the zoom goes on";
    state.zoom = state.locked = 0;
    hand.model.Set(state);
    EXPECT_FALSE(hand.Do(Message::kMove).swallowed);
}

// The press that an orbit sends lets the next events in, which find the orbit on.
TEST(HookModel, EventsComeInBetween) {
    Hand hand;
    hand.facts.message = Message::kLeftDown;
    int asked = 0;
    const Outcome outcome = hand.model.Mouse(hand.facts, [&](int number) {
        EXPECT_EQ(number, asked++);
        MouseFacts release = hand.facts;
        release.message = Message::kLeftUp;
        const Outcome inner = hand.model.Mouse(release);
        EXPECT_EQ(inner.sent.size(), 1u);
        EXPECT_EQ(hand.Now().orbit, 0);
    });
    EXPECT_EQ(asked, 1);
    ASSERT_EQ(outcome.sent.size(), 1u);
    EXPECT_EQ(outcome.sent[0].message, Message::kMiddleDown);
    EXPECT_FALSE(hand.Now().Gesture());
}

TEST(HookModel, TheFirstDifferenceIsNamed) {
    State expected;
    State got;
    EXPECT_EQ(hook_model::Difference(expected, got), "");
    got.pan = 1;
    EXPECT_EQ(hook_model::Difference(expected, got), "g_panActive is 1, by the rules 0");
    got = expected;
    got.zoom_virtual.y = 7;
    EXPECT_EQ(hook_model::Difference(expected, got), "g_zoomVirtual.y is 7, by the rules 0");
}

TEST(HookModel, EveryPlaceHasANameOfItsOwn) {
    std::set<std::string_view> names;
    for (int i = 0; i < hook_model::kPlaces; ++i)
        EXPECT_TRUE(names.insert(hook_model::NameOf(static_cast<Place>(i))).second) << i;
    EXPECT_FALSE(names.contains(""));
}

TEST(Exemptions, FreeTheirChecksUntilThoseAreClean) {
    exemptions::Ledger ledger;
    EXPECT_FALSE(ledger.Exempts(Check::kDepth));
    ledger.Note(Exemption::kPanBelow, {Check::kDepth});
    EXPECT_TRUE(ledger.Exempts(Check::kDepth));
    EXPECT_FALSE(ledger.Exempts(Check::kGesture));
    ledger.Clean(Check::kDepth);
    EXPECT_FALSE(ledger.Exempts(Check::kDepth));
    EXPECT_EQ(ledger.Arisen()[static_cast<size_t>(Exemption::kPanBelow)], 1u);
}

}  // namespace
