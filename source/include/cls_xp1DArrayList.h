#pragma once

#include "cls_Uid.h"
#include "cow_1DArray.h"
#include "cow_List.h"

#include <concepts>

/// A list of one-dimensional arrays that has an identity in the store.
///
/// Ownership:  a copy shares the arrays, until one side writes, and the identity.
/// Threads:    one thread at a time; the identity binds it to a thread, see cls_Uid.
/// Avoid for:  large data that is to be paged in: every array is in memory.
template <class T>
    requires std::same_as<T, int> || std::same_as<T, float> || std::same_as<T, double>
class cls_xp1DArrayList
{
public:
    cls_xp1DArrayList() = default;
    explicit cls_xp1DArrayList(const cow_List<cow_1DArray<T>>& arrays) : m_arrays(arrays) {}

    const cow_List<cow_1DArray<T>>& Arrays() const noexcept { return m_arrays; }
    void SetArrays(const cow_List<cow_1DArray<T>>& arrays) { m_arrays = arrays; }
    void Append(const cow_1DArray<T>& array) { m_arrays.Append(array); }

    const cls_Uid& Uid() const noexcept { return m_uid; }

private:
    cow_List<cow_1DArray<T>> m_arrays;
    cls_Uid m_uid = cls_Uid::AllocateUid();
};
