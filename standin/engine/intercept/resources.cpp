// Resources, the settings file and texts as the plug-in calls them.
#include "standin/engine/intercept/internal.h"

namespace intercept {
namespace {

// Later lines know what was loaded by the name that it was loaded by.
template <typename Handle>
Handle Named(const std::string& name, Handle handle) {
    NoteResource(handle, name);
    return handle;
}

// No call, but the folder of the settings file, which can vanish.
constexpr const char* kSettingsFolder = "settings-folder";
const bool g_fault_known = faults::AddNames({kSettingsFolder});

// The settings file, or where it would be if its folder had not vanished.
std::string PlaceOf(const char* file) {
    if (Fails(kSettingsFolder)) return "Z:\\vanished-folder\\Karvel.ini";
    std::string path = file ? file : "";
    // The system puts a file without a folder into its own, which all plays share; here each has
    // one.
    if (path.find_first_of("\\/") != std::string::npos) return path;
    return world::g_world.options.config_dir + "\\system-folder-" + path;
}

// The folder differs from play to play.
std::string FileOf(const char* path) {
    const std::string text = path ? path : "";
    return text.substr(text.find_last_of("\\/") + 1);
}

// clang-format off
#define LOADER(result, name, parameters, ...) \
    READER_AS(result, name, parameters, (resource), answer ? "1" : "0", __VA_ARGS__)
LOADER(HCURSOR, LoadCursorA, (HINSTANCE module, const char* resource),
    Named(!module && resource == IDC_ARROW ? "arrow" : Text(resource),
          ::LoadCursorA(module, resource)))
LOADER(HICON, LoadIconA, (HINSTANCE module, const char* resource),
    Named(Text(resource), ::LoadIconA(module, resource)))
LOADER(HANDLE, LoadImageA,
    (HINSTANCE module, const char* resource, UINT type, int width, int height, UINT flags),
    Named(Text(resource), ::LoadImageA(module, resource, type, width, height, flags)))
LOADER(HMENU, LoadMenuA, (HINSTANCE module, const char* resource),
    Named(Text(resource), ::LoadMenuA(module, resource)))
LOADER(HACCEL, LoadAcceleratorsA, (HINSTANCE module, const char* resource),
    Named(Text(resource), ::LoadAcceleratorsA(module, resource)))
READER_AS(int, LoadStringA, (HINSTANCE module, UINT id, char* text, int size), (id),
    trace::Quoted(answer > 0 ? text : ""), ::LoadStringA(module, id, text, size))
READER_AS(DWORD, GetFileAttributesA, (const char* file), (FileOf(file)),
    Text(static_cast<int>(answer)), ::GetFileAttributesA(PlaceOf(file).c_str()))
// clang-format on

// Texts for hosts that take wide ones; no line, because what is done with them has its own.
#define CONVERTER(name, parameters, arguments)      \
    WRAPPER(int, name, parameters) {                \
        return Fails(#name) ? 0 : ::name arguments; \
    }
CONVERTER(MultiByteToWideChar,
          (UINT page, DWORD flags, const char* text, int length, wchar_t* wide, int size),
          (page, flags, text, length, wide, size))
CONVERTER(WideCharToMultiByte,
          (UINT page, DWORD flags, const wchar_t* wide, int length, char* text, int size,
           const char* unknown, BOOL* lossy),
          (page, flags, wide, length, text, size, unknown, lossy))

WRAPPER(DWORD, GetPrivateProfileStringA,
        (const char* section, const char* key, const char* default_text, char* text, DWORD size,
         const char* file)) {
    // A file that can not be read gives the default, as a missing one does.
    const std::string source =
        Fails("GetPrivateProfileStringA") ? "Z:\\nowhere.ini" : PlaceOf(file);
    const DWORD length =
        ::GetPrivateProfileStringA(section, key, default_text, text, size, source.c_str());
    if (trace::AsksWanted())
        trace::Ask(std::string("GetPrivateProfileStringA ") + (section ? section : "none") + ' ' +
                       (key ? key : "none") + ' ' + trace::Quoted(default_text ? default_text : ""),
                   trace::Quoted(text));
    return length;
}

WRAPPER(BOOL, WritePrivateProfileStringA,
        (const char* section, const char* key, const char* text, const char* file)) {
    trace::Ini(std::string(key ? key : "") + (text ? "=" : "") + (text ? text : ""));
    if (Fails("WritePrivateProfileStringA")) return FALSE;
    return ::WritePrivateProfileStringA(section, key, text, PlaceOf(file).c_str());
}

}  // namespace
}  // namespace intercept
