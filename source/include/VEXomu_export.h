#pragma once

#include "VEXCRT_export.h"

/// Marks what VEXomu lets its users link to.
#if defined(VEXomu_EXPORTS)
#define VEXOMU_API VEXCRT_SYMBOL_EXPORT
#else
#define VEXOMU_API VEXCRT_SYMBOL_IMPORT
#endif

/// Declares an instance of a class template that is made once, in the library. A DLL exports no inline members of such an
/// instance, so its users make those, and link to what they see no body of. For templates without data of their own.
#if defined(_WIN32) && !defined(VEXomu_EXPORTS)
#define VEXOMU_EXTERN_TEMPLATE(...) static_assert(true)
#else
#define VEXOMU_EXTERN_TEMPLATE(...) extern template class VEXOMU_API __VA_ARGS__
#endif
