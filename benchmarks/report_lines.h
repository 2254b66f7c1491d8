// The tables of the report, each for one part of the results.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

namespace bench_report {

template <typename... Values>
std::string Line(const char* format, Values... values) {
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

// "1.34 (1.24-1.48)": the ratio, and between what half of them lie.
inline std::string RatioText(const nlohmann::json& figures) {
    return Line("%.2f (%.2f-%.2f)", figures["ratio"].get<double>(),
                figures["quartiles"][0].get<double>(), figures["quartiles"][1].get<double>());
}

std::string Direct(const nlohmann::json& direct);
std::string Growth(const nlohmann::json& growth);

}  // namespace bench_report
