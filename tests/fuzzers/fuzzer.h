// What a fuzzed input is read with, and how a fuzzer says that something is wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// libFuzzer calls this for each input; the replay of the corpus calls it for each file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzzer {

// Ends the run; libFuzzer then keeps the input.
[[noreturn]] inline void Fail(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

inline void Check(bool holds, const char* what) {
    if (!holds) Fail(what);
}

// Takes numbers off the front of the input; zeros when there is nothing left.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : left_(reinterpret_cast<const char*>(data), size) {}

    bool IsEmpty() const { return left_.empty(); }
    unsigned Byte() {
        if (left_.empty()) return 0;
        const auto byte = static_cast<unsigned char>(left_.front());
        left_.remove_prefix(1);
        return byte;
    }
    unsigned Below(unsigned count) { return Byte() % count; }
    int Short() {
        const unsigned low = Byte();
        return static_cast<std::int16_t>(low | Byte() << 8);
    }
    std::string_view Rest() const { return left_; }

private:
    std::string_view left_;
};

}  // namespace fuzzer
