#pragma once

#include "VEXutl_export.h"
#include "thr_RefCount.h"

#include <cstddef>
#include <cstdint>

/// Memory of a shared run of items: this header, then room for `capacity` of them. It knows their size but not their
/// type; who uses it makes, moves and destroys them.
///
/// Errors: std::length_error for more than MAX_ITEMS items or more bytes than memory has addresses for; std::bad_alloc.
struct VEXUTL_API cow_Block
{
    static constexpr std::int32_t MAX_ITEMS = 0x7FFFFFFF;

    thr_RefCount holders{1};
    std::int32_t length = 0;
    std::int32_t capacity;
    std::int32_t step; // room grows by multiples of this many items

    /// A block without items and with room for at least `capacity`.
    static cow_Block* New(std::int32_t capacity, std::size_t itemBytes, std::int32_t step);
    /// Frees a block whose items are gone.
    static void Free(cow_Block* block, std::size_t itemBytes) noexcept;

    /// Room to ask for when `more` items are to follow those of `block` (may be null), so that adding one at a time
    /// stays cheap.
    static std::int32_t GrownCapacity(const cow_Block* block, std::int32_t more, std::size_t itemBytes);

    /// True when 0 <= index < length; else an assertion is reported.
    static bool IsInside(std::int32_t index, std::int32_t length)
    {
        const bool inside = index >= 0 && index < length;
        if (!inside) {
            ReportOutside();
        }
        return inside;
    }

private:
    static void ReportOutside();
    cow_Block(std::int32_t itemsThatFit, std::int32_t growthStep) : capacity(itemsThatFit), step(growthStep) {}
};
static_assert(sizeof(cow_Block) == 16, "items follow the header at the alignment of operator new");
