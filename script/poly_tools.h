// The host's PolyTools: what they reported last, through the script functions of their names.
#pragma once

extern int g_graphiteSculptTool;  // index of the active sculpt tool, 0: none
extern int g_graphitePdTool;      // index of the active paint-deform tool, 0: none
extern bool g_polyShiftActive;

// Asks the host for its PolyTools state by a script, on hosts that have it; on others the last
// known one stands.
void RefreshSculptState();
// Whether a sculpt or paint brush of PolyTools is active, as last asked.
bool IsSculptBrushActive();
// Toggles the sculpt button of an index, on hosts that have it.
void ToggleSculptButton(int index);
