#include "benchmarks/bench.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "benchmarks/bounds.h"
#include "benchmarks/machine.h"
#include "benchmarks/parts.h"
#include "benchmarks/report.h"
#include "benchmarks/situations.h"

namespace {

using nlohmann::json;
using parts::Options;

constexpr char kUsage[] =
    "usage: bench --host-dir DIR --plugin FILE --map FILE --empty-plugin FILE [--json FILE]\n"
    "             [--only PART,...]   parts: work, direct, queue, growth, start\n"
    "       bench check --host-dir DIR --plugin FILE --map FILE --bounds FILE\n"
    "                   the figures without times\n";

int Complain(const std::string& message) {
    std::fprintf(stderr, "bench: %s\n", message.c_str());
    return 1;
}

int ComplainOfAll(const std::vector<std::string>& misses) {
    for (const std::string& miss : misses)
        Complain(miss);
    return misses.empty() ? 0 : 1;
}

int Usage() {
    std::fputs(kUsage, stderr);
    return 2;
}

std::string Take(Options* options, const char* name) {
    const auto found = options->find(name);
    if (found == options->end()) return {};
    const std::string value = found->second;
    options->erase(found);
    return value;
}

std::string ReadText(const std::string& file) {
    std::ifstream opened(file);
    return {std::istreambuf_iterator<char>(opened), {}};
}

// As lines of the table of bounds, in the order of the situations.
void PrintCounts(json counts) {
    const auto print = [](const std::string& name, const json& count) {
        std::printf("%-40s %5d %4d  # %s\n", name.c_str(), count["most"].get<int>(),
                    count["most_host"].get<int>(), count["title"].get<std::string>().c_str());
    };
    for (const situations::Situation& one : situations::All()) {
        print(one.id, counts[one.id]);
        counts.erase(one.id);
    }
    for (const auto& [name, count] : counts.items())
        print(name, count);
}

std::map<std::string, bounds::Count> Taken(const json& counts) {
    std::map<std::string, bounds::Count> taken;
    for (const auto& [name, count] : counts.items())
        taken[name] = {count["title"],   count["most"],        count["most_host"],
                       count["entries"], count["allocations"], count["confirmed"]};
    return taken;
}

int Check(Options options) {
    std::vector<std::string> misses;
    const bounds::Table table = bounds::Parse(ReadText(Take(&options, "bounds")), &misses);
    const json counts = parts::RunCounts(options);
    if (counts.contains("error")) return Complain(counts["error"]);
    PrintCounts(counts);
    const json work = parts::Run("calls", options);
    if (work.contains("error")) return Complain(work["error"]);
    for (const std::vector<std::string>& more :
         {bounds::Misses(table, Taken(counts)), bench_report::Misses(work)})
        misses.insert(misses.end(), more.begin(), more.end());
    return ComplainOfAll(misses);
}

int RunAll(Options options) {
    const std::string empty_plugin = Take(&options, "empty-plugin");
    const std::string json_file = Take(&options, "json");
    const std::string only = "," + Take(&options, "only") + ",";
    struct Part {
        const char* name;
        json (*run)(const Options&, const std::string& empty_plugin);
    };
    static constexpr Part kParts[] = {
        {"work", [](const Options& o, const std::string&) { return parts::Run("work", o); }},
        {"direct", [](const Options& o, const std::string&) { return parts::RunDirect(o); }},
        {"queue", [](const Options& o, const std::string&) { return parts::Run("queue", o); }},
        {"growth", [](const Options& o, const std::string&) { return parts::RunGrowth(o); }},
        {"start", parts::RunStarts},
    };
    json results;
    results["machine"] = {{"processors", machine::Processors()}, {"load_before", machine::Load()}};
    for (const Part& part : kParts) {
        if (only != ",," && only.find("," + std::string(part.name) + ",") == std::string::npos)
            continue;
        std::fprintf(stderr, "bench: %s\n", part.name);
        results[part.name] = part.run(options, empty_plugin);
        if (results[part.name].contains("error")) return Complain(results[part.name]["error"]);
    }
    results["machine"]["load_after"] = machine::Load();
    std::vector<std::string> misses;
    if (results.contains("work")) misses = bench_report::Misses(results["work"]);
    results["misses"] = misses;
    if (!json_file.empty() && !(std::ofstream(json_file) << results.dump(2) << '\n'))
        return Complain(json_file + " can not be written");
    std::fputs(bench_report::Table(results).c_str(), stdout);
    return ComplainOfAll(misses);
}

int DoPart(const std::string& part, Options options) {
    const std::string output = Take(&options, "output");
    json result;
    if (!parts::Do(part, options, &result)) return Complain("there is no part '" + part + "'");
    std::ofstream(output) << result;
    return 0;
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
