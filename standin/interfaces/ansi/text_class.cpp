// maxutil.dll: the text class of hosts up to 2012.

#include "standin/interfaces/text_class.h"

#include <strclass.h>

CStr::CStr(const char* text) {
    // Texts of the host's own are copied from another one.
    if (eng_fails("MAX_new") != 0) eng_throw_no_memory();
    buf = CopyOfText(text);
}
CStr::CStr(const CStr& other) : MaxHeapOperators(), buf(CopyOfText(other.buf)) {}
CStr::~CStr() {
    eng_free(buf);
}
