// Brushes of the command panel, of the vertex-paint floater and of PolyTools: suspended while a
// gesture drags a viewport, and brought back when it ends.
#pragma once

// Leaves a brush that runs and remembers it.
void SuspendBrush();
// Brings the remembered brush back; nothing happens without one.
void ResumeBrush();
// A remembered button is not clicked again.
void ForgetBrush();
