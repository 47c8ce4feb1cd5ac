#include "cow_Block.h"

#include "VEXCRT.h"
#include "utl_BlockPool.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <stdexcept>

namespace
{
constexpr std::size_t FIRST_BYTES = 64;         // smallest block made for growing
constexpr std::size_t MAX_BYTES = SIZE_MAX / 2; // objects no larger than a pointer difference can tell

[[noreturn]] void TooLong()
{
    throw std::length_error("a container of more items than it can count");
}

std::size_t BlockBytes(std::int32_t capacity, std::size_t itemBytes)
{
    return sizeof(cow_Block) + static_cast<std::size_t>(capacity) * itemBytes;
}

/// `wanted` rounded up to a multiple of `step`, or to the last item that can be counted.
std::int32_t RoundedUp(std::int32_t wanted, std::int32_t step)
{
    const std::int64_t steps = (std::int64_t{wanted} + step - 1) / step;
    return static_cast<std::int32_t>(std::min<std::int64_t>(steps * step, cow_Block::MAX_ITEMS));
}
} // namespace

// Defined for users of the DLL who bind references to it.
constexpr std::int32_t cow_Block::MAX_ITEMS;

cow_Block* cow_Block::New(std::int32_t capacity, std::size_t itemBytes, std::int32_t step)
{
    const std::int32_t items = step > 1 ? RoundedUp(capacity, step) : capacity;
    // Multiplying is cheaper than dividing here, and cannot overflow while the item is smaller than this.
    constexpr std::size_t CHECKED_BYTES = MAX_BYTES / (std::size_t{MAX_ITEMS} + 1);
    if (itemBytes >= CHECKED_BYTES && static_cast<std::size_t>(items) > (MAX_BYTES - sizeof(cow_Block)) / itemBytes) {
        TooLong();
    }
    return ::new (utl_BlockPool::Allocate(BlockBytes(items, itemBytes))) cow_Block(items, step);
}

void cow_Block::Free(cow_Block* block, std::size_t itemBytes) noexcept
{
    const std::size_t bytes = BlockBytes(block->capacity, itemBytes);
    block->~cow_Block();
    utl_BlockPool::Free(block, bytes);
}

std::int32_t cow_Block::GrownCapacity(const cow_Block* block, std::int32_t more, std::size_t itemBytes)
{
    const std::int64_t length = block != nullptr ? block->length : 0;
    const std::int64_t needed = length + more;
    if (needed > MAX_ITEMS) {
        TooLong();
    }
    const auto first = static_cast<std::int64_t>((FIRST_BYTES - sizeof(cow_Block)) / itemBytes);
    return static_cast<std::int32_t>(std::min<std::int64_t>(std::max({needed, 2 * length, first}), MAX_ITEMS));
}

void cow_Block::ReportOutside()
{
    VEXCRT::_assert("index >= 0 && index < length", "platform/utl/impl/cow_Block", __LINE__);
}
