// What has been measured, as a table and as a judgement.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace report {

std::string Table(const nlohmann::json& results);

// The figures that depend on no machine, held against their aims; one line for each that misses.
std::vector<std::string> Misses(const nlohmann::json& work);

}  // namespace report
