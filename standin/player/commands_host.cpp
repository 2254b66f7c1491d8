// What the host does itself: modes, scene, views, buttons, editors, faults.
#include <windows.h>

#include "standin/engine/world/world.h"
#include "standin/player/commands.h"

namespace player {
namespace {

using scenario::Command;
using enum scenario::Verb;

// What only does something, as the function of a table.
template <auto kDo>
std::string Plain(Game&, const Command& command) {
    kDo(command);
    return {};
}

int ModeClass(const Command& command) {
    return command.numbers.size() > 1 ? NumberAt(command, 1) : -1;
}

world::ViewKind ViewKindOf(const std::string& word) {
    return word == "persp"   ? world::ViewKind::kPerspective
           : word == "ortho" ? world::ViewKind::kOrthographic
                             : world::ViewKind::kUser;
}

world::ActionState ActionStateOf(const std::string& word) {
    return word == "on"    ? world::ActionState::kOn
           : word == "off" ? world::ActionState::kOff
                           : world::ActionState::kStuck;
}

std::vector<int> Numbers(const Command& command) {
    std::vector<int> numbers;
    numbers.reserve(command.numbers.size());
    for (size_t i = 0; i < command.numbers.size(); ++i)
        numbers.push_back(NumberAt(command, i));
    return numbers;
}

std::string Open(Game&, const Command& command) {
    return world::OpenWindow(command.words[0]) ? "" : command.words[0] + " can not be opened";
}

std::string Close(Game&, const Command& command) {
    return world::CloseWindow(command.words[0]) ? "" : command.words[0] + " is not open";
}

std::string Destroy(Game&, const Command& command) {
    return world::DestroyWindow(command.words[0]) ? "" : command.words[0] + " is not there";
}

void SetAction(const Command& command) {
    world::SetAction(static_cast<unsigned long>(command.numbers[0]), NumberAt(command, 1),
                     ActionStateOf(command.words[0]));
}

constexpr Deed kDeeds[] = {
    {kModeNone, Plain<[](const Command&) { world::ClearModes(); }>},
    {kModePop, Plain<[](const Command&) { world::PopMode(); }>},
    {kModePush, Plain<[](const Command& c) { world::PushMode(NumberAt(c, 0), ModeClass(c)); }>},
    {kModeStack, Plain<[](const Command& c) { world::SetModes(Numbers(c)); }>},
    {kModeReplace,
     Plain<[](const Command& c) { world::ReplaceMode(NumberAt(c, 0), ModeClass(c)); }>},
    {kSelect, Plain<[](const Command& c) { world::Select(c.words); }>},
    {kSubobject, Plain<[](const Command& c) { world::SetSubobjectLevel(c.on ? 1 : 0); }>},
    {kView,
     Plain<[](const Command& c) { world::SetViewKind(c.words[0], ViewKindOf(c.words[1])); }>},
    {kLock, Plain<[](const Command& c) { world::LockView(c.words[0], c.on); }>},
    {kOpen, Open},
    {kClose, Close},
    {kDestroy, Destroy},
    {kCheckButton, Plain<[](const Command& c) { world::CheckButton(NumberAt(c, 0), c.on); }>},
    {kEnableButton, Plain<[](const Command& c) { world::EnableButton(NumberAt(c, 0), c.on); }>},
    {kPlaceButton, Plain<[](const Command& c) { world::PlaceButton(NumberAt(c, 0), c.on); }>},
    {kAction, Plain<SetAction>},
    {kBrush, Plain<[](const Command& c) { world::CheckBrush(NumberAt(c, 0), c.on); }>},
    {kPaint, Plain<[](const Command& c) { world::CheckPaint(NumberAt(c, 0), c.on); }>},
    {kSculptTool, Plain<[](const Command& c) { world::SetSculptTool(NumberAt(c, 0)); }>},
    {kPaintDeformTool, Plain<[](const Command& c) { world::SetPaintDeformTool(NumberAt(c, 0)); }>},
    {kPolyShift, Plain<[](const Command& c) { world::SetPolyShift(c.on); }>},
    {kPolyToolsThere, Plain<[](const Command& c) { world::LoadPolyTools(c.on); }>},
    {kInteractionMode, Plain<[](const Command& c) { world::SetInteractionMode(c.text); }>},
    {kNamedSet, Plain<[](const Command& c) { world::SetNamedSet(c.text, c.words); }>},
    {kHide, Plain<[](const Command& c) { world::HideObject(c.words[0], true); }>},
    {kUnhide, Plain<[](const Command& c) { world::HideObject(c.words[0], false); }>},
    {kTracks, Plain<[](const Command& c) { world::SetSelectedTracks(c.words); }>},
    {kKeys, Plain<[](const Command& c) { world::SetKeys(c.words[0], Numbers(c)); }>},
    {kSelectKeys, Plain<[](const Command& c) { world::SelectKeys(c.words[0], Numbers(c)); }>},
    {kForeground, Plain<[](const Command& c) { world::SetForegroundTitle(c.text); }>},
    {kPlay, Plain<[](const Command& c) { world::SetPlaying(c.on); }>},
    {kFail, Plain<[](const Command& c) { world::SetFault(c.words[0], c.on); }>},
    {kRebuildToolbar, Plain<[](const Command&) { world::RebuildToolbars(); }>},
    {kScriptsTake, Plain<[](const Command& c) {
         world::SetScriptTime(static_cast<unsigned long>(c.numbers[0]));
     }>},
};

}  // namespace

std::span<const Deed> HostDeeds() {
    return kDeeds;
}

}  // namespace player
