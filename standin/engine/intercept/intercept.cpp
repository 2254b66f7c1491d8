#include "standin/engine/intercept/intercept.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "standin/engine/intercept/faults.h"
#include "standin/engine/intercept/internal.h"
#include "standin/engine/plugin/loader.h"
#include "standin/engine/world/world.h"

namespace intercept {
namespace {

unsigned long long g_calls = 0;
unsigned long long g_allocations = 0;
std::map<const void*, std::string> g_resources;

struct Target {
    void* wrapper = nullptr;
    void** original = nullptr;  // where the wrapper wants to know what the import pointed to
};
std::map<std::string_view, Target>& Targets() {
    static std::map<std::string_view, Target> targets;
    return targets;
}

// --- heap: the count is all that is wanted, the call goes on to where the import pointed ---

template <size_t size>
struct Name {
    char text[size];
    constexpr Name(const char (&name)[size]) { std::copy_n(name, size, text); }
};

template <Name name>
void* g_original = nullptr;

template <Name name, typename... Arguments>
void* Counted(Arguments... arguments) {
    if (faults::IsOn(name.text)) return nullptr;
    ++g_allocations;
    return reinterpret_cast<void* (*)(Arguments...)>(g_original<name>)(arguments...);
}

template <Name name, typename... Arguments>
void Count() {
    Targets()[name.text] = {Address(Counted<name, Arguments...>), &g_original<name>};
}

const bool g_heap_is_counted = [] {
    Count<"malloc", size_t>();
    Count<"calloc", size_t, size_t>();
    Count<"realloc", void*, size_t>();
    Count<"HeapAlloc", HANDLE, DWORD, size_t>();
    Count<"LocalAlloc", UINT, size_t>();
    Count<"GlobalAlloc", UINT, size_t>();
    // operator new of both compilers
    Count<"??2@YAPEAX_K@Z", size_t>();
    Count<"??_U@YAPEAX_K@Z", size_t>();
    Count<"_Znwy", size_t>();
    Count<"_Znay", size_t>();
    return true;
}();
const bool g_faults_known = faults::AddNames({"malloc", "realloc"});

constexpr std::string_view kInputNames[] = {"SetWindowsHookExA",
                                            "UnhookWindowsHookEx",
                                            "CallNextHookEx",
                                            "GetCursorPos",
                                            "GetAsyncKeyState",
                                            "GetKeyState",
                                            "GetSystemMetrics",
                                            "GetTickCount",
                                            "GetForegroundWindow",
                                            "SetTimer",
                                            "KillTimer"};

void* WrapperOf(std::string_view name, void* original, Imports which) {
    const auto found = Targets().find(name);
    if (found == Targets().end()) return nullptr;
    if (which == Imports::kInput &&
        std::find(std::begin(kInputNames), std::end(kInputNames), name) == std::end(kInputNames))
        return nullptr;
    if (found->second.original) *found->second.original = original;
    return found->second.wrapper;
}

void PatchEntry(ULONGLONG* entry, void* wrapper) {
    DWORD before = 0;
    if (!VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before)) return;
    *entry = reinterpret_cast<ULONGLONG>(wrapper);
    VirtualProtect(entry, sizeof *entry, before, &before);
}

}  // namespace

void PatchImports(HMODULE module, Imports which) {
    BYTE* const base = reinterpret_cast<BYTE*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory =
        nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0) return;
    auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; from->Name != 0; ++from) {
        const DWORD names = from->OriginalFirstThunk ? from->OriginalFirstThunk : from->FirstThunk;
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + names);
        auto* entry = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++entry) {
            if (IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal)) continue;
            const auto* import =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            void* const original = reinterpret_cast<void*>(entry->u1.Function);
            void* const wrapper =
                WrapperOf(reinterpret_cast<const char*>(import->Name), original, which);
            if (wrapper) PatchEntry(&entry->u1.Function, wrapper);
        }
    }
}

Wrapper::Wrapper(const char* name, void* wrapper, bool can_fail) {
    Targets()[name] = {wrapper};
    if (can_fail) faults::AddNames({name});
}

unsigned long long Allocations() {
    return g_allocations;
}

unsigned long long Calls() {
    return g_calls;
}

void Reset() {
    faults::Reset();
    ForgetResources();
    ForgetSubclasses();
}

bool Fails(std::string_view name) {
    ++g_calls;
    return faults::IsOn(name);
}

std::string ArgumentText(LONG_PTR value) {
    // Handles lie above the first 64 K, which flags and control numbers do not leave.
    constexpr LONG_PTR kLowestHandle = 0x10000;
    if (value >= kLowestHandle || value < 0) {
        const HWND window = reinterpret_cast<HWND>(value);
        if (IsWindow(window)) return world::Of(window);
        const auto resource = g_resources.find(reinterpret_cast<const void*>(value));
        if (resource != g_resources.end()) return resource->second;
    }
    return Text(value);
}

std::string ModuleText(HMODULE module) {
    if (!module) return "none";
    if (plugin::IsItsCode(reinterpret_cast<const void*>(module))) return "plugin";
    char path[MAX_PATH] = "";
    GetModuleFileNameA(module, path, sizeof path);
    const std::string name = path;
    return name.substr(name.find_last_of('\\') + 1);
}

std::string ResourceText(const void* handle) {
    if (!handle) return "none";
    const auto resource = g_resources.find(handle);
    return resource == g_resources.end() ? "unknown" : resource->second;
}

void NoteResource(const void* handle, const std::string& name) {
    if (handle) g_resources[handle] = name;
}

void ForgetResources() {
    g_resources.clear();
}

}  // namespace intercept
