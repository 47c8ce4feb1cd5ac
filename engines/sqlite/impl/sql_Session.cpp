#include "sql_Session_detail.h"

#include "cls_ClassRegistrar.h"
#include "nex_TextException.h"
#include "sql_PagedArray_detail.h"
#include "typ_ArchCompTable.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace
{
constexpr const char* SOURCE = "engines/sqlite/impl/sql_Session";

[[noreturn]] void Throw(const std::string& text, int line)
{
    nex_TextException(text.c_str()).Throw(SOURCE, line);
}

std::string ClassText(const sql_Class& stored)
{
    return std::string(stored.name.view()) + " version " + std::to_string(stored.version);
}

/// The registry answers what it does not know with exceptions.
template <class F> auto IfRegistered(F find) -> std::optional<decltype(find())>
{
    try {
        return find();
    } catch (const nex_TextException&) {
        return std::nullopt;
    }
}
} // namespace

sql_Identity::sql_Identity(sql_Session& inSession, std::int64_t ofNumber, cls_UidCatalogEntry& ofEntry)
    : session(&inSession), number(ofNumber), entry(&ofEntry)
{
    inSession.m_identities.emplace(number, this);
    Link(&ofEntry.History());
}

sql_Identity::~sql_Identity()
{
    if (session != nullptr) {
        session->m_identities.erase(number);
    }
    UnLink();
}

sql_Identity* sql_Identity::Find(const cls_Uid& uid, const sql_Session& session) noexcept
{
    const cls_HistoryEntry& head = uid.Entry()->History();
    for (cls_HistoryEntry* entry = head.Next(); entry != &head; entry = entry->Next()) {
        if (auto* const identity = dynamic_cast<sql_Identity*>(entry);
            identity != nullptr && identity->session == &session) {
            return identity;
        }
    }
    return nullptr;
}

bool sql_OpenRecord::IsList() const noexcept
{
    const int family = static_cast<int>(head.form) / 10 * 10;
    return family == static_cast<int>(sql_Form::LIST);
}

sql_Session::sql_Session(std::unique_ptr<sql_Records> records, const cls_ClassRegistrar& registrar)
    : m_records(std::move(records)), m_registrar(registrar)
{}

sql_Session::~sql_Session()
{
    Close();
}

void sql_Session::Close() noexcept
{
    Forget();
    for (const auto& [number, identity] : m_identities) {
        identity->session = nullptr;
    }
    m_identities.clear();
    m_records.reset();
}

sql_Records& sql_Session::Reading()
{
    if (m_records == nullptr) {
        Throw("the store was closed", __LINE__);
    }
    m_records->CheckProcess();
    return *m_records;
}

sql_Records& sql_Session::Writing()
{
    if (!m_isWriting) {
        Begin();
    } else if (Reading(); !m_records->InTransaction()) {
        Throw("'" + m_records->Name() + "' was rolled back after a failure: nothing is written before Rollback()",
              __LINE__);
    }
    return *m_records;
}

sql_BlockCache* sql_Session::Cache() noexcept
{
    return m_isWriting && !m_records->InTransaction() ? nullptr : &m_cache;
}

void sql_Session::Begin()
{
    sql_Records& records = Reading();
    if (m_isWriting) {
        Throw("'" + records.Name() + "': a transaction has begun already", __LINE__);
    }
    if (records.IsReadOnly()) {
        Throw("'" + records.Name() + "' was opened read-only", __LINE__);
    }
    records.BeginWrite();
    m_isWriting = true;
    m_committed = std::numeric_limits<std::int64_t>::max(); // no number was given out yet
    try {
        LoadClasses();
        m_next = std::max(m_next, records.NextNumber());
        m_committed = m_next;
    } catch (...) {
        Rollback();
        throw;
    }
}

