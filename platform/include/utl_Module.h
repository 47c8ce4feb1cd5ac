#pragma once

#include "VEXutl_export.h"
#include "typ_ArchCompEntry.h"

/// Starts the utility library. The calls are counted: the first one raises the caller's `count` and registers
/// the library's component; later ones only count. Not to be raced with each other or with utl_finalize.
VEXUTL_API void utl_initialize(int& count);

/// Undoes one utl_initialize; the last one lowers the caller's `count`. The component stays registered.
VEXUTL_API void utl_finalize(int& count);

/// The rows of component 31: the three exception bases.
VEXUTL_API typ_ArchCompEntry utl_ArchEntry();
