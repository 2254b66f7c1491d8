// The link map of a plug-in build: where its globals lie, though the file exports none of them.
// Reads the maps of lld-link (/map) and of GNU ld (-Map). Needs no Windows.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace link_map {

struct Map {
    // Plain names of global variables to their distance from where the file is loaded.
    std::map<std::string, uint64_t, std::less<>> globals;
};

// Null when the text is no map of a known kind.
std::optional<Map> Read(std::string_view text);

}  // namespace link_map
