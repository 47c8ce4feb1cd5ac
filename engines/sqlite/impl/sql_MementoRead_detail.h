#pragma once

#include "cls_MementoRead.h"
#include "cow_1DArray.h"
#include "cow_2DArray.h"
#include "sql_Collections_detail.h"

/// A stored record to read from.
class sql_MementoRead final : public cls_MementoRead
{
public:
    explicit sql_MementoRead(sql_NodePtr node);

    cow_String DbId() override;
    cls_UidCatalogEntry* GetUidEntry() override { return m_uid.Entry(); }
    int FieldIsPresent(const cls_FieldHandle& field) override;
    int DataIsPresent(const cls_FieldHandle& field) override;
    std::uint32_t ClassId(const cls_FieldHandle& field) override;
    cls_MementoRead* MakeFieldReader(const cls_FieldHandle& field) override;
    cls_MementoRead* Clone() override { return new sql_MementoRead(m_node); }
    cls_MementoRead* MakeElementReader(std::uint32_t element) override;
    int ClassVersion() override;

#define VALUES(N, T)                                                                                                   \
    T Read##N(const cls_FieldHandle& field, SQL_PARAMETER(T) defaultValue) override                                    \
    {                                                                                                                  \
        return Read<T>(field, defaultValue);                                                                           \
    }
#define COLLECTIONS(N, T)                                                                                              \
    cow_1DArray<T> Read##N##Array(const cls_FieldHandle& field, const cow_1DArray<T>& defaultValue) override           \
    {                                                                                                                  \
        return Read(field, defaultValue);                                                                              \
    }                                                                                                                  \
    cow_2DArray<T> Read##N##Matrix(const cls_FieldHandle& field, const cow_2DArray<T>& defaultValue) override          \
    {                                                                                                                  \
        return Read(field, defaultValue);                                                                              \
    }                                                                                                                  \
    cls_ReadListPrim<T>* Make##N##ListReader(std::uint32_t element) override                                           \
    {                                                                                                                  \
        return sql_MakeListReader<T>(Element(element));                                                                \
    }                                                                                                                  \
    cls_AgentListPrim<T>* Make##N##ListAgent() override                                                                \
    {                                                                                                                  \
        return sql_MakeListAgent<T>(m_node->Session(), m_node->Head().id, m_uid, /*isFirst=*/false);                   \
    }
#define MAPS(N, T)                                                                                                     \
    cls_ReadMapInt2Prim<T>* MakeIntMap##N##Reader(std::uint32_t element) override                                      \
    {                                                                                                                  \
        return sql_MakeIntMapReader<T>(Element(element));                                                              \
    }                                                                                                                  \
    cls_ReadMapString2Prim<T>* MakeStringMap##N##Reader(std::uint32_t element) override                                \
    {                                                                                                                  \
        return sql_MakeStringMapReader<T>(Element(element));                                                           \
    }
#define SQL_PARAMETER(T) std::conditional_t<std::is_class_v<T>, const T&, T>
    SQL_KINDS(VALUES)
    SQL_KINDS(COLLECTIONS)
    SQL_KEYED_KINDS(MAPS)

#undef VALUES
#undef COLLECTIONS
#undef MAPS

    cls_ReadListObj* MakeObjListReader(std::uint32_t element) override
    {
        return sql_MakeObjListReader(Element(element));
    }
    cls_ReadMapInt2Obj* MakeIntMapObjReader(std::uint32_t element) override
    {
        return sql_MakeIntMapObjReader(Element(element));
    }
    cls_ReadMapString2Obj* MakeStringMapObjReader(std::uint32_t element) override
    {
        return sql_MakeStringMapObjReader(Element(element));
    }
    cls_ReadIntTableInt* MakeIntTableReader(std::uint32_t element) override
    {
        return sql_MakeIntTableReader(Element(element));
    }
    cls_AgentListObj* MakeObjListAgent() override
    {
        return sql_MakeObjListAgent(m_node->Session(), m_node->Head().id, m_node->Depth());
    }
    cls_AgentMapKey2Obj<int>* MakeIntMapObjAgent() override
    {
        return sql_MakeMapAgent<int>(m_node->Session(), m_node->Head().id, m_node->Depth());
    }
    cls_AgentMapKey2Obj<cow_String>* MakeStringMapObjAgent() override
    {
        return sql_MakeMapAgent<cow_String>(m_node->Session(), m_node->Head().id, m_node->Depth());
    }

private:
    template <class T> T Read(const cls_FieldHandle& field, const T& defaultValue);
    sql_NodePtr Element(std::uint32_t element) const { return sql_ReadNode::Element(m_node, element); }

    sql_NodePtr m_node;
    cls_Uid m_uid;
};
