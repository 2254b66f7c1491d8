#include "host/host.h"
#include "host/sdk_text.h"

// Last, because they define macros in lower case.
#include <maxscript/maxscript.h>

#include <maxscript/util/listener.h>

namespace host {

void PrintToListener(const char* text) {
    // The listener comes to life after the plug-ins may run.
    if (!the_listener || !the_listener->edit_stream) return;
    the_listener->edit_stream->puts(TextForHost(text));
    the_listener->edit_stream->flush();
}

}  // namespace host
