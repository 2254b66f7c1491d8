#include "windows/about.h"

#include "karvel_version.h"

void ShowAboutBox(HWND owner) {
    MessageBoxA(owner,
                "Karvel Tools for 3ds Max\r\n"
                "Version " KARVEL_VERSION_TEXT "\r\n" KARVEL_COPYRIGHT,
                "Karvel Tools for 3ds Max", MB_OK);
}
