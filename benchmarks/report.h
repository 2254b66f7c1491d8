// What has been measured, as a table and as a judgement.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace bench_report {

// Of the parts that are there.
std::string Table(const nlohmann::json& results);

// What own work must not do: allocate, grow, go another way. One line for each that does.
std::vector<std::string> Misses(const nlohmann::json& work);

}  // namespace bench_report
