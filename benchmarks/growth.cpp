#include "benchmarks/growth.h"

#include "benchmarks/call_counts.h"
#include "benchmarks/call_sites.h"
#include "benchmarks/clock.h"
#include "benchmarks/direct.h"
#include "benchmarks/entry_points.h"
#include "benchmarks/situations.h"
#include "benchmarks/stage.h"
#include "standin/engine/world/world.h"

namespace growth {
namespace {

using nlohmann::json;

void WindowsBefore(int count) {
    world::AddWindows(count, true);
}

void WindowsAfter(int count) {
    world::AddWindows(count, false);
}

void Nodes(int count) {
    world::AddNodes(count, false);
}

void SelectedNodes(int count) {
    world::AddNodes(count, true);
}

constexpr int kWindowCounts[] = {0, 100, 1000, 10000};
constexpr int kNodeCounts[] = {10, 1000, 10000, 100000};
constexpr int kModeCounts[] = {10, 100, 1000};

constexpr const char* kWithWindows[] = {
    "move_viewport", "left_press",      "pan_press",         "pan_release", "scrub_press",
    "scrub",         "transform_press", "transform_release", "nudge",       "frame_all"};
constexpr const char* kWithNodes[] = {"move_viewport",   "left_press", "pan_press",
                                      "transform_press", "nudge",      "frame_all"};
// A click on nothing would deselect them.
constexpr const char* kWithSelection[] = {
    "move_viewport",     "pan_press", "control_shift_press", "transform_press",
    "transform_release", "nudge",     "frame_selected"};
constexpr const char* kWithModes[] = {"move_viewport", "pan_press",   "pan_release",
                                      "zoom_press",    "shift_press", "nudge"};

constexpr Kind kKinds[] = {
    {"windows_before", "windows before the host's own", WindowsBefore, kWindowCounts, 1000,
     kWithWindows},
    {"windows_after", "windows after the host's own", WindowsAfter, kWindowCounts, 1000,
     kWithWindows},
    {"nodes", "objects", Nodes, kNodeCounts, 1000, kWithNodes},
    {"selected", "selected objects", SelectedNodes, kNodeCounts, 1000, kWithSelection},
    {"modes", "modes on the stack", world::AddModes, kModeCounts, 100, kWithModes},
};

const Kind* Find(std::string_view id) {
    for (const Kind& kind : kKinds)
        if (kind.id == id) return &kind;
    return nullptr;
}

struct Start {
    double attach_ns = 0;
    double operation_ns = 0;
    call_sites::Totals calls;  // of the operation
};

bool StartAmong(input::Kind input, const plugin::Files& files, const Kind* kind, int size,
                Start* start, std::string* message) {
    if (!kind) *message = "there is no such kind of growth";
    if (!kind || !stage::OpenWorld(input, files, message)) return false;
    kind->make(size);
    const double begin = measure::NanosecondsNow();
    if (!plugin::Load(files, message)) return false;
    start->attach_ns = measure::NanosecondsNow() - begin;
    if (!stage::FindPlaces(files, message)) return false;
    call_sites::SetMode(call_sites::Mode::kCount);
    const double middle = measure::NanosecondsNow();
    plugin::RunStartOperation();
    start->operation_ns = measure::NanosecondsNow() - middle;
    start->calls = call_sites::Count();
    input::Drain();
    return true;
}

}  // namespace

std::span<const Kind> Kinds() {
    return kKinds;
}

json Measure(const plugin::Files& files, std::string_view id, int size, bool only_start) {
    const Kind* const kind = Find(id);
    Start start;
    std::string message;
    if (!StartAmong(input::Kind::kReal, files, kind, size, &start, &message))
        return {{"error", message}};
    json result = {{"start",
                    {{"attach_ns", start.attach_ns},
                     {"operation_ns", start.operation_ns},
                     {"calls", call_counts::CallsOf(start.calls)}}}};
    if (!only_start) {
        if (!direct::Open()) return {{"error", "the plug-in installed no hooks"}};
        direct::Sizes sizes;
        sizes.least_turns = 11;
        sizes.most_turns = 51;
        sizes.longest_ns = 3e8;
        for (const char* const watched : kind->watched) {
            result[watched] = direct::MeasureOne(*situations::Find(watched), sizes);
            if (result[watched].contains("error")) return result[watched];
        }
    }
    stage::Close();
    return result;
}

json Count(const plugin::Files& files, std::string_view id, int size) {
    constexpr int kTurns = 4;
    const Kind* const kind = Find(id);
    Start start;
    std::string message;
    if (!StartAmong(input::Kind::kVirtual, files, kind, size, &start, &message))
        return {{"error", message}};
    if (!entry_points::Open(input::Kind::kVirtual))
        return {{"error", "the plug-in installed no hooks"}};
    const std::string among = "@" + std::string(id) + "_" + std::to_string(size);
    json result = json::object();
    result["start" + among] = {{"title", "start operation"},
                               {"confirmed", true},
                               {"entries", 1},
                               {"calls", call_counts::CallsOf(start.calls)},
                               {"most", call_counts::CallsOf(start.calls)},
                               {"most_host", start.calls.host},
                               // It makes what lasts as long as the process.
                               {"allocations", 0}};
    for (const char* const watched : kind->watched)
        result[watched + among] = call_counts::Count(*situations::Find(watched), kTurns);
    stage::Close();
    return result;
}

}  // namespace growth
