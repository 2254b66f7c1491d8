// What every host DLL of the stand-in begins with. It stands before the SDK headers: a slot that
// those reserve but do not name must never be called, and the engine is told when one is.
#pragma once

#include "standin/engine/engine_api.h"

#define SDK_UNEXPECTED_CALL(class_name, slot) eng_unexpected(class_name " slot " slot)

#include <new>

// The SDK object that stands for one of the engine's objects; there is one per engine object, as in
// the host, where it is the object. It lives on the C heap: the host's heap is counted, and a
// plug-in is not to be blamed for what the stand-in keeps.
template <class Object, class Handle, class... More>
Object* ObjectOf(Handle* handle, More... more) {
    if (handle == nullptr) return nullptr;
    void** slot = eng_slot(handle);
    if (*slot == nullptr) *slot = ::new Object(handle, more...);
    return static_cast<Object*>(*slot);
}

// What a call hands out, unless a scenario makes the call fail.
template <class Object>
Object* Given(const char* call, Object* object) {
    return eng_fails(call) != 0 ? nullptr : object;
}

// The object of a handle that is about to be released.
template <class Object, class Handle>
void ForgetObjectOf(Handle* handle) {
    void** slot = eng_slot(handle);
    ::delete static_cast<Object*>(*slot);
    *slot = nullptr;
}
