// Runs script texts against a host.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standin/script/host.h"
#include "standin/script/syntax.h"
#include "standin/script/value.h"

namespace script {

struct Limits {
    // Steps of one evaluation, together with the texts that are evaluated from within it.
    long long steps = 2'000'000;
    // Nested steps; they bound the use of the machine's stack.
    int depth = 400;
    // Texts that run within each other; between two of them lie frames of the host.
    int evaluations = 40;
    // Characters of a text and items of an array.
    std::size_t size = 1'000'000;
};

struct Result {
    Value value;                 // of the last expression; undefined after an error
    std::optional<Error> error;  // what ended the evaluation early
    bool ok() const { return !error.has_value(); }
};

// Global variables live as long as the interpreter. A host method, a primitive or an executed
// action may call Evaluate while another evaluation is under way.
class Interpreter {
public:
    explicit Interpreter(Host& host, Limits limits = {});
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    // Runs the expressions of the text one after the other; those before an error have run.
    // Throws only what the host throws apart from Error.
    Result Evaluate(std::string_view text);

    std::string ToText(const Value& value) { return script::ToText(value, &host_); }

    // For the functions of the language.
    Host& host() { return host_; }
    void CountSteps(std::size_t items);  // against the limit
    void CheckSize(std::size_t size) const;
    // Arrays that hold arrays can hold themselves; the interpreter empties them at its end.
    void NoteNestedArray(const ArrayReference& array, const Value& item);
    const std::string& caught_message() const { return caught_message_; }

private:
    struct Frame {
        std::vector<Value> slots;
        std::shared_ptr<const FunctionDefinition> function;
    };
    class DepthGuard;
    struct ContinueSignal {};
    struct ExitSignal {
        Value value;
    };
    struct ReturnSignal {
        Value value;
    };

    bool IsGlobal(const std::string& name);
    Value Run(const Syntax& node, Frame& frame);
    Value RunNode(const Syntax& node, Frame& frame);
    Value RunBlock(const Syntax& node, Frame& frame);
    Value RunArray(const Syntax& node, Frame& frame);
    Value RunObjectPath(const Syntax& node);
    Value RunCall(const Syntax& node, Frame& frame);
    Value RunLogic(const Syntax& node, Frame& frame);
    Value RunIf(const Syntax& node, Frame& frame);
    Value RunTry(const Syntax& node, Frame& frame);
    Value RunWhile(const Syntax& node, Frame& frame);
    Value RunDoWhile(const Syntax& node, Frame& frame);
    Value RunCountingLoop(const Syntax& node, Frame& frame);
    Value RunCollectionLoop(const Syntax& node, Frame& frame);
    bool RunBody(const Syntax& body, Frame& frame, Value& value);
    bool RunIteration(const Syntax& node, Frame& frame, std::vector<Value>& collected);
    Value RunAssignment(const Syntax& node, Frame& frame);
    bool Test(const Syntax& node, Frame& frame, std::string_view construct);

    Value ReadGlobal(const std::string& name);
    void WriteGlobal(const std::string& name, const Value& value);
    Value Call(const Value& called, const Arguments& arguments);
    Value CallUser(const UserFunction& function, const Arguments& arguments);
    Value CallBuiltin(const Builtin& entry, const Arguments& arguments);

    Host& host_;
    Limits limits_;
    std::map<std::string, Value> globals_;
    std::vector<std::weak_ptr<Array>> nested_arrays_;
    std::size_t nested_arrays_cleanup_at_ = 64;
    std::string caught_message_;
    long long steps_left_ = 0;
    int depth_ = 0;
    int evaluations_ = 0;
};

}  // namespace script
