// usage: png_probe FILE WIDTH HEIGHT
// Writes a picture whose pixels png_test.py knows.
#include <cstdio>
#include <cstdlib>

#include "standin/player/png.h"

int main(int count, char** arguments) {
    if (count != 4) return 2;
    const int width = std::atoi(arguments[2]);
    const int height = std::atoi(arguments[3]);
    std::vector<uint8_t> rgb;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (const int part : {x * 7 + y * 3, x ^ y, x < width / 2 ? 200 : x * y})
                rgb.push_back(static_cast<uint8_t>(part));
    const std::vector<uint8_t> png = pictures::EncodePng(width, height, rgb);
    std::FILE* const file = std::fopen(arguments[1], "wb");
    if (!file) return 1;
    const bool written = std::fwrite(png.data(), 1, png.size(), file) == png.size();
    return std::fclose(file) == 0 && written ? 0 : 1;
}
