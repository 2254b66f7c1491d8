#include "standin/engine/intercept/intercept.h"

#include <algorithm>
#include <cstring>
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

// --- heap: the count is all that is wanted, the call goes on to where the import pointed ---

using Malloc = void* (*)(size_t);
using Calloc = void* (*)(size_t, size_t);
using Realloc = void* (*)(void*, size_t);
using HeapAllocation = void*(WINAPI*)(HANDLE, DWORD, size_t);
using HandleAllocation = void*(WINAPI*)(UINT, size_t);

Malloc g_malloc = nullptr;
Calloc g_calloc = nullptr;
Realloc g_realloc = nullptr;
Malloc g_operator_new = nullptr;
Malloc g_operator_new_array = nullptr;
HeapAllocation g_heap_alloc = nullptr;
HandleAllocation g_local_alloc = nullptr;
HandleAllocation g_global_alloc = nullptr;

void* OnMalloc(size_t bytes) {
    if (faults::IsOn("malloc")) return nullptr;
    ++g_allocations;
    return g_malloc(bytes);
}

void* OnCalloc(size_t count, size_t bytes) {
    ++g_allocations;
    return g_calloc(count, bytes);
}

void* OnRealloc(void* memory, size_t bytes) {
    if (faults::IsOn("realloc")) return nullptr;
    ++g_allocations;
    return g_realloc(memory, bytes);
}

void* OnNew(size_t bytes) {
    ++g_allocations;
    return g_operator_new(bytes);
}

void* OnNewArray(size_t bytes) {
    ++g_allocations;
    return g_operator_new_array(bytes);
}

void* WINAPI OnHeapAlloc(HANDLE heap, DWORD flags, size_t bytes) {
    ++g_allocations;
    return g_heap_alloc(heap, flags, bytes);
}

void* WINAPI OnLocalAlloc(UINT flags, size_t bytes) {
    ++g_allocations;
    return g_local_alloc(flags, bytes);
}

void* WINAPI OnGlobalAlloc(UINT flags, size_t bytes) {
    ++g_allocations;
    return g_global_alloc(flags, bytes);
}

struct HeapRow {
    const char* name;
    void* wrapper;
    void** original;
};

const HeapRow kHeapCalls[] = {
    {"malloc", Address(OnMalloc), reinterpret_cast<void**>(&g_malloc)},
    {"calloc", Address(OnCalloc), reinterpret_cast<void**>(&g_calloc)},
    {"realloc", Address(OnRealloc), reinterpret_cast<void**>(&g_realloc)},
    {"??2@YAPEAX_K@Z", Address(OnNew), reinterpret_cast<void**>(&g_operator_new)},
    {"??_U@YAPEAX_K@Z", Address(OnNewArray), reinterpret_cast<void**>(&g_operator_new_array)},
    {"_Znwy", Address(OnNew), reinterpret_cast<void**>(&g_operator_new)},
    {"_Znay", Address(OnNewArray), reinterpret_cast<void**>(&g_operator_new_array)},
    {"HeapAlloc", Address(OnHeapAlloc), reinterpret_cast<void**>(&g_heap_alloc)},
    {"LocalAlloc", Address(OnLocalAlloc), reinterpret_cast<void**>(&g_local_alloc)},
    {"GlobalAlloc", Address(OnGlobalAlloc), reinterpret_cast<void**>(&g_global_alloc)},
};

void* WrapperOf(const char* name, void* original) {
    for (const std::span<const Row> rows : {InputCalls(), WindowCalls(), ResourceCalls()})
        for (const Row& row : rows)
            if (std::strcmp(row.name, name) == 0) return row.wrapper;
    for (const HeapRow& row : kHeapCalls) {
        if (std::strcmp(row.name, name) != 0) continue;
        *row.original = original;
        return row.wrapper;
    }
    return nullptr;
}

void PatchEntry(ULONGLONG* entry, void* wrapper) {
    DWORD before = 0;
    if (!VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before)) return;
    *entry = reinterpret_cast<ULONGLONG>(wrapper);
    VirtualProtect(entry, sizeof *entry, before, &before);
}

}  // namespace

void PatchImports(HMODULE module) {
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
            void* const wrapper = WrapperOf(reinterpret_cast<const char*>(import->Name), original);
            if (wrapper) PatchEntry(&entry->u1.Function, wrapper);
        }
    }
}

bool KnowsFault(std::string_view name) {
    const std::vector<std::string> names = FaultNames();
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<std::string> FaultNames() {
    std::vector<std::string> names = {std::string(kSettingsFolder), "malloc", "realloc"};
    for (const std::span<const Row> rows : {InputCalls(), WindowCalls(), ResourceCalls()})
        for (const Row& row : rows)
            if (row.can_fail) names.emplace_back(row.name);
    return names;
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

std::string Number(long long value) {
    return std::to_string(value);
}

std::string PointText(LONG x, LONG y) {
    return Number(x) + "," + Number(y);
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
    return Number(value);
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
