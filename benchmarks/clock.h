// Time, and the figure that stands for many measurements of it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace measure {

inline double NanosecondsNow() {
    static const double per_tick = [] {
        LARGE_INTEGER frequency;
        QueryPerformanceFrequency(&frequency);
        return 1e9 / static_cast<double>(frequency.QuadPart);
    }();
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return static_cast<double>(now.QuadPart) * per_tick;
}

inline double Quantile(std::vector<double> values, double part) {
    if (values.empty()) return 0;
    const auto place = static_cast<size_t>(static_cast<double>(values.size()) * part);
    const auto at =
        values.begin() + static_cast<std::ptrdiff_t>(std::min(place, values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

// A median over rounds: rounds that were disturbed by other work of the machine lie at the far end
// and do not move it.
inline double Median(std::vector<double> values) {
    return Quantile(std::move(values), 0.5);
}

// Each round measures the subject and the empty hook one after the other; the ratio is taken within
// the round, where the machine was in one mood.
inline std::vector<double> Ratios(const std::vector<double>& values,
                                  const std::vector<double>& to) {
    std::vector<double> ratios;
    for (size_t i = 0; i < values.size() && i < to.size(); ++i)
        ratios.push_back(values[i] / to[i]);
    return ratios;
}

inline double MedianRatio(const std::vector<double>& values, const std::vector<double>& to) {
    return Median(Ratios(values, to));
}

// Half of the ratios lie between the two.
inline std::array<double, 2> RatioQuartiles(const std::vector<double>& values,
                                            const std::vector<double>& to) {
    const std::vector<double> ratios = Ratios(values, to);
    return {Quantile(ratios, 0.25), Quantile(ratios, 0.75)};
}

}  // namespace measure
