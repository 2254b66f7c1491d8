#include "tests/abi/raw_host/raw_table.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>

namespace raw_host {
namespace {

const std::map<std::string, Travel> kTravels = {
    {"nothing", Travel::kNothing},
    {"int", Travel::kInt},
    {"dword", Travel::kDword},
    {"short", Travel::kShort},
    {"bool", Travel::kBool},
    {"pointer", Travel::kPointer},
    {"word64", Travel::kWord64},
    {"interval", Travel::kInterval},
    {"id", Travel::kId},
    {"interval*", Travel::kIntervalAt},
    {"id*", Travel::kIdAt},
    {"accel*", Travel::kAccelAt},
    {"text*", Travel::kTextAt},
    {"id&", Travel::kIdResult},
    {"text&", Travel::kTextResult},
};

// Reads the lines one after the other into the table.
class Reader {
public:
    Reader(std::string host, Table& table) : m_host(std::move(host)), m_table(table) {}

    bool ReadLine(const std::string& line) {
        std::istringstream words(line);
        std::vector<std::string> cells;
        if (line[0] != ' ') {
            for (std::string word; words >> word;)
                cells.push_back(word);
            return ReadHeading(cells);
        }
        for (size_t count = 0; count < m_hosts.size(); ++count)
            words >> cells.emplace_back();
        std::string what;
        std::getline(words >> std::ws, what);
        if (m_column == m_hosts.size() || !words) return false;
        return cells[m_column] == "-" || ReadCell(cells[m_column], what);
    }

    // Overloads are told apart.
    void Finish() {
        TellApart([](const Row&, const std::string& arguments) { return arguments; });
        TellApart(
            [](const Row& row, const std::string&) { return " " + std::to_string(row.slot); });
        for (const Row& row : m_table.rows) {
            for (Class& owner : m_table.classes)
                if (owner.name == row.owner) owner.rows[row.slot] = &row;
        }
    }

private:
    bool ReadHeading(const std::vector<std::string>& words) {
        if (words[0] == "hosts") {
            m_hosts.assign(words.begin() + 1, words.end());
            m_column = static_cast<size_t>(std::find(m_hosts.begin(), m_hosts.end(), m_host) -
                                           m_hosts.begin());
            return m_column < m_hosts.size();
        }
        m_kind = words[0];
        m_owner = words.back();
        return words.size() <= 2;
    }

    bool ReadCell(const std::string& cell, const std::string& what) {
        static const std::regex kNumber("(word|(size|field|number) .*)");
        static const std::regex kData(R"(data (\w+) \| (\?.*))");
        std::smatch match;
        if (std::regex_match(what, kNumber)) {
            m_table.numbers[what] = std::stoull(cell, nullptr, 0);
        } else if (what == "slots") {
            m_table.classes.push_back({m_owner, std::stoi(cell), m_kind == "derived", {}});
        } else if (std::regex_match(what, match, kData)) {
            m_table.data.push_back({match[1], std::stoi(cell), match[2]});
        } else {
            return ReadRow(cell, what);
        }
        return true;
    }

    // NAME(ARGUMENT, ...) RESULT [| ORIGIN] [| DECORATED]
    bool ReadRow(const std::string& cell, const std::string& text) {
        static const std::regex kRow(R"(([^(]+)(\([^)]*\)) (\S+)(?: \| (.*))?)");
        std::smatch match;
        if (!std::regex_match(text, match, kRow)) return false;
        Row row;
        row.name = match[1];
        const auto result = kTravels.find(match[3]);
        if (result == kTravels.end() || !ReadArguments(match[2], row.arguments)) return false;
        row.result = result->second;
        if (m_kind != "imports") {
            row.slot = std::stoi(cell);
            row.owner = m_owner;
            row.name = m_owner + "." + row.name;
            if (m_table.classes.empty() || row.slot >= m_table.classes.back().slots) return false;
        }
        const std::string origin = match[4];
        // Nobody should call it: a slot of no name, and an export that is not there.
        if (origin.rfind("uncalled", 0) == 0) return true;
        if (origin.rfind("answers ", 0) == 0) {
            row.has_answer = true;
            row.answer = std::stoull(origin.substr(8), nullptr, 0);
        }
        row.decorated = origin.substr(std::min(origin.find('?'), origin.size()));
        m_table.rows.push_back(row);
        m_arguments.push_back(match[2]);
        return true;
    }

    static bool ReadArguments(const std::string& text, std::vector<Travel>& arguments) {
        static const std::regex kWord("[^, ()]+");
        for (std::sregex_iterator word(text.begin(), text.end(), kWord), end; word != end; ++word) {
            const auto found = kTravels.find(word->str());
            if (found == kTravels.end()) return false;
            arguments.push_back(found->second);
        }
        return true;
    }

    template <class More>
    void TellApart(More more) {
        std::map<std::string, int> count;
        for (const Row& row : m_table.rows)
            ++count[row.name];
        for (size_t index = 0; index < m_table.rows.size(); ++index) {
            Row& row = m_table.rows[index];
            if (count[row.name] > 1) row.name += more(row, m_arguments[index]);
        }
    }

    const std::string m_host;
    Table& m_table;
    std::vector<std::string> m_hosts;
    size_t m_column = 0;
    std::string m_kind;
    std::string m_owner;
    std::vector<std::string> m_arguments;  // of each row, as they are written
};

}  // namespace

uint64_t MaskOf(Travel travel) {
    switch (travel) {
        case Travel::kNothing: return 0;
        case Travel::kInt:
        case Travel::kDword: return 0xFFFFFFFF;
        case Travel::kShort: return 0xFFFF;
        case Travel::kBool: return 0xFF;
        default: return ~uint64_t{0};
    }
}

bool IsByAddress(Travel travel) {
    return travel == Travel::kIntervalAt || travel == Travel::kIdAt || travel == Travel::kAccelAt;
}

bool IsThroughPlace(Travel result) {
    return result == Travel::kIdResult || result == Travel::kTextResult;
}

const Row* Table::Find(const std::string& name) const {
    for (const Row& row : rows)
        if (row.name == name) return &row;
    return nullptr;
}

const Class* Table::FindClass(const std::string& name) const {
    for (const Class& each : classes)
        if (each.name == name) return &each;
    return nullptr;
}

bool Read(const std::string& path, const std::string& host, Table& table, std::string& problem) {
    std::ifstream file(path);
    if (!file) {
        problem = path + " cannot be read";
        return false;
    }
    Reader reader(host, table);
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        if (!reader.ReadLine(line)) {
            problem = path + ":" + std::to_string(number) + ": not a line of the table: " + line;
            return false;
        }
    }
    reader.Finish();
    return true;
}

}  // namespace raw_host
