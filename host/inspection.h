// What a report tells of the host beyond what the plug-in itself asks. Nothing here changes it.
#pragma once

#include <windows.h>

#include <optional>

namespace host {

// All that the host answers for its release; the upper half is Release().
unsigned long ReleaseWord();

struct ViewFacts {
    int type = 0;  // the host's number of the kind of view
    bool perspective = false;
    bool user = false;  // axonometric
    bool active = false;
    bool enabled = false;
    bool spot = false;  // seen through a spot light
    bool camera = false;
};
// Empty: the window is no viewport.
std::optional<ViewFacts> InspectView(HWND window);

// Texts are in the code page, cut where they are too long, and empty where the host has none.
struct TableFacts {
    char name[128] = "";
    unsigned long context = 0;
    int items = 0;
};
std::optional<TableFacts> InspectTable(unsigned long table);

struct ActionFacts {
    char name[128] = "";  // as menus show it
    bool checked = false;
    bool enabled = false;
    bool visible = false;
};
std::optional<ActionFacts> InspectAction(unsigned long table, int action);

// Whether the button of a window can be pressed; empty for null and for windows of another class.
std::optional<bool> IsButtonEnabled(HWND button);

int SubObjectLevel();

}  // namespace host
