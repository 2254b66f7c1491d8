#include "benchmarks/call_counts.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace call_counts {
namespace {

using call_sites::Totals;
using nlohmann::json;

std::vector<Totals> g_noted;
int g_depth = 0;

Totals Difference(const Totals& after, const Totals& before) {
    return {after.win32 - before.win32, after.host - before.host, after.heap - before.heap};
}

Totals Sum(const std::vector<Totals>& each) {
    Totals sum;
    for (const Totals& one : each) {
        sum.win32 += one.win32;
        sum.host += one.host;
        sum.heap += one.heap;
    }
    return sum;
}

std::map<std::string, uint64_t> g_names;

LRESULT NoteNames(HOOKPROC entry, int code, WPARAM wparam, LPARAM lparam) {
    if (g_depth != 0) return entry(code, wparam, lparam);
    call_sites::Forget();
    const LRESULT answer = Note(entry, code, wparam, lparam);
    for (const call_sites::Site* site : call_sites::All())
        if (site->calls && site->group != call_sites::Group::kRuntime)
            g_names[site->name] += site->calls;
    return answer;
}

}  // namespace

uint64_t CallsOf(const Totals& totals) {
    return totals.win32 + totals.host;
}

Summary Summarize(const std::vector<Totals>& each) {
    Summary summary;
    summary.entries = each.size();
    if (each.empty()) return summary;
    std::map<std::pair<uint64_t, uint64_t>, int> often;
    int best = 0;
    summary.least_calls = CallsOf(each.front());
    for (const Totals& one : each) {
        const int times = ++often[{one.win32, one.host}];
        if (times > best) {
            best = times;
            summary.typical = one;
        }
        if (CallsOf(one) >= CallsOf(summary.most)) summary.most = one;
        summary.least_calls = std::min(summary.least_calls, CallsOf(one));
        summary.heap += one.heap;
    }
    return summary;
}

LRESULT Note(HOOKPROC entry, int code, WPARAM wparam, LPARAM lparam) {
    if (g_depth != 0) return entry(code, wparam, lparam);
    ++g_depth;
    const Totals before = call_sites::Count();
    const LRESULT answer = entry(code, wparam, lparam);
    g_noted.push_back(Difference(call_sites::Count(), before));
    --g_depth;
    return answer;
}

std::vector<Totals> Noted() {
    return std::exchange(g_noted, {});
}

json Count(const situations::Situation& situation, int turns) {
    situations::Enter(situation);
    // The first turns may set something up.
    for (int turn = 0; turn < 2; ++turn)
        situations::Turn(situation, nullptr);
    std::vector<Totals> each;
    size_t entries = 0;
    bool confirmed = true;
    for (int turn = 0; turn < turns; ++turn) {
        confirmed = situations::Turn(situation, Note) && confirmed;
        const std::vector<Totals> noted = Noted();
        entries += noted.size();
        each.push_back(Sum(noted));
    }
    const Summary summary = Summarize(each);
    situations::Turn(situation, NoteNames);
    Noted();
    situations::Leave(situation);
    return {{"title", situation.title},      {"entries", entries},
            {"confirmed", confirmed},        {"win32", summary.typical.win32},
            {"host", summary.typical.host},  {"calls", CallsOf(summary.typical)},
            {"most", CallsOf(summary.most)}, {"most_host", summary.most.host},
            {"allocations", summary.heap},   {"called", std::exchange(g_names, {})}};
}

json CountAll(int turns) {
    json all = json::object();
    call_sites::SetMode(call_sites::Mode::kCount);
    for (const situations::Situation& situation : situations::All())
        all[situation.id] = Count(situation, turns);
    call_sites::SetMode(call_sites::Mode::kUntouched);
    return all;
}

}  // namespace call_counts
