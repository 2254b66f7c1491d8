#pragma once

// The ANSI build of the host: texts are char, in the system's code page.
#if defined(UNICODE) || defined(_UNICODE)
#error "3ds Max 2012 takes ANSI texts; build without UNICODE"
#endif
#ifndef _MBCS
#define _MBCS
#endif

typedef char MCHAR;
typedef const MCHAR* LPCMSTR;
#ifndef _M
#define _M(text) text
#endif
