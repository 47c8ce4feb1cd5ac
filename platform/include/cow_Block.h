#pragma once

#include "VEXutl_export.h"
#include "thr_RefCount.h"
#include "utl_BlockPool.h"

#include <cstddef>
#include <cstdint>
#include <new>

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
    // Always inline: the sizes are constants where items are, and then little is left of it.
    [[gnu::always_inline]] static cow_Block* New(std::int32_t capacity, std::size_t itemBytes, std::int32_t step)
    {
        const std::int32_t items = step > 1 ? RoundedUp(capacity, step) : capacity;
        // Multiplying is cheaper than dividing here, and cannot overflow while the item is smaller than this.
        constexpr std::size_t CHECKED_BYTES = MAX_BYTES / (std::size_t{MAX_ITEMS} + 1);
        if (itemBytes >= CHECKED_BYTES &&
            static_cast<std::size_t>(items) > (MAX_BYTES - sizeof(cow_Block)) / itemBytes) {
            TooLong();
        }
        return ::new (utl_BlockPool::Allocate(BlockBytes(items, itemBytes))) cow_Block(items, step);
    }
    /// Frees a block whose items are gone.
    static void Free(cow_Block* block, std::size_t itemBytes) noexcept
    {
        const std::size_t bytes = BlockBytes(block->capacity, itemBytes);
        block->~cow_Block();
        utl_BlockPool::Free(block, bytes);
    }

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
    static constexpr std::size_t MAX_BYTES = SIZE_MAX / 2; // objects no larger than a pointer difference can tell

    static std::size_t BlockBytes(std::int32_t capacity, std::size_t itemBytes)
    {
        return sizeof(cow_Block) + static_cast<std::size_t>(capacity) * itemBytes;
    }
    /// `wanted` rounded up to a multiple of `step`, or to the last item that can be counted.
    static std::int32_t RoundedUp(std::int32_t wanted, std::int32_t step);
    [[noreturn]] static void TooLong();
    static void ReportOutside();
    cow_Block(std::int32_t itemsThatFit, std::int32_t growthStep) : capacity(itemsThatFit), step(growthStep) {}
};
static_assert(sizeof(cow_Block) == 16, "items follow the header at the alignment of operator new");
