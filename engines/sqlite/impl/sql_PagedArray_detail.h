#pragma once

#include "cls_HistoryEntry.h"
#include "cls_Uid.h"
#include "sql_Records.h"

#include <cstdint>
#include <memory>

class sql_Session;

/// The values of arrays that are in a store, as saves see them. It hangs in the history of the arrays' uid for as long as
/// an agent serves them: that is how a save, of whatever store, finds out that an array is not all in memory.
///
/// Ownership:  belongs to the agent; holds a handle of the uid, so that the history never deletes it.
class sql_PagedArray : public cls_HistoryEntry
{
public:
    sql_PagedArray(std::shared_ptr<sql_Session> session, std::int64_t record, const cls_Uid& uid);
    ~sql_PagedArray() override;

    /// What serves the very array that `uid` is a member of; copies have uids that are equal, and may have other values.
    /// Null for anything else.
    static sql_PagedArray* Of(const cls_Uid& uid) noexcept;

    /// The record with the values if it is of that session, else 0.
    std::int64_t RecordIn(const sql_Session& session) const noexcept;
    virtual sql_Form Form() const noexcept = 0;
    /// Stores the values of the array that `uid` is a member of in another, empty record of this form.
    virtual void CopyTo(const std::shared_ptr<sql_Session>& session, std::int64_t record, const cls_Uid& uid) = 0;
    /// Brings the values into memory, as before they were first stored; the agent goes.
    virtual void TakeIn() = 0;
    /// The transaction ended. Arrays that it stored for the first time are back in memory, without the agent, if it was
    /// rolled back.
    virtual void Settle(bool isCommitted) noexcept = 0;

    std::int64_t savedAs; // the save that last placed the record

private:
    virtual bool Serves(const cls_Uid& uid) const noexcept = 0;

    std::shared_ptr<sql_Session> m_home;
    std::int64_t m_number;
    cls_Uid m_uid;
};