void sql_Session::Commit()
{
    sql_Records& records = Reading();
    for (const cls_PC* array = m_pending.Next(); array != &m_pending; array = array->Next()) {
        array->Flush();
    }
    if (const std::exception_ptr failure = std::exchange(m_deferred, nullptr)) {
        Rollback();
        std::rethrow_exception(failure);
    }
    if (m_isWriting) {
        EndSave();
        Writing().SetNextNumber(m_next);
        records.Commit();
        m_isWriting = false;
        Settle(/*isCommitted=*/true);
    }
}

void sql_Session::Rollback()
{
    Reading();
    Forget();
    m_records->Rollback();
}

void sql_Session::Forget() noexcept
{
    for (const Open& open : m_open) {
        open->isFinished = true;
    }
    m_open.clear();
    m_doomed.clear();
    m_written.clear();
    m_deferred = nullptr;
    if (std::exchange(m_isWriting, false)) {
        m_cache.Clear();
        ForgetNewRecords();
        Settle(/*isCommitted=*/false);
    }
}

/// Numbers given out since the Begin may become those of other objects.
void sql_Session::ForgetNewRecords() noexcept
{
    for (auto next = m_identities.begin(); next != m_identities.end();) {
        sql_Identity* const identity = next->second;
        ++next; // erasing one leaves the other iterators valid
        if (identity->number >= m_committed) {
            delete identity;
        }
    }
    std::erase_if(m_stored, [this](const auto& known) {
        const auto& [record, noted] = known;
        if (const auto stored = noted.lock(); stored != nullptr && record >= m_committed) {
            stored->isGone = true;
        }
        return record >= m_committed || noted.expired();
    });
}

void sql_Session::BeginSave()
{
    Writing();
    EndSave();
    ++m_save;
}

void sql_Session::EndSave()
{
    for (; !m_open.empty(); m_open.pop_back()) {
        Finish(*m_open.back());
    }
    // A record that was moved out of a doomed tree has another owner by now.
    for (const auto& [id, owner] : std::exchange(m_doomed, {})) {
        if (const auto head = Writing().FindRecord(id); head && head->owner == owner) {
            RemoveTree(id);
        }
    }
}

void sql_Session::LoadClasses()
{
    std::map<std::int64_t, sql_ClassPtr> classes;
    for (const sql_Class& stored : Reading().Classes()) {
        classes.emplace(stored.row, Resolve(stored));
    }
    m_classes = std::move(classes);
    m_written.clear();
}

sql_ClassPtr sql_Session::Resolve(const sql_Class& stored) const
{
    auto known = std::make_shared<sql_KnownClass>();
    known->stored = stored;
    if (const auto id = IfRegistered([&] { return m_registrar.GetClassID(stored.name); })) {
        known->classId = *id;
        const auto last = IfRegistered([&] { return m_registrar.GetLastClassVersionNumber(*id); });
        if (last && stored.version <= *last) {
            known->metadata =
                IfRegistered([&] { return &m_registrar.GetClassMetadata(*id, stored.version); }).value_or(nullptr);
        }
        known->isKnown = known->metadata != nullptr || stored.version == 0;
    } else if (stored.version == 0 && typ_ArchCompTable::GetName(stored.typeId) == stored.name) {
        known->classId = stored.typeId;
        known->isKnown = true;
    }
    return known;
}

sql_ClassPtr sql_Session::ClassOf(std::int64_t row)
{
    if (!m_classes.contains(row)) {
        LoadClasses();
    }
    const auto found = m_classes.find(row);
    if (found == m_classes.end()) {
        m_records->FailDamaged("class " + std::to_string(row) + ", which records name, is missing");
    }
    return found->second;
}

std::vector<std::string> sql_Session::UnknownClasses()
{
    LoadClasses();
    std::vector<std::string> unknown;
    for (const auto& [row, known] : m_classes) {
        if (!known->isKnown && Reading().CountRecordsOf(row) > 0) {
            unknown.push_back(ClassText(known->stored));
        }
    }
    return unknown;
}

