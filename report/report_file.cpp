#include "report/report_file.h"

#include <cstring>

namespace report {
namespace {

bool IsWordCharacter(char c) {
    return IsCharAlphaNumericA(c) != FALSE;
}

// Where the user's name stands in a text as a word of its own; null: nowhere.
const char* FindUser(const char* begin, const char* text, const char* user, int length) {
    for (const char* at = text; *at != '\0'; ++at) {
        if (at != begin && IsWordCharacter(at[-1])) continue;
        if (lstrlenA(at) < length) return nullptr;
        if (CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, at, length, user, length) ==
                CSTR_EQUAL &&
            !IsWordCharacter(at[length])) {
            return at;
        }
    }
    return nullptr;
}

char EscapeOf(char c) {
    switch (c) {
        case '"':
        case '\\': return c;
        case '\n': return 'n';
        case '\r': return 'r';
        case '\t': return 't';
        default: return '\0';
    }
}

}  // namespace

Line::Line(const char* noun) {
    text_[0] = '\0';
    Append(noun);
}

void Line::Append(const char* word) {
    const int length = lstrlenA(word);
    full_ = full_ || length_ + length >= kSize;
    if (full_) return;
    lstrcpyA(text_ + length_, word);
    length_ += length;
}

Line& Line::Word(const char* word) {
    char text[kSize];
    text[0] = ' ';
    lstrcpynA(text + 1, word, kSize - 1);
    Append(text);
    return *this;
}

Line& Line::Number(unsigned long number) {
    char text[16];
    wsprintfA(text, "%lu", number);
    return Word(text);
}

Line& Line::Key(const char* key, const char* word) {
    char text[kSize];
    lstrcpynA(text, key, 32);
    lstrcatA(text, "=");
    lstrcpynA(text + lstrlenA(text), word, kSize - 40);
    return Word(text);
}

Line& Line::Key(const char* key, int number) {
    char text[16];
    wsprintfA(text, "%d", number);
    return Key(key, text);
}

Line& Line::Unsigned(const char* key, unsigned long number) {
    char text[16];
    wsprintfA(text, "%lu", number);
    return Key(key, text);
}

Line& Line::Bits(const char* key, unsigned long bits) {
    char text[16];
    wsprintfA(text, "0x%lX", bits);
    return Key(key, text);
}

Line& Line::Point(const char* key, POINT point) {
    char text[32];
    wsprintfA(text, "%ld,%ld", point.x, point.y);
    return Key(key, text);
}

Line& Line::Size(const char* key, int width, int height) {
    char text[32];
    wsprintfA(text, "%dx%d", width, height);
    return Key(key, text);
}

Line& Line::Text(const char* key, const char* text) {
    constexpr char kReplacement[] = "<user>";
    char user[128] = "";
    const int length = static_cast<int>(GetEnvironmentVariableA("USERNAME", user, sizeof user));
    const bool known = length > 0 && length < static_cast<int>(sizeof user);

    constexpr int kLongest = 640;  // leaves room for the rest of a line
    char quoted[kLongest + sizeof kReplacement + 4] = "\"";
    int used = 1;
    const char* found = known ? FindUser(text, text, user, length) : nullptr;
    for (const char* at = text; *at != '\0' && used < kLongest; ++at) {
        if (at == found) {
            lstrcpyA(quoted + used, kReplacement);
            used += lstrlenA(kReplacement);
            at += length - 1;
            found = FindUser(text, at + 1, user, length);
            continue;
        }
        const char escape = EscapeOf(*at);
        if (escape != '\0') quoted[used++] = '\\';
        // What no text should have would end a line, or the file, for whoever reads it.
        const bool control = static_cast<unsigned char>(*at) < ' ';
        quoted[used++] = escape != '\0' ? escape : control ? '?' : *at;
    }
    quoted[used++] = '"';
    quoted[used] = '\0';
    return Key(key, quoted);
}

File::File(const char* path)
    : file_(path ? CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                               FILE_ATTRIBUTE_NORMAL, nullptr)
                 : INVALID_HANDLE_VALUE),
      sound_(file_ != INVALID_HANDLE_VALUE) {}

File::~File() {
    Finish();
}

void File::Flush() {
    DWORD written = 0;
    if (sound_ && used_ > 0) {
        sound_ = WriteFile(file_, buffer_, used_, &written, nullptr) && written == used_;
    }
    used_ = 0;
}

void File::Write(const Line& line) {
    const char* const text = line.Characters();
    const DWORD length = static_cast<DWORD>(lstrlenA(text));
    if (used_ + length + 2 > kBufferSize) Flush();
    std::memcpy(buffer_ + used_, text, length);
    std::memcpy(buffer_ + used_ + length, "\r\n", 2);
    used_ += length + 2;
}

bool File::Finish() {
    Flush();
    if (file_ != INVALID_HANDLE_VALUE) {
        sound_ = CloseHandle(file_) && sound_;
        file_ = INVALID_HANDLE_VALUE;
    }
    const bool sound = sound_;
    sound_ = false;  // nothing can be added
    return sound;
}

}  // namespace report
