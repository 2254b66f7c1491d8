// The size of the system's screen where there is no display.
#pragma once

#include <windows.h>

#include <windows.h>

namespace screen_size {

// Wine without a display has a screen whose size it keeps in the registry; processes that start see
// it, and desktops made by them have it. Everywhere else the screen is what it is, and nothing
// happens. A claim is held while a process starts, because all processes of the prefix share the
// registry: those of the usual size may start together, one of another size starts alone.
class Claim {
public:
    Claim(int width, int height);
    ~Claim();
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;

private:
    HANDLE starts_ = nullptr;
    HANDLE other_size_ = nullptr;
    LONG held_ = 0;
};

}  // namespace screen_size
