// A worker: a process that plays scenarios one after the other. What it writes is collected, its
// death is noticed and is the end of the play that it was at; the next one gets a new process.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "standin/player/mailbox.h"

namespace child {

struct Result {
    int status = 0;
    std::string output;
    std::string messages;
};

class Worker {
public:
    Worker() = default;
    ~Worker() { End(); }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Begins a play with these arguments and waits until its desktop stands. False: *message.
    bool Start(const std::vector<std::string>& arguments, std::string* message);
    // Waits for the end of the play; a process that outlives the time is ended.
    Result Finish(DWORD longest);
    // The next play gets a new process.
    void End();
    // A process is there, and the desktop that it last played on is as it was before.
    bool Lasts() const { return process_ != nullptr; }

private:
    // A file that the worker writes to.
    struct Stream {
        HANDLE written = nullptr;
        HANDLE read = nullptr;
        bool Make();
        void Close();
        // What has come since the last time.
        std::string Take();
    };
    enum class Begun { kYes, kDied, kNoProcess };

    bool MakeProcess();
    Begun Begin(const std::vector<std::string>& arguments);

    HANDLE process_ = nullptr;
    HANDLE handles_[worker::kHandles] = {};
    worker::Mailbox* box_ = nullptr;
    Stream output_;
    Stream messages_;
    Result early_;  // of a play that has ended with its process before it was ready
};

}  // namespace child
