#include <max.h>

#include <gup.h>

#include "host/core_interface.h"

namespace host {

void ExecuteScript(GUP& utility, char* text) {
    utility.ExecuteStringScript(text);
}

}  // namespace host
