#pragma once

#include "VEXomu_export.h"
#include "omu_WordArray.h"

class bio_Ifilter;
class bio_Ofilter;
class pnt_PrettyPrint;
template <omu_Word T> class omu_Varray;

/// Initial size, growth factor (64-bit float), capacity, count, then the values in order; all but the growth factor
/// 32-bit. The initial size that is read is passed over, the capacity a hint. Throws nex_TextException for a growth
/// factor not above 1; the varray is then as it was.
VEXOMU_API bio_Ifilter& operator>>(bio_Ifilter& in, omu_Varray<unsigned int>& values);
VEXOMU_API bio_Ofilter& operator<<(bio_Ofilter& out, const omu_Varray<unsigned int>& values);
/// The values, one a line.
VEXOMU_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omu_Varray<unsigned int>& values);

/// Growable array of one-word values.
///
/// Ownership:  owns its values, not what a pointer value points to.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: Add amortised O(1); Insert and Remove O(values behind); FindFirst and FindLast O(values).
/// Errors:     operations give false when a position is outside or memory is short; the array is then as it was. One of
///             size 0, or one that is full and has a growth factor of 1 or less, takes no value. Only the constructors
///             throw, std::bad_alloc.
/// References: what operator[] and ConstGetAll give dies with the next Add, Insert or SetSize.
/// Example:    omu_Varray<unsigned int> ids; ids.Add(7); for (unsigned int i = 0; i < ids.Length(); ++i) { use(ids[i]); }
/// Avoid for:  values that scripts share; a cow_1DArrayList is copied in O(1).
template <omu_Word T> class omu_Varray : public omu_WordArray<T>
{
public:
    /// Size 16, growth factor 2.
    omu_Varray();
    /// Room for `size` values. One of them always stays free.
    omu_Varray(unsigned int size, double growth);
    ~omu_Varray();

    using omu_WordArray<T>::operator[];
    /// The value for writing. At Length() a zero value is appended first; further outside an assertion is reported, and
    /// the result, as when nothing could be appended, is a spare word.
    T& operator[](unsigned int i);

    /// Position of the first or last value equal to `value`; Length() when there is none.
    unsigned int FindFirst(const T& value) const;
    unsigned int FindLast(const T& value) const;
    /// A copy of the values that the caller frees with delete[]; null when memory is short.
    T* GetAll() const;

    /// Makes room for `n` values; false when there is as much already.
    bool SetSize(unsigned int n);
    /// SetSize(capacity * growth factor).
    bool Grow();
    bool Add(T value);
    /// Inserts before the value at `pos`; at Length() appends.
    bool Insert(unsigned int pos, T value);
    bool Set(unsigned int pos, T value);
    /// Removes and gives the last value; the zero value when there is none.
    T Pop();
    /// Removes the value at `pos` and sets `removed` to it unless that is null.
    bool Remove(unsigned int pos, T* removed);
    /// Removes all values and keeps their room.
    void ClearAll();

private:
    friend VEXOMU_API bio_Ifilter& operator>>(bio_Ifilter& in, omu_Varray<unsigned int>& values);
    friend VEXOMU_API bio_Ofilter& operator<<(bio_Ofilter& out, const omu_Varray<unsigned int>& values);
};

extern template class VEXOMU_API omu_Varray<unsigned int>;
extern template class VEXOMU_API omu_Varray<void*>;
