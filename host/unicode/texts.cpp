// Texts of hosts from 2013 on: UTF-16, converted here and nowhere else.

#include "host/sdk_text.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace host {
namespace {

constexpr int kBufferSize = 512;

// Converts a text and cuts what does not fit. No code page needs more wide characters than bytes.
void Widen(wchar_t* wide, int size, const char* text) {
    const int length = std::min(static_cast<int>(std::strlen(text)), size - 1);
    wide[MultiByteToWideChar(CP_ACP, 0, text, length, wide, size - 1)] = L'\0';
}

}  // namespace

const MCHAR* TextForHost(const char* text) {
    static wchar_t wide[kBufferSize];
    if (!text) return nullptr;
    Widen(wide, kBufferSize, text);
    return wide;
}

void CopyTextForHost(MCHAR* copy, int size, const char* text) {
    Widen(copy, size, text);
}

bool IsHostText(const MCHAR* host_text, const char* text) {
    if (!host_text) return false;
    // The narrow text is the one to convert: every one of those has a wide form.
    wchar_t wide[kBufferSize];
    return MultiByteToWideChar(CP_ACP, 0, text, -1, wide, kBufferSize) != 0 &&
           std::wcscmp(host_text, wide) == 0;
}

const char* PathFromHost(const MCHAR* path) {
    static char narrow[MAX_PATH];
    if (!path) return "";
    // A folder of characters that the code page does not have is reached by its short name.
    wchar_t short_path[MAX_PATH];
    BOOL lossy = FALSE;
    const int length = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path, -1, narrow, MAX_PATH,
                                           nullptr, &lossy);
    if (length > 0 && !lossy) return narrow;
    const DWORD short_length = GetShortPathNameW(path, short_path, MAX_PATH);
    if (short_length > 0 && short_length < MAX_PATH &&
        WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, short_path, -1, narrow, MAX_PATH, nullptr,
                            nullptr) > 0) {
        return narrow;
    }
    return "";
}

}  // namespace host
