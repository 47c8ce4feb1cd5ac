#pragma once

#include "VEXCRT_export.h"

/// Marks what VEXomu lets its users link to.
#if defined(VEXomu_EXPORTS)
#define VEXOMU_API VEXCRT_SYMBOL_EXPORT
#else
#define VEXOMU_API VEXCRT_SYMBOL_IMPORT
#endif
