#pragma once

#include "sql_Records.h"

/// One view of the store from beginning to end, as it was committed; within a transaction the view is the writer's.
class sql_ReadScope
{
public:
    explicit sql_ReadScope(sql_Records& records) : m_records(records), m_isOwn(!records.InTransaction())
    {
        if (m_isOwn) {
            m_records.BeginRead();
        }
    }
    sql_ReadScope(const sql_ReadScope&) = delete;
    sql_ReadScope& operator=(const sql_ReadScope&) = delete;
    ~sql_ReadScope()
    {
        if (m_isOwn) {
            m_records.EndRead();
        }
    }

private:
    sql_Records& m_records;
    bool m_isOwn;
};
