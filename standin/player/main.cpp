// A program that plays: standin.exe, or one whose engine has more in it. The player lies in the
// engine, so that any process can play. The engine is loaded by its name and not imported, because
// a worker loads it anew for each play: with the host and the plug-in on top of it, all begins with
// the values that the files were built with. STANDIN_MAIN and STANDIN_PLAY name what it exports.

#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "standin/player/mailbox.h"

namespace {

constexpr char kEngine[] = "standin_engine.dll";

template <typename Function>
Function Find(HMODULE engine, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(engine, name)));
}

// The system's own libraries stay while the engine comes and goes; they are most of what a process
// has to load.
void KeepSystemLibraries() {
    for (const char* name :
         {"user32.dll", "gdi32.dll", "comctl32.dll", "shell32.dll", "imm32.dll", "uxtheme.dll"})
        LoadLibraryA(name);
}

// What the player has put into the mailbox, as a program gets its arguments.
std::vector<std::string> ArgumentsIn(const worker::Mailbox& box) {
    std::vector<std::string> texts;
    for (const char* text = box.arguments; *text; text += std::strlen(text) + 1)
        texts.emplace_back(text);
    return texts;
}

bool IsLoaded(HMODULE module) {
    // By its place: for a name that is not there any more the system looks through its folders.
    HMODULE found = nullptr;
    return GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const char*>(module), &found);
}

// One play with a fresh engine. False: something is left of it that would reach the next play.
bool PlayOnce(worker::Mailbox* box, HANDLE ready, HANDLE done) {
    const HMODULE engine = LoadLibraryA(kEngine);
    const auto play = Find<worker::Play>(engine, STANDIN_PLAY);
    const auto clear = Find<worker::Clear>(engine, worker::kClear);
    if (!engine || !play || !clear) return false;
    std::vector<std::string> texts = ArgumentsIn(*box);
    std::vector<char*> arguments;
    arguments.reserve(texts.size());
    for (std::string& text : texts)
        arguments.push_back(text.data());
    box->outcome = play(static_cast<int>(arguments.size()), arguments.data(), ready);
    SetEvent(done);
    const bool clean = clear();
    FreeLibrary(engine);
    return clean && !IsLoaded(engine);
}

int Work(char** numbers) {
    std::array<HANDLE, worker::kHandles> handles{};
    for (HANDLE& handle : handles)
        handle = reinterpret_cast<HANDLE>(std::strtoull(*numbers++, nullptr, 10));
    auto* const box = static_cast<worker::Mailbox*>(MapViewOfFile(
        handles[worker::kMemory], FILE_MAP_ALL_ACCESS, 0, 0, sizeof(worker::Mailbox)));
    if (!box) return EXIT_FAILURE;
    KeepSystemLibraries();
    // Without the player nobody wants to know any more.
    const HANDLE either[] = {handles[worker::kGo], handles[worker::kPlayer]};
    while (WaitForMultipleObjects(2, either, FALSE, INFINITE) == WAIT_OBJECT_0) {
        // Another process plays on then.
        if (!PlayOnce(box, handles[worker::kReady], handles[worker::kDone])) break;
    }
    TerminateProcess(GetCurrentProcess(), EXIT_SUCCESS);
    return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char** arguments) {
    constexpr int kBeforeHandles = 2;
    if (count == kBeforeHandles + worker::kHandles &&
        std::strcmp(arguments[1], worker::kCommand) == 0)
        return Work(arguments + kBeforeHandles);
    const HMODULE engine = LoadLibraryA(kEngine);
    const auto run = Find<int (*)(int, char**)>(engine, STANDIN_MAIN);
    if (run) return run(count, arguments);
    std::fprintf(stderr, "standin: %s is missing beside the program, build it again\n", kEngine);
    return EXIT_FAILURE;
}
