#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionNames.h"
#include "cls_CollectionType.h"
#include "cls_PayloadHolder.h"
#include "cow_String.h"

#include <cstdint>

class cls_FieldHandle;
class cls_Uid;

/// The stored record of one object, to write to: implemented by the storage engine, used through a cls_WriteVisitor.
///
///     1 - 4    the record's fields and elements, a text       22 - 27  writers of lists of values
///     5 - 9    scalars                                        28 - 44  writers of the other collections; their agents
///     10 - 21  arrays and matrices                            45 - 50  agents of lists of values
///                                                             51       the check of a collection's type
///
/// The positions count from the destructor at 0 and are promised; within a group the order is bool, double, float, int,
/// string, unsigned.
///
/// Ownership:  the caller owns every memento, writer and agent it is given.
/// Threads:    one thread at a time.
/// Errors:     whatever the engine throws; null where it refuses an object or a collection.
class VEXOMU_API cls_MementoWrite
{
public:
    virtual ~cls_MementoWrite();

    /// Non-zero when the record's class has the field.
    virtual int FieldIsPresent(const cls_FieldHandle& field) = 0;
    /// A record for the object in the field.
    virtual cls_MementoWrite* MakeFieldWriter(const cls_FieldHandle& field, std::uint32_t classId, const cls_Uid& uid,
                                              const cls_PayloadHolder* payload) = 0;
    /// A record for the element that the selector names.
    virtual cls_MementoWrite* MakeElementWriter(std::uint32_t element, const cls_Uid& uid) = 0;
    virtual void WriteString(const cls_FieldHandle& field, cow_String value) = 0;

    virtual void WriteBool(const cls_FieldHandle& field, bool value) = 0;
    virtual void WriteDouble(const cls_FieldHandle& field, double value) = 0;
    virtual void WriteFloat(const cls_FieldHandle& field, float value) = 0;
    virtual void WriteInt(const cls_FieldHandle& field, int value) = 0;
    virtual void WriteUnsigned(const cls_FieldHandle& field, std::uint32_t value) = 0;

    virtual void WriteBoolArray(const cls_FieldHandle& field, const cow_1DArray<bool>& value) = 0;
    virtual void WriteDoubleArray(const cls_FieldHandle& field, const cow_1DArray<double>& value) = 0;
    virtual void WriteFloatArray(const cls_FieldHandle& field, const cow_1DArray<float>& value) = 0;
    virtual void WriteIntArray(const cls_FieldHandle& field, const cow_1DArray<int>& value) = 0;
    virtual void WriteStringArray(const cls_FieldHandle& field, const cow_1DArray<cow_String>& value) = 0;
    virtual void WriteUnsignedArray(const cls_FieldHandle& field, const cow_1DArray<std::uint32_t>& value) = 0;

    virtual void WriteBoolMatrix(const cls_FieldHandle& field, const cow_2DArray<bool>& value) = 0;
    virtual void WriteDoubleMatrix(const cls_FieldHandle& field, const cow_2DArray<double>& value) = 0;
    virtual void WriteFloatMatrix(const cls_FieldHandle& field, const cow_2DArray<float>& value) = 0;
    virtual void WriteIntMatrix(const cls_FieldHandle& field, const cow_2DArray<int>& value) = 0;
    virtual void WriteStringMatrix(const cls_FieldHandle& field, const cow_2DArray<cow_String>& value) = 0;
    virtual void WriteUnsignedMatrix(const cls_FieldHandle& field, const cow_2DArray<std::uint32_t>& value) = 0;

    // Writers of the collection that the record is (element 1), or that its element is (any other selector).
    virtual cls_WriteListPrim<bool>* MakeBoolListWriter(std::uint32_t element) = 0;
    virtual cls_WriteListPrim<double>* MakeDoubleListWriter(std::uint32_t element) = 0;
    virtual cls_WriteListPrim<float>* MakeFloatListWriter(std::uint32_t element) = 0;
    virtual cls_WriteListPrim<int>* MakeIntListWriter(std::uint32_t element) = 0;
    virtual cls_WriteListPrim<cow_String>* MakeStringListWriter(std::uint32_t element) = 0;
    virtual cls_WriteListPrim<std::uint32_t>* MakeUnsignedListWriter(std::uint32_t element) = 0;

    virtual cls_WriteListObj* MakeObjListWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapInt2Prim<double>* MakeIntMapDoubleWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapInt2Prim<float>* MakeIntMapFloatWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapInt2Prim<int>* MakeIntMapIntWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapInt2Prim<cow_String>* MakeIntMapStringWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapInt2Prim<std::uint32_t>* MakeIntMapUnsignedWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapString2Prim<double>* MakeStringMapDoubleWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapString2Prim<float>* MakeStringMapFloatWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapString2Prim<int>* MakeStringMapIntWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapString2Prim<cow_String>* MakeStringMapStringWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapString2Prim<std::uint32_t>* MakeStringMapUnsignedWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapInt2Obj* MakeIntMapObjWriter(std::uint32_t element) = 0;
    virtual cls_WriteMapString2Obj* MakeStringMapObjWriter(std::uint32_t element) = 0;
    virtual cls_WriteIntTableInt* MakeIntTableWriter(std::uint32_t element) = 0;

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

    /// Throws unless the field was registered as such a collection.
    virtual void CheckCollectionType(cls_CollectionType type, const cls_FieldHandle& field) = 0;
};
