#pragma once

#include <maxscript/kernel/value.h>

class CharStream : public Value {};

class WindowStream : public CharStream {
public:
    SDK_SLOTS_6(WindowStream, 1064, 1065, 1066, 1067, 1068, 1069)
    SDK_SLOTS_6(WindowStream, 1070, 1071, 1072, 1073, 1074, 1075)
    virtual const MCHAR* puts(const MCHAR* str) = 0;
    SDK_SLOTS_2(WindowStream, 1077, 1078)
    virtual void flush() = 0;
    SDK_SLOTS_7(WindowStream, 1080, 1081, 1082, 1083, 1084, 1085, 1086)
};
