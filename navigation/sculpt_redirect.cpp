#include "navigation/sculpt_redirect.h"

#include "assists/brushes.h"
#include "assists/input_records.h"
#include "host/host.h"
#include "navigation/keys.h"
#include "navigation/mode_groups.h"
#include "navigation/navigation_state.h"
#include "navigation/window_kind.h"

namespace {

bool IsMiddlePressOrRelease(UINT message) {
    return (PressOf(message) == WM_MBUTTONDOWN && !IsAltDown()) || message == WM_MBUTTONUP;
}

bool IsBrushInUse() {
    return host::CurrentModeId() == kSculptMode || IsSculptBrushActive();
}

}  // namespace

SculptRedirect RedirectToSculpt(const MouseEvent& event, int kind) {
    SculptRedirect untouched = SculptRedirect::kUntouched;
    if (IsViewportKind(kind) && IsMiddlePressOrRelease(event.message)) {
        RefreshSculptState();
        untouched = SculptRedirect::kAsked;
        if (event.message == WM_MBUTTONUP) {
            if (!g_sculptRedirect) return untouched;
            // What was pressed is released, whether or not the brush is still in use.
            SendRecords(ClickUp(), kInAltUp);
            g_sculptRedirect = 0;
            return SculptRedirect::kSwallow;
        }
        if (IsBrushInUse()) {
            g_sculptRedirect = 1;
            SendRecords(kInAltDown, ClickDown());
            return SculptRedirect::kSwallow;
        }
    }
    return g_sculptRedirect ? SculptRedirect::kPass : untouched;
}
