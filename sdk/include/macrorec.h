#pragma once

#include <baseinterface.h>

// Writes what the user does as script text. Enable and Disable share a use counter.
class MacroRecorder : public BaseInterfaceServer {
public:
    SDK_SLOTS_6(MacroRecorder, 4, 5, 6, 7, 8, 9)
    SDK_TEN_SLOTS(MacroRecorder, 1)
    SDK_SLOTS_7(MacroRecorder, 20, 21, 22, 23, 24, 25, 26)
    virtual void Enable() = 0;
    virtual void Disable() = 0;
    virtual BOOL Enabled() = 0;
    SDK_TEN_SLOTS(MacroRecorder, 3)
    SDK_SLOTS_4(MacroRecorder, 40, 41, 42, 43)
};

SDK_MAXSCRIPT_API extern MacroRecorder* macroRecorder;
