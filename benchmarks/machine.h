// The machine that is measured on, for whoever reads the times.
#pragma once

#include <windows.h>

#include <fstream>
#include <string>

namespace machine {

inline int Processors() {
    SYSTEM_INFO info{};
    GetSystemInfo(&info);
    return static_cast<int>(info.dwNumberOfProcessors);
}

// How many programs wanted a processor over the last one, five and fifteen minutes. Linux tells it,
// and Wine shows Linux' files; elsewhere it is empty.
inline std::string Load() {
    std::ifstream file("Z:/proc/loadavg");
    std::string one;
    std::string five;
    std::string fifteen;
    file >> one >> five >> fifteen;
    return file ? one + " " + five + " " + fifteen : std::string();
}

}  // namespace machine
