// Only in the coverage build of the plug-in. The counts are otherwise written when a process ends
// in an orderly way, which the stand-in's processes do not: they stop with the plug-in loaded, as
// the host does.

#include <cstdlib>
#include <cstring>
#include <string>

extern "C" void __gcov_dump();

namespace {

bool IsScenario(const char* argument) {
    const size_t length = std::strlen(argument);
    return length > 4 && std::strcmp(argument + length - 4, ".scn") == 0;
}

// With KARVEL_COVERAGE_OF_EACH each play writes its counts to a folder of its own below that one,
// named after the scenario: then it can be told which lines which scenario executes.
void KeepApart() {
    const char* const folder = std::getenv("KARVEL_COVERAGE_OF_EACH");
    if (!folder) return;
    for (int i = 1; i < __argc; ++i) {
        if (!IsScenario(__argv[i])) continue;
        std::string name = __argv[i];
        for (char& letter : name) {
            if (std::strchr("/\\:", letter)) letter = '+';
        }
        _putenv_s("GCOV_PREFIX", (std::string(folder) + "/" + name).c_str());
    }
}

}  // namespace

extern "C" __declspec(dllexport) void KarvelWriteCoverage() {
    KeepApart();
    __gcov_dump();
}
