#include "cow_Block.h"

#include "VEXCRT.h"

#include <algorithm>
#include <stdexcept>

namespace
{
constexpr std::size_t FIRST_BYTES = 64; // smallest block made for growing
} // namespace

// Defined for users of the DLL who bind references to it.
constexpr std::int32_t cow_Block::MAX_ITEMS;

std::int32_t cow_Block::RoundedUp(std::int32_t wanted, std::int32_t step)
{
    const std::int64_t steps = (std::int64_t{wanted} + step - 1) / step;
    return static_cast<std::int32_t>(std::min<std::int64_t>(steps * step, MAX_ITEMS));
}

void cow_Block::TooLong()
{
    throw std::length_error("a container of more items than it can count");
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
