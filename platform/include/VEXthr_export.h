#pragma once

#include "VEXCRT_export.h"

/// Marks what VEXthr lets its users link to.
#if defined(VEXthr_EXPORTS)
#define VEXTHR_API VEXCRT_SYMBOL_EXPORT
#else
#define VEXTHR_API VEXCRT_SYMBOL_IMPORT
#endif
