// Only in the coverage build of the plug-in. The counts are otherwise written when the file is
// unloaded, and it would not be known then which play they are of.

#include <cstdlib>
#include <cstring>
#include <string>

extern "C" void __gcov_dump();

namespace {

// With KARVEL_COVERAGE_OF_EACH each play writes its counts to a folder of its own below that one,
// named after the scenario: then it can be told which lines which scenario executes.
void KeepApart(std::string scenario) {
    const char* const folder = std::getenv("KARVEL_COVERAGE_OF_EACH");
    if (!folder) return;
    for (char& letter : scenario) {
        if (std::strchr("/\\:", letter)) letter = '+';
    }
    _putenv_s("GCOV_PREFIX", (std::string(folder) + "/" + scenario).c_str());
}

}  // namespace

extern "C" __declspec(dllexport) void KarvelWriteCoverage(const char* scenario) {
    KeepApart(scenario);
    __gcov_dump();
}
