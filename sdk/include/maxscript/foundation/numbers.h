#pragma once

// Numbers reach the plug-in as values and are read with Value::to_int; no class of their own is
// needed for that.
#include <maxscript/kernel/value.h>
