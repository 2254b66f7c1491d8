// A play in a process of its own: what it writes is collected, its death is noticed.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace child {

struct Result {
    int status = 0;
    std::string output;
    std::string messages;
};

class Process {
public:
    // Starts this program once more with these arguments and waits until its desktop stands. False:
    // *message.
    bool Start(const std::vector<std::string>& arguments, std::string* message);
    HANDLE Handle() const { return process_; }
    bool Running() const { return process_ != nullptr; }
    // Waits for the end; a process that outlives the time is ended.
    Result Finish(DWORD longest);

private:
    bool StartOnce(const std::string& line);
    bool SaidAnything() const;
    void Forget();

    HANDLE process_ = nullptr;
    HANDLE output_ = nullptr;
    HANDLE messages_ = nullptr;
};

}  // namespace child
