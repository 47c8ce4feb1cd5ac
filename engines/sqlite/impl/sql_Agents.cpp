#include "cls_AgentListPrim.h"
#include "cls_ArrayPrim.h"
#include "cls_ObjectAgents.h"
#include "nex_TextException.h"
#include "sql_Collections_detail.h"
#include "sql_MementoRead_detail.h"
#include "sql_MementoWrite_detail.h"
#include "sql_PagedArray_detail.h"
#include "sql_ReadScope_detail.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>

namespace
{
/// What all agents have in common: the record they serve, who uses them, and what was last seen of it.
class Agent
{
protected:
    Agent(const sql_SessionPtr& session, std::int64_t record, sql_Form form)
        : m_session(session), m_record(record), m_stored(session->StateOf(record))
    {
        const sql_Record head = Head();
        if (head.form != form) {
            Fail("it is " + sql_FormName(head.form) + ", not " + sql_FormName(form));
        }
        See(head);
    }

    sql_Record Head() const
    {
        RequireThere();
        const auto head = m_session->Reading().FindRecord(m_record);
        if (!head) {
            FailGone();
        }
        return *head;
    }
    /// Where the record was rolled back, its number may have become that of another program's.
    void RequireThere() const
    {
        if (m_stored->isGone) {
            FailGone();
        }
    }
    [[noreturn]] void FailGone() const { Fail("it was removed, or never committed"); }
    /// Goes by what is stored, whoever stored it.
    void Follow(const sql_Record& head) noexcept
    {
        const int length = static_cast<int>(head.length);
        m_stored->length = m_stored->isBeingWritten ? std::max(m_stored->length, length) : length;
        m_stored->revision = head.revision;
    }
    void See(const sql_Record& head) noexcept
    {
        Follow(head);
        m_seen = head.revision;
    }
    bool HasChanged()
    {
        const sql_Record head = Head();
        const bool hasChanged = head.revision != m_seen;
        See(head);
        return hasChanged;
    }
    /// The last chance of a collection to be stored. Where nothing may be thrown, the next commit throws.
    void Leave(const cls_PC& collection) noexcept
    {
        try {
            collection.Flush();
        } catch (...) {
            m_session->Defer(std::current_exception());
            m_failedIn = m_session->Transaction();
        }
        --m_users;
    }
    /// After a failure that is kept for the commit, which will fail, nobody is to try again.
    bool Refuses() const noexcept { return m_failedIn == m_session->Transaction() || m_session->IsReadOnly(); }
    [[noreturn]] void Fail(const std::string& what) const
    {
        const std::string text =
            "'" + m_session->Reading().Name() + "' record " + std::to_string(m_record) + ": " + what;
        nex_TextException(text.c_str()).Throw("engines/sqlite/impl/sql_Agents", __LINE__);
    }

