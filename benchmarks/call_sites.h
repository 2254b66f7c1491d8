// Every place where the plug-in leaves its own file: the entries of its import table, and the
// function tables of the objects that the host hands out. At each of them stands a few bytes of
// machine code of ours, which either count the call and let it go on, or answer it at once. The
// code knows nothing of the function behind it, so it serves every signature and both C++ ABIs.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace call_sites {

enum class Group {
    kWin32,
    kHost,
    kRuntime,  // the C runtime: neither the system's nor the host's
    kHeap,     // whatever allocates memory, the host's heap included
};

// The first three fields are known to the machine code.
struct Site {
    void* original = nullptr;
    uint64_t calls = 0;
    uint64_t answer = 0;  // of the last counted call
    Group group = Group::kWin32;
    bool is_virtual = false;
    std::string name;
    ULONGLONG* entry = nullptr;
    void* count = nullptr;
    void* fake = nullptr;
    void* faked_by = nullptr;     // a function that answers; null: the last answer is given again
    void* led_through = nullptr;  // a function that calls the system's; null: that one itself
};

enum class Mode {
    kUntouched,     // as the stand-in left it
    kCount,         // counted, then as the stand-in left it
    kFake,          // answered at once
    kFakeAndCount,  // the same, counted: shows that the fakes lead the plug-in the same way
    kSystem,        // Win32 without the stand-in's wrappers, for real input
};

// Finds the places. `host` are the loaded DLLs of the host.
void Find(HMODULE plugin, const std::vector<HMODULE>& host);
void SetMode(Mode mode);
// A function that answers the Win32 call of this name while calls are faked.
void FakeBy(const char* name, void* function);
// A function that calls the system's and that the Win32 call of this name goes to in kSystem.
void LeadThrough(const char* name, void* function);

std::vector<Site*>& All();
Site* Named(const char* name);

struct Totals {
    uint64_t win32 = 0;
    uint64_t host = 0;
    uint64_t heap = 0;
};
Totals Count();
void Forget();

}  // namespace call_sites
