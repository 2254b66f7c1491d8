// The most calls that a situation may take, read from a table: lines "SITUATION CALLS HOST", the
// second number for those among them that go to the host. What stands behind a # is for readers.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace bounds {

struct Bound {
    int calls = 0;
    int host = 0;
    bool operator==(const Bound&) const = default;
};
using Table = std::map<std::string, Bound>;

// What is wrong with the text is added to `complaints`.
Table Parse(const std::string& text, std::vector<std::string>* complaints);

// What a situation took.
struct Count {
    std::string title;
    int most = 0;
    int most_host = 0;
    int entries = 0;
    int allocations = 0;
    bool confirmed = false;
};

// `counts` has what each situation took by its name. One line for each that takes more than the
// table allows, that is not in the table, or that only the table knows. "pan_press@nodes_1000", the
// situation among many, may take as many calls as alone unless the table has a line for it.
std::vector<std::string> Misses(const Table& table, const std::map<std::string, Count>& counts);

}  // namespace bounds
