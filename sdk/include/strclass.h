#pragma once

#include <maxheap.h>
#include <strbasic.h>

#include <cstring>
#include <cwchar>

// The host's text: a pointer to characters on the host's heap. Wide ones have a class of their own.
#ifdef UNICODE
#define CStr WStr
#define SDK_TEXT_LENGTH std::wcslen
#else
#define SDK_TEXT_LENGTH std::strlen
#endif
class CStr : public MaxHeapOperators {
public:
    SDK_MAXUTIL_API CStr(const MCHAR* text);
    SDK_MAXUTIL_API CStr(const CStr& other);
    SDK_MAXUTIL_API ~CStr();

    const MCHAR* data() const { return buf; }
#ifndef UNICODE
    operator MCHAR*() { return buf; }
#endif
    operator const MCHAR*() const { return buf; }
    int Length() const { return buf == nullptr ? 0 : static_cast<int>(SDK_TEXT_LENGTH(buf)); }
    bool isNull() const { return buf == nullptr || *buf == 0; }

    // Assignment goes through members of the host that are not declared here.
    CStr& operator=(const CStr&) = delete;

private:
    MCHAR* buf;
};

typedef CStr TSTR;
typedef CStr MSTR;
