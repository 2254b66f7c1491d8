#include "host/core_interface.h"
#include "host/host.h"

namespace host {

namespace {

GUP* g_utility = nullptr;

}  // namespace

void SetScriptRunner(GUP& utility) {
    g_utility = &utility;
}

void RunScript(char* text) {
    if (g_utility) ExecuteScript(*g_utility, text);
}

}  // namespace host
