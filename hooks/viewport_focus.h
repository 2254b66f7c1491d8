// With the option for it, a keyboard shortcut acts on the viewport under the mouse: the viewport is
// made the active one before the main window sees the command.
#pragma once

#include <windows.h>

// Subclasses the host's main window. A second call leaves the first one's procedure in its place.
void InstallViewportAutoFocus();

// The panel that holds the viewports; null until installed.
extern HWND g_viewPanel;
