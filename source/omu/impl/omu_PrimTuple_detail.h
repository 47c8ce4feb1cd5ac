#pragma once

#include "omu_PrimTuple.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

/// `size` as the size of a sequence, 0 when negative; throws std::bad_alloc for one that no sequence can have.
inline int omu_SequenceSize(std::int64_t size)
{
    if (size > std::numeric_limits<int>::max()) {
        throw std::bad_array_new_length();
    }
    return static_cast<int>(std::max<std::int64_t>(size, 0));
}

// The bounds are clamped as promised: `low` only once, so that it may stay negative; those items are then missing.
template <class Sequence> Sequence* omu_PrimTuple::SliceAs(int low, int high) const
{
    const std::int64_t end = high > m_size ? m_size : high < 0 ? std::int64_t{high} + m_size : high;
    const std::int64_t begin = low < 0 ? std::int64_t{low} + m_size : low;
    auto slice = std::make_unique<Sequence>(omu_SequenceSize(end - begin));
    for (std::int64_t i = begin; i < end; ++i) {
        slice->PutCopy(i >= 0 ? m_items[static_cast<int>(i)].ConstGet() : nullptr);
    }
    return slice.release();
}

template <class Sequence> Sequence* omu_PrimTuple::RepeatAs(int count) const
{
    auto repeated = std::make_unique<Sequence>(omu_SequenceSize(std::int64_t{m_size} * count));
    for (int left = repeated->Length(); left > 0; left -= m_size) {
        for (const omu_PrimHolder& item : *this) {
            repeated->PutCopy(item.ConstGet());
        }
    }
    return repeated.release();
}

template <class Sequence> Sequence* omu_PrimTuple::ConcatAs(const omu_PrimSequence* other) const
{
    const int otherLength = other != nullptr ? other->Length() : 0;
    auto both = std::make_unique<Sequence>(omu_SequenceSize(std::int64_t{m_size} + otherLength));
    for (const omu_PrimHolder& item : *this) {
        both->PutCopy(item.ConstGet());
    }
    for (int i = 0; i < otherLength; ++i) {
        both->PutCopy(other->Index(i));
    }
    return both.release();
}
