#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionNames.h"
#include "cow_String.h"

#include <cstdint>

class cls_FieldHandle;
class cls_UidCatalogEntry;

/// The stored record of one object, to read from: implemented by the storage engine, used through a cls_ReadVisitor.
///
///     1 - 8    the record itself, its fields, a text          28 - 33  readers of lists of values
///     9 - 13   scalars                                        34 - 50  readers of the other collections; their agents
///     14 - 25  arrays and matrices                            51 - 56  agents of lists of values
///     26 - 27  elements, version
///
/// The positions count from the destructor at 0 and are promised; within a group the order is bool, double, float, int,
/// string, unsigned.
///
/// Ownership:  the caller owns every memento, reader and agent it is given.
/// Threads:    one thread at a time.
/// Errors:     whatever the engine throws; a field that is absent gives the default, and a reader or agent that the record
///             cannot give is null.
class VEXOMU_API cls_MementoRead
{
public:
    virtual ~cls_MementoRead();

    /// The identifier of the record, for messages.
    virtual cow_String DbId() = 0;
    /// The catalogue entry of the object, on the calling thread; never null.
    virtual cls_UidCatalogEntry* GetUidEntry() = 0;
    /// Non-zero when the record's class has the field.
    virtual int FieldIsPresent(const cls_FieldHandle& field) = 0;
    /// Non-zero when the record holds data for the field.
    virtual int DataIsPresent(const cls_FieldHandle& field) = 0;
    /// The class of the object that the field holds, 0 for none: what its reader has to build.
    virtual std::uint32_t ClassId(const cls_FieldHandle& field) = 0;
    /// The record of the object in the field.
    virtual cls_MementoRead* MakeFieldReader(const cls_FieldHandle& field) = 0;
    /// Another memento on the same record.
    virtual cls_MementoRead* Clone() = 0;
    virtual cow_String ReadString(const cls_FieldHandle& field, const cow_String& defaultValue) = 0;

    virtual bool ReadBool(const cls_FieldHandle& field, bool defaultValue) = 0;
    virtual double ReadDouble(const cls_FieldHandle& field, double defaultValue) = 0;
    virtual float ReadFloat(const cls_FieldHandle& field, float defaultValue) = 0;
    virtual int ReadInt(const cls_FieldHandle& field, int defaultValue) = 0;
    virtual std::uint32_t ReadUnsigned(const cls_FieldHandle& field, std::uint32_t defaultValue) = 0;

    virtual cow_1DArray<bool> ReadBoolArray(const cls_FieldHandle& field, const cow_1DArray<bool>& defaultValue) = 0;
    virtual cow_1DArray<double> ReadDoubleArray(const cls_FieldHandle& field,
                                                const cow_1DArray<double>& defaultValue) = 0;
    virtual cow_1DArray<float> ReadFloatArray(const cls_FieldHandle& field, const cow_1DArray<float>& defaultValue) = 0;
    virtual cow_1DArray<int> ReadIntArray(const cls_FieldHandle& field, const cow_1DArray<int>& defaultValue) = 0;
    virtual cow_1DArray<cow_String> ReadStringArray(const cls_FieldHandle& field,
                                                    const cow_1DArray<cow_String>& defaultValue) = 0;
    virtual cow_1DArray<std::uint32_t> ReadUnsignedArray(const cls_FieldHandle& field,
                                                         const cow_1DArray<std::uint32_t>& defaultValue) = 0;

    virtual cow_2DArray<bool> ReadBoolMatrix(const cls_FieldHandle& field, const cow_2DArray<bool>& defaultValue) = 0;
    virtual cow_2DArray<double> ReadDoubleMatrix(const cls_FieldHandle& field,
                                                 const cow_2DArray<double>& defaultValue) = 0;
    virtual cow_2DArray<float> ReadFloatMatrix(const cls_FieldHandle& field,
                                               const cow_2DArray<float>& defaultValue) = 0;
    virtual cow_2DArray<int> ReadIntMatrix(const cls_FieldHandle& field, const cow_2DArray<int>& defaultValue) = 0;
    virtual cow_2DArray<cow_String> ReadStringMatrix(const cls_FieldHandle& field,
                                                     const cow_2DArray<cow_String>& defaultValue) = 0;
    virtual cow_2DArray<std::uint32_t> ReadUnsignedMatrix(const cls_FieldHandle& field,
                                                          const cow_2DArray<std::uint32_t>& defaultValue) = 0;

