// The objects of core.dll that more than one of its sources needs.
#pragma once

#include "standin/interfaces/host_dll.h"

#include <max.h>

#include <INamedSelectionSetManager.h>
#include <imenuman.h>
#include <macrorec.h>

IActionManager* HostActionManager();
IMenuManager* HostMenuManager();

CommandMode* ModeObject(eng_mode* handle);
