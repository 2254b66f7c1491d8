#include "standin/engine/intercept/faults.h"

#include <set>

namespace faults {
namespace {

using NameSet = std::set<std::string, std::less<>>;

NameSet g_on;
NameSet g_calls;
bool g_noting = false;
bool g_watching = false;  // some call fails, or calls are noted

// Made by the first table that adds to it, which may be loaded before this file's globals.
NameSet& KnownNames() {
    static NameSet names;
    return names;
}

}  // namespace

bool AddNames(std::initializer_list<const char*> names) {
    KnownNames().insert(names.begin(), names.end());
    return true;
}

std::vector<std::string> Names() {
    return {KnownNames().begin(), KnownNames().end()};
}

bool IsName(std::string_view name) {
    return KnownNames().contains(name);
}

bool IsOn(std::string_view call) {
    if (!g_watching) return false;
    if (g_noting && !g_calls.contains(call)) g_calls.emplace(call);
    return g_on.contains(call);
}

bool IsAnybodyWatching() {
    return g_watching;
}

void Set(std::string_view name, bool on) {
    if (on)
        g_on.emplace(name);
    else if (const auto found = g_on.find(name); found != g_on.end())
        g_on.erase(found);
    g_watching = g_noting || !g_on.empty();
}

void Reset() {
    g_on.clear();
    g_calls.clear();
    g_noting = g_watching = false;
}

std::string CallsSoFar() {
    std::string text;
    for (const std::string& call : g_calls)
        text += (text.empty() ? "" : " ") + call;
    g_calls.clear();
    g_noting = g_watching = true;
    return text;
}

}  // namespace faults
