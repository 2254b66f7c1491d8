// PNG files.
#pragma once

#include <cstdint>
#include <vector>

namespace pictures {

// A PNG file of 8-bit RGB pixels, row by row from the top; empty when there is no memory for it.
std::vector<uint8_t> EncodePng(int width, int height, const std::vector<uint8_t>& rgb);

}  // namespace pictures
