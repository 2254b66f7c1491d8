#include "benchmarks/report.h"

#include <cstdio>

namespace report {
namespace {

using nlohmann::json;

template <typename... Values>
std::string Line(const char* format, Values... values) {
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string Situations(const json& results) {
    std::string text = Line("%-40s %6s %5s %6s %6s %6s %8s %8s %8s\n", "message", "Win32", "host",
                            "calls", "most", "alloc", "own ns", "own", "queue");
    for (const json& one : results["work"]["situations"]) {
        const json& queue = results["queue"]["situations"][one["id"].get<std::string>()];
        text += Line("%-40s %6d %5d %6d %6d %6d %8.1f %7.1fx %7.2fx\n",
                     one["title"].get<std::string>().c_str(), one["calls"]["win32"].get<int>(),
                     one["calls"]["host"].get<int>(), one["calls"]["total"].get<int>(),
                     one["most_calls"]["total"].get<int>(), one["allocations"].get<int>(),
                     one["own_work_ns"].get<double>(), one["own_work_ratio"].get<double>(),
                     queue["ratio"].get<double>());
    }
    return text +
           "\nWin32, host, calls: calls of one message, most: of the dearest one, the call that "
           "passes\n"
           "it on included. own: the hook called in a loop, all calls answered at once; its time "
           "and\n"
           "its ratio to an empty hook called so. queue: the whole way from SendInput on, as a "
           "ratio\n"
           "to an empty hook installed in its place, over the same window, no gesture running; "
           "what\n"
           "the stand-in does for the gesture is in it.\n";
}

std::string Passed(const json& queue) {
    static constexpr const char* kColumns[] = {"no_hook", "empty_hook", "plugin_off", "plugin",
                                               "low_level_hook"};
    std::string text = Line("%-40s %12s %12s %12s %12s %12s\n", "a passed event, to the empty hook",
                            "no hook", "empty hook", "plug-in off", "plug-in", "low-level");
    const std::pair<const char*, const char*> rows[] = {
        {"passed_move", "move over a foreign window"},
        {"passed_move_viewport", "move over a viewport"},
        {"passed_key", "plain key"},
    };
    for (const auto& [id, title] : rows) {
        text += Line("%-40s", title);
        for (const char* column : kColumns)
            text += Line(" %11.2fx", queue[id][column]["ratio"].get<double>());
        text += Line("\n%-40s", "  microseconds");
        for (const char* column : kColumns)
            text += Line(" %12.1f", queue[id][column]["ns"].get<double>() / 1000);
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

}  // namespace

std::string Table(const json& results) {
    const json& work = results["work"];
    const json& start = results["start"];
    const json& situations = work["situations"];
    std::string text = Situations(results) + '\n' + Passed(results["queue"]) + '\n';
    for (const auto& [part, title] :
         {std::pair{"attach", "attach, table and object"},
          std::pair{"operation", "start operation"}, std::pair{"both", "together"}})
        text += Line("start: %-25s %6.2f ms, an empty plug-in %5.2f ms\n", title,
                     start[part]["plugin_ns"].get<double>() / 1e6,
                     start[part]["empty_ns"].get<double>() / 1e6);
    text += Line("start: %.1f times an empty plug-in\n", start["both"]["ratio"].get<double>());
    text += Line(
        "memory: over %d messages of each kind the heaps grew by %lld bytes at most, the\n"
        "process by %lld; %d gestures and clicks of %d messages allocated %d times\n",
        situations[0]["memory"]["messages"].get<int>(), Largest(situations, "growth_in_use"),
        Largest(situations, "growth_committed"), work["gestures"]["gestures"].get<int>(),
        work["gestures"]["messages"].get<int>(), work["gestures"]["allocations"].get<int>());
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

}  // namespace report
