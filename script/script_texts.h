// Every text that the plug-in has MAXScript evaluate. Writable, because the host's call takes a
// writable text; nobody changes them.
#pragma once

extern char kDefineFrameView[];  // defines the function that the two frame commands call
extern char kFrameSelected[];
extern char kFrameAll[];
extern char kPreviousKey[];
extern char kNextKey[];
extern char kCenterPivot[];
extern char kResetViews[];
extern char kSelectEverything[];
extern char kQueryPolyTools[];  // answers through the script functions of script/primitives.cpp

// A format with the sculpt button's index in four places.
extern const char kToggleSculptButton[];
