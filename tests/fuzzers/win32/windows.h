// As much of Win32 as the settings store needs, for a build without Windows. The functions are
// played by profile_calls.cpp.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>

using BOOL = int;
using DWORD = unsigned int;
using UINT = unsigned int;
struct HWND__;
using HWND = HWND__*;

inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* default_text,
                               char* text, DWORD size, const char* file);
BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* text,
                                const char* file);
DWORD GetFileAttributesA(const char* file);
HWND GetDlgItem(HWND dialog, int id);
BOOL EnableWindow(HWND window, BOOL enable);

inline int lstrlenA(const char* text) {
    return static_cast<int>(std::strlen(text));
}
inline char* lstrcpynA(char* copy, const char* text, int size) {
    std::snprintf(copy, static_cast<std::size_t>(size), "%s", text);
    return copy;
}
inline char* lstrcatA(char* text, const char* more) {
    return std::strcat(text, more);
}
template <typename... Values>
int wsprintfA(char* text, const char* format, Values... values) {
    return std::sprintf(text, format, values...);
}
