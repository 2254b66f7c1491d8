// What every host DLL of the stand-in begins with. It stands before the SDK headers: a slot that
// those reserve but do not name must never be called, and the engine is told when one is.
#pragma once

#include "standin/engine/engine_api.h"

#define SDK_UNEXPECTED_CALL(class_name, slot) eng_unexpected(class_name " slot " slot)

#include <new>

// What a member answers that no plug-in of ours calls, once the engine has been told.
struct NoAnswer {
    template <class Answer>
    operator Answer() const {
        return Answer();
    }
};
inline NoAnswer Unexpected(const char* what) {
    eng_unexpected(what);
    return {};
}

// An SDK object that stands for one of the engine's objects.
template <class Base, class Engine>
class StandsFor : public Base {
public:
    explicit StandsFor(Engine* handle) : m_handle(handle) {}
    Engine* Handle() const { return m_handle; }

protected:
    Engine* m_handle;
};

// The one object that stands for an engine object, as in the host, where it is the object. It lives
// on the C heap: the host's heap is counted, and a plug-in is not to be blamed for what the
// stand-in keeps.
template <class Object, class Handle>
Object* ObjectOf(Handle* handle) {
    if (handle == nullptr) return nullptr;
    void** slot = eng_slot(handle);
    if (*slot == nullptr) *slot = ::new Object(handle);
    return static_cast<Object*>(*slot);
}

template <class Object, class Base>
auto* HandleOf(Base* object) {
    return object == nullptr ? nullptr : static_cast<Object*>(object)->Handle();
}

// What a call hands out, unless a scenario makes the call fail.
template <class Object>
Object* Given(const char* call, Object* object) {
    return eng_fails(call) != 0 ? nullptr : object;
}

// Of the SDK's tables, which are declared after this: null for an index or number that is not
// there.
template <template <class> class Table, class Entry>
Entry EntryAt(const Table<Entry>& table, int index) {
    return index >= 0 && index < table.Count() ? table[index] : nullptr;
}
template <template <class> class Table, class Entry, class Id>
Entry EntryWithId(const Table<Entry>& table, const Id& id) {
    for (int index = 0; index < table.Count(); ++index)
        if (table[index]->GetID() == id) return table[index];
    return nullptr;
}

// Under the GNU rules a class has one table, beside its first member that is not inline, and
// objects of derived classes made in other modules need it; dllexport does not export it.
#ifdef _MSC_VER
#define EXPORT_TABLE_OF(name)
#else
#define EXPORT_TABLE_OF(name) \
    __asm__(".section .drectve\n\t.ascii \" -export:_ZTV" name ",data\"\n\t.text");
#endif
