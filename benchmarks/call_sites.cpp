#include "benchmarks/call_sites.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

// A counted call is made from here, not jumped to, because its answer is kept. The place to go back
// to is held aside, so that the function finds its arguments where its caller put them.
//
// The registers used (rax, r10, r11) carry no arguments in the calling convention of 64-bit
// Windows; after the call rcx is free as well.
asm(R"(
    .bss
    .balign 16
karvel_bench_aside:
    .skip 16384
    .data
    .balign 8
karvel_bench_top:
    .quad karvel_bench_aside
    .globl karvel_bench_plugin
karvel_bench_plugin:
    .quad 0
    .globl karvel_bench_plugin_size
karvel_bench_plugin_size:
    .quad 0

    .text
    .globl karvel_bench_count_virtual
karvel_bench_count_virtual:
    movq (%rsp), %r10
    subq karvel_bench_plugin(%rip), %r10
    cmpq karvel_bench_plugin_size(%rip), %r10
    jb karvel_bench_count
    jmpq *(%rax)

    .globl karvel_bench_count
karvel_bench_count:
    movq karvel_bench_top(%rip), %r10
    popq (%r10)
    movq %rax, 8(%r10)
    addq $16, %r10
    movq %r10, karvel_bench_top(%rip)
    callq *(%rax)
    movq karvel_bench_top(%rip), %r10
    subq $16, %r10
    movq %r10, karvel_bench_top(%rip)
    movq 8(%r10), %rcx
    movq %rax, 16(%rcx)
    incq 8(%rcx)
    jmpq *(%r10)
)");

extern "C" {
extern ULONG_PTR karvel_bench_plugin;
extern ULONG_PTR karvel_bench_plugin_size;
void karvel_bench_count();
void karvel_bench_count_virtual();
}

