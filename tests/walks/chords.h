// What a button means that goes down while Alt is held, or comes up, told by the buttons as a user
// might. The plug-in has the same as two tables. A unit test holds those against this in every
// situation; the fuzzer of the rules and the model of the walks go by it too.
#pragma once

#include "navigation/nav_rules.h"

namespace chords {

struct Situation {
    bool orbit = false, zoom = false, pan = false, refused = false;
    bool ctrl_click = false;                           // a Ctrl click is being replayed
    bool click_mode = false;                           // the host's mode wants a middle click
    bool left = false, right = false, middle = false;  // held, as far as the plug-in remembers
    bool right_zoom = false, left_orbit = false;       // the settings
};

struct Meaning {
    int row = 0;  // of the plug-in's table, from 1; 0: it means nothing
    NavAction action{};
    unsigned held = kHeldNone;  // the buttons but for which it would not mean this
};

Meaning Press(const Situation& now, unsigned button);
// `behind`: the row whose gesture has handed the release on; what is tried after it counts.
Meaning Release(const Situation& now, unsigned button, int behind = 0);

}  // namespace chords
