// The lines of a report, as docs/report.md describes them, on their way to the file.
#pragma once

#include <windows.h>

namespace report {

// One line, put together word by word. What does not fit is cut at the end of a word.
class Line {
public:
    explicit Line(const char* noun);
    Line& Number(unsigned long number);
    Line& Word(const char* word);
    // key=value
    Line& Key(const char* key, int number);
    Line& Key(const char* key, const char* word);
    Line& Flag(const char* key, bool value) { return Key(key, value ? 1 : 0); }
    Line& Unsigned(const char* key, unsigned long number);
    Line& Bits(const char* key, unsigned long bits);
    Line& Point(const char* key, POINT point);
    Line& Size(const char* key, int width, int height);
    // In quotes, with the user's name replaced.
    Line& Text(const char* key, const char* text);

    const char* Characters() const { return text_; }

private:
    static constexpr int kSize = 1024;
    char text_[kSize];
    int length_ = 0;
    bool full_ = false;

    void Append(const char* word);
};

// A file that is written from its beginning. What could not be written is dropped.
class File {
public:
    // Null for `path`: nowhere.
    explicit File(const char* path);
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void Write(const Line& line);
    // False: the file could not be made, or not all of it could be written.
    bool Finish();

private:
    static constexpr DWORD kBufferSize = 32768;
    HANDLE file_;
    bool sound_;
    DWORD used_ = 0;
    char buffer_[kBufferSize] = {};

    void Flush();
};

}  // namespace report
