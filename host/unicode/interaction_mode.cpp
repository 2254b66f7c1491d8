// The Interaction Mode of later hosts, asked through MAXScript: no interface of it is known that
// could be called.

#include "host/interaction_mode.h"

#include "host/host.h"

// Last, because they define macros in lower case.
#include <maxscript/maxscript.h>

#include <maxscript/foundation/functions.h>

namespace host {
namespace {

bool g_answersAlt = false;

// Which of the manager's properties names the mode, or the file that it comes from, is not known,
// so each one is looked at. What cannot be read says nothing, and neither does a host without it.
char kAskForMode[] =
    "try ( for part in (getPropNames mouseConfigManager) do ( "
    "try ( if (findString (toLower ((getProperty mouseConfigManager part) as string)) \"maya\") "
    "!= undefined then kv_hostAnswersAlt() ) catch () ) ) catch ()";
constexpr char kLeftToHost[] =
    "Alt and mouse buttons in viewports are left to 3ds Max's Interaction Mode.\n";

Value* NoteHostAnswersAlt(Value**, int) {
    g_answersAlt = true;
    return &true_value;
}

MCHAR kName[] = _M("kv_hostAnswersAlt");
Primitive g_primitive(kName, NoteHostAnswersAlt, 0);

}  // namespace

void AskInteractionMode() {
    g_answersAlt = false;
    RunScript(kAskForMode);
    if (g_answersAlt) PrintToListener(kLeftToHost);
}

bool AnswersAltInViewports() {
    return g_answersAlt;
}

}  // namespace host
