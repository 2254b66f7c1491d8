// Any text as a link map: it is none, or every global in it has a name.

#include "standin/engine/plugin/link_map.h"
#include "tests/fuzzers/fuzzer.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto map = link_map::Read(text);
    if (!map) return 0;
    for (const auto& [name, place] : map->globals) {
        fuzzer::Check(!name.empty(), "a global without a name");
        fuzzer::Check(text.find(name) != std::string_view::npos, "a name that is not in the map");
    }
    return 0;
}
