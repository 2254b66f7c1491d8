#include "benchmarks/parts.h"

#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include "benchmarks/call_counts.h"
#include "benchmarks/clock.h"
#include "benchmarks/direct.h"
#include "benchmarks/growth.h"
#include "benchmarks/hook_work.h"
#include "benchmarks/entry_points.h"
#include "benchmarks/queue_time.h"
#include "benchmarks/stage.h"
#include "benchmarks/start_time.h"

namespace parts {
namespace {

using nlohmann::json;

std::string BesideProgram(const char* name) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string program = path;
    return program.substr(0, program.find_last_of("\\/") + 1) + name;
}

std::string Value(const Options& options, const char* name) {
    const auto found = options.find(name);
    return found == options.end() ? std::string() : found->second;
}

json Counts(const plugin::Files& files) {
    constexpr int kTurns = 16;
    std::string message;
    if (!stage::Open(input::Kind::kVirtual, files, &message)) return {{"error", message}};
    if (!entry_points::Open(input::Kind::kVirtual))
        return {{"error", "the plug-in installed no hooks"}};
    json result = call_counts::CountAll(kTurns);
    stage::Close();
    return result;
}

json OwnCalls(const plugin::Files& files) {
    hook_work::Sizes sizes;
    sizes.timed = false;
    sizes.gestures = 500;
    return hook_work::Measure(files, sizes);
}

Options WithMany(Options options, const growth::Kind& kind, int size) {
    options["growth"] = kind.id;
    options["size"] = std::to_string(size);
    return options;
}

json StartFigure(const std::vector<double>& attach, const std::vector<double>& operation,
                 const json& calls) {
    return {{"attach_ns", measure::Median(attach)},
            {"operation_ns", measure::Median(operation)},
            {"calls", calls}};
}

}  // namespace

json Run(const std::string& part, const Options& options) {
    static int number = 0;
    char temp[MAX_PATH] = "";
    GetTempPathA(sizeof temp, temp);
    const std::string output = std::string(temp) + "karvel-bench-" +
                               std::to_string(GetCurrentProcessId()) + "-" +
                               std::to_string(++number) + ".json";
    const std::string program = BesideProgram("bench.exe");
    std::string line = "\"" + program + "\" part " + part + " --output \"" + output + "\"";
    for (const auto& [name, value] : options)
        line.append(" --").append(name).append(" \"").append(value).append("\"");
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION made{};
    if (!CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &made))
        return {{"error", "no process can be started"}};
    constexpr DWORD kLongest = 10 * 60 * 1000;
    const bool ended = WaitForSingleObject(made.hProcess, kLongest) == WAIT_OBJECT_0;
    if (!ended) TerminateProcess(made.hProcess, 1);
    DWORD status = 0;
    GetExitCodeProcess(made.hProcess, &status);
    CloseHandle(made.hThread);
    CloseHandle(made.hProcess);
    json result = json::parse(std::ifstream(output), nullptr, false);
    DeleteFileA(output.c_str());
    if (!ended) return {{"error", "no end after ten minutes"}};
    if (result.is_discarded())
        return {{"error", "the process ended with status " + std::to_string(status) +
                              " and without an answer"}};
    return result;
}

bool Do(const std::string& part, const Options& options, json* result) {
    const plugin::Files files = {Value(options, "host-dir"), Value(options, "plugin"),
                                 Value(options, "map"), ""};
    const std::string kind = Value(options, "growth");
    const int size = std::atoi(Value(options, "size").c_str());
    if (part == "work") {
        *result = hook_work::Measure(files, {});
    } else if (part == "calls") {
        *result = OwnCalls(files);
    } else if (part == "counts") {
        *result = kind.empty() ? Counts(files) : growth::Count(files, kind, size);
    } else if (part == "direct") {
        *result = direct::Measure(files, {});
    } else if (part == "growth") {
        *result = growth::Measure(files, kind, size, options.contains("only-start"));
    } else if (part == "queue") {
        *result = queue_time::Measure(files, BesideProgram("low_level_hook.exe"), {});
    } else if (part == "start") {
        *result = start_time::MeasureOnce(files);
    } else {
        return false;
    }
    return true;
}

json RunStarts(const Options& options, const std::string& empty_plugin) {
    constexpr int kRounds = 11;
    Options empty = options;
    empty["plugin"] = empty_plugin;
    std::map<std::string, std::vector<double>> plugin_times;
    std::map<std::string, std::vector<double>> empty_times;
    constexpr const char* kParts[] = {"attach", "operation", "both"};
    for (int round = 0; round < kRounds; ++round) {
        json with_empty = Run("start", empty);
        if (with_empty.contains("error")) return with_empty;
        json with_plugin = Run("start", options);
        if (with_plugin.contains("error")) return with_plugin;
        for (const char* part : kParts) {
            empty_times[part].push_back(with_empty[part]);
            plugin_times[part].push_back(with_plugin[part]);
        }
    }
    json result;
    for (const char* part : kParts)
        result[part] = {{"plugin_ns", measure::Median(plugin_times[part])},
                        {"empty_ns", measure::Median(empty_times[part])},
                        {"ratio", measure::MedianRatio(plugin_times[part], empty_times[part])}};
    return result;
}

json RunDirect(const Options& options) {
    json counts = Run("counts", options);
    if (counts.contains("error")) return counts;
    json result = Run("direct", options);
    if (result.contains("error")) return result;
    for (auto& [name, figures] : result.items())
        for (const char* const figure : {"calls", "called"})
            figures[figure] = counts[name][figure];
    return result;
}

json RunGrowth(const Options& options) {
    constexpr int kStarts = 3;
    json result;
    for (const growth::Kind& kind : growth::Kinds()) {
        for (const int size : kind.sizes) {
            Options many = WithMany(options, kind, size);
            json figures = Run("growth", many);
            if (figures.contains("error")) return figures;
            std::vector<double> attach = {figures["start"]["attach_ns"]};
            std::vector<double> operation = {figures["start"]["operation_ns"]};
            many["only-start"] = "yes";
            while (operation.size() < kStarts) {
                const json again = Run("growth", many);
                if (again.contains("error")) return again;
                attach.push_back(again["start"]["attach_ns"]);
                operation.push_back(again["start"]["operation_ns"]);
            }
            figures["start"] = StartFigure(attach, operation, figures["start"]["calls"]);
            result[kind.id][std::to_string(size)] = figures;
        }
    }
    return result;
}

json RunCounts(const Options& options) {
    json counts = Run("counts", options);
    if (counts.contains("error")) return counts;
    for (const growth::Kind& kind : growth::Kinds()) {
        const json more = Run("counts", WithMany(options, kind, kind.counted_size));
        if (more.contains("error")) return more;
        counts.update(more);
    }
    return counts;
}

}  // namespace parts
