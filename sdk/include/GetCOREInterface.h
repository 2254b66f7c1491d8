#pragma once

#include <ifnpub.h>

class Interface;

SDK_CORE_API Interface* GetCOREInterface();
SDK_CORE_API FPInterface* GetCOREInterface(Interface_ID id);
