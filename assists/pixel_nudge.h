// Moves the selection by one pixel of the active view. A series of nudges lasts from its first one
// to the next release of any key.
#pragma once

// `command` is one of the four nudge commands.
void NudgeSelection(int command);

// Ends a running series and gives back what it took.
void EndNudgeSeries();
