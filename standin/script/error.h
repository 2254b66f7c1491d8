// Errors of a script: one text and the place in the script where it happened.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace script {

// Line and column count from 1; line 0 means that the place is not known (yet).
struct Position {
    int line = 0;
    int column = 0;
};

// Thrown for everything that can go wrong while a script is read or run. The host throws it
// without a position; the interpreter adds the position of the construct that called the host.
class Error : public std::exception {
public:
    explicit Error(std::string text, Position where = {})
        : message(std::move(text)), position(where) {}

    const char* what() const noexcept override { return message.c_str(); }

    std::string message;
    Position position;
    // A broken limit is not a condition that a script may catch: `while true do try (...) catch ()`
    // would never come back.
    bool is_limit = false;
};

inline Error MakeLimitError(std::string text, Position where = {}) {
    Error error(std::move(text), where);
    error.is_limit = true;
    return error;
}

}  // namespace script
