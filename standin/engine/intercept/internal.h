// What the wrappers share.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "standin/engine/calls.h"

namespace intercept {

// A call that the plug-in's import of this name is led to. Each adds itself to the list that the
// imports are looked up in.
struct Wrapper {
    Wrapper(const char* name, void* wrapper, bool can_fail = true);
};

// True while `fail NAME` is in force; every wrapper asks, so that this also counts.
bool Fails(std::string_view name);

template <typename Function>
void* Address(Function* function) {
    return reinterpret_cast<void*>(function);
}

using calls::Text;
// A message's argument: the name of a window or resource that it is a handle of, else the number.
std::string ArgumentText(LONG_PTR value);
// "none", "plugin", or the name of another module's file.
std::string ModuleText(HMODULE module);
// The number of a resource that the plug-in loaded, `arrow` for the system's, `none` for null.
std::string ResourceText(const void* handle);
void NoteResource(const void* handle, const std::string& name);

void ForgetResources();
void ForgetSubclasses();

}  // namespace intercept

// A row for each function, as in host_calls.inc, with the system's name in place of the member's.
#define WRAPPER(result, name, parameters)             \
    result WINAPI On##name parameters;                \
    const Wrapper g_##name{#name, Address(On##name)}; \
    result WINAPI On##name parameters
#define EFFECT(result, name, parameters, traced, ...) \
    WRAPPER(result, name, parameters) TRACE_FAIL_ACT(trace::Win, result, #name, traced, __VA_ARGS__)
#define READER_AS(result, name, parameters, traced, shown, ...) \
    WRAPPER(result, name, parameters)                           \
    FAIL_READ_TRACE(result, "", #name, traced, shown, __VA_ARGS__)
#define READER(result, name, parameters, traced, ...) \
    READER_AS(result, name, parameters, traced, Text(answer), __VA_ARGS__)
