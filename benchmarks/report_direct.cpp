#include <string>
#include <vector>

#include "benchmarks/growth.h"
#include "benchmarks/report_lines.h"
#include "benchmarks/situations.h"

namespace bench_report {
namespace {

using nlohmann::json;

double Over(const json& figures) {
    return figures["ratio"].get<double>() - figures["must_send"].get<double>();
}

// The sizes of a kind are the columns.
std::string Row(const char* title, const growth::Kind& kind, const json& sizes,
                std::string (*cell)(const json& figures)) {
    std::string text = Line("  %-46s", title);
    for (const int size : kind.sizes)
        text += Line(" %11s", cell(sizes[std::to_string(size)]).c_str());
    return text + '\n';
}

}  // namespace

std::string Direct(const json& direct) {
    std::string text = Line("%-48s %5s %20s %9s %6s %8s\n", "direct, to the empty hook", "calls",
                            "ratio (quartiles)", "must send", "over", "us");
    for (const situations::Situation& one : situations::All()) {
        const json& figures = direct[one.id];
        text += Line("%-48s %5d %20s %9.2f %6.2f %8.1f\n", one.title, figures["calls"].get<int>(),
                     RatioText(figures).c_str(), figures["must_send"].get<double>(), Over(figures),
                     figures["ns"].get<double>() / 1000);
    }
    return text +
           "\n"
           "direct: hook or command with real calls, beside an empty hook that is asked about the\n"
           "same messages. must send: the part that goes to messages, input records, cursor, "
           "focus\n"
           "and waiting, which are what the plug-in is for. over: what it takes besides.\n";
}

std::string Growth(const json& growth) {
    std::string text;
    for (const growth::Kind& kind : growth::Kinds()) {
        const json& sizes = growth[kind.id];
        text += Line("%-48s", (std::string("over what must be sent, ") + kind.title).c_str());
        for (const int size : kind.sizes)
            text += Line(" %11d", size);
        text += '\n';
        for (const char* const watched : kind.watched) {
            text += Line("  %-46s", situations::Find(watched)->title);
            for (const int size : kind.sizes)
                text += Line(" %11.2f", Over(sizes[std::to_string(size)][watched]));
            text += '\n';
        }
        text += Row("start operation, ms", kind, sizes, [](const json& figures) {
            return Line("%.2f", figures["start"]["operation_ns"].get<double>() / 1e6);
        });
        text += Row("start operation, calls", kind, sizes, [](const json& figures) {
            return Line("%d", figures["start"]["calls"].get<int>());
        });
    }
    return text;
}

}  // namespace bench_report
