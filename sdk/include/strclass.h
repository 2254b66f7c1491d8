#pragma once

#include <maxheap.h>
#include <strbasic.h>

#include <cstring>

// The host's text: a pointer to characters on the host's heap.
class CStr : public MaxHeapOperators {
public:
    SDK_MAXUTIL_API CStr(const char* text);
    SDK_MAXUTIL_API CStr(const CStr& other);
    SDK_MAXUTIL_API ~CStr();

    const char* data() const { return buf; }
    operator char*() { return buf; }
    operator const char*() const { return buf; }
    int Length() const { return buf == nullptr ? 0 : static_cast<int>(std::strlen(buf)); }
    bool isNull() const { return buf == nullptr || *buf == '\0'; }

    // Assignment goes through members of the host that are not declared here.
    CStr& operator=(const CStr&) = delete;

private:
    char* buf;
};

typedef CStr TSTR;
typedef CStr MSTR;
