#include "sql_ReadNode_detail.h"

#include "cls_WriteVisitor.h"
#include "nex_TextException.h"

#include <algorithm>

sql_ReadNode::sql_ReadNode(std::shared_ptr<sql_Session> session, const sql_Record& head, int depth)
    : m_session(std::move(session)), m_head(head), m_depth(depth),
      m_class(head.classRow != 0 ? m_session->ClassOf(head.classRow) : nullptr)
{}

sql_NodePtr sql_ReadNode::Root(const std::shared_ptr<sql_Session>& session, const cow_String& name)
{
    sql_Records& records = session->Reading();
    const auto id = records.FindRoot(name);
    if (!id) {
        return nullptr;
    }
    const auto head = records.FindRecord(*id);
    if (!head || head->owner != 0) {
        records.FailDamaged("the root '" + std::string(name.view()) + "' names record " + std::to_string(*id) +
                            ", which is no root");
    }
    return std::make_shared<sql_ReadNode>(session, *head, 1);
}

const std::vector<sql_Records::Row>& sql_ReadNode::Rows()
{
    if (!m_rows) {
        m_rows = m_session->Reading().Rows(m_head.id);
        if (!sql_PagedKind(m_head.form) && static_cast<std::int64_t>(m_rows->size()) != m_head.length) {
            m_session->Reading().FailDamaged("record " + std::to_string(m_head.id) + " has " +
                                             std::to_string(m_rows->size()) + " of " + std::to_string(m_head.length) +
                                             " rows");
        }
    }
    return *m_rows;
}

const sql_Cell* sql_ReadNode::Find(const sql_Key& key)
{
    const auto& rows = Rows();
    const auto found =
        std::lower_bound(rows.begin(), rows.end(), key,
                         [](const sql_Records::Row& row, const sql_Key& asked) { return row.first < asked; });
    return found != rows.end() && found->first == key ? &found->second : nullptr;
}

sql_NodePtr sql_ReadNode::Child(const sql_Cell& cell) const
{
    // Every record has one owner and a root has none: whoever goes down from a root comes to no record twice.
    const auto head = m_session->Reading().FindRecord(cell.Record());
    if (!head || head->owner != m_head.id) {
        m_session->Reading().FailDamaged("record " + std::to_string(m_head.id) + " holds record " +
                                         std::to_string(cell.Record()) +
                                         (head ? ", which belongs elsewhere" : ", which is missing"));
    }
    if (m_depth >= sql_Records::MAX_DEPTH) {
        m_session->Reading().FailDamaged("records are nested deeper than " + std::to_string(sql_Records::MAX_DEPTH));
    }
    return std::make_shared<sql_ReadNode>(m_session, *head, m_depth + 1);
}

sql_NodePtr sql_ReadNode::KnownChild(const sql_Key& key)
{
    const sql_Cell* const cell = Find(key);
    if (cell == nullptr) {
        return nullptr;
    }
    if (!cell->IsObject()) {
        FailKind(key, *cell, sql_Kind::OBJECT);
    }
    sql_NodePtr child = Child(*cell);
    return child->IsKnown() ? child : nullptr;
}

sql_NodePtr sql_ReadNode::Element(const sql_NodePtr& node, std::uint32_t element)
{
    return element == cls_WriteVisitor::NO_ELEMENT ? node : node->KnownChild(sql_Key(std::int64_t{element}));
}

void sql_ReadNode::Fail(const std::string& what) const
{
    const std::string text = "'" + m_session->Reading().Name() + "' record " + std::to_string(m_head.id) + ": " + what;
    nex_TextException(text.c_str()).Throw("engines/sqlite/impl/sql_ReadNode", __LINE__);
}

void sql_ReadNode::FailKind(const sql_Key& key, const sql_Cell& cell, sql_Kind asked) const
{
    Fail("field " + key.AsString() + " holds " + sql_KindName(cell.kind) + ", not " + sql_KindName(asked));
}
