// MAXScrpt.dll: script values, the registration of functions written in C++, and the listener.

#include "standin/interfaces/host_dll.h"

#include "host_text.h"

#include <max.h>

#include <macrorec.h>
#include <maxscript/maxscript.h>

#include <maxscript/foundation/functions.h>
#include <maxscript/util/listener.h>

// --- values ---

Boolean true_value;
Boolean false_value;

// A conversion that a value does not have is a script error: it leaves the primitive that asked,
// and does not come back.
int Value::to_int() {
    eng_script_error("Unable to convert to type: Integer");
    return 0;
}
BOOL Value::to_bool() {
    if (this == &true_value) return TRUE;
    if (this != &false_value) eng_script_error("Unable to convert to type: Boolean");
    return FALSE;
}

// An argument of a primitive other than true and false. It lives on the stack of the call.
class ArgumentValue final : public Value {
public:
    explicit ArgumentValue(const eng_value& value) : m_value(value) {}
    const eng_value& Content() const { return m_value; }

    int to_int() override {
        switch (m_value.kind) {
            case ENG_INTEGER: return m_value.integer;
            case ENG_FLOAT: return static_cast<int>(m_value.number);
            default: return Value::to_int();
        }
    }

private:
    eng_value m_value;
};

// --- primitives ---

Function::~Function() = default;

Primitive::Primitive(GivenText primitiveName, value_cf fn, short init_flags)
    : flags(init_flags), fn_ptr(fn) {
    // A flag would have the interpreter treat its calls in another way, which none here does.
    if (init_flags != 0) return;
    eng_register_primitive(Narrow(primitiveName), reinterpret_cast<void*>(fn));
}
#ifndef _MSC_VER
Primitive::~Primitive() = default;
#endif

static eng_value ContentOf(const Value* result, const ArgumentValue* arguments, int count) {
    eng_value content = {};
    if (result == &true_value || result == &false_value) {
        content.kind = ENG_BOOLEAN;
        content.integer = result == &true_value;
        return content;
    }
    for (int index = 0; index < count; ++index) {
        if (result == &arguments[index]) return arguments[index].Content();
    }
    content.kind = result == nullptr ? ENG_UNDEFINED : ENG_OTHER;
    return content;
}

static void CallPrimitive(void* function, const eng_value* args, int count, eng_value* result) {
    constexpr int kMostArguments = 16;
    if (count > kMostArguments) {
        eng_script_error("Too many arguments for a primitive");
        return;
    }
    // Neither memory nor a destructor may be needed here: a script error does not come back.
    alignas(ArgumentValue) unsigned char storage[(kMostArguments + 1) * sizeof(ArgumentValue)];
    ArgumentValue* arguments = reinterpret_cast<ArgumentValue*>(storage);
    Value* list[kMostArguments + 1] = {};
    for (int index = 0; index < count; ++index) {
        ArgumentValue* argument = new (&arguments[index]) ArgumentValue(args[index]);
        list[index] = argument;
        if (args[index].kind == ENG_BOOLEAN) {
            list[index] = args[index].integer != 0 ? &true_value : &false_value;
        }
    }
    // A primitive that does not look at the count finds undefined behind the last argument.
    list[count] = new (&arguments[count]) ArgumentValue(eng_value{ENG_UNDEFINED, 0, 0.0, nullptr});
    Value* answer = reinterpret_cast<value_cf>(function)(list, count);
    *result = ContentOf(answer, arguments, count);
}

// --- listener and macro recorder ---

class ListenerStream final : public WindowStream {
public:
    const MCHAR* puts(const MCHAR* text) override {
        return eng_listener_put(Narrow(text)) != 0 ? text : nullptr;
    }
    void flush() override { eng_listener_flush(); }
};

static ListenerStream g_listenerStream;

class HostListener final : public Listener {
public:
    HostListener() { edit_stream = &g_listenerStream; }
};

static HostListener g_listener;
Listener* the_listener = &g_listener;

static void ShowListener(int there) {
    the_listener = there != 0 ? &g_listener : nullptr;
}

#if SDK_GENERATION < 2016
MacroRecorder* macroRecorder = GetCOREInterface()->GetMacroRecorder();
#endif

static const eng_script_calls kScriptCalls = {CallPrimitive, ShowListener};
static const bool g_registered = (eng_register_script_calls(&kScriptCalls), true);
