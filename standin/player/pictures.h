// Pictures of the screen as PNG files.
#pragma once

#include <string>

namespace pictures {

// The whole screen with the cursor. False when there is nothing to see or the file can not be
// written.
bool SaveScreen(const std::string& file);

}  // namespace pictures
