// Isolated playback: while the animation plays, only the objects of the selection set "kv Playback"
// are shown.
#pragma once

// Non-zero: playback isolates the set. No command sets it today; a time scrub with the right button
// clears it for its duration.
extern int g_isolatedPlayback;

void RegisterPlaybackCallback();
