// The program of the walks. It is the stand-in's engine and player with more in them; its file only
// hands the arguments over.
#pragma once

#include "standin/engine/engine_api.h"

ENGINE_API int walks_main(int count, char** arguments);
