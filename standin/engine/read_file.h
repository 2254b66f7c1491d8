// Whole files.
#pragma once

#include <array>
#include <cstdio>
#include <optional>
#include <string>

namespace files {

// What the file holds, byte for byte; none: it cannot be opened.
inline std::optional<std::string> Read(const std::string& name) {
    std::FILE* const file = std::fopen(name.c_str(), "rb");
    if (!file) return {};
    std::string text;
    std::array<char, 65536> part;
    while (!std::feof(file) && !std::ferror(file))
        text.append(part.data(), std::fread(part.data(), 1, part.size(), file));
    std::fclose(file);
    return text;
}

}  // namespace files
