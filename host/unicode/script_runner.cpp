#include <max.h>

#include <gup.h>

#include <cstdlib>

#include "host/core_interface.h"

namespace host {
namespace {

// Scripts that run while the user works are short and are converted without an allocation; the
// long definition that runs once at start is not.
constexpr int kShortScript = 512;

}  // namespace

void ExecuteScript(GUP& utility, char* text) {
    // A script may cause another one to run before it ends, so each run has a buffer of its own.
    wchar_t short_script[kShortScript];
    const int size = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    wchar_t* script = short_script;
    if (size > kShortScript) {
        script = static_cast<wchar_t*>(std::malloc(static_cast<size_t>(size) * sizeof(wchar_t)));
    }
    if (!script) return;
    if (MultiByteToWideChar(CP_ACP, 0, text, -1, script, size) != 0) {
#if MAX_RELEASE >= 24000
        // As embedded in a scene, or from a source that is not told, the host's script security may
        // refuse what it does.
        utility.ExecuteStringScript(script, MAXScript::ScriptSource::NonEmbedded);
#else
        utility.ExecuteStringScript(script);
#endif
    }
    if (script != short_script) std::free(script);
}

}  // namespace host
