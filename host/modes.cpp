#include <max.h>

#include "host/core_interface.h"
#include "host/host.h"

namespace host {
namespace {

CommandMode* CurrentMode() {
    Interface* core = Core();
    return core ? core->GetCommandMode() : nullptr;
}

}  // namespace

std::optional<int> CurrentModeId() {
    CommandMode* mode = CurrentMode();
    return mode ? std::optional<int>(mode->ID()) : std::nullopt;
}

std::optional<int> CurrentModeClass() {
    CommandMode* mode = CurrentMode();
    return mode ? std::optional<int>(mode->Class()) : std::nullopt;
}

int ModeStackSize() {
    Interface* core = Core();
    return core ? core->GetCommandStackSize() : 0;
}

void PushStandardMode(int id) {
    if (Interface* core = Core()) core->PushStdCommandMode(id);
}

void PopMode() {
    if (Interface* core = Core()) core->PopCommandMode();
}

void PopModeIfStacked() {
    if (ModeStackSize() >= 2) PopMode();
}

void RegisterModeCallback(CommandModeChangedCallback* callback) {
    if (Interface* core = Core()) core->RegisterCommandModeChangedCallback(callback);
}

void PrepareDrag() {
    PushStandardMode(CID_OBJMOVE);
}

void EndDrag() {
    // The mode that goes is the one that PrepareDrag pushed, so the depth is not asked.
    PopMode();
}

}  // namespace host
