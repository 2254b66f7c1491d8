// The host's own pointers in its pan and zoom modes: drawn here, so that they are not taken for the
// plug-in's.
#include <algorithm>
#include <iterator>

#include "standin/engine/world/internal.h"

namespace world {

namespace {

constexpr int kSize = 32;
constexpr int kRows = 20;

struct Picture {
    int hot_x, hot_y;
    const char* rows[kRows];  // X dark, o light, all else shows what lies below
};

constexpr Picture kPan = {
    10,
    10,
    {
        "         X          ", "        XoX         ", "       XoooX        ",
        "      XoooooX       ", "      XXXoXXX       ", "   XX   XoX   XX    ",
        "  XoX   XoX   XoX   ", " XooX   XoX   XooX  ", "XoooXXXXXoXXXXXoooX ",
        "oooooooooooooooooooo", "XoooXXXXXoXXXXXoooX ", " XooX   XoX   XooX  ",
        "  XoX   XoX   XoX   ", "   XX   XoX   XX    ", "      XXXoXXX       ",
        "      XoooooX       ", "       XoooX        ", "        XoX         ",
        "         X          ", "                    ",
    }};

constexpr Picture kZoom = {
    6,
    9,
    {
        "      X             ", "     XoX            ", "    XoooX           ",
        "   XoooooX          ", "  XoooooooX         ", " XXXXXXXXXXX        ",
        "                    ", "   XXXXXXX          ", "   XoooooX          ",
        "   XoXXXoX          ", "   XoooooX          ", "   XXXXXXX          ",
        "                    ", " XXXXXXXXXXX        ", "  XoooooooX         ",
        "   XoooooX          ", "    XoooX           ", "     XoX            ",
        "      X             ", "                    ",
    }};

HCURSOR Make(const Picture& picture) {
    constexpr int kBytesARow = kSize / 8;
    // Below: 1 keeps what is there. Above: 1 turns it over, on what the first one made black:
    // white.
    BYTE keep[kSize * kBytesARow];
    BYTE light[kSize * kBytesARow]{};
    std::fill(std::begin(keep), std::end(keep), static_cast<BYTE>(0xFF));
    for (int y = 0; y < kRows; ++y)
        for (int x = 0; picture.rows[y][x]; ++x) {
            const char drawn = picture.rows[y][x];
            const auto bit = static_cast<BYTE>(0x80 >> (x % 8));
            const int at = y * kBytesARow + x / 8;
            if (drawn != ' ') keep[at] = static_cast<BYTE>(keep[at] & ~bit);
            if (drawn == 'o') light[at] = static_cast<BYTE>(light[at] | bit);
        }
    return CreateCursor(nullptr, picture.hot_x, picture.hot_y, kSize, kSize, keep, light);
}

}  // namespace

HCURSOR HostCursor(int mode) {
    static const HCURSOR pan = Make(kPan);
    static const HCURSOR zoom = Make(kZoom);
    if (mode == 200) return zoom;
    if (mode == 202) return pan;
    return nullptr;
}

}  // namespace world
