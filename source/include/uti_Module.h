#pragma once

#include "VEXomu_export.h"
#include "typ_ArchCompEntry.h"

/// Starts the utilities. The calls are counted: the first one raises the caller's `counter` and registers the
/// utilities' component; later ones only count. Not to be raced with each other or with uti_finalize.
VEXOMU_API void uti_initialize(int& counter);

/// Undoes one uti_initialize; the last one lowers the caller's `counter`. The component stays registered.
VEXOMU_API void uti_finalize(int& counter);

/// Does nothing: the utilities have nothing to prepare after start-up.
VEXOMU_API void uti_formalize();

/// The rows of component 2: the exceptions of the utilities, and the coordinates.
VEXOMU_API typ_ArchCompEntry uti_ArchEntry();
