#include "standin/player/png.h"

// The library's mistakes are its own.
#ifndef __clang_analyzer__
#define STB_IMAGE_WRITE_IMPLEMENTATION
#endif
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace pictures {

std::vector<uint8_t> EncodePng(int width, int height, const std::vector<uint8_t>& rgb) {
    std::vector<uint8_t> png;
    const auto add = [](void* file, void* data, int size) {
        const auto* const bytes = static_cast<const uint8_t*>(data);
        auto* const all = static_cast<std::vector<uint8_t>*>(file);
        all->insert(all->end(), bytes, bytes + size);
    };
    // Windows are plain areas: trying all filters costs time and saves little.
    stbi_write_force_png_filter = 0;
    constexpr int kParts = 3;
    if (!stbi_write_png_to_func(add, &png, width, height, kParts, rgb.data(), width * kParts))
        png.clear();
    return png;
}

}  // namespace pictures
