#pragma once

#include "omu_IndexErrorException.h"

/// Throws for an index as a script gave it; `source` and `line` are where.
[[noreturn]] inline void omu_ThrowIndexError(int index, const char* source, int line)
{
    omu_IndexErrorException("sequence index " + cow_String(index) + " out of range").Throw(source, line);
}
