#include "standin/scenario/reference.h"

#include <algorithm>

#include "standin/scenario/language.h"

namespace scenario {
namespace {

// One row; a bar within would begin another column.
std::string TableRow(std::string_view name, std::string_view help) {
    std::string escaped;
    for (const char c : name)
        escaped += c == '|' ? "\\|" : std::string(1, c);
    return "| `" + escaped + "` | " + std::string(help) + " |\n";
}

std::string ArgumentHelp(const Argument& argument) {
    if (argument.check == Check::kSubject) return "one of the subjects below";
    if (argument.check == Check::kOneOf) {
        std::string values = "`";
        for (const char c : argument.help)
            values += c == ' ' ? "`, `" : std::string(1, c);
        return values + "`";
    }
    if (!argument.help.empty()) return std::string(argument.help);
    return "a number from " + std::to_string(argument.lowest) + " to " +
           std::to_string(argument.highest);
}

std::string TableOf(std::string_view name) {
    std::string table = "| " +
                        std::string(name == "arguments"  ? "word"
                                    : name == "subjects" ? "subject"
                                                         : "command") +
                        " | |\n|---|---|\n";
    for (const Section& section : Sections())
        if (section.name == name)
            for (const Row& row : section.rows)
                table += TableRow(row.form, row.help);
    if (name == "arguments")
        for (const Argument& argument : Arguments())
            table += TableRow(argument.name, ArgumentHelp(argument));
    if (name == "subjects")
        for (const Subject& subject : Subjects())
            table += TableRow(subject.word, subject.help);
    return table;
}

}  // namespace

std::string Renewed(std::string_view page) {
    constexpr std::string_view kBegin = "<!-- table: ";
    constexpr std::string_view kBegun = " -->\n\n";
    std::string made;
    for (;;) {
        const size_t name = page.find(kBegin) + kBegin.size();
        const size_t begun = page.find(kBegun, name);
        if (page.find(kBegin) == page.npos || begun == page.npos) return made + std::string(page);
        made += page.substr(0, begun + kBegun.size());
        made += TableOf(page.substr(name, begun - name));
        page.remove_prefix(begun + kBegun.size());
        while (page.starts_with('|'))
            page.remove_prefix(std::min(page.size() - 1, page.find('\n')) + 1);
    }
}

}  // namespace scenario
