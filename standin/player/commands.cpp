#include "standin/player/commands.h"

namespace player {

Act ActFor(scenario::Verb verb) {
    for (const std::span<const Deed> deeds :
         {InputDeeds(), HostDeeds(), PluginDeeds(), LookDeeds()})
        for (const Deed& deed : deeds)
            if (deed.verb == verb) return deed.act;
    return nullptr;
}

int NumberAt(const scenario::Command& command, size_t index) {
    return static_cast<int>(command.numbers[index]);
}

std::string NotOpen(const std::string& window) {
    return "the window " + window + " is not open";
}

}  // namespace player
