#include "standin/engine/plugin/link_map.h"

#include <charconv>
#include <vector>

namespace link_map {
namespace {

std::vector<std::string_view> Words(std::string_view line) {
    std::vector<std::string_view> words;
    while (true) {
        const size_t begin = line.find_first_not_of(" \t\r\n");
        if (begin == std::string_view::npos) return words;
        line.remove_prefix(begin);
        const size_t end = line.find_first_of(" \t\r\n");
        words.push_back(line.substr(0, end));
        if (end == std::string_view::npos) return words;
        line.remove_prefix(end);
    }
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

// The plain name in a variable's decorated one: `?g_navKind@@3HA` is g_navKind. Members of
// namespaces and functions give an empty name.
std::string_view PlainName(std::string_view decorated) {
    if (!decorated.starts_with('?')) return {};
    const size_t end = decorated.find("@@3");
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
        const std::vector<std::string_view> words = Words(line);
        if (words.size() < 3 || words[0].find(':') == std::string_view::npos) return;
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
        const std::vector<std::string_view> words = Words(line);
        if (words.size() != 2 || !words[0].starts_with("0x") || !IsIdentifier(words[1])) return;
        const std::optional<uint64_t> address = Hex(words[0]);
        if (address && *address > base) map.globals.emplace(words[1], *address - base);
    });
    return map;
}

}  // namespace

std::optional<Map> Read(std::string_view text) {
    constexpr std::string_view kPreferred = "Preferred load address is ";
    if (const size_t at = text.find(kPreferred); at != std::string_view::npos) {
        const std::vector<std::string_view> words = Words(text.substr(at + kPreferred.size(), 32));
        const std::optional<uint64_t> base = words.empty() ? std::nullopt : Hex(words[0]);
        if (base) return ReadMicrosoft(text, *base);
    }
    // GNU ld defines the image's base as a symbol.
    std::optional<uint64_t> base;
    ForEachLine(text, [&base](std::string_view line) {
        if (base || line.find("__image_base__") == std::string_view::npos) return;
        const std::vector<std::string_view> words = Words(line);
        if (words.size() >= 2 && words[0].starts_with("0x")) base = Hex(words[0]);
    });
    if (base) return ReadGnu(text, *base);
    return {};
}

}  // namespace link_map
