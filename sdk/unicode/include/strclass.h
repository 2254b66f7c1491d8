#pragma once

#include <maxheap.h>
#include <strbasic.h>

#include <cwchar>

// The host's text: a pointer to characters on the host's heap.
class WStr : public MaxHeapOperators {
public:
    SDK_MAXUTIL_API WStr(const wchar_t* text);
    SDK_MAXUTIL_API WStr(const WStr& other);
    SDK_MAXUTIL_API ~WStr();

    const wchar_t* data() const { return buf; }
    operator const wchar_t*() const { return buf; }
    int Length() const { return buf == nullptr ? 0 : static_cast<int>(std::wcslen(buf)); }
    bool isNull() const { return buf == nullptr || *buf == L'\0'; }

    // Assignment goes through members of the host that are not declared here.
    WStr& operator=(const WStr&) = delete;

private:
    wchar_t* buf;
};

typedef WStr TSTR;
typedef WStr MSTR;
