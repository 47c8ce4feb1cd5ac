#pragma once

#include "cow_Sequence.h"
#include "cow_Stream.h"

#include <cstddef>
#include <cstdint>

/// One-dimensional array whose room grows by whole blocks. U is the unit in which block size and expected count are
/// given: T itself, or the number type an item is made of, such as float for a point of three floats.
///
/// Ownership, threads, complexity, errors, references: see cow_Sequence. A copy grows by the same blocks.
/// Example:    cow_1DArrayList<int> ids(/*blockSize=*/16, /*expectedCount=*/40); // room for 48
template <class T, class U = T> class cow_1DArrayList : public cow_Sequence<T>
{
public:
    using cow_Relocatable = cow_1DArrayList;
    using cow_Sequence<T>::cow_Sequence;
    cow_1DArrayList() noexcept = default;
    /// `count` value-initialised items.
    explicit cow_1DArrayList(int count) { this->Resize(count); }
    /// No items, but room for `expectedCount` units; grows by multiples of `blockSize` units.
    cow_1DArrayList(int blockSize, int expectedCount)
        : cow_Sequence<T>(ItemsFor(expectedCount), std::max(ItemsFor(blockSize), 1))
    {}

private:
    /// Items that `units` make, rounded up.
    static int ItemsFor(int units)
    {
        const std::int64_t bytes = std::max(units, 0) * std::int64_t{sizeof(U)};
        return static_cast<int>(std::min<std::int64_t>((bytes + sizeof(T) - 1) / sizeof(T), cow_Block::MAX_ITEMS));
    }
};

template <class T, class U> pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cow_1DArrayList<T, U>& array)
{
    cow_detail::DumpItems(out, "cow_1DArrayList", array);
    return out;
}
