// The program's commands. They live in the engine, so that any process can play; standin.exe only
// hands its arguments over.
#pragma once

#include "standin/engine/engine_api.h"

ENGINE_API int standin_main(int count, char** arguments);
