// The time that the host's start loses to a plug-in: "attach" (load, class description, action
// table, creation), start "operation", and "both", in nanoseconds.
#pragma once

#include <nlohmann/json.hpp>

#include "standin/engine/plugin/loader.h"

namespace start_time {

// Starts the plug-in once; a process can do that only once.
nlohmann::json MeasureOnce(const plugin::Files& files);

}  // namespace start_time
