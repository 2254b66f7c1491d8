// Texts between the engine, which has narrow ones, and the plug-in. Hosts up to 2012: the same
// kind.
#pragma once

#include <strbasic.h>

// How the SDK declares a text that is given to the host, and one that the host answers.
using GivenText = MCHAR*;
using AnsweredText = MCHAR*;

inline const char* Narrow(const MCHAR* text) {
    return text;
}
inline const MCHAR* Wide(const char* text) {
    return text;
}
// An answer that stays the host's.
inline AnsweredText Kept(const char* text) {
    return const_cast<MCHAR*>(text);
}