sql_Class sql_Session::Describe(std::uint32_t classId) const
{
    sql_Class described{.row = 0, .name = {}, .version = 0, .typeId = classId, .attributes = {}};
    if (const auto version = IfRegistered([&] { return m_registrar.GetLastClassVersionNumber(classId); })) {
        const cls_ClassMetadata& metadata = m_registrar.GetClassMetadata(classId, *version);
        described.name = metadata.Name();
        described.version = *version;
        for (const cls_AttributeMetadata* attribute : metadata.Attributes()) {
            described.attributes.push_back({attribute->FieldName(), static_cast<std::uint32_t>(attribute->Type()),
                                            attribute->Count(), static_cast<std::uint32_t>(attribute->Collection())});
        }
    } else {
        described.name = typ_ArchCompTable::GetName(classId);
    }
    if (described.name.IsEmpty()) {
        Throw("an object of class " + std::to_string(classId) + ", which has no name, cannot be stored in '" +
                  m_records->Name() + "'",
              __LINE__);
    }
    return described;
}

sql_ClassPtr sql_Session::ClassToWrite(std::uint32_t classId)
{
    if (const auto found = m_written.find(classId); found != m_written.end()) {
        return found->second;
    }
    sql_Class described = Describe(classId);
    for (const auto& [row, known] : m_classes) {
        if (known->stored.name == described.name && known->stored.version == described.version) {
            if (known->stored.attributes != described.attributes) {
                Throw("'" + m_records->Name() + "' has objects of " + ClassText(described) +
                          " with other attributes: an attribute was changed and the version was not",
                      __LINE__);
            }
            return m_written.emplace(classId, known).first->second;
        }
    }
    described.row = m_classes.empty() ? 1 : m_classes.rbegin()->first + 1;
    Writing().AddClass(described);
    const sql_ClassPtr known = m_classes.emplace(described.row, Resolve(described)).first->second;
    return m_written.emplace(classId, known).first->second;
}

sql_Identity& sql_Session::IdentityOf(const cls_Uid& uid)
{
    sql_Identity* const identity = sql_Identity::Find(uid, *this);
    return identity != nullptr ? *identity : *new sql_Identity(*this, m_next++, *uid.Entry()); // owned by the uid
}

cls_Uid sql_Session::UidOf(std::int64_t identity)
{
    if (const auto found = m_identities.find(identity); found != m_identities.end()) {
        return cls_Uid(found->second->entry);
    }
    cls_Uid uid = cls_Uid::AllocateUid();
    new sql_Identity(*this, identity, *uid.Entry()); // owned by the uid
    return uid;
}

sql_Session::Open sql_Session::Enter(sql_OpenRecord record)
{
    m_open.push_back(std::make_shared<sql_OpenRecord>(std::move(record)));
    return m_open.back();
}

sql_Session::Open sql_Session::Make(std::int64_t owner, int depth, sql_ClassPtr known, const cls_Uid* uid)
{
    sql_OpenRecord record;
    record.head.classRow = known != nullptr ? known->stored.row : 0;
    record.head.owner = owner;
    record.head.identity = uid != nullptr ? IdentityOf(*uid).number : 0;
    record.head.id = m_next++;
    record.known = std::move(known);
    record.depth = depth;
    if (uid != nullptr) {
        record.uid = *uid;
    }
    return Enter(std::move(record));
}

sql_Session::Open sql_Session::Reopen(const sql_Record& head, sql_ClassPtr known, int depth)
{
    sql_OpenRecord record;
    record.head = head;
    record.known = known;
    record.depth = depth;
    record.isNew = false;
    record.isKept = head.form != sql_Form::OBJECT;
    for (const auto& [key, cell] : m_records->Rows(head.id)) {
        record.rows.emplace(key, sql_OpenRow{true, cell.IsObject() ? cell.Record() : 0});
    }
    if (known != nullptr && record.head.classRow != known->stored.row) {
        record.head.classRow = known->stored.row;
        if (record.isKept) {
            m_records->PutRecord(record.head);
        }
    }
    return Enter(std::move(record));
}

