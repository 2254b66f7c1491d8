// The benchmark program. It lives in its engine DLL, as the player does in the stand-in's.
#pragma once

#include "standin/engine/engine_api.h"

ENGINE_API int bench_main(int count, char** arguments);
