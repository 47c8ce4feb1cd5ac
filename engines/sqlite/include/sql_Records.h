#pragma once

#include "VEXsqlite_export.h"
#include "sql_Value.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a record is. The numbers stand in files and are frozen; the families from PAGED_LIST on are added to the kind of
/// their elements.
enum class sql_Form : std::int32_t
{
    OBJECT = 0,      ///< fields by name, elements by number
    PAGED_LIST = 10, ///< values in blocks
    LIST = 20,       ///< one row a value or object, keyed 0, 1, ...
    INT_MAP = 30,
    STRING_MAP = 40,
    INT_TABLE = 54 ///< of int to int
};

constexpr sql_Form operator+(sql_Form family, sql_Kind element) noexcept
{
    return static_cast<sql_Form>(static_cast<std::int32_t>(family) + static_cast<std::int32_t>(element));
}

/// "object", "paged list of double", "map from int to object"; "form 99" for what is none.
VEXSQLITE_API std::string sql_FormName(sql_Form form);
/// The kind of the elements of a paged list; none for any other form.
VEXSQLITE_API std::optional<sql_Kind> sql_PagedKind(sql_Form form) noexcept;

/// One stored object or collection. Records form trees: each belongs to the place in `owner` that refers to it.
struct sql_Record
{
    std::int64_t id = 0;
    std::int64_t classRow = 0; ///< 0 for an element that is no object
    std::int64_t owner = 0;    ///< 0 for a root
    std::int64_t identity = 0; ///< equal for records of objects that share a uid
    sql_Form form = sql_Form::OBJECT;
    std::int64_t length = 0;   ///< how many rows belong to it; of a paged list, how many values
    std::int64_t revision = 0; ///< raised by every write that readers have to notice
};

struct sql_Attribute
{
    cow_String name;
    std::uint32_t type = 0;
    std::uint32_t count = 0;
    std::uint32_t collection = 0;
    bool operator==(const sql_Attribute&) const = default;
};

/// A version of a class, as the file describes it.
struct sql_Class
{
    std::int64_t row = 0;
    cow_String name;
    int version = 0;                       ///< 0: written by a program that had no metadata for it
    std::uint32_t typeId = 0;              ///< in the program that wrote it
    std::vector<sql_Attribute> attributes; ///< in the order of their names
};

/// Where records are kept: what the mementos, readers, writers and agents ask of a database. An engine on another
/// database implements this and takes over all the rest.
///
/// Threads:    one thread at a time.
/// Errors:     nex_TextException that names the store. Everything that is read has been checked: checksums, types,
///             ranges, the order of keys.
/// References: what a BlockSink is given dies with its call.
class VEXSQLITE_API sql_Records
{
public:
    static constexpr int BLOCK_LENGTH = 2048; ///< values of a full block of a paged list
    static constexpr int MAX_DEPTH = 1000;    ///< of records in records; deeper nesting would exhaust the stack

    using Row = std::pair<sql_Key, sql_Cell>;
    using BlockSink = std::function<void(std::string_view bytes)>;

    virtual ~sql_Records();

    /// The store's name, for messages.
    virtual std::string Name() const = 0;
    [[noreturn]] virtual void FailDamaged(const std::string& how) const = 0;

    virtual bool IsReadOnly() const noexcept = 0;
    /// Throws in a process forked from the one that opened the store.
    virtual void CheckProcess() const = 0;
    /// Starts a transaction that writes; waits for one elsewhere to end.
    virtual void BeginWrite() = 0;
    /// Starts one that sees the store as it was last committed, until its end.
    virtual void BeginRead() = 0;
    virtual void EndRead() noexcept = 0;
    virtual void Commit() = 0;
    /// Nothing when there is no transaction.
    virtual void Rollback() = 0;
    /// False also when the database has rolled back by itself, as on a full disk.
    virtual bool InTransaction() const noexcept = 0;

    virtual std::optional<sql_Record> FindRecord(std::int64_t id) = 0;
    virtual void PutRecord(const sql_Record& record) = 0;
    /// The record, its rows and its blocks; not the records it refers to.
    virtual void RemoveRecord(std::int64_t id) = 0;

    /// The rows of a record in the order of their keys; no two hold the same record.
    virtual std::vector<Row> Rows(std::int64_t record) = 0;
    /// Puts the cell under the key, in place of what is there.
    virtual void PutRow(std::int64_t record, const sql_Key& key, const sql_Cell& cell) = 0;
    virtual void RemoveRow(std::int64_t record, const sql_Key& key) = 0;
    virtual void RemoveRows(std::int64_t record) = 0;

    /// Hands a block's bytes to `sink`; false when there is no such block. Block n starts with value n * BLOCK_LENGTH.
    virtual bool ReadBlock(std::int64_t record, std::int64_t block, const BlockSink& sink) = 0;
    virtual void PutBlock(std::int64_t record, std::int64_t block, std::string_view bytes) = 0;
    virtual void RemoveBlocks(std::int64_t record) = 0;

    virtual std::vector<std::pair<cow_String, std::int64_t>> Roots() = 0;
    virtual std::optional<std::int64_t> FindRoot(const cow_String& name) = 0;
    virtual void PutRoot(const cow_String& name, std::int64_t record) = 0;
    virtual void RemoveRoot(const cow_String& name) = 0;

    virtual std::vector<sql_Class> Classes() = 0;
    virtual std::int64_t CountRecordsOf(std::int64_t classRow) = 0;
    /// Adds the class under its row number.
    virtual void AddClass(const sql_Class& added) = 0;

    /// A number that no record or identity has used: kept from one session to the next.
    virtual std::int64_t NextNumber() = 0;
    virtual void SetNextNumber(std::int64_t number) = 0;
};