std::optional<sql_Record> sql_Session::Child(const sql_OpenRecord& owner, const sql_Key& key)
{
    const auto row = owner.rows.find(key);
    if (row == owner.rows.end() || row->second.child == 0) {
        return std::nullopt;
    }
    const auto head = m_records->FindRecord(row->second.child);
    return head && head->owner == owner.head.id ? head : std::nullopt;
}

bool sql_Session::IsSameObject(const sql_Record& head, const sql_KnownClass& known, const cls_Uid& uid)
{
    const sql_Identity* const identity = sql_Identity::Find(uid, *this);
    return identity != nullptr && identity->number == head.identity && head.classRow != 0 &&
           ClassOf(head.classRow)->stored.name == known.stored.name;
}

sql_Session::Open sql_Session::OpenAt(const Open& owner, const sql_Key& key, std::uint32_t classId, const cls_Uid& uid)
{
    Writing();
    FinishClosed();
    if (owner->depth >= sql_Records::MAX_DEPTH) {
        Throw("objects nested deeper than " + std::to_string(sql_Records::MAX_DEPTH) + " cannot be stored in '" +
                  m_records->Name() + "'",
              __LINE__);
    }
    const sql_ClassPtr known = ClassToWrite(classId);
    sql_PagedArray* const array = sql_PagedArray::Of(uid);
    const auto head = Child(*owner, key);
    Open open;
    if (head && IsSameObject(*head, *known, uid) && MayStay(*head, array)) {
        open = Reopen(*head, known, owner->depth + 1);
    } else {
        if (head) {
            Replace(*owner, head->id);
        }
        open = Move(*owner, known, array);
        if (open == nullptr) {
            open = Make(owner->head.id, owner->depth + 1, known, &uid);
        }
    }
    Place(*open, array, uid);
    Put(*owner, key, {sql_Kind::OBJECT, open->head.id});
    return open;
}

bool sql_Session::MayStay(const sql_Record& head, const sql_PagedArray* array) const noexcept
{
    return !sql_PagedKind(head.form) || (array != nullptr && array->RecordIn(*this) == head.id);
}

void sql_Session::Place(sql_OpenRecord& open, sql_PagedArray* array, const cls_Uid& uid)
{
    if (array == nullptr) {
        return;
    }
    if (array->RecordIn(*this) == open.head.id) {
        array->savedAs = m_save;
    } else {
        MakeKept(open, array->Form());
        array->CopyTo(shared_from_this(), open.head.id, uid);
    }
}

sql_Session::Open sql_Session::OpenElement(const Open& owner, const sql_Key& key, const cls_Uid* uid)
{
    Writing();
    FinishClosed();
    sql_PagedArray* const array = uid != nullptr ? sql_PagedArray::Of(*uid) : nullptr;
    const auto head = Child(*owner, key);
    Open open;
    if (head && head->classRow == 0 && (uid == nullptr || MayStay(*head, array))) {
        open = Reopen(*head, nullptr, owner->depth + 1);
    } else {
        if (head) {
            Replace(*owner, head->id);
        }
        open = Make(owner->head.id, owner->depth + 1, nullptr, nullptr);
    }
    if (uid != nullptr) {
        open->uid = *uid;
        Place(*open, array, *uid);
    }
    Put(*owner, key, {sql_Kind::OBJECT, open->head.id});
    return open;
}

sql_Session::Open sql_Session::OpenRoot(const cow_String& name, std::uint32_t classId, const cls_Uid& uid)
{
    sql_Records& records = Writing();
    FinishClosed();
    const sql_ClassPtr known = ClassToWrite(classId);
    sql_PagedArray* const array = sql_PagedArray::Of(uid);
    if (const auto record = records.FindRoot(name)) {
        const auto head = records.FindRecord(*record);
        if (head && head->owner == 0 && IsSameObject(*head, *known, uid) && MayStay(*head, array)) {
            return Reopen(*head, known, 1);
        }
        m_doomed.emplace_back(*record, 0);
    }
    const Open open = Make(0, 1, known, &uid);
    Place(*open, array, uid);
    records.PutRoot(name, open->head.id);
    return open;
}

