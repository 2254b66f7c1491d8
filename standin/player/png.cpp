// PNG without a compressor: runs of equal bytes are what large plain areas are made of, so the
// deflate stream is written with fixed codes and matches at distance one pixel or one row.
#include <array>
#include <cstring>

#include "standin/player/pictures.h"

namespace pictures {
namespace {

class Bits {
public:
    explicit Bits(std::vector<uint8_t>* out) : out_(out) {}

    void Put(unsigned value, int count) {
        for (int i = 0; i < count; ++i)
            Bit((value >> i) & 1);
    }

    // Huffman codes go in from their highest bit.
    void PutCode(unsigned code, int count) {
        for (int i = count - 1; i >= 0; --i)
            Bit((code >> i) & 1);
    }

    void Finish() {
        if (used_) out_->push_back(static_cast<uint8_t>(byte_));
    }

private:
    void Bit(unsigned bit) {
        byte_ |= bit << used_;
        if (++used_ < 8) return;
        out_->push_back(static_cast<uint8_t>(byte_));
        byte_ = 0;
        used_ = 0;
    }

    std::vector<uint8_t>* out_;
    unsigned byte_ = 0;
    int used_ = 0;
};

void PutSymbol(Bits& bits, unsigned symbol) {
    if (symbol < 144)
        bits.PutCode(0x30 + symbol, 8);
    else if (symbol < 256)
        bits.PutCode(0x190 + symbol - 144, 9);
    else if (symbol < 280)
        bits.PutCode(symbol - 256, 7);
    else
        bits.PutCode(0xC0 + symbol - 280, 8);
}

// Length and distance codes: the base value of each code and how many extra bits follow it.
struct Code {
    unsigned base;
    int extra;
};
constexpr Code kLengths[] = {
    {3, 0},  {4, 0},  {5, 0},  {6, 0},   {7, 0},   {8, 0},   {9, 0},   {10, 0},  {11, 1},  {13, 1},
    {15, 1}, {17, 1}, {19, 2}, {23, 2},  {27, 2},  {31, 2},  {35, 3},  {43, 3},  {51, 3},  {59, 3},
    {67, 4}, {83, 4}, {99, 4}, {115, 4}, {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0},
};
constexpr Code kDistances[] = {
    {1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
    {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
    {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
    {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
    {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13},
};

template <size_t kCount>
size_t CodeOf(const Code (&codes)[kCount], unsigned value) {
    size_t code = kCount - 1;
    while (codes[code].base > value)
        --code;
    return code;
}

void PutMatch(Bits& bits, unsigned length, unsigned distance) {
    const size_t length_code = CodeOf(kLengths, length);
    PutSymbol(bits, static_cast<unsigned>(257 + length_code));
    bits.Put(length - kLengths[length_code].base, kLengths[length_code].extra);
    const size_t distance_code = CodeOf(kDistances, distance);
    bits.PutCode(static_cast<unsigned>(distance_code), 5);
    bits.Put(distance - kDistances[distance_code].base, kDistances[distance_code].extra);
}

unsigned MatchLength(const std::vector<uint8_t>& data, size_t at, size_t distance) {
    if (distance == 0 || distance > at) return 0;
    constexpr unsigned kLongest = 258;
    unsigned length = 0;
    while (length < kLongest && at + length < data.size() &&
           data[at + length] == data[at + length - distance])
        ++length;
    return length;
}

std::vector<uint8_t> Deflate(const std::vector<uint8_t>& data, size_t row) {
    std::vector<uint8_t> out = {0x78, 0x01};
    Bits bits(&out);
    bits.Put(1, 1);  // the last block
    bits.Put(1, 2);  // fixed codes
    constexpr size_t kFarthest = 32768;
    constexpr size_t kPixel = 3;
    for (size_t at = 0; at < data.size();) {
        size_t distance = kPixel;
        unsigned length = MatchLength(data, at, kPixel);
        const unsigned above = row <= kFarthest ? MatchLength(data, at, row) : 0;
        if (above > length) {
            length = above;
            distance = row;
        }
        if (length >= 4) {
            PutMatch(bits, length, static_cast<unsigned>(distance));
            at += length;
        } else {
            PutSymbol(bits, data[at++]);
        }
    }
    PutSymbol(bits, 256);
    bits.Finish();
    unsigned a = 1;
    unsigned b = 0;
    for (const uint8_t byte : data) {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    for (const unsigned part : {b >> 8, b, a >> 8, a})
        out.push_back(static_cast<uint8_t>(part));
    return out;
}

uint32_t Checksum(const uint8_t* data, size_t size) {
    static const std::array<uint32_t, 256> table = [] {
        std::array<uint32_t, 256> made{};
        for (uint32_t i = 0; i < 256; ++i) {
            uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit)
                value = value & 1 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
            made[i] = value;
        }
        return made;
    }();
    uint32_t sum = 0xFFFFFFFFu;
    for (size_t i = 0; i < size; ++i)
        sum = table[(sum ^ data[i]) & 255] ^ (sum >> 8);
    return ~sum;
}

void PutNumber(std::vector<uint8_t>* out, uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out->push_back(static_cast<uint8_t>(value >> shift));
}

void PutChunk(std::vector<uint8_t>* out, const char* kind, const std::vector<uint8_t>& data) {
    PutNumber(out, static_cast<uint32_t>(data.size()));
    const size_t begin = out->size();
    out->insert(out->end(), kind, kind + 4);
    out->insert(out->end(), data.begin(), data.end());
    PutNumber(out, Checksum(out->data() + begin, out->size() - begin));
}

}  // namespace

std::vector<uint8_t> EncodePng(int width, int height, const std::vector<uint8_t>& rgb) {
    std::vector<uint8_t> out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    std::vector<uint8_t> header;
    PutNumber(&header, static_cast<uint32_t>(width));
    PutNumber(&header, static_cast<uint32_t>(height));
    for (const int byte : {8, 2, 0, 0, 0})
        header.push_back(static_cast<uint8_t>(byte));
    PutChunk(&out, "IHDR", header);
    const size_t row = static_cast<size_t>(width) * 3;
    std::vector<uint8_t> rows;
    rows.reserve((row + 1) * static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        rows.push_back(0);  // no filter
        const uint8_t* const begin = rgb.data() + static_cast<size_t>(y) * row;
        rows.insert(rows.end(), begin, begin + row);
    }
    PutChunk(&out, "IDAT", Deflate(rows, row + 1));
    PutChunk(&out, "IEND", {});
    return out;
}

}  // namespace pictures