namespace call_sites {
namespace {

static_assert(offsetof(Site, original) == 0 && offsetof(Site, calls) == 8 &&
              offsetof(Site, answer) == 16);

constexpr size_t kStubSize = 32;
constexpr size_t kStubsAtOnce = 4096;

BYTE* g_free_stub = nullptr;
size_t g_free_stubs = 0;

// Machine code, one instruction after the other.
class Stub {
public:
    explicit Stub(void* place = nullptr)
        : begin_(place ? static_cast<BYTE*>(place) : Take()), end_(begin_) {}
    void* Code() const { return begin_; }
    Stub& LoadRax(uint64_t value) { return Bytes({0x48, 0xB8}).Value(value); }
    Stub& LoadR10(uint64_t value) { return Bytes({0x49, 0xBA}).Value(value); }
    Stub& JumpToR10() { return Bytes({0x41, 0xFF, 0xE2}); }
    Stub& Return() { return Bytes({0xC3}); }

private:
    static BYTE* Take() {
        if (g_free_stubs == 0) {
            g_free_stub =
                static_cast<BYTE*>(VirtualAlloc(nullptr, kStubSize * kStubsAtOnce,
                                                MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
            g_free_stubs = kStubsAtOnce;
        }
        BYTE* const taken = g_free_stub;
        g_free_stub += kStubSize;
        --g_free_stubs;
        return taken;
    }
    Stub& Bytes(std::initializer_list<BYTE> bytes) {
        for (const BYTE byte : bytes)
            *end_++ = byte;
        return *this;
    }
    Stub& Value(uint64_t value) {
        std::memcpy(end_, &value, sizeof value);
        end_ += sizeof value;
        return *this;
    }
    BYTE* begin_;
    BYTE* end_;
};

template <typename Pointer>
uint64_t Number(Pointer pointer) {
    return reinterpret_cast<uint64_t>(pointer);
}

std::vector<std::unique_ptr<Site>> g_owned;
std::vector<Site*> g_sites;

bool IsCode(const void* address) {
    MEMORY_BASIC_INFORMATION memory{};
    constexpr DWORD kExecutable =
        PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    return VirtualQuery(address, &memory, sizeof memory) != 0 &&
           (memory.Protect & kExecutable) != 0;
}

bool AllocatesMemory(std::string_view name) {
    constexpr std::string_view kExact[] = {
        "malloc",       "calloc",         "realloc",         "_strdup",
        "HeapAlloc",    "HeapReAlloc",    "LocalAlloc",      "GlobalAlloc",
        "VirtualAlloc", "CoTaskMemAlloc", "_aligned_malloc", "_recalloc",
    };
    // Of the host's heap: its operator new, its C functions and the growing of its tables, by their
    // names in either ABI.
    constexpr std::string_view kParts[] = {
        "??2",
        "??_U",
        "_Znwy",
        "_Znay",
        "MaxHeapOperatorsnw",
        "MaxHeapOperatorsna",
        "zmalloc",
        "zrealloc",
        "MAX_malloc",
        "MAX_realloc",
        "TBInsertAt",
        "TBMakeSize",
        "TBAppend",
        "TBSetCount",
    };
    return std::ranges::find(kExact, name) != std::end(kExact) ||
           std::ranges::any_of(kParts, [name](std::string_view part) {
               return name.find(part) != std::string_view::npos;
           });
}

const IMAGE_NT_HEADERS64* Headers(HMODULE module) {
    const auto* base = reinterpret_cast<const BYTE*>(module);
    return reinterpret_cast<const IMAGE_NT_HEADERS64*>(
        base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
}

void Add(ULONGLONG* entry, std::string name, Group group, bool is_virtual) {
    auto site = std::make_unique<Site>();
    site->original = reinterpret_cast<void*>(*entry);
    site->entry = entry;
    site->group = AllocatesMemory(name) ? Group::kHeap : group;
    site->name = std::move(name);
    site->is_virtual = is_virtual;
    site->count = Stub()
                      .LoadRax(Number(site.get()))
                      .LoadR10(Number(is_virtual ? karvel_bench_count_virtual : karvel_bench_count))
                      .JumpToR10()
                      .Code();
    g_sites.push_back(site.get());
    g_owned.push_back(std::move(site));
}

Group GroupOf(const char* dll, const std::vector<std::string>& host) {
    for (const std::string& name : host)
        if (_stricmp(dll, name.c_str()) == 0) return Group::kHost;
    return _strnicmp(dll, "msvcr", 5) == 0 || _stricmp(dll, "ucrtbase.dll") == 0 ? Group::kRuntime
                                                                                 : Group::kWin32;
}

std::string BaseName(HMODULE module) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(module, path, sizeof path);
    const char* const slash = std::strrchr(path, '\\');
    return slash ? slash + 1 : path;
}

void FindImports(HMODULE plugin, const std::vector<std::string>& host) {
    BYTE* const base = reinterpret_cast<BYTE*>(plugin);
    const auto& directory =
        Headers(plugin)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; from->Name != 0; ++from) {
        const char* const dll = reinterpret_cast<const char*>(base + from->Name);
        const Group group = GroupOf(dll, host);
        const DWORD names = from->OriginalFirstThunk ? from->OriginalFirstThunk : from->FirstThunk;
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + names);
        auto* entry = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++entry) {
            if (IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal)) continue;
            // Some of the host's names are objects, not functions.
            if (!IsCode(reinterpret_cast<void*>(entry->u1.Function))) continue;
            const auto* import =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            Add(&entry->u1.Function, reinterpret_cast<const char*>(import->Name), group, false);
        }
    }
}

