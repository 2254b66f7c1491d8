#pragma once

#include <sdk_layout.h>
#include <strbasic.h>

// The undo recorder. Every Begin ends with exactly one Accept or Cancel; Begin nests.
class Hold {
public:
    SDK_CORE_API void Begin();
    SDK_CORE_API void Accept(SDK_CONST_FROM_2013 MCHAR* name);
    SDK_CORE_API void Cancel();

private:
    // Owned and used by the host alone.
    void* hostData[6];
};

SDK_CORE_API extern Hold theHold;
