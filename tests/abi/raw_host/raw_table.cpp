#include "tests/abi/raw_host/raw_table.h"

#include <fstream>
#include <regex>

namespace raw_host {
namespace {

const std::map<std::string, Travel> kTravels = {
    {"nothing", Travel::kNothing}, {"int", Travel::kInt},           {"dword", Travel::kDword},
    {"short", Travel::kShort},     {"bool", Travel::kBool},         {"pointer", Travel::kPointer},
    {"word64", Travel::kWord64},   {"interval", Travel::kInterval}, {"id*", Travel::kId},
    {"accel*", Travel::kAccel},    {"id&", Travel::kIdResult},
};

bool ReadArguments(const std::string& text, std::vector<Travel>& arguments) {
    static const std::regex kWord("[^, ]+");
    for (std::sregex_iterator word(text.begin(), text.end(), kWord), end; word != end; ++word) {
        const auto found = kTravels.find(word->str());
        if (found == kTravels.end()) return false;
        arguments.push_back(found->second);
    }
    return true;
}

// NAME(ARGUMENT, ...) RESULT [| ORIGIN]
bool ReadRow(const std::string& text, Row& row) {
    static const std::regex kRow(R"(([^(]+)\(([^)]*)\) (\S+)(?: \| (.*))?)");
    std::smatch match;
    if (!std::regex_match(text, match, kRow)) return false;
    row.name = match[1];
    const auto result = kTravels.find(match[3]);
    if (result == kTravels.end() || !ReadArguments(match[2], row.arguments)) return false;
    row.result = result->second;
    const std::string origin = match[4];
    if (origin.rfind("answers ", 0) == 0) {
        row.has_answer = true;
        row.answer = std::stoull(origin.substr(8), nullptr, 0);
    } else if (origin.rfind('?', 0) == 0) {
        row.decorated = origin;
    }
    return true;
}

bool ReadLine(const std::string& line, Table& table) {
    static const std::regex kClass(R"((class|derived) (\w+) (\d+))");
    static const std::regex kMember(R"(  (\d+) (.*))");
    static const std::regex kImport(R"(import (.* \| \?.*))");
    static const std::regex kData(R"(data (\w+) (\d+) \| (\?.*))");
    std::smatch match;
    if (std::regex_match(line, match, kClass)) {
        table.classes.push_back({match[2], std::stoi(match[3]), match[1] == "derived", {}});
        return true;
    }
    if (std::regex_match(line, match, kData)) {
        table.data.push_back({match[1], std::stoi(match[2]), match[3]});
        return true;
    }
    Row row;
    if (std::regex_match(line, match, kImport)) {
        if (!ReadRow(match[1], row)) return false;
        table.rows.push_back(row);
        return true;
    }
    if (!std::regex_match(line, match, kMember) || table.classes.empty()) return false;
    const Class& owner = table.classes.back();
    row.slot = std::stoi(match[1]);
    row.owner = owner.name;
    if (!ReadRow(match[2], row) || row.slot >= owner.slots) return false;
    row.name = row.owner + "." + row.name;
    table.rows.push_back(row);
    return true;
}

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

bool Read(const std::string& path, Table& table, std::string& problem) {
    std::ifstream file(path);
    if (!file) {
        problem = path + " cannot be read";
        return false;
    }
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        if (!ReadLine(line, table)) {
            problem = path + ":" + std::to_string(number) + ": not a line of the table: " + line;
            return false;
        }
    }
    for (const Row& row : table.rows) {
        for (Class& owner : table.classes)
            if (owner.name == row.owner) owner.rows[row.slot] = &row;
    }
    return true;
}

}  // namespace raw_host
