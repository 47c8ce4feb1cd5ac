#pragma once

#include "sql_Session_detail.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

class sql_ReadNode;
using sql_NodePtr = std::shared_ptr<sql_ReadNode>;

/// A stored record with its rows, read when they are first asked for and shared by all mementos on it.
///
/// Errors: nex_TextException where what is stored does not fit together.
class sql_ReadNode
{
public:
    sql_ReadNode(std::shared_ptr<sql_Session> session, const sql_Record& head, int depth);

    /// The node of a root; null when there is none of that name.
    static sql_NodePtr Root(const std::shared_ptr<sql_Session>& session, const cow_String& name);

    const std::shared_ptr<sql_Session>& Session() const noexcept { return m_session; }
    const sql_Record& Head() const noexcept { return m_head; }
    int Depth() const noexcept { return m_depth; }
    /// Null for an element that is no object.
    const sql_ClassPtr& Class() const noexcept { return m_class; }
    bool IsKnown() const noexcept { return m_class == nullptr || m_class->isKnown; }

    const std::vector<sql_Records::Row>& Rows();
    const sql_Cell* Find(const sql_Key& key);
    /// The record that an object's cell names.
    sql_NodePtr Child(const sql_Cell& cell) const;
    /// The object under a key; null when there is none, or one that this program does not know.
    sql_NodePtr KnownChild(const sql_Key& key);
    /// The record itself for cls_WriteVisitor::NO_ELEMENT, else that of the element; null when there is none.
    static sql_NodePtr Element(const sql_NodePtr& node, std::uint32_t element);

    [[noreturn]] void Fail(const std::string& what) const;
    [[noreturn]] void FailKind(const sql_Key& key, const sql_Cell& cell, sql_Kind asked) const;

private:
    std::shared_ptr<sql_Session> m_session;
    sql_Record m_head;
    int m_depth;
    sql_ClassPtr m_class;
    std::optional<std::vector<sql_Records::Row>> m_rows;
};
