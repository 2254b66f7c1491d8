// The parts of the benchmark. Each is measured in a process of its own: a world is made once in a
// process, and a plug-in starts once.
#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>

namespace parts {

// As on the command line, without the dashes.
using Options = std::map<std::string, std::string>;

// Begins a process for the part and waits for its answer; an answer with `error` is none.
nlohmann::json Run(const std::string& part, const Options& options);

// In that process. False: there is no such part.
bool Do(const std::string& part, const Options& options, nlohmann::json* result);

// All parts of these kinds, with what has to be put together from several.
nlohmann::json RunStarts(const Options& options, const std::string& empty_plugin);
nlohmann::json RunDirect(const Options& options);
nlohmann::json RunGrowth(const Options& options);
// The calls of every situation, and of some among many windows, objects or modes.
nlohmann::json RunCounts(const Options& options);

}  // namespace parts
