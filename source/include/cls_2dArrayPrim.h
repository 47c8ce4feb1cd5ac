#pragma once

#include "VEXomu_export.h"
#include "cls_ArrayPrim.h"

#include <concepts>
#include <cstdint>

namespace cls_detail
{
extern VEXOMU_API const ArrayTexts ARRAY_2D_TEXTS;
}

/// A cls_ArrayPrim whose elements are named by row and column: (i, j) is the element row length * i + j. Only that sum
/// is checked, never the column by itself, and Append and AppendBlock add single elements, not rows; both are promised.
///
/// The row length is not stored: the owner stores it as a field of its own and sets it after reading. Every constructor
/// sets 1, that which copies too, on purpose; assignment takes the other's.
///
/// Ownership, threads, complexity, errors, references: as for cls_ArrayPrim.
/// Example:    coordinates.SetRowLength(3); coordinates.Get(node, 2) = 0.0;
template <class T> class cls_2dArrayPrim : public cls_ArrayPrim<T>
{
    static_assert(std::same_as<T, double> || std::same_as<T, float>);

public:
    cls_2dArrayPrim() = default;
    cls_2dArrayPrim(const cls_2dArrayPrim& other);
    explicit cls_2dArrayPrim(const cls_ReadVisitor& visitor);
    cls_2dArrayPrim& operator=(const cls_2dArrayPrim& other) = default;
    ~cls_2dArrayPrim() override;

    void DBWrite(const cls_WriteVisitor& visitor) const override;

    /// The id under which the array is stored; DynTypeId, as promised, gives that of the one-dimensional array.
    static std::uint32_t TypeId() noexcept;
    static void* Ctor(cls_ReadVisitor& visitor);

    int RowLength() const noexcept { return m_rowLength; }
    /// Sets the number of columns, 1 at least.
    void SetRowLength(int columns);

    void Append(const T& value);
    void AppendBlock(const T* values, int count);
    const T& ConstGet(int row, int column) const;
    T& Get(int row, int column);

private:
    int IndexOf(int row, int column) const noexcept;

    int m_rowLength = 1;
};

/// The flat index; -1, which is out of every range, where it exceeds an int.
template <class T> inline int cls_2dArrayPrim<T>::IndexOf(int row, int column) const noexcept
{
    const std::int64_t index = static_cast<std::int64_t>(m_rowLength) * row + column;
    return index == static_cast<int>(index) ? static_cast<int>(index) : -1;
}

template <class T> inline const T& cls_2dArrayPrim<T>::ConstGet(int row, int column) const
{
    return this->ConstGetWith(IndexOf(row, column), cls_detail::ARRAY_2D_TEXTS);
}

template <class T> inline T& cls_2dArrayPrim<T>::Get(int row, int column)
{
    return this->GetWith(IndexOf(row, column), cls_detail::ARRAY_2D_TEXTS);
}

template <class T> inline void cls_2dArrayPrim<T>::Append(const T& value)
{
    this->AppendWith(value, cls_detail::ARRAY_2D_TEXTS);
}

VEXOMU_EXTERN_TEMPLATE(cls_2dArrayPrim<double>);
VEXOMU_EXTERN_TEMPLATE(cls_2dArrayPrim<float>);
