// What the wrappers share.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <string_view>

namespace intercept {

struct Row {
    const char* name;
    void* wrapper;
    bool can_fail = true;
};

std::span<const Row> InputCalls();
std::span<const Row> WindowCalls();
std::span<const Row> ResourceCalls();

// No call, but the folder of the settings file, which can vanish.
inline constexpr std::string_view kSettingsFolder = "settings-folder";

// True while `fail NAME` is in force; every wrapper asks first, so that this also counts.
bool Fails(std::string_view name);

template <typename Function>
void* Address(Function* function) {
    return reinterpret_cast<void*>(function);
}

std::string Number(long long value);
std::string PointText(LONG x, LONG y);
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