    sql_SessionPtr m_session;
    std::int64_t m_record;
    int m_users = 0;
    std::shared_ptr<sql_Stored> m_stored;
    std::int64_t m_seen = 0;      // the revision that the collection knows of
    std::int64_t m_failedIn = -1; // a transaction
};

template <class T> class ListAgent final : public cls_AgentListPrim<T>, Agent, sql_PagedArray
{
public:
    ListAgent(const sql_SessionPtr& session, std::int64_t record, const cls_Uid& uid, bool isFirst)
        : Agent(session, record, FORM), sql_PagedArray(session, record, uid), m_isFirst(isFirst)
    {}

    int Size() override { return m_stored->length; }
    bool IsChanged() override
    {
        m_stored->isBeingWritten = m_stored->isBeingWritten && m_session->Reading().InTransaction();
        const bool isUndone = IsUndone();
        const bool hasChanged = HasChanged() || isUndone;
        if (isUndone) {
            m_isInTransaction = m_isUndone = false;
        }
        return hasChanged;
    }
    void EndWrite() override
    {
        if (m_stored->isBeingWritten) {
            sql_Record head = Head();
            const bool isNews = head.revision != m_seen; // somebody else's change, which is still to be seen
            head.length = std::max<std::int64_t>(head.length, m_stored->length);
            ++head.revision;
            m_session->Writing().PutRecord(head);
            Follow(head);
            m_seen = isNews ? m_seen : head.revision;
            m_stored->isBeingWritten = false;
        }
        if (std::exchange(m_isFirst, false)) {
            for (cls_ArrayPrim<T>* array : m_arrays) {
                array->Remember();
            }
        }
    }
    void WriteRange(int first, int count, const T* values) override;
    void ReadRange(int first, int count, T* values) override;
    void Attach() override
    {
        m_arrays.reserve(static_cast<std::size_t>(m_users) + 1);
        ++m_users;
    }
    void Detach(cls_ArrayPrim<T>& array) noexcept override
    {
        Leave(array);
        std::erase(m_arrays, &array);
    }
    bool IsOwnedElsewhere() noexcept override { return m_users > 0; }
    bool IsReadOnly() override { return Refuses() || IsUndone(); }
    void Register(cls_ArrayPrim<T>& array) noexcept override
    {
        m_arrays.push_back(&array);
        m_session->Pending().Link(&array);
    }

    sql_Form Form() const noexcept override { return FORM; }
    void CopyTo(const sql_SessionPtr& session, std::int64_t record, const cls_Uid& uid) override;
    void TakeIn() override;
    void Settle(bool isCommitted) noexcept override;

private:
    static constexpr sql_Form FORM = sql_Form::PAGED_LIST + sql_KindOf<T>;
    static constexpr int SIZE = sql_Records::BLOCK_LENGTH;
    // Looking for a journal, locking and unlocking the file are eight system calls for a block: a walk makes them once for
    // so many more blocks, where these take a small part of the cache.
    static constexpr int AHEAD = 8;

    typename std::vector<cls_ArrayPrim<T>*>::const_iterator Find(const cls_Uid& uid) const noexcept
    {
        return std::find_if(m_arrays.begin(), m_arrays.end(),
                            [&uid](const cls_ArrayPrim<T>* array) { return &array->Uid() == &uid; });
    }
    bool Serves(const cls_Uid& uid) const noexcept override { return Find(uid) != m_arrays.end(); }
    /// True when what was written is rolled back, also by the database itself.
    bool IsUndone() const { return m_isUndone || (m_isInTransaction && !m_session->Reading().InTransaction()); }
    /// An array that goes on after a rollback would write to a list that is not as it left it.
    void RequireFollowed() const
    {
        if (IsUndone()) {
            Fail("changes of the array were rolled back, and it has not followed by Snap()");
        }
        RequireThere();
    }
    /// How many values the block that starts at `start` holds.
    int Stored(int start) const noexcept { return std::clamp(m_stored->length - start, 0, SIZE); }
    void ReadBlock(int start, int count, T* values);
    /// False when there is no such block, or one of another length.
    bool TakeBlock(int start, int count, T* values);
    /// The blocks from `block` on, which are about as large as `blockBytes`, into the cache.
    void ReadAhead(sql_BlockCache& cache, std::int64_t block, std::size_t blockBytes);
    void PutBlock(int start, int count, const T* values);
    void WriteInBlock(int start, int offset, int count, const T* values);
    /// Values that nobody set, from the end of the list up to `first`.
    void Fill(int first);
    T* Scratch()
    {
        if (m_scratch == nullptr) {
            m_scratch = std::make_unique<T[]>(SIZE);
        }
        return m_scratch.get();
    }

    std::vector<cls_ArrayPrim<T>*> m_arrays; // those attached
    bool m_isFirst;                          // until the end of the first writing, of an array that is all in memory
    std::unique_ptr<T[]> m_scratch;          // a block, for ranges that are none
    std::string m_bytes;
    int m_lastRead = -SIZE;         // where the block that was read last starts
    bool m_isInTransaction = false; // something was written in it
    bool m_isUndone = false;        // by a rollback
};

template <class T> bool ListAgent<T>::TakeBlock(int start, int count, T* values)
{
    const auto size = static_cast<std::size_t>(count);
    const std::int64_t place = start / SIZE;
    sql_BlockCache* const cache = m_session->Cache();
    const bool isNext = start == std::exchange(m_lastRead, start) + SIZE; // of a walk through the list
    if (const sql_BlockCache::Block* const known =
            cache != nullptr ? cache->Find(m_record, place, m_stored->revision) : nullptr) {
        const bool isTaken = sql_ReadItems(known->bytes, values, size);
        if (known->use == sql_BlockCache::Use::ONCE) {
            cache->Erase(m_record, place);
        }
        return isTaken;
    }
    sql_Records& records = m_session->Reading();
    bool isTaken = false;
    std::size_t bytesRead = 0;
    const auto read = [&](std::string_view bytes) {
        bytesRead = bytes.size();
        isTaken = sql_ReadItems(bytes, values, size);
        if (isTaken && cache != nullptr && !isNext) {
            cache->Put(m_record, place, m_stored->revision, bytes, sql_BlockCache::Use::AGAIN);
        }
    };
    if (isNext && cache != nullptr && !records.InTransaction()) {
        const sql_ReadScope scope(records);
        records.ReadBlock(m_record, place, std::ref(read));
        if (isTaken) {
            ReadAhead(*cache, place + 1, bytesRead);
        }
    } else {
        records.ReadBlock(m_record, place, std::ref(read));
    }
    return isTaken;
}

template <class T> void ListAgent<T>::ReadAhead(sql_BlockCache& cache, std::int64_t block, std::size_t blockBytes)
{
    const std::size_t room = cache.Limit() / 4 / (blockBytes + 1);
    const std::int64_t stored = (std::int64_t{m_stored->length} + SIZE - 1) / SIZE;
    const std::int64_t end = std::min(block + static_cast<std::int64_t>(std::min<std::size_t>(AHEAD, room)), stored);
    const auto keep = [&](std::string_view bytes) {
        cache.Put(m_record, block, m_stored->revision, bytes, sql_BlockCache::Use::ONCE);
    };
    try {
        while (block < end && cache.Find(m_record, block, m_stored->revision) == nullptr &&
               m_session->Reading().ReadBlock(m_record, block, std::ref(keep))) {
            ++block;
        }
    } catch (const nex_TextException&) {
        // The walk will read that block by itself, if it comes so far.
    }
}

template <class T> void ListAgent<T>::ReadBlock(int start, int count, T* values)
{
    if (!TakeBlock(start, count, values)) {
        m_session->Reading().FailDamaged("block " + std::to_string(start / SIZE) + " of record " +
                                         std::to_string(m_record) + " does not hold " + std::to_string(count) +
                                         " values");
    }
}

template <class T> void ListAgent<T>::ReadRange(int first, int count, T* values)
{
    RequireFollowed();
    while (first < 0 || count != 0) {
        if (first < 0 || count < 0 || first > m_stored->length - count) {
            Fail("values " + std::to_string(first) + " to " + std::to_string(std::int64_t{first} + count) +
                 " were asked for, of " + std::to_string(m_stored->length));
        }
        const int start = first - first % SIZE;
        const int stored = Stored(start);
        const int taken = std::min(count, start + stored - first);
        T* const block = taken == stored ? values : Scratch();
        if (!TakeBlock(start, stored, block)) {
            const std::int64_t revision = m_stored->revision;
            Follow(Head()); // another program may have made the block longer
            if (m_stored->revision == revision) {
                ReadBlock(start, stored, block);
            }
            continue;
        }
        if (block != values) {
            std::copy_n(block + (first - start), taken, values);
        }
        first += taken;
        count -= taken;
        values += taken;
    }
}

template <class T> void ListAgent<T>::PutBlock(int start, int count, const T* values)
{
    sql_Records& records = m_session->Writing();
    m_session->Cache()->Erase(m_record, start / SIZE); // Writing() left a transaction, and so a cache
    m_stored->isBeingWritten = true;
    m_isInTransaction = true;
    if constexpr (std::is_same_v<T, cow_String>) {
        m_bytes.clear();
        sql_AppendItems(m_bytes, values, static_cast<std::size_t>(count));
        records.PutBlock(m_record, start / SIZE, m_bytes);
    } else {
        const std::string_view bytes(reinterpret_cast<const char*>(values),
                                     static_cast<std::size_t>(count) * sizeof(T));
        records.PutBlock(m_record, start / SIZE, bytes);
    }
    m_stored->length = std::max(m_stored->length, start + count);
}

template <class T> void ListAgent<T>::WriteInBlock(int start, int offset, int count, const T* values)
{
    const int stored = Stored(start);
    if (offset == 0 && count >= stored) {
        PutBlock(start, count, values);
        return;
    }
    if (stored > 0) {
        ReadBlock(start, stored, Scratch());
    }
    std::copy_n(values, count, Scratch() + offset);
    PutBlock(start, std::max(stored, offset + count), Scratch());
}

template <class T> void ListAgent<T>::Fill(int first)
{
    const auto unset = std::make_unique<T[]>(SIZE);
    while (m_stored->length < first) {
        const int start = m_stored->length - m_stored->length % SIZE;
        WriteInBlock(start, m_stored->length - start,
                     std::min(first - m_stored->length, start + SIZE - m_stored->length), unset.get());
    }
}

template <class T> void ListAgent<T>::WriteRange(int first, int count, const T* values)
{
    RequireFollowed();
    if (first < 0 || count < 0 || count > std::numeric_limits<int>::max() - first) {
        Fail("values from " + std::to_string(first) + " on were written, " + std::to_string(count) + " of them");
    }
    m_session->Writing();
    if (!m_stored->isBeingWritten) {
        Follow(Head()); // another program may have made the list longer
    }
    if (m_stored->length < first) {
        Fill(first);
    }
    while (count > 0) {
        const int start = first - first % SIZE;
        const int written = std::min(count, start + (SIZE - first));
        WriteInBlock(start, first - start, written, values);
        first += written;
        count -= written;
        values += written;
    }
}

template <class T> void ListAgent<T>::CopyTo(const sql_SessionPtr& session, std::int64_t record, const cls_Uid& uid)
{
    ListAgent copy(session, record, cls_Uid::AllocateUid(), /*isFirst=*/false);
    (*Find(uid))->CopyTo(copy);
}

// The agent may be gone with the last array that leaves it.

template <class T> void ListAgent<T>::TakeIn()
{
    for (std::size_t left = m_arrays.size(); left != 0; --left) {
        m_arrays[left - 1]->TakeIn();
    }
}

template <class T> void ListAgent<T>::Settle(bool isCommitted) noexcept
{
    m_stored->isBeingWritten = false;
    m_isUndone = m_isUndone || (m_isInTransaction && !isCommitted);
    m_isInTransaction = false;
    for (std::size_t left = m_arrays.size(); left != 0; --left) {
        isCommitted ? m_arrays[left - 1]->Forget() : m_arrays[left - 1]->TakeBack();
    }
}

/// An agent of objects, by index or by key.
class ObjectAgent : protected Agent
{
protected:
    ObjectAgent(const sql_SessionPtr& session, std::int64_t record, int depth, sql_Form form)
        : Agent(session, record, form), m_depth(depth)
    {}

