#include "benchmarks/bench.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "benchmarks/bounds.h"
#include "benchmarks/call_counts.h"
#include "benchmarks/clock.h"
#include "benchmarks/hook_work.h"
#include "benchmarks/passages.h"
#include "benchmarks/queue_time.h"
#include "benchmarks/report.h"
#include "benchmarks/situations.h"
#include "benchmarks/stage.h"
#include "benchmarks/start_time.h"

namespace {

using nlohmann::json;

constexpr char kUsage[] =
    "usage: bench --host-dir DIR --plugin FILE --map FILE --empty-plugin FILE [--json FILE]\n"
    "       bench check --host-dir DIR --plugin FILE --map FILE --bounds FILE\n"
    "                   the figures without times\n";

using Options = std::map<std::string, std::string>;

int Complain(const std::string& message) {
    std::fprintf(stderr, "bench: %s\n", message.c_str());
    return 1;
}

int Usage() {
    std::fputs(kUsage, stderr);
    return 2;
}

std::string BesideProgram(const char* name) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string program = path;
    return program.substr(0, program.find_last_of("\\/") + 1) + name;
}

// Each part is measured in a process of its own: a world is made once in a process.
json RunPart(const std::string& part, const Options& options) {
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

json MeasureCounts(const plugin::Files& files) {
    constexpr int kTurns = 16;
    std::string message;
    if (!stage::Open(input::Kind::kVirtual, files, &message)) return {{"error", message}};
    if (!passages::Open(input::Kind::kVirtual))
        return {{"error", "the plug-in installed no hooks"}};
    json result = call_counts::CountAll(kTurns);
    stage::Close();
    return result;
}

int DoPart(const std::string& part, Options& options) {
    const plugin::Files files = {options["host-dir"], options["plugin"], options["map"]};
    json result;
    if (part == "work") {
        result = hook_work::Measure(files, {});
    } else if (part == "calls") {
        hook_work::Sizes sizes;
        sizes.timed = false;
        sizes.gestures = 500;
        result = hook_work::Measure(files, sizes);
    } else if (part == "counts") {
        result = MeasureCounts(files);
    } else if (part == "queue") {
        result = queue_time::Measure(files, BesideProgram("low_level_hook.exe"), {});
    } else if (part == "start") {
        result = start_time::MeasureOnce(files);
    } else {
        return Complain("there is no part '" + part + "'");
    }
    std::ofstream(options["output"]) << result;
    return 0;
}

json MeasureStarts(const Options& options, const std::string& empty_plugin) {
    constexpr int kRounds = 11;
    Options empty = options;
    empty["plugin"] = empty_plugin;
    std::map<std::string, std::vector<double>> plugin_times;
    std::map<std::string, std::vector<double>> empty_times;
    constexpr const char* kParts[] = {"attach", "operation", "both"};
    for (int round = 0; round < kRounds; ++round) {
        json with_empty = RunPart("start", empty);
        if (with_empty.contains("error")) return with_empty;
        json with_plugin = RunPart("start", options);
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

std::string ReadText(const std::string& file) {
    std::ifstream opened(file);
    return {std::istreambuf_iterator<char>(opened), {}};
}

int Check(const Options& options) {
    Options common = options;
    common.erase("bounds");
    std::vector<std::string> misses;
    const bounds::Table table = bounds::Parse(ReadText(options.at("bounds")), &misses);
    const json counts = RunPart("counts", common);
    if (counts.contains("error")) return Complain(counts["error"]);
    for (const situations::Situation& one : situations::All())
        std::printf("%-28s %4d  # %s\n", one.id, counts[one.id]["most"].get<int>(), one.title);
    const json work = RunPart("calls", common);
    if (work.contains("error")) return Complain(work["error"]);
    for (const std::vector<std::string>& more :
         {bounds::Misses(table, counts), report::Misses(work)})
        misses.insert(misses.end(), more.begin(), more.end());
    for (const std::string& miss : misses)
        Complain(miss);
    return misses.empty() ? 0 : 1;
}

int RunAll(Options& options) {
    const std::string empty_plugin = options["empty-plugin"];
    const std::string json_file = options["json"];
    Options common = options;
    common.erase("empty-plugin");
    common.erase("json");
    json results;
    for (const char* part : {"work", "queue"}) {
        std::fprintf(stderr, "bench: %s\n", part);
        results[part] = RunPart(part, common);
        if (results[part].contains("error")) return Complain(results[part]["error"]);
    }
    std::fprintf(stderr, "bench: start\n");
    results["start"] = MeasureStarts(common, empty_plugin);
    if (results["start"].contains("error")) return Complain(results["start"]["error"]);
    const std::vector<std::string> misses = report::Misses(results["work"]);
    results["misses"] = misses;
    if (!json_file.empty() && !(std::ofstream(json_file) << results.dump(2) << '\n'))
        return Complain(json_file + " can not be written");
    std::fputs(report::Table(results).c_str(), stdout);
    for (const std::string& miss : misses)
        Complain(miss);
    return misses.empty() ? 0 : 1;
}

}  // namespace

int bench_main(int count, char** arguments) {
    std::string verb;
    std::string part;
    int next = 1;
    if (next < count && arguments[next][0] != '-') verb = arguments[next++];
    if (verb == "part" && next < count) part = arguments[next++];
    Options options;
    for (; next + 1 < count; next += 2) {
        const std::string name = arguments[next];
        if (!name.starts_with("--")) break;
        options[name.substr(2)] = arguments[next + 1];
    }
    const bool known = verb.empty() || verb == "check" || verb == "part";
    if (!known || next != count || options["host-dir"].empty() || options["plugin"].empty())
        return Usage();
    if (verb == "part") return DoPart(part, options);
    if (verb == "check") return options.contains("bounds") ? Check(options) : Usage();
    return RunAll(options);
}
