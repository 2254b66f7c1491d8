#pragma once

// The snap command whose key is held (2, 3, 4 or 6); 0: none. The first one held wins.
extern int g_heldSnapSticky;

// Switches the snap of a sticky command (its id) on or off. On does nothing while one is held.
void SetStickySnap(int command, bool on);
