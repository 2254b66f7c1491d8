#include "input/screen.h"

#include <windows.h>

namespace {

ScreenPoint g_screenSize = {};

int Asked(int& known, int metric) {
    if (known == 0) known = GetSystemMetrics(metric);
    return known;
}

}  // namespace

ScreenPoint ScreenSize() {
    return {Asked(g_screenSize.x, SM_CXVIRTUALSCREEN), Asked(g_screenSize.y, SM_CYVIRTUALSCREEN)};
}

void ForgetScreenSize() {
    g_screenSize = {};
}
