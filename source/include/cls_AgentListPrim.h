#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionNames.h"
#include "cow_String.h"

#include <cstdint>

template <class T> class cls_ArrayPrim;

/// A stored list of plain values, as long as arrays use it: implemented by the storage engine, used by cls_ArrayPrim.
///
///     1  Size        4  WriteRange    7   Detach
///     2  IsChanged   5  ReadRange     8   IsOwnedElsewhere
///     3  EndWrite    6  Attach        9   IsReadOnly
///                                     10  Register
///
/// The positions count from the destructor at 0 and are promised.
///
/// Ownership:  arrays that are copies of each other use one agent. The last one to leave deletes it, unless the agent
///             says that it is owned elsewhere: by the engine, or because other arrays are still attached.
/// Threads:    one thread at a time, that of the arrays.
/// Errors:     whatever the engine throws; what was to be written is then still with the array, and a later call tries
///             again. The operations that a destructor calls throw nothing: see Detach.
template <class T> class cls_AgentListPrim
{
public:
    virtual ~cls_AgentListPrim();

    /// The number of stored values.
    virtual int Size() = 0;
    /// True when someone else changed the stored list since the last look.
    virtual bool IsChanged() = 0;
    /// Ends a series of WriteRange; there may have been none.
    virtual void EndWrite() = 0;
    /// Stores `count` values, 1 at least, from the index `first` on: over stored ones and beyond the end. A range
    /// starts at most at the end of the list, except where an array was lengthened over values that nobody set.
    virtual void WriteRange(int first, int count, const T* values) = 0;
    /// Fills `values` with `count` stored ones, 1 at least, from the index `first` on.
    virtual void ReadRange(int first, int count, T* values) = 0;
    /// An array starts to use the agent; it then registers.
    virtual void Attach() = 0;
    /// The array stops using the agent: flushes the array (calls its Flush) and forgets it. A write that fails is kept
    /// and thrown by the engine's next commit, as is any that fails between this call and the agent's end.
    virtual void Detach(cls_ArrayPrim<T>& array) noexcept = 0;
    /// True when the array that was just detached must not delete the agent.
    virtual bool IsOwnedElsewhere() noexcept = 0;
    /// True when writes are not accepted.
    virtual bool IsReadOnly() = 0;
    /// Tells which array the agent serves from now on, besides those before it: the engine flushes them before it
    /// commits. The array is a cls_PC that the engine may link into its ring; it leaves the ring by itself.
    virtual void Register(cls_ArrayPrim<T>& array) noexcept = 0;
};

template <class T> cls_AgentListPrim<T>::~cls_AgentListPrim() = default;

extern template class VEXOMU_API cls_AgentListPrim<bool>;
extern template class VEXOMU_API cls_AgentListPrim<double>;
extern template class VEXOMU_API cls_AgentListPrim<float>;
extern template class VEXOMU_API cls_AgentListPrim<int>;
extern template class VEXOMU_API cls_AgentListPrim<cow_String>;
extern template class VEXOMU_API cls_AgentListPrim<std::uint32_t>;
