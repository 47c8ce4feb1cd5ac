#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionNames.h"
#include "cow_1DArray.h"
#include "cow_String.h"

#include <cstdint>

class cls_MementoWrite;
class cls_Uid;

// What writes a stored collection from its first entry to its last: implemented by the storage engine, made by the
// operations of cls_MementoWrite. A new writer replaces what the record held; the collection is complete when the
// writer is deleted.
//
//     list of values     1 Append         2 AppendArray
//     list of objects    1 MakeWriteObj
//     map to values      1 Write
//     map to objects     1 MakeWriteObj
//     table              1 Write
//
// The positions count from the destructor at 0 and are promised. Maps and the table take their keys in any order; the
// last value under a key counts.
//
// Ownership:  the caller owns writers and mementos; a writer does not outlive the memento that made it.
// Threads:    one thread at a time.
// Errors:     whatever the engine throws, but not from a destructor: what fails there is thrown by the engine's commit.

/// Writes a list whose entries are plain values or whole arrays of them; see cls_ReadListPrim.
template <class T> class cls_WriteListPrim
{
public:
    virtual ~cls_WriteListPrim();

    /// Adds one value as an entry.
    virtual void Append(const T& value) = 0;
    /// Adds a whole array as one entry; it may be empty.
    virtual void AppendArray(const cow_1DArray<T>& values) = 0;
};

/// Writes a list of objects.
class VEXOMU_API cls_WriteListObj
{
public:
    virtual ~cls_WriteListObj();

    /// A record for a new element at the end; null when the object is refused.
    virtual cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) = 0;
};

/// Writes a map from ints to plain values.
template <class T> class cls_WriteMapInt2Prim
{
public:
    virtual ~cls_WriteMapInt2Prim();

    virtual void Write(const int& key, const T& value) = 0;
};

/// Writes a map from texts to plain values.
template <class T> class cls_WriteMapString2Prim
{
public:
    virtual ~cls_WriteMapString2Prim();

    virtual void Write(const cow_String& key, const T& value) = 0;
};

/// Writes a map from ints to objects.
class VEXOMU_API cls_WriteMapInt2Obj
{
public:
    virtual ~cls_WriteMapInt2Obj();

    /// A record for the object under the key; null when the object is refused.
    virtual cls_MementoWrite* MakeWriteObj(const int& key, std::uint32_t classId, const cls_Uid& uid) = 0;
};

/// Writes a map from texts to objects.
class VEXOMU_API cls_WriteMapString2Obj
{
public:
    virtual ~cls_WriteMapString2Obj();

    /// A record for the object under the key; null when the object is refused.
    virtual cls_MementoWrite* MakeWriteObj(const cow_String& key, std::uint32_t classId, const cls_Uid& uid) = 0;
};

/// Writes a table from ints to ints.
class VEXOMU_API cls_WriteIntTableInt
{
public:
    virtual ~cls_WriteIntTableInt();

    virtual void Write(int key, int value) = 0;
};

template <class T> cls_WriteListPrim<T>::~cls_WriteListPrim() = default;
template <class T> cls_WriteMapInt2Prim<T>::~cls_WriteMapInt2Prim() = default;
template <class T> cls_WriteMapString2Prim<T>::~cls_WriteMapString2Prim() = default;

extern template class VEXOMU_API cls_WriteListPrim<bool>;
#define CLS_KEYED_KIND(T)                                                                                              \
    extern template class VEXOMU_API cls_WriteListPrim<T>;                                                             \
    extern template class VEXOMU_API cls_WriteMapInt2Prim<T>;                                                          \
    extern template class VEXOMU_API cls_WriteMapString2Prim<T>;
CLS_KEYED_KIND(double)
CLS_KEYED_KIND(float)
CLS_KEYED_KIND(int)
CLS_KEYED_KIND(cow_String)
CLS_KEYED_KIND(std::uint32_t)
#undef CLS_KEYED_KIND
