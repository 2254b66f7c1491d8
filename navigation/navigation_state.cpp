#include "navigation/navigation_state.h"

int g_orbitActive = 0;
int g_zoomActive = 0;
int g_panActive = 0;
int g_navLocked = 0;
int g_navKind = 0;
unsigned g_heldButtons = 0;
int g_quickXform = 0;
int g_shiftClone = 0;
int g_selCtrl = 0;
int g_selShift = 0;
int g_selCtrlShift = 0;
int g_selectNotPushed = 0;
int g_replayWaits = 0;
int g_sculptRedirect = 0;
int g_scrubState = kScrubOff;
int g_scrubWrapped = 0;
POINT g_scrubLast = {};
POINT g_thumbPos = {};
POINT g_zoomLast = {};
POINT g_zoomVirtual = {};
int g_zoomWarp = 0;
int g_altUpPending = 0;
