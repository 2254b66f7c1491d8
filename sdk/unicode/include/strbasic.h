#pragma once

// The Unicode hosts: texts are UTF-16.
#if !defined(UNICODE) || !defined(_UNICODE)
#error "hosts from 2013 on take Unicode texts; build with UNICODE and _UNICODE"
#endif

typedef wchar_t MCHAR;
typedef const MCHAR* LPCMSTR;
#ifndef _M
#define _M(text) L##text
#endif