    /// The node of the object under a key; null when there is none that this program knows.
    sql_NodePtr Object(const sql_Key& key)
    {
        m_session->FinishClosed();
        return sql_ReadNode(m_session, Head(), m_depth).KnownChild(key);
    }
    std::uint32_t ClassAt(const sql_Key& key)
    {
        const sql_NodePtr node = Object(key);
        return node != nullptr && node->Class() != nullptr ? node->Class()->classId : 0;
    }
    cls_MementoRead* ReaderAt(const sql_Key& key)
    {
        const sql_NodePtr node = Object(key);
        return node != nullptr ? new sql_MementoRead(node) : nullptr;
    }
    sql_Session::Open Open()
    {
        RequireThere();
        return m_session->OpenStored(m_record, m_depth);
    }
    cls_MementoWrite* Write(const sql_Key& key, std::uint32_t classId, const cls_Uid& uid)
    {
        const sql_Session::Open open = Open();
        auto written = std::make_unique<sql_MementoWrite>(m_session, m_session->OpenAt(open, key, classId, uid));
        Touch(*open);
        return written.release();
    }
    void Touch(sql_OpenRecord& open)
    {
        m_session->Touch(open);
        See(open.head);
    }
    void Clear()
    {
        const sql_Session::Open open = Open();
        while (!open->rows.empty()) {
            m_session->Erase(*open, sql_Key(open->rows.begin()->first));
        }
        open->next = 0;
        Touch(*open);
    }

