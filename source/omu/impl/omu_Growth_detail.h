#pragma once

#include "bio_Ifilter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

// How tables and varrays grow, and what their streams start with.

/// Makes room for `capacity` items and a spare one; false, and nothing changed, when memory is short.
template <class Item> bool omu_Reallocate(Item*& items, unsigned int capacity) noexcept
{
    const std::uint64_t count = std::uint64_t{capacity} + 1;
    if (count > std::numeric_limits<std::size_t>::max() / sizeof(Item)) {
        return false;
    }
    void* const grown = std::realloc(items, static_cast<std::size_t>(count) * sizeof(Item));
    if (grown != nullptr) {
        items = static_cast<Item*>(grown);
    }
    return grown != nullptr;
}

/// capacity * growth, cut to an integer and to the range; the capacity itself for a growth of 1 or less and for NaN.
inline unsigned int omu_GrownSize(unsigned int capacity, double growth) noexcept
{
    constexpr unsigned int LARGEST = std::numeric_limits<unsigned int>::max();
    const double grown = capacity * growth;
    return !(grown > capacity) ? capacity : grown >= LARGEST ? LARGEST : static_cast<unsigned int>(grown);
}

/// Makes room for `more` items behind those of a container that is being read, at least doubling it.
template <class Container> void omu_MakeRoom(Container& items, std::uint32_t more)
{
    const std::uint64_t size = std::uint64_t{items.Length()} + std::max({more, items.Length(), 1U}) + 1;
    if (size > std::numeric_limits<unsigned int>::max() || !items.SetSize(static_cast<unsigned int>(size))) {
        throw std::bad_alloc();
    }
}

struct omu_StreamedSizes
{
    double growthFactor;
    unsigned int capacity;
    std::uint32_t count;

    /// The streamed capacity as far as the count justifies it, but no less than the container's own size.
    unsigned int AllowedCapacity(unsigned int initialSize) const noexcept
    {
        const std::uint64_t justified = std::min<std::uint64_t>(capacity, std::uint64_t{2} * count);
        return std::max(initialSize, static_cast<unsigned int>(justified));
    }
};

/// Reads initial size, growth factor, capacity and count. Only a finite growth factor above 1 is taken.
inline omu_StreamedSizes omu_ReadSizes(bio_Ifilter& in, std::size_t itemBytes)
{
    omu_StreamedSizes sizes;
    unsigned int initialSize; // a container keeps its own
    in >> initialSize;
    const std::uint64_t offset = in.Offset();
    in >> sizes.growthFactor;
    if (!(sizes.growthFactor > 1) || !std::isfinite(sizes.growthFactor)) {
        in.FailAt("a growth factor that is not above 1", offset);
    }
    in >> sizes.capacity;
    sizes.count = in.ReadCount(itemBytes);
    return sizes;
}
