// A settings file in memory, read and written by the system's rules: sections and keys in any
// letter case, the first of equal keys counts, blanks around key and value do not belong to them,
// nor does a pair of quotes around the value; a line that begins with a semicolon is a comment.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace profile {

extern std::string g_text;       // of the file
extern std::string g_file;       // its name as the plug-in gave it last
extern std::string g_directory;  // what the host answers as the configuration directory
extern bool g_is_missing;        // there is no file yet

// The value of a key, whole; none where the section does not have it.
std::optional<std::string> Find(std::string_view section, std::string_view key);

}  // namespace profile
