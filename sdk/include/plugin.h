#pragma once

#include <plugapi.h>

// The entry points of a plug-in file, as the host looks them up by name.
typedef const MCHAR* (*LIBDESCRIPTION)();
typedef int (*LIBNUMBERCLASSES)();
typedef ClassDesc* (*LIBCLASSDESC)(int);
typedef ULONG (*LIBVERSION)();
typedef ULONG (*CANAUTODEFER)();
