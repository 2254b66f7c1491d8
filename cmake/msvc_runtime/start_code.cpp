// What the Microsoft compiler's own runtime would put into a DLL: the entry point, the list of
// static constructors, the list of destructors, the stack probe. The C functions are msvcrt.dll's.

#include <windows.h>

#include <cstdlib>

// To the compiler each mark is an array of one element, which a loop must not leave. The empty
// instruction hides where the pointer came from.
template <class Entry>
static Entry* Unbounded(Entry* mark) {
    __asm__ volatile("" : "+r"(mark));
    return mark;
}

extern "C" {

using Initializer = void(__cdecl*)();
using CheckedInitializer = int(__cdecl*)();

// The compiler puts pointers to static constructors into sections named .CRT$XCU and the like; the
// linker sorts sections by the letters behind the dollar sign, so these four mark the ends.
#pragma section(".CRT$XIA", long, read)
#pragma section(".CRT$XIZ", long, read)
#pragma section(".CRT$XCA", long, read)
#pragma section(".CRT$XCZ", long, read)
__declspec(allocate(".CRT$XIA")) CheckedInitializer g_checkedInitializersBegin[] = {nullptr};
__declspec(allocate(".CRT$XIZ")) CheckedInitializer g_checkedInitializersEnd[] = {nullptr};
__declspec(allocate(".CRT$XCA")) Initializer g_initializersBegin[] = {nullptr};
__declspec(allocate(".CRT$XCZ")) Initializer g_initializersEnd[] = {nullptr};

// The compiler refers to this name as soon as a file uses floating point.
int _fltused = 0x9875;

// A module that needs no start code of its own gets this one.
#pragma comment(linker, "/alternatename:DllMain=DllMainByDefault")
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);
BOOL WINAPI DllMainByDefault(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}

static Initializer* g_exitFunctions;
static size_t g_exitFunctionCount;
static size_t g_exitFunctionCapacity;

// Destructors of static objects are registered here by the compiler.
int __cdecl atexit(Initializer function) {
    if (g_exitFunctionCount == g_exitFunctionCapacity) {
        const size_t capacity = g_exitFunctionCapacity == 0 ? 32 : g_exitFunctionCapacity * 2;
        void* grown = realloc(g_exitFunctions, capacity * sizeof(Initializer));
        if (grown == nullptr) return 1;
        g_exitFunctions = static_cast<Initializer*>(grown);
        g_exitFunctionCapacity = capacity;
    }
    g_exitFunctions[g_exitFunctionCount++] = function;
    return 0;
}

static bool RunInitializers() {
    CheckedInitializer* const checkedEnd = Unbounded(g_checkedInitializersEnd);
    for (auto entry = Unbounded(g_checkedInitializersBegin); entry < checkedEnd; ++entry) {
        if (*entry != nullptr && (*entry)() != 0) return false;
    }
    Initializer* const end = Unbounded(g_initializersEnd);
    for (auto entry = Unbounded(g_initializersBegin); entry < end; ++entry) {
        if (*entry != nullptr) (*entry)();
    }
    return true;
}

static void RunExitFunctions() {
    while (g_exitFunctionCount != 0)
        g_exitFunctions[--g_exitFunctionCount]();
    free(g_exitFunctions);
    g_exitFunctions = nullptr;
    g_exitFunctionCapacity = 0;
}

BOOL WINAPI _DllMainCRTStartup(HINSTANCE module, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH && !RunInitializers()) return FALSE;
    const BOOL answer = DllMain(module, reason, reserved);
    const bool attachRefused = reason == DLL_PROCESS_ATTACH && !answer;
    // With `reserved` set the process is ending: the heap may be gone, so nothing is torn down.
    const bool unloaded = reason == DLL_PROCESS_DETACH && reserved == nullptr;
    if (attachRefused || unloaded) RunExitFunctions();
    return answer;
}

int __cdecl _purecall() {
    abort();
}

// Called before a function reserves more than a page of stack: touches each page on the way, so
// that the guard page is met in order. The size is in rax; no register but r10 and r11 may change.
__attribute__((naked)) void __chkstk() {
    __asm__ volatile(
        "subq $16, %rsp\n"
        "movq %r10, (%rsp)\n"
        "movq %r11, 8(%rsp)\n"
        "xorq %r11, %r11\n"
        "leaq 24(%rsp), %r10\n"
        "subq %rax, %r10\n"
        "cmovbq %r11, %r10\n"
        "movq %gs:0x10, %r11\n"
        "cmpq %r11, %r10\n"
        "jae 2f\n"
        "andw $0xf000, %r10w\n"
        "1:\n"
        "leaq -0x1000(%r11), %r11\n"
        "movb $0, (%r11)\n"
        "cmpq %r11, %r10\n"
        "jne 1b\n"
        "2:\n"
        "movq (%rsp), %r10\n"
        "movq 8(%rsp), %r11\n"
        "addq $16, %rsp\n"
        "retq\n");
}

}  // extern "C"
