#include "benchmarks/bounds.h"

#include <set>
#include <sstream>

namespace bounds {

Table Parse(const std::string& text, std::vector<std::string>* complaints) {
    Table table;
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::string name;
        if (!(words >> name)) continue;
        int calls = 0;
        std::string more;
        const bool complete = static_cast<bool>(words >> calls) && calls > 0 && !(words >> more);
        if (!complete || !table.emplace(name, calls).second)
            complaints->push_back("line " + std::to_string(number) +
                                  " of the bounds: a situation and its calls, once each");
    }
    return table;
}

std::vector<std::string> Misses(const Table& table, const nlohmann::json& counts) {
    std::vector<std::string> misses;
    std::set<std::string> used;
    for (const auto& [name, count] : counts.items()) {
        const int most = count["most"];
        auto bound = table.find(name);
        if (bound == table.end()) bound = table.find(name.substr(0, name.find('@')));
        if (bound == table.end()) {
            misses.push_back(name + " has no bound; it takes " + std::to_string(most) + " calls");
        } else {
            used.insert(bound->first);
            if (most > bound->second)
                misses.push_back(name + ": " + std::to_string(most) + " calls, " +
                                 std::to_string(bound->second) + " are allowed");
        }
        if (count["entries"].get<int>() == 0) misses.push_back(name + ": nothing came");
        if (!count["confirmed"].get<bool>())
            misses.push_back(name + " is not what it says: " + count["title"].get<std::string>());
        if (count["allocations"].get<int>() != 0) misses.push_back(name + ": memory is allocated");
    }
    for (const auto& [name, calls] : table)
        if (!used.contains(name)) misses.push_back("there is no situation " + name);
    return misses;
}

}  // namespace bounds
