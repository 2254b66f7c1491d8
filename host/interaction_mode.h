// The host's own Interaction Mode, which hosts up to 2012 do not have. In one of its modes the host
// itself answers drags with Alt in viewports as this plug-in does, and a drag must not be answered
// twice.
#pragma once

namespace host {

// Asks the host for its mode while the plug-in starts. The listener is told when viewports are left
// to it.
void AskInteractionMode();

// Whether presses with Alt in viewports are the host's. False before the host was asked, and where
// it does not answer.
bool AnswersAltInViewports();

}  // namespace host