    /// The record of the element that the selector names.
    virtual cls_MementoRead* MakeElementReader(std::uint32_t element) = 0;
    /// The version of the class with which the record was written.
    virtual int ClassVersion() = 0;

    // Readers of the collection that the record is (element 1), or that its element is (any other selector).
    virtual cls_ReadListPrim<bool>* MakeBoolListReader(std::uint32_t element) = 0;
    virtual cls_ReadListPrim<double>* MakeDoubleListReader(std::uint32_t element) = 0;
    virtual cls_ReadListPrim<float>* MakeFloatListReader(std::uint32_t element) = 0;
    virtual cls_ReadListPrim<int>* MakeIntListReader(std::uint32_t element) = 0;
    virtual cls_ReadListPrim<cow_String>* MakeStringListReader(std::uint32_t element) = 0;
    virtual cls_ReadListPrim<std::uint32_t>* MakeUnsignedListReader(std::uint32_t element) = 0;

    virtual cls_ReadListObj* MakeObjListReader(std::uint32_t element) = 0;
    virtual cls_ReadMapInt2Prim<double>* MakeIntMapDoubleReader(std::uint32_t element) = 0;
    virtual cls_ReadMapInt2Prim<float>* MakeIntMapFloatReader(std::uint32_t element) = 0;
    virtual cls_ReadMapInt2Prim<int>* MakeIntMapIntReader(std::uint32_t element) = 0;
    virtual cls_ReadMapInt2Prim<cow_String>* MakeIntMapStringReader(std::uint32_t element) = 0;
    virtual cls_ReadMapInt2Prim<std::uint32_t>* MakeIntMapUnsignedReader(std::uint32_t element) = 0;
    virtual cls_ReadMapString2Prim<double>* MakeStringMapDoubleReader(std::uint32_t element) = 0;
    virtual cls_ReadMapString2Prim<float>* MakeStringMapFloatReader(std::uint32_t element) = 0;
    virtual cls_ReadMapString2Prim<int>* MakeStringMapIntReader(std::uint32_t element) = 0;
    virtual cls_ReadMapString2Prim<cow_String>* MakeStringMapStringReader(std::uint32_t element) = 0;
    virtual cls_ReadMapString2Prim<std::uint32_t>* MakeStringMapUnsignedReader(std::uint32_t element) = 0;
    virtual cls_ReadMapInt2Obj* MakeIntMapObjReader(std::uint32_t element) = 0;
    virtual cls_ReadMapString2Obj* MakeStringMapObjReader(std::uint32_t element) = 0;
    virtual cls_ReadIntTableInt* MakeIntTableReader(std::uint32_t element) = 0;

    // Agents of the collection that the record is.
    virtual cls_AgentListObj* MakeObjListAgent() = 0;
    virtual cls_AgentMapKey2Obj<int>* MakeIntMapObjAgent() = 0;
    virtual cls_AgentMapKey2Obj<cow_String>* MakeStringMapObjAgent() = 0;
    virtual cls_AgentListPrim<bool>* MakeBoolListAgent() = 0;
    virtual cls_AgentListPrim<double>* MakeDoubleListAgent() = 0;
    virtual cls_AgentListPrim<float>* MakeFloatListAgent() = 0;
    virtual cls_AgentListPrim<int>* MakeIntListAgent() = 0;
    virtual cls_AgentListPrim<cow_String>* MakeStringListAgent() = 0;
    virtual cls_AgentListPrim<std::uint32_t>* MakeUnsignedListAgent() = 0;
};
