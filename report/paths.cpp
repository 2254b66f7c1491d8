#include "report/paths.h"

#include <windows.h>

#include "host/host.h"
#include "settings/settings_store.h"

namespace report {

bool PathBesideSettings(char (&path)[kPathSize], const char* name, int number,
                        const char* extension) {
    static_assert(kPathSize > kSettingsPathSize + 32);
    char settings[kSettingsPathSize];
    GetSettingsFilePath(settings);
    lstrcpyA(path, settings);
    char* end = path + lstrlenA(path);
    while (end > path && end[-1] != '\\')
        --end;
    if (end == path) {
        lstrcpyA(path, name);
        return false;
    }
    char digits[16] = "";
    if (number > 1) wsprintfA(digits, "%d", number);
    wsprintfA(end, "%s%s%s", name, digits, extension);
    return true;
}

void TellPath(const char* before, const char* path, const char* after) {
    char text[kPathSize + 128];
    lstrcpynA(text, before, 64);
    lstrcatA(text, path);
    lstrcpynA(text + lstrlenA(text), after, 60);
    lstrcatA(text, "\n");
    host::PrintToListener(text);
}

}  // namespace report
