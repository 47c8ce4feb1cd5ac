#pragma once

#include "VEXthr_export.h"

/// Starts the threading library. The calls are counted: the first one raises the caller's `count` and makes the
/// process-wide lock; later ones only count. Not to be raced with each other or with thr_finalize.
VEXTHR_API void thr_initialize(int& count);

/// Undoes one thr_initialize; the last one lowers the caller's `count` and destroys the calling thread's instances.
/// Those of other threads go when their threads end; the lock stays, since those threads need it.
VEXTHR_API void thr_finalize(int& count);
