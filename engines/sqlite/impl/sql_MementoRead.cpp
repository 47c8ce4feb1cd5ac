#include "sql_MementoRead_detail.h"

#include "cls_ClassMetadata.h"
#include "cls_FieldHandle.h"

#include <algorithm>
#include <type_traits>

namespace
{
template <class T> constexpr sql_Kind KIND = sql_KindOf<T>;
template <class T> constexpr sql_Kind KIND<cow_1DArray<T>> = sql_Kind::ARRAY + sql_KindOf<T>;
template <class T> constexpr sql_Kind KIND<cow_2DArray<T>> = sql_Kind::MATRIX + sql_KindOf<T>;
} // namespace

sql_MementoRead::sql_MementoRead(sql_NodePtr node)
    : m_node(std::move(node)),
      m_uid(m_node->Head().identity != 0 ? m_node->Session()->UidOf(m_node->Head().identity) : cls_Uid::AllocateUid())
{}

template <class T> T sql_MementoRead::Read(const cls_FieldHandle& field, const T& defaultValue)
{
    const sql_Key key(field.FieldName());
    const sql_Cell* const cell = m_node->Find(key);
    T value = defaultValue;
    if (cell != nullptr && !sql_FromCell(*cell, value)) {
        m_node->FailKind(key, *cell, KIND<T>);
    }
    return value;
}

cow_String sql_MementoRead::DbId()
{
    const sql_ClassPtr& known = m_node->Class();
    const std::string text = "'" + m_node->Session()->Reading().Name() + "' record " +
                             std::to_string(m_node->Head().id) +
                             (known != nullptr ? " (" + std::string(known->stored.name.view()) + ")" : "");
    return text.c_str();
}

int sql_MementoRead::FieldIsPresent(const cls_FieldHandle& field)
{
    const sql_ClassPtr& known = m_node->Class();
    if (known == nullptr || known->stored.version == 0) {
        return DataIsPresent(field); // no layout was stored
    }
    const auto& attributes = known->stored.attributes;
    return std::any_of(attributes.begin(), attributes.end(),
                       [&](const sql_Attribute& attribute) { return attribute.name == field.FieldName(); })
               ? 1
               : 0;
}

int sql_MementoRead::DataIsPresent(const cls_FieldHandle& field)
{
    const sql_Cell* const cell = m_node->Find(sql_Key(field.FieldName()));
    return cell != nullptr && !(cell->IsObject() && !m_node->Child(*cell)->IsKnown()) ? 1 : 0;
}

std::uint32_t sql_MementoRead::ClassId(const cls_FieldHandle& field)
{
    const sql_NodePtr child = m_node->KnownChild(sql_Key(field.FieldName()));
    return child != nullptr && child->Class() != nullptr ? child->Class()->classId : 0;
}

cls_MementoRead* sql_MementoRead::MakeFieldReader(const cls_FieldHandle& field)
{
    const sql_NodePtr child = m_node->KnownChild(sql_Key(field.FieldName()));
    return child != nullptr ? new sql_MementoRead(child) : nullptr;
}

cls_MementoRead* sql_MementoRead::MakeElementReader(std::uint32_t element)
{
    const sql_NodePtr child = m_node->KnownChild(sql_Key(std::int64_t{element}));
    return child != nullptr ? new sql_MementoRead(child) : nullptr;
}

int sql_MementoRead::ClassVersion()
{
    return m_node->Class() != nullptr ? m_node->Class()->stored.version : 0;
}

#define INSTANTIATE(N, T)                                                                                              \
    template T sql_MementoRead::Read(const cls_FieldHandle&, const T&);                                                \
    template cow_1DArray<T> sql_MementoRead::Read(const cls_FieldHandle&, const cow_1DArray<T>&);                      \
    template cow_2DArray<T> sql_MementoRead::Read(const cls_FieldHandle&, const cow_2DArray<T>&);
SQL_KINDS(INSTANTIATE)
#undef INSTANTIATE
