#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionNames.h"
#include "cow_1DArray.h"
#include "cow_String.h"

#include <cstdint>

class cls_MementoRead;

// What reads a stored collection from its first entry to its last: implemented by the storage engine, made by the
// operations of cls_MementoRead. Each stands before the first entry; Next steps to it, then to the one after, and is
// false once there is none left, while the other operations tell of the entry that Next came to:
//
//     for (reader->Seek(0); reader->Next();) { values.Append(reader->Value()); }
//
//     list of values     1 Size   2 Next   3 Value     4 Array        5 Seek
//     list of objects    1 Size   2 Next   3 ClassId   4 MakeReader   5 Seek
//     map to values      1 Size   2 Next   3 Key       4 Value
//     map to objects     1 Next   2 Key    3 ClassId   4 MakeReader
//     table              1 Size   2 Next   3 Key       4 Value
//
// The positions count from the destructor at 0 and are promised. Maps and the table are read in rising order of their
// keys, texts by unsigned bytes.
//
// Ownership:  the caller owns readers and mementos; a reader does not outlive the memento that made it.
// Threads:    one thread at a time.
// Errors:     whatever the engine throws, also for a question where there is no entry, and for a value of a wrong kind.

/// Reads a list whose entries are plain values or whole arrays of them; see cls_WriteListPrim.
template <class T> class cls_ReadListPrim
{
public:
    virtual ~cls_ReadListPrim();

    /// The number of entries.
    virtual int Size() = 0;
    virtual bool Next() = 0;
    /// The entry, which is a single value or an array of just one.
    virtual T Value() = 0;
    /// The entry as an array; a single value is an array of one.
    virtual cow_1DArray<T> Array() = 0;
    /// Makes the entry at the index, which may be the end, the one to which Next steps.
    virtual void Seek(int index) = 0;
};

/// Reads a list of objects.
class VEXOMU_API cls_ReadListObj
{
public:
    virtual ~cls_ReadListObj();

    /// The number of elements.
    virtual int Size() = 0;
    virtual bool Next() = 0;
    /// The class of the object, 0 for none: what its reader has to build.
    virtual std::uint32_t ClassId() = 0;
    /// The record of the object; null for none.
    virtual cls_MementoRead* MakeReader() = 0;
    /// Makes the element at the index, which may be the end, the one to which Next steps.
    virtual void Seek(int index) = 0;
};

/// Reads a map from ints to plain values.
template <class T> class cls_ReadMapInt2Prim
{
public:
    virtual ~cls_ReadMapInt2Prim();

    /// The number of entries.
    virtual int Size() = 0;
    virtual bool Next() = 0;
    virtual int Key() = 0;
    virtual T Value() = 0;
};

/// Reads a map from texts to plain values.
template <class T> class cls_ReadMapString2Prim
{
public:
    virtual ~cls_ReadMapString2Prim();

    /// The number of entries.
    virtual int Size() = 0;
    virtual bool Next() = 0;
    virtual cow_String Key() = 0;
    virtual T Value() = 0;
};

/// Reads a map from ints to objects.
class VEXOMU_API cls_ReadMapInt2Obj
{
public:
    virtual ~cls_ReadMapInt2Obj();

    virtual bool Next() = 0;
    virtual int Key() = 0;
    /// The class of the object, 0 for none: what its reader has to build.
    virtual std::uint32_t ClassId() = 0;
    /// The record of the object; null for none.
    virtual cls_MementoRead* MakeReader() = 0;
};

/// Reads a map from texts to objects.
class VEXOMU_API cls_ReadMapString2Obj
{
public:
    virtual ~cls_ReadMapString2Obj();

    virtual bool Next() = 0;
    virtual cow_String Key() = 0;
    /// The class of the object, 0 for none: what its reader has to build.
    virtual std::uint32_t ClassId() = 0;
    /// The record of the object; null for none.
    virtual cls_MementoRead* MakeReader() = 0;
};

/// Reads a table from ints to ints.
class VEXOMU_API cls_ReadIntTableInt
{
public:
    virtual ~cls_ReadIntTableInt();

    /// The number of entries.
    virtual int Size() = 0;
    virtual bool Next() = 0;
    virtual int Key() = 0;
    virtual int Value() = 0;
};

template <class T> cls_ReadListPrim<T>::~cls_ReadListPrim() = default;
template <class T> cls_ReadMapInt2Prim<T>::~cls_ReadMapInt2Prim() = default;
template <class T> cls_ReadMapString2Prim<T>::~cls_ReadMapString2Prim() = default;

extern template class VEXOMU_API cls_ReadListPrim<bool>;
#define CLS_KEYED_KIND(T)                                                                                              \
    extern template class VEXOMU_API cls_ReadListPrim<T>;                                                              \
    extern template class VEXOMU_API cls_ReadMapInt2Prim<T>;                                                           \
    extern template class VEXOMU_API cls_ReadMapString2Prim<T>;
CLS_KEYED_KIND(double)
CLS_KEYED_KIND(float)
CLS_KEYED_KIND(int)
CLS_KEYED_KIND(cow_String)
CLS_KEYED_KIND(std::uint32_t)
#undef CLS_KEYED_KIND
