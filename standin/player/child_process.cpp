#include "standin/player/child_process.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "standin/player/player.h"
#include "standin/player/settings_folder.h"

namespace child {
namespace {

SECURITY_ATTRIBUTES Inherited() {
    SECURITY_ATTRIBUTES inherited{};
    inherited.nLength = sizeof inherited;
    inherited.bInheritHandle = TRUE;
    return inherited;
}

HANDLE MakeEvent(BOOL stays_set) {
    SECURITY_ATTRIBUTES inherited = Inherited();
    return CreateEventA(&inherited, stays_set, FALSE, nullptr);
}

HANDLE ThisProcess() {
    HANDLE process = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), GetCurrentProcess(), &process,
                    SYNCHRONIZE, TRUE, 0);
    return process;
}

void CloseAndForget(HANDLE* handle) {
    if (*handle) CloseHandle(*handle);
    *handle = nullptr;
}

}  // namespace

// A file that is gone when it is closed. A pipe would have to be read while the process runs, and
// outlives it when the system's helpers inherit it.
bool Worker::Stream::Make() {
    char folder[MAX_PATH] = "";
    char name[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    if (!GetTempFileNameA(folder, "sti", 0, name)) return false;
    SECURITY_ATTRIBUTES inherited = Inherited();
    constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    written = CreateFileA(name, GENERIC_WRITE | DELETE, kShared, &inherited, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    // A place in the file of its own.
    read = CreateFileA(name, GENERIC_READ, kShared, nullptr, OPEN_EXISTING, 0, nullptr);
    if (written == INVALID_HANDLE_VALUE) written = nullptr;
    if (read == INVALID_HANDLE_VALUE) read = nullptr;
    return written && read;
}

void Worker::Stream::Close() {
    CloseAndForget(&written);
    CloseAndForget(&read);
}

std::string Worker::Stream::Take() {
    std::string text;
    char part[65536];
    DWORD got = 0;
    while (ReadFile(read, part, sizeof part, &got, nullptr) && got > 0)
        text.append(part, got);
    return text;
}

bool Worker::MakeProcess() {
    using namespace worker;
    SECURITY_ATTRIBUTES inherited = Inherited();
    handles_[kMemory] = CreateFileMappingA(INVALID_HANDLE_VALUE, &inherited, PAGE_READWRITE, 0,
                                           sizeof(Mailbox), nullptr);
    handles_[kGo] = MakeEvent(FALSE);
    handles_[kReady] = MakeEvent(TRUE);
    handles_[kDone] = MakeEvent(TRUE);
    handles_[kPlayer] = ThisProcess();
    const bool all =
        std::all_of(std::begin(handles_), std::end(handles_), [](HANDLE one) { return one; });
    if (all)
        box_ = static_cast<Mailbox*>(
            MapViewOfFile(handles_[kMemory], FILE_MAP_ALL_ACCESS, 0, 0, sizeof(Mailbox)));
    if (!box_ || !output_.Make() || !messages_.Make()) return false;

    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, sizeof program);
    std::string line = std::string("\"") + program + "\" " + kCommand;
    for (const HANDLE handle : handles_)
        line += ' ' + std::to_string(reinterpret_cast<ULONG_PTR>(handle));
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output_.written;
    startup.hStdError = messages_.written;
    PROCESS_INFORMATION made{};
    if (!CreateProcessA(program, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &made))
        return false;
    CloseHandle(made.hThread);
    process_ = made.hProcess;
    return true;
}

Worker::Begun Worker::Begin(const std::vector<std::string>& arguments) {
    using namespace worker;
    if (process_ && WaitForSingleObject(process_, 0) == WAIT_OBJECT_0) End();
    if (!process_ && !MakeProcess()) return Begun::kNoProcess;
    char* to = box_->arguments;
    const char* const end = std::end(box_->arguments) - 1;
    for (const std::string& argument : arguments) {
        if (argument.size() + 1 > static_cast<size_t>(end - to)) return Begun::kNoProcess;
        std::memcpy(to, argument.c_str(), argument.size() + 1);
        to += argument.size() + 1;
    }
    *to = 0;
    ResetEvent(handles_[kReady]);
    ResetEvent(handles_[kDone]);
    SetEvent(handles_[kGo]);
    constexpr DWORD kLongestStart = 20000;
    const HANDLE any[] = {process_, handles_[kReady], handles_[kDone]};
    return WaitForMultipleObjects(3, any, FALSE, kLongestStart) == WAIT_OBJECT_0 ? Begun::kDied
                                                                                 : Begun::kYes;
}

bool Worker::Start(const std::vector<std::string>& arguments, std::string* message) {
    // A worker that has come to its end before it saw this play; and on a busy machine a new
    // process under Wine now and then dies before it has done anything.
    constexpr int kTries = 4;
    for (int left = kTries; left > 0; --left) {
        const Begun begun = Begin(arguments);
        if (begun == Begun::kYes) return true;
        const DWORD error = GetLastError();
        if (begun == Begun::kDied) {
            early_.output = output_.Take();
            early_.messages = messages_.Take();
            // Finish tells how it went.
            if (left == 1 || !early_.output.empty() || !early_.messages.empty()) return true;
        }
        End();
        if (left == 1) *message = "no process can be started (error " + std::to_string(error) + ")";
    }
    return false;
}

Result Worker::Finish(DWORD longest) {
    using namespace worker;
    Result result = std::exchange(early_, Result());
    const HANDLE either[] = {handles_[kDone], process_};
    const DWORD first = WaitForMultipleObjects(2, either, FALSE, longest);
    if (first == WAIT_OBJECT_0) {
        result.status = box_->outcome.status;
        result.output += output_.Take();
        result.messages += messages_.Take();
        if (!box_->outcome.tidy) End();
        return result;
    }
    const bool ended = first == WAIT_OBJECT_0 + 1;
    if (!ended) {
        TerminateProcess(process_, player::kDied);
        WaitForSingleObject(process_, INFINITE);
    }
    DWORD status = player::kDied;
    GetExitCodeProcess(process_, &status);
    result.output += output_.Take();
    result.messages += messages_.Take();
    result.status = status == player::kDisturbed ? player::kDisturbed : player::kDied;
    // A play that dies in its own way says so itself.
    if (!ended)
        result.messages += "the play did not end and was ended\n";
    else if (result.messages.empty())
        result.messages = "the play crashed with status " + std::to_string(status) + "\n";
    End();
    return result;
}

void Worker::End() {
    if (process_) {
        TerminateProcess(process_, 0);
        WaitForSingleObject(process_, INFINITE);
        player::SettingsFolder::RemoveOwn(GetProcessId(process_));
    }
    CloseAndForget(&process_);
    if (box_) UnmapViewOfFile(box_);
    box_ = nullptr;
    for (HANDLE& handle : handles_)
        CloseAndForget(&handle);
    output_.Close();
    messages_.Close();
}

}  // namespace child
