#include "standin/engine/plugin/link_map.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace link_map {
namespace {

// The first words of a line; empty where it has fewer.
using Words = std::array<std::string_view, 3>;
Words WordsOf(std::string_view line) {
    constexpr std::string_view kBlanks = " \t\r\n";
    Words words;
    for (std::string_view& word : words) {
        line.remove_prefix(std::min(line.size(), line.find_first_not_of(kBlanks)));
        word = line.substr(0, line.find_first_of(kBlanks));
        line.remove_prefix(word.size());
    }
    return words;
}

std::optional<uint64_t> Hex(std::string_view text) {
    if (text.starts_with("0x")) text.remove_prefix(2);
    uint64_t value = 0;
    const char* const start = text.data();
    const char* const end = start + text.size();
    const auto read = std::from_chars(start, end, value, 16);
    if (text.empty() || read.ec != std::errc() || read.ptr != end) return {};
    return value;
}

// In the decorated name of a variable, after its plain one.
constexpr std::string_view kVariable = "@@3";

// The plain name in a variable's decorated one: `?g_navKind@@3HA` is g_navKind. Members of
// namespaces and functions give an empty name.
std::string_view PlainName(std::string_view decorated) {
    if (!decorated.starts_with('?')) return {};
    const size_t end = decorated.find(kVariable);
    if (end == std::string_view::npos) return {};
    const std::string_view name = decorated.substr(1, end - 1);
    return name.find_first_of("?@") == std::string_view::npos ? name : std::string_view();
}

bool IsIdentifier(std::string_view text) {
    if (text.empty() || (text[0] >= '0' && text[0] <= '9')) return false;
    for (const char c : text)
        if (c != '_' && (c < '0' || c > '9') && (c < 'a' || c > 'z') && (c < 'A' || c > 'Z'))
            return false;
    return true;
}

template <typename Visit>
void ForEachLine(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const size_t end = text.find('\n');
        visit(text.substr(0, end));
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

// Lines of the kind ` 0003:00000010  ?g_navKind@@3HA  0000000180005010  file.obj`.
Map ReadMicrosoft(std::string_view text, uint64_t base) {
    Map map;
    ForEachLine(text, [&](std::string_view line) {
        if (line.find(kVariable) == std::string_view::npos) return;
        const Words words = WordsOf(line);
        if (words[0].find(':') == std::string_view::npos) return;
        const std::string_view name = PlainName(words[1]);
        const std::optional<uint64_t> address = Hex(words[2]);
        if (!name.empty() && address && *address >= base)
            map.globals.emplace(name, *address - base);
    });
    return map;
}

// Lines of the kind `                0x00000002c0c0a040                g_navKind`.
Map ReadGnu(std::string_view text, uint64_t base) {
    Map map;
    ForEachLine(text, [&](std::string_view line) {
        const Words words = WordsOf(line);
        if (!words[0].starts_with("0x") || !IsIdentifier(words[1]) || !words[2].empty()) return;
        const std::optional<uint64_t> address = Hex(words[0]);
        if (address && *address > base) map.globals.emplace(words[1], *address - base);
    });
    return map;
}

}  // namespace

std::optional<Map> Read(std::string_view text) {
    constexpr std::string_view kPreferred = "Preferred load address is ";
    if (const size_t at = text.find(kPreferred); at != std::string_view::npos) {
        const Words words = WordsOf(text.substr(at + kPreferred.size(), 32));
        if (const std::optional<uint64_t> base = Hex(words[0])) return ReadMicrosoft(text, *base);
    }
    // GNU ld defines the image's base as a symbol.
    std::optional<uint64_t> base;
    ForEachLine(text, [&base](std::string_view line) {
        if (base || line.find("__image_base__") == std::string_view::npos) return;
        const Words words = WordsOf(line);
        if (!words[1].empty() && words[0].starts_with("0x")) base = Hex(words[0]);
    });
    if (base) return ReadGnu(text, *base);
    return {};
}

}  // namespace link_map
