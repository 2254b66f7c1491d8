#include "benchmarks/report.h"

#include <utility>

#include "benchmarks/report_lines.h"
#include "benchmarks/situations.h"

namespace bench_report {
namespace {

using nlohmann::json;

std::string Own(const json& work) {
    std::string text =
        Line("%-48s %8s %8s\n", "own work, all calls answered at once", "ns", "ratio");
    for (const json& one : work["situations"])
        text += Line("%-48s %8.1f %8.1f\n", one["title"].get<std::string>().c_str(),
                     one["own_work_ns"].get<double>(), one["own_work_ratio"].get<double>());
    return text;
}

std::string Queue(const json& queue) {
    std::string text =
        Line("%-48s %20s\n", "from SendInput on, to an empty hook", "ratio (quartiles)");
    for (const situations::Situation& one : situations::Repeated())
        text += Line("%-48s %20s\n", one.title, RatioText(queue["situations"][one.id]).c_str());
    return text +
           "The empty hook is over the same window, no gesture running; what the stand-in does "
           "for\n"
           "the gesture is in the ratio.\n";
}

std::string Passed(const json& queue) {
    static constexpr const char* kColumns[] = {"no_hook", "empty_hook", "plugin_off", "plugin",
                                               "low_level_hook"};
    std::string text = Line("%-28s %17s %17s %17s %17s %17s\n", "a passed event", "no hook",
                            "empty hook", "plug-in off", "plug-in", "low-level");
    const std::pair<const char*, const char*> rows[] = {
        {"passed_move", "move over a foreign window"},
        {"passed_move_viewport", "move over a viewport"},
        {"passed_key", "plain key"},
    };
    for (const auto& [id, title] : rows) {
        text += Line("%-28s", title);
        for (const char* column : kColumns)
            text += Line(" %17s", RatioText(queue[id][column]).c_str());
        text += Line("\n%-28s", "  microseconds");
        for (const char* column : kColumns)
            text += Line(" %17.1f", queue[id][column]["ns"].get<double>() / 1000);
        text += '\n';
    }
    return text + "low-level: no hook in the host, another process with low-level hooks instead.\n";
}

long long Largest(const json& situations, const char* figure) {
    long long largest = 0;
    for (const json& one : situations)
        largest = std::max(largest, one["memory"][figure].get<long long>());
    return largest;
}

std::string Start(const json& start) {
    std::string text;
    for (const auto& [part, title] :
         {std::pair{"attach", "attach, table and object"},
          std::pair{"operation", "start operation"}, std::pair{"both", "together"}})
        text += Line("start: %-25s %6.2f ms, an empty plug-in %5.2f ms\n", title,
                     start[part]["plugin_ns"].get<double>() / 1e6,
                     start[part]["empty_ns"].get<double>() / 1e6);
    return text +
           Line("start: %.1f times an empty plug-in\n", start["both"]["ratio"].get<double>());
}

std::string Memory(const json& work) {
    const json& situations = work["situations"];
    return Line(
        "memory: over %d messages of each kind the heaps grew by %lld bytes at most, the\n"
        "process by %lld; %d gestures and clicks of %d messages allocated %d times\n",
        situations[0]["memory"]["messages"].get<int>(), Largest(situations, "growth_in_use"),
        Largest(situations, "growth_committed"), work["gestures"]["gestures"].get<int>(),
        work["gestures"]["messages"].get<int>(), work["gestures"]["allocations"].get<int>());
}

std::string Machine(const json& machine) {
    const auto load = [&machine](const char* when) {
        const std::string text = machine[when];
        return text.empty() ? std::string("unknown") : text;
    };
    return Line("machine: %d processors; load %s before, %s after (1, 5 and 15 minutes)\n",
                machine["processors"].get<int>(), load("load_before").c_str(),
                load("load_after").c_str());
}

}  // namespace

std::string Table(const json& results) {
    std::string text;
    const auto add = [&](const char* part, std::string (*table)(const json&)) {
        if (results.contains(part)) text += table(results[part]) + '\n';
    };
    add("direct", Direct);
    add("growth", Growth);
    add("work", Own);
    add("queue", Queue);
    add("queue", Passed);
    add("start", Start);
    add("work", Memory);
    add("machine", Machine);
    return text;
}

std::vector<std::string> Misses(const json& work) {
    std::vector<std::string> misses;
    for (const char* kind : {"imported", "virtual", "heap"})
        if (work["places"][kind].get<int>() == 0)
            misses.push_back(std::string("no calls of this kind can be counted: ") + kind);
    for (const json& one : work["situations"]) {
        const std::string title = one["title"];
        if (one["messages"].get<int>() == 0) misses.push_back(title + ": no message came");
        if (one["allocations"].get<int>() != 0) misses.push_back(title + ": memory is allocated");
        if (!one["faked_as_real"].get<bool>())
            misses.push_back(title + ": with faked answers the plug-in goes another way");
        if (one["memory"]["growth_in_use"].get<long long>() > 0)
            misses.push_back(title + ": the heaps grow");
        if (one["memory"]["growth_committed"].get<long long>() > 0)
            misses.push_back(title + ": the process grows");
    }
    const json& gestures = work["gestures"];
    if (gestures["allocations"].get<int>() != 0) misses.push_back("gestures allocate memory");
    if (gestures["keys_left_down"].get<bool>()) misses.push_back("a gesture left a key down");
    if (gestures["messages"].get<int>() < gestures["gestures"].get<int>())
        misses.push_back("gestures without messages");
    return misses;
}

}  // namespace bench_report
