// The host's windows in the order of a report: the main window and all below it, then the windows
// that it owns.
#pragma once

#include <windows.h>

namespace report {

inline constexpr int kTitleSize = 256;

// What the window says, or nothing where that may be what somebody typed or chose: in fields and
// lists, and in texts of several lines.
void ReadTitle(HWND window, char (&title)[kTitleSize]);

class WindowTree {
public:
    // Reads it anew. What is beyond the room is left out; null for `main`: nothing is there.
    void Read(HWND main);
    int Count() const { return count_; }
    HWND Window(int number) const { return windows_[number - 1]; }  // from 1 on
    int Number(HWND window) const;                                  // 0: not one of these

private:
    static constexpr int kMost = 8192;
    HWND windows_[kMost];
    int count_ = 0;

    void Add(HWND window);
    static BOOL CALLBACK AddOwned(HWND window, LPARAM tree);
};

}  // namespace report