// The function tables of a DLL are found by its base relocations: a full address in its data that
// leads into its code.
void FindTables(HMODULE dll, const std::string& dll_name) {
    BYTE* const base = reinterpret_cast<BYTE*>(dll);
    const auto& directory =
        Headers(dll)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC];
    const BYTE* at = base + directory.VirtualAddress;
    const BYTE* const end = at + directory.Size;
    while (at < end) {
        const auto* block = reinterpret_cast<const IMAGE_BASE_RELOCATION*>(at);
        if (block->SizeOfBlock < sizeof *block) break;
        const auto* fixup = reinterpret_cast<const WORD*>(block + 1);
        const auto* const last = reinterpret_cast<const WORD*>(at + block->SizeOfBlock);
        for (; fixup < last; ++fixup) {
            if (*fixup >> 12 != IMAGE_REL_BASED_DIR64) continue;
            const DWORD place = block->VirtualAddress + (*fixup & 0xFFF);
            auto* const entry = reinterpret_cast<ULONGLONG*>(base + place);
            const ULONGLONG target = *entry - Number(base);
            if (IsCode(entry) || target >= Headers(dll)->OptionalHeader.SizeOfImage ||
                !IsCode(base + target))
                continue;
            char text[64];
            wsprintfA(text, "%s+%x", dll_name.c_str(), static_cast<unsigned>(target));
            Add(entry, text, Group::kHost, true);
        }
        at += block->SizeOfBlock;
    }
}

void Write(ULONGLONG* entry, const void* target) {
    DWORD before = 0;
    if (!VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before)) return;
    *entry = Number(target);
    VirtualProtect(entry, sizeof *entry, before, &before);
}

void* SystemFunction(const Site& site) {
    for (const char* dll : {"user32.dll", "kernel32.dll", "comctl32.dll", "shell32.dll"})
        if (FARPROC found = GetProcAddress(GetModuleHandleA(dll), site.name.c_str()))
            return reinterpret_cast<void*>(found);
    return site.original;
}

void* Target(Site& site, Mode mode) {
    switch (mode) {
        case Mode::kUntouched: return site.original;
        case Mode::kCount: return site.count;
        case Mode::kSystem:
            if (site.led_through) return site.led_through;
            return site.group == Group::kWin32 ? SystemFunction(site) : site.original;
        case Mode::kFake:
        case Mode::kFakeAndCount: break;
    }
    // What the runtime does (comparing, copying) is the plug-in's own work.
    if (site.group == Group::kRuntime) return site.original;
    if (site.faked_by) return site.faked_by;
    site.fake = Stub(site.fake).LoadRax(site.answer).Return().Code();
    return site.fake;
}

// While fakes are counted, a counting stub stands before the fake, and leads to it by `original`.
std::vector<std::pair<Site*, void*>> g_led_to_fakes;

}  // namespace

void Find(HMODULE plugin, const std::vector<HMODULE>& host) {
    karvel_bench_plugin = Number(plugin);
    karvel_bench_plugin_size = Headers(plugin)->OptionalHeader.SizeOfImage;
    std::vector<std::string> names;
    names.reserve(host.size());
    for (HMODULE dll : host)
        names.push_back(BaseName(dll));
    FindImports(plugin, names);
    for (size_t i = 0; i < host.size(); ++i)
        FindTables(host[i], names[i]);
}

void SetMode(Mode mode) {
    for (auto& [site, original] : g_led_to_fakes)
        site->original = original;
    g_led_to_fakes.clear();
    for (Site* site : g_sites) {
        void* const target = Target(*site, mode);
        if (mode == Mode::kFakeAndCount) {
            g_led_to_fakes.emplace_back(site, site->original);
            site->original = target;
            Write(site->entry, site->count);
        } else {
            Write(site->entry, target);
        }
    }
}

void FakeBy(const char* name, void* function) {
    if (Site* site = Named(name)) site->faked_by = function;
}

void LeadThrough(const char* name, void* function) {
    if (Site* site = Named(name)) site->led_through = function;
}

std::vector<Site*>& All() {
    return g_sites;
}

Site* Named(const char* name) {
    for (Site* site : g_sites)
        if (!site->is_virtual && site->name == name) return site;
    return nullptr;
}

Totals Count() {
    Totals totals;
    for (const Site* site : g_sites) {
        switch (site->group) {
            case Group::kWin32: totals.win32 += site->calls; break;
            case Group::kHost: totals.host += site->calls; break;
            case Group::kHeap: totals.heap += site->calls; break;
            case Group::kRuntime: break;
        }
    }
    return totals;
}

void Forget() {
    for (Site* site : g_sites)
        site->calls = 0;
}

}  // namespace call_sites
