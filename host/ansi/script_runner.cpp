#include <max.h>

#include <gup.h>

#include "host/host.h"

namespace host {

void ExecuteScript(GUP& utility, char* text) {
    utility.ExecuteStringScript(text);
}

}  // namespace host