sql_Session::Open sql_Session::OpenStored(std::int64_t record, int depth)
{
    const auto head = Writing().FindRecord(record);
    if (!head) {
        Throw("record " + std::to_string(record) + " of '" + m_records->Name() + "' was removed", __LINE__);
    }
    FinishClosed();
    for (const Open& open : m_open) {
        if (open->head.id == record) {
            return open;
        }
    }
    const Open open = Reopen(*head, head->classRow != 0 ? ClassOf(head->classRow) : nullptr, depth);
    open->next = head->length;
    return open;
}

sql_Session::Open sql_Session::Move(const sql_OpenRecord& owner, const sql_ClassPtr& known, const sql_PagedArray* array)
{
    const std::int64_t record = array != nullptr && array->savedAs != m_save ? array->RecordIn(*this) : 0;
    auto head = record != 0 ? m_records->FindRecord(record) : std::nullopt;
    if (!head || head->owner == 0) {
        return nullptr;
    }
    TakeFromOwner(*head);
    std::erase_if(m_doomed, [&](const auto& doomed) { return doomed.first == head->id; });
    head->owner = owner.head.id;
    head->classRow = known->stored.row;
    m_records->PutRecord(*head);
    return Reopen(*head, known, owner.depth + 1);
}

void sql_Session::TakeFromOwner(const sql_Record& moved)
{
    for (const auto& [key, cell] : m_records->Rows(moved.owner)) {
        if (!cell.IsObject() || cell.Record() != moved.id) {
            continue;
        }
        m_records->RemoveRow(moved.owner, key);
        const auto open = std::find_if(m_open.begin(), m_open.end(),
                                       [&](const Open& candidate) { return candidate->head.id == moved.owner; });
        if (open != m_open.end()) {
            (*open)->rows.erase(key);
        } else if (auto owner = m_records->FindRecord(moved.owner)) {
            --owner->length;
            ++owner->revision;
            m_records->PutRecord(*owner);
        }
        return;
    }
}

bool sql_Session::IsUnknown(std::int64_t record)
{
    const auto head = m_records->FindRecord(record);
    return head && head->classRow != 0 && !ClassOf(head->classRow)->isKnown;
}

void sql_Session::Replace(sql_OpenRecord& owner, std::int64_t child)
{
    if (owner.IsList() && IsUnknown(child)) {
        owner.displaced.push_back(child); // a list's new element is not meant to take this one's place
    } else {
        m_doomed.emplace_back(child, owner.head.id);
    }
}

void sql_Session::Put(sql_OpenRecord& open, const sql_Key& key, const sql_Cell& cell)
{
    if (open.isFinished) {
        Throw("record " + std::to_string(open.head.id) + " of '" + m_records->Name() +
                  "' is written to after its save has ended",
              __LINE__);
    }
    Writing().PutRow(open.head.id, key, cell);
    if (open.IsList()) {
        open.next = std::max(open.next, key.Number() + 1);
        if (open.isNew) {
            return;
        }
    }
    sql_OpenRow& row = open.rows[key];
    const std::int64_t child = cell.IsObject() ? cell.Record() : 0;
    if (row.child != 0 && child == 0) {
        Replace(open, row.child);
    }
    row = {false, child};
}

void sql_Session::MakeCollection(sql_OpenRecord& open, sql_Form form)
{
    Writing();
    open.isKept = false;
    if (sql_PagedKind(open.head.form)) {
        m_records->RemoveBlocks(open.head.id);
    }
    for (auto& [key, row] : open.rows) {
        row.isLeft = true;
    }
    open.head.form = form;
    open.head.length = 0;
    open.next = 0;
}

