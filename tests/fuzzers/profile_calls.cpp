#include "tests/fuzzers/profile_calls.h"

#include <windows.h>

#include <algorithm>
#include <cctype>

#include "host/host.h"
#include "windows/options_window.h"

namespace profile {

std::string g_text;
std::string g_file;
std::string g_directory;
bool g_is_missing = false;

namespace {

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\v' || character == '\f';
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool AreAlike(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

// Where the line that begins at `begin` ends: at its line feed, carriage return or null.
std::size_t EndOfLine(std::size_t begin) {
    const std::size_t end = g_text.find_first_of(std::string_view("\r\n\0", 3), begin);
    return end == std::string::npos ? g_text.size() : end;
}

struct Place {
    std::size_t begin = 0;  // of the line
    std::size_t end = 0;
    bool is_found = false;
    std::size_t section_end = std::string::npos;  // where a new line of the section can stand
};

Place Look(std::string_view section, std::string_view key) {
    Place place;
    bool is_inside = false;
    for (std::size_t begin = 0; begin < g_text.size();) {
        const std::size_t end = EndOfLine(begin);
        const std::string_view line = Trimmed(std::string_view(g_text).substr(begin, end - begin));
        if (!line.empty() && line.front() == '[') {
            const std::string_view name = line.substr(1, line.find(']') - 1);
            if (is_inside) break;
            is_inside = line.find(']') != std::string_view::npos && AreAlike(name, section);
            if (is_inside) place.section_end = end;
        } else if (is_inside && !line.empty() && line.front() != ';') {
            place.section_end = end;
            const std::size_t equals = line.find('=');
            if (equals != std::string_view::npos &&
                AreAlike(Trimmed(line.substr(0, equals)), key)) {
                place.begin = begin;
                place.end = end;
                place.is_found = true;
                return place;
            }
        }
        begin = end + 1;
    }
    return place;
}

}  // namespace

std::optional<std::string> Find(std::string_view section, std::string_view key) {
    if (g_is_missing) return {};
    const Place place = Look(section, key);
    if (!place.is_found) return {};
    const std::string_view line =
        Trimmed(std::string_view(g_text).substr(place.begin, place.end - place.begin));
    std::string_view value = Trimmed(line.substr(line.find('=') + 1));
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    return std::string(value);
}

}  // namespace profile

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* default_text,
                               char* text, DWORD size, const char* file) {
    profile::g_file = file;
    const std::string value = profile::Find(section, key).value_or(default_text);
    // Written to the last byte that the caller offers, so that an offer too large is noticed.
    std::memset(text, 0x7F, size);
    const std::size_t length = std::min<std::size_t>(value.size(), size - 1);
    std::memcpy(text, value.data(), length);
    text[length] = '\0';
    return static_cast<DWORD>(length);
}

BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* text,
                                const char* file) {
    profile::g_file = file;
    if (profile::g_is_missing) profile::g_text.clear();
    profile::g_is_missing = false;
    const std::string line = std::string(key) + "=" + text;
    const profile::Place place = profile::Look(section, key);
    std::string& whole = profile::g_text;
    if (place.is_found) {
        whole.replace(place.begin, place.end - place.begin, line);
    } else if (place.section_end != std::string::npos) {
        whole.insert(place.section_end, "\r\n" + line);
    } else {
        whole += "\r\n[" + std::string(section) + "]\r\n" + line + "\r\n";
    }
    return TRUE;
}

DWORD GetFileAttributesA(const char* file) {
    profile::g_file = file;
    constexpr DWORD kArchive = 0x20;
    return profile::g_is_missing ? INVALID_FILE_ATTRIBUTES : kArchive;
}

// The window of the options is closed, so there is no button of it.
HWND g_optionsWindow = nullptr;
HWND GetDlgItem(HWND, int) {
    return nullptr;
}
BOOL EnableWindow(HWND, BOOL) {
    return FALSE;
}

namespace host {
const char* ConfigurationDirectory() {
    return profile::g_directory.c_str();
}
void RefreshMacroButtons() {}
}  // namespace host
