#include "report/window_tree.h"

namespace report {
namespace {

constexpr const char* kTypedInto[] = {"edit", "scintilla", "combo", "list"};

bool Contains(const char* text, const char* word) {
    const int length = lstrlenA(word);
    for (const char* at = text; lstrlenA(at) >= length; ++at) {
        if (CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, at, length, word, length) ==
            CSTR_EQUAL) {
            return true;
        }
    }
    return false;
}

// A window of the desktop has a title, whatever its class is called.
bool HoldsTypedText(HWND window) {
    if ((GetWindowLongPtrA(window, GWL_STYLE) & WS_CHILD) == 0) return false;
    char class_name[128] = "";
    GetClassNameA(window, class_name, static_cast<int>(sizeof class_name));
    for (const char* word : kTypedInto) {
        if (Contains(class_name, word)) return true;
    }
    return false;
}

}  // namespace

void ReadTitle(HWND window, char (&title)[kTitleSize]) {
    title[0] = '\0';
    // The answer of another thread's window could be long in coming.
    const bool own = GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
    if (!own || HoldsTypedText(window)) return;
    GetWindowTextA(window, title, kTitleSize);
    if (Contains(title, "\n")) title[0] = '\0';
}

void WindowTree::Read(HWND main) {
    count_ = 0;
    if (!IsWindow(main)) return;
    Add(main);
    EnumThreadWindows(GetWindowThreadProcessId(main, nullptr), AddOwned,
                      reinterpret_cast<LPARAM>(this));
}

int WindowTree::Number(HWND window) const {
    for (int index = 0; window && index < count_; ++index) {
        if (windows_[index] == window) return index + 1;
    }
    return 0;
}

void WindowTree::Add(HWND window) {
    if (count_ == kMost) return;
    windows_[count_++] = window;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        Add(child);
}

// The system has them from the top of the screen to the bottom.
BOOL CALLBACK WindowTree::AddOwned(HWND window, LPARAM data) {
    WindowTree& tree = *reinterpret_cast<WindowTree*>(data);
    for (HWND owner = GetWindow(window, GW_OWNER); owner; owner = GetWindow(owner, GW_OWNER)) {
        if (owner != tree.windows_[0]) continue;
        tree.Add(window);
        break;
    }
    return TRUE;
}

}  // namespace report
