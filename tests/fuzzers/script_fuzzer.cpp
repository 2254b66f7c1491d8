// Any text as a script: it ends within its limits, with a value or with an error that says where,
// and it does the same when it runs a second time in a world that looks the same.

#include "standin/script/interpreter.h"
#include "tests/fuzzers/fuzzer.h"
#include "tests/standin/script/fake_host.h"

namespace {

using fuzzer::Check;

std::string Run(std::string_view text) {
    script_test::FakeHost host;
    host.AddNode("Box001");
    host.AddNode("Sphere001", {1, 2, 3});
    host.tracks.push_back({"Box001", {{0, true}, {1600, false}}});
    host.tracks.push_back({"Sphere001", {}, false});
    host.tracks.push_back({"gap", {}, true, false});
    host.primitives["kv_zoomextents"] = [](const script::Arguments& arguments) {
        return arguments.empty() ? script::Value(true) : arguments.front();
    };
    script::Limits limits;
    limits.steps = 20'000;
    script::Interpreter interpreter(host, limits);
    host.on_action = [&] { interpreter.Evaluate("counted += 1"); };
    std::string told;
    for (int turn = 0; turn < 2; ++turn) {
        const script::Result result = interpreter.Evaluate(text);
        if (result.error) {
            Check(!result.error->message.empty(), "an error without a message");
            Check(result.error->position.line >= 1 && result.error->position.column >= 1,
                  "an error at no place");
        }
        told += script_test::Describe(result, interpreter) + "\n";
        told += host.TakeJournal() + "\n";
    }
    // The interpreter can be used after whatever ran in it.
    Check(script_test::RunText(interpreter, "1 + 1") == "2", "nothing runs after this text");
    return told;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    Check(Run(text) == Run(text), "the same text does something else");
    return 0;
}
