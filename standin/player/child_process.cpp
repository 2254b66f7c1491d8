#include "standin/player/child_process.h"

#include "standin/player/player.h"

namespace child {
namespace {

// A file that the process writes to and that is gone when it is closed. A pipe would have to be
// read while the process runs, and outlives it when the system's helpers inherit it.
HANDLE MakeFile() {
    char folder[MAX_PATH] = "";
    char name[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    if (!GetTempFileNameA(folder, "sti", 0, name)) return nullptr;
    SECURITY_ATTRIBUTES inherited{};
    inherited.nLength = sizeof inherited;
    inherited.bInheritHandle = TRUE;
    const HANDLE file = CreateFileA(
        name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    // cppcheck-suppress resourceLeak  ; the caller gets it
    return file == INVALID_HANDLE_VALUE ? nullptr : file;
}

std::string ReadAll(HANDLE file) {
    std::string text;
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    char part[65536];
    DWORD got = 0;
    while (ReadFile(file, part, sizeof part, &got, nullptr) && got > 0)
        text.append(part, got);
    return text;
}

// One argument as the C runtime takes it apart again.
std::string Quoted(const std::string& argument) {
    std::string text = "\"";
    size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '\\') {
            ++backslashes;
            continue;
        }
        text.append(c == '"' ? 2 * backslashes + 1 : backslashes, '\\');
        backslashes = 0;
        text += c;
    }
    text.append(2 * backslashes, '\\');
    return text + '"';
}

}  // namespace

bool Process::Start(const std::vector<std::string>& arguments, std::string* message) {
    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, sizeof program);
    std::string line = Quoted(program);
    for (const std::string& argument : arguments)
        line += ' ' + Quoted(argument);
    // On a busy machine a new process under Wine now and then dies before it has done anything.
    constexpr int kTries = 3;
    for (int left = kTries; left > 0; --left) {
        output_ = MakeFile();
        messages_ = MakeFile();
        if (!output_ || !messages_) {
            *message = "no temporary file can be made, check the folder for them";
            return false;
        }
        const bool is_ready = StartOnce(line);
        const DWORD error = GetLastError();
        if (is_ready) return true;
        if (process_ && (left == 1 || SaidAnything())) return true;  // Finish tells how it went
        if (left == 1) *message = "no process can be started (error " + std::to_string(error) + ")";
        Forget();
    }
    return false;
}

// False: no process was made, or it ended before its desktop stood.
bool Process::StartOnce(const std::string& line) {
    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, sizeof program);
    SECURITY_ATTRIBUTES inherited{};
    inherited.nLength = sizeof inherited;
    inherited.bInheritHandle = TRUE;
    const HANDLE ready = CreateEventA(&inherited, TRUE, FALSE, nullptr);
    std::string whole = line + " --ready " + std::to_string(reinterpret_cast<ULONG_PTR>(ready));
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output_;
    startup.hStdError = messages_;
    PROCESS_INFORMATION made{};
    if (!CreateProcessA(program, whole.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &made)) {
        const DWORD error = GetLastError();
        CloseHandle(ready);
        SetLastError(error);
        return false;
    }
    CloseHandle(made.hThread);
    process_ = made.hProcess;
    constexpr DWORD kLongestStart = 20000;
    const HANDLE either[] = {ready, process_};
    const DWORD first = WaitForMultipleObjects(2, either, FALSE, kLongestStart);
    CloseHandle(ready);
    return first != WAIT_OBJECT_0 + 1;
}

bool Process::SaidAnything() const {
    return !ReadAll(messages_).empty() || !ReadAll(output_).empty();
}

void Process::Forget() {
    for (HANDLE* handle : {&process_, &output_, &messages_}) {
        if (*handle) CloseHandle(*handle);
        *handle = nullptr;
    }
}

Result Process::Finish(DWORD longest) {
    Result result;
    const bool ended = WaitForSingleObject(process_, longest) == WAIT_OBJECT_0;
    if (!ended) {
        TerminateProcess(process_, player::kDied);
        WaitForSingleObject(process_, INFINITE);
    }
    DWORD status = player::kDied;
    GetExitCodeProcess(process_, &status);
    result.output = ReadAll(output_);
    result.messages = ReadAll(messages_);
    result.status = status <= player::kDisturbed ? static_cast<int>(status) : player::kDied;
    // A play that dies in its own way says so itself.
    if (!ended)
        result.messages += "the play did not end and was ended\n";
    else if (status > player::kDisturbed && result.messages.empty())
        result.messages = "the play crashed with status " + std::to_string(status) + "\n";
    Forget();
    return result;
}

}  // namespace child
