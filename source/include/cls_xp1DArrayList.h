#pragma once

#include "VEXomu_export.h"
#include "cls_Uid.h"
#include "cow_1DArray.h"
#include "cow_List.h"

#include <concepts>

class cls_ReadVisitor;
class cls_WriteVisitor;

namespace cls_detail
{
template <class T>
concept ArrayListItem = std::same_as<T, int> || std::same_as<T, float> || std::same_as<T, double>;
}

/// A list of one-dimensional arrays that has an identity in the store.
///
/// Ownership:  a copy shares the arrays, until one side writes, and the identity.
/// Threads:    one thread at a time; the identity binds it to a thread, see cls_Uid.
/// Errors:     reading and writing: nex_TextException when the record holds or takes no such list, and what the storage
///             engine throws.
/// Avoid for:  large data that is to be paged in: every array is in memory.
template <cls_detail::ArrayListItem T> class cls_xp1DArrayList
{
public:
    cls_xp1DArrayList() = default;
    explicit cls_xp1DArrayList(const cow_List<cow_1DArray<T>>& arrays) : m_arrays(arrays) {}
    /// The list that the record holds; an empty one when the visitor has no record.
    explicit cls_xp1DArrayList(const cls_ReadVisitor& visitor);

    /// Stores every array in the visitor's record, under the one class that all these lists have there.
    void DBWrite(const cls_WriteVisitor& visitor) const;

    const cow_List<cow_1DArray<T>>& Arrays() const noexcept { return m_arrays; }
    void SetArrays(const cow_List<cow_1DArray<T>>& arrays) { m_arrays = arrays; }
    void Append(const cow_1DArray<T>& array) { m_arrays.Append(array); }

    const cls_Uid& Uid() const noexcept { return m_uid; }

private:
    cow_List<cow_1DArray<T>> m_arrays;
    cls_Uid m_uid = cls_Uid::AllocateUid();
};

VEXOMU_EXTERN_TEMPLATE(cls_xp1DArrayList<double>);
VEXOMU_EXTERN_TEMPLATE(cls_xp1DArrayList<float>);
VEXOMU_EXTERN_TEMPLATE(cls_xp1DArrayList<int>);
