#pragma once

// Support for the declarations in this directory; the real SDK has no header of this name, so
// nothing outside this directory includes it.
//
// These headers declare the part of the 3ds Max 2012 SDK that the plug-in uses, under the names of
// the real headers, so that a build can take either; with UNICODE that of 2014 to 2016, but for the
// slots, which stay those of 2012. What binds them to the running host is the binary layout: which
// slot of a class's function table a member has, how large an object is, under which name a
// function is imported. tests/abi/ holds the numbers and compares.

// The host's libraries define the imported members. The stand-in's libraries are built from the
// same declarations and define SDK_BUILDING_<LIBRARY>.
#ifdef SDK_BUILDING_CORE
#define SDK_CORE_API __declspec(dllexport)
#else
#define SDK_CORE_API __declspec(dllimport)
#endif
#ifdef SDK_BUILDING_MAXUTIL
#define SDK_MAXUTIL_API __declspec(dllexport)
#else
#define SDK_MAXUTIL_API __declspec(dllimport)
#endif
#ifdef SDK_BUILDING_MAXSCRIPT
#define SDK_MAXSCRIPT_API __declspec(dllexport)
#else
#define SDK_MAXSCRIPT_API __declspec(dllimport)
#endif
#ifdef SDK_BUILDING_GUP
#define SDK_GUP_API __declspec(dllexport)
#else
#define SDK_GUP_API __declspec(dllimport)
#endif
#ifdef SDK_BUILDING_PARAMBLK2
#define SDK_PARAMBLK2_API __declspec(dllexport)
#else
#define SDK_PARAMBLK2_API __declspec(dllimport)
#endif
#ifdef SDK_BUILDING_MENUS
#define SDK_MENUS_API __declspec(dllexport)
#else
#define SDK_MENUS_API __declspec(dllimport)
#endif

// A class that is only called through pointers needs its members at the right slots and nothing
// else, so the members between them are reserved by number. The numbers are part of the names: a
// reserved slot of a base class must not be overridden by one of a derived class. They have bodies
// and are not pure, so that the stand-in derives from these classes and writes the real members
// alone; it defines SDK_UNEXPECTED_CALL to hear of a call that should not happen.
#ifndef SDK_UNEXPECTED_CALL
#define SDK_UNEXPECTED_CALL(class_name, slot) ((void)0)
#endif

#define SDK_SLOT(name, slot)               \
    virtual void name##_slot_##slot() {    \
        SDK_UNEXPECTED_CALL(#name, #slot); \
    }
#define SDK_SLOTS_2(name, a, b) SDK_SLOT(name, a) SDK_SLOT(name, b)
#define SDK_SLOTS_3(name, a, b, c) SDK_SLOTS_2(name, a, b) SDK_SLOT(name, c)
#define SDK_SLOTS_4(name, a, b, c, d) SDK_SLOTS_3(name, a, b, c) SDK_SLOT(name, d)
#define SDK_SLOTS_5(name, a, b, c, d, e) SDK_SLOTS_4(name, a, b, c, d) SDK_SLOT(name, e)
#define SDK_SLOTS_6(name, a, b, c, d, e, f) SDK_SLOTS_5(name, a, b, c, d, e) SDK_SLOT(name, f)
#define SDK_SLOTS_7(name, a, b, c, d, e, f, g) SDK_SLOTS_6(name, a, b, c, d, e, f) SDK_SLOT(name, g)
#define SDK_SLOTS_8(name, a, b, c, d, e, f, g, h) \
    SDK_SLOTS_7(name, a, b, c, d, e, f, g) SDK_SLOT(name, h)
#define SDK_SLOTS_9(name, a, b, c, d, e, f, g, h, i) \
    SDK_SLOTS_8(name, a, b, c, d, e, f, g, h) SDK_SLOT(name, i)

// Ten slots by their leading digits (5 stands for 50 to 59), a hundred by theirs.
#define SDK_TEN_SLOTS(name, tens)                                  \
    SDK_SLOTS_5(name, tens##0, tens##1, tens##2, tens##3, tens##4) \
    SDK_SLOTS_5(name, tens##5, tens##6, tens##7, tens##8, tens##9)
// clang-format off
#define SDK_HUNDRED_SLOTS(name, hundreds)                                 \
    SDK_TEN_SLOTS(name, hundreds##0) SDK_TEN_SLOTS(name, hundreds##1)     \
    SDK_TEN_SLOTS(name, hundreds##2) SDK_TEN_SLOTS(name, hundreds##3)     \
    SDK_TEN_SLOTS(name, hundreds##4) SDK_TEN_SLOTS(name, hundreds##5)     \
    SDK_TEN_SLOTS(name, hundreds##6) SDK_TEN_SLOTS(name, hundreds##7)     \
    SDK_TEN_SLOTS(name, hundreds##8) SDK_TEN_SLOTS(name, hundreds##9)
// clang-format on
