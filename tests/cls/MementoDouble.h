#pragma once

#include "cls_FieldHandle.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_Uid.h"
#include "cow_1DArray.h"
#include "cow_2DArray.h"

// Mementos of an empty record, for tests to derive from: every field is absent, every object and collection refused.

#define VALUE_KINDS(X) X(Bool, bool) X(Double, double) X(Float, float) X(Int, int) X(Unsigned, std::uint32_t)
#define KEYED_KINDS(X) X(Double, double) X(Float, float) X(Int, int) X(String, cow_String) X(Unsigned, std::uint32_t)
#define ALL_KINDS(X) X(Bool, bool) KEYED_KINDS(X)

class MementoReadDouble : public cls_MementoRead
{
public:
    cow_String DbId() override { return {}; }
    cls_UidCatalogEntry* GetUidEntry() override { return m_uid.Entry(); }
    int FieldIsPresent(const cls_FieldHandle&) override { return 0; }
    int DataIsPresent(const cls_FieldHandle&) override { return 0; }
    std::uint32_t ClassId(const cls_FieldHandle&) override { return 0; }
    cls_MementoRead* MakeFieldReader(const cls_FieldHandle&) override { return nullptr; }
    cls_MementoRead* Clone() override { return nullptr; }
    cow_String ReadString(const cls_FieldHandle&, const cow_String& text) override { return text; }
    cls_MementoRead* MakeElementReader(std::uint32_t) override { return nullptr; }
    int ClassVersion() override { return 1; }

#define SCALAR(N, T)                                                                                                   \
    T Read##N(const cls_FieldHandle&, T value) override { return value; }
#define ARRAYS(N, T)                                                                                                   \
    cow_1DArray<T> Read##N##Array(const cls_FieldHandle&, const cow_1DArray<T>& value) override { return value; }      \
    cow_2DArray<T> Read##N##Matrix(const cls_FieldHandle&, const cow_2DArray<T>& value) override { return value; }     \
    cls_ReadListPrim<T>* Make##N##ListReader(std::uint32_t) override { return nullptr; }                               \
    cls_AgentListPrim<T>* Make##N##ListAgent() override { return nullptr; }
#define MAPS(N, T)                                                                                                     \
    cls_ReadMapInt2Prim<T>* MakeIntMap##N##Reader(std::uint32_t) override { return nullptr; }                          \
    cls_ReadMapString2Prim<T>* MakeStringMap##N##Reader(std::uint32_t) override { return nullptr; }
    VALUE_KINDS(SCALAR)
    ALL_KINDS(ARRAYS)
    KEYED_KINDS(MAPS)
#undef SCALAR
#undef ARRAYS
#undef MAPS
    cls_ReadListObj* MakeObjListReader(std::uint32_t) override { return nullptr; }
    cls_ReadMapInt2Obj* MakeIntMapObjReader(std::uint32_t) override { return nullptr; }
    cls_ReadMapString2Obj* MakeStringMapObjReader(std::uint32_t) override { return nullptr; }
    cls_ReadIntTableInt* MakeIntTableReader(std::uint32_t) override { return nullptr; }
    cls_AgentListObj* MakeObjListAgent() override { return nullptr; }
    cls_AgentMapKey2Obj<int>* MakeIntMapObjAgent() override { return nullptr; }
    cls_AgentMapKey2Obj<cow_String>* MakeStringMapObjAgent() override { return nullptr; }

protected:
    cls_Uid m_uid = cls_Uid::AllocateUid();
};

class MementoWriteDouble : public cls_MementoWrite
{
public:
    int FieldIsPresent(const cls_FieldHandle&) override { return 0; }
    cls_MementoWrite* MakeFieldWriter(const cls_FieldHandle&, std::uint32_t, const cls_Uid&,
                                      const cls_PayloadHolder*) override
    {
        return nullptr;
    }
    cls_MementoWrite* MakeElementWriter(std::uint32_t, const cls_Uid&) override { return nullptr; }
    void WriteString(const cls_FieldHandle&, cow_String) override {}
    void CheckCollectionType(cls_CollectionType, const cls_FieldHandle&) override {}

#define SCALAR(N, T)                                                                                                   \
    void Write##N(const cls_FieldHandle&, T) override {}
#define ARRAYS(N, T)                                                                                                   \
    void Write##N##Array(const cls_FieldHandle&, const cow_1DArray<T>&) override {}                                    \
    void Write##N##Matrix(const cls_FieldHandle&, const cow_2DArray<T>&) override {}                                   \
    cls_WriteListPrim<T>* Make##N##ListWriter(std::uint32_t) override { return nullptr; }                              \
    cls_AgentListPrim<T>* Make##N##ListAgent() override { return nullptr; }
#define MAPS(N, T)                                                                                                     \
    cls_WriteMapInt2Prim<T>* MakeIntMap##N##Writer(std::uint32_t) override { return nullptr; }                         \
    cls_WriteMapString2Prim<T>* MakeStringMap##N##Writer(std::uint32_t) override { return nullptr; }
    VALUE_KINDS(SCALAR)
    ALL_KINDS(ARRAYS)
    KEYED_KINDS(MAPS)
#undef SCALAR
#undef ARRAYS
#undef MAPS
    cls_WriteListObj* MakeObjListWriter(std::uint32_t) override { return nullptr; }
    cls_WriteMapInt2Obj* MakeIntMapObjWriter(std::uint32_t) override { return nullptr; }
    cls_WriteMapString2Obj* MakeStringMapObjWriter(std::uint32_t) override { return nullptr; }
    cls_WriteIntTableInt* MakeIntTableWriter(std::uint32_t) override { return nullptr; }
    cls_AgentListObj* MakeObjListAgent() override { return nullptr; }
    cls_AgentMapKey2Obj<int>* MakeIntMapObjAgent() override { return nullptr; }
    cls_AgentMapKey2Obj<cow_String>* MakeStringMapObjAgent() override { return nullptr; }
};

#undef VALUE_KINDS
#undef KEYED_KINDS
#undef ALL_KINDS
