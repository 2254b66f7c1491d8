// Runs script texts against a host. Knows as much of the language as the plug-in's texts need and
// scenarios that call its functions: values, arrays, objects by name, + and -, comparisons, logic,
// assignments, blocks, if, for, try, functions, `max` commands. The rest is refused by an error.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standin/script/host.h"
#include "standin/script/parser.h"

namespace script {

struct Limits {
    // Steps of one evaluation, together with the texts that are evaluated from within it.
    long long steps = 2'000'000;
    // Nested steps; they bound the use of the machine's stack.
    int depth = 400;
    // Texts that run within each other; between two of them lie frames of the host.
    int evaluations = 40;
};

struct Result {
    Value value;                 // of the last expression; undefined after an error
    std::optional<Error> error;  // what ended the evaluation early
};

// Global variables live as long as the interpreter. A host method, a primitive or an executed
// action may call Evaluate while another evaluation is under way.
class Interpreter {
public:
    explicit Interpreter(Host& host, Limits limits = {}) : host_(host), limits_(limits) {}
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    // Runs the expressions of the text one after the other; those before an error have run.
    // Throws only what the host throws apart from Error.
    Result Evaluate(std::string_view text);

    // For the functions of the language.
    Host& host() { return host_; }
    std::string ToText(const Value& value) { return script::ToText(value, host_); }
    void CountSteps(std::size_t items);  // against the limit
    Value MakeArray(std::vector<Value> items);

private:
    // The variables of a block, a loop or a function. Whatever is first set in one belongs to it;
    // a function sees its own and the global ones.
    struct Scope {
        Scope* outer = nullptr;
        std::map<std::string, Value> variables;
    };
    struct ContinueSignal {};

    Value Run(const Syntax& node, Scope* scope);
    Value RunNode(const Syntax& node, Scope* scope);
    Value RunBlock(const Syntax& node, Scope* scope);
    std::vector<Value> RunParts(const Syntax& node, std::size_t first, Scope* scope);
    Value RunObjectPath(const std::string& path);
    Value RunCall(const Syntax& node, Scope* scope);
    Value RunOperator(const Syntax& node, Scope* scope);
    Value RunFor(const Syntax& node, Scope* scope);
    Value RunTry(const Syntax& node, Scope* scope);
    Value RunAssignment(const Syntax& node, Scope* scope);
    bool Test(const Syntax& node, Scope* scope, std::string_view construct);

    Value* FindLocal(const std::string& name, Scope* scope);
    Value Read(const std::string& name, Scope* scope);
    void Write(const std::string& name, const Value& value, Scope* scope);
    Value CallUser(const UserFunction& called, const Arguments& arguments);

    Host& host_;
    Limits limits_;
    std::map<std::string, Value> globals_;
    std::deque<Array> arrays_;
    long long steps_left_ = 0;
    int depth_ = 0;
    int evaluations_ = 0;
};

}  // namespace script
