#pragma once

#include <sdk_layout.h>

#include <cstddef>

SDK_MAXUTIL_API void* MAX_new(std::size_t size);
SDK_MAXUTIL_API void MAX_delete(void* memory);
