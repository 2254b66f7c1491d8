// Brushes of the command panel, of the vertex-paint floater and of PolyTools: suspended while an
// Alt zoom or pan drags a viewport, and brought back when it ends.
#pragma once

#include <windows.h>

// The brush button that was checked when a drag began and is clicked again at its end; null: none.
extern HWND g_activeToolButton;
// The PolyTools sculpt button to be toggled back at the end of a drag; 0: none.
extern int g_pendingSculptButton;

// Suspends a running brush, puts the host into the standard view mode (zoom or pan) and starts its
// drag at the point (client coordinates of the window).
void SuspendToolForView(int view_mode, POINT point, HWND window);

// Ends that drag at the point, clears the gesture flags and brings the brush back.
void ResumeToolAfterView(POINT point, HWND window);

// Presses a window's own "Zoom" (view mode 200) or "Pan" button when its checked state is not the
// wanted one.
void PressViewButton(HWND window, int view_mode, bool checked);

// Asks the host for its PolyTools state, on hosts that have it; on others the last known one
// stands.
void RefreshSculptState();
// Whether a sculpt or paint brush of PolyTools is active, as last asked.
bool IsSculptBrushActive();
