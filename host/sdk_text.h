// Texts on their way to the host and back. The plug-in's own are narrow, in the system's code page;
// the host's are of MCHAR, which each generation of the SDK defines: char up to 2012, wchar_t from
// 2013 on. ansi/ and unicode/ each hold these functions for one generation. Texts of one's own
// that are always the same are written with the SDK's _M instead.
#pragma once

#include <max.h>

namespace host {

// The text as the host reads it, null for null. It may stand in a shared buffer: the host has to
// read it before the next call, and a very long one is cut.
const MCHAR* TextForHost(const char* text);

// Copies a text, cut to `size` characters with its end, to where the host may even write.
void CopyTextForHost(MCHAR* copy, int size, const char* text);

// Whether the host's text is exactly this one; null is none.
bool IsHostText(const MCHAR* host_text, const char* text);

// The path that the host names, for functions of the system that take narrow texts; empty for null.
// It may stand in a shared buffer: the next call overwrites it.
const char* PathFromHost(const MCHAR* path);

}  // namespace host
