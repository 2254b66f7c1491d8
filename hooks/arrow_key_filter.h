// On hosts below release 7000 the arrow keys move the view while a viewport has the focus, in the
// way of a user who steers by mouse: the filter holds them back while navigation is on.
#pragma once

#include <windows.h>

// Subclasses every viewport window on those hosts; does nothing on later ones. A window that is
// subclassed already is left alone.
void InstallViewportKeyFilters();
