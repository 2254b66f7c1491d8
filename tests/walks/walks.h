// The program of the walks. It is the stand-in's engine and player with more in them.
#pragma once

#include <windows.h>

#include "standin/engine/engine_api.h"
#include "standin/player/mailbox.h"

ENGINE_API int walks_main(int count, char** arguments);
// A walk, or a scenario that walks have found, in a worker.
ENGINE_API worker::Outcome walks_play(int count, char** arguments, HANDLE ready);
