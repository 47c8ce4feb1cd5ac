#include "sql_MementoWrite_detail.h"

#include "cls_ClassMetadata.h"
#include "cls_FieldHandle.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"

namespace
{
[[noreturn]] void Throw(const std::string& text, int line)
{
    nex_TextException(text.c_str()).Throw("engines/sqlite/impl/sql_MementoWrite", line);
}

std::string FieldText(const sql_OpenRecord& open, const cls_FieldHandle& field)
{
    return "the field '" + std::string(field.FieldName().view()) + "' of class " +
           std::string(open.known->stored.name.view()) + " version " + std::to_string(open.known->stored.version);
}

const cls_AttributeMetadata* AttributeOf(const sql_OpenRecord& open, const cls_FieldHandle& field)
{
    return open.known->metadata->FindAttribute(field.FieldName());
}

bool HasMetadata(const sql_OpenRecord& open)
{
    return open.known != nullptr && open.known->metadata != nullptr;
}
} // namespace

int sql_MementoWrite::FieldIsPresent(const cls_FieldHandle& field)
{
    return !HasMetadata(*m_open) || AttributeOf(*m_open, field) != nullptr ? 1 : 0;
}

void sql_MementoWrite::CheckDeclared(const cls_FieldHandle& field) const
{
    if (HasMetadata(*m_open) && AttributeOf(*m_open, field) == nullptr) {
        Throw(FieldText(*m_open, field) + " was not registered", __LINE__);
    }
}

void sql_MementoWrite::Put(const cls_FieldHandle& field, const sql_Cell& cell)
{
    CheckDeclared(field);
    m_session->Put(*m_open, sql_Key(field.FieldName()), cell);
}

cls_MementoWrite* sql_MementoWrite::MakeFieldWriter(const cls_FieldHandle& field, std::uint32_t classId,
                                                    const cls_Uid& uid, const cls_PayloadHolder*)
{
    CheckDeclared(field);
    return new sql_MementoWrite(m_session, m_session->OpenAt(m_open, sql_Key(field.FieldName()), classId, uid));
}

cls_MementoWrite* sql_MementoWrite::MakeElementWriter(std::uint32_t element, const cls_Uid& uid)
{
    return new sql_MementoWrite(m_session, m_session->OpenElement(m_open, sql_Key(std::int64_t{element}), &uid));
}

sql_Session::Open sql_MementoWrite::Element(std::uint32_t element)
{
    return element == cls_WriteVisitor::NO_ELEMENT ? m_open
                                                   : m_session->OpenElement(m_open, sql_Key(std::int64_t{element}));
}

void sql_MementoWrite::CheckCollectionType(cls_CollectionType type, const cls_FieldHandle& field)
{
    if (!HasMetadata(*m_open)) {
        return;
    }
    CheckDeclared(field);
    if (const cls_CollectionType declared = AttributeOf(*m_open, field)->Collection(); declared != type) {
        Throw(FieldText(*m_open, field) + " was registered as a collection of type " + std::to_string(declared) +
                  ", and is written as one of type " + std::to_string(type),
              __LINE__);
    }
}

cls_AgentListObj* sql_MementoWrite::MakeObjListAgent()
{
    m_session->MakeKept(*m_open, sql_Form::LIST + sql_Kind::OBJECT);
    return sql_MakeObjListAgent(m_session, m_open->head.id, m_open->depth);
}

cls_AgentMapKey2Obj<int>* sql_MementoWrite::MakeIntMapObjAgent()
{
    m_session->MakeKept(*m_open, sql_Form::INT_MAP + sql_Kind::OBJECT);
    return sql_MakeMapAgent<int>(m_session, m_open->head.id, m_open->depth);
}

cls_AgentMapKey2Obj<cow_String>* sql_MementoWrite::MakeStringMapObjAgent()
{
    m_session->MakeKept(*m_open, sql_Form::STRING_MAP + sql_Kind::OBJECT);
    return sql_MakeMapAgent<cow_String>(m_session, m_open->head.id, m_open->depth);
}
