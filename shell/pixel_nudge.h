#pragma once

// Moves the selection by one pixel of the active view. `command` is one of the four nudge commands.
void NudgeSelection(int command);
