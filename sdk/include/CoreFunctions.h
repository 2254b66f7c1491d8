#pragma once

#include <sdk_layout.h>

#include <windows.h>

// The version word of the running host; the release is its upper half.
SDK_CORE_API DWORD Get3DSMAXVersion();
