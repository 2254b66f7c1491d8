// While a sculpt or paint brush is active the middle button over a viewport is replayed as Alt and
// left button, which is what brushes know.
#pragma once

#include "navigation/messages.h"

enum class SculptRedirect {
    kUntouched,  // nothing to do with this message
    kAsked,      // the same, but the host was asked about its brushes
    kSwallow,
    kPass,  // input of the replay itself: nothing else looks at it
};

SculptRedirect RedirectToSculpt(const MouseEvent& event, int kind);
