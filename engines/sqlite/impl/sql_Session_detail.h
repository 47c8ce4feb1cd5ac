#pragma once

#include "cls_HistoryEntry.h"
#include "cls_PC.h"
#include "cls_Uid.h"
#include "sql_BlockCache_detail.h"
#include "sql_Records.h"
#include "sql_Store.h"

#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class cls_ClassMetadata;
class cls_ClassRegistrar;
class sql_PagedArray;
class sql_Session;

/// What links a uid to its number in a store. It hangs in the uid's history and dies with the uid.
class sql_Identity final : public cls_HistoryEntry
{
public:
    sql_Identity(sql_Session& session, std::int64_t number, cls_UidCatalogEntry& entry);
    ~sql_Identity() override;

    /// The link of a uid to `session`, or null.
    static sql_Identity* Find(const cls_Uid& uid, const sql_Session& session) noexcept;

    sql_Session* session; // null after the session's end
    std::int64_t number;
    cls_UidCatalogEntry* entry;
};

/// A stored class beside what this program knows of it.
struct sql_KnownClass
{
    sql_Class stored;
    bool isKnown = false;
    std::uint32_t classId = 0;                   // in this program
    const cls_ClassMetadata* metadata = nullptr; // of the stored version; null for a class without metadata
};

using sql_ClassPtr = std::shared_ptr<const sql_KnownClass>;

/// A row of a record that is being written.
struct sql_OpenRow
{
    bool isLeft = false;    // from before: it goes when the record is finished, unless it is written again
    std::int64_t child = 0; // the object it held before, 0 for none
};

/// A record that is being written.
struct sql_OpenRecord
{
    sql_Record head;
    sql_ClassPtr known; // null for an element that is no object
    int depth = 1;
    bool isNew = true;
    bool isKept = false; // a collection that an agent serves: what it holds is not this save's business
    bool isFinished = false;
    std::int64_t next = 0;               // index of the next element of a list
    std::map<sql_Key, sql_OpenRow> rows; // a new list's are not noted: `next` says it all
    std::vector<std::int64_t> displaced; // objects of unknown classes that a list's new elements pushed aside
    std::optional<cls_Uid> uid;

    bool IsList() const noexcept;
};

/// What all agents of a stored collection know of it.
struct sql_Stored
{
    int length = 0;
    std::int64_t revision = 0;   // of the record when it was last looked at
    bool isBeingWritten = false; // the length may be ahead of the record's
    bool isGone = false;         // the record was rolled back
};

/// The state of an open store between its records and the mementos: transactions, classes, identities, what is open.
///
/// Ownership:  shared by the store and every memento, reader, writer and agent; closed by the store.
/// Threads:    one thread at a time.
/// Errors:     nex_TextException.
class sql_Session : public std::enable_shared_from_this<sql_Session>
{
public:
    using Open = std::shared_ptr<sql_OpenRecord>;

    sql_Session(std::unique_ptr<sql_Records> records, const cls_ClassRegistrar& registrar);
    sql_Session(const sql_Session&) = delete;
    sql_Session& operator=(const sql_Session&) = delete;
    ~sql_Session();

    /// Rolls back what was not committed and lets go of the database.
    void Close() noexcept;
    bool IsOpen() const noexcept { return m_records != nullptr; }
    /// True when nothing may be written: also after Close.
    bool IsReadOnly() const noexcept { return m_records == nullptr || m_records->IsReadOnly(); }

    /// The records, to read.
    sql_Records& Reading();
    /// The records, to write: starts a transaction where there is none.
    sql_Records& Writing();

    /// Blocks that were read. None, null, once the database has rolled back by itself: they may be of what it took back.
    sql_BlockCache* Cache() noexcept;
    void SetCacheBytes(std::size_t bytes) { m_cache.SetLimit(bytes); }

    void Begin();
    void Commit();
    void Rollback();
    bool InTransaction() const noexcept { return m_isWriting; }
    /// Keeps a failure that could not be thrown where it happened, for the next Commit.
    void Defer(std::exception_ptr failure) noexcept { m_deferred = failure; }
    /// What Commit flushes.
    cls_PC& Pending() noexcept { return m_pending; }

    /// Starts a save of a tree of records, which EndSave ends.
    void BeginSave();
    void EndSave();
    /// Finishes the records that no memento writes to any more, so that they can be read.
    void FinishClosed();

