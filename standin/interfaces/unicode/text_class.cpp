// maxutil.dll: the text class of hosts from 2013 on.

#include "standin/interfaces/text_class.h"

#include <strclass.h>

WStr::WStr(const wchar_t* text) : buf(CopyOfText(text)) {}
WStr::WStr(const WStr& other) : MaxHeapOperators(), buf(CopyOfText(other.buf)) {}
WStr::~WStr() {
    eng_free(buf);
}
