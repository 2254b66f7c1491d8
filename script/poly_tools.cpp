#include "script/poly_tools.h"

#include <windows.h>

#include "host/host.h"
#include "script/script_texts.h"

int g_graphiteSculptTool = 0;
int g_graphitePdTool = 0;
bool g_polyShiftActive = false;

namespace {

constexpr int kFirstReleaseWithPolyTools = 12000;

}  // namespace

void RefreshSculptState() {
    if (g_hostRelease >= kFirstReleaseWithPolyTools) host::RunScript(kQueryPolyTools);
}

bool IsSculptBrushActive() {
    return g_graphiteSculptTool != 0 || g_graphitePdTool != 0 || g_polyShiftActive;
}

void ToggleSculptButton(int index) {
    if (g_hostRelease < kFirstReleaseWithPolyTools) return;
    char text[256];
    wsprintfA(text, kToggleSculptButton, index, index, index, index);
    host::RunScript(text);
}
