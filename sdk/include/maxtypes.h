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

// Two words that name a class or an interface. Their copy constructors are written out, as the
// host's are: an object with one of its own is handed over as the address of a copy. Without them
// it would travel in a register, and the host would take its words for that address.
class Class_ID {
public:
    Class_ID() : a(0xffffffff), b(0xffffffff) {}
    Class_ID(ulong partA, ulong partB) : a(partA), b(partB) {}
    Class_ID(const Class_ID& other) : a(other.a), b(other.b) {}
    Class_ID& operator=(const Class_ID&) = default;
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
    Interface_ID(const Interface_ID& other) : a(other.a), b(other.b) {}
    Interface_ID& operator=(const Interface_ID&) = default;
    ulong PartA() const { return a; }
    ulong PartB() const { return b; }
    bool operator==(const Interface_ID& other) const { return a == other.a && b == other.b; }

private:
    ulong a;
    ulong b;
};
