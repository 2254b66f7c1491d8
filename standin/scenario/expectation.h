// What an `expect` asks for, held against a line of the trace.
#pragma once

#include <string_view>

namespace scenario {

// Whether the line `got` is what an `expect` asks for: `*` stands for any text.
bool Matches(std::string_view expected, std::string_view got);

// The same for a whole trace line. Words of the form NAME=VALUE at the end of some lines tell what
// most expectations do not care about: those that the expectation leaves out are not compared.
bool MatchesLine(std::string_view expected, std::string_view got);

// `…` (or `...`) alone: any number of lines.
bool IsAnyLines(std::string_view expected);

}  // namespace scenario