    int m_depth;
};

class ObjListAgent final : public cls_AgentListObj, ObjectAgent
{
public:
    ObjListAgent(const sql_SessionPtr& session, std::int64_t record, int depth)
        : ObjectAgent(session, record, depth, sql_Form::LIST + sql_Kind::OBJECT)
    {}

    int Size() override { return m_stored->length; }
    bool IsChanged() override { return HasChanged(); }
    void EndWrite() override {}
    std::uint32_t ClassId(int index) override { return ClassAt(Checked(index, m_stored->length)); }
    cls_MementoRead* MakeReader(int index) override { return ReaderAt(Checked(index, m_stored->length)); }
    void Attach() override { ++m_users; }
    cls_MementoWrite* MakeWriteObj(int index, std::uint32_t classId, const cls_Uid& uid) override
    {
        return Write(Checked(index, m_stored->length + 1), classId, uid);
    }
    void Detach(cls_PC& collection) noexcept override { Leave(collection); }
    bool IsOwnedElsewhere() noexcept override { return m_users > 0; }
    bool IsReadOnly() override { return Refuses(); }
    void RemoveAt(int index) override;
    void Clear() override { ObjectAgent::Clear(); }
    void Register(cls_PC& collection) noexcept override { m_session->Pending().Link(&collection); }

private:
    sql_Key Checked(int index, int end) const
    {
        if (index < 0 || index >= end) {
            Fail("there is no element " + std::to_string(index));
        }
        return sql_Key(std::int64_t{index});
    }
};

void ObjListAgent::RemoveAt(int index)
{
    Checked(index, m_stored->length);
    const sql_Session::Open open = Open();
    m_session->Erase(*open, sql_Key(std::int64_t{index}));
    for (std::int64_t next = std::int64_t{index} + 1; next < open->next; ++next) {
        const std::int64_t child = std::exchange(open->rows[sql_Key(next)].child, 0);
        m_session->Erase(*open, sql_Key(next));
        m_session->Put(*open, sql_Key(next - 1), {sql_Kind::OBJECT, child});
    }
    --open->next;
    Touch(*open);
}

template <class K> class MapAgent final : public cls_AgentMapKey2Obj<K>, ObjectAgent
{
public:
    MapAgent(const sql_SessionPtr& session, std::int64_t record, int depth)
        : ObjectAgent(session, record, depth,
                      (std::is_same_v<K, int> ? sql_Form::INT_MAP : sql_Form::STRING_MAP) + sql_Kind::OBJECT)
    {}

    int Size() override { return m_stored->length; }
    bool IsChanged() override { return HasChanged(); }
    void EndWrite() override {}
    cow_1DArray<K> Keys() override;
    std::uint32_t ClassId(const K& key) override { return ClassAt(KeyOf(key)); }
    cls_MementoRead* MakeReader(const K& key) override { return ReaderAt(KeyOf(key)); }
    void Attach() override { ++m_users; }
    cls_MementoWrite* MakeWriteObj(const K& key, std::uint32_t classId, const cls_Uid& uid) override
    {
        return Write(KeyOf(key), classId, uid);
    }
    void Detach(cls_PC& collection) noexcept override { Leave(collection); }
    bool IsOwnedElsewhere() noexcept override { return m_users > 0; }
    bool IsReadOnly() override { return Refuses(); }
    bool Remove(const K& key) override
    {
        const sql_Session::Open open = Open();
        if (!open->rows.contains(KeyOf(key))) {
            return false;
        }
        m_session->Erase(*open, KeyOf(key));
        Touch(*open);
        return true;
    }
    void Clear() override { ObjectAgent::Clear(); }
    void Register(cls_PC& collection) noexcept override { m_session->Pending().Link(&collection); }

private:
    static sql_Key KeyOf(const K& key)
    {
        if constexpr (std::is_same_v<K, int>) {
            return sql_Key(std::int64_t{key});
        } else {
            return sql_Key(key);
        }
    }
};

template <class K> cow_1DArray<K> MapAgent<K>::Keys()
{
    std::vector<K> keys;
    for (const auto& [key, cell] : m_session->Reading().Rows(Head().id)) {
        if (key.IsNumber() != std::is_same_v<K, int>) {
            Fail("the key " + key.AsString() + " is of the wrong type");
        }
        if constexpr (std::is_same_v<K, int>) {
            keys.push_back(static_cast<int>(key.Number()));
        } else {
            keys.push_back(key.Text());
        }
    }
    std::sort(keys.begin(), keys.end());
    return cow_1DArray<K>(keys.begin(), keys.end());
}
} // namespace

template <class T>
cls_AgentListPrim<T>* sql_MakeListAgent(const sql_SessionPtr& session, std::int64_t record, const cls_Uid& uid,
                                        bool isFirst)
{
    return new ListAgent<T>(session, record, uid, isFirst);
}

cls_AgentListObj* sql_MakeObjListAgent(const sql_SessionPtr& session, std::int64_t record, int depth)
{
    return new ObjListAgent(session, record, depth);
}

template <class K>
cls_AgentMapKey2Obj<K>* sql_MakeMapAgent(const sql_SessionPtr& session, std::int64_t record, int depth)
{
    return new MapAgent<K>(session, record, depth);
}

template cls_AgentMapKey2Obj<int>* sql_MakeMapAgent(const sql_SessionPtr&, std::int64_t, int);
template cls_AgentMapKey2Obj<cow_String>* sql_MakeMapAgent(const sql_SessionPtr&, std::int64_t, int);
#define INSTANTIATE(N, T)                                                                                              \
    template cls_AgentListPrim<T>* sql_MakeListAgent(const sql_SessionPtr&, std::int64_t, const cls_Uid&, bool);
SQL_KINDS(INSTANTIATE)
#undef INSTANTIATE
