#include "navigation/sculpt_redirect.h"

#include "host/host.h"
#include "host/mode_groups.h"
#include "input/input_records.h"
#include "input/keys.h"
#include "script/poly_tools.h"

int g_sculptRedirect = 0;

namespace {

bool IsMiddlePressOrRelease(UINT message) {
    return (PressOf(message) == WM_MBUTTONDOWN && !IsAltDown()) || message == WM_MBUTTONUP;
}

bool IsBrushInUse() {
    return host::CurrentModeId() == kSculptMode || IsSculptBrushActive();
}

}  // namespace

Answer RedirectToSculpt(MouseEvent& event) {
    const bool asks = IsViewportKind(event.kind) && IsMiddlePressOrRelease(event.message);
    if (asks) {
        RefreshSculptState();
        if (event.message == WM_MBUTTONUP && g_sculptRedirect) {
            // What was pressed is released, whether or not the brush is still in use.
            SendRecords(ClickUp(), kInAltUp);
            g_sculptRedirect = 0;
            return Answer::kConsumed;
        }
        if (event.message != WM_MBUTTONUP && IsBrushInUse()) {
            g_sculptRedirect = 1;
            SendRecords(kInAltDown, ClickDown());
            return Answer::kConsumed;
        }
    }
    if (g_sculptRedirect) return Answer::kPassed;
    if (asks) event.kind = ClassifyWindow(event.window);
    return Answer::kNotMine;
}
