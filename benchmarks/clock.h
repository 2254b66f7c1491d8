// Time, and the figure that stands for many measurements of it.
#pragma once

#include <windows.h>

#include <algorithm>
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

// A median over rounds: rounds that were disturbed by other work of the machine lie at the far end
// and do not move it.
inline double Median(std::vector<double> values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Each round measures the subject and the empty hook one after the other; the ratio is taken within
// the round, where the machine was in one mood.
inline double MedianRatio(const std::vector<double>& values, const std::vector<double>& to) {
    std::vector<double> ratios;
    for (size_t i = 0; i < values.size() && i < to.size(); ++i)
        ratios.push_back(values[i] / to[i]);
    return Median(std::move(ratios));
}

}  // namespace measure
