#pragma once

#include <maxscript/kernel/value.h>

typedef Value* (*value_cf)(Value** arg_list, int count);

class Function : public Value {
public:
    SDK_MAXSCRIPT_API ~Function() override;

protected:
    Function() {}

    Value* name = nullptr;
    Value* structure = nullptr;
};

// A global function of MAXScript that is written in C++. A static object registers itself when the
// plug-in is loaded.
class Primitive : public Function {
public:
    SDK_MAXSCRIPT_API Primitive(SDK_CONST_FROM_2013 MCHAR* name, value_cf fn, short init_flags = 0);
#ifndef _MSC_VER
    // The GNU rules would otherwise repeat this class's table in every module that ends one. Under
    // the Microsoft rules the destructor is written by the compiler and ends in Function's.
    SDK_MAXSCRIPT_API ~Primitive() override;
#endif

private:
    short flags;
    value_cf fn_ptr;
};
