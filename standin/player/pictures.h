// Pictures of the screen as PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pictures {

// The whole screen with the cursor. False when there is nothing to see or the file can not be
// written.
bool SaveScreen(const std::string& file);

// A PNG file of 8-bit RGB pixels, row by row from the top.
std::vector<uint8_t> EncodePng(int width, int height, const std::vector<uint8_t>& rgb);

}  // namespace pictures
