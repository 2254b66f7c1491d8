// A series of pixel nudges: from the first nudge to the next release of any key.
#pragma once

#include <windows.h>

extern int g_nudgeActive;
extern int g_nudgeRecorderWasOn;  // whether the macro recorder ran when the series began
extern int g_nudgeRepeating;      // the key repeats: the transform gizmo is hidden meanwhile
extern DWORD g_nudgeStartTick;

// Ends a running series and gives back what it took.
void EndNudgeSeries();