    /// Opens the record at a place: the one that is there, if it is of the same object, or a new one.
    Open OpenAt(const Open& owner, const sql_Key& key, std::uint32_t classId, const cls_Uid& uid);
    /// The record of an element that is no object, but may be an array of that uid.
    Open OpenElement(const Open& owner, const sql_Key& key, const cls_Uid* uid = nullptr);
    Open OpenRoot(const cow_String& name, std::uint32_t classId, const cls_Uid& uid);
    /// Opens a stored collection, for its agent to change elements of it.
    Open OpenStored(std::int64_t record, int depth);
    void Put(sql_OpenRecord& open, const sql_Key& key, const sql_Cell& cell);
    /// Empties an open record to make it a collection; its rows go unless they are written again.
    void MakeCollection(sql_OpenRecord& open, sql_Form form);
    /// Makes an open record a collection that an agent serves; if it is one of that form already, with what it holds.
    void MakeKept(sql_OpenRecord& open, sql_Form form);
    // The arrays that agents of this session serve, by their records.
    void Note(sql_PagedArray& array, std::int64_t record) { m_paged.emplace(record, &array); }
    void Drop(const sql_PagedArray& array, std::int64_t record) noexcept;
    /// The same for every agent of the record.
    std::shared_ptr<sql_Stored> StateOf(std::int64_t record);
    /// The save that goes on, or the last one of the transaction; 0 outside of one.
    std::int64_t CurrentSave() const noexcept { return m_isWriting ? m_save : 0; }
    /// How many transactions have ended.
    std::int64_t Transaction() const noexcept { return m_transaction; }
    /// Removes a row, and at the end of the save the object it held.
    void Erase(sql_OpenRecord& open, const sql_Key& key);
    /// Stores the length and raises the revision of a collection that an agent changes.
    void Touch(sql_OpenRecord& open);
    void RemoveTree(std::int64_t id);

    sql_ClassPtr ClassOf(std::int64_t row);
    /// The classes of the file that this program cannot read, "name version 2".
    std::vector<std::string> UnknownClasses();
    /// The identity of a uid, made when it has none.
    sql_Identity& IdentityOf(const cls_Uid& uid);
    /// The uid of an identity: that of a living object, or a new one.
    cls_Uid UidOf(std::int64_t identity);

private:
    friend class sql_Identity;

    /// The head of the ring of arrays with changes.
    class PendingRing final : public cls_PC
    {
    public:
        void Flush() const override {}
    };

    void LoadClasses();
    sql_ClassPtr Resolve(const sql_Class& stored) const;
    sql_ClassPtr ClassToWrite(std::uint32_t classId);
    sql_Class Describe(std::uint32_t classId) const;
    Open Enter(sql_OpenRecord record);
    Open Make(std::int64_t owner, int depth, sql_ClassPtr known, const cls_Uid* uid);
    Open Reopen(const sql_Record& head, sql_ClassPtr known, int depth);
    std::optional<sql_Record> Child(const sql_OpenRecord& owner, const sql_Key& key);
    bool IsSameObject(const sql_Record& head, const sql_KnownClass& known, const cls_Uid& uid);
    /// True unless the record holds the values of another array than the one to be saved, which may be null.
    bool MayStay(const sql_Record& head, const sql_PagedArray* array) const noexcept;
    /// The record of an array that this save has not placed yet, taken from its old place; or null.
    Open Move(const sql_OpenRecord& owner, const sql_ClassPtr& known, const sql_PagedArray* array);
    /// What is in a store already is not written again by the array itself: copies it into a new record; notes the place.
    void Place(sql_OpenRecord& open, sql_PagedArray* array, const cls_Uid& uid);
    void Settle(bool isCommitted) noexcept;
    void TakeFromOwner(const sql_Record& moved);
    bool IsUnknown(std::int64_t record);
    /// Puts away what stood at a place that gets another object.
    void Replace(sql_OpenRecord& owner, std::int64_t child);
    void Finish(sql_OpenRecord& open);
    void FinishRows(sql_OpenRecord& open);
    void Forget() noexcept;
    void ForgetNewRecords() noexcept;
    /// Brings arrays that are still in use into memory: their record goes.
    void TakeIn(std::int64_t record);

    std::unique_ptr<sql_Records> m_records; // null after Close
    const cls_ClassRegistrar& m_registrar;
    std::map<std::int64_t, sql_ClassPtr> m_classes;  // by row
    std::map<std::uint32_t, sql_ClassPtr> m_written; // by class id in this program
    std::unordered_map<std::int64_t, sql_Identity*> m_identities;
    std::unordered_multimap<std::int64_t, sql_PagedArray*> m_paged;
    std::unordered_map<std::int64_t, std::weak_ptr<sql_Stored>> m_stored; // by record
    sql_BlockCache m_cache{sql_Store::CACHE_BYTES};
    PendingRing m_pending;
    std::exception_ptr m_deferred;
    bool m_isWriting = false;
    std::int64_t m_next = 1;      // number of the next record or identity; never goes back
    std::int64_t m_committed = 1; // m_next at the last Begin
    std::int64_t m_save = 0;
    std::int64_t m_transaction = 0;
    std::vector<Open> m_open; // as they are nested
    std::vector<std::pair<std::int64_t, std::int64_t>>
        m_doomed; // records to remove at the end of the save; their owners
};
