// The objects of core.dll that more than one of its sources needs.
#pragma once

#include "standin/interfaces/host_dll.h"

#include <max.h>

#include <INamedSelectionSetManager.h>
#include <macrorec.h>

// Who has the menus: an interface of its own from 2025 on.
#if SDK_GENERATION >= 2026
#include <CUI/ICuiMenuManager.h>
using MenuManager = MaxSDK::CUI::ICuiMenuManager;
#else
#include <imenuman.h>
using MenuManager = IMenuManager;
#endif

IActionManager* HostActionManager();
MenuManager* HostMenuManager();  // null while a scenario makes the call fail

CommandMode* ModeObject(eng_mode* handle);
