// Resources and the settings file as the plug-in calls them.
#include "standin/engine/intercept/internal.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace intercept {
namespace {

std::string NameOrNumber(const char* name) {
    if (!name) return "none";
    return IS_INTRESOURCE(name) ? Number(LOWORD(reinterpret_cast<ULONG_PTR>(name)))
                                : trace::Quoted(name);
}

// The line of a reader that loads something, and the name by which later lines know it.
template <typename Handle>
Handle Loaded(const char* function, const char* name, Handle handle) {
    NoteResource(handle, NameOrNumber(name));
    if (trace::AsksWanted())
        trace::Ask(std::string(function) + ' ' + NameOrNumber(name), handle ? "1" : "0");
    return handle;
}

HCURSOR WINAPI OnLoadCursorA(HINSTANCE module, const char* name) {
    const HCURSOR cursor = Fails("LoadCursorA") ? nullptr : ::LoadCursorA(module, name);
    Loaded("LoadCursorA", name, cursor);
    if (!module && name == IDC_ARROW) NoteResource(cursor, "arrow");
    return cursor;
}

HICON WINAPI OnLoadIconA(HINSTANCE module, const char* name) {
    return Loaded("LoadIconA", name, Fails("LoadIconA") ? nullptr : ::LoadIconA(module, name));
}

HANDLE WINAPI OnLoadImageA(HINSTANCE module, const char* name, UINT type, int width, int height,
                           UINT flags) {
    return Loaded(
        "LoadImageA", name,
        Fails("LoadImageA") ? nullptr : ::LoadImageA(module, name, type, width, height, flags));
}

HMENU WINAPI OnLoadMenuA(HINSTANCE module, const char* name) {
    return Loaded("LoadMenuA", name, Fails("LoadMenuA") ? nullptr : ::LoadMenuA(module, name));
}

HACCEL WINAPI OnLoadAcceleratorsA(HINSTANCE module, const char* name) {
    return Loaded("LoadAcceleratorsA", name,
                  Fails("LoadAcceleratorsA") ? nullptr : ::LoadAcceleratorsA(module, name));
}

int WINAPI OnLoadStringA(HINSTANCE module, UINT id, char* text, int size) {
    const int length = Fails("LoadStringA") ? 0 : ::LoadStringA(module, id, text, size);
    if (trace::AsksWanted())
        trace::Ask("LoadStringA " + Number(id), trace::Quoted(length > 0 ? text : ""));
    return length;
}

// The settings file, or where it would be if its folder had not vanished.
std::string PlaceOf(const char* file) {
    if (Fails(kSettingsFolder)) return "Z:\\vanished-folder\\Karvel.ini";
    std::string path = file ? file : "";
    // The system puts a file without a folder into its own, which all plays share; here each has
    // one.
    if (path.find_first_of("\\/") != std::string::npos) return path;
    return world::g_world.options.config_dir + "\\system-folder-" + path;
}

DWORD WINAPI OnGetPrivateProfileStringA(const char* section, const char* key,
                                        const char* default_text, char* text, DWORD size,
                                        const char* file) {
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

BOOL WINAPI OnWritePrivateProfileStringA(const char* section, const char* key, const char* text,
                                         const char* file) {
    trace::Ini(std::string(key ? key : "") + (text ? "=" : "") + (text ? text : ""));
    if (Fails("WritePrivateProfileStringA")) return FALSE;
    return ::WritePrivateProfileStringA(section, key, text, PlaceOf(file).c_str());
}

DWORD WINAPI OnGetFileAttributesA(const char* file) {
    const DWORD attributes =
        Fails("GetFileAttributesA") ? 0 : ::GetFileAttributesA(PlaceOf(file).c_str());
    if (trace::AsksWanted()) {
        // The folder differs from play to play.
        const std::string path = file ? file : "";
        trace::Ask("GetFileAttributesA " + path.substr(path.find_last_of("\\/") + 1),
                   Number(static_cast<int>(attributes)));
    }
    return attributes;
}

const Row kRows[] = {
    {"LoadCursorA", Address(OnLoadCursorA)},
    {"LoadIconA", Address(OnLoadIconA)},
    {"LoadImageA", Address(OnLoadImageA)},
    {"LoadMenuA", Address(OnLoadMenuA)},
    {"LoadAcceleratorsA", Address(OnLoadAcceleratorsA)},
    {"LoadStringA", Address(OnLoadStringA)},
    {"GetPrivateProfileStringA", Address(OnGetPrivateProfileStringA)},
    {"WritePrivateProfileStringA", Address(OnWritePrivateProfileStringA)},
    {"GetFileAttributesA", Address(OnGetFileAttributesA)},
};

}  // namespace

std::span<const Row> ResourceCalls() {
    return kRows;
}

}  // namespace intercept
