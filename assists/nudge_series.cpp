#include "assists/nudge_series.h"

#include "assists/gizmo_and_lock.h"
#include "host/host.h"

int g_nudgeActive = 0;
int g_nudgeRecorderWasOn = 0;
int g_nudgeRepeating = 0;
DWORD g_nudgeStartTick = 0;

void EndNudgeSeries() {
    if (!g_nudgeActive) return;
    g_nudgeActive = 0;
    host::EndMacroRecorderSilence();
    if (g_nudgeRepeating) {
        g_nudgeRepeating = 0;
        RestoreGizmo();
    }
    host::RedrawEverything();
}
