#include "cow_Block.h"

#include "VEXCRT.h"
#include "utl_BlockPool.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <stdexcept>

namespace
{
constexpr std::size_t GRANULE_BYTES = 16;       // what allocators round to anyway
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

cow_Block* cow_Block::New(std::int32_t capacity, std::size_t itemBytes, std::int32_t step)
{
    const std::int32_t wanted = RoundedUp(capacity, step);
    if (static_cast<std::size_t>(wanted) > (MAX_BYTES - sizeof(cow_Block) - GRANULE_BYTES) / itemBytes) {
        TooLong();
    }
    const std::size_t granules = (BlockBytes(wanted, itemBytes) + GRANULE_BYTES - 1) / GRANULE_BYTES;
    const std::size_t fitting = (granules * GRANULE_BYTES - sizeof(cow_Block)) / itemBytes;
    const std::int32_t items = step > 1 ? wanted : static_cast<std::int32_t>(std::min<std::size_t>(fitting, MAX_ITEMS));
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
