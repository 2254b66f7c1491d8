#include "navigation/gesture_state.h"

int g_orbitActive = 0;
int g_zoomActive = 0;
int g_panActive = 0;
int g_navLocked = 0;
WindowKind g_navKind = kWindowOther;
unsigned g_heldButtons = 0;
