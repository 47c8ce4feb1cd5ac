#pragma once

#include "cow_Sequence.h"
#include "cow_Stream.h"

/// List of items that copies share until one side writes.
///
/// Ownership, threads, complexity, errors, references: see cow_Sequence.
/// Example:    cow_List<cow_String> names{"wing", "spar"}; names.Append("rib");
/// Avoid for:  queues; Prepend and RemoveAt(0) move all items.
template <class T> class cow_List : public cow_Sequence<T>
{
public:
    using cow_Relocatable = cow_List;
    using cow_Sequence<T>::cow_Sequence;

    void Prepend(T value) { this->Insert(0, std::move(value)); }
};

template <class T> pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cow_List<T>& list)
{
    cow_detail::DumpItems(out, "cow_List", list);
    return out;
}
