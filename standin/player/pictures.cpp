#include "standin/player/pictures.h"

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <vector>

#include "standin/player/png.h"

namespace pictures {
namespace {

void DrawCursor(HDC picture) {
    CURSORINFO info{};
    info.cbSize = sizeof info;
    if (!GetCursorInfo(&info) || !(info.flags & CURSOR_SHOWING) || !info.hCursor) return;
    ICONINFO icon{};
    if (!GetIconInfo(info.hCursor, &icon)) return;
    DrawIconEx(picture, info.ptScreenPos.x - static_cast<int>(icon.xHotspot),
               info.ptScreenPos.y - static_cast<int>(icon.yHotspot), info.hCursor, 0, 0, 0, nullptr,
               DI_NORMAL);
    if (icon.hbmMask) DeleteObject(icon.hbmMask);
    if (icon.hbmColor) DeleteObject(icon.hbmColor);
}

BOOL CALLBACK Collect(HWND window, LPARAM list) {
    if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

// Window by window, the lowest first: without a display there is no screen to copy from.
void DrawWindows(HDC picture) {
    std::vector<HWND> windows;
    EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(&windows));
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        RECT place{};
        GetWindowRect(*window, &place);
        const HDC content = GetDCEx(*window, nullptr, DCX_WINDOW | DCX_CACHE);
        if (!content) continue;
        BitBlt(picture, place.left, place.top, place.right - place.left, place.bottom - place.top,
               content, 0, 0, SRCCOPY);
        ReleaseDC(*window, content);
    }
}

}  // namespace

bool SaveScreen(const std::string& file) {
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int height = GetSystemMetrics(SM_CYSCREEN);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const HDC picture = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateDIBSection(picture, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bool done = false;
    if (bitmap) {
        const HGDIOBJ before = SelectObject(picture, bitmap);
        DrawWindows(picture);
        DrawCursor(picture);
        GdiFlush();
        const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
        std::vector<uint8_t> rgb(pixels * 3);
        const auto* from = static_cast<const uint8_t*>(bits);
        for (size_t i = 0; i < pixels; ++i)
            for (size_t part = 0; part < 3; ++part)
                rgb[i * 3 + part] = from[i * 4 + 2 - part];
        SelectObject(picture, before);
        DeleteObject(bitmap);
        const std::vector<uint8_t> png = EncodePng(width, height, rgb);
        if (FILE* const out = std::fopen(file.c_str(), "wb")) {
            done = std::fwrite(png.data(), 1, png.size(), out) == png.size();
            done = std::fclose(out) == 0 && done;
        }
    }
    DeleteDC(picture);
    return done;
}

}  // namespace pictures
