#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionNames.h"
#include "cow_1DArray.h"
#include "cow_String.h"

#include <cstdint>

class cls_MementoRead;
class cls_MementoWrite;
class cls_PC;
class cls_Uid;

/// A stored list of objects, as long as a live collection uses it: implemented by the storage engine.
///
///     1  Size        5  MakeReader      9   IsOwnedElsewhere   13  Register
///     2  IsChanged   6  Attach          10  IsReadOnly
///     3  EndWrite    7  MakeWriteObj    11  RemoveAt
///     4  ClassId     8  Detach          12  Clear
///
/// The positions count from the destructor at 0 and are promised. Those that a list of plain values has too mean the
/// same there: see cls_AgentListPrim.
///
/// Ownership:  as for cls_AgentListPrim; mementos belong to the caller.
/// Threads:    one thread at a time, that of the collection.
/// Errors:     whatever the engine throws, for an index out of range too.
class VEXOMU_API cls_AgentListObj
{
public:
    virtual ~cls_AgentListObj();

    virtual int Size() = 0;
    virtual bool IsChanged() = 0;
    virtual void EndWrite() = 0;
    /// The class of the object at the index, 0 for none.
    virtual std::uint32_t ClassId(int index) = 0;
    /// The record of the object at the index; null for none.
    virtual cls_MementoRead* MakeReader(int index) = 0;
    virtual void Attach() = 0;
    /// A record for the object at the index, in place of the one there; at the end of the list, a new element. Null
    /// when the object is refused.
    virtual cls_MementoWrite* MakeWriteObj(int index, std::uint32_t classId, const cls_Uid& uid) = 0;
    virtual void Detach(cls_PC& collection) noexcept = 0;
    virtual bool IsOwnedElsewhere() noexcept = 0;
    virtual bool IsReadOnly() = 0;
    /// Removes the element; those after it move up.
    virtual void RemoveAt(int index) = 0;
    virtual void Clear() = 0;
    virtual void Register(cls_PC& collection) noexcept = 0;
};

/// A stored map from keys to objects, as long as a live collection uses it: implemented by the storage engine.
///
///     1  Size        5  ClassId         9   Detach             13  Clear
///     2  IsChanged   6  MakeReader      10  IsOwnedElsewhere   14  Register
///     3  EndWrite    7  Attach          11  IsReadOnly
///     4  Keys        8  MakeWriteObj    12  Remove
///
/// The positions count from the destructor at 0 and are promised. What they mean is as for cls_AgentListObj, with a key
/// for the index; a key that is absent has class 0 and no reader.
template <class K> class cls_AgentMapKey2Obj
{
public:
    virtual ~cls_AgentMapKey2Obj();

    virtual int Size() = 0;
    virtual bool IsChanged() = 0;
    virtual void EndWrite() = 0;
    /// All keys, rising; texts in the order of unsigned bytes.
    virtual cow_1DArray<K> Keys() = 0;
    virtual std::uint32_t ClassId(const K& key) = 0;
    virtual cls_MementoRead* MakeReader(const K& key) = 0;
    virtual void Attach() = 0;
    /// A record for the object under the key, in place of the one that may be there. Null when the object is refused.
    virtual cls_MementoWrite* MakeWriteObj(const K& key, std::uint32_t classId, const cls_Uid& uid) = 0;
    virtual void Detach(cls_PC& collection) noexcept = 0;
    virtual bool IsOwnedElsewhere() noexcept = 0;
    virtual bool IsReadOnly() = 0;
    /// Removes the entry of the key; false when there is none.
    virtual bool Remove(const K& key) = 0;
    virtual void Clear() = 0;
    virtual void Register(cls_PC& collection) noexcept = 0;
};

template <class K> cls_AgentMapKey2Obj<K>::~cls_AgentMapKey2Obj() = default;

extern template class VEXOMU_API cls_AgentMapKey2Obj<int>;
extern template class VEXOMU_API cls_AgentMapKey2Obj<cow_String>;
