#include "standin/engine/intercept/faults.h"

#include <set>

namespace faults {
namespace {

using Names = std::set<std::string, std::less<>>;

Names g_on;
Names g_calls;
bool g_noting = false;
bool g_watching = false;  // some call fails, or calls are noted

}  // namespace

bool IsOn(std::string_view call) {
    if (!g_watching) return false;
    if (g_noting && !g_calls.contains(call)) g_calls.emplace(call);
    return g_on.contains(call);
}

bool IsSet(std::string_view name) {
    return g_watching && g_on.contains(name);
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
