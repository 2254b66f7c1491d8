#include "benchmarks/start_time.h"

#include <windows.h>

#include "benchmarks/clock.h"
#include "benchmarks/stage.h"

namespace start_time {

nlohmann::json MeasureOnce(const plugin::Files& files) {
    std::string message;
    if (!stage::OpenWorld(input::Kind::kVirtual, files, &message)) return {{"error", message}};
    const double begin = measure::NanosecondsNow();
    const bool loaded = plugin::Load(files, &message);
    const double attached = measure::NanosecondsNow();
    if (loaded) plugin::RunStartOperation();
    const double end = measure::NanosecondsNow();
    stage::Close();
    if (!loaded) return {{"error", message}};
    return {{"attach", attached - begin}, {"operation", end - attached}, {"both", end - begin}};
}

}  // namespace start_time
