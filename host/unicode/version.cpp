#include <max.h>

#include "host/host.h"

namespace host {

unsigned long VersionWord() {
    return VERSION_3DSMAX;
}

}  // namespace host
