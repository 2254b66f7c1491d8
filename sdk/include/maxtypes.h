#pragma once

#include <strbasic.h>

#include <windows.h>

typedef unsigned long ulong;

typedef int TimeValue;  // ticks, 4800 a second
typedef ulong SClass_ID;

enum IOResult {
    IO_OK = 0,
    IO_END = 1,
    IO_ERROR = 2,
};

// Two words that name a class or an interface. They are returned through a hidden pointer, because
// they have constructors.
class Class_ID {
public:
    Class_ID() : a(0xffffffff), b(0xffffffff) {}
    Class_ID(ulong partA, ulong partB) : a(partA), b(partB) {}
    ulong PartA() const { return a; }
    ulong PartB() const { return b; }
    bool operator==(const Class_ID& other) const { return a == other.a && b == other.b; }

private:
    ulong a;
    ulong b;
};

class Interface_ID {
public:
    Interface_ID() : a(0xffffffff), b(0xffffffff) {}
    Interface_ID(ulong partA, ulong partB) : a(partA), b(partB) {}
    ulong PartA() const { return a; }
    ulong PartB() const { return b; }
    bool operator==(const Interface_ID& other) const { return a == other.a && b == other.b; }

private:
    ulong a;
    ulong b;
};
