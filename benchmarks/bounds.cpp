#include "benchmarks/bounds.h"

#include <set>
#include <sstream>

namespace bounds {
namespace {

std::string Text(const Bound& bound) {
    return std::to_string(bound.calls) + " calls, " + std::to_string(bound.host) + " to the host";
}

}  // namespace

Table Parse(const std::string& text, std::vector<std::string>* complaints) {
    Table table;
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::string name;
        if (!(words >> name)) continue;
        Bound bound;
        std::string more;
        const bool complete = static_cast<bool>(words >> bound.calls >> bound.host) &&
                              bound.calls > 0 && bound.host >= 0 && !(words >> more);
        if (!complete || !table.emplace(name, bound).second)
            complaints->push_back("line " + std::to_string(number) +
                                  " of the bounds: a situation, its calls, those to the host");
    }
    return table;
}

std::vector<std::string> Misses(const Table& table, const std::map<std::string, Count>& counts) {
    std::vector<std::string> misses;
    std::set<std::string> used;
    for (const auto& [name, count] : counts) {
        const Bound most = {count.most, count.most_host};
        auto bound = table.find(name);
        if (bound == table.end()) bound = table.find(name.substr(0, name.find('@')));
        if (bound == table.end()) {
            misses.push_back(name + " has no bound; it takes " + Text(most));
        } else {
            used.insert(bound->first);
            if (most.calls > bound->second.calls || most.host > bound->second.host)
                misses.push_back(name + ": " + Text(most) + ", allowed are " + Text(bound->second));
        }
        if (count.entries == 0) misses.push_back(name + ": nothing came");
        if (!count.confirmed) misses.push_back(name + " is not what it says: " + count.title);
        if (count.allocations != 0) misses.push_back(name + ": memory is allocated");
    }
    for (const auto& [name, bound] : table)
        if (!used.contains(name)) misses.push_back("there is no situation " + name);
    return misses;
}

}  // namespace bounds
