// The objects of core.dll that more than one of its sources needs.
#pragma once

#include "standin/interfaces/host_dll.h"

#include <max.h>

#include <INamedSelectionSetManager.h>
#include <macrorec.h>
#if SDK_GENERATION < 2026
#include <imenuman.h>
#endif

IActionManager* HostActionManager();
#if SDK_GENERATION < 2026
IMenuManager* HostMenuManager();
#endif

CommandMode* ModeObject(eng_mode* handle);
