#pragma once

#include "VEXomu_export.h"
#include "typ_ArchCompEntry.h"

/// Starts the library for one more user: the first call starts the layers below with the same `count`, which each raises
/// by one, and registers the value types. Calls come from one thread, before any other thread uses the library.
VEXOMU_API void omu_initialize(int& count);
/// Ends the library for one user; the last call ends what the first omu_initialize started, in reverse order.
VEXOMU_API void omu_finalize(int& count);
/// The persistable classes of the value model: 40 rows, the first one empty.
VEXOMU_API typ_ArchCompEntry omu_ArchEntry();
