// Holds a Wine session open while others come and go. Without it the system processes of the
// session end with each program and are started again for the next, which costs a second a time,
// and they would inherit the standard output of the first program and keep its reader waiting.

#include <stdlib.h>
#include <windows.h>

int main(int argumentCount, char** arguments) {
    const DWORD seconds = argumentCount > 1 ? (DWORD)atoi(arguments[1]) : 600;
    // A window makes the desktop come up, which the next program would otherwise wait for.
    CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 1, 1, NULL, NULL, NULL, NULL);
    Sleep(seconds * 1000);
    return 0;
}
