#pragma once

#include "VEXCRT_export.h"

/// Marks what VEXutl lets its users link to.
#if defined(VEXutl_EXPORTS)
#define VEXUTL_API VEXCRT_SYMBOL_EXPORT
#else
#define VEXUTL_API VEXCRT_SYMBOL_IMPORT
#endif
