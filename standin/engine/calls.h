// What becomes of each call of the plug-in, to the host or to the system: an effect is written down
// and then done, a reader is answered and then written down, and a call that a scenario makes fail
// is not done and answers null, 0 or false. The tables of calls are written with these.
#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "standin/engine/intercept/faults.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace calls {

// An argument or an answer, as it stands in a line.
inline std::string Text(const std::string& text) {
    return text;
}
std::string Text(const char* text);  // quoted, or the number of a resource
std::string Text(POINT point);
std::string Text(HWND window);
std::string Text(const eng_view* view);
std::string Text(const eng_node* node);
std::string Text(const eng_mode* mode);
std::string Text(const eng_menu* menu);
std::string Text(const eng_button* button);
std::string Text(const eng_table* table);
std::string Text(const eng_action* action);
std::string Text(std::integral auto number) {
    return std::to_string(number);
}

// With a blank before it, unless it is empty.
std::string Word(const std::string& text);

template <typename... Arguments>
std::string Listed(const Arguments&... arguments) {
    return (std::string() + ... + Word(Text(arguments)));
}

template <typename Result>
Result None() {
    return Result();
}

}  // namespace calls

// The bodies of calls, in places that have a function Fails. `traced` is a list of arguments in
// brackets, `shown` may name the answer.
#define TRACE_FAIL_ACT(trace_line, result, name, traced, ...)                          \
    {                                                                                  \
        trace_line(name + calls::Listed traced);                                       \
        return Fails(name) ? calls::None<result>() : static_cast<result>(__VA_ARGS__); \
    }
#define FAIL_READ_TRACE(result, class_name, name, traced, shown, ...)                       \
    {                                                                                       \
        const auto answer =                                                                 \
            Fails(name) ? calls::None<result>() : static_cast<result>(__VA_ARGS__);         \
        if (trace::AsksWanted()) trace::Ask(class_name name + calls::Listed traced, shown); \
        return answer;                                                                      \
    }
