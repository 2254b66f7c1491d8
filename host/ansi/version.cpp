#include "host/host.h"

namespace host {

unsigned long VersionWord() {
    // Release 13900, interface number 37, revision 0: what hosts of 2012 accept.
    return 0x364C2500;
}

}  // namespace host
