#pragma once

// Texts of the hosts up to 2012 are char, in the system's code page; those of the hosts from 2013
// on, for which UNICODE is defined, are UTF-16, and many that were writable are const.
#if defined(UNICODE) != defined(_UNICODE)
#error "UNICODE and _UNICODE go together: both for hosts from 2013 on, none for 2012"
#endif
#ifdef UNICODE
typedef wchar_t MCHAR;
#define SDK_CONST_FROM_2013 const
#ifndef _M
#define _M(text) L##text
#endif
#else
#ifndef _MBCS
#define _MBCS
#endif
typedef char MCHAR;
#define SDK_CONST_FROM_2013
#ifndef _M
#define _M(text) text
#endif
#endif
typedef const MCHAR* LPCMSTR;
