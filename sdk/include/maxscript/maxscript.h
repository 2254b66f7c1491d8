#pragma once

// The umbrella of MAXScript's headers; it stands last among the includes of a source file, because
// the real one defines macros in lower case.
#include <maxscript/foundation/numbers.h>
#include <maxscript/kernel/value.h>
