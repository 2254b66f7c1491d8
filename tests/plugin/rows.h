// Tables of the plug-in against the tables of their tests, row by row.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct Table {
    std::string where;  // its name and its file
    std::vector<std::string> rows;

    std::string Row(std::size_t i) const { return i < rows.size() ? rows[i] : "missing"; }
};

// One line about the first row that two tables do not share; empty when there is none.
inline std::string FirstDifference(const Table& is, const Table& expected) {
    for (std::size_t i = 0; i < is.rows.size() || i < expected.rows.size(); ++i) {
        if (is.Row(i) == expected.Row(i)) continue;
        return "row " + std::to_string(i + 1) + " of " + is.where + " is " + is.Row(i) + ", in " +
               expected.where + " it is " + expected.Row(i) +
               ": correct the one that is wrong; a new row stands in both";
    }
    return {};
}
