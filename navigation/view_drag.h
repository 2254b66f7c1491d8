// The drag of a viewport in one of the host's standard view modes (host::kModeZoomView,
// host::kModePanView). A brush that runs is left for its length.
#pragma once

#include "input/mouse_event.h"

// Suspends a running brush, puts the host into the view mode and starts its drag.
void SuspendToolForView(const MouseEvent& event, int view_mode);

// Ends that drag, clears the gesture flags and brings the brush back.
void ResumeToolAfterView(const MouseEvent& event);

// Presses a window's own "Zoom" (zoom mode) or "Pan" button when its checked state is not the
// wanted one.
void PressViewButton(HWND window, int view_mode, bool checked);
