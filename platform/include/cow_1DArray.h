#pragma once

#include "cow_Sequence.h"
#include "cow_Stream.h"

/// One-dimensional array that copies share until one side writes.
///
/// Ownership, threads, complexity, errors, references: see cow_Sequence.
/// Example:    cow_1DArray<double> loads(3); loads.Set(0, 1.5); double* all = loads.Write();
/// Avoid for:  many writes through Set in an inner loop; Write() checks for sharing once.
template <class T> class cow_1DArray : public cow_Sequence<T>
{
public:
    using cow_Relocatable = cow_1DArray;
    using cow_Sequence<T>::cow_Sequence;
    cow_1DArray() noexcept = default;
    /// `count` value-initialised items.
    explicit cow_1DArray(int count) { this->Resize(count); }
};

template <class T> pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cow_1DArray<T>& array)
{
    cow_detail::DumpItems(out, "cow_1DArray", array);
    return out;
}
