// Runs the inputs of some folders once each, where there is no libFuzzer.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "tests/fuzzers/fuzzer.h"

int main(int count, char** arguments) {
    if (count < 2) {
        std::cerr << "usage: replay FOLDER...\n";
        return 2;
    }
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < count; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i]))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& path : files) {
        std::ifstream file(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        // Named before it runs: an input that ends the program is the last one named.
        std::cout << path.filename().string() << '\n' << std::flush;
        // A copy of its own size, so that reading past its end is noticed.
        const std::vector<std::uint8_t> copy(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(copy.data(), copy.size());
    }
    // The empty input, which no file of a corpus is.
    LLVMFuzzerTestOneInput(nullptr, 0);
    std::cout << files.size() << " inputs\n";
    if (files.size() < 10) {
        std::cerr << arguments[1] << ": there are too few inputs to show anything\n";
        return 1;
    }
}
