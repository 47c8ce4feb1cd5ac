#pragma once

#include "VEXomu_export.h"

/// Starts the regular expressions for one more user; the first call raises `count` by one and makes the pattern cache.
VEXOMU_API void rgx_initialize(int& count);
/// Ends them for one user; the last call lowers `count` by one and releases the patterns.
VEXOMU_API void rgx_finalize(int& count);
