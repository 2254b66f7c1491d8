// Hosts up to 2012 have no Interaction Mode.

#include "host/interaction_mode.h"

namespace host {

void AskInteractionMode() {}

bool AnswersAltInViewports() {
    return false;
}

}  // namespace host
