#pragma once

#include <maxheap.h>
#include <strbasic.h>

#include <windows.h>

// Everything that MAXScript's collector owns. Values are handed around by pointer, never deleted.
class Collectable : public MaxHeapOperators {
public:
    virtual ~Collectable() {}

private:
    // Owned and used by the host alone.
    Collectable* hostLinks[2] = {nullptr, nullptr};
    unsigned char hostFlags[8] = {};
};

class Value : public Collectable {
public:
    SDK_SLOTS_9(Value, 1, 2, 3, 4, 5, 6, 7, 8, 9)
    SDK_TEN_SLOTS(Value, 1)
    SDK_TEN_SLOTS(Value, 2)
    SDK_TEN_SLOTS(Value, 3)
    SDK_TEN_SLOTS(Value, 4)
    SDK_TEN_SLOTS(Value, 5)
    SDK_TEN_SLOTS(Value, 6)
    SDK_TEN_SLOTS(Value, 7)
    SDK_TEN_SLOTS(Value, 8)
    SDK_TEN_SLOTS(Value, 9)
    SDK_HUNDRED_SLOTS(Value, 1)
    SDK_HUNDRED_SLOTS(Value, 2)
    SDK_HUNDRED_SLOTS(Value, 3)
    SDK_HUNDRED_SLOTS(Value, 4)
    SDK_HUNDRED_SLOTS(Value, 5)
    SDK_HUNDRED_SLOTS(Value, 6)
    SDK_HUNDRED_SLOTS(Value, 7)
    SDK_HUNDRED_SLOTS(Value, 8)
    SDK_TEN_SLOTS(Value, 90)
    SDK_TEN_SLOTS(Value, 91)
    SDK_TEN_SLOTS(Value, 92)
    SDK_TEN_SLOTS(Value, 93)
    SDK_TEN_SLOTS(Value, 94)
    SDK_TEN_SLOTS(Value, 95)
    SDK_TEN_SLOTS(Value, 96)
    SDK_TEN_SLOTS(Value, 97)
    SDK_TEN_SLOTS(Value, 98)
    SDK_SLOTS_5(Value, 990, 991, 992, 993, 994)
    SDK_MAXSCRIPT_API virtual int to_int();
    SDK_SLOTS_2(Value, 996, 997)
    SDK_MAXSCRIPT_API virtual BOOL to_bool();
    SDK_SLOT(Value, 999)
    SDK_TEN_SLOTS(Value, 100)
    SDK_TEN_SLOTS(Value, 101)
    SDK_TEN_SLOTS(Value, 102)
    SDK_TEN_SLOTS(Value, 103)
    SDK_TEN_SLOTS(Value, 104)
    SDK_TEN_SLOTS(Value, 105)
    SDK_SLOTS_4(Value, 1060, 1061, 1062, 1063)

private:
    void* tag = nullptr;  // the value's class
};

// The conversions above throw a script error for a value of another kind; the error passes through
// the frames of whoever called them and ends in the interpreter.

class Boolean : public Value {};

SDK_MAXSCRIPT_API extern Boolean true_value;
SDK_MAXSCRIPT_API extern Boolean false_value;
