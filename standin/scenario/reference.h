// The tables of docs/scenarios.md, made from the language.
#pragma once

#include <string>
#include <string_view>

namespace scenario {

// The page with each table behind `<!-- table: NAME -->` made anew. NAME is a section of the
// language, `arguments` or `subjects`.
std::string Renewed(std::string_view page);

}  // namespace scenario