void sql_Session::MakeKept(sql_OpenRecord& open, sql_Form form)
{
    if (open.head.form != form) {
        MakeCollection(open, form);
        FinishRows(open);
        open.rows.clear();
    }
    open.next = open.head.length;
    open.isKept = true;
    open.isNew = false; // a list's rows are noted from now on
    Writing().PutRecord(open.head);
}

void sql_Session::Erase(sql_OpenRecord& open, const sql_Key& key)
{
    Writing().RemoveRow(open.head.id, key);
    const auto row = open.rows.find(key);
    if (row != open.rows.end()) {
        if (row->second.child != 0) {
            m_doomed.emplace_back(row->second.child, open.head.id);
        }
        open.rows.erase(row);
    }
}

void sql_Session::Touch(sql_OpenRecord& open)
{
    open.head.length = static_cast<std::int64_t>(open.rows.size());
    ++open.head.revision;
    Writing().PutRecord(open.head);
}

void sql_Session::Drop(const sql_PagedArray& array, std::int64_t record) noexcept
{
    const auto [first, last] = m_paged.equal_range(record);
    m_paged.erase(std::find_if(first, last, [&](const auto& noted) { return noted.second == &array; }));
}

std::shared_ptr<sql_Stored> sql_Session::StateOf(std::int64_t record)
{
    std::weak_ptr<sql_Stored>& known = m_stored[record];
    std::shared_ptr<sql_Stored> stored = known.lock();
    if (stored == nullptr) {
        stored = std::make_shared<sql_Stored>();
        known = stored;
    }
    return stored;
}

void sql_Session::Settle(bool isCommitted) noexcept
{
    ++m_transaction;
    for (auto next = m_paged.begin(); next != m_paged.end();) {
        (next++)->second->Settle(isCommitted); // which may drop just this one
    }
}

void sql_Session::FinishClosed()
{
    while (!m_open.empty() && m_open.back().use_count() == 1) {
        Finish(*m_open.back());
        m_open.pop_back();
    }
}

void sql_Session::Finish(sql_OpenRecord& open)
{
    if (std::exchange(open.isFinished, true) || open.isKept) {
        return;
    }
    FinishRows(open);
    ++open.head.revision;
    Writing().PutRecord(open.head);
}

void sql_Session::FinishRows(sql_OpenRecord& open)
{
    sql_Records& records = Writing();
    std::int64_t count = open.next;
    std::vector<std::int64_t> moved = std::exchange(open.displaced, {});
    for (const auto& [key, row] : open.rows) {
        const bool isKept = row.isLeft && row.child != 0 && IsUnknown(row.child);
        if (row.isLeft && !(isKept && !open.IsList())) {
            records.RemoveRow(open.head.id, key);
            if (isKept) {
                moved.push_back(row.child);
            } else if (row.child != 0) {
                m_doomed.emplace_back(row.child, open.head.id);
            }
        } else if (!open.IsList()) {
            ++count;
        }
    }
    for (const std::int64_t child : moved) {
        records.PutRow(open.head.id, sql_Key(count++), {sql_Kind::OBJECT, child});
    }
    open.head.length = count;
}

void sql_Session::RemoveTree(std::int64_t id)
{
    sql_Records& records = Writing();
    for (std::vector<std::int64_t> left{id}; !left.empty();) {
        const std::int64_t next = left.back();
        left.pop_back();
        for (const auto& [key, cell] : records.Rows(next)) {
            if (!cell.IsObject()) {
                continue;
            }
            if (const auto child = records.FindRecord(cell.Record()); child && child->owner == next) {
                left.push_back(child->id);
            }
        }
        TakeIn(next);
        records.RemoveRecord(next);
    }
}

void sql_Session::TakeIn(std::int64_t record)
{
    std::vector<sql_PagedArray*> arrays;
    const auto [first, last] = m_paged.equal_range(record);
    std::transform(first, last, std::back_inserter(arrays), [](const auto& noted) { return noted.second; });
    for (sql_PagedArray* array : arrays) {
        array->TakeIn();
    }
}
