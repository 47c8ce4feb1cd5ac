#pragma once

#include "VEXomu_export.h"
#include "typ_ArchCompEntry.h"

#include <cstdint>

/// The component of the persistence layer in the run-time type tables.
inline constexpr std::uint32_t cls_COMPONENT = 35;

/// Rows of the component; stored data names classes by them, so they are frozen.
enum cls_TypeRowEnm : std::uint32_t
{
    cls_XIP_1D_ARRAY_LIST_ROW = 1,
    cls_PC_ROW = 2,
    cls_ARRAY_PRIM_ROW = 3,
    cls_2D_ARRAY_PRIM_ROW = 4,
    cls_ROW_COUNT = 5
};

constexpr std::uint32_t cls_TypeIdOf(cls_TypeRowEnm row) noexcept
{
    return (cls_COMPONENT << 16) + row;
}

/// Starts the layer. Calls are counted; the first one adds 1 to `count` and registers the component.
/// Threads: one thread only, as for cls_finalize.
VEXOMU_API void cls_initialize(int& count);
/// Stops the layer: the call that matches the first one takes 1 from `count`; the component stays registered.
VEXOMU_API void cls_finalize(int& count);

/// The rows of the component.
VEXOMU_API typ_ArchCompEntry cls_ArchEntry();
