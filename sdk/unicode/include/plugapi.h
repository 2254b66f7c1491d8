#pragma once

// Only the version word differs from what the class descriptor of 2012 is declared with.
#include_next <plugapi.h>

#define MAX_RELEASE_R18 18000
#define MAX_API_NUM_R180 42

#undef MAX_RELEASE
#undef MAX_API_NUM
#define MAX_RELEASE MAX_RELEASE_R18
#define MAX_API_NUM MAX_API_NUM_R180
