#include "sql_PagedArray_detail.h"

#include "sql_Session_detail.h"

sql_PagedArray::sql_PagedArray(std::shared_ptr<sql_Session> session, std::int64_t record, const cls_Uid& uid)
    : savedAs(session->CurrentSave()), m_home(std::move(session)), m_number(record), m_uid(uid)
{
    m_home->Note(*this, record);
    Link(&m_uid.Entry()->History());
}

sql_PagedArray::~sql_PagedArray()
{
    m_home->Drop(*this, m_number);
    UnLink();
}

sql_PagedArray* sql_PagedArray::Of(const cls_Uid& uid) noexcept
{
    const cls_HistoryEntry& head = uid.Entry()->History();
    for (cls_HistoryEntry* entry = head.Next(); entry != &head; entry = entry->Next()) {
        if (auto* const array = dynamic_cast<sql_PagedArray*>(entry); array != nullptr && array->Serves(uid)) {
            return array;
        }
    }
    return nullptr;
}

std::int64_t sql_PagedArray::RecordIn(const sql_Session& session) const noexcept
{
    return m_home.get() == &session ? m_number : 0;
}
