#pragma once

#include "Test.h"
#include "cls_FieldHandle.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_Uid.h"
#include "cow_1DArray.h"
#include "cow_2DArray.h"

#include <any>

// Mementos of a record that keeps single values, matrices and arrays by the names of their fields, for tests to derive
// from; without a record every field is absent. Every object and collection is refused.
using Record = std::map<std::string, std::any>;
using Field = const cls_FieldHandle&;

#define VALUE_KINDS(X) X(Bool, bool) X(Double, double) X(Float, float) X(Int, int) X(Unsigned, std::uint32_t)
#define KEYED_KINDS(X) X(Double, double) X(Float, float) X(Int, int) X(String, cow_String) X(Unsigned, std::uint32_t)
#define ALL_KINDS(X) X(Bool, bool) KEYED_KINDS(X)

class MementoReadDouble : public cls_MementoRead
{
public:
    explicit MementoReadDouble(const Record* record = nullptr) : m_record(record) {}
    cow_String DbId() override { return {}; }
    cls_UidCatalogEntry* GetUidEntry() override { return m_uid.Entry(); }
    int FieldIsPresent(Field) override { return 0; }
    int DataIsPresent(Field) override { return 0; }
    std::uint32_t ClassId(Field) override { return 0; }
    cls_MementoRead* MakeFieldReader(Field) override { return nullptr; }
    cls_MementoRead* Clone() override { return nullptr; }
    cow_String ReadString(Field field, const cow_String& text) override { return Stored(field, text); }
    cls_MementoRead* MakeElementReader(std::uint32_t) override { return nullptr; }
    int ClassVersion() override { return 1; }

#define SCALAR(N, T)                                                                                                   \
    T Read##N(Field field, T value) override { return Stored(field, value); }
#define ARRAYS(N, T)                                                                                                   \
    cow_1DArray<T> Read##N##Array(Field field, const cow_1DArray<T>& value) override { return Stored(field, value); }  \
    cow_2DArray<T> Read##N##Matrix(Field field, const cow_2DArray<T>& value) override { return Stored(field, value); } \
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

private:
    template <class T> T Stored(Field field, const T& fallback) const
    {
        const bool isStored = m_record != nullptr && m_record->contains(std::string(field.FieldName()));
        return isStored ? std::any_cast<T>(m_record->at(std::string(field.FieldName()))) : fallback;
    }

    const Record* m_record;
};

class MementoWriteDouble : public cls_MementoWrite
{
public:
    explicit MementoWriteDouble(Record* record = nullptr) : m_record(record) {}
    int FieldIsPresent(Field) override { return 0; }
    cls_MementoWrite* MakeFieldWriter(Field, std::uint32_t, const cls_Uid&, const cls_PayloadHolder*) override
    {
        return nullptr;
    }
    cls_MementoWrite* MakeElementWriter(std::uint32_t, const cls_Uid&) override { return nullptr; }
    void WriteString(Field field, cow_String value) override { Store(field, value); }
    void CheckCollectionType(cls_CollectionType, Field) override {}

#define SCALAR(N, T)                                                                                                   \
    void Write##N(Field field, T value) override { Store(field, value); }
#define ARRAYS(N, T)                                                                                                   \
    void Write##N##Array(Field field, const cow_1DArray<T>& value) override { Store(field, value); }                   \
    void Write##N##Matrix(Field field, const cow_2DArray<T>& value) override { Store(field, value); }                  \
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

private:
    template <class T> void Store(Field field, const T& value)
    {
        if (m_record != nullptr) {
            (*m_record)[std::string(field.FieldName())] = value;
        }
    }

    Record* m_record;
};

#undef VALUE_KINDS
#undef KEYED_KINDS
#undef ALL_KINDS
