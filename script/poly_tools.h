// What the host's PolyTools reported last, through the script functions of their names.
#pragma once

extern int g_graphiteSculptTool;  // index of the active sculpt tool, 0: none
extern int g_graphitePdTool;      // index of the active paint-deform tool, 0: none
extern bool g_polyShiftActive;
