#pragma once

#include "VEXCRT_export.h"

/// Marks what the storage engine over SQLite lets its users link to.
#if defined(vexomu_sqlite_EXPORTS)
#define VEXSQLITE_API VEXCRT_SYMBOL_EXPORT
#else
#define VEXSQLITE_API VEXCRT_SYMBOL_IMPORT
#endif
