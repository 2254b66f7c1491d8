#include "standin/engine/plugin/loader.h"

#include <winternl.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "standin/engine/intercept/intercept.h"
#include "standin/engine/plugin/link_map.h"
#include "standin/engine/plugin/globals.h"
#include "standin/engine/read_file.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/world.h"
#include "standin/engine/world/internal.h"

namespace plugin {
namespace {

constexpr const char* kHostDlls[] = {"core.dll",      "maxutil.dll", "gup.dll",
                                     "ParamBlk2.dll", "menus.dll",   "MAXScrpt.dll"};
constexpr const char* kEntryPoints[] = {"LibDescription", "LibNumberClasses", "LibClassDesc",
                                        "LibVersion", "CanAutoDefer"};
constexpr unsigned long kUtilityClasses = 0x10E0;  // the super class of global utility plug-ins

struct Plugin {
    HMODULE module = nullptr;
    void* utility = nullptr;
    bool started = false;
    link_map::Map map;
};
Plugin g_plugin;
Plugin g_companion;           // loaded beside it, not traced
std::vector<HMODULE> g_host;  // as they were loaded

// --- patching the imports between mapping and entry ---

// What ntdll tells a listener about a module; not in the headers.
struct LoaderNotice {
    ULONG flags;
    const UNICODE_STRING* full_name;
    const UNICODE_STRING* base_name;
    void* base;
    ULONG size;
};
using LoaderListener = void(CALLBACK*)(ULONG reason, const LoaderNotice* notice, void* context);
using RegisterListener = NTSTATUS(NTAPI*)(ULONG flags, LoaderListener listener, void* context,
                                          void** cookie);
using UnregisterListener = NTSTATUS(NTAPI*)(void* cookie);

struct AwaitedModule {
    std::wstring base_name;
    bool traced = false;
    bool patched = false;
};

void Attach(HMODULE module, AwaitedModule* awaited) {
    awaited->patched = true;
    intercept::PatchImports(
        module, awaited->traced ? intercept::Imports::kAll : intercept::Imports::kInput);
    if (awaited->traced) trace::In("attach");
}

void CALLBACK OnModule(ULONG reason, const LoaderNotice* notice, void* context) {
    constexpr ULONG kLoaded = 1;
    auto* const awaited = static_cast<AwaitedModule*>(context);
    const size_t length = notice->base_name->Length / sizeof(wchar_t);
    if (reason != kLoaded || awaited->patched || length != awaited->base_name.size() ||
        _wcsnicmp(notice->base_name->Buffer, awaited->base_name.c_str(), length) != 0)
        return;
    Attach(static_cast<HMODULE>(notice->base), awaited);
}

std::string BaseName(const std::string& path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

HMODULE LoadPatched(const std::string& path, bool traced) {
    AwaitedModule awaited;
    awaited.traced = traced;
    for (const char c : BaseName(path))
        awaited.base_name += static_cast<wchar_t>(c);
    const HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    const auto listen = reinterpret_cast<RegisterListener>(
        reinterpret_cast<void*>(GetProcAddress(ntdll, "LdrRegisterDllNotification")));
    const auto forget = reinterpret_cast<UnregisterListener>(
        reinterpret_cast<void*>(GetProcAddress(ntdll, "LdrUnregisterDllNotification")));
    void* cookie = nullptr;
    if (listen) listen(0, OnModule, &awaited, &cookie);
    const HMODULE module = LoadLibraryA(path.c_str());
    if (forget && cookie) forget(cookie);
    if (awaited.patched && traced) trace::Out(module ? "1" : "0");
    return module;
}

bool FileExists(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

template <typename Function>
Function EntryPoint(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Attach and class description. Null: *message.
void* LoadClass(const std::string& path, Plugin& plugin, std::string* message) {
    const bool traced = &plugin == &g_plugin;
    plugin.module = LoadPatched(path, traced);
    if (!plugin.module) {
        *message = "the plug-in " + path + " can not be loaded (error " +
                   std::to_string(GetLastError()) + "), check what it imports";
        return nullptr;
    }
    EntryPoint<const char* (*)()>(plugin.module, "LibDescription")();
    EntryPoint<unsigned long (*)()>(plugin.module, "LibVersion")();
    EntryPoint<unsigned long (*)()>(plugin.module, "CanAutoDefer")();
    const int classes = EntryPoint<int (*)()>(plugin.module, "LibNumberClasses")();
    const auto class_description = EntryPoint<void* (*)(int)>(plugin.module, "LibClassDesc");
    for (int i = 0; i < classes; ++i) {
        void* const description = class_description(i);
        if (description && world::g_plugin_calls->super_class_id(description) == kUtilityClasses)
            return description;
    }
    *message = "the plug-in " + path + " describes no global utility class";
    return nullptr;
}

bool Create(void* utility_class, const std::string& path, Plugin& plugin, std::string* message) {
    plugin.utility = world::g_plugin_calls->create(utility_class);
    if (!plugin.utility) *message = "the plug-in " + path + " did not create its object";
    return plugin.utility != nullptr;
}

// --- the action table ---

void* g_leave_to[5];
bool g_can_leave = false;

__attribute__((noinline)) void* TableOrNone(void* utility_class, int index) {
    g_can_leave = true;
    void* table = nullptr;
    if (__builtin_setjmp(g_leave_to) == 0)
        table = world::g_plugin_calls->table(utility_class, index);
    g_can_leave = false;
    return table;
}

// --- globals ---

char* Place(std::string_view name) {
    if (!g_plugin.module) return nullptr;
    const auto found = g_plugin.map.globals.find(name);
    if (found == g_plugin.map.globals.end()) return nullptr;
    return reinterpret_cast<char*>(g_plugin.module) + found->second;
}

template <typename Value>
Value Get(const char* place) {
    Value value;
    // A window's handle is a pointer, and it is the handle itself that is copied.
    // NOLINTNEXTLINE(bugprone-sizeof-expression)
    std::memcpy(&value, place, sizeof value);
    return value;
}

template <typename Value>
void Put(char* place, Value value) {
    std::memcpy(place, &value, sizeof value);
}

std::string ValueText(GlobalKind kind, const char* place) {
    switch (kind) {
        case GlobalKind::kNumber: return std::to_string(Get<int>(place));
        case GlobalKind::kFlag: return *place ? "1" : "0";
        case GlobalKind::kPoint: {
            const POINT point = Get<POINT>(place);
            return std::to_string(point.x) + "," + std::to_string(point.y);
        }
        case GlobalKind::kWindow: return world::Of(Get<HWND>(place));
        case GlobalKind::kPointer: return Get<void*>(place) ? "set" : "none";
        case GlobalKind::kText: return trace::Quoted(std::string(place, strnlen(place, 128)));
    }
    return {};
}

// The row and the part of it (0, or 4 for a point's y) that a name of `poke` means.
const Global* Lookup(std::string_view name, size_t* offset) {
    *offset = 0;
    std::string_view plain = name;
    bool part = false;
    if (name.ends_with(".x") || name.ends_with(".y")) {
        *offset = name.ends_with(".y") ? sizeof(LONG) : 0;
        plain.remove_suffix(2);
        part = true;
    }
    for (const Global& global : kGlobals)
        if (global.name == plain)
            return part == (global.kind == GlobalKind::kPoint) ? &global : nullptr;
    return nullptr;
}

int OptionIndex(std::string_view name) {
    for (size_t i = 0; i < std::size(kOptions); ++i)
        if (kOptions[i] == name) return static_cast<int>(i);
    return -1;
}

}  // namespace

bool LoadHost(const Files& files, std::string* message) {
    for (const char* name : kHostDlls) {
        const std::string path = files.host_dir + "\\" + name;
        const HMODULE module = LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        if (module) {
            g_host.push_back(module);
            continue;
        }
        *message = "the host's " + path +
                   (FileExists(path) ? " can not be loaded (error " +
                                           std::to_string(GetLastError()) + "), build it again"
                                     : " is missing, build it or give its folder with --host-dir");
        return false;
    }
    return true;
}

bool CheckFile(const std::string& path, std::string* message) {
    const std::optional<std::string> file = files::Read(path);
    if (!file) {
        *message = "the plug-in " + path + " is missing, build it or name it with --plugin";
        return false;
    }
    const std::string& bytes = *file;

    // The names are looked up in the export table of the file as it lies on the disk.
    const auto number = [&bytes](size_t at) -> DWORD {
        DWORD value = 0;
        if (at + sizeof value <= bytes.size()) std::memcpy(&value, bytes.data() + at, sizeof value);
        return value;
    };
    const size_t header = number(0x3C);
    constexpr size_t kMachine = 4;
    if (bytes.size() < 0x40 || number(header) != IMAGE_NT_SIGNATURE ||
        (number(header + kMachine) & 0xFFFF) != IMAGE_FILE_MACHINE_AMD64) {
        *message = path + " is no 64-bit Windows library, build the plug-in again";
        return false;
    }
    const size_t sections = header + 24 + (number(header + 20) & 0xFFFF);
    const size_t section_count = number(header + 4) >> 16;
    const auto in_file = [&](DWORD address) -> size_t {
        for (size_t i = 0; i < section_count; ++i) {
            const size_t section = sections + i * 40;
            const DWORD begin = number(section + 12);
            if (address >= begin && address < begin + number(section + 16))
                return address - begin + number(section + 20);
        }
        return bytes.size();
    };
    const size_t exports = in_file(number(header + 24 + 112));
    const DWORD count = number(exports + 24);
    const size_t names = in_file(number(exports + 32));
    for (const char* wanted : kEntryPoints) {
        bool found = false;
        for (DWORD i = 0; i < count && !found; ++i) {
            const size_t at = in_file(number(names + i * 4));
            found = at < bytes.size() && std::strcmp(bytes.c_str() + at, wanted) == 0;
        }
        if (!found) {
            *message = "the plug-in " + path + " does not export " + wanted +
                       ", check its list of exports";
            return false;
        }
    }
    return true;
}

bool Load(const Files& files, std::string* message) {
    const eng_plugin_calls* const calls = world::g_plugin_calls;
    if (!calls) {
        *message = "the host's core.dll did not register itself, build the host DLLs again";
        return false;
    }
    void* const utility_class = LoadClass(files.plugin, g_plugin, message);
    if (!utility_class) return false;
    for (int i = 0; i < calls->table_count(utility_class); ++i) {
        trace::In("table");
        void* const table = TableOrNone(utility_class, i);
        trace::Out(std::to_string(table ? calls->action_count(table) : 0));
        if (table) world::RegisterPluginTable(table, calls->action_table_id(table));
    }
    if (!Create(utility_class, files.plugin, g_plugin, message)) return false;
    if (files.companion.empty()) return true;
    void* const other_class = LoadClass(files.companion, g_companion, message);
    return other_class && Create(other_class, files.companion, g_companion, message);
}

bool Start(const Files& files, std::string* message) {
    if (!Load(files, message)) return false;
    RunStartOperation();
    return true;
}

void RunStartOperation() {
    trace::In("start");
    const unsigned long answer = world::g_plugin_calls->gup_start(g_plugin.utility);
    if (!std::exchange(g_plugin.started, true)) world::LoadMenus();
    trace::Out(std::to_string(answer));
    if (g_companion.utility) world::g_plugin_calls->gup_start(g_companion.utility);
}

void LeaveForNoMemory() {
    if (!g_can_leave) return;
    trace::Sdk("bad_alloc");
    __builtin_longjmp(g_leave_to, 1);
}

// Asked by the place: for a name that is not there any more the system looks through its folders.
static HMODULE ModuleAt(const void* address) {
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        static_cast<const char*>(address), &module);
    return module;
}

bool Unload() {
    std::vector<HMODULE> modules = g_host;
    for (const HMODULE module : {g_plugin.module, g_companion.module})
        if (module) modules.push_back(module);
    std::for_each(modules.rbegin(), modules.rend(), FreeLibrary);
    return std::none_of(modules.begin(), modules.end(), ModuleAt);
}

bool IsLoaded() {
    return g_plugin.module != nullptr;
}

bool IsItsCode(const void* address) {
    const HMODULE module = ModuleAt(address);
    return module && module == g_plugin.module;
}

int Query(std::string_view what, int id) {
    const eng_plugin_calls* const calls = world::g_plugin_calls;
    void* const table = world::PluginTable();
    if (!table) return 0;
    if (what == "checked") return calls->action_checked(table, id);
    if (what == "visible") return calls->action_visible(table, id);
    if (what == "enabled") return calls->action_enabled(table, id);
    return calls->action_icon(table, id);
}

int Execute(int id) {
    return world::RunPluginAction(id);
}

bool LoadMap(const std::string& file, std::string* message) {
    if (file.empty()) return true;
    const std::optional<std::string> text = files::Read(file);
    if (!text) {
        *message = "the link map " + file + " is missing, build the plug-in or name it with --map";
        return false;
    }
    const std::optional<link_map::Map> map = link_map::Read(*text);
    if (!map) {
        *message = file + " is no link map of lld-link or GNU ld, build the plug-in again";
        return false;
    }
    g_plugin.map = *map;
    return true;
}

bool IsGlobal(std::string_view name) {
    const auto& globals = g_plugin.map.globals;
    if (OptionIndex(name) >= 0) return globals.contains(kSettingsRecord);
    size_t offset = 0;
    const Global* const global = Lookup(name, &offset);
    return global && global->kind != GlobalKind::kText && globals.contains(global->name);
}

bool Poke(std::string_view name, long long value) {
    if (const int option = OptionIndex(name); option >= 0) {
        char* const record = Place(kSettingsRecord);
        if (!record) return false;
        Put(record + static_cast<size_t>(option) * sizeof(int), static_cast<int>(value));
        return true;
    }
    size_t offset = 0;
    const Global* const global = Lookup(name, &offset);
    char* const place = global ? Place(global->name) : nullptr;
    if (!place) return false;
    switch (global->kind) {
        case GlobalKind::kFlag: *place = value != 0; return true;
        case GlobalKind::kWindow:
        case GlobalKind::kPointer: Put(place, static_cast<LONG_PTR>(value)); return true;
        case GlobalKind::kText: return false;
        default: Put(place + offset, static_cast<int>(value)); return true;
    }
}

std::vector<std::string> Show() {
    std::vector<std::string> lines;
    for (const Global& global : kGlobals)
        if (const char* const place = Place(global.name))
            lines.push_back(std::string(global.name) + ' ' + ValueText(global.kind, place));
    if (const char* const record = Place(kSettingsRecord))
        for (size_t i = 0; i < std::size(kOptions); ++i)
            lines.push_back(std::string(kOptions[i]) + ' ' +
                            std::to_string(Get<int>(record + i * sizeof(int))));
    return lines;
}

const int* Find(std::string_view name) {
    const int option = OptionIndex(name);
    const char* place = Place(option >= 0 ? kSettingsRecord : name);
    if (place && option >= 0) place += static_cast<size_t>(option) * sizeof(int);
    return reinterpret_cast<const int*>(place);
}

bool Read(std::string_view name, int* value) {
    const char* const place = reinterpret_cast<const char*>(Find(name));
    if (place) *value = Get<int>(place);
    return place != nullptr;
}

}  // namespace plugin
