// The class of a window by its name.
#pragma once

#include <windows.h>

#include <cstring>

struct ClassName {
    char text[128];

    // Empty for null and for a window that is gone.
    explicit ClassName(HWND window) {
        if (!GetClassNameA(window, text, static_cast<int>(sizeof text))) text[0] = '\0';
    }
    bool Is(const char* name) const { return std::strcmp(text, name) == 0; }
};
