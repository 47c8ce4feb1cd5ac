#pragma once

#include "cls_MementoWrite.h"
#include "cow_1DArray.h"
#include "cow_2DArray.h"
#include "sql_Collections_detail.h"

/// A record to write to.
class sql_MementoWrite final : public cls_MementoWrite
{
public:
    sql_MementoWrite(sql_SessionPtr session, sql_Session::Open open)
        : m_session(std::move(session)), m_open(std::move(open))
    {}

    int FieldIsPresent(const cls_FieldHandle& field) override;
    cls_MementoWrite* MakeFieldWriter(const cls_FieldHandle& field, std::uint32_t classId, const cls_Uid& uid,
                                      const cls_PayloadHolder* payload) override;
    cls_MementoWrite* MakeElementWriter(std::uint32_t element, const cls_Uid& uid) override;
    void WriteString(const cls_FieldHandle& field, cow_String value) override { Put(field, sql_ToCell(value)); }
    void CheckCollectionType(cls_CollectionType type, const cls_FieldHandle& field) override;

#define SCALARS(N, T)                                                                                                  \
    void Write##N(const cls_FieldHandle& field, T value) override { Put(field, sql_ToCell(value)); }
#define COLLECTIONS(N, T)                                                                                              \
    void Write##N##Array(const cls_FieldHandle& field, const cow_1DArray<T>& value) override                           \
    {                                                                                                                  \
        Put(field, sql_ToCell(value));                                                                                 \
    }                                                                                                                  \
    void Write##N##Matrix(const cls_FieldHandle& field, const cow_2DArray<T>& value) override                          \
    {                                                                                                                  \
        Put(field, sql_ToCell(value));                                                                                 \
    }                                                                                                                  \
    cls_WriteListPrim<T>* Make##N##ListWriter(std::uint32_t element) override                                          \
    {                                                                                                                  \
        return sql_MakeListWriter<T>(m_session, Element(element));                                                     \
    }                                                                                                                  \
    cls_AgentListPrim<T>* Make##N##ListAgent() override                                                                \
    {                                                                                                                  \
        m_session->MakeKept(*m_open, sql_Form::PAGED_LIST + sql_KindOf<T>);                                            \
        return sql_MakeListAgent<T>(m_session, m_open->head.id, Uid(), /*isFirst=*/true);                              \
    }
#define MAPS(N, T)                                                                                                     \
    cls_WriteMapInt2Prim<T>* MakeIntMap##N##Writer(std::uint32_t element) override                                     \
    {                                                                                                                  \
        return sql_MakeIntMapWriter<T>(m_session, Element(element));                                                   \
    }                                                                                                                  \
    cls_WriteMapString2Prim<T>* MakeStringMap##N##Writer(std::uint32_t element) override                               \
    {                                                                                                                  \
        return sql_MakeStringMapWriter<T>(m_session, Element(element));                                                \
    }
    SCALARS(Bool, bool)
    SCALARS(Double, double)
    SCALARS(Float, float)
    SCALARS(Int, int)
    SCALARS(Unsigned, std::uint32_t)
    SQL_KINDS(COLLECTIONS)
    SQL_KEYED_KINDS(MAPS)
#undef SCALARS
#undef COLLECTIONS
#undef MAPS

    cls_WriteListObj* MakeObjListWriter(std::uint32_t element) override
    {
        return sql_MakeObjListWriter(m_session, Element(element));
    }
    cls_WriteMapInt2Obj* MakeIntMapObjWriter(std::uint32_t element) override
    {
        return sql_MakeIntMapObjWriter(m_session, Element(element));
    }
    cls_WriteMapString2Obj* MakeStringMapObjWriter(std::uint32_t element) override
    {
        return sql_MakeStringMapObjWriter(m_session, Element(element));
    }
    cls_WriteIntTableInt* MakeIntTableWriter(std::uint32_t element) override
    {
        return sql_MakeIntTableWriter(m_session, Element(element));
    }
    cls_AgentListObj* MakeObjListAgent() override;
    cls_AgentMapKey2Obj<int>* MakeIntMapObjAgent() override;
    cls_AgentMapKey2Obj<cow_String>* MakeStringMapObjAgent() override;

private:
    void Put(const cls_FieldHandle& field, const sql_Cell& cell);
    void CheckDeclared(const cls_FieldHandle& field) const;
    sql_Session::Open Element(std::uint32_t element);
    cls_Uid Uid() const { return m_open->uid ? *m_open->uid : m_session->UidOf(m_open->head.identity); }

    sql_SessionPtr m_session;
    sql_Session::Open m_open;
};
