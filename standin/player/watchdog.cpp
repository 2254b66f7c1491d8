#include "standin/player/watchdog.h"

namespace watchdog {
namespace {

std::string Seconds(unsigned milliseconds) {
    return std::to_string(milliseconds / 1000) + " seconds";
}

}  // namespace

std::optional<End> Judge(unsigned still, const char* preparing) {
    if (preparing) {
        if (still < kLongestPreparation) return std::nullopt;
        return End{true, std::string("the play has not begun after ") +
                             Seconds(kLongestPreparation) + ", it was still " + preparing};
    }
    if (still < kLongestStandstill) return std::nullopt;
    return End{false,
               "no progress for " + Seconds(kLongestStandstill) + ", the play is ended here"};
}

}  // namespace watchdog
