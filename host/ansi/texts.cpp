// Texts of hosts up to 2012, which are the plug-in's own kind.

#include <cstring>

#include "host/sdk_text.h"

namespace host {

const MCHAR* TextForHost(const char* text) {
    return text;
}

void CopyTextForHost(MCHAR* copy, int size, const char* text) {
    lstrcpynA(copy, text, size);
}

bool IsHostText(const MCHAR* host_text, const char* text) {
    return host_text && std::strcmp(host_text, text) == 0;
}

const char* PathFromHost(const MCHAR* path) {
    return path ? path : "";
}

}  // namespace host
